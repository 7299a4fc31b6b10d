#include "entities/cables/RatingDocument.h"

#include <QJsonDocument>

#include <cmath>
#include <functional>
#include <limits>
#include <utility>

namespace Cables::Entities {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

QString phasesKey()
{
    return QStringLiteral("phases");
}

QString segmentsKey()
{
    return QStringLiteral("segments");
}

QString summaryKey()
{
    return QStringLiteral("summary");
}

QJsonValue memberAt(const QJsonObject& object, const QStringList& path)
{
    QJsonValue member = object;
    for (const QString& key : path)
        member = member.toObject().value(key);
    return member;
}

/// The object with another member at the path. An undefined member is removed, and so is what becomes empty by that.
QJsonObject withMemberAt(QJsonObject object, const QStringList& path, const QJsonValue& member)
{
    const QString& key = path.first();
    QJsonValue changed = member;
    if (path.size() > 1) {
        const QJsonObject inner = withMemberAt(object.value(key).toObject(), path.mid(1), member);
        changed = inner.isEmpty() ? QJsonValue(QJsonValue::Undefined) : QJsonValue(inner);
    }
    object.insert(key, changed);
    return object;
}

} // namespace

const QString& RatingDocument::text() const
{
    if (!m_hasText) {
        m_text = QString::fromUtf8(QJsonDocument(m_object).toJson(QJsonDocument::Compact));
        m_hasText = true;
    }
    return m_text;
}

bool RatingDocument::setText(QString text)
{
    if (this->text() == text && m_text.isNull() == text.isNull())
        return false;
    m_text = std::move(text);
    m_object = QJsonObject();
    m_isParsed = false;
    return true;
}

bool RatingDocument::isObject() const
{
    parse();
    return m_isObject;
}

const QJsonObject& RatingDocument::object() const
{
    parse();
    return m_object;
}

bool RatingDocument::setObject(const QJsonObject& object)
{
    if (isObject() && m_object == object)
        return false;
    replaceObject(object);
    return true;
}

double RatingDocument::value(const QString& phaseKey, const QString& segmentKey) const
{
    return memberAt(object(), {phasesKey(), phaseKey, segmentsKey(), segmentKey}).toDouble(none);
}

bool RatingDocument::setValue(const QString& phaseKey, const QString& segmentKey, double value)
{
    return setNumber({phasesKey(), phaseKey, segmentsKey(), segmentKey}, value);
}

double RatingDocument::summary(const QString& phaseKey) const
{
    return memberAt(object(), {phasesKey(), phaseKey, summaryKey()}).toDouble(none);
}

bool RatingDocument::setSummary(const QString& phaseKey, double value)
{
    return setNumber({phasesKey(), phaseKey, summaryKey()}, value);
}

QStringList RatingDocument::phaseKeys() const
{
    const QJsonObject phases = object().value(phasesKey()).toObject();
    QStringList keys;
    for (auto phase = phases.begin(); phase != phases.end(); ++phase) {
        if (phase->isObject())
            keys.append(phase.key());
    }
    return keys;
}

QStringList RatingDocument::segmentKeys(const QString& phaseKey) const
{
    const QJsonObject segments = memberAt(object(), {phasesKey(), phaseKey, segmentsKey()}).toObject();
    QStringList keys;
    for (auto segment = segments.begin(); segment != segments.end(); ++segment) {
        if (segment->isDouble())
            keys.append(segment.key());
    }
    return keys;
}

bool RatingDocument::removePhase(const QString& phaseKey)
{
    const QStringList path = {phasesKey(), phaseKey};
    if (!memberAt(object(), path).isObject())
        return false;
    replaceObject(withMemberAt(m_object, path, QJsonValue::Undefined));
    return true;
}

void RatingDocument::parse() const
{
    if (m_isParsed)
        return;
    const QJsonDocument document = QJsonDocument::fromJson(m_text.toUtf8());
    m_object = document.object();
    m_isObject = document.isObject();
    m_isParsed = true;
}

bool RatingDocument::setNumber(const QStringList& path, double number)
{
    // Compared as numbers: JSON values that were written differently, 1 and 1.0, are not the same to Qt.
    const QJsonValue present = memberAt(object(), path);
    const bool isRemoval = !std::isfinite(number);
    if (isRemoval ? !present.isDouble() : std::equal_to<>()(present.toDouble(none), number))
        return false;
    const QJsonValue wanted = isRemoval ? QJsonValue(QJsonValue::Undefined) : QJsonValue(number);
    replaceObject(withMemberAt(m_object, path, wanted));
    return true;
}

void RatingDocument::replaceObject(const QJsonObject& object)
{
    m_object = object;
    m_isObject = true;
    m_isParsed = true;
    m_text.clear();
    m_hasText = false;
}

} // namespace Cables::Entities
