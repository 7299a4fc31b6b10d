#include "support/RunningWorker.h"

namespace TestSupport {

RunningWorker::RunningWorker(const std::shared_ptr<DataAccess::Interfaces::IConfig>& config)
    : m_worker(DataAccess::Database::DbWorker::make_worker(&m_thread, config))
{
    m_thread.start();
}

RunningWorker::~RunningWorker()
{
    m_thread.quit();
    m_thread.wait();
    m_worker.reset();
}

} // namespace TestSupport
