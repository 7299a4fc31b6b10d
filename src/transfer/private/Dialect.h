#pragma once

#include "transfer/private/SchemaTables.h"

namespace DataAccess::Interfaces {
class IDatabase;
}

namespace DataAccess::Transfer {

/// What has to be said differently to each backend; the only place here that tells them apart.
class DATAACCESS_EXPORT Dialect
{
public:
    static const Dialect& of(Interfaces::IDatabase& db);
    Dialect() = default;
    virtual ~Dialect();
    Dialect(const Dialect&) = delete;
    Dialect& operator=(const Dialect&) = delete;

    /// Set once on each connection.
    virtual QString preparation() const = 0;
    /// Lets a transaction that has just begun read what there is at one moment; empty where each does so.
    virtual QString snapshot() const = 0;
    /// Whether a result is held whole in memory, so that many rows have to be fetched through a cursor.
    virtual bool needsCursor() const = 0;
    /// Whether every column holds values of its own kind alone, and valid texts.
    virtual bool keepsKinds() const = 0;
    /// @p column as a term of an order that is alike everywhere: texts by their bytes, NULL first.
    virtual QString orderTerm(const SchemaColumn& column) const = 0;
    /// A condition that @p column, a truth value, is true.
    virtual QString isTrue(const QString& column) const = 0;
    /// A select of the last of the times in the column "timestamp" of @p table, as a text.
    virtual QString lastTime(const QString& table) const = 0;
    /// A select of each column of @p table: its name, its type in capitals, and whether the primary key has it.
    virtual QString columnsOf(const QString& table) const = 0;
    /// How the catalogue spells the type of a column of @p kind; the sizes of integers are those of their tables.
    virtual QStringList typesOf(Enumerations::DataType kind) const = 0;
    /// A condition that is true of the rows of @p table where a column holds something else than its kind; empty where
    /// that cannot be.
    virtual QString foreignTypeCondition(const SchemaTable& table) const = 0;
};

} // namespace DataAccess::Transfer
