#include "context/CableContext.h"
#include "context/PdContext.h"
#include "database/DatabaseConfig.h"
#include "facade/DataAccessFacade.h"
#include "manager/IRepositoryManager.h"
#include "repositories/pd/PdFileRepository.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

#include <algorithm>

using namespace DataAccess;
using TestSupport::LogCapture;

namespace {

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The ids in a table, as the legacy library returned them.
QSet<QUuid> idsIn(const QJsonObject& tables, const QString& table)
{
    const QJsonObject data = tables.value(table).toObject().value(QStringLiteral("data")).toObject();
    QSet<QUuid> ids;
    // The number of the row comes before the columns.
    for (const auto& row : data.value(QStringLiteral("rows")).toArray())
        ids.insert(QUuid(row.toArray().at(1).toString()));
    return ids;
}

template <typename T>
bool containsAll(const QHash<QUuid, std::shared_ptr<T>>& entities, const QSet<QUuid>& ids)
{
    return std::all_of(ids.begin(), ids.end(), [&entities](const QUuid& id) { return entities.contains(id); });
}

/// Whether a reference points at what its id names.
template <typename T, typename Interface>
bool isLinked(const QUuid& id, const std::shared_ptr<Interface>& object,
              const QHash<QUuid, std::shared_ptr<T>>& entities)
{
    return object == entities.value(id);
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
        const QString fixture = QStringLiteral(DATAACCESS_SOURCE_DIR "/tests/sqlite2/fixtures/") + name;
        const QJsonObject tables = QJsonDocument::fromJson(bytesOf(fixture + QStringLiteral(".json")))
                                       .object()
                                       .value(QStringLiteral("tables"))
                                       .toObject();
        const QTemporaryDir folder;
        auto config = std::make_shared<Database::DatabaseConfig>();
        config->SetConnectionName(QUuid::createUuid().toString());
        config->SetDatabaseName(folder.filePath(QStringLiteral("legacy.vbk")));
        config->SetType(Enumerations::SQLite2);
        QVERIFY(QFile::copy(fixture + QStringLiteral(".db"), config->DatabaseName()));
        const QByteArray before = bytesOf(config->DatabaseName());
        const LogCapture log;

        const auto facade = DataAccessFacade::Instance();
        const auto manager = facade->AddDatabase(config);
        QVERIFY(manager);
        const auto network = manager->CableContext();
        network->reload();
        manager->PdContext()->reload();
        manager->PdContext()->loadFiles();
        QVERIFY(containsAll(network->Cables(), idsIn(tables, QStringLiteral("ce_cable"))));
        QVERIFY(containsAll(network->Phases(), idsIn(tables, QStringLiteral("ce_phase"))));
        QVERIFY(containsAll(network->Segments(), idsIn(tables, QStringLiteral("ce_segment"))));
        QVERIFY(containsAll(network->Stations(), idsIn(tables, QStringLiteral("ce_station"))));
        QVERIFY(containsAll(network->Points(), idsIn(tables, QStringLiteral("ce_point"))));
        QVERIFY(containsAll(network->Routes(), idsIn(tables, QStringLiteral("ce_route"))));
        QVERIFY(containsAll(network->Owners(), idsIn(tables, QStringLiteral("ce_owner"))));
        QVERIFY(containsAll(manager->PdContext()->Tasks(), idsIn(tables, QStringLiteral("pd_task"))));
        QVERIFY(containsAll(manager->PdContext()->Reports(), idsIn(tables, QStringLiteral("pd_report"))));
        const auto files = manager->PdRepositories()->PdFileRepository()->GetAll();
        QVERIFY(containsAll(files, idsIn(tables, QStringLiteral("pd_file"))));
        for (const auto& file : manager->PdContext()->Files())
            QVERIFY(isLinked(file->ReportId(), file->Report(), manager->PdContext()->Reports()));
        const auto file = files.value(QUuid(QStringLiteral("{a3bc0026-db03-5bd1-93ad-335bb3e3cd06}")));
        QVERIFY(!file || file->File() == QByteArray::fromHex("01ab"));
        QVERIFY(!network->Cables().isEmpty() && !network->Segments().isEmpty());
        for (const auto& cable : network->Cables()) {
            QVERIFY(isLinked(cable->StationAId(), cable->StationA(), network->Stations()));
            QVERIFY(isLinked(cable->StationBId(), cable->StationB(), network->Stations()));
            QVERIFY(isLinked(cable->OwnerId(), cable->Owner(), network->Owners()));
            QVERIFY(isLinked(cable->RouteId(), cable->Route(), network->Routes()));
        }
        for (const auto& segment : network->Segments()) {
            QVERIFY(isLinked(segment->PhaseId(), segment->Phase(), network->Phases()));
            QVERIFY(isLinked(segment->DetailId(), segment->Detail(), network->SegmentDetails()));
        }
        // The old library wrote some ids in capitals.
        const auto switchgear = manager->EditorRepositories()->SwitchgearRepository();
        const auto unknown = switchgear->GetById(QUuid(QStringLiteral("{016831d8-0d3a-4e30-b568-ecb848ec2a01}")));
        QVERIFY(unknown && switchgear->Update({unknown}));
        facade->RemoveDatabase(config);
        QCOMPARE(bytesOf(config->DatabaseName()), before);
    }
};

DATAACCESS_TEST(LegacyFileTest)

#include "LegacyFileTest.moc"
