#pragma once

#include "database/DataType.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace DataAccess::Interfaces {
class IValueConverter;
}

namespace DataAccess::Manager {

/// A column of a table. The backend's value converter turns kind and size into SQL.
struct Column
{
    /// Name of the column.
    QString name;
    /// What it holds.
    Enumerations::DataType kind;
    /// What the kind needs a size for: bytes of an integer, characters of a text.
    unsigned int size = 0;
    /// What follows the type: a default or a reference to another table.
    QString suffix = {};
    /// Stored with the table as a comment behind the column; no comment when null.
    QString comment = {};
};

/// The columns that most tables are made of.
namespace Columns {
Column text(const char* name, const char* comment = nullptr);
Column integer(const char* name, unsigned int size, const char* comment = nullptr);
Column numeric(const char* name, const char* comment = nullptr);
Column boolean(const char* name, const char* comment = nullptr);
Column timeStamp(const char* name, const char* comment = nullptr);
Column date(const char* name, const char* comment = nullptr);
Column bytes(const char* name, const char* comment = nullptr);
} // namespace Columns

/// The layout of a table at one schema version.
struct TableDefinition
{
    QString name;
    /// In the order of the statement that creates the table.
    QVector<Column> columns;
    /// The primary key, then any foreign keys.
    QStringList constraints;
    /// Whether the table is gone with its connection.
    bool temporary = false;

    /// The same table with @p column in front of the column named @p before.
    TableDefinition with(const Column& column, const char* before) const;
    /// A temporary table of the same columns, which hides any other table named @p workName while it exists.
    TableDefinition workTable(const QString& workName) const;
    /// The names of the columns, as a statement lists them.
    QString columnList() const;
    /// Leaves out the references to tables that are not in @p tables, and returns them.
    QStringList removeReferencesExceptTo(const QStringList& tables);
    /// The parts of the statement that creates the table, to be joined with blanks.
    QStringList statementParts(const Interfaces::IValueConverter& converter) const;
};

} // namespace DataAccess::Manager
