#pragma once

#include "database/IDatabase.h"

#include <QObject>

#include <memory>
#include <mutex>

namespace DataAccess::Database {

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

    /// Takes the connection along to @p thread; called before the object itself is moved there.
    void moveConnectionToThread(QThread* thread);
    /// Closes the connection and leaves the calling thread; called there when it ends.
    void leaveThread();

private:
    std::unique_lock<std::recursive_mutex> lockConnection() const;
    void requireValid() const;
    bool open();
    void requireOpen();
    void resetQuery();
    /// Runs a text on a query of its own.
    QSqlQuery run(const QString& sql, bool forwardOnly);
    [[noreturn]] void fail(const QSqlQuery& query);

    std::shared_ptr<SharedConnection> m_connection;
    std::shared_ptr<Interfaces::IConfig> m_config;
    QSqlQuery m_query;
    /// What m_query is prepared with; null when it is not known.
    QString m_prepared;
};

} // namespace DataAccess::Database
