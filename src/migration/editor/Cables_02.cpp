#include "migration/SchemaChange.h"

#include <QUuid>

namespace DataAccess::Manager::EditorSteps {

namespace {

void extendStations(SchemaChange& schema)
{
    schema.rebuild(
        QStringLiteral("ce_station"),
        QStringLiteral("INSERT INTO ce_station_tmp SELECT id, name, city, point, snap, deleted, timestamp "
                       "FROM ce_station"),
        QStringLiteral("INSERT INTO ce_station SELECT id, name, city, point, snap, deleted, timestamp, NULL, "
                       "NULL FROM ce_station_tmp"));
}

/// Gives each segment a detail of its own with the properties that the segment had.
void createDetails(SchemaChange& schema)
{
    const StatementRunner::Rows segments = schema.rows(
        QStringLiteral("SELECT id, name, velocity, insulation, type, snap, deleted, timestamp FROM ce_segment_tmp"));
    if (segments.isEmpty())
        return;
    QVector<QVariantList> details(9);
    QVector<QVariantList> references(2);
    for (const QVariantList& segment : segments) {
        const QVariant id = QUuid::createUuid().toString();
        const QVariantList detail{id,    segment.at(1), segment.at(2), segment.at(3), segment.at(4),
                                  false, segment.at(5), segment.at(6), segment.at(7)};
        for (int column = 0; column < detail.size(); ++column)
            details[column].append(detail.at(column));
        references[0].append(id);
        references[1].append(segment.at(0));
    }
    schema.executeBatch(QStringLiteral("INSERT INTO ce_segment_detail values (?, ?, ?, ?, ?, ?, ?, ?, ?)"), details);
    schema.executeBatch(QStringLiteral("UPDATE ce_segment SET \"detail\" = :detail WHERE id = :id"), references);
}

void moveSegmentProperties(SchemaChange& schema)
{
    schema.rebuild(
        QStringLiteral("ce_segment"),
        QStringLiteral("INSERT INTO ce_segment_tmp SELECT id, name, velocity, insulation, phase, type, point, "
                       "snap, deleted, length, indexnumber, timestamp FROM ce_segment"),
        QStringLiteral("INSERT INTO ce_segment SELECT id, name, indexnumber, length, phase, point, NULL, "
                       "snap, deleted, timestamp FROM ce_segment_tmp"),
        [&schema] { createDetails(schema); });
}

void changeCables(SchemaChange& schema)
{
    schema.rebuild(QStringLiteral("ce_cable"),
                   QStringLiteral("INSERT INTO ce_cable_tmp SELECT id, number, voltage*1000, installationdate, "
                                  "diagnosticstate, city, stationa, stationb, terminationa, terminationb, switchgeara, "
                                  "switchgearb, route, owner, snap, deleted, cablestate, comment, length, timestamp "
                                  "FROM ce_cable"),
                   QStringLiteral("INSERT INTO ce_cable SELECT id, number, voltage, installationdate, diagnosticstate, "
                                  "city, stationa, stationb, terminationa, terminationb, switchgeara, switchgearb, "
                                  "route, owner, '0', snap, deleted, cablestate, comment, length, timestamp "
                                  "FROM ce_cable_tmp"));
}

} // namespace

void Cables_02(SchemaChange& schema)
{
    extendStations(schema);
    schema.createTable(schema.after(QStringLiteral("ce_segment_detail")));
    moveSegmentProperties(schema);
    changeCables(schema);
}

} // namespace DataAccess::Manager::EditorSteps
