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

#include <QJsonArray>

#include <array>
#include <functional>

using namespace Cables::Entities;
using namespace PD::Entities;
using namespace QOR::Entities::Enumerations;
using TestSupport::make;

namespace {

/// A list, or a single place, of a parent P and the reference of the child C that faces it. Not every link has the last
/// operations.
template <typename P, typename C, auto getChildren, auto setChildren, auto getParentId, auto setParentId,
          auto getParentObject = nullptr, auto setParentObject = nullptr, auto addChild = nullptr,
          auto removeChild = nullptr>
struct Link
{
    using Parent = P;
    using Children = std::vector<std::shared_ptr<C>>;
    using Place = std::decay_t<std::invoke_result_t<decltype(getChildren), P&>>;
    using Child = C;
    static constexpr bool isSingle = std::is_convertible_v<std::shared_ptr<C>, Place>;
    static constexpr bool hasParent = !std::is_null_pointer_v<decltype(setParentObject)>;
    /// The route of a cable is stored at both ends.
    static constexpr bool isStoredByParent = std::is_same_v<C, Route>;
    static constexpr bool hasAdd = !std::is_null_pointer_v<decltype(addChild)>;

    static QString listName() { return TestSupport::nameOf<getChildren>(); }

    static Children children(const P& parent)
    {
        Children found;
        const auto note = [&found](const auto& child) {
            if (child)
                found.push_back(std::dynamic_pointer_cast<C>(child));
        };
        if constexpr (isSingle) {
            note(std::invoke(getChildren, parent));
        } else {
            for (const auto& child : std::invoke(getChildren, parent))
                note(child);
        }
        return found;
    }

    static void replace(P& parent, const Children& children)
    {
        if constexpr (isSingle) {
            std::invoke(setChildren, parent, children.empty() ? nullptr : children.front());
        } else {
            Place list(children.begin(), children.end());
            std::invoke(setChildren, parent, list);
        }
    }

    static bool refersTo(const C& child, const std::shared_ptr<P>& parent)
    {
        if constexpr (hasParent) {
            if (std::invoke(getParentObject, child) != parent)
                return false;
        }
        return parentId(child) == (parent ? parent->Id() : QUuid());
    }
    static QUuid parentId(const C& child) { return std::invoke(getParentId, child); }
    static void setId(C& child, const QUuid& id) { std::invoke(setParentId, child, id); }
    static void setParent(C& child, const std::shared_ptr<P>& parent) { std::invoke(setParentObject, child, parent); }
    static void add(P& parent, const std::shared_ptr<C>& child) { std::invoke(addChild, parent, child); }
    static void remove(P& parent, const std::shared_ptr<C>& child) { std::invoke(removeChild, parent, child); }
};

/// Two parents, two children, and what is expected of them: the parent of each child by its number, -1 for none.
template <typename L>
struct Family
{
    std::array<std::shared_ptr<typename L::Parent>, 2> parents = {make<typename L::Parent>(),
                                                                  make<typename L::Parent>()};
    std::array<std::shared_ptr<typename L::Child>, 2> children = {make<typename L::Child>(), make<typename L::Child>()};
    std::array<int, 2> parentOf = {-1, -1};

    void settle() const
    {
        for (const auto& parent : parents)
            parent->SetEntityState(Normal);
        for (const auto& child : children)
            child->SetEntityState(Normal);
    }

    void put(std::size_t child, int parent)
    {
        if (L::isSingle && parent >= 0)
            std::replace(parentOf.begin(), parentOf.end(), parent, -1);
        parentOf[child] = parent;
    }

    bool holds(const std::array<int, 2>& before) const
    {
        for (std::size_t c = 0; c < 2; ++c) {
            if (!L::refersTo(*children[c], parentOf[c] < 0 ? nullptr : parents[std::size_t(parentOf[c])]))
                return false;
            if ((children[c]->EntityState() == Modified) != (parentOf[c] != before[c]))
                return false;
            for (std::size_t p = 0; p < 2; ++p) {
                if (!L::isStoredByParent && parents[p]->EntityState() != Normal)
                    return false;
                const auto listed = L::children(*parents[p]);
                if (std::count(listed.begin(), listed.end(), children[c]) != (int(p) == parentOf[c] ? 1 : 0))
                    return false;
            }
        }
        return true;
    }
};

template <typename L>
using Steps = std::vector<std::pair<QByteArray, std::function<void(Family<L>&)>>>;

/// Every operation that a link has, on every parent and child.
template <typename L>
Steps<L> stepsOf()
{
    using F = Family<L>;
    Steps<L> steps;
    const auto add = [&steps](const char* name, std::size_t p, std::size_t c, const std::function<void(F&)>& run) {
        steps.emplace_back(
            QByteArray(name) + ' ' + QByteArray::number(int(p)) + ' ' + QByteArray::number(int(c)) + "; ", run);
    };
    for (std::size_t p = 0; p < 2; ++p) {
        for (unsigned set = 0; set < (L::isSingle ? 3 : 4); ++set) {
            add("replace", p, set, [=](F& family) {
                typename L::Children list;
                for (std::size_t c = 0; c < 2; ++c) {
                    if (set & (c + 1))
                        list.push_back(family.children[c]);
                    else if (family.parentOf[c] == int(p))
                        family.put(c, -1);
                }
                for (std::size_t c = 0; c < 2; ++c) {
                    if (set & (c + 1))
                        family.put(c, int(p));
                }
                L::replace(*family.parents[p], list);
            });
        }
        for (std::size_t c = 0; c < 2; ++c) {
            if constexpr (L::hasParent) {
                add("set parent", p, c, [=](F& family) {
                    family.put(c, int(p));
                    L::setParent(*family.children[c], family.parents[p]);
                });
            }
            if constexpr (L::hasAdd) {
                add("add", p, c, [=](F& family) {
                    family.put(c, int(p));
                    L::add(*family.parents[p], family.children[c]);
                });
                add("remove", p, c, [=](F& family) {
                    if (family.parentOf[c] == int(p))
                        family.put(c, -1);
                    L::remove(*family.parents[p], family.children[c]);
                });
            }
        }
    }
    for (std::size_t c = 0; c < 2; ++c) {
        add("no id", 9, c, [=](F& family) {
            family.put(c, -1);
            L::setId(*family.children[c], QUuid());
        });
        if constexpr (L::hasParent) {
            add("no parent", 9, c, [=](F& family) {
                family.put(c, -1);
                L::setParent(*family.children[c], nullptr);
            });
        }
    }
    return steps;
}

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
    const QStringList members = TestSupport::changedMembers(before, family.parents[0]->toJson());
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
