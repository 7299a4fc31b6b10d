#pragma once

#include "entities/cables/IRating.h"
#include "entities/cables/RatingDocument.h"
#include "entities/qor/StoredEntity.h"

namespace Cables::Entities {

/// Evaluation of a measurement; table `qor_rating`.
class CABLES_EXPORT Rating : public QOR::Entities::StoredEntity<Interfaces::IRating>
{
public:
    ~Rating() override;

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

    QJsonObject rating() const override;
    void SetRating(const QJsonObject& document) override;
    void SetRating(QString text) override;
    void setFromJson(const QJsonObject& document) override;
    QString JsonFromRating() const override;

    double value(int phase, const QString& segmentKey) const override;
    void setValue(int phase, const QString& segmentKey, double value) override;
    bool hasValue(int phase, const QString& segmentKey) const override;
    void removeValue(int phase, const QString& segmentKey) override;
    void removeValue(const QString& phaseKey, const QString& segmentKey) override;
    double summary(int phase) const override;
    void setSummary(double value, int phase) override;
    QStringList phaseKeys() const override;
    QStringList segmentKeysForPhase(int phase) const override;
    QStringList segmentKeysForPhase(const QString& phaseKey) const override;
    void removePhase(const QString& phaseKey) override;
    QMultiMap<QUuid, double> ratingValuesBySegmentId(int phase) const override;
    unsigned int segmentIdFingerprint(const QUuid& segment) const override;
    bool isEmpty() const override;

    /// The member `rating` is the document, or its text when that is no JSON object.
    QJsonObject toJson() const override;

private:
    void markModifiedIf(bool isChanged);

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
