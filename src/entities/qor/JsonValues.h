#pragma once

#include "entities/qor/QorEntityExport.h"

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QUuid>

#include <memory>
#include <vector>

namespace QOR::Entities {

class Entity;

/// The forms that the properties of entities take in toJson(); what is null or NaN is a JSON null.
QORENTITY_EXPORT QJsonValue toJsonValue(double value);
QORENTITY_EXPORT QJsonValue toJsonValue(const QString& text);
QORENTITY_EXPORT QJsonValue toJsonValue(const QUuid& id);
QORENTITY_EXPORT QJsonValue toJsonValue(const QDate& date);
QORENTITY_EXPORT QJsonValue toJsonValue(const QDateTime& time);
QORENTITY_EXPORT QJsonValue toJsonValue(const QByteArray& bytes);

/// The members that every entity has: id, timestamp, deleted and snap.
QORENTITY_EXPORT QJsonObject entityToJson(const Entity& entity);

/// The ids of a list of entities.
template <typename T>
QJsonArray childIds(const std::vector<std::shared_ptr<T>>& children)
{
    QJsonArray ids;
    for (const std::shared_ptr<T>& child : children)
        ids.append(toJsonValue(child->Id()));
    return ids;
}

} // namespace QOR::Entities
