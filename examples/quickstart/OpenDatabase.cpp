#include "OpenDatabase.h"

#include "database/DatabaseConfig.h"
#include "database/Failure.h"
#include "facade/DataAccessFacade.h"

#include <QFile>
#include <QUuid>

#include <stdexcept>

using namespace DataAccess;

namespace {

[[noreturn]] void fail(const QString& reason)
{
    throw std::runtime_error(reason.toLocal8Bit().constData());
}

bool isLegacyFile(const QString& path)
{
    static const QByteArray signature("** This file contains an SQLite 2.1 database **");
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(signature.size()) == signature;
}

} // namespace

OpenDatabase::OpenDatabase(const QString& path)
{
    const bool isLegacy = isLegacyFile(path);
    if (isLegacy)
        m_workingCopy = path + QStringLiteral(".sqlite3");
    auto config = std::make_shared<Database::DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(path);
    config->SetType(isLegacy ? Enumerations::SQLite2 : Enumerations::SQLite3);
    m_config = config;

    const auto facade = DataAccessFacade::Instance();
    QString newer;
    const auto connection = QObject::connect(facade.get(), &DataAccessFacade::migrationError,
                                             [&newer](const QString& message) { newer = message; });
    m_manager = facade->AddDatabase(m_config);
    QObject::disconnect(connection);
    if (!m_manager)
        fail(facade->LastError(m_config));
    if (!newer.isEmpty()) {
        facade->RemoveDatabase(m_config);
        fail(newer);
    }
    network().reload();
    measurements().reload();
    measurements().loadFiles();
}

OpenDatabase::~OpenDatabase()
{
    DataAccessFacade::Instance()->RemoveDatabase(m_config);
}

void OpenDatabase::save() const
{
    const Database::FailureWatch watch;
    QString reason;
    const auto onFailure = [&reason](const QString& failure) { reason = failure; };
    const auto network =
        QObject::connect(m_manager->CableContext().get(), &Context::CableContext::savingFailed, onFailure);
    const auto measurements =
        QObject::connect(m_manager->PdContext().get(), &Context::PdContext::savingFailed, onFailure);
    m_manager->CableContext()->saveChanges();
    m_manager->PdContext()->saveChanges();
    QObject::disconnect(network);
    QObject::disconnect(measurements);
    if (!reason.isEmpty())
        fail(reason + QStringLiteral("; ") + watch.reason());
}
