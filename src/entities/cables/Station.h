#pragma once

#include "entities/cables/IStation.h"
#include "entities/cables/NamedEntity.h"
#include "entities/qor/Reference.h"

namespace Cables::Entities {

/// Station; table `ce_station`.
class CABLES_EXPORT Station : public NamedEntity<Interfaces::IStation>
{
public:
    ~Station() override;

    const QString& City() const override { return m_city; }
    void SetCity(const QString& city) override { assign(m_city, city); }
    const QString& Description() const override { return m_description; }
    void SetDescrition(const QString& description) override { assign(m_description, description); }
    const QImage& Image() const override { return m_image; }
    void SetImage(const QImage& image) override { assign(m_image, image); }
    const QUuid& PointId() const override { return m_point.id(); }
    void SetPointId(const QUuid& id) override;
    std::shared_ptr<Interfaces::IPoint> Point() const override { return m_point.object(); }
    void SetPoint(std::shared_ptr<Interfaces::IPoint> point) override;

    QJsonObject toJson() const override;

private:
    QOR::Entities::OwningReference<Interfaces::IPoint> m_point;
    QString m_city;
    QString m_description;
    QImage m_image;
};

} // namespace Cables::Entities
