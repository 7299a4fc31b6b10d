#include "NetworkData.h"

#include "transfer/private/TableRows.h"

#include <QJsonDocument>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace DataAccess;
using Transfer::StoredValue;

namespace {

/// The rows of one table that are neither marked deleted nor snapshots, column by name.
class LiveRows
{
public:
    LiveRows(Interfaces::IDatabase& db, const char* table)
        : m_table(*Transfer::schemaTable(QString::fromLatin1(table)))
        , m_reader(db, m_table)
    {
        for (int i = 0; i < m_table.columns.size(); ++i)
            m_places.insert(m_table.columns.at(i).name.toLatin1(), i);
    }

    bool next()
    {
        while (m_reader.next()) {
            if (!flag("deleted") && !flag("snap"))
                return true;
        }
        return false;
    }

    QString text(const char* column) const { return at(column).text; }
    qint64 integer(const char* column) const { return at(column).integer; }
    double number(const char* column) const { return at(column).isNull ? 0 : at(column).number; }

private:
    const StoredValue& at(const char* column) const { return m_reader.row().at(m_places.value(column)); }
    bool flag(const char* column) const
    {
        return m_places.contains(column) && !at(column).isNull && at(column).integer != 0;
    }

    const Transfer::SchemaTable& m_table;
    Transfer::TableReader m_reader;
    QHash<QByteArray, int> m_places;
};

class Collector
{
public:
    explicit Collector(Interfaces::IDatabase& db)
        : m_db(db)
    {}

    NetworkData result()
    {
        for (CableRow& cable : m_cables) {
            std::sort(cable.phases.begin(), cable.phases.end(),
                      [](const PhaseRow& left, const PhaseRow& right) { return left.index < right.index; });
            m_data.cables.append(std::move(cable));
        }
        std::sort(m_data.cables.begin(), m_data.cables.end(), [](const CableRow& left, const CableRow& right) {
            return left.number == right.number ? left.id < right.id : left.number < right.number;
        });
        return std::move(m_data);
    }

    void readPlaces()
    {
        for (LiveRows rows(m_db, "ce_point"); rows.next();)
            m_data.points.insert(rows.text("id"), {rows.number("longitude"), rows.number("latitude")});
        for (LiveRows rows(m_db, "ce_station"); rows.next();)
            m_data.stations.insert(rows.text("id"),
                                   {rows.text("id"), rows.text("name"), rows.text("city"), rows.text("point")});
        for (LiveRows rows(m_db, "ce_route"); rows.next();)
            m_data.routes.insert(rows.text("id"), rows.text("points").split(QLatin1Char('#'), Qt::SkipEmptyParts));
    }

    void readKinds()
    {
        QHash<QString, bool> isJoint;
        QHash<QString, QString> types;
        for (LiveRows rows(m_db, "ce_segmenttype"); rows.next();) {
            isJoint.insert(rows.text("id"), rows.integer("isjoint") != 0);
            types.insert(rows.text("id"), rows.text("name"));
        }
        for (LiveRows rows(m_db, "ce_segment_detail"); rows.next();)
            m_data.details.insert(
                rows.text("id"), {rows.text("name"), types.value(rows.text("type")), isJoint.value(rows.text("type"))});
    }

    void readCables()
    {
        QHash<QString, QString> owners;
        for (LiveRows rows(m_db, "ce_owner"); rows.next();)
            owners.insert(rows.text("id"), rows.text("name"));
        for (LiveRows rows(m_db, "ce_cable"); rows.next();) {
            CableRow& cable = m_cables[rows.text("id")];
            cable.id = rows.text("id");
            cable.number = rows.text("number");
            cable.voltage = rows.number("voltage");
            cable.length = rows.number("length");
            cable.city = rows.text("city");
            cable.installed = rows.text("installationdate");
            cable.owner = owners.value(rows.text("owner"));
            cable.comment = rows.text("comment");
            cable.stationA = rows.text("stationa");
            cable.stationB = rows.text("stationb");
            cable.route = rows.text("route");
        }
    }

    void readPhases()
    {
        QHash<QString, QVector<SegmentRow>> segments;
        for (LiveRows rows(m_db, "ce_segment"); rows.next();)
            segments[rows.text("phase")].append({rows.text("id"), rows.integer("indexnumber"), rows.text("name"),
                                                 rows.number("length"), rows.text("detail")});
        for (LiveRows rows(m_db, "ce_phase"); rows.next();) {
            const auto cable = m_cables.find(rows.text("cable"));
            if (cable == m_cables.end())
                continue;
            PhaseRow phase{rows.text("id"), rows.integer("indexnumber"), segments.take(rows.text("id"))};
            std::sort(phase.segments.begin(), phase.segments.end(),
                      [](const SegmentRow& left, const SegmentRow& right) { return left.index < right.index; });
            cable->phases.append(phase);
        }
    }

