#pragma once

#include "database/IDatabase.h"

#include <QObject>

#include <memory>
#include <mutex>

namespace DataAccess::Database {

class Backend;
class SharedConnection;

/**
 * The one object through which SQL reaches a database: a connection of Qt SQL, made from a configuration.
 *
 * Constructed on any thread, then used by one thread at a time. Databases whose configurations name the same connection
 * share it. Failures are logged in the category "qor.database" and thrown as DbException.
 */
class DATAACCESS_EXPORT Database : public QObject, public Interfaces::IDatabase
{
    Q_OBJECT

public:
    /// Registers or reuses the connection of @p config without opening it; never throws. Shares @p config.
    explicit Database(std::shared_ptr<Interfaces::IConfig> config, QObject* parent = nullptr);
    ~Database() override;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    bool IsOpen() override;
    bool IsBusy() override;
    bool Connect() override;
    bool Disconnect() override;
    bool Exec(QSqlQuery& query) override;
    QSqlQuery Exec(const QString& sql) override;
    bool ExecBatch(QSqlQuery& query) override;
    QStringList Tables() override;
    std::shared_ptr<Interfaces::IConfig> Config() override;
    /// Logs and reports why, when the transaction cannot be started.
    ::DataAccess::Database::Transaction Transaction() override;
    std::shared_ptr<Interfaces::IValueConverter> Converter() override;
    std::shared_ptr<Interfaces::IValueConverter> Converter(QSqlQuery& query) override;
    QSqlQuery& Query() override;
    quint64 NextId(const QString& table) override;
    bool CreateSequence(const QString& name) override;
    bool IsValid() const override;
    bool WasBlockedByStartup() const override;
    void BeginJob() override;
    void EndJob() override;
    QString OpenError() const override;
    QSqlQuery& PreparedQuery(const QString& statement) override;
    std::unique_ptr<Interfaces::IRowReader> Read(const QString& sql) override;
    std::unique_ptr<Interfaces::IRowWriter> Write(const QString& statement, std::function<void()> written) override;
    ::DataAccess::Database::Transaction WriteTransaction() override;

    /// Takes the connection along to @p thread; called before the object itself is moved there.
    void moveConnectionToThread(QThread* thread);
    /// Closes the connection and leaves the calling thread; called there when it ends.
    void leaveThread();

private:
    std::unique_lock<std::recursive_mutex> lockConnection() const;
    /// That of the configuration.
    const Backend& backend() const;
    /// Throws InvalidDbException, and logs, when the handle is not valid.
    void requireValid() const;
    /// Whether the connection is open and, as far as is known without asking, has not been ended by the server.
    bool isConnected() const;
    /// Opens the connection, which is closed or was ended. Prepared statements are lost.
    bool reopen();
    /// Ends the rows that are under way. Throws DbException when the current transaction was lost.
    void settle();
    /// Makes a statement possible: opens the connection, and ends rows that are under way. Prepares @p query again when
    /// that takes a new connection. Throws DbException, also when the transaction of the statement was lost.
    void requireReady(QSqlQuery* query = nullptr);
    /// Whether the last statement has found a connection dead on which nothing else was under way: if it has changed
    /// nothing, it may be tried once more.
    bool hasFoundDead();
    void resetQuery();
    std::unique_ptr<Interfaces::IRowReader> read(const QString& sql);
    /// Starts a transaction with @p statement, or as the driver does when that is empty.
    ::DataAccess::Database::Transaction begin(const QString& statement);
    [[noreturn]] void fail(const QSqlQuery& query);

    std::shared_ptr<SharedConnection> m_connection;
    std::shared_ptr<Interfaces::IConfig> m_config;
    QSqlQuery m_query;
    /// The statement that m_query is prepared with; null when it is not known.
    QString m_prepared;
    /// Whether m_query is of no use, as the connection could not be opened.
    bool m_isWithoutConnection = false;
};

} // namespace DataAccess::Database
