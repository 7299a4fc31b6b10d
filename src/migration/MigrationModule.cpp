#include "migration/MigrationModule.h"

#include "database/DbException.h"
#include "database/Failure.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"

#include <stdexcept>
#include <utility>

namespace DataAccess::Manager {

namespace {

QStringList names(const char* list)
{
    return QString::fromLatin1(list).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// The last layout of @p table in the first @p count of @p steps; null without one.
const TableDefinition* lastLayout(const QVector<MigrationStep>& steps, quint32 count, const QString& table)
{
    const TableDefinition* last = nullptr;
    for (quint32 i = 0; i < count; ++i) {
        for (const TableDefinition& layout : steps.at(static_cast<int>(i)).layouts) {
            if (layout.name == table)
                last = &layout;
        }
    }
    return last;
}

} // namespace

MigrationStep::MigrationStep(const char* stepName, Changes function, const char* description,
                             QVector<TableDefinition> newLayouts, const char* discarded, const char* rewritten)
    : name(QString::fromLatin1(stepName))
    , changes(function)
    , text(QString::fromLatin1(description))
    , layouts(std::move(newLayouts))
    , discards(names(discarded))
    , rewrites(names(rewritten))
{}

MigrationModule::MigrationModule(const char* settingsRow, Category logCategory, const char* stepInLog,
                                 const char* linePrefix, QVector<MigrationStep> allSteps)
    : feature(QString::fromLatin1(settingsRow))
    , category(logCategory)
    , signature(QString::fromLatin1(stepInLog))
    , logPrefix(QString::fromLatin1(linePrefix))
    , steps(std::move(allSteps))
{
    quint32 version = 0;
    for (MigrationStep& step : steps) {
        for (const TableDefinition& layout : qAsConst(step.layouts)) {
            if (lastLayout(steps, version, layout.name) != nullptr)
                step.rewrites.append(layout.name);
        }
        step.feature = feature;
        step.version = ++version;
    }
}

const TableDefinition& MigrationModule::layout(const QString& table, quint32 version) const
{
    const TableDefinition* const last = lastLayout(steps, version, table);
    if (last == nullptr)
        throw std::logic_error("no step has given the table a layout");
    return *last;
}

QStringList MigrationModule::tables() const
{
    QStringList all;
    for (const MigrationStep& step : steps) {
        all += step.discards + step.rewrites;
        for (const TableDefinition& layout : step.layouts)
            all.append(layout.name);
    }
    all.removeDuplicates();
    return all;
}

void MigrationModule::tellFailure(const QString& function, const std::exception& error) const
{
    using Database::Failure;
    const QString reason = QString::fromLocal8Bit(error.what());
    qCWarning(category).noquote() << function << reason;
    Failure failure;
    failure.reason = reason;
    const auto* const failed = dynamic_cast<const Exceptions::DbException*>(&error);
    if (failed != nullptr && failed->isUnavailable())
        failure.kind = Failure::Kind::Unavailable;
    Database::FailureWatch::report(failure);
}

QVector<const MigrationModule*> migrationModules()
{
    return {&EditorMigrationManager::schema(), &PdMigrationManager::schema()};
}

} // namespace DataAccess::Manager
