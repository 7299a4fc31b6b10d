#include "DatabaseCheck.h"

#include "SchemaCheck.h"
#include "context/CableContext.h"
#include "database/IDatabase.h"
#include "database/backends/Backend.h"
#include "entities/cables/Insulation.h"
#include "entities/cables/SegmentDetail.h"
#include "entities/cables/SegmentType.h"
#include "transfer/private/TableRows.h"

#include <QImage>
#include <QJsonDocument>
#include <QSet>
#include <QSqlQuery>
#include <QTextCodec>
#include <QUuid>

using namespace DataAccess;
using Transfer::quoted;
using Transfer::SchemaColumn;
using Transfer::SchemaReference;
using Transfer::SchemaTable;

namespace {

const QString s_nullId = QUuid().toString();

/// The ids of the types that every context adds where they are missing: a reference to one dangles only until then.
QString defaultIds()
{
    static const QString list = [] {
        const auto types = Context::CableContext::defaultTypes();
        QStringList ids;
        const auto add = [&](const auto& entities) {
            for (const auto& entity : entities)
                ids.append(QLatin1Char('\'') + entity->Id().toString() + QLatin1Char('\''));
        };
        add(types.insulations);
        add(types.segmentTypes);
        add(types.segmentDetails);
        return ids.join(QLatin1Char(','));
    }();
    return list;
}

/// Rows that are marked deleted may refer to what is gone.
QString aliveCondition(Interfaces::IDatabase& db, const SchemaTable& table)
{
    return table.has(QStringLiteral("deleted"))
               ? QStringLiteral("NOT (%1)").arg(Database::Backend::of(db).isTrue().arg(QStringLiteral("a.deleted")))
               : QStringLiteral("1 = 1");
}

bool isId(const QString& text)
{
    return !QUuid::fromString(text).isNull();
}

} // namespace

DatabaseCheck::DatabaseCheck(Interfaces::IDatabase& db, bool isDeep)
    : m_db(db)
    , m_isDeep(isDeep)
{}

void DatabaseCheck::add(const char* fault, const QString& table, const QString& id, const QString& column,
                        const QString& text)
{
    m_findings.append({QString::fromLatin1(fault), table, id, column, text, {}, {}});
}

void DatabaseCheck::addRepairable(const char* fault, const QString& table, const QString& id, const QString& column,
                                  const QString& text, const QString& value)
{
    add(fault, table, id, column, text);
    m_findings.last().value = value;
    m_findings.last().repair = QStringLiteral("UPDATE %1 SET %2 = :value WHERE %3 = :id")
                                   .arg(quoted(table), quoted(column), quoted(Transfer::schemaTable(table)->key));
}

QVector<Finding> DatabaseCheck::run(const Progress& progress)
{
    m_findings.clear();
    const Transfer::Snapshot snapshot(m_db);
    checkSchema();
    checkVersions();
    const QVector<SchemaTable>& tables = Transfer::schemaTables();
    for (int i = 0; i < tables.size(); ++i) {
        const SchemaTable& table = tables.at(i);
        if (!progress(i, tables.size()))
            throw Transfer::Cancelled();
        if (!isComplete(table.name))
            continue;
        if (table.hasUuid())
            checkIds(table);
        for (const SchemaReference& reference : table.references) {
            if (!reference.isList && isComplete(reference.table))
                checkReference(table, reference);
        }
        checkValues(table);
        if (m_isDeep)
            checkTexts(table);
    }
    checkContents();
    return m_findings;
}

void DatabaseCheck::checkSchema()
{
    const QStringList present = m_db.Tables();
    for (const SchemaTable& table : Transfer::schemaTables()) {
        if (!present.contains(table.name)) {
            add("table missing", table.name, {}, {}, QStringLiteral("the table is missing"));
            continue;
        }
        const QVector<SchemaFault> faults = schemaFaults(m_db, table);
        bool isReadable = true;
        for (const SchemaFault& fault : faults) {
            add(fault.fault, table.name, {}, fault.column, fault.text);
            isReadable = isReadable && !fault.isColumnMissing;
        }
        if (isReadable)
            m_complete.append(table.name);
    }
    if (present.contains(QStringLiteral("dataaccess_copy")))
        add("copy unfinished", {}, {}, {}, QStringLiteral("a copy into this database was broken off"));
}

void DatabaseCheck::checkVersions()
{
    for (const char* feature : {"CablesVersion", "PdVersion"}) {
        const QString name = QString::fromLatin1(feature);
        QSqlQuery query =
            m_db.Exec(QStringLiteral("SELECT d.value FROM features AS f LEFT JOIN feature_defaults AS d "
                                     "ON d.featureid = f.id WHERE f.name = '%1' AND f.module = '' AND f.type = 'I'")
                          .arg(name));
        int rows = 0;
        while (query.next())
            ++rows;
        if (rows != 1)
            add("version rows", QStringLiteral("features"), {}, {},
                QStringLiteral("%1 has %2 rows in place of one").arg(name).arg(rows));
    }
}

