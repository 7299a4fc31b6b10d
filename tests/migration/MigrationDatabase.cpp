#include "migration/MigrationDatabase.h"

#include "database/IDatabase.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSqlQuery>
#include <QSqlRecord>

using DataAccess::Interfaces::IDatabase;

namespace TestSupport {

namespace {

/// The file of a family, a statement a line.
const QString& textOf(MigrationDatabase::Family family)
{
    static const auto read = [](const char* name) {
        QFile file(QStringLiteral(DATAACCESS_SOURCE_DIR "/tests/migration/%1_versions.sql").arg(QLatin1String(name)));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s cannot be read", qPrintable(file.fileName()));
        return QString::fromUtf8(file.readAll()).replace(QStringLiteral("\n "), QStringLiteral(" "));
    };
    static const QString editor = read("editor");
    static const QString pd = read("pd");
    return family == MigrationDatabase::Editor ? editor : pd;
}

QString shown(const QVariant& value)
{
    if (value.isNull())
        return QStringLiteral("NULL");
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::Bool:
        return QString::number(value.toInt());
    case QMetaType::QByteArray:
        return QStringLiteral("hex:") + QString::fromLatin1(value.toByteArray().toHex());
    case QMetaType::QDateTime:
        return value.toDateTime().date().toString(Qt::ISODate) + QLatin1Char(' ') +
               value.toDateTime().time().toString(QStringLiteral("HH:mm:ss.zzz"));
    default:
        return value.toString();
    }
}

QStringList read(IDatabase& db, const QString& select)
{
    QStringList rows;
    QSqlQuery query = db.Exec(select);
    while (query.next()) {
        QStringList row;
        for (int column = 0; column < query.record().count(); ++column)
            row.append(shown(query.value(column)));
        rows.append(row.join(QLatin1Char('|')));
    }
    return rows;
}

} // namespace

int MigrationDatabase::currentVersion(Family family)
{
    static const QRegularExpression format(QStringLiteral("^current (\\d+)$"), QRegularExpression::MultilineOption);
    return format.match(textOf(family)).captured(1).toInt();
}

MigrationDatabase::MigrationDatabase(Family family, int version, CableBook cableBook)
    : m_family(family)
    , m_version(version)
    , m_cableBook(cableBook)
{
    if (family == Editor)
        m_manager = std::make_unique<DataAccess::Manager::EditorMigrationManager>();
    else
        m_manager = std::make_unique<DataAccess::Manager::PdMigrationManager>();
    m_manager->setDbWorker(m_worker.get());
    m_worker.run([&](IDatabase& db) {
        for (const auto& statement : statements(false)) {
            db.Exec(statement.first);
            static const QRegularExpression withSequence(QStringLiteral("^CREATE TABLE (\\w+)"));
            const QRegularExpressionMatch match = withSequence.match(statement.first);
            if (match.hasMatch())
                db.CreateSequence(match.captured(1));
        }
    });
}

