#pragma once

#include "database/DataAccessExport.h"
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
    QString name;                ///< As the schema spells it.
    Enumerations::DataType kind; ///< What it holds.
    unsigned int size = 0;       ///< Bytes of a number, characters of a text; 0 where the kind has no size.
    /// What follows the type: a default or a reference to another table.
    QString suffix = {};
    /// Stored with the table as a comment behind the column; no comment when null.
    QString comment = {};
};

/// The columns that most tables are made of.
namespace Columns {
/// A text of any length.
DATAACCESS_EXPORT Column text(const char* name, const char* comment = nullptr);
/// A whole number of @p size bytes.
DATAACCESS_EXPORT Column integer(const char* name, unsigned int size, const char* comment = nullptr);
/// A number with decimals.
DATAACCESS_EXPORT Column numeric(const char* name, const char* comment = nullptr);
/// True or false.
DATAACCESS_EXPORT Column boolean(const char* name, const char* comment = nullptr);
/// A date with a time.
DATAACCESS_EXPORT Column timeStamp(const char* name, const char* comment = nullptr);
/// A date.
DATAACCESS_EXPORT Column date(const char* name, const char* comment = nullptr);
/// Bytes, in any number.
DATAACCESS_EXPORT Column bytes(const char* name, const char* comment = nullptr);
} // namespace Columns

/// The layout of a table at one schema version.
struct DATAACCESS_EXPORT TableDefinition
{
    QString name;            ///< As the schema spells it, without quotes.
    QVector<Column> columns; ///< In the order of the table.
    /// The primary key, then any foreign keys.
    QStringList constraints;
    bool temporary = false; ///< It is gone when the connection is closed.

    /// The same table with @p column in front of the column named @p before; at the end when there is none.
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
