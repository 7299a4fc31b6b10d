#include "database/private/DateTimeText.h"

#include "database/private/EightCharacters.h"

namespace DataAccess::Database::DateTimeText {

namespace {

const QString s_date = QStringLiteral("yyyy-MM-dd");
const QString s_dateTime = QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz");
const QString s_dateTimeWithoutMs = QStringLiteral("yyyy-MM-dd HH:mm:ss");
// What a text looks like that is printed, or parsed without the format parser; '0' stands for any digit.
constexpr QLatin1String s_layout("0000-00-00 00:00:00.000", 23);
// By how much each character may differ from that, as what is added to get the high bit beyond it: 9, or not at all.
constexpr char s_beyond[] = "vvvv\x7fvv\x7fvv\x7fvv\x7fvv\x7fvv\x7fvvv";
static_assert('v' == 0x7f - 9 && sizeof s_beyond == 24);
constexpr int s_dateLength = 10;
constexpr int s_lengthWithoutMs = 19;
constexpr qint64 s_epoch = 2440588; // the Julian day of 1970-01-01
constexpr qint64 s_day = 86400000;  // in milliseconds

/// Whether @p text is laid out like the first characters of the layout, as many as it has; at least a date's.
bool hasLayout(const QString& text)
{
    if (text.size() > s_layout.size())
        return false;
    for (int i = 0; i < text.size(); ++i) {
        const auto c = text.at(i).unicode();
        const bool matches = s_layout[i] == QLatin1Char('0') ? c >= '0' && c <= '9' : c == s_layout[i].unicode();
        if (!matches)
            return false;
    }
    return true;
}

bool hasLayout(QLatin1String text)
{
    using EightCharacters::load;
    if (text.size() > s_layout.size())
        return false;
    quint64 misfits = 0;
    EightCharacters::forAll(text.size(), [&](int at) {
        const quint64 difference = load(text.data() + at) ^ load(s_layout.data() + at);
        misfits |= difference | (difference + load(s_beyond + at));
    });
    return (misfits & EightCharacters::highBits) == 0;
}

template <typename Text>
int number(const Text& text, int from, int digits)
{
    int result = 0;
    for (int i = from; i < from + digits; ++i)
        result = 10 * result + (text.at(i).unicode() - '0');
    return result;
}

template <typename Text>
QDate dateOf(const Text& text)
{
    return {number(text, 0, 4), number(text, 5, 2), number(text, 8, 2)};
}

template <typename Text>
QDate dateIn(const Text& text)
{
    if (text.size() == s_dateLength && hasLayout(text))
        return dateOf(text);
    return QDate::fromString(QString(text), s_date);
}

template <typename Text>
QDateTime dateTimeIn(const Text& text, Qt::TimeSpec timeSpec)
{
    if ((text.size() == s_layout.size() || text.size() == s_lengthWithoutMs) && hasLayout(text)) {
        const int milliseconds = text.size() == s_layout.size() ? number(text, 20, 3) : 0;
        const QTime time(number(text, 11, 2), number(text, 14, 2), number(text, 17, 2), milliseconds);
        const QDate date = dateOf(text);
        if (!date.isValid() || !time.isValid())
            return QDateTime();
        // For UTC, Qt's way from date and time takes longer than all the rest.
        return timeSpec == Qt::UTC ? QDateTime::fromMSecsSinceEpoch(
                                         (date.toJulianDay() - s_epoch) * s_day + time.msecsSinceStartOfDay(), Qt::UTC)
                                   : QDateTime(date, time, timeSpec);
    }
    QDateTime parsed = QDateTime::fromString(QString(text), s_dateTime);
    if (!parsed.isValid())
        parsed = QDateTime::fromString(QString(text), s_dateTimeWithoutMs);
    return parsed.isValid() ? QDateTime(parsed.date(), parsed.time(), timeSpec) : QDateTime();
}

// The numbers are printed by hand, too: Qt would take the digits of the user's language for them.
void setNumber(QString& text, int from, int digits, int number)
{
    QChar* const characters = text.data();
    for (int i = from + digits - 1; i >= from; --i, number /= 10)
        characters[i] = QLatin1Char(static_cast<char>('0' + number % 10));
}

void setDate(QString& text, const QDate& date)
{
    setNumber(text, 0, 4, date.year());
    setNumber(text, 5, 2, date.month());
    setNumber(text, 8, 2, date.day());
}

} // namespace

QString format(const QDate& date)
{
    if (!date.isValid())
        return {};
    QString text(s_layout.left(s_dateLength));
    setDate(text, date);
    return text;
}

QString format(const QDateTime& dateTime)
{
    // Not by asking whether the date-time is valid: a local time left out by a change of the clocks is not, but it is
    // what was read and must be written.
    if (!dateTime.date().isValid())
        return {};
    QString text(s_layout);
    setDate(text, dateTime.date());
    const QTime time = dateTime.time();
    setNumber(text, 11, 2, time.hour());
    setNumber(text, 14, 2, time.minute());
    setNumber(text, 17, 2, time.second());
    setNumber(text, 20, 3, time.msec());
    return text;
}

QDate parseDate(const QString& text)
{
    return dateIn(text);
}

QDate parseDate(QLatin1String text)
{
    return dateIn(text);
}

QDateTime parse(const QString& text, Qt::TimeSpec timeSpec)
{
    return dateTimeIn(text, timeSpec);
}

QDateTime parse(QLatin1String text, Qt::TimeSpec timeSpec)
{
    return dateTimeIn(text, timeSpec);
}

} // namespace DataAccess::Database::DateTimeText
