#include "database/backends/sqlite2/Sqlite2Driver.h"

#include "database/backends/SqliteFamily.h"
#include "database/backends/sqlite2/LegacyFileError.h"
#include "database/backends/sqlite2/WorkingCopy.h"

#include <QSqlError>
#include <QSqlField>
#include <QSqlIndex>
#include <QSqlRecord>
#include <QStringList>
#include <QVariant>

#include <mutex>

namespace DataAccess::Database::Sqlite2 {

Sqlite2Driver::Sqlite2Driver(QObject* parent)
    : QSqlDriver(parent)
    , m_connection(PrivateConnection())
{
    // A child moves between threads with its parent. The connection, a member, deletes it before the parent would.
    if (m_connection.isValid())
        inner().setParent(this);
}

Sqlite2Driver::~Sqlite2Driver() = default;

void Sqlite2Driver::registerDriver()
{
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock(mutex);
    const QString name = QStringLiteral("QSQLITE2");
    if (!QSqlDatabase::drivers().contains(name))
        QSqlDatabase::registerSqlDriver(name, new QSqlDriverCreator<Sqlite2Driver>);
}

bool Sqlite2Driver::open(const QString& path, const QString&, const QString&, const QString&, int,
                         const QString& options)
{
    close();
    setLastError(QSqlError());
    try {
        WorkingCopy copy(path);
        copy.prepare();
        m_connection.setDatabaseName(copy.path());
    } catch (const LegacyFileError& error) {
        setLastError(QSqlError(error.text(), QString(), QSqlError::ConnectionError));
        setOpenError(true);
        return false;
    }
    m_connection.setConnectOptions(options);
    const bool opened = done(m_connection.open());
    setOpen(opened);
    setOpenError(!opened);
    return opened;
}

void Sqlite2Driver::close()
{
    m_connection.close();
    setOpen(false);
    setOpenError(false);
}

bool Sqlite2Driver::hasFeature(DriverFeature feature) const
{
    // Notifications come from the inner driver, whose signals nobody sees.
    return feature != EventNotifications && inner().hasFeature(feature);
}

QSqlResult* Sqlite2Driver::createResult() const
{
    inner().setNumericalPrecisionPolicy(numericalPrecisionPolicy());
    return inner().createResult();
}

bool Sqlite2Driver::beginTransaction()
{
    return done(inner().beginTransaction());
}

bool Sqlite2Driver::commitTransaction()
{
    return done(inner().commitTransaction());
}

bool Sqlite2Driver::rollbackTransaction()
{
    return done(inner().rollbackTransaction());
}

bool Sqlite2Driver::done(bool success)
{
    if (!success)
        setLastError(inner().lastError());
    return success;
}

QStringList Sqlite2Driver::tables(QSql::TableType type) const
{
    QStringList names = inner().tables(type);
    names.removeAll(legacyOriginTable);
    return names;
}

QSqlRecord Sqlite2Driver::record(const QString& tableName) const
{
    return inner().record(tableName);
}

QSqlIndex Sqlite2Driver::primaryIndex(const QString& tableName) const
{
    return inner().primaryIndex(tableName);
}

QString Sqlite2Driver::formatValue(const QSqlField& field, bool trimStrings) const
{
    return inner().formatValue(field, trimStrings);
}

QString Sqlite2Driver::escapeIdentifier(const QString& identifier, IdentifierType type) const
{
    return inner().escapeIdentifier(identifier, type);
}

QVariant Sqlite2Driver::handle() const
{
    return inner().handle();
}

} // namespace DataAccess::Database::Sqlite2
