#include "facade/FacadeFixture.h"
#include "repositories/pd/PdFileRepository.h"
#include "sqlite2/Fixtures.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QTest>

#include <algorithm>

using namespace DataAccess;
using namespace TestSupport;

namespace {

/// Whether @p entities have all rows of @p table, as the legacy library returned them.
template <typename T>
bool hasAll(const QHash<QUuid, std::shared_ptr<T>>& entities, const QJsonObject& tables, const char* table)
{
    const QJsonObject data = tables.value(QLatin1String(table)).toObject().value(QLatin1String("data")).toObject();
    const QJsonArray rows = data.value(QLatin1String("rows")).toArray();
    // The number of the row comes before the columns.
    return std::all_of(rows.begin(), rows.end(),
                       [&](const QJsonValue& row) { return entities.contains(QUuid(row.toArray().at(1).toString())); });
}

} // namespace

class LegacyFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensAndLoadsLikeAnyOther_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("of the last layout") << QStringLiteral("cables");
        QTest::newRow("of the first layout") << QStringLiteral("old");
    }
    void opensAndLoadsLikeAnyOther()
    {
        QFETCH(QString, name);
        const QJsonObject tables = expectedContent(name).value(QLatin1String("tables")).toObject();
        const LegacyCopy legacy(name + QStringLiteral(".db"));
        const auto config = std::make_shared<Database::DatabaseConfig>();
        config->SetConnectionName(QUuid::createUuid().toString());
        config->SetDatabaseName(legacy.path());
        config->SetType(Enumerations::SQLite2);
        const LogCapture log;

        const auto facade = DataAccessFacade::Instance();
        const auto manager = facade->AddDatabase(config);
        QVERIFY(manager);
        const auto network = manager->CableContext();
        const auto results = manager->PdContext();
        network->reload();
        results->reload();
        results->loadFiles();
        QVERIFY(!network->Cables().isEmpty() && hasAll(network->Cables(), tables, "ce_cable"));
        QVERIFY(!network->Segments().isEmpty() && hasAll(network->Segments(), tables, "ce_segment"));
        QVERIFY(hasAll(network->Stations(), tables, "ce_station"));
        QVERIFY(hasAll(results->Reports(), tables, "pd_report"));
        const auto files = manager->PdRepositories()->PdFileRepository()->GetAll();
        QVERIFY(hasAll(files, tables, "pd_file"));
        const auto file = files.value(QUuid(QStringLiteral("{a3bc0026-db03-5bd1-93ad-335bb3e3cd06}")));
        QVERIFY(!file || file->File() == QByteArray::fromHex("01ab"));
        for (const auto& cable : network->Cables())
            QVERIFY(cable->StationA() == network->Stations().value(cable->StationAId()) &&
                    cable->Owner() == network->Owners().value(cable->OwnerId()) &&
                    cable->Route() == network->Routes().value(cable->RouteId()));
        // The old library wrote some ids in capitals.
        const auto switchgear = manager->EditorRepositories()->SwitchgearRepository();
        const auto unknown = switchgear->GetById(QUuid(QStringLiteral("{016831d8-0d3a-4e30-b568-ecb848ec2a01}")));
        QVERIFY(unknown && switchgear->Update({unknown}));
        facade->RemoveDatabase(config);
        QVERIFY(legacy.isUnchanged());
    }
};

DATAACCESS_TEST(LegacyFileTest)

#include "LegacyFileTest.moc"
