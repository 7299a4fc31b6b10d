#pragma once

#include "entities/qor/QorEntityExport.h"

#include <QUuid>

namespace QOR::Entities {

/**
 * Turns the integer keys of older tables into entity ids and back. The number stands, most significant byte first, in
 * the last eight bytes of the id; the first eight are a fixed mark, so that no number gives the null id.
 */
class QORENTITY_EXPORT QorUuidHelpers
{
public:
    /// The number that @p id was made from; 0 for an id that uuidFromInt() never returns.
    static qint64 intFromUuid(const QUuid& id);
    /// The id that stands for @p number, the same one each time.
    static QUuid uuidFromInt(qint64 number);
};

} // namespace QOR::Entities
