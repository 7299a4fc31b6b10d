#pragma once

#include "database/DataAccessExport.h"
#include "database/Failure.h"

#include <QString>
#include <QUuid>
#include <QtGlobal>

namespace DataAccess::Exceptions {
class DbException;
}
namespace DataAccess::Interfaces {
class IDatabase;
class IRowReader;
} // namespace DataAccess::Interfaces

namespace DataAccess::Database {

class Transaction;

/// One operation on a table. It logs what fails in it (category "qor.database") and reports it to the FailureWatch of
/// its caller; both name the table, and the row where that is known.
class DATAACCESS_EXPORT Operation
{
public:
    /// @p function is what was called, as Q_FUNC_INFO gives it; @p table must outlive the operation. @p severity is
    /// that of a failure in the log; a row that is not there is never more than a warning.
    Operation(const char* function, const QString& table, QtMsgType severity = QtWarningMsg);

    /// Tells of an exception that a statement on @p db has thrown.
    void failed(Interfaces::IDatabase& db, const Exceptions::DbException& error, const QUuid& row = QUuid()) const;
    /// Tells of a failure for @p reason.
    void failed(Failure::Kind kind, const QString& reason, const QUuid& row = QUuid()) const;
    /// Reports to the watch only: the connection has logged why the select failed.
    void selectFailed(Interfaces::IDatabase& db, const Exceptions::DbException& error) const;
    /// Something ended @p reader before the last row.
    void readFailed(const Interfaces::IRowReader& reader) const;
    /// Tells why @p transaction could not be committed.
    void commitFailed(const Transaction& transaction) const;
    /// The row of @p id was not there to be changed.
    void foundNoRow(const QUuid& id) const;

private:
    Failure failure(Failure::Kind kind, const QString& reason, const QUuid& row) const;
    void tell(const Failure& failure) const;

    const char* m_function;
    const QString& m_table;
    const QtMsgType m_severity;
};

} // namespace DataAccess::Database
