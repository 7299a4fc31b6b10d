#include "database/DbWorker.h"

#include "database/Database.h"
#include "database/DbException.h"
#include "support/LogCapture.h"
#include "support/RunningWorker.h"
#include "support/TestDatabase.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QDir>
#include <QTest>

#include <atomic>
#include <thread>

using namespace DataAccess;
using namespace DataAccess::Exceptions;
using Database::DbWorker;
using Database::Task;
using Interfaces::IDatabase;
using TestSupport::LogCapture;
using TestSupport::RunningWorker;
using TestSupport::TestDatabase;

/// The queue of jobs, the thread that runs them, and the tasks that wait for them.
class DbWorkerTest : public QObject
{
    Q_OBJECT

    const TestDatabase m_file{Enumerations::SQLite3};

    static int entries(const char* folder)
    {
        return QDir(QLatin1String(folder)).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
    }

private Q_SLOTS:
    void argumentsAreRequired()
    {
        QThread thread;
        QVERIFY_EXCEPTION_THROWN(DbWorker::make_worker(nullptr, m_file.config()), std::invalid_argument);
        QVERIFY_EXCEPTION_THROWN(DbWorker::make_worker(&thread, nullptr), std::invalid_argument);
    }

    void jobsOfManyProducersTakeTurns()
    {
        constexpr int jobs = 300;
        RunningWorker worker(m_file.config());
        std::atomic<int> running = 0;
        std::atomic<int> faults = 0;
        std::vector<int> next(3, 0); // this and the next are used on the worker's thread only
        IDatabase* only = nullptr;
        std::vector<std::thread> producers;
        producers.reserve(next.size());
        for (int& expected : next) {
            producers.emplace_back([&] {
                for (int i = 0; i < jobs; ++i) {
                    worker.get()->insert([&, i](IDatabase& db) {
                        only = only == nullptr ? &db : only;
                        if (++running != 1 || expected++ != i || only != &db)
                            ++faults;
                        std::this_thread::yield();
                        --running;
                    });
                }
            });
        }
        for (std::thread& producer : producers)
            producer.join();
        QCOMPARE(worker.run([&](IDatabase&) { return next; }), std::vector<int>(3, jobs));
        QCOMPARE(faults.load(), 0);
    }

    void jobsBeforeTheStartRunAfterIt()
    {
        QThread thread;
        const auto worker = DbWorker::make_worker(&thread, m_file.config());
        std::vector<int> order;
        for (const int i : {1, 2, 3})
            worker->insert([&, i](IDatabase&) { order.push_back(i); });
        Task<QThread*> last([](IDatabase&) { return QThread::currentThread(); });
        worker->insert(last.toJob());
        QTest::qWait(50);
        QVERIFY(order.empty() && !last.IsCompleted());
        thread.start();
        QCOMPARE(last.Result(), &thread);
        QCOMPARE(order, (std::vector<int>{1, 2, 3}));
        thread.quit();
        thread.wait();
    }

    void failingJobsDoNotStopTheNext()
    {
        RunningWorker worker(m_file.config());
        const LogCapture log;
        worker.get()->insert([](IDatabase&) { throw std::runtime_error("a reason"); });
        worker.get()->insert([](IDatabase&) { throw 1; });
        worker.get()->insert(nullptr);
        worker.run([](IDatabase&) {});
        QCOMPARE(log.messages(QtCriticalMsg, QStringLiteral("qor.database")).size(), 3);
        QVERIFY(log.contains(QStringLiteral("Job failed: a reason")));
    }

    void requestsDuringAnEventLoopAreKept()
    {
        RunningWorker worker(m_file.config());
        std::promise<void> inserted;
        std::atomic<bool> inFirst = true;
        worker.get()->insert([&](IDatabase&) {
            inserted.get_future().wait();
            QCoreApplication::processEvents();
            inFirst = false;
        });
        Task<bool> second([&](IDatabase&) { return inFirst.load(); });
        worker.get()->insert(second.toJob());
        inserted.set_value();
        QCOMPARE(second.Completion().wait_for(std::chrono::seconds(10)), std::future_status::ready);
        QVERIFY(!second.Result());
    }

    void waitingJobsAreDropped()
    {
        Task<bool> waiting([](IDatabase&) { return true; });
        Task<bool> late([](IDatabase&) { return true; });
        std::shared_ptr<Database::JobQueue> queue;
        {
            QThread neverStarted;
            const auto worker = DbWorker::make_worker(&neverStarted, m_file.config());
            queue = worker->queue();
            worker->insert(waiting.toJob());
        }
        queue->push(late.toJob());
        for (Task<bool>* task : {&waiting, &late}) {
            QVERIFY(task->IsCompleted() && !task->Completion().get());
            QVERIFY_EXCEPTION_THROWN(task->Result(), NotOpenException);
        }
    }

    void nothingIsLeft_data() { TestSupport::addBackends(); }
    void nothingIsLeft()
    {
        const TestDatabase database;
        const int threads = entries("/proc/self/task");
        const int files = entries("/proc/self/fd");
        {
            RunningWorker worker(database.config());
            QVERIFY(worker.run([](IDatabase& db) {
                db.Exec(QStringLiteral("CREATE TABLE t AS SELECT 1 AS a UNION SELECT 2"));
                QSqlQuery& unfinished = db.Query();
                return unfinished.exec(QStringLiteral("SELECT a FROM t")) && unfinished.next();
            }));
            worker.run([](IDatabase& db) { db.Exec(QStringLiteral("DROP TABLE t")); });
        }
        QTRY_VERIFY(entries("/proc/self/task") <= threads && entries("/proc/self/fd") <= files);
    }

    void resultsAndExceptionsReachTheWaiter()
    {
        RunningWorker worker(m_file.config());
        std::promise<void> go;
        const auto captured = std::make_shared<int>(42);
        Task<int> value([&, captured](IDatabase&) {
            go.get_future().wait();
            return *captured;
        });
        Task<bool> failure([](IDatabase& db) { return db.Exec(QStringLiteral("no SQL")).isActive(); });
        worker.get()->insert(value.toJob());
        worker.get()->insert(failure.toJob());
        bool ran = false;
        worker.get()->insert(Task<bool>([&](IDatabase&) { return ran = true; }).toJob()); // a task that is gone at once
        QVERIFY(!value.IsCompleted());
        go.set_value();
        QCOMPARE(value.Result(), 42);
        failure.Wait();
        QVERIFY(value.IsCompleted() && value.Completion().get() && !failure.Completion().get());
        QVERIFY_EXCEPTION_THROWN(failure.Result(), ExecutionException);
        QVERIFY(worker.run([&](IDatabase&) { return ran; }));
        QCOMPARE(captured.use_count(), 1L); // what the job held goes with the job, not with the task
    }

    void taskRunsOnce()
    {
        Database::Database db(m_file.config());
        Task<int> movedFrom([](IDatabase&) { return 1; });
        Task<int> task(std::move(movedFrom));
        // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
        QVERIFY_EXCEPTION_THROWN(movedFrom(db), std::future_error);
        QVERIFY_EXCEPTION_THROWN(movedFrom.toJob(), std::future_error);
        task(db);
        QVERIFY_EXCEPTION_THROWN(task(db), std::future_error);
        QCOMPARE(task.Result(), 1);
        QVERIFY_EXCEPTION_THROWN(task.Result(), std::future_error);
    }
};

DATAACCESS_TEST(DbWorkerTest)
#include "DbWorkerTest.moc"
