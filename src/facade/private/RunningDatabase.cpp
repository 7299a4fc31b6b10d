#include "facade/private/RunningDatabase.h"

#include "database/IConfig.h"
#include "database/LoggingCategories.h"
#include "manager/IRepositoryManager.h"

#include <QCoreApplication>

namespace DataAccess {

namespace {

/// A type of its own, so that isDatabaseThread() can recognise it.
class DatabaseThread final : public QThread
{};

} // namespace

RunningDatabase::RunningDatabase(const std::shared_ptr<Interfaces::IConfig>& config)
    : m_thread(std::make_unique<DatabaseThread>())
    , m_worker(Database::DbWorker::make_worker(m_thread.get(), config))
{
    m_thread->setObjectName(QStringLiteral("Thread_") + config->ConnectionName());
    m_thread->start();
    // Qt delivers no events without an application object: no job would run, and whoever waits for one would hang.
    if (QCoreApplication::instance() == nullptr || !m_thread->isRunning()) {
        qCCritical(lcFacade) << m_thread->objectName() << "cannot run: no application object, or too many threads";
        m_worker->queue()->close();
    }
}

RunningDatabase::~RunningDatabase()
{
    m_worker->queue()->close();
    m_thread->quit();
    if (endThread())
        return;
    // A job is still at work; deleting what it uses would crash the process.
    QThread* const thread = m_thread.release();
    QObject::connect(thread, &QThread::finished, m_worker.release(), &QObject::deleteLater);
    QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
}

bool RunningDatabase::endThread()
{
    constexpr unsigned long patience = 3000;
    if (m_thread->wait(patience))
        return true;
    qCCritical(lcFacade) << m_thread->objectName() << "does not end and is terminated";
    m_thread->terminate();
    return m_thread->wait(patience);
}

void RunningDatabase::finish()
{
    // Quits once the job has run, and also if it is dropped, since the application has closed the queue.
    const auto quit = [](QThread* thread) { thread->quit(); };
    std::shared_ptr<QThread> running(m_thread.get(), quit);
    // Closes on the worker's thread, so that no job begins between the last one and the end.
    m_worker->insert([queue = m_worker->queue(), running](Interfaces::IDatabase&) { queue->close(); });
    running.reset();
    m_thread->wait();
}

bool RunningDatabase::isDatabaseThread()
{
    return dynamic_cast<DatabaseThread*>(QThread::currentThread()) != nullptr;
}

} // namespace DataAccess
