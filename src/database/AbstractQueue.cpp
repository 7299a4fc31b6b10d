#include "database/AbstractQueue.h"

namespace DataAccess::Database {

AbstractQueue::AbstractQueue(QObject* parent)
    : QObject(parent)
{}

AbstractQueue::~AbstractQueue() = default;

} // namespace DataAccess::Database
