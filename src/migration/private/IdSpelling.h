#pragma once

#include "database/StatementRunner.h"

#include <QSet>
#include <QStringList>
#include <QUuid>
#include <QVector>

namespace DataAccess::Database {
class SchemaDialect;
}

namespace DataAccess::Manager {

using Database::StatementRunner;

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
};

/**
 * Brings the ids of a database, and the references to them, to the one spelling in which they are looked for: a row
 * whose id is spelled otherwise is loaded, and never found again. Other programs may have written such rows. The one
 * spelling is that of QUuid::toString(): lower case, with braces. QUuid also reads capitals, missing braces and blanks
 * at the end; all other texts are no ids.
 *
 * For a database whose schema is that of this build, inside a job. A sound database costs one look at its tables,
 * without a lock.
 */
class IdSpelling
{
public:
    explicit IdSpelling(Interfaces::IDatabase& db);

    /**
     * Changes what is spelled otherwise, all in one transaction. Rows of one table whose ids differ in nothing but
     * their spelling stay as they are, with the references to them, and are logged. False when it failed, which is
     * logged and reported; nothing is changed then.
     */
    bool unify();

private:
    /// All tables, with the columns that are there.
    QVector<IdColumns> presentTables();
    bool hasOddIds(const QVector<IdColumns>& tables);
    /// Logs the rows of @p table that stay as they are, and remembers them.
    void findTwins(const IdColumns& table);
    bool hasChanges(const IdColumns& table);
    void change(const QVector<IdColumns>& tables);

    bool exists(const QString& table, const QString& condition);
    bool hasChangedKeys(const IdColumns& table);

    /// The condition that @p column is to be changed: it is spelled otherwise, and refers to no row that stays.
    QString isChangeable(const QString& table, const QString& column) const;
    /// The same for the key of @p table, the row of which must not stay, either.
    QString isChangeableKey(const IdColumns& table) const;
    /// The condition that @p table has another row of the id of a row whose key is spelled otherwise.
    QString hasTwin(const IdColumns& table) const;
    /// The lists to be changed: what they are to be, and the keys of their rows.
    StatementRunner::Rows oddLists(const IdColumns& table);
    void changeColumn(const QString& table, const QString& column, const QString& condition);
    void changeLists(const IdColumns& table);

    StatementRunner m_statements;
    const Database::SchemaDialect& m_dialect;
    /// The ids of rows that stay as they are, and their tables.
    QSet<QUuid> m_twins;
    QVector<IdColumns> m_twinTables;
    QStringList m_report;
};

} // namespace DataAccess::Manager
