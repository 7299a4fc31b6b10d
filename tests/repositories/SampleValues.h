#pragma once

#include <QColor>
#include <QDateTime>
#include <QImage>
#include <QUuid>

#include <array>
#include <limits>
#include <type_traits>
#include <vector>

namespace TestSupport {

/// A text of all that Unicode has and a database can hold, in the order of the code points.
inline QString allOfUnicode()
{
    QString text;
    for (uint code = 1; code <= 0x10ffff; ++code) {
        if ((code < 0xd800 || code > 0xdfff) && code != 0xfffe && code != 0xffff)
            text += QString::fromUcs4(&code, 1);
    }
    return text;
}

/// Values that a property should survive: ordinary, unusual and extreme ones. Those of row 0 are no property's first.
constexpr int rows = 6;

template <typename Value>
Value valueOf(int row)
{
    using Limits = std::numeric_limits<double>;
    if constexpr (std::is_same_v<Value, QString>) {
        static const QString texts[rows] = {QStringLiteral("{ \"Umspannwerk Süd\": 1.5 }"),
                                            QString(),
                                            QStringLiteral(""),
                                            QString(10 * 1024 * 1024, QLatin1Char('x')),
                                            QStringLiteral("'; DROP TABLE ce_cable; -- \"\\ %1 :name"),
                                            allOfUnicode()};
        return texts[row];
    } else if constexpr (std::is_same_v<Value, double>) {
        return std::array{166000000.25, Limits::quiet_NaN(), 0.0, Limits::lowest(), Limits::denorm_min(), 0.1}[row];
    } else if constexpr (std::is_same_v<Value, int> || std::is_enum_v<Value>) {
        using IntLimits = std::numeric_limits<int>;
        return static_cast<Value>(std::array{7, 0, -1, IntLimits::max(), IntLimits::min(), 1}[row]);
    } else if constexpr (std::is_same_v<Value, unsigned int>) {
        return std::array{3U, 0U, 2U, 2147483647U, 4U, 1U}[row];
    } else if constexpr (std::is_same_v<Value, QByteArray>) {
        QByteArray all;
        for (int byte = 0; byte < 256; ++byte)
            all.append(static_cast<char>(byte));
        return std::array{
            all, QByteArray(), QByteArray(""), all.repeated(4096), QByteArray("\\x41"), QByteArray(1, '\0')}[row];
    } else if constexpr (std::is_same_v<Value, QUuid>) {
        return row == 1 ? QUuid() : QUuid::createUuid();
    } else if constexpr (std::is_same_v<Value, QDate>) {
        return std::array{QDate(2021, 3, 14),  QDate(),           QDate(1969, 12, 31), QDate(1, 1, 1),
                          QDate(9999, 12, 31), QDate(2000, 2, 29)}[row];
    } else if constexpr (std::is_same_v<Value, QDateTime>) {
        // Among them a time given in UTC, and the second one of an hour that the clocks of St John's strike twice.
        return std::array{QDateTime(QDate(2021, 6, 14), QTime(23, 59, 59, 999)),
                          QDateTime(),
                          QDateTime(QDate(1960, 1, 2), QTime(3, 4, 5)),
                          QDateTime(QDate(2021, 7, 1), QTime(12, 0), Qt::UTC),
                          QDateTime(QDate(9999, 12, 31), QTime(12, 0)),
                          QDateTime(QDate(2022, 2, 3), QTime(4, 5), Qt::OffsetFromUTC, 7200)}[row];
    } else if constexpr (std::is_same_v<Value, std::vector<QUuid>>) {
        std::vector<QUuid> ids(std::array{3, 0, 1, 5000, 2, 4}[row]);
        for (std::size_t i = 1; i < ids.size(); ++i) // The first one is null.
            ids[i] = QUuid::createUuid();
        return ids;
    } else if constexpr (std::is_same_v<Value, QImage>) {
        QImage image(row == 1 ? QSize() : row == 3 ? QSize(2000, 1500) : QSize(3, 2), QImage::Format_ARGB32);
        image.fill(QColor(200, 10 * row, 30, 40 * row));
        return image;
    } else {
        Value filter;
        for (int i = 0; i < row; ++i)
            filter.insert(i == 4 ? QStringLiteral("';--") : QString::number(i), valueOf<QString>(i));
        return filter;
    }
}

} // namespace TestSupport
