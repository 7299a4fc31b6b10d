#pragma once

#include "entities/cables/CablesExport.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace Cables::Entities {

/**
 * The values of a rating as one JSON document and as the text that is stored; Interfaces::IRating describes its layout.
 * Each form is made from the other when it is first asked for. Every change tells whether it changed anything.
 */
class CABLES_EXPORT RatingDocument
{
public:
    /// The text that was set, as long as nothing has changed since; else compact JSON.
    const QString& text() const;
    bool setText(QString text);

    /// Whether the text is a JSON object. When not, object() is empty, and the first change replaces the text.
    bool isObject() const;
    const QJsonObject& object() const;
    bool setObject(const QJsonObject& object);

    /// A value, or a summary, is NaN when there is none; setting one that JSON has no number for removes it.
    double value(const QString& phaseKey, const QString& segmentKey) const;
    bool setValue(const QString& phaseKey, const QString& segmentKey, double value);
    double summary(const QString& phaseKey) const;
    bool setSummary(const QString& phaseKey, double value);

    QStringList phaseKeys() const;
    QStringList segmentKeys(const QString& phaseKey) const;
    bool removePhase(const QString& phaseKey);

private:
    void parse() const;
    bool setNumber(const QStringList& path, double number);
    void replaceObject(const QJsonObject& object);

    mutable QString m_text;
    mutable QJsonObject m_object;
    mutable bool m_hasText = true;   ///< m_text is the stored form of what there is.
    mutable bool m_isParsed = false; ///< m_object is what m_text says.
    mutable bool m_isObject = false; ///< m_text is a JSON object; known once parsed.
};

} // namespace Cables::Entities
