#include "context/AbstractContext.h"
#include "facade/IDataAccessFacade.h"
#include "factories/EditorRepositoryManagerFactory.h"
#include "factories/LbRepositoryManagerFactory.h"
#include "factories/PdRepositoryManagerFactory.h"
#include "manager/RepositoryManager.h"
#include "manager/private/Kinds.h"
#include "repositories/ICachedRepository.h"
#include "support/TestMain.h"

#include <QTest>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <set>

using namespace DataAccess;
using namespace DataAccess::Factories;
using namespace DataAccess::Interfaces;
using namespace DataAccess::Manager;

namespace {

using Editor = IEditorRepositoryManager;
using Pd = IPdRepositoryManager;
using Lb = ILbRepositoryManager;

// What the managers hand out, in the order of the virtual operations.
constexpr auto s_editor = std::make_tuple(
    &Editor::PointRepository, &Editor::PointRepositoryCached, &Editor::RatingRepository,
    &Editor::RatingRepositoryCached, &Editor::RouteRepository, &Editor::RouteRepositoryCached,
    &Editor::StationRepository, &Editor::StationRepositoryCached, &Editor::CableRepository,
    &Editor::CableRepositoryCached, &Editor::PhaseRepository, &Editor::PhaseRepositoryCached,
    &Editor::SegmentRepository, &Editor::SegmentRepositoryCached, &Editor::InsulationRepository,
    &Editor::InsulationRepositoryCached, &Editor::SegmentDetailRepository, &Editor::SegmentDetailRepositoryCached,
    &Editor::SegmentTypeRepository, &Editor::SegmentTypeRepositoryCached, &Editor::OwnerRepository,
    &Editor::OwnerRepositoryCached, &Editor::TerminationRepository, &Editor::TerminationRepositoryCached,
    &Editor::SwitchgearRepository, &Editor::SwitchgearRepositoryCached);
constexpr auto s_pd = std::make_tuple(
    &Pd::PdTaskRepository, &Pd::PdTaskRepositoryCached, &Pd::PdReportRepository, &Pd::PdReportRepositoryCached,
    &Pd::PdFileRepository, &Pd::PdFileRepositoryCached, &Pd::PdMappingEventRepository, &Pd::PdIecOverviewRepository,
    &Pd::PdSummaryRepository, &Pd::RatingRepository, &Pd::PdTaskInfoRepository, &Pd::PdLbDiagramRepository);
constexpr auto s_lb = std::make_tuple(&Lb::CablebookMeasuresRepository, &Lb::CablebookMeasuresRepositoryCached);

using Slots = QVector<int>;

/// The places of virtual operations in the table of their class, as the C++ ABI encodes them in pointers to members.
template <typename... Operation>
Slots slotsOf(Operation... operations)
{
    const auto slot = [](auto operation) {
        std::uintptr_t words[2];
        static_assert(sizeof operation == sizeof words, "Not the ABI that this test knows");
        std::memcpy(words, &operation, sizeof words);
        return static_cast<int>((words[0] & ~std::uintptr_t(1)) / sizeof(void*));
    };
    return {slot(operations)...};
}

using Objects = std::vector<std::shared_ptr<void>>;

/// A manager of some family, with all that it hands out.
struct Built
{
    std::shared_ptr<AbstractRepositoryManager> manager;
    Objects objects;
};

using Build = std::function<Built(QObject* parent)>;

/// Builds with a factory that has a parent.
template <typename Factory, typename Operations>
Build builder(const Operations& operations)
{
    return [&operations](QObject* parent) {
        const auto manager = Factory(parent).create(nullptr, Enumerations::WithoutImages);
        return std::apply(
            [&](auto... operation) {
                return Built{manager, {((*manager).*operation)()...}};
            },
            operations);
    };
}

const std::vector<std::pair<const char*, Build>> s_families = {
    {"editor", builder<EditorRepositoryManagerFactory>(s_editor)},
    {"PD", builder<PdRepositoryManagerFactory>(s_pd)},
    {"cable book", builder<LbRepositoryManagerFactory>(s_lb)}};

void addFamilies()
{
    QTest::addColumn<Build>("build");
    for (const auto& [name, build] : s_families)
        QTest::newRow(name) << build;
}

} // namespace

Q_DECLARE_METATYPE(Build)

