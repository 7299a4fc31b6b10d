#pragma once

#include <QSqlDatabase>

namespace DataAccess::Database::Sqlite2 {

/// A connection of Qt's SQLite driver that is in no list of connections, and so bound to no name and no thread.
class PrivateConnection : public QSqlDatabase
{
public:
    PrivateConnection()
        : QSqlDatabase(QStringLiteral("QSQLITE"))
    {}
};

} // namespace DataAccess::Database::Sqlite2
