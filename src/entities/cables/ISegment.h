#pragma once

#include "entities/cables/INamedEntity.h"

#include <QDate>

#include <memory>

namespace Cables::Entities::Interfaces {

class IPhase;
class ISegmentDetail;

/// Piece of one phase of a cable: a cable section or a joint.
class CABLES_EXPORT ISegment : public INamedEntity
{
public:
    ~ISegment() override = default;

    /// Place in the phase, counted from station A.
    virtual unsigned int Index() const = 0;
    virtual void SetIndex(const unsigned int& index) = 0;

    /// Metres; NaN when it is not known.
    virtual double Length() const = 0;
    virtual void SetLength(double length) = 0;

    /// Day the segment was laid; null when it is not known.
    virtual QDate InstallationDate() const = 0;
    virtual void SetInstallationDate(const QDate& date) = 0;

    /// The phase that the segment belongs to and that owns it: the object is null once the phase is gone. A segment
    /// that is given another phase leaves the list of the former one; one given as an object lists it, unless it is
    /// deleted.
    virtual const QUuid& PhaseId() const = 0;
    virtual void SetPhaseId(const QUuid& id) = 0;
    virtual std::shared_ptr<IPhase> Phase() const = 0;
    virtual void SetPhase(std::shared_ptr<IPhase> phase) = 0;

    /// What the segment is made of; the segment keeps its detail alive.
    virtual const QUuid& DetailId() const = 0;
    virtual void SetDetailId(const QUuid& id) = 0;
    virtual std::shared_ptr<ISegmentDetail> Detail() const = 0;
    virtual void SetDetail(std::shared_ptr<ISegmentDetail> detail) = 0;
};

} // namespace Cables::Entities::Interfaces