/// Puts in what the names and the column types of the file stand for.
QString MigrationDatabase::translated(QString text) const
{
    // SQLite keeps a reference to a missing table.
    const bool reference = isFile() || m_cableBook == With;
    const QVector<QPair<const char*, const char*>> words{
        {"\\$features", "id INT8, name VARCHAR(28), type CHAR(1), module VARCHAR(28), temp_changeable BOOL, "
                        "changeable BOOL, admin BOOL, PRIMARY KEY (id))"},
        {"\\$end", "snap BOOL, deleted BOOL, timestamp TIME, PRIMARY KEY (id))"},
        {"\\$cable", "id TEXT, number TEXT, voltage NUM, installationdate DATE, diagnosticstate INT4, city TEXT, "
                     "stationa TEXT, stationb TEXT, terminationa TEXT, terminationb TEXT, switchgeara TEXT, "
                     "switchgearb TEXT, route TEXT, owner TEXT"},
        {"\\$evaluation", "id INT8, mid INT8, tid TEXT, cid TEXT, comment TEXT, evaluation TEXT, manual INT4, "
                          "oldcable INT4, eventselectionmodel INT4, timestamp TIME DEFAULT CURRENT_TIMESTAMP, "
                          "PRIMARY KEY (id), $measures FOREIGN KEY (cid) REFERENCES ce_cable(id) ON DELETE CASCADE)"},
        {"\\$ratings", "id, mid, tid, cid, comment, evaluation, automatic, oldcable, eventselectionmodel, modeid, "
                       "measuretime FROM qor_rating ORDER BY id"},
        {"\\$measures\\b", reference ? "FOREIGN KEY (mid) REFERENCES measures(id) ON DELETE CASCADE," : ""},
        {"\\$measureid", reference ? "REFERENCES measures(id)" : ""},
        {"\\$image", !isFile() ? "'\\x01ff00'" : "X'01ff00'"},
        {"\\$time", "2020-03-08 02:30:00.123"},
        {"\\$section", "{3308519a-3368-40fb-8371-9b4e39bf4cb2}"},
        {"\\$pe", "{e4ceb74c-b03e-409d-8493-fd7aaa01162e}"},
        {"\\$mixed", "{672aa7b2-cd8d-4e48-a0a6-63530c5b0124}"},
        {"\\$unknown", "{a9e63935-52ba-467d-8b82-d1ab111192f8}"},
        {"\\$joints", "{45c6c0b5-f2d4-338e-d0db-4737fb6cc0a7}"},
        {"\\bINT4\\b", "INTEGER"},
        {"\\bINT8\\b", !isFile() ? "BIGINT" : "INTEGER"},
        {"\\bBOOL\\b", !isFile() ? "BOOLEAN" : "INTEGER"},
        {"\\bNUM\\b", !isFile() ? "NUMERIC" : "REAL"},
        {"\\bTIME\\b", !isFile() ? "TIMESTAMP" : "TEXT"},
        {"\\bDATE\\b", !isFile() ? "DATE" : "TEXT"},
        {"\\bBYTES\\b", !isFile() ? "BYTEA" : "TEXT"},
        {"\\b((?:VAR)?CHAR\\(\\d+\\))", !isFile() ? "\\1" : "TEXT"}};
    for (const auto& word : words)
        text.replace(QRegularExpression(QLatin1String(word.first)), QLatin1String(word.second));
    return text.replace(QStringLiteral("$version"), QString::number(m_version))
        .replace(QStringLiteral("$current"), QString::number(currentVersion(m_family)));
}

/// The statements of the file for this database: those that make it, or those that say what becomes of it.
QVector<QPair<QString, QString>> MigrationDatabase::statements(bool expectations) const
{
    static const QRegularExpression format(QStringLiteral("^(-?\\d+)-(\\d*) (with |without )?(.*?)(?: => (.*))?$"),
                                           QRegularExpression::MultilineOption);
    const QString limit = m_cableBook == With ? QStringLiteral("without ") : QStringLiteral("with ");
    QVector<QPair<QString, QString>> found;
    for (auto matches = format.globalMatch(textOf(m_family)); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const bool hasEnded = !match.captured(2).isEmpty() && m_version > match.captured(2).toInt();
        if (m_version >= match.captured(1).toInt() && !hasEnded && match.captured(3) != limit &&
            expectations == !match.captured(5).isNull())
            found.append({translated(match.captured(4)), translated(match.captured(5))});
    }
    return found;
}

void MigrationDatabase::execute(const QStringList& texts)
{
    m_worker.run([&](IDatabase& db) {
        for (const QString& text : texts)
            db.Exec(text);
    });
}

QString MigrationDatabase::rows(const QString& select)
{
    return m_worker.run([&](IDatabase& db) { return read(db, select); }).join(QStringLiteral("; "));
}

QStringList MigrationDatabase::contentOf(RunningWorker& worker)
{
    return worker.run([](IDatabase& db) {
        QStringList all;
        for (const QString& table : db.Tables()) {
            for (const QString& row : read(db, QStringLiteral("SELECT * FROM \"%1\"").arg(table)))
                all.append(table + QLatin1Char(' ') + row);
        }
        all.sort();
        return all;
    });
}

QStringList MigrationDatabase::content()
{
    return contentOf(m_worker);
}

