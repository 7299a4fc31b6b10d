#pragma once

#include "entities/cables/INetworkEntity.h"

#include <memory>
#include <vector>

namespace Cables::Entities::Interfaces {

class ICable;
class IPoint;

/// The way a cable takes over the map.
class CABLES_EXPORT IRoute : public INetworkEntity
{
public:
    ~IRoute() override = default;

    /// The cable that the route belongs to and that owns it: the object is null once the cable is gone. A cable given
    /// as an object takes the route as its own; a former cable has none then.
    virtual const QUuid& CableId() const = 0;
    virtual void SetCableId(const QUuid& id) = 0;
    virtual std::shared_ptr<ICable> Cable() const = 0;
    virtual void SetCable(std::shared_ptr<ICable> cable) = 0;

    /// The ids of the points in the order of the way; one may occur more than once.
    virtual const std::vector<QUuid>& PointIds() const = 0;
    /// Replaces the ids. Of the linked points those stay that the new ids name, in the new order.
    virtual void SetPointIds(const std::vector<QUuid>& ids) = 0;

    /// The linked points, owned by the route, in the order of the way.
    virtual const std::vector<std::shared_ptr<IPoint>>& Points() const = 0;
    /// Links the points and sets their ids. A null entry stands for a point that is not at hand: the id at its position
    /// stays, and Points() leaves it out. The caller's vector is not changed.
    virtual void SetPoints(std::vector<std::shared_ptr<IPoint>>& points) = 0;
};

} // namespace Cables::Entities::Interfaces
