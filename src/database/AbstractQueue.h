#pragma once

#include "database/DataAccessExport.h"

#include <QObject>

namespace DataAccess::Database {

/// A queue that announces insertions. Declared for applications; the library's own JobQueue does not use it.
class DATAACCESS_EXPORT AbstractQueue : public QObject
{
    Q_OBJECT

public:
    explicit AbstractQueue(QObject* parent = nullptr)
        : QObject(parent)
    {}

Q_SIGNALS:
    /// Something was appended to the queue.
    void pushed();
};

} // namespace DataAccess::Database
