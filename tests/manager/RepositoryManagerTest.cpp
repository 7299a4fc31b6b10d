#include "manager/RepositoryManager.h"

#include "manager/EditorRepositoryManager.h"
#include "manager/LbRepositoryManager.h"
#include "manager/PdRepositoryManager.h"
#include "repositories/FakeRepository.h"
#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PlainRepositories.h"
#include "support/TestMain.h"

#include <QTest>

using namespace DataAccess;
using namespace DataAccess::Manager;
using Cables::Entities::Owner;

namespace {

using Owners = TestSupport::FakeRepository<Owner>;

/// Opens up what the managers keep for their families.
class WatchedManager : public PdRepositoryManager
{
public:
    using PdRepositoryManager::repositories;
};

/// An object that can be held as a @p T but not used as one, and that adds @p name to @p ended at its end.
template <typename T>
std::shared_ptr<T> standIn(const QString& name, QStringList& ended)
{
    const std::shared_ptr<QString> object(new QString(name), [&ended](QString* text) {
        ended.append(*text);
        delete text;
    });
    return std::shared_ptr<T>(object, reinterpret_cast<T*>(object.get()));
}

} // namespace

class RepositoryManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anotherRepositoryComesWithAnEmptyView()
    {
        EditorRepositoryManager manager;
        QVERIFY(!manager.OwnerRepository() && !manager.OwnerRepositoryCached());

        auto first = std::make_shared<Owners>();
        const auto owner = std::make_shared<Owner>();
        owner->SetId(QUuid::createUuid());
        manager.SetOwnerRepository(first);
        auto view = manager.OwnerRepositoryCached();
        QVERIFY(view->Insert({owner}));
        manager.SetOwnerRepository(first);
        QCOMPARE(manager.OwnerRepositoryCached(), view);
        QCOMPARE(view->GetById(owner->Id()), owner);

        const auto second = std::make_shared<Owners>();
        manager.SetOwnerRepository(second);
        QCOMPARE(manager.OwnerRepository(), second);
        QVERIFY(manager.OwnerRepositoryCached() != view);
        QVERIFY(manager.OwnerRepositoryCached()->GetAll().isEmpty());

        const std::weak_ptr<Owners> replaced = first;
        first.reset();
        view.reset();
        QVERIFY(replaced.expired());
        QCOMPARE(owner.use_count(), 1);
    }

    void theListHasWhatEverWasSetBehindAView()
    {
        WatchedManager manager;
        const auto make = [] {
            return std::make_shared<Repositories::PdFileRepository>(nullptr, Enumerations::Complete, nullptr);
        };
        const auto kept = make();
        manager.SetPdFileRepository(make());
        manager.SetPdFileRepository(kept);
        manager.SetPdFileRepository(kept);
        manager.SetPdTaskInfoRepository(
            std::make_shared<Repositories::PdTaskInfoRepository>(nullptr, Enumerations::Complete, nullptr));
        QCOMPARE(manager.repositories().size(), std::size_t(2));
        QVERIFY(manager.repositories().front().expired());
        QCOMPARE(manager.repositories().back().lock(), std::shared_ptr<void>(kept));
    }

    void theContextIsNotOwned()
    {
        QStringList ended;
        EditorRepositoryManager manager;
        QVERIFY(!manager.Context());
        auto first = standIn<Context::AbstractContext>(QStringLiteral("first"), ended);
        const auto second = standIn<Context::AbstractContext>(QStringLiteral("second"), ended);
        manager.SetContext(second);
        manager.SetContext(first);
        QCOMPARE(manager.Context(), first);
        first.reset();
        QVERIFY(!manager.Context());
        QCOMPARE(ended, QStringList{QStringLiteral("first")});
        manager.SetContext(second);
        manager.SetContext(nullptr);
        QVERIFY(!manager.Context());
    }

    void theContextsGoBeforeTheManagers()
    {
        QStringList ended;
        auto manager = std::make_unique<RepositoryManager>(
            standIn<Interfaces::IEditorRepositoryManager>(QStringLiteral("editor"), ended),
            standIn<Interfaces::IPdRepositoryManager>(QStringLiteral("pd"), ended),
            standIn<Interfaces::ILbRepositoryManager>(QStringLiteral("lb"), ended),
            standIn<Context::CableContext>(QStringLiteral("cable context"), ended),
            standIn<Context::PdContext>(QStringLiteral("pd context"), ended), nullptr);
        QVERIFY(manager->CableContext() && manager->PdContext());
        QCOMPARE(ended, QStringList());
        manager.reset();
        QCOMPARE(ended.join(QLatin1Char(',')), QStringLiteral("pd context,cable context,lb,pd,editor"));
    }
};

DATAACCESS_TEST(RepositoryManagerTest)

#include "RepositoryManagerTest.moc"
