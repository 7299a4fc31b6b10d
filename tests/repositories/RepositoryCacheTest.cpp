#include "entities/cables/Owner.h"
#include "repositories/EditorDatabase.h"
#include "repositories/FakeRepository.h"
#include "repositories/cables/PhaseRepository.h"
#include "repositories/cables/PlainRepositories.h"
#include "repositories/cables/PointRepository.h"
#include "repositories/cables/SegmentRepository.h"
#include "support/Entities.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QTest>

#include <functional>
#include <thread>

using namespace DataAccess;
using namespace Cables::Entities;
using namespace QOR::Entities::Enumerations;
using Repositories::RepositoryCache;
using TestSupport::EditorDatabase;
using TestSupport::make;

namespace {

using Table = TestSupport::FakeRepository<Owner>;

/// A cache of owners with what it offers to subclasses.
class OwnerCache : public RepositoryCache<Owner>
{
public:
    using RepositoryCache::ask;
    using RepositoryCache::cache;
    using RepositoryCache::cached;
    using RepositoryCache::remove;
    using RepositoryCache::RepositoryCache;
};

/// Phases of cables and segments of phases are cached alike.
template <typename Repository, typename Cache, typename T>
void findsByParent(EditorDatabase& database, void (T::*setParent)(const QUuid&),
                   typename Cache::Entities (Cache::*query)(QUuid))
{
    const auto table = std::make_shared<Repository>(database.worker().get(), Enumerations::Complete, nullptr);
    const QUuid parent = QUuid::createUuid();
    const std::vector<std::shared_ptr<T>> children = {make<T>(), make<T>(), make<T>()};
    for (const auto& child : children)
        ((*child).*setParent)(child == children.back() ? QUuid::createUuid() : parent);
    children[0]->SetIndex(2);
    if constexpr (std::is_same_v<T, Segment>) {
        children[0]->SetName(QStringLiteral("first"));
        children[0]->SetLength(12.5);
        children[0]->SetDetailId(QUuid::createUuid());
        children[0]->SetInstallationDate(QDate(2001, 2, 3));
    }
    QVERIFY(table->Insert(children));

    Cache cache(table);
    QVERIFY(!cache.GetById(parent));
    const auto found = (cache.*query)(parent);
    QCOMPARE(found.size(), 2);
    QVERIFY(found.contains(children[1]->Id()));
    QCOMPARE(found.value(children[0]->Id())->toJson(), children[0]->toJson());
    QVERIFY(table->Remove(children));
    QCOMPARE((cache.*query)(parent), found);
    QCOMPARE(cache.GetById(children[0]->Id()), found.value(children[0]->Id()));

    QVERIFY(table->Insert(children));
    cache.Wipe();
    const auto single = cache.GetById(children[1]->Id());
    QCOMPARE((cache.*query)(parent), (typename Cache::Entities{{single->Id(), single}}));
}

} // namespace

class RepositoryCacheTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_table = std::make_shared<Table>();
        m_cache = std::make_unique<OwnerCache>(m_table);
        m_first = make<Owner>();
        m_second = make<Owner>();
        QVERIFY(m_table->Insert({m_first, m_second}));
        m_table->takeCalls();
    }

    void whatIsCachedIsNotReadAgain()
    {
        const auto all = m_cache->GetAll();
        QCOMPARE(all.size(), 2);
        const auto late = make<Owner>();
        QVERIFY(m_table->Insert({late}));
        m_table->takeCalls();
        QCOMPARE(m_cache->GetAll(), all);
        QCOMPARE(m_cache->GetById(m_first->Id()), all.value(m_first->Id()));
        QVERIFY(m_table->takeCalls().isEmpty());

        QCOMPARE(m_cache->Count(), 3U);
        m_cache->Reload();
        QCOMPARE(m_table->takeCalls(), QStringList({QStringLiteral("Count"), QStringLiteral("GetAll")}));
        QCOMPARE(m_cache->GetAll().size(), 3);
        QVERIFY(m_cache->GetById(m_first->Id()) != all.value(m_first->Id()));

        m_cache->Wipe();
        const auto only = m_cache->GetById(late->Id());
        QCOMPARE(m_cache->GetAll(), (Table::Entities{{late->Id(), only}}));
        m_cache->Wipe();
        QCOMPARE(m_cache->GetAll().size(), 3);
    }

    void aMissingIdIsRememberedUntilItIsInserted()
    {
        const auto late = make<Owner>();
        QVERIFY(!m_cache->GetById(late->Id()));
        QVERIFY(m_table->Insert({late}));
        QVERIFY(!m_cache->GetById(late->Id()));
        QVERIFY(m_cache->cached(late));
        QCOMPARE(m_table->takeCalls().count(QStringLiteral("GetById")), 1);
        QVERIFY(m_cache->Insert({late}));
        QCOMPARE(m_cache->GetById(late->Id()), late);
    }

    void writes_data()
    {
        QTest::addColumn<int>("operation");
        QTest::addColumn<int>("outcome");
        const char* const operations[] = {"Insert", "Update", "Delete", "Remove"};
        for (int operation = 0; operation < 4; ++operation) {
            QTest::addRow("%s", operations[operation]) << operation << int(Table::Success);
            QTest::addRow("%s fails", operations[operation]) << operation << int(Table::Failure);
            QTest::addRow("%s throws", operations[operation]) << operation << int(Table::Exception);
        }
    }
    void writes()
    {
        QFETCH(int, operation);
        QFETCH(int, outcome);
        const auto write = std::vector{&OwnerCache::Insert, &OwnerCache::Update, &OwnerCache::Delete,
                                       &OwnerCache::Remove}[static_cast<std::size_t>(operation)];
        const bool deletes = operation == 2;
        const bool removes = operation == 3;
        const auto before = m_cache->GetAll();
        const auto known = make<Owner>(m_first->Id());
        const auto late = make<Owner>();
        m_table->takeCalls();

        m_table->setOutcome(Table::Outcome(outcome));
        bool written = false;
        try {
            written = ((*m_cache).*write)({known, nullptr, late});
        } catch (const std::runtime_error&) {
            QCOMPARE(outcome, int(Table::Exception));
        }
        QCOMPARE(written, outcome == Table::Success);
        QCOMPARE(m_table->takeCalls().size(), 1);

        auto expected = before;
        if (written && removes) {
            expected.remove(known->Id());
        } else if (written) {
            expected[known->Id()] = known;
            expected[late->Id()] = late;
        }
        QCOMPARE(m_cache->GetAll(), expected);
        QCOMPARE(known->EntityState(), written && deletes ? Deleted : New);
        QCOMPARE(late->EntityState(), known->EntityState());
        QVERIFY(m_table->takeCalls().isEmpty());
    }

    void aReadThatFailsIsTriedAgain()
    {
        const auto all = [](Table& table) { return table.GetAll(); };
        for (const Table::Outcome outcome : {Table::Failure, Table::Exception}) {
            m_cache->Reload();
            m_table->setOutcome(outcome);
            try {
                m_cache->Reload();
                // What was read is handed out, and told to be a part.
                const Database::FailureWatch watch;
                QCOMPARE(m_cache->GetAll().size(), 1);
                QCOMPARE(m_cache->ask<Table>(all, Q_FUNC_INFO).size(), 1);
                QVERIFY(!m_cache->GetById(m_first->Id()));
                QCOMPARE(watch.failures().size(), 3);
            } catch (const std::runtime_error&) {
                QVERIFY_EXCEPTION_THROWN(m_cache->GetById(m_first->Id()), std::runtime_error);
            }
            m_table->setOutcome(Table::Success);
            QCOMPARE(m_cache->GetAll().size(), 2);
            QVERIFY(m_cache->GetById(m_first->Id()));
        }
    }

    void theAsynchronousOperationsLeaveTheCacheAlone()
    {
        const auto before = m_cache->GetAll();
        const auto late = make<Owner>();
        m_table->takeCalls();
        const auto expectPassedOn = [this](auto* made) {
            const std::unique_ptr<std::remove_pointer_t<decltype(made)>> task(made);
            QCOMPARE(static_cast<void*>(made), m_table->lastTask());
        };
        expectPassedOn(m_cache->GetAllAsync());
        expectPassedOn(m_cache->GetByIdAsync(late->Id()));
        expectPassedOn(m_cache->InsertAsync({late}));
        expectPassedOn(m_cache->UpdateAsync({late}));
        expectPassedOn(m_cache->DeleteAsync({m_first}));
        expectPassedOn(m_cache->RemoveAsync({m_first}));
        expectPassedOn(m_cache->CountAsync());
        QCOMPARE(m_table->takeCalls().join(QLatin1Char(' ')),
                 QStringLiteral("GetAllAsync GetByIdAsync InsertAsync UpdateAsync DeleteAsync RemoveAsync CountAsync"));
        QCOMPARE(m_cache->GetAll(), before);
        QCOMPARE(m_first->EntityState(), New);
    }

    void withoutARepository()
    {
        OwnerCache cache(nullptr);
        QVERIFY(cache.GetAll().isEmpty());
        QVERIFY(!cache.GetById(m_first->Id()));
        const Database::FailureWatch watch;
        QVERIFY(!cache.Insert({m_first}) && !cache.Update({m_first}) && !cache.Delete({m_first}));
        cache.cache(m_first);
        cache.cache(m_second);
        QVERIFY(!cache.Remove({m_first}));
        cache.remove(m_second);
        QCOMPARE(cache.GetAll(), (Table::Entities{{m_first->Id(), m_first}}));
        QCOMPARE(m_first->EntityState(), New);
        QCOMPARE(cache.Count(), 0U);
        cache.Reload();
        QVERIFY(!cache.cached(m_first));
        QVERIFY_EXCEPTION_THROWN(cache.GetAllAsync(), std::invalid_argument);

        const TestSupport::LogCapture log;
        Repositories::PhaseRepositoryCached phases(std::make_shared<TestSupport::FakeRepository<Phase>>());
        QVERIFY(phases.GetByCableId(QUuid::createUuid()).isEmpty());
        QCOMPARE(log.messages(QtWarningMsg, QStringLiteral("qor.database")).size(), 1);
        QCOMPARE(watch.failures().size(), 5); // three writes above, a removal, and the query
    }

    /// Owners come and go in pairs: whoever sees one of a pair without the other sees a torn state.
    void readersAndWritersDoNotDisturbEachOther()
    {
        std::atomic<int> torn{0};
        const auto use = [this, &torn](unsigned seed) {
            const auto one = make<Owner>();
            const auto other = make<Owner>();
            const std::vector<std::function<void()>> operations = {
                [&] {
                    m_cache->Insert({one, other});
                },
                [&] {
                    m_cache->Delete({one, other});
                },
                [&] { m_cache->Reload(); },
                [&] {
                    m_cache->Remove({one, other});
                },
                [&] { m_cache->Wipe(); },
                [&] { m_cache->GetById(QUuid::createUuid()); },
                [&] {
                    m_cache->Update({one, other});
                },
            };
            for (unsigned turn = seed; turn < seed + 1000; ++turn) {
                operations[turn % operations.size()]();
                const auto all = m_cache->GetAll();
                if (all.contains(one->Id()) != all.contains(other->Id()) ||
                    all.contains(m_first->Id()) != all.contains(m_second->Id()))
                    ++torn;
            }
        };
        std::vector<std::thread> threads;
        for (unsigned seed = 0; seed < 4; ++seed)
            threads.emplace_back(use, seed);
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(torn.load(), 0);
        QVERIFY(!m_table->wasEnteredTwice());
    }

    void childrenAreFoundByTheirParent_data() { TestSupport::addBackends(); }
    void childrenAreFoundByTheirParent()
    {
        EditorDatabase database;
        findsByParent<Repositories::PhaseRepository>(database, &Phase::SetCableId,
                                                     &Repositories::PhaseRepositoryCached::GetByCableId);
        findsByParent<Repositories::SegmentRepository>(database, &Segment::SetPhaseId,
                                                       &Repositories::SegmentRepositoryCached::GetByPhaseId);
    }

    void thePointsOfARouteAreAlwaysRead_data() { TestSupport::addBackends(); }
    void thePointsOfARouteAreAlwaysRead()
    {
        EditorDatabase database;
        const auto table =
            std::make_shared<Repositories::PointRepository>(database.worker().get(), Enumerations::Complete, nullptr);
        auto routes = database.repository<Repositories::RouteRepository>();
        const auto point = make<Point>();
        const auto route = make<Route>();
        route->SetPointIds({point->Id()});
        QVERIFY(table->Insert({point, make<Point>()}));
        QVERIFY(routes.Insert({route}));

        Repositories::PointRepositoryCached cache(table);
        const auto old = cache.GetById(point->Id());
        const auto found = cache.GetByRouteId(route->Id());
        QCOMPARE(found.keys(), QList<QUuid>{point->Id()});
        QVERIFY(found.value(point->Id()) != old);
        QCOMPARE(cache.GetAll(), found);
        QVERIFY(table->Remove({point}));
        QVERIFY(cache.GetByRouteId(route->Id()).isEmpty());
    }

private:
    std::shared_ptr<Table> m_table;
    std::unique_ptr<OwnerCache> m_cache;
    std::shared_ptr<Owner> m_first;
    std::shared_ptr<Owner> m_second;
};

DATAACCESS_TEST(RepositoryCacheTest)

#include "RepositoryCacheTest.moc"
