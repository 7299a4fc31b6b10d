#include "migration/pd/PdMigrationManager.h"

#include "database/LoggingCategories.h"
#include "migration/MigrationModule.h"
#include "migration/MigrationStep.h"
#include "migration/pd/PdTables.h"

namespace DataAccess::Manager {

PdMigrationManager::PdMigrationManager(QObject* parent)
    : AbstractMigrationManager(parent)
{}

PdMigrationManager::~PdMigrationManager() = default;

const MigrationModule& PdMigrationManager::module() const
{
    static const MigrationModule pd{
        QStringLiteral("PdVersion"), 8, lcMigrationPd,
        QStringLiteral("bool __cdecl DataAccess::Manager::PdMigrationManager::Migrate(void) "), PdTables::names()};
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
                                 const Copy& copy)
{
    const QStringList tables = step.tables();
    const bool waiting = tables.contains(copy.workName);
    const bool missing = !tables.contains(to.name);
    if (waiting && !missing) {
        const QString doubles = QStringLiteral("DELETE FROM %1 WHERE id IN (SELECT id FROM %2)");
        step.tellDiscarded(copy.workName, step.execute(doubles.arg(copy.workName, to.name), {}));
    }
    if (waiting && missing) {
        step.create(to);
    } else if (step.hasColumns(to)) {
        qCWarning(lcMigrationPd) << "Table:" << to.name << "already exists!";
        if (!waiting)
            return;
    } else {
        TableDefinition work = from;
        work.name = copy.workName;
        createUnlessPresent(step, work, "already exists!");
        if (!step.rows(copy.select).isEmpty())
            step.execute(copy.save);
        step.replace(to);
    }
    if (!step.rows(QStringLiteral("SELECT id FROM ") + copy.workName).isEmpty())
        step.execute(copy.restore);
    step.dropCopied(copy.workName);
}

} // namespace DataAccess::Manager