    void readRatings()
    {
        for (LiveRows rows(m_db, "qor_rating"); rows.next();) {
            const auto cable = m_cables.find(rows.text("cid"));
            if (cable == m_cables.end() || rows.text("measuretime") < cable->ratingTime)
                continue;
            cable->ratingTime = rows.text("measuretime");
            cable->rating = QJsonDocument::fromJson(rows.text("evaluation").toUtf8()).object();
        }
    }

    void readTests()
    {
        QHash<QString, QPair<QString, TestRow>> tests; // by task, with the cable
        for (LiveRows rows(m_db, "pd_task"); rows.next();)
            tests.insert(rows.text("id"),
                         {rows.text("cable"), {rows.text("creationdate"), rows.text("tester"), {}, {}, {}}});
        for (LiveRows rows(m_db, "pd_report"); rows.next();) {
            const auto test = tests.find(rows.text("task"));
            if (test == tests.end() || rows.text("creationtimestamp") < test->second.reportTime)
                continue;
            test->second.report = rows.text("id");
            test->second.reportTime = rows.text("creationtimestamp");
        }
        QHash<QString, QVector<EventRow>> events;
        for (const auto& test : qAsConst(tests))
            events.insert(test.second.report, {});
        for (LiveRows rows(m_db, "pd_mapping_event"); rows.next();) {
            const auto list = events.find(rows.text("report_id"));
            if (list != events.end())
                list->append(
                    {rows.integer("phase"), rows.number("position"), rows.number("load"), rows.number("voltage")});
        }
        for (auto& test : tests) {
            const auto cable = m_cables.find(test.first);
            test.second.events = events.value(test.second.report);
            if (cable != m_cables.end())
                cable->tests.append(test.second);
        }
        for (CableRow& cable : m_cables)
            std::sort(cable.tests.begin(), cable.tests.end(), [](const TestRow& left, const TestRow& right) {
                return left.time == right.time ? left.report < right.report : left.time < right.time;
            });
    }

private:
    Interfaces::IDatabase& m_db;
    NetworkData m_data;
    QHash<QString, CableRow> m_cables;
};

double numberOr(const QJsonValue& value)
{
    return value.isDouble() ? value.toDouble() : std::numeric_limits<double>::quiet_NaN();
}

} // namespace

NetworkData NetworkData::read(Interfaces::IDatabase& db, const std::function<bool(qint64, qint64)>& progress)
{
    const Transfer::Snapshot snapshot(db);
    Collector collector(db);
    using Part = void (Collector::*)();
    const std::initializer_list<Part> parts = {&Collector::readPlaces, &Collector::readKinds,   &Collector::readCables,
                                               &Collector::readPhases, &Collector::readRatings, &Collector::readTests};
    qint64 done = 0;
    for (const Part part : parts) {
        if (!progress(done++, static_cast<qint64>(parts.size())))
            throw Transfer::Cancelled();
        (collector.*part)();
    }
    return collector.result();
}

double CableRow::ratingOf(qint64 phase, const QString& segment) const
{
    return numberOr(rating[QLatin1String("phases")][QString::number(phase)][QLatin1String("segments")][segment]);
}

double CableRow::worstRating() const
{
    double worst = std::numeric_limits<double>::quiet_NaN();
    for (const PhaseRow& phase : phases) {
        const double summary =
            numberOr(rating[QLatin1String("phases")][QString::number(phase.index)][QLatin1String("summary")]);
        worst = std::fmax(worst, summary);
    }
    return worst;
}

QVector<QPointF> NetworkData::wayOf(const CableRow& cable) const
{
    QVector<QPointF> way;
    for (const QString& point : routes.value(cable.route)) {
        if (points.contains(point))
            way.append(points.value(point));
    }
    if (way.size() > 1)
        return way;
    way.clear();
    for (const QString& station : {cable.stationA, cable.stationB}) {
        const QString point = stations.value(station).point;
        if (points.contains(point))
            way.append(points.value(point));
    }
    return way.size() > 1 ? way : QVector<QPointF>();
}
