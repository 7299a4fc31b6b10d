#pragma once

#include "entities/cables/INetworkEntity.h"

namespace Cables::Entities::Interfaces {

/// Place on the map.
class CABLES_EXPORT IPoint : public INetworkEntity
{
public:
    ~IPoint() override = default;

    /// Number of the point among its fellows; a route's order is that of its point ids.
    virtual unsigned int Index() const = 0;
    virtual void SetIndex(const unsigned int& index) = 0;

    /// Degrees north of the equator, WGS 84; NaN when it is not known.
    virtual double latitude() const = 0;
    virtual void setLatitude(double latitude) = 0;

    /// Degrees east of Greenwich, WGS 84; NaN when it is not known.
    virtual double longitude() const = 0;
    virtual void setLongitude(double longitude) = 0;
};

} // namespace Cables::Entities::Interfaces
