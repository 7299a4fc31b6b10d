#include "entities/cables/Rating.h"

#include "entities/cables/private/Fingerprint.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace Cables::Entities {

QJsonValue Rating::ratingJson() const
{
    using QOR::Entities::toJsonValue;
    return m_document.isObject() ? QJsonValue(m_document.object()) : toJsonValue(m_document.text());
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
    return QOR::Entities::propertiesToJson(*this);
}

} // namespace Cables::Entities
