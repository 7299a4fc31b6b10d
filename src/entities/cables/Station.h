#pragma once

#include "entities/cables/IPoint.h"
#include "entities/cables/IStation.h"
#include "entities/cables/NamedEntity.h"
#include "entities/qor/Reference.h"

namespace Cables::Entities {

class Point;

/// Station; table `ce_station`.
class CABLES_EXPORT Station : public NamedEntity<Interfaces::IStation>
{
public:
    const QString& City() const override { return m_city; }
    void SetCity(const QString& city) override { assign(m_city, city); }
    const QString& Description() const override { return m_description; }
    void SetDescrition(const QString& description) override { assign(m_description, description); }
    const QImage& Image() const override { return m_image; }
    void SetImage(const QImage& image) override { assign(m_image, image); }
    /// The member `image` of toJson(): the image as PNG.
    QJsonValue imageJson() const;
    const QUuid& PointId() const override { return m_point.id(); }
    void SetPointId(const QUuid& id) override { assignReferenceId(m_point, id); }
    std::shared_ptr<Interfaces::IPoint> Point() const override { return m_point.object(); }
    void SetPoint(std::shared_ptr<Interfaces::IPoint> point) override
    {
        assignReferenceObject(m_point, std::move(point));
    }

    QJsonObject toJson() const override;

private:
    QOR::Entities::OwningReference<Interfaces::IPoint> m_point;
    QString m_city;
    QString m_description;
    QImage m_image;
};

} // namespace Cables::Entities

template <>
inline constexpr auto QOR::Entities::properties<Cables::Entities::Station> = [] {
    using namespace Cables::Entities;
    using E = Station;
    return std::tuple{stored<&E::Name, &E::SetName>("name"), stored<&E::City, &E::SetCity>("city"),
                      stored<&E::Description, &E::SetDescrition>("description"),
                      lazy<&E::Image, &E::SetImage, &E::imageJson>("image"),
                      reference<Point, &E::PointId, &E::SetPointId, &E::Point, &E::SetPoint>("pointId")};
}();
