#pragma once

#include "entities/cables/CablesExport.h"

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QUuid>

#include <memory>
#include <vector>

namespace QOR::Entities {
class Entity;
}

namespace Cables::Entities {

/// The forms that the properties of entities take in toJson(); what is null or NaN is a JSON null.
CABLES_EXPORT QJsonValue toJsonValue(double value);
CABLES_EXPORT QJsonValue toJsonValue(const QString& text);
CABLES_EXPORT QJsonValue toJsonValue(const QUuid& id);
CABLES_EXPORT QJsonValue toJsonValue(const QDate& date);
CABLES_EXPORT QJsonValue toJsonValue(const QDateTime& time);
CABLES_EXPORT QJsonValue toJsonValue(const QByteArray& bytes);
CABLES_EXPORT QJsonValue toJsonValue(const QImage& image);

/// The members that every entity has: id, timestamp, deleted and snap.
CABLES_EXPORT QJsonObject entityToJson(const QOR::Entities::Entity& entity);

/// The ids of a list of entities.
template <typename T>
QJsonArray childIds(const std::vector<std::shared_ptr<T>>& children)
{
    QJsonArray ids;
    for (const std::shared_ptr<T>& child : children)
        ids.append(toJsonValue(child->Id()));
    return ids;
}

} // namespace Cables::Entities
