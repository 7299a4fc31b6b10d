#include "LinkFamily.h"
#include "entities/cables/Cable.h"
#include "entities/cables/Owner.h"
#include "entities/cables/Phase.h"
#include "entities/cables/Point.h"
#include "entities/cables/Rating.h"
#include "entities/cables/Route.h"
#include "entities/cables/Segment.h"
#include "entities/pd/PdFile.h"
#include "entities/pd/PdIecOverview.h"
#include "entities/pd/PdLbDiagram.h"
#include "entities/pd/PdMappingEvent.h"
#include "entities/pd/PdReport.h"
#include "entities/pd/PdSummary.h"
#include "entities/pd/PdTask.h"
#include "entities/pd/PdTaskInfo.h"
#include "support/TestMain.h"

using namespace Cables::Entities;
using namespace PD::Entities;
using namespace QOR::Entities::Enumerations;
using namespace TestSupport;

Q_DECLARE_METATYPE(Link)

/// A link has two ends: what lists a child, and the child's reference to it.
class LinksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bothEndsFollow_data() { addLinks(); }
    /// Every sequence of three operations on two parents and two children.
    void bothEndsFollow()
    {
        QFETCH(Link, link);
        const std::vector<NamedStep> steps = stepsOf(link);
        for (const NamedStep& first : steps) {
            for (const NamedStep& second : steps) {
                for (const NamedStep& third : steps) {
                    Family family(link);
                    QByteArray done;
                    for (const NamedStep* step : {&first, &second, &third}) {
                        family.settle();
                        const auto before = family.parentOf;
                        step->run(family);
                        done += step->name;
                        QVERIFY2(family.holds(before), done.constData());
                    }
                }
            }
        }
    }

    void childrenLearnTheIdOfTheirParent_data() { addLinks(); }
    void childrenLearnTheIdOfTheirParent()
    {
        QFETCH(Link, link);
        Family family(link);
        family.parents[0]->SetId(QUuid());
        link.replace(family.parents[0], {family.children[0]});
        family.children[0]->SetEntityState(Normal);
        family.parents[0]->SetId(QUuid::createUuid());
        QCOMPARE(link.parentId(family.children[0]), family.parents[0]->Id());
        QCOMPARE(family.children[0]->EntityState(), Modified);
    }

    void aDeletedChildIsNotListed_data() { addLinks(); }
    void aDeletedChildIsNotListed()
    {
        QFETCH(Link, link);
        for (const auto state : {Deleted, Snapshot}) {
            Family family(link);
            family.children[0]->SetEntityState(state);
            if (link.setParent)
                link.setParent(family.children[0], family.parents[0]);
            else
                link.setParentId(family.children[0], family.parents[0]->Id());
            QVERIFY(link.children(family.parents[0]).empty());
            QCOMPARE(link.parentId(family.children[0]), family.parents[0]->Id());
            // What was never in the list is not touched when that is replaced.
            link.replace(family.parents[0], {family.children[1]});
            link.replace(family.parents[0], {});
            QCOMPARE(link.parentId(family.children[0]), family.parents[0]->Id());
            QCOMPARE(family.children[0]->EntityState(), state);
        }
    }

    void aChildThatOnlyItsListHoldsMayLeave_data() { addLinks(); }
    void aChildThatOnlyItsListHoldsMayLeave()
    {
        QFETCH(Link, link);
        Family family(link);
        const std::weak_ptr<QOR::Entities::Entity> child = family.children[0];
        link.replace(family.parents[0], {family.children[0]});
        family.children.clear();
        const auto& interface = *link.children(family.parents[0]).front();
        QVERIFY(!child.expired() && interface.EntityState() == New);
        link.setParentId(Object(std::shared_ptr<void>(), link.children(family.parents[0]).front().get()), QUuid());
        QVERIFY(link.children(family.parents[0]).empty());
        QVERIFY(child.expired());
    }

    void linkingLeavesTheOtherEnd()
    {
        const auto cable = make<Cable>();
        const auto listed = make<Phase>();
        const auto route = make<Route>();
        cable->AddPhase(listed);
        cable->SetRoute(route);
        const auto other = make<Cable>();
        const auto deleted = make<Phase>();
        deleted->SetCableId(cable->Id());
        const Objects all = {cable, listed, route, other, deleted};
        for (const Object& entity : all)
            entity->SetEntityState(Normal);

        // As a context finds it: one phase deleted, one listed no longer, and a route that two cables claim.
        other->SetRouteId(route->Id());
        other->SetEntityState(Normal);
        other->LinkRoute(route);
        cable->LinkPhases({});
        deleted->LinkCable(cable);
        QCOMPARE(route->Cable(), std::shared_ptr<Cables::Entities::Interfaces::ICable>(cable));
        QCOMPARE(listed->CableId(), cable->Id());
        QVERIFY(deleted->Cable() && cable->Phases().empty());
        for (const Object& entity : all)
            QCOMPARE(entity->EntityState(), Normal);

        // Whoever takes the route takes it from the cable that it knows.
        const auto third = make<Cable>();
        third->SetRoute(route);
        QVERIFY(!cable->Route() && cable->RouteId().isNull());
        QCOMPARE(cable->EntityState(), Modified);
    }

    void ratingsGetTheId()
    {
        const auto rating = make<Rating>();
        const auto later = make<Rating>();
        const auto cable = make<Cable>();
        cable->SetRating(rating);
        cable->SetRating(later);
        QCOMPARE(rating->cableID(), cable->Id());
        QCOMPARE(later->cableID(), cable->Id());

        PdTask task;
        task.SetRating(rating);
        Cable idless;
        idless.SetRating(rating);
        task.SetId(QUuid::createUuid());
        idless.SetId(QUuid::createUuid());
        QCOMPARE(rating->taskID(), task.Id());
        QCOMPARE(rating->cableID(), idless.Id());
    }

    void idsOfPointsArrive()
    {
        using Cables::Entities::Interfaces::IPoint;
        const auto first = make<Point>();
        const auto late = std::make_shared<Point>();
        Route route;
        std::vector<std::shared_ptr<IPoint>> points = {late, first, late};
        route.SetPoints(points);
        route.SetEntityState(Normal);
        late->SetId(QUuid::createUuid());
        QCOMPARE(route.PointIds(), (std::vector<QUuid>{late->Id(), first->Id(), late->Id()}));
        QCOMPARE(route.EntityState(), Modified);

        // A point that has left the route before it got an id gives it to nobody.
        const auto gone = std::make_shared<Point>();
        points = {first, gone};
        route.SetPoints(points);
        points = {first};
        route.SetPoints(points);
        gone->SetId(QUuid::createUuid());
        QCOMPARE(route.PointIds(), (std::vector<QUuid>{first->Id()}));
    }

    void aCopyLearnsTheId()
    {
        const auto owner = std::make_shared<Owner>();
        Cable cable;
        cable.SetOwner(owner);
        const Cable copy(cable);
        owner->SetId(QUuid::createUuid());
        QCOMPARE(copy.OwnerId(), owner->Id());
        QCOMPARE(cable.OwnerId(), owner->Id());
    }

