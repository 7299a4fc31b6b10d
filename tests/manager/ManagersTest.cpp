#include "context/AbstractContext.h"
#include "entities/cables/Owner.h"
#include "facade/IDataAccessFacade.h"
#include "factories/IFactory.h"
#include "manager/IRepositoryManager.h"
#include "repositories/ICachedRepository.h"
#include "support/TestMain.h"

#include <QTest>

#include <cstdint>
#include <cstring>

using namespace DataAccess::Interfaces;

namespace {

using Slots = QVector<int>;

/// The place of a virtual operation in the table of its class, as the C++ ABI encodes it in a pointer to member.
template <typename Operation>
int slot(Operation operation)
{
    std::uintptr_t words[2];
    static_assert(sizeof operation == sizeof words, "Not the ABI that this test knows");
    std::memcpy(words, &operation, sizeof words);
    return static_cast<int>((words[0] & ~std::uintptr_t(1)) / sizeof(void*));
}

template <typename... Operations>
Slots slotsOf(Operations... operations)
{
    return {slot(operations)...};
}

} // namespace

/// An application calls the interfaces through the tables that it was compiled against.
class VirtualOperationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void standInTheirOrder_data()
    {
        using Editor = IEditorRepositoryManager;
        using Pd = IPdRepositoryManager;
        using Lb = ILbRepositoryManager;
        using All = IRepositoryManager;
        using Cached = ICachedRepository<Cables::Entities::Owner>;
        QTest::addColumn<Slots>("places");
        QTest::newRow("editor") << slotsOf(
            &Editor::PointRepository, &Editor::PointRepositoryCached, &Editor::RatingRepository,
            &Editor::RatingRepositoryCached, &Editor::RouteRepository, &Editor::RouteRepositoryCached,
            &Editor::StationRepository, &Editor::StationRepositoryCached, &Editor::CableRepository,
            &Editor::CableRepositoryCached, &Editor::PhaseRepository, &Editor::PhaseRepositoryCached,
            &Editor::SegmentRepository, &Editor::SegmentRepositoryCached, &Editor::InsulationRepository,
            &Editor::InsulationRepositoryCached, &Editor::SegmentDetailRepository,
            &Editor::SegmentDetailRepositoryCached, &Editor::SegmentTypeRepository,
            &Editor::SegmentTypeRepositoryCached, &Editor::OwnerRepository, &Editor::OwnerRepositoryCached,
            &Editor::TerminationRepository, &Editor::TerminationRepositoryCached, &Editor::SwitchgearRepository,
            &Editor::SwitchgearRepositoryCached);
        QTest::newRow("PD") << slotsOf(&Pd::PdTaskRepository, &Pd::PdTaskRepositoryCached, &Pd::PdReportRepository,
                                       &Pd::PdReportRepositoryCached, &Pd::PdFileRepository,
                                       &Pd::PdFileRepositoryCached, &Pd::PdMappingEventRepository,
                                       &Pd::PdIecOverviewRepository, &Pd::PdSummaryRepository, &Pd::RatingRepository,
                                       &Pd::PdTaskInfoRepository, &Pd::PdLbDiagramRepository);
        QTest::newRow("cable book") << slotsOf(&Lb::CablebookMeasuresRepository, &Lb::CablebookMeasuresRepositoryCached,
                                               &Lb::SetCablebookMeasuresRepository);
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
    void standInTheirOrder()
    {
        QFETCH(Slots, places);
        // The destructor comes first and takes two places.
        for (int index = 0; index < places.size(); ++index)
            QCOMPARE(places[index], index + 2);
    }

    void thoseOfAContextFollowThoseOfQObject()
    {
        using DataAccess::Context::AbstractContext;
        const Slots places = slotsOf(&AbstractContext::attach, &AbstractContext::detach, &AbstractContext::reload,
                                     &AbstractContext::saveChanges);
        QCOMPARE(places, Slots({12, 13, 14, 15}));
    }
};

DATAACCESS_TEST(VirtualOperationsTest)

#include "VirtualOperationsTest.moc"
