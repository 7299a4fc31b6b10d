#include "entities/pd/private/TextForms.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace PD::Entities {

namespace {

constexpr double levelTolerance = 1e-9;

QString numberText(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

QJsonValue chargeValue(double charge)
{
    // A JSON value keeps a whole number as an integer, and a number's text has no sign for zero.
    if (std::fpclassify(charge) == FP_ZERO && std::signbit(charge))
        return QLatin1String("-0");
    return std::isfinite(charge) ? QJsonValue(charge) : QJsonValue(numberText(charge));
}

std::optional<double> numberOf(const QString& text)
{
    bool ok = false;
    const double number = text.toDouble(&ok);
    return ok ? std::optional<double>(number) : std::nullopt;
}

std::optional<double> chargeOf(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::Double:
        return value.toDouble();
    case QJsonValue::String:
        return numberOf(value.toString());
    case QJsonValue::Null:
        return std::numeric_limits<double>::quiet_NaN();
    default:
        return std::nullopt;
    }
}

} // namespace

QString ChargeMap::toText(const QMap<double, double>& charges)
{
    QJsonObject json;
    for (auto level = charges.begin(); level != charges.end(); ++level) {
        if (!std::isnan(level.key()))
            json.insert(numberText(level.key()), chargeValue(level.value()));
    }
    return QString::fromUtf8(QJsonDocument(json).toJson(QJsonDocument::Compact));
}

QMap<double, double> ChargeMap::fromText(const QString& text)
{
    QMap<double, double> charges;
    const QJsonObject json = toJson(text);
    for (auto member = json.begin(); member != json.end(); ++member) {
        const std::optional<double> voltage = numberOf(member.key());
        const std::optional<double> charge = chargeOf(member.value());
        if (voltage && charge && !std::isnan(*voltage))
            charges.insert(*voltage, *charge);
    }
    return charges;
}

QJsonObject ChargeMap::toJson(const QString& text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

double ChargeMap::chargeAt(const QString& text, double voltage)
{
    const QMap<double, double> charges = fromText(text);
    double charge = std::numeric_limits<double>::quiet_NaN();
    if (std::isinf(voltage))
        return charge; // Every level is within a part of its size.
    double nearest = std::abs(voltage) * levelTolerance;
    for (auto level = charges.begin(); level != charges.end(); ++level) {
        const double distance = std::abs(level.key() - voltage);
        if (distance <= nearest) {
            nearest = distance;
            charge = level.value();
        }
    }
    return charge;
}

QString TextList::toText(const QStringList& list)
{
    QString text = QString::fromUtf8(QJsonDocument(QJsonArray::fromStringList(list)).toJson(QJsonDocument::Compact));
    // A text that starts with this character would be read without it, unless it is escaped.
    return text.replace(QChar(QChar::ByteOrderMark), QLatin1String("\\ufeff"));
}

QStringList TextList::fromText(const QString& text)
{
    if (text.isEmpty())
        return {};

    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    const QJsonArray array = document.array();
    const bool allTexts =
        std::all_of(array.begin(), array.end(), [](const QJsonValue& value) { return value.isString(); });
    if (!document.isArray() || !allTexts)
        return {text};

    QStringList list;
    list.reserve(array.size());
    for (const QJsonValue& value : array)
        list.append(value.toString());
    return list;
}

} // namespace PD::Entities
