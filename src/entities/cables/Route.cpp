#include "entities/cables/Route.h"

#include "entities/cables/ICable.h"
#include "entities/cables/IPoint.h"

#include <QHash>

namespace Cables::Entities {

void Route::SetCableId(const QUuid& id)
{
    const std::shared_ptr<Route> self = weak_from_this().lock();
    assignTwoEndedId(m_cable, id, [this](Interfaces::ICable& former) { leave(former); });
}

void Route::SetCable(std::shared_ptr<Interfaces::ICable> cable)
{
    const std::shared_ptr<Route> self = weak_from_this().lock();
    assignTwoEndedObject(
        m_cable, std::move(cable), [this](Interfaces::ICable& former) { leave(former); },
        [this, &self](Interfaces::ICable& joined) {
            if (self && joined.Route() != self && isListedBy(joined))
                joined.SetRoute(self);
        });
}

void Route::leave(Interfaces::ICable& cable) const
{
    if (cable.Route().get() == this)
        cable.SetRoute(nullptr);
}

void Route::SetPointIds(const std::vector<QUuid>& ids)
{
    QHash<QUuid, std::shared_ptr<Interfaces::IPoint>> linked;
    for (const std::shared_ptr<Interfaces::IPoint>& point : m_points)
        linked.insert(point->Id(), point);
    linked.remove(QUuid());

    std::vector<std::shared_ptr<Interfaces::IPoint>> points;
    for (const QUuid& id : ids) {
        if (const std::shared_ptr<Interfaces::IPoint> point = linked.value(id))
            points.push_back(point);
    }
    assignPoints(ids, std::move(points), {});
}

void Route::SetPoints(std::vector<std::shared_ptr<Interfaces::IPoint>>& points)
{
    std::vector<QUuid> ids = m_pointIds;
    ids.resize(points.size());
    std::vector<std::shared_ptr<Interfaces::IPoint>> linked;
    std::vector<QOR::Entities::IdArrival> arrivals;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!points[i])
            continue;
        ids[i] = points[i]->Id();
        linked.push_back(points[i]);
        if (ids[i].isNull()) {
            arrivals.emplace_back().await(points[i], [this, i](const QUuid& id) {
                m_pointIds[i] = id;
                markModified();
            });
        }
    }
    assignPoints(std::move(ids), std::move(linked), std::move(arrivals));
}

void Route::assignPoints(std::vector<QUuid> ids, std::vector<std::shared_ptr<Interfaces::IPoint>> points,
                         std::vector<QOR::Entities::IdArrival> arrivals)
{
    m_arrivals = std::move(arrivals);
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
    return QOR::Entities::propertiesToJson(*this);
}

} // namespace Cables::Entities
