#include "migration/SchemaChange.h"

#include "database/DbException.h"
#include "database/IDatabase.h"
#include "database/backends/SchemaDialect.h"
#include "migration/private/SchemaVersion.h"
#include "migration/private/TableAttachments.h"

#include <QSqlRecord>

#include <algorithm>

namespace DataAccess::Manager {

namespace {

[[noreturn]] void breakOff()
{
    throw Exceptions::ExecutionException("the step is broken off");
}

QString dropStatement(const QString& table)
{
    return QStringLiteral("DROP TABLE \"%1\" ;").arg(table);
}

} // namespace

struct SchemaChange::Data
{
    const MigrationModule& module;
    const quint32 version;
    QStringList& messages;
    std::shared_ptr<Interfaces::IValueConverter> converter;
    TableAttachments attachments;
};

SchemaChange::SchemaChange(Interfaces::IDatabase& db, const MigrationModule& module, quint32 version,
                           QStringList& messages)
    : StatementRunner(db)
    , m_data(std::make_unique<Data>(Data{module, version, messages, db.Converter(), TableAttachments(*this)}))
{}

SchemaChange::~SchemaChange() = default;

const MigrationStep& SchemaChange::step() const
{
    return m_data->module.steps.at(static_cast<int>(m_data->version));
}

const TableDefinition& SchemaChange::before(const QString& table) const
{
    return m_data->module.layout(table, m_data->version);
}

const TableDefinition& SchemaChange::after(const QString& table) const
{
    return m_data->module.layout(table, m_data->version + 1);
}

QStringList SchemaChange::tables() const
{
    return database().Tables();
}

bool SchemaChange::hasColumns(const TableDefinition& layout)
{
    const QSqlRecord present = database().Exec(QStringLiteral("SELECT * FROM %1 WHERE 1=0").arg(layout.name)).record();
    return std::all_of(layout.columns.begin(), layout.columns.end(),
                       [&](const Column& column) { return present.contains(column.name); });
}

QString SchemaChange::createStatement(const TableDefinition& table) const
{
    TableDefinition possible = table;
    if (dialect().needsReferencedTables()) {
        for (const QString& clause : possible.removeReferencesExceptTo(tables()))
            qCWarning(m_data->module.category) << "Table:" << table.name << "is created without" << clause;
    }
    return possible.statementParts(*m_data->converter).join(QLatin1Char(' '));
}

void SchemaChange::createVersionTables()
{
    for (const TableDefinition& table : SchemaVersion::tables())
        createTable(table);
    // Settings tables from elsewhere may have rows and no sequence for new ones.
    if (!dialect().completeSequence(*this, QStringLiteral("features")))
        breakOff();
}

void SchemaChange::createTable(const TableDefinition& table)
{
    if (tables().contains(table.name))
        return;
    const QString statement = createStatement(table);
    bool hasSequence = false;
    // The name that stands in the log since there are migrations.
    runPart("unsigned int DataAccess::Manager::AbstractMigrationManager::createTable(DataAccess::Interfaces::"
            "IDatabase&, const QStringList&, QStringList&, const QString&)",
            [&] {
                database().Exec(statement);
                hasSequence = dialect().createSequence(*this, table.name);
            });
    if (!hasSequence)
        breakOff();
}

void SchemaChange::createTables()
{
    for (const TableDefinition& table : step().layouts)
        createTable(table);
}

void SchemaChange::create(const TableDefinition& table)
{
    execute(createStatement(table));
}

void SchemaChange::discard(const QString& table)
{
    const qint64 rows = count(table);
    dropCopied(table);
    tellDiscarded(table, rows);
}

void SchemaChange::empty(const QString& table)
{
    tellDiscarded(table, execute(QStringLiteral("DELETE FROM ") + table, {}));
}

void SchemaChange::dropCopied(const QString& table)
{
    m_data->attachments.detachForeignKeys(table, TableAttachments::Rows::Discarded);
    execute(dropStatement(table));
}

void SchemaChange::replace(const TableDefinition& layout)
{
    m_data->attachments.remember(layout.name);
    m_data->attachments.detachForeignKeys(layout.name, TableAttachments::Rows::Kept);
    execute(dropStatement(layout.name));
    create(layout);
}

void SchemaChange::tellDiscarded(const QString& table, qint64 rows) const
{
    if (rows > 0)
        qCWarning(m_data->module.category) << "Discarded" << rows << "rows of" << table;
}

void SchemaChange::rebuild(const QString& table, const QString& save, const QString& restore,
                           const std::function<void()>& afterwards)
{
    const TableDefinition& layout = after(table);
    if (hasColumns(layout))
        return;
    const TableDefinition work = before(table).workTable(table + QStringLiteral("_tmp"));
    create(work);
    execute(save);
    replace(layout);
    execute(restore);
    if (afterwards)
        afterwards();
    dropCopied(work.name);
}

void SchemaChange::runPart(const char* name, const std::function<void()>& part)
{
    try {
        part();
    } catch (const std::exception& error) {
        m_data->module.tellFailure(QString::fromLatin1(name), error);
        breakOff();
    }
}

void SchemaChange::addMessage(const QString& message)
{
    m_data->messages.append(message);
}

void SchemaChange::restoreAttachments()
{
    for (const QString& lost : m_data->attachments.restore())
        qCWarning(m_data->module.category).noquote() << "Lost with the old layout of its table:" << lost;
    for (const QString& foreignKey : m_data->attachments.attachForeignKeys())
        qCWarning(m_data->module.category) << "Foreign key lost:" << foreignKey;
}

} // namespace DataAccess::Manager
