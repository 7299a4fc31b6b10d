#include "entities/qor/QorUuidHelpers.h"

#include <QtEndian>

namespace QOR::Entities {

namespace {

constexpr uint markData1 = 0x514f5200;
constexpr ushort markData2 = 0x1d00;
// The version digit 8 says that the rest follows no rule but the maker's own (RFC 9562).
constexpr ushort markData3 = 0x8000;

} // namespace

qint64 QorUuidHelpers::intFromUuid(const QUuid& id)
{
    if (id.data1 != markData1 || id.data2 != markData2 || id.data3 != markData3)
        return 0;
    return qFromBigEndian<qint64>(id.data4);
}

QUuid QorUuidHelpers::uuidFromInt(qint64 number)
{
    QUuid id(markData1, markData2, markData3, 0, 0, 0, 0, 0, 0, 0, 0);
    qToBigEndian(number, id.data4);
    return id;
}

} // namespace QOR::Entities
