#include "entities/cables/Rating.h"

#include "entities/cables/Fingerprint.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Cables::Entities {

using QOR::Entities::toJsonValue;

namespace {

QString phaseKeyOf(int phase)
{
    return QString::number(phase);
}

} // namespace

Interfaces::IRating::~IRating() = default;

Rating::~Rating() = default;

void Rating::markModifiedIf(bool isChanged)
{
    if (isChanged)
        markModified();
}

QJsonObject Rating::rating() const
{
    return m_document.object();
}

void Rating::SetRating(const QJsonObject& document)
{
    markModifiedIf(m_document.setObject(document));
}

void Rating::SetRating(QString text)
{
    markModifiedIf(m_document.setText(std::move(text)));
}

void Rating::setFromJson(const QJsonObject& document)
{
    SetRating(document);
}

QString Rating::JsonFromRating() const
{
    return m_document.text();
}

double Rating::value(int phase, const QString& segmentKey) const
{
    return m_document.value(phaseKeyOf(phase), segmentKey);
}

void Rating::setValue(int phase, const QString& segmentKey, double value)
{
    markModifiedIf(m_document.setValue(phaseKeyOf(phase), segmentKey, value));
}

bool Rating::hasValue(int phase, const QString& segmentKey) const
{
    return !std::isnan(value(phase, segmentKey));
}

void Rating::removeValue(int phase, const QString& segmentKey)
{
    removeValue(phaseKeyOf(phase), segmentKey);
}

void Rating::removeValue(const QString& phaseKey, const QString& segmentKey)
{
    markModifiedIf(m_document.setValue(phaseKey, segmentKey, std::numeric_limits<double>::quiet_NaN()));
}

double Rating::summary(int phase) const
{
    return m_document.summary(phaseKeyOf(phase));
}

void Rating::setSummary(double value, int phase)
{
    markModifiedIf(m_document.setSummary(phaseKeyOf(phase), value));
}

QStringList Rating::phaseKeys() const
{
    return m_document.phaseKeys();
}

QStringList Rating::segmentKeysForPhase(int phase) const
{
    return m_document.segmentKeys(phaseKeyOf(phase));
}

QStringList Rating::segmentKeysForPhase(const QString& phaseKey) const
{
    return m_document.segmentKeys(phaseKey);
}

void Rating::removePhase(const QString& phaseKey)
{
    markModifiedIf(m_document.removePhase(phaseKey));
}

QMultiMap<QUuid, double> Rating::ratingValuesBySegmentId(int phase) const
{
    QMultiMap<QUuid, double> values;
    const QString phaseKey = phaseKeyOf(phase);
    const QStringList segmentKeys = m_document.segmentKeys(phaseKey);
    for (const QString& segmentKey : segmentKeys) {
        const QUuid segment(segmentKey);
        if (!segment.isNull())
            values.insert(segment, m_document.value(phaseKey, segmentKey));
    }
    return values;
}

unsigned int Rating::segmentIdFingerprint(const QUuid& segment) const
{
    Fingerprint fingerprint;
    const QStringList phases = m_document.phaseKeys();
    for (const QString& phaseKey : phases) {
        const QStringList segmentKeys = m_document.segmentKeys(phaseKey);
        for (const QString& segmentKey : segmentKeys) {
            if (segment.isNull() || QUuid(segmentKey) != segment)
                continue;
            const double value = m_document.value(phaseKey, segmentKey);
            QByteArray bytes(sizeof value, Qt::Uninitialized);
            qToBigEndian(value, bytes.data());
            fingerprint.add(phaseKey.toUtf8() + '\0' + bytes);
        }
    }
    return fingerprint.value();
}

bool Rating::isEmpty() const
{
    const QStringList phases = m_document.phaseKeys();
    return std::all_of(phases.begin(), phases.end(), [this](const QString& phaseKey) {
        return m_document.segmentKeys(phaseKey).isEmpty() && std::isnan(m_document.summary(phaseKey));
    });
}

QJsonObject Rating::toJson() const
{
    QJsonObject json = StoredEntity::toJson();
    json.insert(QLatin1String("cableID"), toJsonValue(m_cableId));
    json.insert(QLatin1String("taskID"), toJsonValue(m_taskId));
    json.insert(QLatin1String("measureID"), m_measureId);
    json.insert(QLatin1String("modeId"), m_modeId);
    json.insert(QLatin1String("measureTime"), toJsonValue(m_measureTime));
    json.insert(QLatin1String("comment"), toJsonValue(m_comment));
    json.insert(QLatin1String("automatic"), static_cast<int>(m_automatic));
    json.insert(QLatin1String("oldCable"), static_cast<int>(m_oldCable));
    json.insert(QLatin1String("eventselectionmodel"), static_cast<int>(m_eventSelection));
    json.insert(QLatin1String("rating"),
                m_document.isObject() ? QJsonValue(m_document.object()) : toJsonValue(m_document.text()));
    return json;
}

} // namespace Cables::Entities
