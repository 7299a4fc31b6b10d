#include "Invocation.h"
#include "OpenedDatabase.h"
#include "database/backends/Backend.h"
#include "transfer/DatabaseCopy.h"
#include "transfer/private/TableRows.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QSqlQuery>

using namespace DataAccess;
using Transfer::SchemaTable;

namespace {

struct TableInfo
{
    QString name;
    qint64 live = 0;
    qint64 deleted = 0;
    qint64 snapshots = 0;
};

/// A legacy schema may lack a column that later versions have.
QStringList columnsOf(Interfaces::IDatabase& db, const QString& table)
{
    QStringList columns;
    QSqlQuery query = db.Exec(Database::Backend::of(db).columnSearch().arg(table));
    while (query.next())
        columns.append(query.value(0).toString());
    return columns;
}

class Inspection
{
public:
    explicit Inspection(Interfaces::IDatabase& db)
        : m_db(db)
    {
        const Transfer::Snapshot snapshot(db);
        const QStringList present = db.Tables();
        for (const SchemaTable& table : Transfer::schemaTables()) {
            if (present.contains(table.name))
                inspect(table);
        }
    }

    const QVector<TableInfo>& tables() const { return m_tables; }
    const QString& lastChange() const { return m_lastChange; }

private:
    void inspect(const SchemaTable& table)
    {
        const QString source = QStringLiteral(" FROM ") + Transfer::quoted(table.name);
        const QStringList columns = columnsOf(m_db, table.name);
        const Database::Backend& backend = Database::Backend::of(m_db);
        const auto flag = [&](const char* name) {
            const QString column = QString::fromLatin1(name);
            return columns.contains(column) ? backend.isTrue().arg(column) : QStringLiteral("0 = 1");
        };
        QSqlQuery query = m_db.Exec(QStringLiteral("SELECT count(*), coalesce(sum(CASE WHEN %1 THEN 1 ELSE 0 END), 0), "
                                                   "coalesce(sum(CASE WHEN (%2) AND NOT (%1) THEN 1 ELSE 0 END), 0)")
                                        .arg(flag("snap"), flag("deleted")) +
                                    source);
        query.next();
        TableInfo info{table.name, 0, query.value(2).toLongLong(), query.value(1).toLongLong()};
        info.live = query.value(0).toLongLong() - info.deleted - info.snapshots;
        m_tables.append(info);
        query.finish();
        if (!columns.contains(QStringLiteral("timestamp")))
            return;
        m_lastChange = qMax(m_lastChange, Transfer::scalar(m_db, backend.lastTime().arg(table.name)).toString());
    }

    Interfaces::IDatabase& m_db;
    QVector<TableInfo> m_tables;
    QString m_lastChange;
};

QString typeName(const DatabaseAddress& address)
{
    return address.isPostgres() ? QStringLiteral("PostgreSQL")
           : address.isLegacy() ? QStringLiteral("SQLite 2 (legacy)")
                                : QStringLiteral("SQLite 3");
}

void printText(const Invocation& invocation, const QJsonObject& document)
{
    for (const char* key : {"database", "type", "server", "bytes", "lastChange"}) {
        const QJsonValue value = document.value(QLatin1String(key));
        if (!value.isUndefined())
            invocation.print(QStringLiteral("%1 %2").arg(QLatin1String(key), -12).arg(value.toVariant().toString()));
    }
    for (const QJsonValue& value : document.value(QLatin1String("schemas")).toArray())
        invocation.print(QStringLiteral("%1 version %2, expected %3")
                             .arg(value[QLatin1String("feature")].toString(), -12)
                             .arg(value[QLatin1String("found")].toInt())
                             .arg(value[QLatin1String("expected")].toInt()));
    if (document.value(QLatin1String("unfinishedCopy")).toBool())
        invocation.print(
            QStringLiteral("A copy into this database was broken off: \"dataaccess copy --resume\" completes it."));
    invocation.print(QStringLiteral("\n%1 %2 %3 %4")
                         .arg(QStringLiteral("table"), -20)
                         .arg(QStringLiteral("live"), 10)
                         .arg(QStringLiteral("deleted"), 10)
                         .arg(QStringLiteral("snapshots"), 10));
    for (const QJsonValue& table : document.value(QLatin1String("tables")).toArray())
        invocation.print(QStringLiteral("%1 %2 %3 %4")
                             .arg(table[QLatin1String("name")].toString(), -20)
                             .arg(table[QLatin1String("live")].toVariant().toLongLong(), 10)
                             .arg(table[QLatin1String("deleted")].toVariant().toLongLong(), 10)
                             .arg(table[QLatin1String("snapshots")].toVariant().toLongLong(), 10));
}

ExitCode info(const Invocation& invocation)
{
    OpenedDatabase opened(DatabaseAddress::parse(invocation.argument(0)), OpenedDatabase::Access::Read, invocation);
    Interfaces::IDatabase& db = opened.database();
    QJsonObject document{{QStringLiteral("database"), opened.address().text},
                         {QStringLiteral("type"), typeName(opened.address())},
                         {QStringLiteral("unfinishedCopy"), Transfer::hasUnfinishedCopy(db)}};
    if (opened.address().isPostgres()) {
        document.insert(QStringLiteral("server"),
                        Transfer::scalar(db, QStringLiteral("SHOW server_version")).toString());
        document.insert(
            QStringLiteral("bytes"),
            Transfer::scalar(db, QStringLiteral("SELECT pg_database_size(current_database())")).toLongLong());
    } else {
        document.insert(QStringLiteral("bytes"),
                        QFileInfo(DatabaseAddress::parse(invocation.argument(0)).path()).size());
    }
    QJsonArray schemas;
    for (const Transfer::SchemaState& schema : opened.direct().schemas())
        schemas.append(QJsonObject{{QStringLiteral("feature"), schema.feature},
                                   {QStringLiteral("found"), static_cast<qint64>(schema.found)},
                                   {QStringLiteral("expected"), static_cast<qint64>(schema.expected)}});
    document.insert(QStringLiteral("schemas"), schemas);
    const Inspection inspection(db);
    QJsonArray tables;
    for (const TableInfo& table : inspection.tables())
        tables.append(QJsonObject{{QStringLiteral("name"), table.name},
                                  {QStringLiteral("live"), table.live},
                                  {QStringLiteral("deleted"), table.deleted},
                                  {QStringLiteral("snapshots"), table.snapshots}});
    document.insert(QStringLiteral("tables"), tables);
    if (!inspection.lastChange().isEmpty())
        document.insert(QStringLiteral("lastChange"), inspection.lastChange());
    printText(invocation, document);
    invocation.answer(document);
    return Succeeded;
}

} // namespace

Command infoCommand()
{
    return {QStringLiteral("info"),
            QStringLiteral("Show type, size, schema versions, rows and last change of a database"),
            QStringLiteral("DB"),
            QStringLiteral("Changes nothing and needs only the right to read. The last change is in UTC.\n\n"
                           "Examples:\n"
                           "  dataaccess info network.vbk\n"
                           "  dataaccess info --json postgresql://reader@server/network\n"),
            {},
            1,
            1,
            &info};
}
