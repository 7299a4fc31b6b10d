#include "database/backends/Backend.h"

#include "database/DbException.h"
#include "database/IDatabase.h"

#include <QSqlDatabase>

#include <algorithm>

namespace DataAccess::Database {

namespace {

/// Stands in for the backend of a type that has none.
const Backend& unknown()
{
    struct Unknown final : Backend
    {
        Unknown()
            : Backend(Enumerations::None)
        {}
    };
    static const Unknown backend;
    return backend;
}

} // namespace

Backend::~Backend() = default;

const Backend& Backend::of(Enumerations::DatabaseType type)
{
    for (const Backend* const backend : all()) {
        if (backend->m_type == type)
            return *backend;
    }
    return unknown();
}

const Backend& Backend::of(Interfaces::IDatabase& db)
{
    const auto config = db.Config();
    return of(config ? config->Type() : Enumerations::None);
}

const Backend& Backend::of(const QSqlDatabase& connection)
{
    for (const Backend* const backend : all()) {
        if (backend->drives(*connection.driver()))
            return *backend;
    }
    return unknown();
}

QString Backend::errorText(const QSqlError& error)
{
    for (const Backend* const backend : all()) {
        const QString text = backend->textWithoutValues(error);
        if (!text.isNull())
            return text;
    }
    return error.text();
}

bool Backend::isUnavailable(const QSqlError& error)
{
    if (error.nativeErrorCode().isEmpty())
        return error.type() == QSqlError::ConnectionError;
    return std::any_of(all().begin(), all().end(),
                       [&](const Backend* backend) { return backend->tellsUnavailable(error); });
}

bool Backend::hasTransaction(QSqlDatabase& connection) const
{
    return connection.isOpen();
}

QString Backend::position(const QString& part, const QString& whole) const
{
    return QStringLiteral("position(%1 in %2)").arg(part, whole);
}

std::shared_ptr<Interfaces::IValueConverter> Backend::converter(QSqlQuery&) const
{
    return nullptr;
}

std::unique_ptr<Interfaces::IRowReader> Backend::reader(const QSqlDriver&, const QString&) const
{
    return nullptr;
}

std::unique_ptr<Interfaces::IRowWriter> Backend::writer(QSqlQuery&, const QString&, const std::function<void()>&,
                                                        Session&, const std::function<void()>&) const
{
    return nullptr;
}

const SchemaDialect& Backend::schemaDialect() const
{
    throw Exceptions::ExecutionException("databases of this type cannot be migrated");
}

} // namespace DataAccess::Database
