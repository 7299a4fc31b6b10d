#pragma once

#include "database/Database.h"
#include "support/Scalar.h"
#include "support/TestDatabase.h"

#include <QObject>

#include <memory>

namespace TestSupport {

/// Runs all functions of a test on each backend, each function on a database of its own.
class DatabaseFixture : public QObject
{
    Q_OBJECT

protected:
    /// @p statements make the tables that each function begins with.
    explicit DatabaseFixture(const QStringList& statements)
        : m_statements(statements)
    {}

    bool isPostgres() const { return m_database->type() == DataAccess::Enumerations::Postgres; }
    QVariant scalar(const char* sql) { return TestSupport::scalar(*m_db, sql); }
    void exec(const char* sql) { m_db->Exec(QString::fromLatin1(sql)); }

    // NOLINTBEGIN(cppcoreguidelines-non-private-member-variables-in-classes): of the test, which derives from this
    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<DataAccess::Database::Database> m_db;
    // NOLINTEND(cppcoreguidelines-non-private-member-variables-in-classes)

protected Q_SLOTS:
    void initTestCase_data() { addBackends(); }
    void init();
    void cleanup();

private:
    const QStringList m_statements;
};

} // namespace TestSupport
