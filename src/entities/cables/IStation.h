#pragma once

#include "entities/cables/INamedEntity.h"

#include <QImage>

#include <memory>

namespace Cables::Entities::Interfaces {

class IPoint;

/// Station at which cables end.
class CABLES_EXPORT IStation : public INamedEntity
{
public:
    ~IStation() override = default;

    /// Town the station is in.
    virtual const QString& City() const = 0;
    virtual void SetCity(const QString& city) = 0;

    /// Free text. The setter's name lacks a letter that callers lack too.
    virtual const QString& Description() const = 0;
    virtual void SetDescrition(const QString& description) = 0;

    /// Picture of the station; null when there is none or it has not been loaded.
    virtual const QImage& Image() const = 0;
    virtual void SetImage(const QImage& image) = 0;

    /// Where the station is; the station keeps its point alive.
    virtual const QUuid& PointId() const = 0;
    virtual void SetPointId(const QUuid& id) = 0;
    virtual std::shared_ptr<IPoint> Point() const = 0;
    virtual void SetPoint(std::shared_ptr<IPoint> point) = 0;
};

} // namespace Cables::Entities::Interfaces