void DatabaseCheck::checkIds(const SchemaTable& table)
{
    const QString key = quoted(table.key);
    QSqlQuery odd =
        m_db.Exec(QStringLiteral("SELECT %1 FROM %2 WHERE %1 IS NULL OR %1 <> lower(%1) OR length(%1) <> 38 "
                                 "OR %1 = '%3' OR %1 NOT LIKE '{________-____-____-____-____________}'")
                      .arg(key, quoted(table.name), s_nullId));
    QStringList ids;
    while (odd.next())
        ids.append(odd.value(0).toString());
    odd.finish();
    for (const QString& id : ids) {
        if (!isId(id)) {
            add("id invalid", table.name, id, table.key, QStringLiteral("the id is none"));
            continue;
        }
        const QString lower = QUuid(id).toString();
        const bool isDoubled =
            Transfer::scalar(
                m_db,
                QStringLiteral("SELECT count(*) FROM %1 WHERE lower(%2) = '%3'").arg(quoted(table.name), key, lower))
                .toInt() > 1;
        if (!isDoubled)
            addRepairable("id in capitals", table.name, id, table.key, QStringLiteral("the id has capitals"), lower);
    }
    QSqlQuery doubled = m_db.Exec(
        QStringLiteral("SELECT lower(%1) FROM %2 GROUP BY lower(%1) HAVING count(*) > 1").arg(key, quoted(table.name)));
    while (doubled.next())
        add("id doubled", table.name, doubled.value(0).toString(), table.key,
            QStringLiteral("several rows have this id"));
}

void DatabaseCheck::checkReference(const SchemaTable& table, const SchemaReference& reference)
{
    const QString from = quoted(table.name);
    const QString column = QStringLiteral("a.") + quoted(reference.column);
    const QString key = QStringLiteral("a.") + quoted(table.columns.front().name);
    const QString target = quoted(reference.table);
    const QString set = QStringLiteral("%1 IS NOT NULL AND %1 <> '' AND %1 <> '%2'").arg(column, s_nullId);
    QSqlQuery capitals = m_db.Exec(
        QStringLiteral("SELECT %1, %2 FROM %3 AS a WHERE %4 AND %2 <> lower(%2)").arg(key, column, from, set));
    while (capitals.next()) {
        const QString id = capitals.value(0).toString();
        const QString value = capitals.value(1).toString();
        const QString text = QStringLiteral("the reference has capitals");
        if (isId(value) && !table.key.isEmpty())
            addRepairable("reference in capitals", table.name, id, reference.column, text, QUuid(value).toString());
        else
            add("reference in capitals", table.name, id, reference.column, text);
    }
    capitals.finish();
    const QString missing = QStringLiteral("NOT EXISTS (SELECT 1 FROM %1 AS b WHERE b.id = %2)");
    QSqlQuery dangling =
        m_db.Exec(QStringLiteral("SELECT %1 FROM %2 AS a WHERE %3 AND %4 AND %5 AND %6 AND lower(%7) NOT IN (%8)")
                      .arg(key, from, aliveCondition(m_db, table), set, missing.arg(target, column),
                           missing.arg(target, QStringLiteral("lower(%1)").arg(column)), column, defaultIds()));
    while (dangling.next())
        add("reference dangling", table.name, dangling.value(0).toString(), reference.column,
            QStringLiteral("it refers to no row of %1").arg(reference.table));
}

void DatabaseCheck::checkPointLists()
{
    QSet<QUuid> points;
    QSqlQuery query = m_db.Exec(QStringLiteral("SELECT id FROM ce_point"));
    while (query.next())
        points.insert(QUuid(query.value(0).toString()));
    query = m_db.Exec(
        QStringLiteral("SELECT id, points FROM ce_route AS a WHERE points IS NOT NULL AND points <> '' AND ") +
        aliveCondition(m_db, *Transfer::schemaTable(QStringLiteral("ce_route"))));
    while (query.next()) {
        for (const QString& part : query.value(1).toString().split(QLatin1Char('#'))) {
            const QUuid point(part);
            if (points.contains(point) || (point.isNull() && (part.isEmpty() || part == s_nullId)))
                continue;
            add(point.isNull() ? "points invalid" : "reference dangling", QStringLiteral("ce_route"),
                query.value(0).toString(), QStringLiteral("points"),
                point.isNull() ? QStringLiteral("the list holds something that is no id")
                               : QStringLiteral("it refers to no row of ce_point"));
            break;
        }
    }
}

void DatabaseCheck::checkRatings()
{
    QSqlQuery query =
        m_db.Exec(QStringLiteral(
                      "SELECT a.id FROM qor_rating AS a WHERE %1 AND (a.cid IS NULL OR a.cid = '' OR a.cid = '%2') AND "
                      "(a.tid IS NULL OR a.tid = '' OR a.tid = '%2') AND coalesce(a.mid, 0) = 0")
                      .arg(aliveCondition(m_db, *Transfer::schemaTable(QStringLiteral("qor_rating"))), s_nullId));
    while (query.next())
        add("rating without cable", QStringLiteral("qor_rating"), query.value(0).toString(), QStringLiteral("cid"),
            QStringLiteral("the rating belongs to no cable, task or measurement"));
}

