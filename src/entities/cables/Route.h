#pragma once

#include "entities/cables/IRoute.h"
#include "entities/qor/Reference.h"
#include "entities/qor/StoredEntity.h"

namespace Cables::Entities {

class Cable;

/// Way of a cable; table `ce_route`. A cable that it is given takes it as its route only if a shared pointer owns it.
class CABLES_EXPORT Route : public QOR::Entities::StoredEntity<Interfaces::IRoute>,
                            public std::enable_shared_from_this<Route>
{
public:
    const QUuid& CableId() const override { return m_cable.id(); }
    void SetCableId(const QUuid& id) override;
    std::shared_ptr<Interfaces::ICable> Cable() const override { return m_cable.object(); }
    void SetCable(std::shared_ptr<Interfaces::ICable> cable) override;
    /// Points at the cable of CableId(): nothing that is stored changes, neither here nor at the cable.
    void LinkCable(const std::shared_ptr<Interfaces::ICable>& cable) { linkReference(m_cable, cable); }
    const std::vector<QUuid>& PointIds() const override { return m_pointIds; }
    void SetPointIds(const std::vector<QUuid>& ids) override;
    const std::vector<std::shared_ptr<Interfaces::IPoint>>& Points() const override { return m_points; }
    void SetPoints(std::vector<std::shared_ptr<Interfaces::IPoint>>& points) override;

    QJsonObject toJson() const override;

private:
    void leave(Interfaces::ICable& cable) const;
    void assignPoints(std::vector<QUuid> ids, std::vector<std::shared_ptr<Interfaces::IPoint>> points,
                      std::vector<QOR::Entities::IdArrival> arrivals);

    QOR::Entities::ParentReference<Interfaces::ICable> m_cable;
    std::vector<QUuid> m_pointIds;
    std::vector<std::shared_ptr<Interfaces::IPoint>> m_points;
    /// One for each place of a point that has no id yet.
    std::vector<QOR::Entities::IdArrival> m_arrivals;
};

} // namespace Cables::Entities

template <>
inline constexpr auto QOR::Entities::properties<Cables::Entities::Route> = [] {
    using namespace Cables::Entities;
    using E = Route;
    return std::tuple{parent<Cable, &E::CableId, &E::SetCableId, &E::Cable, &E::SetCable>("cableId"),
                      stored<&E::PointIds, &E::SetPointIds>("pointIds")};
}();
