#include "database/private/UuidText.h"

#include "database/private/EightCharacters.h"

#include <cstring>

namespace DataAccess::Database {

namespace {

using EightCharacters::each;

/// Twice four characters, as eight.
quint64 load(const char* first, const char* second)
{
    return qFromLittleEndian<quint32>(first) | static_cast<quint64>(qFromLittleEndian<quint32>(second)) << 32;
}

/// Not zero when one of the eight characters is no hexadecimal digit.
quint64 strangers(quint64 text)
{
    // The high bit of a sum shows that a character is at least the first of a range, or beyond the last one.
    const quint64 digits = (text + each(0x80 - '0')) & ~(text + each(0x7f - '9'));
    const quint64 lower = text | each(0x20);
    const quint64 letters = (lower + each(0x80 - 'a')) & ~(lower + each(0x7f - 'f'));
    return (~(digits | letters) | text) & EightCharacters::highBits;
}

/// The four bytes that eight hexadecimal digits stand for, in their order in memory.
quint32 bytes(quint64 text)
{
    quint64 values = (text & each(0x0f)) + 9 * (text >> 6 & each(1));
    values = (values << 4 | values >> 8) & 0x00ff00ff00ff00ffULL;
    values = (values | values >> 8) & 0x0000ffff0000ffffULL;
    return qToLittleEndian(static_cast<quint32>(values | values >> 16));
}

/// Whether @p text, of 36 characters, is of the usual form; then @p id is what it says.
bool parseUsual(const char* text, QUuid& id)
{
    const quint64 parts[] = {EightCharacters::load(text), load(text + 9, text + 14), load(text + 19, text + 24),
                             EightCharacters::load(text + 28)};
    if ((strangers(parts[0]) | strangers(parts[1]) | strangers(parts[2]) | strangers(parts[3])) != 0 ||
        text[8] != '-' || text[13] != '-' || text[18] != '-' || text[23] != '-')
        return false;
    const quint32 binary[] = {bytes(parts[0]), bytes(parts[1]), bytes(parts[2]), bytes(parts[3])};
    id.data1 = qFromBigEndian(binary[0]);
    id.data2 = static_cast<ushort>(qFromBigEndian(binary[1]) >> 16);
    id.data3 = static_cast<ushort>(qFromBigEndian(binary[1]));
    std::memcpy(id.data4, &binary[2], sizeof id.data4);
    return true;
}

} // namespace

QUuid parseUuid(QLatin1String text)
{
    constexpr int size = 36;
    QUuid id;
    if (text.size() == size + 2 && text.front() == QLatin1Char('{') && text.back() == QLatin1Char('}')) {
        if (parseUsual(text.data() + 1, id))
            return id;
    } else if (text.size() == size && parseUsual(text.data(), id)) {
        return id;
    }
    return QUuid::fromString(text);
}

} // namespace DataAccess::Database