void DatabaseCheck::checkValues(const SchemaTable& table)
{
    if (!Database::Backend::of(m_db).hasLooseColumns())
        return;
    const QString key = quoted(table.columns.front().name);
    for (const SchemaColumn& column : table.columns) {
        const QString name = quoted(column.name);
        SchemaTable single = table;
        single.columns = {column};
        QString condition = Transfer::foreignTypeCondition(m_db, single);
        if (column.kind == Enumerations::TimeStamp || column.kind == Enumerations::Date)
            condition = QStringLiteral("%1 IS NOT NULL AND %1 <> 'CURRENT_TIMESTAMP'").arg(name);
        else if (column.kind == Enumerations::Boolean)
            condition += QStringLiteral(" OR %1 NOT IN (0, 1)").arg(name);
        if (condition.isEmpty())
            continue;
        const auto reader =
            m_db.Read(QStringLiteral("SELECT %1, %2 FROM %3 WHERE %4").arg(key, name, quoted(table.name), condition));
        while (reader->next()) {
            Transfer::StoredValue value;
            const bool isTime = column.kind == Enumerations::TimeStamp || column.kind == Enumerations::Date;
            if (isTime && value.read(reader->row(), 1, column))
                continue;
            const QString id = reader->row().toString(0);
            const bool isNumber = column.kind == Enumerations::Boolean && !reader->row().toString(1).isEmpty() &&
                                  reader->row().toInt64(1) != 0;
            if (isNumber && !table.key.isEmpty())
                addRepairable("value does not convert", table.name, id, column.name,
                              QStringLiteral("the truth value is neither 0 nor 1"), QStringLiteral("1"));
            else
                add("value does not convert", table.name, id, column.name,
                    QStringLiteral("the value is not of the kind of its column"));
        }
    }
}

void DatabaseCheck::checkContents()
{
    if (isComplete(QStringLiteral("ce_route")) && isComplete(QStringLiteral("ce_point")))
        checkPointLists();
    if (isComplete(QStringLiteral("qor_rating"))) {
        checkRatings();
        checkDocuments("qor_rating", "evaluation");
    }
    if (isComplete(QStringLiteral("ce_station")))
        checkImages();
    if (isComplete(QStringLiteral("pd_evaluation")))
        checkDocuments("pd_evaluation", "evaluation");
    if (isComplete(QStringLiteral("pd_iec_overview"))) {
        checkDocuments("pd_iec_overview", "pdmaxcharges");
        checkDocuments("pd_iec_overview", "pdmedcharges");
    }
}

void DatabaseCheck::checkImages()
{
    Transfer::TableReader reader(m_db, *Transfer::schemaTable(QStringLiteral("ce_station")));
    const int last = Transfer::schemaTable(QStringLiteral("ce_station"))->columns.size() - 1;
    while (reader.next()) {
        const Transfer::StoredValue& image = reader.row().at(last);
        if (!image.isNull && QImage::fromData(QByteArray::fromBase64(image.text.toLatin1())).isNull())
            add("image unreadable", QStringLiteral("ce_station"), reader.row().front().text, QStringLiteral("image"),
                QStringLiteral("the image can't be read"));
    }
}

void DatabaseCheck::checkDocuments(const char* table, const char* column)
{
    const QString name = QString::fromLatin1(table);
    const auto reader = m_db.Read(QStringLiteral("SELECT %1, %2 FROM %3 WHERE %2 IS NOT NULL AND %2 <> ''")
                                      .arg(quoted(Transfer::schemaTable(name)->columns.front().name),
                                           quoted(QString::fromLatin1(column)), quoted(name)));
    while (reader->next()) {
        QJsonParseError error;
        QJsonDocument::fromJson(reader->row().toString(1).toUtf8(), &error);
        if (error.error != QJsonParseError::NoError)
            add("document unreadable", name, reader->row().toString(0), QString::fromLatin1(column),
                QStringLiteral("the document is no JSON"));
    }
}

void DatabaseCheck::checkTexts(const SchemaTable& table)
{
    if (!Database::Backend::of(m_db).hasLooseColumns())
        return;
    QTextCodec* const utf8 = QTextCodec::codecForName("UTF-8");
    for (const SchemaColumn& column : table.columns) {
        if (column.kind != Enumerations::Text)
            continue;
        const auto reader =
            m_db.Read(QStringLiteral("SELECT %1, CAST(%2 AS BLOB) FROM %3 WHERE typeof(%2) = 'text'")
                          .arg(quoted(table.columns.front().name), quoted(column.name), quoted(table.name)));
        QByteArray bytes;
        while (reader->next()) {
            reader->row().value(bytes, 1);
            QTextCodec::ConverterState state;
            const QString text = utf8->toUnicode(bytes.constData(), bytes.size(), &state);
            if (state.invalidChars > 0 || state.remainingChars > 0 || text.contains(QChar(QChar::Null)))
                add("text invalid", table.name, reader->row().toString(0), column.name,
                    QStringLiteral("the text is no UTF-8, or has NUL characters"));
        }
    }
}
