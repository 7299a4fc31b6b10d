#include "factories/EditorRepositoryManagerFactory.h"
#include "factories/LbRepositoryManagerFactory.h"
#include "factories/PdRepositoryManagerFactory.h"
#include "manager/RepositoryManager.h"
#include "repositories/cables/PhaseRepository.h"
#include "repositories/cables/PointRepository.h"
#include "repositories/cables/RatingRepository.h"
#include "repositories/cables/SegmentRepository.h"
#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PdReportRepository.h"
#include "repositories/pd/PlainRepositories.h"
#include "support/TestMain.h"

#include <QTest>

#include <algorithm>
#include <functional>
#include <set>

using namespace DataAccess;
using namespace DataAccess::Factories;
using namespace DataAccess::Manager;

namespace {

using Objects = std::vector<std::shared_ptr<void>>;

/// Everything that a manager hands out.
Objects objectsOf(const EditorRepositoryManager& m)
{
    return {m.CableRepository(),         m.CableRepositoryCached(),
            m.InsulationRepository(),    m.InsulationRepositoryCached(),
            m.OwnerRepository(),         m.OwnerRepositoryCached(),
            m.PhaseRepository(),         m.PhaseRepositoryCached(),
            m.PointRepository(),         m.PointRepositoryCached(),
            m.RatingRepository(),        m.RatingRepositoryCached(),
            m.RouteRepository(),         m.RouteRepositoryCached(),
            m.SegmentDetailRepository(), m.SegmentDetailRepositoryCached(),
            m.SegmentRepository(),       m.SegmentRepositoryCached(),
            m.SegmentTypeRepository(),   m.SegmentTypeRepositoryCached(),
            m.StationRepository(),       m.StationRepositoryCached(),
            m.SwitchgearRepository(),    m.SwitchgearRepositoryCached(),
            m.TerminationRepository(),   m.TerminationRepositoryCached()};
}

Objects objectsOf(const PdRepositoryManager& m)
{
    return {m.PdFileRepository(),         m.PdFileRepositoryCached(),   m.PdReportRepository(),
            m.PdReportRepositoryCached(), m.PdTaskRepository(),         m.PdTaskRepositoryCached(),
            m.PdIecOverviewRepository(),  m.PdMappingEventRepository(), m.PdLbDiagramRepository(),
            m.PdSummaryRepository(),      m.PdTaskInfoRepository(),     m.RatingRepository()};
}

Objects objectsOf(const LbRepositoryManager& m)
{
    return {m.CablebookMeasuresRepository(), m.CablebookMeasuresRepositoryCached()};
}

/// A manager of some family, with all that it hands out.
struct Built
{
    std::shared_ptr<AbstractRepositoryManager> manager;
    Objects objects;
};

using Build = std::function<Built(QObject* parent)>;

/// Builds with a factory that has @p parent as its own.
template <typename Factory>
Built build(QObject* parent)
{
    const auto manager = Factory(parent).create(nullptr, Enumerations::WithoutImages);
    return {manager, objectsOf(*manager)};
}

void addFamilies()
{
    QTest::addColumn<Build>("build");
    QTest::newRow("editor") << Build(build<EditorRepositoryManagerFactory>);
    QTest::newRow("PD") << Build(build<PdRepositoryManagerFactory>);
    QTest::newRow("cable book") << Build(build<LbRepositoryManagerFactory>);
}

} // namespace

Q_DECLARE_METATYPE(Build)

class FactoriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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

    void nothingIsLeftOfAThousandManagers()
    {
        QObject parent;
        std::size_t seen = 0;
        std::size_t left = 0;
        for (int round = 0; round < 1000; ++round) {
            auto editor = EditorRepositoryManagerFactory(&parent).create(nullptr, Enumerations::Complete);
            auto pd = PdRepositoryManagerFactory(&parent).create(nullptr, Enumerations::Complete);
            auto lb = LbRepositoryManagerFactory(&parent).create(nullptr, Enumerations::Complete);
            std::vector<std::weak_ptr<void>> objects = {editor, pd, lb};
            for (const Objects& owned : {objectsOf(*editor), objectsOf(*pd), objectsOf(*lb)})
                objects.insert(objects.end(), owned.begin(), owned.end());
            auto all = std::make_unique<RepositoryManager>(std::move(editor), std::move(pd), std::move(lb), nullptr,
                                                           nullptr, nullptr);
            const auto alive = [](const std::weak_ptr<void>& object) { return !object.expired(); };
            seen += std::count_if(objects.begin(), objects.end(), alive);
            all.reset();
            left += std::count_if(objects.begin(), objects.end(), alive);
        }
        QCOMPARE(seen, std::size_t(1000 * (3 + 26 + 12 + 2)));
        QCOMPARE(left, std::size_t(0));
        QVERIFY(parent.children().isEmpty());
    }

    void aManagerMayEndBeforeItsParent_data() { addFamilies(); }
    void aManagerMayEndBeforeItsParent()
    {
        QFETCH(Build, build);
        QObject parent;
        const bool hasParent = QTest::currentDataTag() != QByteArray("PD");
        Built built = build(&parent);
        QCOMPARE(built.manager->parent(), hasParent ? &parent : nullptr);
        built = {};
        QVERIFY(parent.children().isEmpty());
    }

    void aManagerMayOutliveItsParent_data() { addFamilies(); }
    void aManagerMayOutliveItsParent()
    {
        QFETCH(Build, build);
        auto parent = std::make_unique<QObject>();
        Built built = build(parent.get());
        const std::weak_ptr<void> manager = built.manager;
        parent.reset();
        QVERIFY(!built.manager->parent());
        built = {};
        QVERIFY(manager.expired());
    }
};

DATAACCESS_TEST(FactoriesTest)

#include "FactoriesTest.moc"
