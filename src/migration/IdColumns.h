#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace DataAccess::Manager {

/// The columns of one table that hold the ids of entities, as texts.
struct IdColumns
{
    QString table;
    /// The ids of the rows themselves, each there once; empty for a table without.
    QString key;
    /// The ids of rows of other tables.
    QStringList references;
    /// Ids of several rows in one text, joined with "#"; empty for a table without.
    QString list;
    /// Content of any size that SQLite has to pass to reach the references; empty for a table without.
    QString content;

    /// All tables of the cable network and of the partial-discharge results. One stands before those whose key refers
    /// to it.
    static const QVector<IdColumns>& all();
};

} // namespace DataAccess::Manager
