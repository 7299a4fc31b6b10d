#include "migration/pd/PdMigrationManager.h"

#include "database/LoggingCategories.h"
#include "migration/MigrationModule.h"

namespace DataAccess::Manager {

/// Each is in a file of its own.
namespace PdSteps {
void Pd_01(SchemaChange& schema);
void Pd_02(SchemaChange& schema);
void Pd_03(SchemaChange& schema);
void Pd_04(SchemaChange& schema);
void Pd_05(SchemaChange& schema);
void Pd_06(SchemaChange& schema);
void Pd_07(SchemaChange& schema);
void Pd_08(SchemaChange& schema);
} // namespace PdSteps

namespace {

using namespace Columns;

/// A table whose rows have an identifier of their own.
TableDefinition entityTable(const char* name, const QVector<Column>& columns)
{
    return {QString::fromLatin1(name), columns, {QStringLiteral("PRIMARY KEY( id )")}};
}

/// The same, from the versions on that store a comment with each column.
TableDefinition commentedTable(const char* name, const QVector<Column>& columns)
{
    const QVector<Column> end = {boolean("snap", ""), boolean("deleted", ""),
                                 timeStamp("timestamp", "timestamp of the Qor record")};
    return {QString::fromLatin1(name), columns + end, {QStringLiteral("PRIMARY KEY (\"id\")")}};
}

Column taskReference()
{
    Column column = text("taskid", "foreign key of pd_task");
    column.suffix = QStringLiteral("REFERENCES pd_task(id) ON DELETE CASCADE");
    return column;
}

// The layouts. The number is the version that one came with.

TableDefinition file01()
{
    return entityTable("pd_file", {text("id"), text("name"), bytes("data"), bytes("hash"), text("report"),
                                   boolean("snap"), boolean("deleted"), timeStamp("timestamp")});
}

TableDefinition task01()
{
    return entityTable("pd_task",
                       {text("id"), text("cable"), timeStamp("creationdate"), text("station"), text("tester"),
                        text("path"), text("comment"), text("devices"), text("kvtrrecommentation"), boolean("snap"),
                        boolean("deleted"), timeStamp("timestamp")});
}

TableDefinition report01()
{
    return entityTable("pd_report",
                       {text("id"), text("task"), timeStamp("creationtimestamp"), integer("flags", 4),
                        text("recommentation"), boolean("snap"), boolean("deleted"), timeStamp("timestamp")});
}

TableDefinition mapping01()
{
    return entityTable("pd_mapping", {text("id"), text("report"), numeric("load"), integer("phase", 4),
                                      integer("class", 4), boolean("polarity"), numeric("voltage"), numeric("position"),
                                      integer("mode", 4), boolean("snap"), boolean("deleted"), timeStamp("timestamp")});
}

TableDefinition reportMapping02()
{
    return {QStringLiteral("pd_report_mapping"), {text("reportid"), integer("reportindex", 8)}, {}};
}

TableDefinition filter02()
{
    return {QStringLiteral("pd_filter"), {text("reportid"), text("key"), text("value")}, {}};
}

TableDefinition iec02()
{
    return {QStringLiteral("pd_iec"),
            {text("reportid"), integer("phase", 4), numeric("groundnoise"), numeric("frequency"),
             numeric("pdivvoltage"), numeric("pdevvoltage"), numeric("pdivmaxcharge"), numeric("pdu0maxcharge"),
             numeric("pdu0medcharge"), numeric("pdu01_7maxcharge"), numeric("pdu01_7medcharge"),
             numeric("pdu02_0maxcharge"), numeric("pdu02_0medcharge"), timeStamp("timestamp")},
            {}};
}

TableDefinition evaluation03()
{
    return {
        QStringLiteral("pd_evaluation"),
        {taskReference(), text("comment", "user defined text"),
         text("evaluation", "JSON containing evaluation for every phase and position from 0.0 to 1.0"),
         integer("manual", 4, "hand made by user, 0 -> not set yet, -1 -> automatic generated"),
         integer("oldcable", 4, "use criteria for old cables, 0 -> not set yet, -1 -> use criteria for young cables"),
         integer("eventselectionmodel", 4, "0 -> Maximum, 1 -> Median, 2 -> Average")},
        {QStringLiteral("PRIMARY KEY( taskid )")}};
}

TableDefinition mappingEvent04()
{
    return commentedTable("pd_mapping_event",
                          {text("id", "Uuid key"),
                           text("report_id", "reference to the report this mapping event is associated with"),
                           numeric("load", "measured load for this mapping event"),
                           integer("phase", 4, "phase index the mapping event is associated with"),
                           integer("class", 4, "display classification of the mapping event"),
                           boolean("polarity", "polarity of the mapping event"),
                           numeric("voltage", "voltage the mapping event was measured at"),
                           numeric("position", "distance from cable start"), integer("mode", 4, "mapping event mode")});
}

TableDefinition iecOverview04()
{
    return commentedTable("pd_iec_overview",
                          {text("id", "Uuid key"),
                           text("report_id", "reference to the report this iec overview is associated with"),
                           integer("phase", 4, "phase index the iec overview is associated with"),
                           numeric("groundnoise", "noise level of the measurement"),
                           numeric("frequency", "frequency of the measurement"), numeric("pdivvoltage", "PDIV voltage"),
                           numeric("pdevvoltage", "PDEV voltage"), numeric("pdivmaxcharge", "maximum charge at PDIV"),
                           text("pdmaxcharges", "map of maximum charges at various voltage levels"),
                           text("pdmedcharges", "map of median charges at various voltage levels")});
}

TableDefinition iecOverview05()
{
    return iecOverview04().with(numeric("sensitivity_level", "sensitivity level confirmed in reporting mode"),
                                "frequency");
}

TableDefinition summary04()
{
    // "???" is what the databases in the field say.
    return commentedTable("pd_summary", {text("id", "Uuid key"),
                                         text("report_id", "reference to the report this summary is associated with"),
                                         boolean("pdiv", "associated task has PDIV measurement"),
                                         boolean("pdev", "associated task has PDEV measurement"),
                                         boolean("groundnoise", "associated task has groundnoise measurement"),
                                         boolean("data", "measurement data is available for the associated task"),
                                         boolean("vwd", "associated task has ???"),
                                         boolean("dac_pos", "associated task used DAC+ operation mode"),
                                         boolean("dac_neg", "associated task used DAC- operation mode"),
                                         boolean("vlf_cr", "associated task used VLF CR operation mode"),
                                         boolean("vlf_sin", "associated task used VLF SINUS operation mode")});
}

TableDefinition summary07()
{
    return summary04().with(numeric("max_applied_voltage", "maximum voltage set on the Hv Source during the task"),
                            "snap");
}

TableDefinition taskInfo06()
{
    return commentedTable(
        "pd_task_info",
        {text("id", "Uuid key"), text("report_id", "reference to the report this task info entity is associated with"),
         text("pd_version", "Hallmere Version that created the task"),
         text("system_type", "description of the system type used in the measurements"),
         text("serial_number", "system serial number"), text("calibration_date", "date of the last calibration")});
}

TableDefinition lbDiagram08()
{
    return commentedTable("pd_lbdiagram",
                          {text("id", "Uuid key"),
                           text("report_id", "reference to the report this pdLbDiagram entity is associated with"),
                           boolean("phase1visible", "Visibility of phase 1"),
                           boolean("phase2visible", "Visibility of phase 2"),
                           boolean("phase3visible", "Visibility of phase 3"),
                           integer("filterclass", 4, "Classification filter for pd events"),
                           numeric("filtervoltagemin", "Voltage filter minimal voltage"),
                           numeric("filtervoltagemax", "Voltage filter maximal voltage")});
}

QVector<MigrationStep> steps()
{
    using namespace PdSteps;
    return {
        {"Pd_01",
         &Pd_01,
         "creates the tables of files, tasks, reports and mappings",
         {file01(), task01(), report01(), mapping01()}},
        {"Pd_02", &Pd_02, "creates the tables of filters and overviews", {reportMapping02(), filter02(), iec02()}},
        {"Pd_03", &Pd_03, "creates the table of evaluations", {evaluation03()}},
        {"Pd_04",
         &Pd_04,
         "creates the tables of mapping events, overviews and summaries",
         {mappingEvent04(), iecOverview04(), summary04()}},
        // Rows may wait in the work tables of these two since an earlier program was cut short.
        {"Pd_05", &Pd_05, "overviews get a sensitivity level", {iecOverview05()}, "", "pd_iec_overview_old"},
        {"Pd_06", &Pd_06, "creates the table of the particulars of tasks", {taskInfo06()}},
        {"Pd_07", &Pd_07, "summaries get the highest voltage applied", {summary07()}, "", "pd_summary_old"},
        {"Pd_08", &Pd_08, "creates the table of diagram settings", {lbDiagram08()}},
    };
}

} // namespace

PdMigrationManager::PdMigrationManager(QObject* parent)
    : AbstractMigrationManager(parent)
{}

PdMigrationManager::~PdMigrationManager() = default;

const MigrationModule& PdMigrationManager::schema()
{
    // The name that another compiler gave Migrate() stays in front of its log line.
    static const MigrationModule module(
        "PdVersion", lcMigrationPd, "bool DataAccess::Manager::PdMigrationManager::%1()",
        "bool __cdecl DataAccess::Manager::PdMigrationManager::Migrate(void) ", steps());
    return module;
}

const MigrationModule& PdMigrationManager::module() const
{
    return schema();
}

} // namespace DataAccess::Manager
