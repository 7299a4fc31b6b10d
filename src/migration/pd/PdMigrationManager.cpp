#include "migration/pd/PdMigrationManager.h"

#include "database/LoggingCategories.h"
#include "migration/MigrationModule.h"
#include "migration/MigrationStep.h"

namespace DataAccess::Manager {

namespace {

constexpr quint32 expectedVersion = 8;

} // namespace

PdMigrationManager::PdMigrationManager(QObject* parent)
    : AbstractMigrationManager(parent)
{}

PdMigrationManager::~PdMigrationManager() = default;

const MigrationModule& PdMigrationManager::module() const
{
    static const MigrationModule pd{
        QStringLiteral("PdVersion"), lcMigrationPd,
        QStringLiteral("bool __cdecl DataAccess::Manager::PdMigrationManager::Migrate(void) ")};
    return pd;
}

void PdMigrationManager::setDbWorker(Database::DbWorker* worker)
{
    m_worker = worker;
}

quint32 PdMigrationManager::DbVersion() const
{
    return readVersion();
}

quint32 PdMigrationManager::InvalidVersion() const
{
    return s_invalidVersion;
}

quint32 PdMigrationManager::ExpectedVersion() const
{
    return expectedVersion;
}

bool PdMigrationManager::WaitForConnected()
{
    return AbstractMigrationManager::WaitForConnected(m_worker);
}

bool PdMigrationManager::Migrate()
{
    return migrate({[this] { return Pd_01(); }, [this] { return Pd_02(); }, [this] { return Pd_03(); },
                    [this] { return Pd_04(); }, [this] { return Pd_05(); }, [this] { return Pd_06(); },
                    [this] { return Pd_07(); }, [this] { return Pd_08(); }});
}

quint32 PdMigrationManager::MigrationSteps() const
{
    const quint32 version = DbVersion();
    return version <= expectedVersion ? expectedVersion - version : 0;
}

QString PdMigrationManager::feature()
{
    return module().feature;
}

QStringList PdMigrationManager::migrationMessages()
{
    return m_messages;
}

void PdMigrationManager::createUnlessPresent(MigrationStep& step, const TableDefinition& table, const char* existsText)
{
    if (step.tables().contains(table.name))
        qCWarning(lcMigrationPd) << "Table:" << table.name << existsText;
    else
        step.create(table);
}

void PdMigrationManager::rebuild(MigrationStep& step, const TableDefinition& from, const TableDefinition& to,
                                 const QString& workName, const QString& save, const QString& restore)
{
    const QStringList tables = step.tables();
    const bool leftOver = tables.contains(workName);
    const bool missing = !tables.contains(to.name);
    const bool emptied = !missing && step.hasColumns(to) &&
                         step.rows(QStringLiteral("SELECT id FROM %1 LIMIT 1").arg(to.name)).isEmpty();
    if (leftOver && (missing || emptied)) {
        if (missing)
            step.create(to);
        step.execute(restore);
    } else if (step.hasColumns(to)) {
        qCWarning(lcMigrationPd) << "Table:" << to.name << "already exists!";
    } else {
        step.rebuild(from, to, workName, save, restore);
    }
    if (leftOver)
        step.discard(workName);
}

} // namespace DataAccess::Manager
