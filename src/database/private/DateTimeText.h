#pragma once

#include <QDateTime>
#include <QString>

/**
 * The texts in which dates and times are stored, and in which PostgreSQL sends them: "yyyy-MM-dd" and "yyyy-MM-dd
 * HH:mm:ss.zzz", where the milliseconds may be missing. Reads what Qt reads with these formats, but the usual texts
 * without its format parser, which takes longer than everything else in a large load.
 */
namespace DataAccess::Database::DateTimeText {

/// The text of a date of the years 1 to 9999; null for an invalid one.
QString format(const QDate& date);
/// The text of a date and time as they stand, whatever their time zone; null for an invalid date.
QString format(const QDateTime& dateTime);
/// The date in @p text; invalid when there is none.
QDate parseDate(const QString& text);
QDate parseDate(QLatin1String text);
/// The date and time in @p text, taken as @p timeSpec, which is local time or UTC; invalid when there is none.
QDateTime parse(const QString& text, Qt::TimeSpec timeSpec);
QDateTime parse(QLatin1String text, Qt::TimeSpec timeSpec);

} // namespace DataAccess::Database::DateTimeText
