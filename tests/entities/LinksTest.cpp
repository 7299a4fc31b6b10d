#include "EntityChecks.h"
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
using TestSupport::make;

namespace {

using Object = std::shared_ptr<QOR::Entities::Entity>;
using Objects = std::vector<Object>;

/// A list, or a single place, of a parent and the reference of the child that faces it.
struct Link
{
    std::function<Object()> makeParent;
    std::function<Object()> makeChild;
    std::function<Objects(const Object&)> children;
    std::function<void(const Object&, const Objects&)> replace;
    std::function<QUuid(const Object&)> parentId;
    std::function<void(const Object&, const QUuid&)> setParentId;
    // Not every link has these.
    std::function<void(const Object&, const Object&)> add = {};
    std::function<void(const Object&, const Object&)> remove = {};
    std::function<void(const Object&, const Object&)> setParent = {};
    bool isSingle = false;
};

template <typename T>
T& as(const Object& object)
{
    return dynamic_cast<T&>(*object);
}

template <typename P, typename C, typename Get, typename Set, typename GetId, typename SetId>
Link makeLink(Get get, Set set, GetId getId, SetId setId)
{
    using Place = std::decay_t<std::invoke_result_t<Get, P&>>;
    Link link;
    link.makeParent = &make<P>;
    link.makeChild = &make<C>;
    link.parentId = [=](const Object& child) { return std::invoke(getId, as<C>(child)); };
    link.setParentId = [=](const Object& child, const QUuid& id) { std::invoke(setId, as<C>(child), id); };
    if constexpr (std::is_convertible_v<std::shared_ptr<C>, Place>) {
        link.isSingle = true;
        link.children = [=](const Object& parent) {
            const auto child = std::dynamic_pointer_cast<C>(std::invoke(get, as<P>(parent)));
            return child ? Objects{child} : Objects();
        };
        link.replace = [=](const Object& parent, const Objects& children) {
            std::invoke(set, as<P>(parent),
                        children.empty() ? nullptr : std::dynamic_pointer_cast<C>(children.front()));
        };
    } else {
        link.children = [=](const Object& parent) {
            Objects children;
            for (const auto& child : std::invoke(get, as<P>(parent)))
                children.push_back(std::dynamic_pointer_cast<C>(child));
            return children;
        };
        link.replace = [=](const Object& parent, const Objects& children) {
            Place list;
            for (const Object& child : children)
                list.push_back(std::dynamic_pointer_cast<C>(child));
            std::invoke(set, as<P>(parent), list);
        };
    }
    return link;
}

template <typename P, typename C, typename SetParent>
void addParentSetter(Link& link, SetParent setParent)
{
    link.setParent = [=](const Object& child, const Object& parent) {
        std::invoke(setParent, as<C>(child), std::dynamic_pointer_cast<P>(parent));
    };
}

template <typename P, typename C, typename Add, typename Remove>
void addListOperations(Link& link, Add add, Remove remove)
{
    link.add = [=](const Object& parent, const Object& child) {
        std::invoke(add, as<P>(parent), std::dynamic_pointer_cast<C>(child));
    };
    link.remove = [=](const Object& parent, const Object& child) {
        std::invoke(remove, as<P>(parent), std::dynamic_pointer_cast<C>(child));
    };
}

/// Two parents, two children, and what is expected of them: the parent of each child by its number, -1 for none.
struct Family
{
    explicit Family(const Link& of)
        : link(of)
    {}

    const Link& link;
    Objects parents = {link.makeParent(), link.makeParent()};
    Objects children = {link.makeChild(), link.makeChild()};
    std::array<int, 2> parentOf = {-1, -1};

    void settle() const
    {
        for (const Objects& objects : {parents, children}) {
            for (const Object& object : objects)
                object->SetEntityState(Normal);
        }
    }

    void put(int child, int parent)
    {
        if (link.isSingle && parent >= 0)
            std::replace(parentOf.begin(), parentOf.end(), parent, -1);
        parentOf[std::size_t(child)] = parent;
    }

