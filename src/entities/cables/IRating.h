#pragma once

#include "entities/cables/INetworkEntity.h"

#include <QDateTime>
#include <QMultiMap>
#include <QString>
#include <QStringList>

namespace Cables::Entities::Interfaces {

/**
 * Evaluation of one measurement of a cable: a value for segments of each phase, and a summary value for each phase.
 *
 * The values are one JSON document, which is stored as text:
 * @code
 * { "phases": { "0": { "segments": { "{a9e6…}": 2.5, "{d969…}": 1 }, "summary": 2.5 }, "1": { … } } }
 * @endcode
 * The key of a phase is its index as text; the key of a segment is any text, usually the segment's id with braces.
 * Members that are not described here are kept when values change. Members that are, but are of another JSON type,
 * count as absent and are replaced once a value is set in their place.
 *
 * The text is read only when the document is first needed. A getter may so write to the object: one thread at a time.
 */
class CABLES_EXPORT IRating : public INetworkEntity
{
public:
    /// Answer to a question that may not have been put yet, stored as its number. Any other number is kept as it is.
    enum Tristate : int { Negative = -1, Unset = 0, Positive = 1 };

    /// Which of the events at one place stands for the place, stored as its number. Any other number is kept as it is.
    enum EventSelection : int { Maximum = 0, Median = 1, Average = 2 };

    ~IRating() override = default;

    /// The cable that was measured.
    virtual const QUuid& cableID() const = 0;
    virtual void SetCableID(const QUuid& id) = 0;

    /// The partial-discharge task that the measurement belongs to; null when there is none.
    virtual const QUuid& taskID() const = 0;
    virtual void SetTaskID(const QUuid& id) = 0;

    /// Number of the measurement in the cable book.
    virtual int measureID() const = 0;
    virtual void SetMeasureID(int id) = 0;

    /// Number of the measurement's mode.
    virtual int modeId() const = 0;
    virtual void SetModeId(int id) = 0;

    /// When the measurement was made; null when it is not known.
    virtual const QDateTime& measureTime() const = 0;
    virtual void SetMeasureTime(const QDateTime& time) = 0;

    /// Free text.
    virtual const QString& comment() const = 0;
    virtual void SetComment(const QString& comment) = 0;

    /// Who made the rating: Negative, it was generated automatically; Positive, a user made it by hand. (The numbers
    /// are those of an older property that asked whether the rating was manual.)
    virtual Tristate automatic() const = 0;
    virtual void SetAutomatic(Tristate automatic) = 0;

    /// Whose criteria apply: Negative, those of young cables; Positive, those of old cables.
    virtual Tristate oldCable() const = 0;
    virtual void SetOldCable(Tristate oldCable) = 0;

    /// Which event stands for its place.
    virtual EventSelection eventselectionmodel() const = 0;
    virtual void SetEventselectionmodel(EventSelection selection) = 0;

    /// The document; empty when the text is no JSON object.
    virtual QJsonObject rating() const = 0;
    /// Replaces the document.
    virtual void SetRating(const QJsonObject& document) = 0;
    /// Replaces the document by one in its text form, as it is stored. A text that is no JSON object is kept all the
    /// same, until a value is set.
    virtual void SetRating(QString text) = 0;
    /// Same as SetRating() with a document.
    virtual void setFromJson(const QJsonObject& document) = 0;
    /// The document as text: the very text that was set, null or empty too, as long as no value has changed since, else
    /// compact JSON.
    virtual QString JsonFromRating() const = 0;

    /// Value of a segment; NaN when there is none.
    virtual double value(int phase, const QString& segmentKey) const = 0;
    /// Sets the value of a segment. A value that JSON has no number for (NaN, infinite) removes it.
    virtual void setValue(int phase, const QString& segmentKey, double value) = 0;
    virtual bool hasValue(int phase, const QString& segmentKey) const = 0;
    /// Removes a value, and its phase from the document when nothing else is left there.
    virtual void removeValue(int phase, const QString& segmentKey) = 0;
    virtual void removeValue(const QString& phaseKey, const QString& segmentKey) = 0;

    /// Summary of a phase; NaN when there is none. Setting NaN or an infinite value removes it.
    virtual double summary(int phase) const = 0;
    virtual void setSummary(double value, int phase) = 0;

    /// The keys of the phases in the document, in the order of text.
    virtual QStringList phaseKeys() const = 0;
    /// The keys of the segments that have a value, in the order of text.
    virtual QStringList segmentKeysForPhase(int phase) const = 0;
    virtual QStringList segmentKeysForPhase(const QString& phaseKey) const = 0;
    /// Removes all that the document says of a phase.
    virtual void removePhase(const QString& phaseKey) = 0;

    /// The values of a phase whose keys are ids, in any of their spellings.
    virtual QMultiMap<QUuid, double> ratingValuesBySegmentId(int phase) const = 0;

    /// Stands for all values of one segment: FNV-1a (32 bits) over the phase key (UTF-8, with a zero byte at its end)
    /// and the value (eight bytes, most significant first) of each, in the order of phaseKeys(); the same on every
    /// machine. 2166136261 when the segment has no value.
    virtual unsigned int segmentIdFingerprint(const QUuid& segment) const = 0;

    /// Whether the document has neither a value nor a summary.
    virtual bool isEmpty() const = 0;
};

} // namespace Cables::Entities::Interfaces
