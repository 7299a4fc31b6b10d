#include "PropertyRows.h"
#include "entities/lb/CablebookMeasure.h"
#include "entities/qor/QorUuidHelpers.h"
#include "support/TestMain.h"

#include <limits>

using LB::Entities::CablebookMeasure;
using QOR::Entities::QorUuidHelpers;
using namespace QOR::Entities::Enumerations;

class LbEntitiesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void property_data();
    void property();
    void measureIdGivesTheId_data();
    void measureIdGivesTheId();
};

void LbEntitiesTest::property_data()
{
    QTest::addColumn<std::function<void()>>("check");
    const QDateTime time(QDate(2020, 2, 29), QTime(23, 59, 59, 999), Qt::UTC);
    using E = CablebookMeasure;
    using TestSupport::addProperty;
    addProperty<E>("CablebookMeasure", "cableId", &E::CableId, &E::SetCableId, QUuid::createUuid());
    addProperty<E>("CablebookMeasure", "stationId", &E::StationId, &E::SetStationId, QUuid::createUuid());
    addProperty<E>("CablebookMeasure", "importDate", &E::ImportDate, &E::SetImportDate, time);
    addProperty<E>("CablebookMeasure", "lastEditDate", &E::LastEditDate, &E::SetLastEditDate, time);
}

void LbEntitiesTest::property()
{
    QFETCH(std::function<void()>, check);
    check();
}

void LbEntitiesTest::measureIdGivesTheId_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("changes");
    // A new entity has the number 0 already: it gets its id all the same.
    QTest::newRow("zero") << 0 << false;
    QTest::newRow("one") << 1 << true;
    QTest::newRow("negative") << -7 << true;
    QTest::newRow("largest") << std::numeric_limits<int>::max() << true;
    QTest::newRow("smallest") << std::numeric_limits<int>::min() << true;
}

void LbEntitiesTest::measureIdGivesTheId()
{
    QFETCH(int, number);
    QFETCH(bool, changes);
    CablebookMeasure measure;
    measure.SetEntityState(Normal);
    measure.SetMeasureId(number);
    QCOMPARE(QorUuidHelpers::intFromUuid(measure.Id()), qint64(number));
    QCOMPARE(measure.MeasureId(), number);
    QCOMPARE(measure.EntityState(), changes ? Modified : Normal);

    const QUuid id = measure.Id();
    measure.SetMeasureId(5);
    QCOMPARE(measure.Id(), id);
    QCOMPARE(measure.MeasureId(), 5);
    QCOMPARE(measure.EntityState(), Modified);
    QCOMPARE(measure.toJson().value(QLatin1String("measureId")).toInt(), 5);
}

DATAACCESS_TEST(LbEntitiesTest)

#include "LbEntitiesTest.moc"
