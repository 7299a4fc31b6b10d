#pragma once

#include "database/DataAccessExport.h"

#include <QPair>
#include <QString>
#include <QVector>

namespace DataAccess::Database {

/// What a connection address of PostgreSQL ("postgresql://user@host1,host2/db?sslmode=verify-full") says, keyword by
/// keyword. Throws std::invalid_argument, without the address in its text: it may hold a password.
DATAACCESS_EXPORT QVector<QPair<QString, QString>> parsePostgresAddress(const QString& address);

} // namespace DataAccess::Database
