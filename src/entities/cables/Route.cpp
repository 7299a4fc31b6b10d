#include "entities/cables/Route.h"

#include "entities/cables/ICable.h"
#include "entities/cables/IPoint.h"

#include <QHash>

namespace Cables::Entities {

using QOR::Entities::toJsonValue;

Interfaces::IRoute::~IRoute() = default;

Route::~Route() = default;

void Route::SetCableId(const QUuid& id)
{
    assignReferenceId(m_cable, id);
}

void Route::SetCable(std::shared_ptr<Interfaces::ICable> cable)
{
    assignReferenceObject(m_cable, std::move(cable));
}

void Route::SetPointIds(const std::vector<QUuid>& ids)
{
    QHash<QUuid, std::shared_ptr<Interfaces::IPoint>> linked;
    for (const std::shared_ptr<Interfaces::IPoint>& point : m_points)
        linked.insert(point->Id(), point);

    std::vector<std::shared_ptr<Interfaces::IPoint>> points;
    for (const QUuid& id : ids) {
        if (const std::shared_ptr<Interfaces::IPoint> point = linked.value(id))
            points.push_back(point);
    }
    assignPoints(ids, std::move(points));
}

void Route::SetPoints(std::vector<std::shared_ptr<Interfaces::IPoint>>& points)
{
    std::vector<QUuid> ids = m_pointIds;
    ids.resize(points.size());
    std::vector<std::shared_ptr<Interfaces::IPoint>> linked;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!points[i])
            continue;
        ids[i] = points[i]->Id();
        linked.push_back(points[i]);
    }
    assignPoints(std::move(ids), std::move(linked));
}

void Route::assignPoints(std::vector<QUuid> ids, std::vector<std::shared_ptr<Interfaces::IPoint>> points)
{
    const bool storedChanges = m_pointIds != ids;
    if (!storedChanges && m_points == points)
        return;
    m_pointIds = std::move(ids);
    m_points = std::move(points);
    if (storedChanges)
        markModified();
    else
        notify();
}

QJsonObject Route::toJson() const
{
    QJsonObject json = StoredEntity::toJson();
    json.insert(QLatin1String("cableId"), toJsonValue(m_cable.id()));
    QJsonArray pointIds;
    for (const QUuid& id : m_pointIds)
        pointIds.append(toJsonValue(id));
    json.insert(QLatin1String("pointIds"), pointIds);
    return json;
}

} // namespace Cables::Entities
