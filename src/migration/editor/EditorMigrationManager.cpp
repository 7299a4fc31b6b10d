#include "migration/editor/EditorMigrationManager.h"

#include "database/LoggingCategories.h"
#include "migration/MigrationModule.h"

namespace DataAccess::Manager {

/// Each is in a file of its own.
namespace EditorSteps {
void Cables_01(SchemaChange& schema);
void Cables_02(SchemaChange& schema);
void Cables_03(SchemaChange& schema);
void Cables_04(SchemaChange& schema);
void Evaluation_01(SchemaChange& schema);
void Evaluation_02(SchemaChange& schema);
void Cables_05(SchemaChange& schema);
void Cables_06(SchemaChange& schema);
void Cables_07(SchemaChange& schema);
} // namespace EditorSteps

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

// The layouts. The number is the version that one came with.

TableDefinition station01()
{
    return entityTable("ce_station", {text("id"), text("name"), text("city"), text("point"), boolean("snap"),
                                      boolean("deleted"), timeStamp("timestamp")});
}

TableDefinition station02()
{
    TableDefinition table = station01();
    table.columns += {text("description"), bytes("image")};
    return table;
}

TableDefinition segment01()
{
    return entityTable("ce_segment", {text("id"), text("name"), integer("velocity", 4), text("insulation"),
                                      text("phase"), text("type"), text("point"), boolean("snap"), boolean("deleted"),
                                      numeric("length"), integer("indexnumber", 4), timeStamp("timestamp")});
}

TableDefinition segment02()
{
    return entityTable("ce_segment",
                       {text("id"), text("name"), integer("indexnumber", 4), numeric("length"), text("phase"),
                        text("point"), text("detail"), boolean("snap"), boolean("deleted"), timeStamp("timestamp")});
}

TableDefinition segment03()
{
    return segment02().with(date("installationdate"), "snap");
}

TableDefinition segmentDetail02()
{
    return entityTable("ce_segment_detail",
                       {text("id"), text("name"), numeric("velocity"), text("insulation"), text("type"),
                        boolean("favorite"), boolean("snap"), boolean("deleted"), timeStamp("timestamp")});
}

TableDefinition cable01()
{
    return cable(integer("length", 4));
}

TableDefinition cable02()
{
    return cable(numeric("length")).with(integer("type", 4), "snap");
}

TableDefinition cable07()
{
    TableDefinition table = cable02();
    table.columns.append(integer("importance", 4));
    return table;
}

TableDefinition evaluation05()
{
    return {QStringLiteral("evaluation"),
            {integer("id", 8), integer("mid", 8), text("tid"), text("cid"), text("comment"), text("evaluation"),
             integer("manual", 4), integer("oldcable", 4), integer("eventselectionmodel", 4), creationTime()},
            {QStringLiteral("PRIMARY KEY(id)"),
             QStringLiteral("FOREIGN KEY(mid) REFERENCES measures(id) ON DELETE CASCADE"),
             QStringLiteral("FOREIGN KEY(cid) REFERENCES ce_cable(id) ON DELETE CASCADE")}};
}

TableDefinition rating06()
{
    return {QStringLiteral("qor_rating"),
            {text("id"), integer("mid", 8), text("tid"), text("cid"), text("comment"), text("evaluation"),
             integer("automatic", 4), integer("oldcable", 4), integer("eventselectionmodel", 4), integer("modeid", 4),
             timeStamp("measuretime"), boolean("snap"), boolean("deleted"), creationTime()},
            {QStringLiteral("PRIMARY KEY(id)")}};
}

TableDefinition cablebookMeasures07()
{
    Column id = integer("id", 8);
    id.suffix = QStringLiteral("REFERENCES measures(id)");
    return {QStringLiteral("cablebook_measures"),
            {id, text("cableid"), timeStamp("importdate"), timeStamp("deletedate"), boolean("snap"),
             timeStamp("lastedit"), text("stationid")},
            {QStringLiteral("PRIMARY KEY(id)")}};
}

QVector<TableDefinition> firstTables()
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

QVector<MigrationStep> steps()
{
    using namespace EditorSteps;
    // The steps of the evaluations came between those of the cables; the versions in the field count on that order.
    return {
        {"Cables_01", &Cables_01, "creates the tables of the cable network; those without a version are discarded",
         firstTables(),
         "ce_station ce_point ce_route ce_phase ce_owner ce_termination ce_switchgear ce_segmenttype ce_isolation "
         "ce_segment ce_cables ce_cable ce_insulation"},
        {"Cables_02",
         &Cables_02,
         "stations get an image, segments a detail each, cables a type; kilovolts become volts",
         {segmentDetail02(), station02(), segment02(), cable02()}},
        {"Cables_03", &Cables_03, "segments get a date of installation", {segment03()}},
        {"Cables_04",
         &Cables_04,
         "segments of one insulation share its default detail; details and insulations are written anew later",
         {},
         "ce_insulation ce_segment_detail",
         "ce_segment"},
        {"Evaluation_01", &Evaluation_01, "creates the table of evaluations", {evaluation05()}},
        {"Evaluation_02",
         &Evaluation_02,
         "creates the table of ratings and moves the evaluations there",
         {rating06()},
         "",
         "evaluation"},
        {"Cables_05",
         &Cables_05,
         "cables get an importance; creates the links to the cable book",
         {cable07(), cablebookMeasures07()}},
        {"Cables_06", &Cables_06, "deletes details of cable sections that no segment uses", {}, "ce_segment_detail"},
        {"Cables_07", &Cables_07, "deletes switchgear that no cable uses", {}, "ce_switchgear"},
    };
}

} // namespace

EditorMigrationManager::EditorMigrationManager(QObject* parent)
    : AbstractMigrationManager(parent)
{}

EditorMigrationManager::~EditorMigrationManager() = default;

const MigrationModule& EditorMigrationManager::schema()
{
    static const MigrationModule module("CablesVersion", lcMigrationEditor,
                                        "bool DataAccess::Manager::EditorMigrationManager::%1()", "", steps());
    return module;
}

const MigrationModule& EditorMigrationManager::module() const
{
    return schema();
}

bool EditorMigrationManager::Migrate()
{
    m_messages.clear();
    return AbstractMigrationManager::Migrate();
}

} // namespace DataAccess::Manager
