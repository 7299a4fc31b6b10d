#pragma once

#include "migration/AbstractMigrationManager.h"
#include "support/RunningWorker.h"
#include "support/TestDatabase.h"

#include <QStringList>
#include <QTest>

namespace TestSupport {

/// A database as it is in the field at one version, written down in files here, not made by the steps; and its manager.
class MigrationDatabase
{
public:
    enum Family { Editor, Pd };
    /// What every version of the cable network has that belongs to others: the cable book and the tasks.
    enum CableBook { Without, With };

    /// A database with nothing in it. One of version 0 has settings, and cable tables from before there were versions.
    static constexpr int emptyVersion = -1;
    /// The version that a migration of @p family reaches, as its file says.
    static int currentVersion(Family family);

    /// Makes the tables of @p version, with rows, on the backend in the current row of the test's data table.
    MigrationDatabase(Family family, int version, CableBook cableBook = Without);

    const TestDatabase& database() const { return m_database; }
    bool isFile() const { return m_database.type() == DataAccess::Enumerations::SQLite3; }
    DataAccess::Database::DatabaseConfig& config() { return *m_config; }
    DataAccess::Database::DbWorker* worker() { return m_worker.get(); }
    DataAccess::Manager::AbstractMigrationManager& manager() { return *m_manager; }

    void execute(const QStringList& statements);
    /// The rows of a select, "|" between columns and "; " between rows.
    QString rows(const QString& select);
    /// All rows of all tables.
    QStringList content();
    /// The same of the copies that were made before the migration; empty without a copy.
    QStringList backupContent();
    /// Columns, constraints and sequences of the migrated tables.
    QStringList schema();
    /// The selects whose rows are not as promised once the database is migrated.
    QStringList faults();

    /// Lets every @p event on @p table fail: "INSERT", "UPDATE" or "DELETE"; only where @p condition holds, if not
    /// empty.
    void forbid(const QString& event, const QString& table, const QString& condition = {});
    void allow(const QString& event, const QString& table);
    /// Lets the step that reaches @p version run, and nothing after it: the version cannot be stored.
    void migrateWithoutVersion(int version);

private:
    QVector<QPair<QString, QString>> statements(bool expectations) const;
    QString translated(QString text) const;
    QStringList contentOf(RunningWorker& worker);

    const Family m_family;
    const int m_version;
    const CableBook m_cableBook;
    const TestDatabase m_database;
    const std::shared_ptr<DataAccess::Database::DatabaseConfig> m_config = m_database.config();
    RunningWorker m_worker{m_config};
    std::unique_ptr<DataAccess::Manager::AbstractMigrationManager> m_manager;
};

/// Adds a row for each backend to a table whose first column is `backend`.
template <typename... Values>
void addCase(const QString& name, const Values&... values)
{
    for (const auto backend : {DataAccess::Enumerations::SQLite3, DataAccess::Enumerations::Postgres}) {
        const bool isFile = backend == DataAccess::Enumerations::SQLite3;
        QTestData& row = QTest::addRow("%s, %s", isFile ? "SQLite" : "PostgreSQL", qPrintable(name));
        row << static_cast<int>(backend);
        (row << ... << values);
    }
}

} // namespace TestSupport
