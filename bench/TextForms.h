#pragma once

#include <QDateTime>
#include <QUuid>

#include <charconv>
#include <string_view>

/**
 * The forms in which the databases give and take values as text, read and written as simply as can be. What is measured
 * through a bare interface must not stand back for its conversions.
 */
namespace Bench {

inline int digits(std::string_view text, std::size_t from, std::size_t count)
{
    int number = 0;
    for (std::size_t i = from; i < from + count && i < text.size(); ++i)
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

inline QUuid parseId(std::string_view text)
{
    return QUuid(QLatin1String(text.data(), static_cast<int>(text.size())));
}

inline QDate parseDate(std::string_view text)
{
    return text.size() < 10 ? QDate() : QDate(digits(text, 0, 4), digits(text, 5, 2), digits(text, 8, 2));
}

inline QDateTime parseTime(std::string_view text)
{
    if (text.size() < 19)
        return {};
    int milliseconds = 0;
    // PostgreSQL leaves zeros at the end away.
    for (std::size_t i = 20, weight = 100; i < text.size() && weight > 0; ++i, weight /= 10)
        milliseconds += static_cast<int>(weight) * (text[i] - '0');
    return {parseDate(text), QTime(digits(text, 11, 2), digits(text, 14, 2), digits(text, 17, 2), milliseconds),
            Qt::UTC};
}

/// "yyyy-MM-dd HH:mm:ss.zzz".
struct TimeText
{
    char text[24] = "0000-00-00 00:00:00.000";

    explicit TimeText(const QDate& date)
    {
        put(0, 4, date.year());
        put(5, 2, date.month());
        put(8, 2, date.day());
    }
    explicit TimeText(const QDateTime& time)
        : TimeText(time.date())
    {
        put(11, 2, time.time().hour());
        put(14, 2, time.time().minute());
        put(17, 2, time.time().second());
        put(20, 3, time.time().msec());
    }
    std::string_view date() const { return {text, 10}; }
    std::string_view time() const { return {text, 23}; }

private:
    void put(int from, int count, int number)
    {
        for (int i = from + count - 1; i >= from; --i, number /= 10)
            text[i] = static_cast<char>('0' + number % 10);
    }
};

} // namespace Bench
