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

#include <QJsonArray>

using namespace Cables::Entities;
using namespace PD::Entities;
using namespace QOR::Entities::Enumerations;
using namespace TestSupport;

namespace {

/// Every sequence of three operations on two parents and two children.
template <typename L>
void bothEndsFollow()
{
    const Steps<L> steps = stepsOf<L>();
    for (const auto& first : steps) {
        for (const auto& second : steps) {
            for (const auto& third : steps) {
                Family<L> family;
                QByteArray done;
                for (const auto* step : {&first, &second, &third}) {
                    family.settle();
                    const auto before = family.parentOf;
                    step->second(family);
                    done += step->first;
                    QVERIFY2(family.holds(before), done.constData());
                }
            }
        }
    }
}

template <typename L>
void childrenLearnTheIdOfTheirParent()
{
    const Family<L> family;
    const auto& child = family.children[0];
    const QJsonObject before = family.parents[0]->toJson();
    L::replace(*family.parents[0], {child});
    const QStringList members = changedMembers(before, family.parents[0]->toJson());
    QString name = L::listName() + (L::isStoredByParent ? QStringLiteral("Id") : QString());
    QCOMPARE(members, QStringList(name.replace(0, 1, name[0].toLower())));
    const QJsonValue id = child->Id().toString();
    QCOMPARE(family.parents[0]->toJson().value(name), L::isSingle ? id : QJsonValue(QJsonArray{id}));

    L::replace(*family.parents[0], {});
    family.parents[0]->SetId(QUuid());
    L::replace(*family.parents[0], {child});
    child->SetEntityState(Normal);
    family.parents[0]->SetId(QUuid::createUuid());
    QCOMPARE(L::parentId(*child), family.parents[0]->Id());
    QCOMPARE(child->EntityState(), Modified);

    // An owner that no shared pointer holds cannot be referred to: its id is all that its children get.
    typename L::Parent local;
    local.SetId(QUuid::createUuid());
    L::replace(local, {child});
    QCOMPARE(L::parentId(*child), local.Id());
    L::replace(local, {});
}

template <typename L>
void aDeletedChildIsNotListed()
{
    for (const auto state : {Deleted, Snapshot}) {
        const Family<L> family;
        const auto& child = family.children[0];
        const QUuid id = family.parents[0]->Id();
        child->SetEntityState(state);
        if constexpr (L::hasParent)
            L::setParent(*child, family.parents[0]);
        else
            L::setId(*child, id);
        QVERIFY(L::children(*family.parents[0]).empty());
        QCOMPARE(L::parentId(*child), id);
        // What was never in the list is not touched when that is replaced.
        L::replace(*family.parents[0], {family.children[1]});
        L::replace(*family.parents[0], {});
        QCOMPARE(L::parentId(*child), id);
        QCOMPARE(child->EntityState(), state);
    }
}

template <typename L>
void aChildThatOnlyItsListHoldsMayLeave()
{
    const auto parent = make<typename L::Parent>();
    L::replace(*parent, {make<typename L::Child>()});
    const std::weak_ptr<typename L::Child> child = L::children(*parent).front();
    typename L::Child* const held = child.lock().get();
    L::setId(*held, QUuid());
    QVERIFY(L::children(*parent).empty());
    QVERIFY(child.expired());
}

} // namespace

Q_DECLARE_METATYPE(std::function<void()>)

/// A link has two ends: what lists a child, and the child's reference to it.
class LinksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void links_data()
    {
        QTest::addColumn<std::function<void()>>("check");
        addRows<Link<Cable, Phase, &Cable::Phases, &Cable::SetPhases, &Phase::CableId, &Phase::SetCableId,
                     &Phase::Cable, &Phase::SetCable, &Cable::AddPhase, &Cable::RemovePhase>>("phases");
        addRows<Link<Phase, Segment, &Phase::Segments, &Phase::SetSegments, &Segment::PhaseId, &Segment::SetPhaseId,
                     &Segment::Phase, &Segment::SetPhase, &Phase::AddSegment, &Phase::RemoveSegment>>("segments");
        addRows<Link<Cable, Route, &Cable::Route, &Cable::SetRoute, &Route::CableId, &Route::SetCableId, &Route::Cable,
                     &Route::SetCable>>("route");
        addRows<Link<PdTask, PdReport, &PdTask::Reports, &PdTask::SetReports, &PdReport::TaskId, &PdReport::SetTaskId,
                     &PdReport::Task, &PdReport::SetTask, &PdTask::AddReport, &PdTask::RemoveReport>>("reports");
        addRows<Link<PdReport, PdFile, &PdReport::Files, &PdReport::SetFiles, &PdFile::ReportId, &PdFile::SetReportId,
                     &PdFile::Report, &PdFile::SetReport, &PdReport::AddFile, &PdReport::RemoveFile>>("files");
        addRows<PartLink<PdIecOverview, &PdReport::IecOverview, &PdReport::setIecOverview>>("overviews");
        addRows<PartLink<PdMappingEvent, &PdReport::MappingEvents, &PdReport::setMappingEvents>>("events");
        addRows<PartLink<PdLbDiagram, &PdReport::LbDiagram, &PdReport::SetLbDiagram>>("diagram");
        addRows<PartLink<PdSummary, &PdReport::Summary, &PdReport::setSummary>>("summary");
        addRows<PartLink<PdTaskInfo, &PdReport::TaskInfo, &PdReport::setTaskInfo>>("info");
    }
    void links()
    {
        QFETCH(std::function<void()>, check);
        check();
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
        const std::vector<std::shared_ptr<QOR::Entities::Entity>> all = {cable, listed, route, other, deleted};
        for (const auto& entity : all)
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
        for (const auto& entity : all)
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
    template <typename Part, auto get, auto set>
    using PartLink = Link<PdReport, Part, get, set, &Part::reportId, &Part::setReportId>;

    template <typename L>
    static void addRows(const char* name)
    {
        const auto add = [name](const char* what, void (*check)()) {
            QTest::addRow("%s: %s", name, what) << std::function<void()>(check);
        };
        add("both ends follow", &bothEndsFollow<L>);
        add("children learn the id of their parent", &childrenLearnTheIdOfTheirParent<L>);
        add("a deleted child is not listed", &aDeletedChildIsNotListed<L>);
        add("a child that only its list holds may leave", &aChildThatOnlyItsListHoldsMayLeave<L>);
    }
};

DATAACCESS_TEST(LinksTest)
#include "LinksTest.moc"
