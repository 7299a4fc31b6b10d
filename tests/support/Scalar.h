#pragma once

#include "database/IDatabase.h"

#include <QVariant>

namespace TestSupport {

/// The first column of the first row of what @p sql selects; invalid when there is no row.
inline QVariant scalar(DataAccess::Interfaces::IDatabase& db, const char* sql)
{
    QSqlQuery query = db.Exec(QString::fromLatin1(sql));
    return query.next() ? query.value(0) : QVariant();
}

} // namespace TestSupport
