#include "facade/RunningDatabase.h"

#include "database/IConfig.h"
#include "database/LoggingCategories.h"
#include "database/Task.h"
#include "manager/IRepositoryManager.h"

#include <QCoreApplication>

#include <chrono>

namespace DataAccess {

RunningDatabase::RunningDatabase(const std::shared_ptr<Interfaces::IConfig>& config)
    : m_thread(std::make_unique<QThread>())
    , m_worker(Database::DbWorker::make_worker(m_thread.get(), config))
{
    m_thread->setObjectName(QStringLiteral("Thread_") + config->ConnectionName());
    m_thread->start();
}

RunningDatabase::~RunningDatabase()
{
    constexpr unsigned long patience = 3000;
    m_worker->queue()->close();
    m_thread->quit();
    if (!m_thread->wait(patience)) {
        qCCritical(lcFacade) << m_thread->objectName() << "does not end and is terminated";
        m_thread->terminate();
        m_thread->wait();
    }
    repositories.reset();
}

void RunningDatabase::finishJobs()
{
    Database::Task<bool> last([](Interfaces::IDatabase&) { return true; });
    m_worker->insert(last.toJob());
    while (last.Completion().wait_for(std::chrono::milliseconds(100)) != std::future_status::ready) {
        if (m_thread->isFinished() || QCoreApplication::instance() == nullptr)
            return;
    }
}

} // namespace DataAccess
