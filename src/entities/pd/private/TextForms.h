#pragma once

#include "entities/pd/PDExport.h"

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>

/// The texts in which values are stored that have no column type of their own.
namespace PD::Entities {

/**
 * The text form of a map from voltage (volts) to charge (coulombs): a JSON object with the shortest text that gives the
 * voltage again as key and the charge as number. A charge that JSON has no number for is a text: nan, inf, -inf or -0.
 * Every map comes back as it was, but for a NaN voltage, which is no level and is left out.
 */
class PD_EXPORT ChargeMap
{
public:
    static QString toText(const QMap<double, double>& charges);

    /**
     * The map that @p text stands for; empty for null and for text of another kind. A charge given as null reads as
     * NaN; members that are no pair of numbers are left out.
     */
    static QMap<double, double> fromText(const QString& text);

    /// The object that @p text describes, as it stands there; empty for null and for text of another kind.
    static QJsonObject toJson(const QString& text);

    /**
     * The charge at the level nearest to @p voltage within 1e-9 of its size, so that a level that was computed another
     * way is still found; NaN when there is none.
     */
    static double chargeAt(const QString& text, double voltage);
};

/// The text form of a list of texts: a JSON array of strings, from which every list comes back as it was.
class PD_EXPORT TextList
{
public:
    static QString toText(const QStringList& list);

    /**
     * The list that @p text stands for. Text of another kind, such as older versions of the suite may have stored, is a
     * list of this one text: nothing says what would separate several. Null and empty text is the empty list.
     */
    static QStringList fromText(const QString& text);
};

/**
 * The text to store for @p value in the text form @p Form (with toText() and fromText()): @p stored itself while it
 * stands for an equal value, so that a row whose text was written in another way stays as it is.
 */
template <typename Form, typename Value>
QString storedText(const QString& stored, const Value& value)
{
    const QString text = Form::toText(value);
    return Form::toText(Form::fromText(stored)) == text ? stored : text;
}

} // namespace PD::Entities
