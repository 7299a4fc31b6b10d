#include "bench/GrowingSizes.h"
#include "bench/Suites.h"
#include "context/SampleNetwork.h"
#include "facade/DataAccessFacade.h"
#include "manager/IRepositoryManager.h"

namespace Bench {

namespace {

using DataAccess::Enumerations::DatabaseType;
using DataAccess::Enumerations::Postgres;
using TestSupport::SampleNetwork;

constexpr int s_changes = 10;

/// A network of @p cables cables through the cable context, from its first save on.
void measureContext(DatabaseType type, int cables, GrowingSizes& growth)
{
    const TestSupport::TestDatabase database(type);
    const auto config = database.config();
    const auto facade = DataAccess::DataAccessFacade::Instance();
    const auto context = facade->AddDatabase(config)->CableContext();
    SampleNetwork(cables).attachTo(*context);
    growth.time("attach one entity and list the cables, all unsaved", cables, s_changes, [&] {
        for (int i = 0; i < s_changes; ++i) {
            context->attach(TestSupport::makeOwner(QString::number(i)));
            context->Cables();
        }
    });
    growth.time("save a cable with all", cables, cables, [&] { context->saveChanges(); });
    growth.time("load a cable with all", cables, cables, [&] { context->reload(); });

    const auto loaded = context->Cables();
    growth.time("save one changed cable", cables, s_changes, [&] {
        auto cable = loaded.begin();
        for (int i = 0; i < s_changes; ++i, ++cable) {
            (*cable)->SetComment(QStringLiteral("Seen again"));
            context->saveChanges();
        }
    });
    const SampleNetwork larger(cables + s_changes);
    growth.time("import one cable", cables, s_changes, [&] {
        for (auto cable = larger.cables.end() - s_changes; cable != larger.cables.end(); ++cable)
            context->import({*cable});
    });
    growth.time("save one imported cable", cables, s_changes, [&] { context->saveChanges(); });
    facade->RemoveDatabase(config);
}

/// A database that has @p cables cables, a quarter as many switchgear of which cables use half, and one step to go.
template <typename Connection>
void fillForLastStep(Connection connection, int cables)
{
    const auto fill = [&](int count, const std::string& into, const std::string& values) {
        connection.run("INSERT INTO " + into + " WITH RECURSIVE numbers(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM " +
                       "numbers WHERE i + 1 < " + std::to_string(count) + ") SELECT " + values + " FROM numbers");
    };
    const auto id = [](const std::string& number) {
        return "'{00000000-0000-0000-0000-' || (100000000000 + " + number + ") || '}'";
    };
    fill(cables / 4, "ce_switchgear(id, name)", id("i") + ", 'Switchgear'");
    const std::string used = id("i % " + std::to_string(cables / 8));
    fill(cables, "ce_cable(id, switchgeara, switchgearb)",
         id("i") + ", " + used + ", CASE WHEN i % 10 = 0 THEN NULL ELSE " + used + " END");
    connection.run("UPDATE feature_defaults SET value = '8' WHERE featureid = (SELECT id FROM features WHERE name = "
                   "'CablesVersion')");
}

void measureLastStep(DatabaseType type, int cables, GrowingSizes& growth)
{
    const TestSupport::TestDatabase database(type);
    migrate(database.config());
    if (type == Postgres)
        fillForLastStep<BarePostgres>(BarePostgres(*database.config()), cables);
    else
        fillForLastStep<BareSqlite>(BareSqlite(*database.config()), cables);
    growth.time("migrate by Cables_07, a cable", cables, cables, [&] { migrate(database.config()); });
}

} // namespace

void measureNetworkGrowth(const Settings& settings, DatabaseType type, Report& report)
{
    GrowingSizes growth(type);
    for (const int cables : {settings.rows(1000), settings.rows(10000)})
        measureContext(type, cables, growth);
    for (const int cables : {settings.rows(5000), settings.rows(20000)})
        measureLastStep(type, cables, growth);
    growth.report(report);
}

} // namespace Bench
