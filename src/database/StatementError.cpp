#include "database/StatementError.h"

#include "database/ExecutionException.h"
#include "database/LoggingCategories.h"

namespace DataAccess::Database {

void throwStatementError(const QString& text)
{
    qCCritical(lcDatabase) << "SQL Error:" << text;
    throw Exceptions::ExecutionException(text.toLocal8Bit().constData());
}

} // namespace DataAccess::Database
