#pragma once

#include "entities/cables/IRating.h"
#include "entities/cables/RatingDocument.h"
#include "entities/qor/StoredEntity.h"

#include <cmath>
#include <limits>

namespace Cables::Entities {

/// Evaluation of a measurement; table `qor_rating`.
class CABLES_EXPORT Rating : public QOR::Entities::StoredEntity<Interfaces::IRating>
{
public:
    const QUuid& cableID() const override { return m_cableId; }
    void SetCableID(const QUuid& id) override { assign(m_cableId, id); }
    const QUuid& taskID() const override { return m_taskId; }
    void SetTaskID(const QUuid& id) override { assign(m_taskId, id); }
    int measureID() const override { return m_measureId; }
    void SetMeasureID(int id) override { assign(m_measureId, id); }
    int modeId() const override { return m_modeId; }
    void SetModeId(int id) override { assign(m_modeId, id); }
    const QDateTime& measureTime() const override { return m_measureTime; }
    void SetMeasureTime(const QDateTime& time) override { assign(m_measureTime, time); }
    const QString& comment() const override { return m_comment; }
    void SetComment(const QString& comment) override { assign(m_comment, comment); }
    Tristate automatic() const override { return m_automatic; }
    void SetAutomatic(Tristate automatic) override { assign(m_automatic, automatic); }
    Tristate oldCable() const override { return m_oldCable; }
    void SetOldCable(Tristate oldCable) override { assign(m_oldCable, oldCable); }
    EventSelection eventselectionmodel() const override { return m_eventSelection; }
    void SetEventselectionmodel(EventSelection selection) override { assign(m_eventSelection, selection); }

    QJsonObject rating() const override { return m_document.object(); }
    void SetRating(const QJsonObject& document) override { markModifiedIf(m_document.setObject(document)); }
    void SetRating(QString text) override { markModifiedIf(m_document.setText(std::move(text))); }
    void setFromJson(const QJsonObject& document) override { SetRating(document); }
    QString JsonFromRating() const override { return m_document.text(); }
    /// The member `rating` of toJson(): the document, or its text when that is no JSON object.
    QJsonValue ratingJson() const;

    double value(int phase, const QString& segmentKey) const override
    {
        return m_document.value(phaseKeyOf(phase), segmentKey);
    }
    void setValue(int phase, const QString& segmentKey, double value) override
    {
        markModifiedIf(m_document.setValue(phaseKeyOf(phase), segmentKey, value));
    }
    bool hasValue(int phase, const QString& segmentKey) const override { return !std::isnan(value(phase, segmentKey)); }
    void removeValue(int phase, const QString& segmentKey) override { removeValue(phaseKeyOf(phase), segmentKey); }
    void removeValue(const QString& phaseKey, const QString& segmentKey) override
    {
        markModifiedIf(m_document.setValue(phaseKey, segmentKey, std::numeric_limits<double>::quiet_NaN()));
    }
    double summary(int phase) const override { return m_document.summary(phaseKeyOf(phase)); }
    void setSummary(double value, int phase) override
    {
        markModifiedIf(m_document.setSummary(phaseKeyOf(phase), value));
    }
    QStringList phaseKeys() const override { return m_document.phaseKeys(); }
    QStringList segmentKeysForPhase(int phase) const override { return m_document.segmentKeys(phaseKeyOf(phase)); }
    QStringList segmentKeysForPhase(const QString& phaseKey) const override { return m_document.segmentKeys(phaseKey); }
    void removePhase(const QString& phaseKey) override { markModifiedIf(m_document.removePhase(phaseKey)); }
    QMultiMap<QUuid, double> ratingValuesBySegmentId(int phase) const override;
    unsigned int segmentIdFingerprint(const QUuid& segment) const override;
    bool isEmpty() const override;

    QJsonObject toJson() const override;

private:
    static QString phaseKeyOf(int phase) { return QString::number(phase); }
    void markModifiedIf(bool isChanged)
    {
        if (isChanged)
            markModified();
    }

    QUuid m_cableId;
    QUuid m_taskId;
    RatingDocument m_document;
    QDateTime m_measureTime;
    QString m_comment;
    int m_measureId = 0;
    int m_modeId = 0;
    Tristate m_automatic = Unset;
    Tristate m_oldCable = Unset;
    EventSelection m_eventSelection = Maximum;
};

} // namespace Cables::Entities

template <>
inline constexpr auto QOR::Entities::properties<Cables::Entities::Rating> = [] {
    using namespace Cables::Entities;
    using E = Rating;
    return std::tuple{
        stored<&E::cableID, &E::SetCableID>("cableID"),
        stored<&E::taskID, &E::SetTaskID>("taskID"),
        stored<&E::measureID, &E::SetMeasureID>("measureID"),
        stored<&E::modeId, &E::SetModeId>("modeId"),
        stored<&E::measureTime, &E::SetMeasureTime>("measureTime"),
        stored<&E::comment, &E::SetComment>("comment"),
        stored<&E::automatic, &E::SetAutomatic>("automatic"),
        stored<&E::oldCable, &E::SetOldCable>("oldCable"),
        stored<&E::eventselectionmodel, &E::SetEventselectionmodel>("eventselectionmodel"),
        stored<&E::JsonFromRating, static_cast<void (E::*)(QString)>(&E::SetRating), &E::ratingJson>("rating")};
}();