    bool holds(const std::array<int, 2>& before) const
    {
        for (std::size_t c = 0; c < children.size(); ++c) {
            const QUuid id = link.parentId(children[c]);
            if (id != (parentOf[c] < 0 ? QUuid() : parents[std::size_t(parentOf[c])]->Id()))
                return false;
            if ((children[c]->EntityState() == Modified) != (parentOf[c] != before[c]))
                return false;
            for (std::size_t p = 0; p < parents.size(); ++p) {
                const Objects listed = link.children(parents[p]);
                if (std::count(listed.begin(), listed.end(), children[c]) != (int(p) == parentOf[c] ? 1 : 0))
                    return false;
            }
        }
        return true;
    }
};

using Step = std::function<void(Family&)>;
struct NamedStep
{
    QByteArray name;
    Step run;
};

/// Every operation that a link has, on every parent and child.
std::vector<NamedStep> stepsOf(const Link& link)
{
    std::vector<NamedStep> steps;
    const auto add = [&steps](const QByteArray& name, int p, int c, const Step& run) {
        steps.push_back({name + ' ' + QByteArray::number(p) + ' ' + QByteArray::number(c) + "; ", run});
    };
    for (int p = 0; p < 2; ++p) {
        const auto parent = std::size_t(p);
        for (int set = 0; set < (link.isSingle ? 3 : 4); ++set) {
            add("replace", p, set, [=](Family& family) {
                Objects list;
                for (int c = 0; c < 2; ++c) {
                    if (set & (c + 1))
                        list.push_back(family.children[std::size_t(c)]);
                    else if (family.parentOf[std::size_t(c)] == p)
                        family.put(c, -1);
                }
                for (int c = 0; c < 2; ++c) {
                    if (set & (c + 1))
                        family.put(c, p);
                }
                family.link.replace(family.parents[parent], list);
            });
        }
        for (int c = 0; c < 2; ++c) {
            const auto child = std::size_t(c);
            if (link.setParent) {
                add("setParent", p, c, [=](Family& family) {
                    family.put(c, p);
                    family.link.setParent(family.children[child], family.parents[parent]);
                });
            }
            if (!link.add)
                continue;
            add("add", p, c, [=](Family& family) {
                family.put(c, p);
                family.link.add(family.parents[parent], family.children[child]);
            });
            add("remove", p, c, [=](Family& family) {
                if (family.parentOf[child] == p)
                    family.put(c, -1);
                family.link.remove(family.parents[parent], family.children[child]);
            });
        }
    }
    for (int c = 0; c < 2; ++c) {
        const auto child = std::size_t(c);
        add("no id", -1, c, [=](Family& family) {
            family.put(c, -1);
            family.link.setParentId(family.children[child], QUuid());
        });
        if (link.setParent) {
            add("no parent", -1, c, [=](Family& family) {
                family.put(c, -1);
                family.link.setParent(family.children[child], nullptr);
            });
        }
    }
    return steps;
}

} // namespace

Q_DECLARE_METATYPE(Link)

/// A link has two ends: what lists a child, and the child's reference to it.
class LinksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bothEndsFollow_data() { addLinks(); }
    void bothEndsFollow();
    void childrenLearnTheIdOfTheirParent_data() { addLinks(); }
    void childrenLearnTheIdOfTheirParent();
    void aDeletedChildIsNotListed_data() { addLinks(); }
    void aDeletedChildIsNotListed();
    void aChildThatOnlyItsListHoldsMayLeave_data() { addLinks(); }
    void aChildThatOnlyItsListHoldsMayLeave();
    void linkingLeavesTheOtherEnd();
    void ratingsGetTheId();
    void idsOfPointsArrive();
    void aCopyLearnsTheId();

private:
    static void addLinks();
};

void LinksTest::addLinks()
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
        &PdReport::MappingEvents, &PdReport::setMappingEvents, &PdMappingEvent::reportId, &PdMappingEvent::setReportId);
    QTest::newRow("diagram") << makeLink<PdReport, PdLbDiagram>(&PdReport::LbDiagram, &PdReport::SetLbDiagram,
                                                                &PdLbDiagram::reportId, &PdLbDiagram::setReportId);
    QTest::newRow("summary") << makeLink<PdReport, PdSummary>(&PdReport::Summary, &PdReport::setSummary,
                                                              &PdSummary::reportId, &PdSummary::setReportId);
    QTest::newRow("info") << makeLink<PdReport, PdTaskInfo>(&PdReport::TaskInfo, &PdReport::setTaskInfo,
                                                            &PdTaskInfo::reportId, &PdTaskInfo::setReportId);
}

/// Every sequence of three operations on two parents and two children.
void LinksTest::bothEndsFollow()
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

void LinksTest::childrenLearnTheIdOfTheirParent()
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

void LinksTest::aDeletedChildIsNotListed()
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

void LinksTest::aChildThatOnlyItsListHoldsMayLeave()
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

void LinksTest::linkingLeavesTheOtherEnd()
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

void LinksTest::ratingsGetTheId()
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

void LinksTest::idsOfPointsArrive()
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

void LinksTest::aCopyLearnsTheId()
{
    const auto owner = std::make_shared<Owner>();
    Cable cable;
    cable.SetOwner(owner);
    const Cable copy(cable);
    owner->SetId(QUuid::createUuid());
    QCOMPARE(copy.OwnerId(), owner->Id());
    QCOMPARE(cable.OwnerId(), owner->Id());
}

DATAACCESS_TEST(LinksTest)
#include "LinksTest.moc"
