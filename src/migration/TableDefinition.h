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
    QString name;
    Enumerations::DataType kind;
    unsigned int size = 0;
    /// What follows the type: a default or a reference to another table.
    QString suffix = {};
    /// Stored with the table as a comment behind the column; no comment when null.
    QString comment = {};
};

/// The columns that most tables are made of.
namespace Columns {
DATAACCESS_EXPORT Column text(const char* name, const char* comment = nullptr);
DATAACCESS_EXPORT Column integer(const char* name, unsigned int size, const char* comment = nullptr);
DATAACCESS_EXPORT Column numeric(const char* name, const char* comment = nullptr);
DATAACCESS_EXPORT Column boolean(const char* name, const char* comment = nullptr);
DATAACCESS_EXPORT Column timeStamp(const char* name, const char* comment = nullptr);
DATAACCESS_EXPORT Column date(const char* name, const char* comment = nullptr);
DATAACCESS_EXPORT Column bytes(const char* name, const char* comment = nullptr);
} // namespace Columns

/// The layout of a table at one schema version.
struct DATAACCESS_EXPORT TableDefinition
{
    QString name;
    QVector<Column> columns;
    /// The primary key, then any foreign keys.
    QStringList constraints;
    bool temporary = false;

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
