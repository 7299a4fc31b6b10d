#pragma once

#include "entities/cables/IRoute.h"
#include "entities/qor/Reference.h"
#include "entities/qor/StoredEntity.h"

namespace Cables::Entities {

/// Way of a cable; table `ce_route`.
class CABLES_EXPORT Route : public QOR::Entities::StoredEntity<Interfaces::IRoute>
{
public:
    ~Route() override;

    const QUuid& CableId() const override { return m_cable.id(); }
    void SetCableId(const QUuid& id) override;
    std::shared_ptr<Interfaces::ICable> Cable() const override { return m_cable.object(); }
    void SetCable(std::shared_ptr<Interfaces::ICable> cable) override;
    const std::vector<QUuid>& PointIds() const override { return m_pointIds; }
    void SetPointIds(const std::vector<QUuid>& ids) override;
    const std::vector<std::shared_ptr<Interfaces::IPoint>>& Points() const override { return m_points; }
    void SetPoints(std::vector<std::shared_ptr<Interfaces::IPoint>>& points) override;

    QJsonObject toJson() const override;

private:
    void assignPoints(std::vector<QUuid> ids, std::vector<std::shared_ptr<Interfaces::IPoint>> points);

    QOR::Entities::ParentReference<Interfaces::ICable> m_cable;
    std::vector<QUuid> m_pointIds;
    std::vector<std::shared_ptr<Interfaces::IPoint>> m_points;
};

} // namespace Cables::Entities
