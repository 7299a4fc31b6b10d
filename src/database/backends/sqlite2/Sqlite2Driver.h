#pragma once

#include <QSqlDatabase>
#include <QSqlDriver>

namespace DataAccess::Database::Sqlite2 {

/**
 * The Qt SQL driver "QSQLITE2": opens a database file of SQLite 2, through a working copy beside it that Qt's own
 * SQLite driver reads and writes. Statements are those of SQLite 3.
 *
 * Used on one thread at a time, like every driver; may be moved between threads with QObject::moveToThread().
 */
class Sqlite2Driver : public QSqlDriver
{
    Q_OBJECT
public:
    explicit Sqlite2Driver(QObject* parent = nullptr);
    ~Sqlite2Driver() override;

    /// Makes Qt SQL know the driver, unless it has one of this name already. Callable at any time from any thread.
    static void registerDriver();

    /// @p path is that of the legacy file; of the others, only @p options mean anything: those of "QSQLITE". Makes the
    /// working copy at the first opening. A failure leaves a connection error with the whole message in lastError().
    bool open(const QString& path, const QString& user, const QString& password, const QString& host, int port,
              const QString& options) override;
    void close() override;

    bool hasFeature(DriverFeature feature) const override;
    QSqlResult* createResult() const override;
    bool beginTransaction() override;
    bool commitTransaction() override;
    bool rollbackTransaction() override;
    /// Without the table that holds the origin of the working copy.
    QStringList tables(QSql::TableType type) const override;
    QSqlRecord record(const QString& tableName) const override;
    QSqlIndex primaryIndex(const QString& tableName) const override;
    QString formatValue(const QSqlField& field, bool trimStrings) const override;
    QString escapeIdentifier(const QString& identifier, IdentifierType type) const override;
    QVariant handle() const override;

private:
    QSqlDriver& inner() const { return *m_connection.driver(); }
    bool done(bool success);

    QSqlDatabase m_connection;
};

} // namespace DataAccess::Database::Sqlite2