QStringList MigrationDatabase::backupContent()
{
    const int version = currentVersion(m_family);
    QStringList all;
    if (!isFile()) {
        const QRegularExpression copy(
            QStringLiteral("^(\\w+) before %1 %2 \\d{8}T\\d{6} ").arg(m_manager->feature()).arg(version));
        for (QString row : content().filter(copy))
            all.append(row.replace(copy, QStringLiteral("\\1 ")));
        return all;
    }
    const QFileInfo original(m_database.name());
    const QRegularExpression copy(
        QStringLiteral("^test\\.before-%1-%2-\\d{8}T\\d{6}\\.vbk$").arg(m_manager->feature()).arg(version));
    for (const QFileInfo& file : original.dir().entryInfoList(QDir::Files | QDir::Hidden)) {
        if (file == original || file.fileName().startsWith(original.fileName() + QLatin1Char('-')))
            continue;
        const auto config = m_database.config();
        config->SetDatabaseName(file.filePath());
        RunningWorker copied(config);
        all += copy.match(file.fileName()).hasMatch() && file.permissions() == original.permissions()
                   ? contentOf(copied)
                   : QStringList(file.fileName());
    }
    return all;
}

QStringList MigrationDatabase::schema()
{
    QStringList all = m_worker.run([this](IDatabase& db) {
        if (isFile())
            return read(db, QStringLiteral("SELECT m.name, p.* FROM sqlite_master AS m "
                                           "JOIN pragma_table_info(m.name) AS p WHERE m.type = 'table'")) +
                   read(db, QStringLiteral("SELECT m.name, p.\"from\", p.\"table\", p.\"to\", p.on_delete "
                                           "FROM sqlite_master AS m JOIN pragma_foreign_key_list(m.name) AS p"));
        return read(db, QStringLiteral("SELECT table_name, ordinal_position, column_name, data_type, "
                                       "character_maximum_length, column_default, is_nullable "
                                       "FROM information_schema.columns WHERE table_schema = 'public'")) +
               read(db, QStringLiteral("SELECT conrelid::regclass::text, replace(pg_get_constraintdef(oid), "
                                       "' NOT VALID', '') FROM pg_constraint WHERE conrelid <> 0")) +
               read(db, QStringLiteral("SELECT sequencename FROM pg_sequences"));
    });
    all.sort();
    return all.filter(QRegularExpression(
        QStringLiteral("^(?!.* before )\"?(ce_(?!.*_tmp)|feature|evaluation|qor_rating|cablebook|pd_)"),
        QRegularExpression::CaseInsensitiveOption));
}

QStringList MigrationDatabase::faults()
{
    QStringList found;
    for (const auto& statement : statements(true)) {
        const QString actual = rows(statement.first);
        if (actual != statement.second)
            found.append(statement.first + QLatin1Char('\n') + actual);
    }
    return found;
}

void MigrationDatabase::forbid(const QString& event, const QString& table, const QString& condition)
{
    const QString when = condition.isEmpty() ? QString() : QStringLiteral("WHEN (%1)").arg(condition);
    if (!isFile())
        execute({QStringLiteral("CREATE OR REPLACE FUNCTION forbid() RETURNS trigger LANGUAGE plpgsql AS "
                                "$$ BEGIN RAISE EXCEPTION 'in the way'; END $$")});
    execute({QStringLiteral("CREATE TRIGGER forbid_%1 BEFORE %1 ON %2 FOR EACH ROW %3 %4")
                 .arg(event, table, when,
                      isFile() ? QStringLiteral("BEGIN SELECT RAISE(ABORT, 'in the way'); END")
                               : QStringLiteral("EXECUTE FUNCTION forbid()"))});
}

void MigrationDatabase::allow(const QString& event, const QString& table)
{
    execute({QStringLiteral("DROP TRIGGER forbid_%1 %2")
                 .arg(event, isFile() ? QString() : QStringLiteral("ON %1").arg(table))});
}

void MigrationDatabase::migrateWithoutVersion(int version)
{
    const QString defaults = QStringLiteral("feature_defaults");
    const QStringList events{QStringLiteral("INSERT"), QStringLiteral("UPDATE")};
    for (const QString& event : events)
        forbid(event, defaults, QStringLiteral("NEW.value = '%1'").arg(version));
    QVERIFY(!m_manager->Migrate());
    QCOMPARE(m_manager->DbVersion(), static_cast<quint32>(version - 1));
    for (const QString& event : events)
        allow(event, defaults);
}

} // namespace TestSupport
