#include "migration/pd/PdMigrationManager.h"

#include "database/LoggingCategories.h"
#include "migration/MigrationModule.h"
#include "migration/MigrationStep.h"

namespace DataAccess::Manager {

PdMigrationManager::PdMigrationManager(QObject* parent)
    : AbstractMigrationManager(parent)
{}

PdMigrationManager::~PdMigrationManager() = default;

const MigrationModule& PdMigrationManager::module() const
{
    static const MigrationModule pd{
        QStringLiteral("PdVersion"), 8, lcMigrationPd,
        QStringLiteral("bool __cdecl DataAccess::Manager::PdMigrationManager::Migrate(void) ")};
    return pd;
}

QVector<PdMigrationManager::Step> PdMigrationManager::steps()
{
    return {[this] { return Pd_01(); }, [this] { return Pd_02(); }, [this] { return Pd_03(); },
            [this] { return Pd_04(); }, [this] { return Pd_05(); }, [this] { return Pd_06(); },
            [this] { return Pd_07(); }, [this] { return Pd_08(); }};
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
