#include "database/Database.h"
#include "repositories/EditorDatabase.h"
#include "repositories/cables/CableRepository.h"
#include "repositories/cables/PhaseRepository.h"
#include "repositories/cables/PlainRepositories.h"
#include "repositories/cables/PointRepository.h"
#include "repositories/cables/RatingRepository.h"
#include "repositories/cables/SegmentRepository.h"
#include "repositories/cables/StationRepository.h"
#include "support/Entities.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QTest>

using namespace DataAccess;
using namespace Cables::Entities;
using namespace QOR::Entities::Enumerations;
using TestSupport::EditorDatabase;
using TestSupport::LogCapture;
using TestSupport::make;

namespace {

std::shared_ptr<Owner> makeOwner(const QString& name)
{
    auto owner = make<Owner>();
    owner->SetName(name);
    return owner;
}

QImage picture()
{
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    return image;
}

} // namespace

class CableRepositoriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBatchIsKeptWholeOrNotAtAll_data() { TestSupport::addBackends(); }
    void aBatchIsKeptWholeOrNotAtAll()
    {
        EditorDatabase database;
        auto owners = database.repository<Repositories::OwnerRepository>();
        const auto first = makeOwner(QStringLiteral("first"));
        const auto second = makeOwner(QStringLiteral("second"));
        const auto third = makeOwner(QStringLiteral("third"));
        const LogCapture log;

        QVERIFY(!owners.Insert({first, nullptr, second, first, third}));
        QCOMPARE(owners.Count(), 0U);
        QCOMPARE(third->EntityState(), New);
        QVERIFY(owners.Insert({first, nullptr, second, third}));

        // No backend stores a NUL character.
        const QDateTime before = first->Timestamp();
        QTest::qSleep(5);
        for (const auto& owner : {first, second, third})
            owner->SetName(QStringLiteral("changed"));
        second->SetName(QStringLiteral("half a name") + QChar(0));
        const Database::FailureWatch watch;
        QVERIFY(!owners.Update({first, second, third}));
        const Database::Failure failure = watch.failures().value(0);
        QCOMPARE(failure.row, second->Id());
        for (const QString& part : {QStringLiteral("\"name\""), QStringLiteral("ce_owner"), second->Id().toString()})
            QVERIFY(failure.reason.contains(part));
        QVERIFY(log.contains(failure.reason) && !log.contains(QStringLiteral("half a name")));
        QCOMPARE(owners.GetById(first->Id())->Name(), QStringLiteral("first"));
        QVERIFY(first->Timestamp() > before);
        QCOMPARE(third->EntityState(), Modified);
        QCOMPARE(log.messages(QtWarningMsg, QStringLiteral("qor.database")).size(), 2);

        QVERIFY(!owners.Insert({std::make_shared<Owner>()}));
        QCOMPARE(owners.Count(), 3U);
    }

    void aLargeBatchLeavesTheConnectionAsItWas_data() { TestSupport::addBackends(); }
    void aLargeBatchLeavesTheConnectionAsItWas()
    {
        EditorDatabase database;
        auto owners = database.repository<Repositories::OwnerRepository>();
        const QString setting = database.type() == DataAccess::Enumerations::Postgres
                                    ? QStringLiteral("SHOW work_mem")
                                    : QStringLiteral("PRAGMA cache_size");
        const QVariant before = database.value(setting);
        std::vector<std::shared_ptr<Owner>> batch;
        batch.reserve(2000);
        for (int i = 0; i < 2000; ++i)
            batch.push_back(makeOwner(QString::number(i)));
        QVERIFY(owners.Insert(batch));
        const LogCapture log;
        QVERIFY(!owners.Insert(batch));
        QVERIFY(owners.Delete(batch));
        QCOMPARE(owners.Count(), 2000U);
        // Rows are sent some hundreds at a time; those that are gone are still told apart.
        QVERIFY(owners.Remove({batch[0], batch[700], batch[1999]}));
        const Database::FailureWatch watch;
        QVERIFY(!owners.Update(batch));
        QCOMPARE(watch.failures().size(), 3);
        QCOMPARE(watch.failures()[1].row, batch[700]->Id());
        QCOMPARE(watch.failures()[2].row, batch[1999]->Id());
        QVERIFY(owners.Remove(batch));
        QCOMPARE(owners.Count(), 0U);
        QCOMPARE(database.value(setting), before);
    }

    void aRowThatCannotBeDeletedDoesNotStopTheOthers_data() { TestSupport::addBackends(); }
    void aRowThatCannotBeDeletedDoesNotStopTheOthers()
    {
        EditorDatabase database;
        auto owners = database.repository<Repositories::OwnerRepository>();
        const auto first = makeOwner(QStringLiteral("first"));
        const auto second = makeOwner(QStringLiteral("second"));
        QVERIFY(owners.Insert({first, second}));
        const LogCapture log;
        QVERIFY(owners.Delete({first, nullptr, std::make_shared<Owner>(), second}));
        QCOMPARE(log.messages(QtCriticalMsg, QStringLiteral("qor.database")).size(), 2);
        QCOMPARE(owners.GetById(second->Id())->EntityState(), Deleted);
        QVERIFY(owners.Remove({nullptr, second}));
        QCOMPARE(owners.GetAll().keys(), QList<QUuid>{first->Id()});
    }

    void aRowWithBothFlagsIsASnapshot_data() { TestSupport::addBackends(); }
    void aRowWithBothFlagsIsASnapshot()
    {
        EditorDatabase database;
        auto owners = database.repository<Repositories::OwnerRepository>();
        const auto owner = makeOwner(QStringLiteral("owner"));
        owner->SetEntityState(Snapshot);
        QVERIFY(owners.Insert({owner}));
        QVERIFY(owners.Delete({owner}));
        QCOMPARE(owners.GetById(owner->Id())->EntityState(), Snapshot);
    }

    void aRouteFindsItsPoints_data() { TestSupport::addBackends(); }
    void aRouteFindsItsPoints()
    {
        EditorDatabase database;
        auto points = database.repository<Repositories::PointRepository>();
        auto routes = database.repository<Repositories::RouteRepository>();
        const auto point = make<Point>();
        point->SetIndex(3);
        point->setLatitude(47.25);
        point->setLongitude(-52.75);
        point->SetEntityState(Deleted);
        QVERIFY(points.Insert({point, make<Point>()}));
        const auto route = make<Route>();
        route->SetPointIds({point->Id(), QUuid::createUuid()});
        QVERIFY(routes.Insert({route}));

        const auto found = points.GetByRouteId(route->Id());
        QCOMPARE(found.keys(), QList<QUuid>{point->Id()});
        QCOMPARE(found.value(point->Id())->toJson(), point->toJson());
        QCOMPARE(found.value(point->Id())->EntityState(), Deleted);
        QCOMPARE(found.value(point->Id())->Timestamp(), point->Timestamp());
        QVERIFY(points.GetByRouteId(QUuid::createUuid()).isEmpty());

        database.value(QStringLiteral("UPDATE ce_route SET points = '%1#'").arg(point->Id().toString()));
        QCOMPARE(routes.GetById(route->Id())->PointIds(), (std::vector<QUuid>{point->Id(), QUuid()}));
    }

    void anImageThatWasNotLoadedIsNeverWiped_data() { TestSupport::addBackends(); }
    void anImageThatWasNotLoadedIsNeverWiped()
    {
        EditorDatabase database;
        auto stations = database.repository<Repositories::StationRepository>();
        auto lazy = database.repository<Repositories::StationRepository>(DataAccess::Enumerations::WithoutImages);
        const auto station = make<Station>();
        station->SetImage(picture());
        QVERIFY(stations.Insert({station}));

        const auto bare = lazy.GetById(station->Id());
        QVERIFY(bare->Image().isNull());
        bare->SetName(QStringLiteral("renamed"));
        QVERIFY(lazy.Update({bare}));
        auto stranger = std::make_shared<Station>();
        stranger->SetId(station->Id());
        QVERIFY(stations.Update({stranger}));
        QCOMPARE(stations.GetById(station->Id())->Image(), picture());

        lazy.LoadImage(bare);
        lazy.Count(); // Comes after the image.
        QCOMPARE(bare->Image(), picture());
        QCOMPARE(bare->EntityState(), Normal);
        bare->SetImage(QImage());
        QVERIFY(lazy.Update({bare}));
        QVERIFY(stations.GetById(station->Id())->Image().isNull());

        database.value(QStringLiteral("UPDATE ce_station SET image = 'no image'"));
        QVERIFY(stations.Update({stations.GetById(station->Id())}));
        QCOMPARE(database.value(QStringLiteral("SELECT image FROM ce_station")).toByteArray(), QByteArray("no image"));
    }

    void aCableComesOnceWithItsLatestEvaluation_data() { TestSupport::addBackends(); }
    void aCableComesOnceWithItsLatestEvaluation()
    {
        EditorDatabase database;
        auto cables = database.repository<Repositories::CableRepository>();
        auto ratings = database.repository<Repositories::RatingRepository>();
        const auto evaluated = make<Cable>();
        const auto plain = make<Cable>();
        QVERIFY(cables.Insert({evaluated, plain}));
        const QUuid task = QUuid::createUuid();
        std::vector<std::shared_ptr<Rating>> list;
        for (int day : {2, 3, 1}) {
            list.push_back(make<Rating>());
            list.back()->SetCableID(evaluated->Id());
            list.back()->SetTaskID(task);
            list.back()->SetMeasureID(day);
            list.back()->SetModeId(4);
            list.back()->SetMeasureTime(QDateTime(QDate(2021, 5, day), QTime(6, 7, 8)));
        }
        QVERIFY(ratings.Insert(list));
        QCOMPARE(cables.GetAll().size(), 2);
        QVERIFY(!cables.GetById(evaluated->Id())->Rating());

        const QString time = database.type() == DataAccess::Enumerations::Postgres ? QStringLiteral("TIMESTAMP")
                                                                                   : QStringLiteral("TEXT");
        database.value(
            QStringLiteral("CREATE TABLE measures (id INTEGER, folderid INTEGER, modeid INTEGER, measure_date %1)")
                .arg(time));
        database.value(
            QStringLiteral("CREATE TABLE folders (id INTEGER, creationdate %1, serialnumber TEXT, systemtype TEXT)")
                .arg(time));
        // Other programs leave the milliseconds out, and the joins compare texts.
        if (database.type() == DataAccess::Enumerations::SQLite3)
            database.value(QStringLiteral("UPDATE qor_rating SET measuretime = substr(measuretime, 1, 19)"));
        database.value(QStringLiteral("INSERT INTO measures SELECT mid, 1, modeid, measuretime FROM qor_rating"));
        for (const auto& stored : ratings.GetAll()) {
            stored->SetComment(QStringLiteral("looked at"));
            QVERIFY(ratings.Update({stored}));
        }
        const auto all = cables.GetAll();
        QCOMPARE(all.size(), 2);
        const auto rating = all.value(evaluated->Id())->Rating();
        QVERIFY(rating);
        QCOMPARE(rating->measureTime(), QDateTime(QDate(2021, 5, 3), QTime(6, 7, 8)));
        QCOMPARE(rating->taskID(), task);
        QCOMPARE(all.value(evaluated->Id())->ratingMeasureID(), QStringLiteral("3"));
        QCOMPARE(all.value(evaluated->Id())->EntityState(), Normal);
        QCOMPARE(cables.GetById(evaluated->Id())->ratingMeasureID(), QStringLiteral("3"));
        QVERIFY(!all.value(plain->Id())->Rating());

        const auto moved = ratings.GetById(list[1]->Id());
        moved->SetMeasureTime(moved->measureTime().addDays(1));
        QVERIFY(ratings.Update({moved}));
        QCOMPARE(ratings.GetById(moved->Id())->measureTime(), moved->measureTime());
        QCOMPARE(cables.GetById(evaluated->Id())->ratingMeasureID(), QStringLiteral("2"));
    }

    void aLockIsWaitedForOnce_data() { TestSupport::addBackends(); }
    void aLockIsWaitedForOnce()
    {
        EditorDatabase database;
        auto owners = database.repository<Repositories::OwnerRepository>();
        const auto first = makeOwner(QStringLiteral("first"));
        const auto second = makeOwner(QStringLiteral("second"));
        QVERIFY(owners.Insert({first, second}));
        const bool postgres = database.type() == DataAccess::Enumerations::Postgres;
        Database::Database other(database.config());
        other.Exec(postgres ? QStringLiteral("BEGIN") : QStringLiteral("BEGIN EXCLUSIVE"));
        other.Exec(QStringLiteral("DELETE FROM ce_owner"));
        if (postgres)
            other.Exec(QStringLiteral("LOCK TABLE ce_owner IN ACCESS EXCLUSIVE MODE"));
        database.value(postgres ? QStringLiteral("SET statement_timeout = 200")
                                : QStringLiteral("PRAGMA busy_timeout = 200"));
        const LogCapture log;
        const std::vector<std::function<bool()>> operations = {[&] { return !owners.GetAll().isEmpty(); },
                                                               [&] { return owners.GetById(first->Id()) != nullptr; },
                                                               [&] { return owners.Count() != 0; },
                                                               [&] {
                                                                   return owners.Update({first, second});
                                                               },
                                                               [&] {
                                                                   return owners.Delete({first, second});
                                                               },
                                                               [&] {
                                                                   return owners.Remove({first, second});
                                                               }};
        for (const auto& operation : operations) {
            const Database::FailureWatch watch;
            QVERIFY(!operation());
            QCOMPARE(watch.failures().size(), 1);
            QVERIFY(watch.isUnavailable());
        }
        other.Exec(QStringLiteral("ROLLBACK"));
        QCOMPARE(owners.GetAll().size(), 2);
    }

    void aWriteAfterAReadWaitsForOthers_data() { TestSupport::addBackends(); }
    void aWriteAfterAReadWaitsForOthers()
    {
        EditorDatabase database;
        auto stations = database.repository<Repositories::StationRepository>(DataAccess::Enumerations::WithoutImages);
        const auto station = make<Station>();
        QVERIFY(stations.Insert({station}));
        station->SetName(QStringLiteral("renamed"));
        Database::Database other(database.config());
        other.Exec(QStringLiteral("BEGIN"));
        other.Exec(QStringLiteral("UPDATE ce_station SET city = 'elsewhere'"));
        const std::unique_ptr<Database::Task<bool>> task(stations.UpdateAsync({station}));
        QTest::qSleep(500); // The update has read the image, if it did not wait before.
        other.Exec(QStringLiteral("COMMIT"));
        QVERIFY(task->Result());
    }

    void aCommitThatFailsIsTold_data() { TestSupport::addBackends(); }
    void aCommitThatFailsIsTold()
    {
        EditorDatabase database;
        auto owners = database.repository<Repositories::OwnerRepository>();
        const bool postgres = database.type() == DataAccess::Enumerations::Postgres;
        if (!postgres)
            database.value(QStringLiteral("PRAGMA foreign_keys = ON"));
        database.value(QStringLiteral("DROP TABLE ce_owner"));
        database.value(QStringLiteral("CREATE TABLE company (name TEXT PRIMARY KEY)"));
        database.value(QStringLiteral("CREATE TABLE ce_owner (id TEXT, deleted %1, snap %1, timestamp TEXT, name TEXT "
                                      "REFERENCES company (name) DEFERRABLE INITIALLY DEFERRED)")
                           .arg(postgres ? QStringLiteral("BOOLEAN") : QStringLiteral("INTEGER")));
        const LogCapture log;
        const Database::FailureWatch watch;
        QVERIFY(!owners.Insert({makeOwner(QStringLiteral("owner"))}));
        QCOMPARE(watch.failures().size(), 1);
        QVERIFY(watch.reason().contains(QStringLiteral("foreign key"), Qt::CaseInsensitive));
        QVERIFY(log.contains(watch.reason()));
        QCOMPARE(owners.Count(), 0U);
    }

    void anIndexThatNoServerCanHoldIsRefused_data() { TestSupport::addBackends(); }
    void anIndexThatNoServerCanHoldIsRefused()
    {
        EditorDatabase database;
        auto phases = database.repository<Repositories::PhaseRepository>();
        auto segments = database.repository<Repositories::SegmentRepository>();
        const auto phase = make<Phase>();
        const auto segment = make<Segment>();
        phase->SetIndex(2147483648U);
        segment->SetIndex(2147483648U);
        const LogCapture log;
        const Database::FailureWatch watch;
        QVERIFY(!phases.Insert({phase}) && !segments.Insert({segment}));
        QCOMPARE(watch.failures().size(), 2);
        for (const Database::Failure& failure : watch.failures())
            QVERIFY(failure.reason.contains(QStringLiteral("\"indexnumber\"")));
    }

    void withoutAWorker_data() { TestSupport::addBackends(); }
    void withoutAWorker()
    {
        Repositories::OwnerRepository none(nullptr, DataAccess::Enumerations::Complete, nullptr);
        QVERIFY_EXCEPTION_THROWN(none.CountAsync(), std::invalid_argument);

        auto database = std::make_unique<EditorDatabase>();
        auto owners = database->repository<Repositories::OwnerRepository>();
        database.reset();
        QVERIFY_EXCEPTION_THROWN(owners.GetAll(), Exceptions::NotOpenException);
    }
};

DATAACCESS_TEST(CableRepositoriesTest)

#include "CableRepositoriesTest.moc"
