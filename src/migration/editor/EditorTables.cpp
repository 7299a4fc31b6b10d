#include "migration/editor/EditorTables.h"

namespace DataAccess::Manager {

namespace {

using namespace Columns;

/// A table whose rows have an identifier of their own.
TableDefinition entityTable(const char* name, const QVector<Column>& columns)
{
    return {QString::fromLatin1(name), columns, {QStringLiteral("PRIMARY KEY( id )")}};
}

Column creationTime()
{
    Column column = timeStamp("timestamp");
    column.suffix = QStringLiteral("DEFAULT CURRENT_TIMESTAMP");
    return column;
}

TableDefinition cable(const Column& length)
{
    return entityTable("ce_cable", {text("id"),
                                    text("number"),
                                    numeric("voltage"),
                                    date("installationdate"),
                                    integer("diagnosticstate", 4),
                                    text("city"),
                                    text("stationa"),
                                    text("stationb"),
                                    text("terminationa"),
                                    text("terminationb"),
                                    text("switchgeara"),
                                    text("switchgearb"),
                                    text("route"),
                                    text("owner"),
                                    boolean("snap"),
                                    boolean("deleted"),
                                    integer("cablestate", 4),
                                    text("comment"),
                                    length,
                                    timeStamp("timestamp")});
}

} // namespace

TableDefinition EditorTables::station01()
{
    return entityTable("ce_station", {text("id"), text("name"), text("city"), text("point"), boolean("snap"),
                                      boolean("deleted"), timeStamp("timestamp")});
}

TableDefinition EditorTables::station02()
{
    TableDefinition table = station01();
    table.columns += {text("description"), bytes("image")};
    return table;
}

TableDefinition EditorTables::segment01()
{
    return entityTable("ce_segment", {text("id"), text("name"), integer("velocity", 4), text("insulation"),
                                      text("phase"), text("type"), text("point"), boolean("snap"), boolean("deleted"),
                                      numeric("length"), integer("indexnumber", 4), timeStamp("timestamp")});
}

TableDefinition EditorTables::segment02()
{
    return entityTable("ce_segment",
                       {text("id"), text("name"), integer("indexnumber", 4), numeric("length"), text("phase"),
                        text("point"), text("detail"), boolean("snap"), boolean("deleted"), timeStamp("timestamp")});
}

TableDefinition EditorTables::segment03()
{
    return segment02().with(date("installationdate"), "snap");
}

TableDefinition EditorTables::segmentDetail02()
{
    return entityTable("ce_segment_detail",
                       {text("id"), text("name"), numeric("velocity"), text("insulation"), text("type"),
                        boolean("favorite"), boolean("snap"), boolean("deleted"), timeStamp("timestamp")});
}

TableDefinition EditorTables::cable01()
{
    return cable(integer("length", 4));
}

TableDefinition EditorTables::cable02()
{
    return cable(numeric("length")).with(integer("type", 4), "snap");
}

TableDefinition EditorTables::cable07()
{
    TableDefinition table = cable02();
    table.columns.append(integer("importance", 4));
    return table;
}

TableDefinition EditorTables::evaluation05()
{
    return {QStringLiteral("evaluation"),
            {integer("id", 8), integer("mid", 8), text("tid"), text("cid"), text("comment"), text("evaluation"),
             integer("manual", 4), integer("oldcable", 4), integer("eventselectionmodel", 4), creationTime()},
            {QStringLiteral("PRIMARY KEY(id)"),
             QStringLiteral("FOREIGN KEY(mid) REFERENCES measures(id) ON DELETE CASCADE"),
             QStringLiteral("FOREIGN KEY(cid) REFERENCES ce_cable(id) ON DELETE CASCADE")}};
}

TableDefinition EditorTables::rating06()
{
    return {QStringLiteral("qor_rating"),
            {text("id"), integer("mid", 8), text("tid"), text("cid"), text("comment"), text("evaluation"),
             integer("automatic", 4), integer("oldcable", 4), integer("eventselectionmodel", 4), integer("modeid", 4),
             timeStamp("measuretime"), boolean("snap"), boolean("deleted"), creationTime()},
            {QStringLiteral("PRIMARY KEY(id)")}};
}

TableDefinition EditorTables::cablebookMeasures07()
{
    Column id = integer("id", 8);
    id.suffix = QStringLiteral("REFERENCES measures(id)");
    return {QStringLiteral("cablebook_measures"),
            {id, text("cableid"), timeStamp("importdate"), timeStamp("deletedate"), boolean("snap"),
             timeStamp("lastedit"), text("stationid")},
            {QStringLiteral("PRIMARY KEY(id)")}};
}

QVector<TableDefinition> EditorTables::all01()
{
    const auto named = [](const char* table) {
        return entityTable(table,
                           {text("id"), text("name"), boolean("snap"), boolean("deleted"), timeStamp("timestamp")});
    };
    return {station01(),
            entityTable("ce_point", {text("id"), integer("indexnumber", 8), numeric("latitude"), numeric("longitude"),
                                     boolean("snap"), boolean("deleted"), timeStamp("timestamp")}),
            entityTable("ce_route", {text("id"), text("cable"), text("points"), boolean("snap"), boolean("deleted"),
                                     timeStamp("timestamp")}),
            entityTable("ce_phase", {text("id"), integer("indexnumber", 4), text("cable"), boolean("snap"),
                                     boolean("deleted"), timeStamp("timestamp")}),
            named("ce_owner"),
            named("ce_switchgear"),
            named("ce_termination"),
            entityTable("ce_segmenttype", {text("id"), text("name"), boolean("isjoint"), boolean("snap"),
                                           boolean("deleted"), timeStamp("timestamp")}),
            entityTable("ce_insulation", {text("id"), text("name"), numeric("velocity"), boolean("snap"),
                                          boolean("deleted"), timeStamp("timestamp")}),
            segment01(),
            cable01()};
}

QStringList EditorTables::unversioned()
{
    return {QStringLiteral("ce_station"),    QStringLiteral("ce_point"),       QStringLiteral("ce_route"),
            QStringLiteral("ce_phase"),      QStringLiteral("ce_owner"),       QStringLiteral("ce_termination"),
            QStringLiteral("ce_switchgear"), QStringLiteral("ce_segmenttype"), QStringLiteral("ce_isolation"),
            QStringLiteral("ce_segment"),    QStringLiteral("ce_cables"),      QStringLiteral("ce_cable"),
            QStringLiteral("ce_insulation")};
}

QStringList EditorTables::names()
{
    QStringList all = unversioned();
    for (const TableDefinition& table : {segmentDetail02(), evaluation05(), rating06(), cablebookMeasures07()})
        all.append(table.name);
    return all;
}

} // namespace DataAccess::Manager
