#pragma once

#include "entities/cables/INetworkEntity.h"

#include <memory>
#include <vector>

namespace Cables::Entities::Interfaces {

class ICable;
class ISegment;

/// One of the conductors of a cable.
class CABLES_EXPORT IPhase : public INetworkEntity
{
public:
    ~IPhase() override = default;

    /// Number of the phase in its cable.
    virtual unsigned int Index() const = 0;
    virtual void SetIndex(const unsigned int& index) = 0;

    /// The cable that the phase belongs to and that owns it: the object is null once the cable is gone. A phase that is
    /// given another cable leaves the list of the former one; one given as an object lists it, unless it is deleted.
    virtual const QUuid& CableId() const = 0;
    virtual void SetCableId(const QUuid& id) = 0;
    virtual std::shared_ptr<ICable> Cable() const = 0;
    virtual void SetCable(std::shared_ptr<ICable> cable) = 0;

    /// The segments, owned by the phase, in the order in which they were given.
    virtual const std::vector<std::shared_ptr<ISegment>>& Segments() const = 0;
    /// Replaces the list and makes this the phase of every segment; null and repeated entries are left out. The
    /// caller's vector is not changed. What leaves the list belongs to no phase, what comes from another one leaves its
    /// list.
    virtual void SetSegments(std::vector<std::shared_ptr<ISegment>>& segments) = 0;
    /// Appends a segment, makes this its phase and takes it out of the list of its former one; null and a segment held
    /// already change nothing.
    virtual void AddSegment(std::shared_ptr<ISegment> segment) = 0;
    /// Takes this very object out of the list; it belongs to no phase then.
    virtual void RemoveSegment(std::shared_ptr<ISegment> segment) = 0;

    /// Sum of the segments' lengths, metres; those that are not known or below 0 do not count.
    virtual double Length() const = 0;
    /// Velocity at which a pulse passes the whole phase, metres per second, from those segments whose length and
    /// velocity are known and above 0; NaN when there is none.
    virtual double Velocity() const = 0;
};

} // namespace Cables::Entities::Interfaces
