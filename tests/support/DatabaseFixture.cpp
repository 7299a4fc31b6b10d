#include "support/DatabaseFixture.h"

#include <QTest>

namespace TestSupport {

void DatabaseFixture::init()
{
    QFETCH_GLOBAL(int, backend);
    m_database = std::make_unique<TestDatabase>(static_cast<DataAccess::Enumerations::DatabaseType>(backend));
    m_db = std::make_unique<DataAccess::Database::Database>(m_database->config());
    for (const QString& statement : m_statements)
        m_db->Exec(statement);
}

void DatabaseFixture::cleanup()
{
    m_db.reset();
    m_database.reset();
}

} // namespace TestSupport
