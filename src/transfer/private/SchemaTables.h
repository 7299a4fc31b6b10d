#pragma once

#include "database/DataAccessExport.h"
#include "database/DataType.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace DataAccess::Transfer {

/// A column of a table of the current schema.
struct SchemaColumn
{
    QString name;                ///< Name of the column.
    Enumerations::DataType kind; ///< What it holds.
    /// Base64 text of an image: a text on every backend, though the kind is that of bytes.
    bool isImage = false;
};

/// The ids of another table, or several of them, joined with "#", in a column.
struct SchemaReference
{
    QString column;      ///< The column that holds the ids.
    QString table;       ///< The table that they are of.
    bool isList = false; ///< Whether there may be several.
};

/// A table of the current schema that holds what applications have stored.
struct DATAACCESS_EXPORT SchemaTable
{
    QString name;                  ///< Name of the table.
    QVector<SchemaColumn> columns; ///< Its columns, in order.
    /// What no two rows have in common; empty for a table without a primary key.
    QString key;
    QVector<SchemaReference> references; ///< Its columns that refer to other tables.

    /// Whether there is a column of this name.
    bool has(const QString& column) const;
    /// The names of the columns, quoted, as a statement lists them.
    QString columnList() const;
    /// Whether a row can be much larger than a line of text.
    bool hasBytes() const;
    /// Whether the key is the UUID of an entity.
    bool hasUuid() const;
};

/// All tables of the current schema except those of the settings; none stands before one that it refers to by a foreign
/// key.
DATAACCESS_EXPORT const QVector<SchemaTable>& schemaTables();
/// The one named @p name; null when there is none.
DATAACCESS_EXPORT const SchemaTable* schemaTable(const QString& name);

/// @p name in the quotes of SQL.
inline QString quoted(const QString& name)
{
    return QLatin1Char('"') + name + QLatin1Char('"');
}

} // namespace DataAccess::Transfer
