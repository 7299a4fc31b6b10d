#include "bench/BareSqlite.h"

#include <QtGlobal>

namespace Bench {

BareSqlite::BareSqlite(DataAccess::Interfaces::IConfig& config)
{
    const QByteArray path = config.DatabaseName().toUtf8();
    if (sqlite3_open_v2(path.constData(), &m_database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) !=
        SQLITE_OK)
        qFatal("%s", sqlite3_errmsg(m_database));
    sqlite3_busy_timeout(m_database, 5000);
}

void BareSqlite::run(const std::string& statements)
{
    if (sqlite3_exec(m_database, statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        qFatal("%s", sqlite3_errmsg(m_database));
}

BareSqlite::Statement::Statement(sqlite3* database, const std::string& text)
{
    if (sqlite3_prepare_v2(database, text.c_str(), -1, &m_statement, nullptr) != SQLITE_OK)
        qFatal("%s", sqlite3_errmsg(database));
}

bool BareSqlite::Statement::next()
{
    const int result = sqlite3_step(m_statement);
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        qFatal("%s", sqlite3_errmsg(sqlite3_db_handle(m_statement)));
    return result == SQLITE_ROW;
}

void BareSqlite::Statement::execute()
{
    next();
    sqlite3_reset(m_statement);
}

} // namespace Bench
