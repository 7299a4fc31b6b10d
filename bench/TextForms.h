#pragma once

#include <QDateTime>
#include <QUuid>

#include <array>
#include <charconv>
#include <string_view>

/**
 * The forms in which the databases give and take values as text, read and written by hand. What is measured through a
 * bare interface must not stand back for its conversions, so none of them goes through Qt's parsers.
 */
namespace Bench {

constexpr qint64 julianDayOfEpoch = 2440588;
constexpr qint64 millisecondsOfDay = 86400000;

inline int digits(const char* text, int count)
{
    int number = 0;
    for (int i = 0; i < count; ++i)
        number = 10 * number + (text[i] - '0');
    return number;
}

template <typename Number>
Number parseNumber(std::string_view text)
{
    Number number{};
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// Where the pairs of digits stand in "{00112233-4455-6677-8899-aabbccddeeff}".
constexpr std::array<int, 16> idPairs = {1, 3, 5, 7, 10, 12, 15, 17, 20, 22, 25, 27, 29, 31, 33, 35};
constexpr int idSize = 38;

/// The value of each hexadecimal digit; 255 for any other character.
inline constexpr std::array<uchar, 256> hexadecimal = [] {
    std::array<uchar, 256> values{};
    for (uchar& value : values)
        value = 255;
    for (uchar i = 0; i < 10; ++i)
        values['0' + i] = i;
    for (uchar i = 0; i < 6; ++i)
        values['a' + i] = values['A' + i] = static_cast<uchar>(10 + i);
    return values;
}();

/// Null for what is not the usual form.
inline QUuid parseId(std::string_view text)
{
    if (text.size() != idSize || text.front() != '{' || text.back() != '}')
        return {};
    std::array<uchar, 16> bytes{};
    int digits = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto* const pair = reinterpret_cast<const uchar*>(text.data() + idPairs[i]);
        const int high = hexadecimal[pair[0]];
        const int low = hexadecimal[pair[1]];
        digits |= high | low; // more than 15 once one was no digit
        bytes[i] = static_cast<uchar>(16 * high + low);
    }
    if (digits > 15)
        return {};
    const auto number = [&](std::size_t first) { return static_cast<uint>(bytes[first] << 8 | bytes[first + 1]); };
    return {number(0) << 16 | number(2),
            static_cast<ushort>(number(4)),
            static_cast<ushort>(number(6)),
            bytes[8],
            bytes[9],
            bytes[10],
            bytes[11],
            bytes[12],
            bytes[13],
            bytes[14],
            bytes[15]};
}

/// "yyyy-MM-dd".
inline QDate parseDate(std::string_view text)
{
    return text.size() < 10 ? QDate() : QDate(digits(&text[0], 4), digits(&text[5], 2), digits(&text[8], 2));
}

/// "yyyy-MM-dd HH:mm:ss.zzz", in UTC. PostgreSQL leaves zeros at the end away.
inline QDateTime parseTime(std::string_view text)
{
    if (text.size() < 19)
        return {};
    const qint64 day = parseDate(text).toJulianDay() - julianDayOfEpoch;
    int time = ((digits(&text[11], 2) * 60 + digits(&text[14], 2)) * 60 + digits(&text[17], 2)) * 1000;
    for (std::size_t i = 20, weight = 100; i < text.size() && weight > 0; ++i, weight /= 10)
        time += static_cast<int>(weight) * (text[i] - '0');
    return QDateTime::fromMSecsSinceEpoch(day * millisecondsOfDay + time, Qt::UTC);
}

inline void printDigits(char* text, int count, int number)
{
    for (int i = count - 1; i >= 0; --i, number /= 10)
        text[i] = static_cast<char>('0' + number % 10);
}

/// Each of these prints to @p text, and returns how many characters that were.
inline int printId(char* text, const QUuid& id)
{
    constexpr const char* hexadecimalDigits = "0123456789abcdef";
    const std::array<uchar, 8> front = {static_cast<uchar>(id.data1 >> 24), static_cast<uchar>(id.data1 >> 16),
                                        static_cast<uchar>(id.data1 >> 8),  static_cast<uchar>(id.data1),
                                        static_cast<uchar>(id.data2 >> 8),  static_cast<uchar>(id.data2),
                                        static_cast<uchar>(id.data3 >> 8),  static_cast<uchar>(id.data3)};
    for (const int dash : {9, 14, 19, 24})
        text[dash] = '-';
    for (std::size_t i = 0; i < idPairs.size(); ++i) {
        const uchar byte = i < front.size() ? front[i] : id.data4[i - front.size()];
        text[idPairs[i]] = hexadecimalDigits[byte >> 4];
        text[idPairs[i] + 1] = hexadecimalDigits[byte & 15];
    }
    text[0] = '{';
    text[idSize - 1] = '}';
    return idSize;
}

inline int printDate(char* text, const QDate& date)
{
    int year = 0;
    int month = 0;
    int day = 0;
    date.getDate(&year, &month, &day);
    printDigits(text, 4, year);
    printDigits(text + 5, 2, month);
    printDigits(text + 8, 2, day);
    text[4] = text[7] = '-';
    return 10;
}

inline int printTime(char* text, const QDateTime& time)
{
    const qint64 milliseconds = time.toMSecsSinceEpoch();
    int rest = static_cast<int>(milliseconds % millisecondsOfDay);
    printDate(text, QDate::fromJulianDay(milliseconds / millisecondsOfDay + julianDayOfEpoch));
    printDigits(text + 20, 3, rest % 1000);
    rest /= 1000;
    printDigits(text + 17, 2, rest % 60);
    rest /= 60;
    printDigits(text + 14, 2, rest % 60);
    printDigits(text + 11, 2, rest / 60);
    text[10] = ' ';
    text[13] = text[16] = ':';
    text[19] = '.';
    return 23;
}

} // namespace Bench
