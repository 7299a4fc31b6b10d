#pragma once

#include <QLatin1String>
#include <QtEndian>

/**
 * Eight characters of one byte each as one number, so that all of them are looked at at once. The first one is in the
 * lowest byte. A sum of two such numbers may carry from one byte into the next, but only out of a byte that is no ASCII
 * character: who adds has to refuse those.
 */
namespace DataAccess::Database::EightCharacters {

/// @p byte in each of the bytes.
constexpr quint64 each(quint64 byte)
{
    return byte * 0x0101010101010101ULL;
}

/// The bits that no ASCII character has.
constexpr quint64 highBits = each(0x80);

inline quint64 load(const char* text)
{
    return qFromLittleEndian<quint64>(text);
}

/// Calls @p look with positions from which eight characters each make up all @p size ones; there must be eight.
template <typename Look>
void forAll(int size, const Look& look)
{
    for (int at = 0; at + 8 <= size; at += 8)
        look(at);
    look(size - 8); // the rest, and some of those before it again
}

inline bool isAscii(QLatin1String text)
{
    quint64 bits = 0;
    if (text.size() >= 8) {
        forAll(text.size(), [&](int at) { bits |= load(text.data() + at); });
        return (bits & highBits) == 0;
    }
    for (const char character : text)
        bits |= static_cast<unsigned char>(character);
    return bits < 0x80;
}

} // namespace DataAccess::Database::EightCharacters
