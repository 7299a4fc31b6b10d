#include "EntityChecks.h"
#include "entities/cables/Owner.h"
#include "entities/cables/Rating.h"
#include "entities/qor/QorUuidHelpers.h"
#include "support/TestMain.h"

#include <limits>

using namespace QOR::Entities;
using namespace QOR::Entities::Enumerations;
using Cables::Entities::Owner;
using Cables::Entities::Rating;

namespace {

/// Does what it is given when it is told of a change.
class ActingObserver final : public Interfaces::IObserver
{
public:
    void changed(Interfaces::IEntity& entity) override
    {
        ++told;
        if (act)
            act(entity);
    }

    std::function<void(Interfaces::IEntity&)> act;
    int told = 0;
};

} // namespace

/// The base of all entities, on entities of the cable network.
class EntityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bookkeepingIsNoChangeOfTheRow()
    {
        Owner owner;
        QCOMPARE(owner.EntityState(), New);
        owner.SetEntityState(Normal);
        TestSupport::CountingObserver observer;
        owner.attach(&observer);
        owner.SetId(QUuid::createUuid());
        owner.SetTimestamp(QDateTime::currentDateTimeUtc());
        owner.SetSelected(true);
        QCOMPARE(observer.told, 3);
        QCOMPARE(owner.EntityState(), Normal);
    }

    void valuesThatAreStoredDifferentlyAreDifferent()
    {
        Owner owner;
        owner.SetEntityState(Normal);
        owner.SetName(QString());
        QCOMPARE(owner.EntityState(), Normal);
        owner.SetName(QStringLiteral(""));
        QCOMPARE(owner.EntityState(), Modified);
        QVERIFY(!owner.Name().isNull());
        owner.SetEntityState(Normal);
        owner.SetName(QString());
        QCOMPARE(owner.EntityState(), Modified);
        QVERIFY(owner.Name().isNull());

        Rating rating;
        rating.SetEntityState(Normal);
        // A null time counts as the start of 1970 in the local zone.
        rating.SetMeasureTime(QDateTime(QDate(1970, 1, 1), QTime(0, 0)));
        QCOMPARE(rating.EntityState(), Modified);
    }

    void observersMayDetachWhileTold()
    {
        Owner owner;
        ActingObserver first;
        ActingObserver second;
        ActingObserver third;
        for (ActingObserver* observer : {&first, &second, &third})
            owner.attach(observer);
        first.act = [&](Interfaces::IEntity& entity) {
            entity.detach(&first);
            entity.detach(&second);
        };
        owner.SetName(QStringLiteral("a"));
        owner.SetName(QStringLiteral("b"));
        QCOMPARE(first.told, 1);
        QCOMPARE(second.told, 0);
        QCOMPARE(third.told, 2);
    }

    void observerMayChangeTheEntity()
    {
        Owner owner;
        ActingObserver observer;
        observer.act = [](Interfaces::IEntity& entity) { entity.SetSelected(true); };
        owner.attach(&observer);
        owner.SetName(QStringLiteral("a"));
        QVERIFY(owner.Selected());
        QCOMPARE(observer.told, 2);
    }

    void observerIsAttachedOnceAndNotCopied()
    {
        Owner owner;
        TestSupport::CountingObserver observer;
        owner.attach(&observer);
        owner.attach(&observer);
        owner.attach(nullptr);
        owner.SetName(QStringLiteral("a"));
        QCOMPARE(observer.told, 1);

        Owner copy(owner);
        QCOMPARE(copy.Name(), owner.Name());
        copy.SetName(QStringLiteral("b"));
        QCOMPARE(observer.told, 1);
    }

    void numbersSurviveTheWayThroughIds()
    {
        for (const qint64 number :
             {qint64(0), qint64(1), qint64(-1), qint64(255), qint64(256), qint64(0x0102030405060708),
              std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()}) {
            const QUuid id = QorUuidHelpers::uuidFromInt(number);
            QVERIFY(!id.isNull());
            QCOMPARE(QorUuidHelpers::intFromUuid(id), number);
            // Stored as text, and read back from it.
            QCOMPARE(QorUuidHelpers::intFromUuid(QUuid(id.toString().toUpper())), number);
        }
    }

    void foreignIdsHaveNoNumber()
    {
        QUuid other = QorUuidHelpers::uuidFromInt(7);
        other.data3 ^= 1U;
        for (const QUuid& id : {QUuid(), other, QUuid(QStringLiteral("{a9e63935-52ba-467d-8b82-d1ab111192f8}"))})
            QCOMPARE(QorUuidHelpers::intFromUuid(id), qint64(0));
    }
};

DATAACCESS_TEST(EntityTest)
#include "EntityTest.moc"
