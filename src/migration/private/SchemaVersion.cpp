#include "migration/private/SchemaVersion.h"

#include "database/DbException.h"
#include "database/IDatabase.h"
#include "database/StatementRunner.h"
#include "migration/MigrationModule.h"

#include <QDateTime>
#include <QMap>
#include <QSet>
#include <QSqlRecord>

#include <algorithm>
#include <utility>

namespace DataAccess::Manager {

namespace {

/// A table, or a column of it, and the version of the step that has to do with it.
struct Mark
{
    quint32 version;
    QString table;
    QString column = {};
};

/// What each step creates that was not there before.
QVector<Mark> created(const MigrationModule& module)
{
    QVector<Mark> marks;
    QMap<QString, QStringList> known;
    for (const MigrationStep& step : module.steps) {
        for (const TableDefinition& layout : step.layouts) {
            const bool isNew = !known.contains(layout.name);
            if (isNew)
                marks.append({step.version, layout.name});
            QStringList& columns = known[layout.name];
            for (const Column& column : layout.columns) {
                if (!isNew && !columns.contains(column.name))
                    marks.append({step.version, layout.name, column.name});
                columns.append(column.name);
            }
        }
    }
    return marks;
}

/// Where each step deletes rows.
QVector<Mark> emptied(const MigrationModule& module)
{
    QVector<Mark> marks;
    for (const MigrationStep& step : module.steps) {
        for (const QString& table : step.discards)
            marks.append({step.version, table});
    }
    return marks;
}

/// What is there of the marks whose step is later than @p version: each table or column, if its table has rows.
QStringList presentAfter(quint32 version, const QVector<Mark>& marks, StatementRunner& statements)
{
    QStringList found;
    if (marks.isEmpty())
        return found;
    const QStringList tables = statements.database().Tables();
    for (const Mark& mark : marks) {
        for (const QString& table : tables) {
            if (mark.version <= version || table.compare(mark.table, Qt::CaseInsensitive) != 0)
                continue;
            const QString select = QStringLiteral("SELECT * FROM \"%1\" LIMIT 1").arg(table);
            if (statements.rows(select).isEmpty())
                continue;
            if (mark.column.isEmpty())
                found.append(table);
            else if (statements.database().Exec(select).record().contains(mark.column))
                found.append(table + QLatin1Char('.') + mark.column);
        }
    }
    found.removeDuplicates();
    return found;
}

} // namespace

SchemaVersion::SchemaVersion(QString feature)
    : m_feature(std::move(feature))
{}

QVector<TableDefinition> SchemaVersion::tables()
{
    const auto varChar = [](const char* name, unsigned int size) {
        return Column{QString::fromLatin1(name), Enumerations::VarChar, size};
    };
    return {
        {QStringLiteral("features"),
         {Columns::integer("id", 8),
          varChar("name", 28),
          {QStringLiteral("type"), Enumerations::Char, 1},
          varChar("module", 28),
          Columns::boolean("temp_changeable"),
          Columns::boolean("changeable"),
          Columns::boolean("admin")},
         {QStringLiteral("PRIMARY KEY( id )")}},
        {QStringLiteral("feature_defaults"),
         {{QStringLiteral("featureid"), Enumerations::Integer, 8, QStringLiteral("REFERENCES features(id)")},
          varChar("value", 44),
          Columns::timeStamp("changed_at")},
         {QStringLiteral("PRIMARY KEY( featureid )")}},
    };
}

quint32 SchemaVersion::read(StatementRunner& statements) const
{
    const QStringList existing = statements.database().Tables();
    if (!existing.contains(QStringLiteral("features")) || !existing.contains(QStringLiteral("feature_defaults")))
        return 0;
    const StatementRunner::Rows rows = statements.rows(
        QStringLiteral(
            "SELECT d.value FROM \"features\" AS f LEFT JOIN \"feature_defaults\" AS d ON d.featureid = f.id "
            "WHERE f.name = '%1' AND f.module = '' AND f.type = 'I'")
            .arg(m_feature));
    return rows.isEmpty() ? 0 : static_cast<quint32>(rows.first().first().toString().toLongLong());
}

bool SchemaVersion::hasTraces(StatementRunner& statements) const
{
    const auto rowsOf = [&](const char* settings, const char* columns) {
        StatementRunner::Rows all;
        for (const QString& table : statements.database().Tables()) {
            if (table.compare(QLatin1String(settings), Qt::CaseInsensitive) == 0)
                all += statements.rows(QStringLiteral("SELECT %1 FROM \"%2\"").arg(QLatin1String(columns), table));
        }
        return all;
    };
    QSet<QString> ids;
    for (const QVariantList& row : rowsOf("features", "CAST(id AS TEXT), CAST(name AS TEXT)")) {
        const QString name = row.at(1).toString().simplified().remove(QLatin1Char(' '));
        if (name.contains(m_feature, Qt::CaseInsensitive))
            return true;
        ids.insert(row.first().toString());
    }
    const StatementRunner::Rows values = rowsOf("feature_defaults", "CAST(featureid AS TEXT)");
    return std::any_of(values.begin(), values.end(),
                       [&](const QVariantList& row) { return !ids.contains(row.first().toString()); });
}

void SchemaVersion::write(StatementRunner& statements, quint32 version) const
{
    const QVariant name = m_feature;
    const StatementRunner::Rows found =
        statements.rows(QStringLiteral("SELECT id FROM \"features\" WHERE name = :name AND module = '' AND type = 'I'"),
                        {{QStringLiteral(":name"), name}});
    qint64 id = 0;
    if (!found.isEmpty()) {
        id = found.first().first().toLongLong();
    } else {
        id = static_cast<qint64>(statements.database().NextId(QStringLiteral("features")));
        statements.execute(
            QStringLiteral("INSERT INTO \"features\" (id, name, type, module, temp_changeable, changeable, admin) "
                           "VALUES (:id, :name, :type, :module, :temp_changeable, :changeable, :admin)"),
            {{QStringLiteral(":id"), id},
             {QStringLiteral(":name"), name},
             {QStringLiteral(":type"), QStringLiteral("I")},
             {QStringLiteral(":module"), QStringLiteral("")},
             {QStringLiteral(":temp_changeable"), false},
             {QStringLiteral(":changeable"), false},
             {QStringLiteral(":admin"), false}});
    }
    const QString now = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
    const StatementRunner::Values values{{QStringLiteral(":featureid"), id},
                                         {QStringLiteral(":value"), QString::number(version)},
                                         {QStringLiteral(":changed_at"), now}};
    if (statements.execute(QStringLiteral("UPDATE \"feature_defaults\" SET value = :value, changed_at = :changed_at "
                                          "WHERE featureid = :featureid"),
                           values) > 0)
        return;
    statements.execute(QStringLiteral("INSERT INTO \"feature_defaults\" (featureid, value, changed_at) "
                                      "VALUES (:featureid, :value, :changed_at)"),
                       values);
}

void SchemaVersion::requireCredible(const MigrationModule& module, quint32 version, StatementRunner& statements)
{
    const QString endangered = presentAfter(version, emptied(module), statements).join(QStringLiteral(", "));
    if (endangered.isEmpty())
        return;
    // The next step may have been done without its version being stored.
    const QStringList later = presentAfter(version + 1, created(module), statements);
    QString contradiction;
    if (!later.isEmpty())
        contradiction = QStringLiteral("later steps have made %1").arg(later.join(QStringLiteral(", ")));
    else if (version == 0 && SchemaVersion(module.feature).hasTraces(statements))
        contradiction = QStringLiteral("the settings tables have had a version");
    else
        return;
    const QString text =
        QStringLiteral(
            "%1 reads as %2, which cannot be: %3. To go on would discard rows of %4, so nothing was changed. "
            "Restore the version (in features a row with the name '%1', the module '' and the type 'I', in "
            "feature_defaults its value, a number) or the database from a backup; delete the rows first if "
            "they are of no use.")
            .arg(module.feature, QString::number(version), contradiction, endangered);
    throw Exceptions::ExecutionException(text.toLocal8Bit().constData());
}

} // namespace DataAccess::Manager