private:
    static void addLinks()
    {
        QTest::addColumn<Link>("link");
        Link phases = makeLink<Cable, Phase>(&Cable::Phases, &Cable::SetPhases, &Phase::CableId, &Phase::SetCableId);
        addParentSetter<Cable, Phase>(phases, &Phase::SetCable);
        addListOperations<Cable, Phase>(phases, &Cable::AddPhase, &Cable::RemovePhase);
        QTest::newRow("phases") << phases;
        Link segments =
            makeLink<Phase, Segment>(&Phase::Segments, &Phase::SetSegments, &Segment::PhaseId, &Segment::SetPhaseId);
        addParentSetter<Phase, Segment>(segments, &Segment::SetPhase);
        addListOperations<Phase, Segment>(segments, &Phase::AddSegment, &Phase::RemoveSegment);
        QTest::newRow("segments") << segments;
        Link route = makeLink<Cable, Route>(&Cable::Route, &Cable::SetRoute, &Route::CableId, &Route::SetCableId);
        addParentSetter<Cable, Route>(route, &Route::SetCable);
        QTest::newRow("route") << route;
        Link reports =
            makeLink<PdTask, PdReport>(&PdTask::Reports, &PdTask::SetReports, &PdReport::TaskId, &PdReport::SetTaskId);
        addParentSetter<PdTask, PdReport>(reports, &PdReport::SetTask);
        addListOperations<PdTask, PdReport>(reports, &PdTask::AddReport, &PdTask::RemoveReport);
        QTest::newRow("reports") << reports;
        Link files =
            makeLink<PdReport, PdFile>(&PdReport::Files, &PdReport::SetFiles, &PdFile::ReportId, &PdFile::SetReportId);
        addParentSetter<PdReport, PdFile>(files, &PdFile::SetReport);
        addListOperations<PdReport, PdFile>(files, &PdReport::AddFile, &PdReport::RemoveFile);
        QTest::newRow("files") << files;
        QTest::newRow("overviews") << makeLink<PdReport, PdIecOverview>(
            &PdReport::IecOverview, &PdReport::setIecOverview, &PdIecOverview::reportId, &PdIecOverview::setReportId);
        QTest::newRow("events") << makeLink<PdReport, PdMappingEvent>(
            &PdReport::MappingEvents, &PdReport::setMappingEvents, &PdMappingEvent::reportId,
            &PdMappingEvent::setReportId);
        QTest::newRow("diagram") << makeLink<PdReport, PdLbDiagram>(&PdReport::LbDiagram, &PdReport::SetLbDiagram,
                                                                    &PdLbDiagram::reportId, &PdLbDiagram::setReportId);
        QTest::newRow("summary") << makeLink<PdReport, PdSummary>(&PdReport::Summary, &PdReport::setSummary,
                                                                  &PdSummary::reportId, &PdSummary::setReportId);
        QTest::newRow("info") << makeLink<PdReport, PdTaskInfo>(&PdReport::TaskInfo, &PdReport::setTaskInfo,
                                                                &PdTaskInfo::reportId, &PdTaskInfo::setReportId);
    }
};

DATAACCESS_TEST(LinksTest)
#include "LinksTest.moc"
