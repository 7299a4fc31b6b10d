#include "EntityChecks.h"
#include "entities/cables/Cable.h"
#include "entities/cables/Insulation.h"
#include "entities/cables/Owner.h"
#include "entities/cables/Phase.h"
#include "entities/cables/Point.h"
#include "entities/cables/Rating.h"
#include "entities/cables/Route.h"
#include "entities/cables/Segment.h"
#include "entities/cables/SegmentDetail.h"
#include "entities/cables/SegmentType.h"
#include "entities/cables/Station.h"
#include "entities/cables/Switchgear.h"
#include "entities/cables/Termination.h"
#include "entities/lb/CablebookMeasure.h"
#include "entities/pd/PdFile.h"
#include "entities/pd/PdIecOverview.h"
#include "entities/pd/PdLbDiagram.h"
#include "entities/pd/PdMappingEvent.h"
#include "entities/pd/PdReport.h"
#include "entities/pd/PdSummary.h"
#include "entities/pd/PdTask.h"
#include "entities/pd/PdTaskInfo.h"
#include "entities/qor/QorUuidHelpers.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <functional>
#include <limits>

Q_DECLARE_METATYPE(std::function<void()>)

using namespace Cables::Entities;
using namespace PD::Entities;
using namespace QOR::Entities::Enumerations;
using LB::Entities::CablebookMeasure;
using QOR::Entities::PropertyKind;

namespace {

/// Adds a row for each property of the entity E, and one more for each reference.
template <typename E>
void addRows(const char* entity)
{
    QOR::Entities::forEachProperty<E>([entity](const auto& property) {
        using P = std::decay_t<decltype(property)>;
        if constexpr (P::kind != PropertyKind::Children) {
            const char* const name = property.name;
            const std::function<void()> check = [name] {
                // The member bears the name of the getter, but for what is kept as a text.
                QVERIFY2(TestSupport::nameOf<P::get>().contains(QLatin1String(name), Qt::CaseInsensitive), name);
                TestSupport::checkProperty<E, P>(name);
            };
            QTest::addRow("%s.%s", entity, name) << check;
        }
        if constexpr (P::isReference) {
            const std::function<void()> check = &TestSupport::checkReference<E, P>;
            QTest::addRow("%s.object of %s", entity, property.name) << check;
        }
    });
}

} // namespace

/// What the properties and the references of all entities have in common.
class PropertiesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void property_data()
    {
        QTest::addColumn<std::function<void()>>("check");
        addRows<Cable>("cable");
        addRows<Insulation>("insulation");
        addRows<Owner>("owner");
        addRows<Phase>("phase");
        addRows<Point>("point");
        addRows<Rating>("rating");
        addRows<Route>("route");
        addRows<Segment>("segment");
        addRows<SegmentDetail>("segment detail");
        addRows<SegmentType>("segment type");
        addRows<Station>("station");
        addRows<Switchgear>("switchgear");
        addRows<Termination>("termination");
        addRows<PdFile>("file");
        addRows<PdIecOverview>("overview");
        addRows<PdLbDiagram>("diagram");
        addRows<PdMappingEvent>("event");
        addRows<PdReport>("report");
        addRows<PdSummary>("summary");
        addRows<PdTask>("task");
        addRows<PdTaskInfo>("info");
        addRows<CablebookMeasure>("measure");
    }
    void property()
    {
        QFETCH(std::function<void()>, check);
        check();
    }

    void formsInJson()
    {
        using QOR::Entities::toJsonValue;
        const QUuid id(QStringLiteral("{a9e63935-52ba-467d-8b82-d1ab111192f8}"));
        const QDateTime time(QDate(2020, 2, 29), QTime(23, 59, 59, 999), Qt::OffsetFromUTC, 3600);
        const auto owner = TestSupport::make<Owner>(id);
        const QJsonArray values = {toJsonValue(0.5),
                                   toJsonValue(std::numeric_limits<double>::infinity()),
                                   toJsonValue(QStringLiteral("ü")),
                                   toJsonValue(QString()),
                                   toJsonValue(id),
                                   toJsonValue(QUuid()),
                                   toJsonValue(QDate(2020, 2, 29)),
                                   toJsonValue(QDate()),
                                   toJsonValue(time),
                                   toJsonValue(QDateTime()),
                                   toJsonValue(QByteArray("a\0b", 3)),
                                   toJsonValue(QByteArray()),
                                   toJsonValue(std::vector<QUuid>{id, QUuid()}),
                                   toJsonValue(4000000000U),
                                   toJsonValue(Rating::Negative),
                                   toJsonValue(true),
                                   toJsonValue(owner),
                                   toJsonValue(std::shared_ptr<Owner>()),
                                   toJsonValue(std::vector<std::shared_ptr<Owner>>{owner}),
                                   toJsonValue(QStringList(QString()))};
        QCOMPARE(QString::fromUtf8(QJsonDocument(values).toJson(QJsonDocument::Compact))
                     .replace(id.toString(), QStringLiteral("ID")),
                 QStringLiteral(R"([0.5,null,"ü",null,"ID",null,"2020-02-29",null,"2020-02-29T22:59:59.999Z",null,)"
                                R"("YQBi",null,["ID",null],4000000000,-1,true,"ID",null,["ID"],[""]])"));
        QCOMPARE(owner->toJson().keys().join(QLatin1Char(' ')), QStringLiteral("deleted id name snap timestamp"));
    }

    /// No table misses these when they are left out of the lists.
    void membersWithoutAColumn()
    {
        const auto missing = [](const QJsonObject& json, const char* names) {
            QStringList list = QString::fromLatin1(names).split(QLatin1Char(' '));
            for (const QString& name : json.keys())
                list.removeAll(name);
            return list;
        };
        QCOMPARE(missing(Cable().toJson(), "qrCode ratingMeasureID"), QStringList());
        QCOMPARE(missing(PdTask().toJson(), "maxVoltage pdiv pdev"), QStringList());
        QCOMPARE(missing(PdReport().toJson(), "filter"), QStringList());
        QCOMPARE(missing(CablebookMeasure().toJson(), "measureId lastEditDate"), QStringList());
    }

    void unknownNumbersAreUnknown()
    {
        Cable cable;
        cable.SetEntityState(Normal);
        cable.SetVoltage(std::numeric_limits<double>::quiet_NaN());
        cable.SetLength(-std::numeric_limits<double>::quiet_NaN());
        QCOMPARE(cable.EntityState(), Normal);
        cable.SetVoltage(0);
        cable.SetEntityState(Normal);
        cable.SetVoltage(std::numeric_limits<double>::quiet_NaN());
        QCOMPARE(cable.EntityState(), Modified);
    }

    void measureIdGivesTheId_data()
    {
        QTest::addColumn<int>("number");
        // A new entity has the number 0 already: it gets its id all the same.
        for (const int number : {0, 1, -7, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
            QTest::addRow("%d", number) << number;
    }
    void measureIdGivesTheId()
    {
        QFETCH(int, number);
        CablebookMeasure measure;
        measure.SetEntityState(Normal);
        measure.SetMeasureId(number);
        QCOMPARE(QOR::Entities::QorUuidHelpers::intFromUuid(measure.Id()), qint64(number));
        QCOMPARE(measure.EntityState(), number == 0 ? Normal : Modified);
        const QUuid id = measure.Id();
        measure.SetMeasureId(5);
        QCOMPARE(measure.Id(), id);
    }
};

DATAACCESS_TEST(PropertiesTest)

#include "PropertiesTest.moc"