/// What an application finds in the managers of a database, which it calls through the tables of virtual operations
/// that it was compiled against.
class ManagersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void virtualOperationsStandInTheirOrder_data()
    {
        using All = IRepositoryManager;
        using Cached = ICachedRepository<Cables::Entities::Owner>;
        const auto slotsOfAll = [](auto... operation) { return slotsOf(operation...); };
        QTest::addColumn<Slots>("places");
        QTest::newRow("editor") << std::apply(slotsOfAll, s_editor);
        QTest::newRow("PD") << std::apply(slotsOfAll, s_pd);
        QTest::newRow("cable book") << std::apply(slotsOfAll, s_lb) + slotsOf(&Lb::SetCablebookMeasuresRepository);
        QTest::newRow("all") << slotsOf(&All::EditorRepositories, &All::PdRepositories, &All::LbRepositories,
                                        &All::CableContext, &All::PdContext, &All::dbWorker);
        QTest::newRow("cached") << slotsOf(
            &Cached::GetAll, &Cached::GetAllAsync, &Cached::GetById, &Cached::GetByIdAsync, &Cached::Insert,
            &Cached::InsertAsync, &Cached::Update, &Cached::UpdateAsync, &Cached::Delete, &Cached::DeleteAsync,
            &Cached::Remove, &Cached::RemoveAsync, &Cached::Count, &Cached::CountAsync, &Cached::Reload, &Cached::Wipe);
        QTest::newRow("facade") << slotsOf(&IDataAccessFacade::AddDatabase, &IDataAccessFacade::GetRepositories,
                                           &IDataAccessFacade::RemoveDatabase, &IDataAccessFacade::GetVersions,
                                           &IDataAccessFacade::GetMigrationMessages);
        QTest::newRow("factory") << slotsOf(&IFactory<IRepositoryManager>::create);
    }
    void virtualOperationsStandInTheirOrder()
    {
        QFETCH(Slots, places);
        // The destructor comes first and takes two places.
        for (int index = 0; index < places.size(); ++index)
            QCOMPARE(places[index], index + 2);
    }

    void thoseOfAContextFollowThoseOfQObject()
    {
        using Context::AbstractContext;
        const Slots places = slotsOf(&AbstractContext::attach, &AbstractContext::detach, &AbstractContext::reload,
                                     &AbstractContext::saveChanges);
        QCOMPARE(places, Slots({12, 13, 14, 15}));
    }

    void eachManagerIsFilledWithObjectsOfItsOwn_data() { addFamilies(); }
    void eachManagerIsFilledWithObjectsOfItsOwn()
    {
        QFETCH(Build, build);
        const Built first = build(nullptr);
        const Built second = build(nullptr);
        std::set<void*> distinct;
        for (const Built& built : {first, second}) {
            for (const auto& object : built.objects)
                distinct.insert(object.get());
        }
        QCOMPARE(distinct.count(nullptr), std::size_t(0));
        QCOMPARE(distinct.size(), 2 * first.objects.size());
    }

    void theViewsHaveTheirOwnQueries()
    {
        const auto manager = EditorRepositoryManagerFactory().create(nullptr, Enumerations::Complete);
        const auto has = [](auto* kind, const auto& view) {
            return dynamic_cast<decltype(kind)>(view.get()) != nullptr;
        };
        QVERIFY(has(static_cast<Repositories::PhaseRepositoryCached*>(nullptr), manager->PhaseRepositoryCached()));
        QVERIFY(has(static_cast<Repositories::PointRepositoryCached*>(nullptr), manager->PointRepositoryCached()));
        QVERIFY(has(static_cast<Repositories::SegmentRepositoryCached*>(nullptr), manager->SegmentRepositoryCached()));
        QVERIFY_EXCEPTION_THROWN(manager->OwnerRepositoryCached()->GetAll(), std::invalid_argument);
    }

    void everyAccessorIsThatOfAKind()
    {
        // Of the results only tasks, reports and files have views.
        static_assert(std::tuple_size_v<EditorKinds> * 2 == std::tuple_size_v<decltype(s_editor)>);
        static_assert(std::tuple_size_v<PdKinds> + 3 == std::tuple_size_v<decltype(s_pd)>);
        const auto manager = EditorRepositoryManagerFactory().create(nullptr, Enumerations::Complete);
        const auto results = PdRepositoryManagerFactory().create(nullptr, Enumerations::Complete);
        const auto check = [](const auto& owner, const auto& kind) {
            using Kind = std::decay_t<decltype(kind)>;
            const auto repository = ((*owner).*kind.repository)();
            QVERIFY2(std::dynamic_pointer_cast<typename Kind::Repository>(repository), kind.name);
            ((*owner).*kind.setRepository)(nullptr);
            QVERIFY2(!((*owner).*kind.repository)(), kind.name);
        };
        forEachKind(editorKinds, [&](const auto& kind) { check(manager, kind); });
        forEachKind(pdKinds, [&](const auto& kind) { check(results, kind); });
    }

    void nothingIsLeftOfAThousandManagers()
    {
        QObject parent;
        std::size_t left = 0;
        for (int round = 0; round < 1000; ++round) {
            std::vector<std::weak_ptr<void>> objects;
            for (const auto& family : s_families) {
                const Built built = family.second(&parent);
                objects.emplace_back(built.manager);
                objects.insert(objects.end(), built.objects.begin(), built.objects.end());
            }
            left += std::count_if(objects.begin(), objects.end(), [](const auto& object) { return !object.expired(); });
        }
        QCOMPARE(left, std::size_t(0));
        QVERIFY(parent.children().isEmpty());
    }

    void aManagerMayOutliveItsParent_data() { addFamilies(); }
    void aManagerMayOutliveItsParent()
    {
        QFETCH(Build, build);
        auto parent = std::make_unique<QObject>();
        Built built = build(parent.get());
        const bool hasParent = QTest::currentDataTag() != QByteArray("PD");
        QCOMPARE(built.manager->parent(), hasParent ? parent.get() : nullptr);
        const std::weak_ptr<void> manager = built.manager;
        parent.reset();
        QVERIFY(!built.manager->parent());
        built = {};
        QVERIFY(manager.expired());
    }
};

DATAACCESS_TEST(ManagersTest)

#include "ManagersTest.moc"
