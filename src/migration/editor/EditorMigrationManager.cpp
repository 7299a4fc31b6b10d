#include "migration/editor/EditorMigrationManager.h"

#include "database/IDatabase.h"
#include "database/LoggingCategories.h"
#include "entities/qor/QorUuidHelpers.h"
#include "migration/MigrationModule.h"
#include "migration/SchemaVersion.h"
#include "migration/StatementRunner.h"
#include "migration/editor/EditorTables.h"
#include "migration/editor/VersionEvidence.h"

#include <exception>

namespace DataAccess::Manager {

namespace {

const MigrationModule& editor()
{
    static const MigrationModule module{QStringLiteral("CablesVersion"), 9, lcMigrationEditor, QString(),
                                        EditorTables::names()};
    return module;
}

} // namespace

EditorMigrationManager::EditorMigrationManager(QObject* parent)
    : AbstractMigrationManager(parent)
{}

EditorMigrationManager::~EditorMigrationManager() = default;

const MigrationModule& EditorMigrationManager::module() const
{
    return editor();
}

bool EditorMigrationManager::Migrate()
{
    m_messages.clear();
    return AbstractMigrationManager::Migrate();
}

bool EditorMigrationManager::isNewerThanThisBuild(Interfaces::IDatabase& db)
{
    StatementRunner statements(db);
    return SchemaVersion(editor().feature).read(statements) > editor().expectedVersion;
}

QVector<EditorMigrationManager::Step> EditorMigrationManager::steps()
{
    // The steps of the evaluations came between those of the cables; the versions in the field count on that order.
    return {[this] { return Cables_01(); }, [this] { return Cables_02(); },     [this] { return Cables_03(); },
            [this] { return Cables_04(); }, [this] { return Evaluation_01(); }, [this] { return Evaluation_02(); },
            [this] { return Cables_05(); }, [this] { return Cables_06(); },     [this] { return Cables_07(); }};
}

void EditorMigrationManager::requireCredible(MigrationStep& step, quint32 version)
{
    VersionEvidence::require(step, version);
}

unsigned int EditorMigrationManager::setUuidAsId(Interfaces::IDatabase& db, const QString& tableName)
{
    try {
        StatementRunner statements(db);
        // The column holds text, which PostgreSQL does not compare with a number.
        const QString literal = statements.isPostgres() ? QStringLiteral("'%1'") : QStringLiteral("%1");
        for (const QVariantList& row : statements.rows(QStringLiteral("SELECT id FROM %1").arg(tableName))) {
            const QString id = row.first().toString();
            const qint64 number = id.toLongLong();
            if (QString::number(number) != id)
                continue;
            statements.execute(
                QStringLiteral("UPDATE %1 SET \"id\" = :id WHERE id = %2").arg(tableName, literal.arg(number)),
                {{QStringLiteral(":id"), QOR::Entities::QorUuidHelpers::uuidFromInt(number).toString()}});
        }
        return 0;
    } catch (const std::exception& error) {
        editor().tellFailure("unsigned int __cdecl DataAccess::Manager::EditorMigrationManager::setUuidAsId(class "
                             "DataAccess::Interfaces::IDatabase &,const class QString &)",
                             error);
        return 1;
    }
}

} // namespace DataAccess::Manager
