#pragma once

#include <QVariant>

#include <libpq-fe.h>

namespace DataAccess::Database::Native {

/// The types of PostgreSQL that are not read as text, and those of text, by the numbers that its catalogue pg_type
/// gives them.
enum PostgresType : Oid {
    Boolean = 16,
    Bytea = 17,
    BigInt = 20,
    SmallInt = 21,
    Integer = 23,
    RegProc = 24,
    Text = 25,
    Xid = 28,
    Cid = 29,
    Float4 = 700,
    Float8 = 701,
    BpChar = 1042,
    VarChar = 1043,
    Date = 1082,
    Time = 1083,
    Timestamp = 1114,
    TimestampTz = 1184,
    TimeTz = 1266,
    Numeric = 1700
};

/// What is in @p column of @p row of @p result, as the variant that Qt's driver makes of it.
QVariant postgresValue(const PGresult* result, int row, int column);

} // namespace DataAccess::Database::Native
