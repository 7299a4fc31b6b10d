#include "database/PostgresAddress.h"

#include <libpq-fe.h>
#include <memory>
#include <stdexcept>

namespace DataAccess::Database {

QVector<QPair<QString, QString>> parsePostgresAddress(const QString& address)
{
    char* reason = nullptr;
    const std::unique_ptr<PQconninfoOption, void (*)(PQconninfoOption*)> options(
        PQconninfoParse(address.toUtf8().constData(), &reason), &PQconninfoFree);
    PQfreemem(reason);
    if (!options)
        throw std::invalid_argument("no valid address of a PostgreSQL database");
    QVector<QPair<QString, QString>> said;
    for (const PQconninfoOption* option = options.get(); option->keyword != nullptr; ++option) {
        if (option->val != nullptr)
            said.append({QString::fromLatin1(option->keyword), QString::fromUtf8(option->val)});
    }
    return said;
}

} // namespace DataAccess::Database
