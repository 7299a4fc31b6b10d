#include "repositories/lb/CablebookMeasuresRepository.h"

#include "entities/qor/QorUuidHelpers.h"
#include "repositories/EditorDatabase.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QTest>

using namespace DataAccess;
using namespace QOR::Entities::Enumerations;
using LB::Entities::CablebookMeasure;
using QOR::Entities::QorUuidHelpers;
using Repositories::CablebookMeasuresRepository;
using TestSupport::EditorDatabase;
using TestSupport::LogCapture;

namespace {

std::shared_ptr<CablebookMeasure> makeMeasure(int number)
{
    auto measure = std::make_shared<CablebookMeasure>();
    measure->SetMeasureId(number);
    return measure;
}

} // namespace

class CablebookMeasuresRepositoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void softDeletionKeepsTheRestOfTheRow_data() { TestSupport::addBackends(); }
    void softDeletionKeepsTheRestOfTheRow()
    {
        EditorDatabase database;
        auto measures = database.repository<CablebookMeasuresRepository>();
        const auto snapshot = makeMeasure(7);
        snapshot->SetCableId(QUuid::createUuid());
        snapshot->SetEntityState(Snapshot);
        QVERIFY(measures.Insert({snapshot, makeMeasure(8)}));
        const QDateTime before = snapshot->LastEditDate();
        QCOMPARE(snapshot->EntityState(), Snapshot);
        QTest::qSleep(5);
        const LogCapture log;
        QVERIFY(measures.Delete({nullptr, std::make_shared<CablebookMeasure>(), snapshot}));
        QCOMPARE(log.messages(QtCriticalMsg, QStringLiteral("qor.database")).size(), 2);

        const auto stored = measures.GetById(snapshot->Id());
        QCOMPARE(stored->EntityState(), Snapshot);
        QCOMPARE(stored->CableId(), snapshot->CableId());
        QVERIFY(stored->LastEditDate() > before);
        QCOMPARE(stored->LastEditDate(), stored->Timestamp());
        const QString deleted = QStringLiteral("SELECT %1 FROM cablebook_measures WHERE deletedate = lastedit");
        QCOMPARE(database.value(deleted.arg(QStringLiteral("id"))).toInt(), 7);
        QCOMPARE(database.value(deleted.arg(QStringLiteral("count(*)"))).toInt(), 1);
    }

    void theKeyIsTheNumberOrTheId_data() { TestSupport::addBackends(); }
    void theKeyIsTheNumberOrTheId()
    {
        EditorDatabase database;
        auto measures = database.repository<CablebookMeasuresRepository>();
        const qint64 large = 5000000000;
        const auto byId = std::make_shared<CablebookMeasure>();
        byId->SetId(QorUuidHelpers::uuidFromInt(large));
        const auto byNumber = makeMeasure(3);
        byNumber->SetId(QUuid::createUuid());
        const auto without = std::make_shared<CablebookMeasure>();
        without->SetId(QUuid::createUuid());
        const LogCapture log;
        QVERIFY(!measures.Insert({byId, without}));
        QVERIFY(measures.Insert({byId, byNumber}));

        // What is no number is not the number 0.
        const auto zero = std::make_shared<CablebookMeasure>();
        zero->SetId(QorUuidHelpers::uuidFromInt(0));
        QVERIFY(measures.Insert({zero}));
        QVERIFY(!measures.GetById(without->Id()));
        QVERIFY(measures.GetById(zero->Id()));
        QVERIFY(measures.Remove({zero}));

        const auto stored = measures.GetById(byId->Id());
        QCOMPARE(stored->MeasureId(), 0);
        QVERIFY(measures.Update({stored}));
        QCOMPARE(measures.GetAll().size(), 2);
        QCOMPARE(measures.GetById(QorUuidHelpers::uuidFromInt(3))->MeasureId(), 3);
        QVERIFY(measures.Remove({without, byId}));
        QCOMPARE(measures.GetAll().keys(), QList<QUuid>{QorUuidHelpers::uuidFromInt(3)});
    }
};

DATAACCESS_TEST(CablebookMeasuresRepositoryTest)

#include "CablebookMeasuresRepositoryTest.moc"
