#pragma once

#include "entities/cables/IPoint.h"
#include "entities/qor/StoredEntity.h"

#include <limits>

namespace Cables::Entities {

/// Place on the map; table `ce_point`.
class CABLES_EXPORT Point : public QOR::Entities::StoredEntity<Interfaces::IPoint>
{
public:
    unsigned int Index() const override { return m_index; }
    void SetIndex(const unsigned int& index) override { assign(m_index, index); }
    double latitude() const override { return m_latitude; }
    void setLatitude(double latitude) override { assign(m_latitude, latitude); }
    double longitude() const override { return m_longitude; }
    void setLongitude(double longitude) override { assign(m_longitude, longitude); }

    QJsonObject toJson() const override;

private:
    double m_latitude = std::numeric_limits<double>::quiet_NaN();
    double m_longitude = std::numeric_limits<double>::quiet_NaN();
    unsigned int m_index = 0;
};

} // namespace Cables::Entities

template <>
inline constexpr auto QOR::Entities::properties<Cables::Entities::Point> = [] {
    using namespace Cables::Entities;
    using E = Point;
    return std::tuple{stored<&E::Index, &E::SetIndex>("index"), stored<&E::latitude, &E::setLatitude>("latitude"),
                      stored<&E::longitude, &E::setLongitude>("longitude")};
}();
