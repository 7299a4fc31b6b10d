#include "entities/qor/Properties.h"

#include "entities/qor/Entity.h"

namespace QOR::Entities {

QJsonValue toJsonValue(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue();
}

QJsonValue toJsonValue(const QString& text)
{
    return text.isNull() ? QJsonValue() : QJsonValue(text);
}

QJsonValue toJsonValue(const QUuid& id)
{
    return id.isNull() ? QJsonValue() : QJsonValue(id.toString());
}

QJsonValue toJsonValue(const QDate& date)
{
    return date.isValid() ? QJsonValue(date.toString(Qt::ISODate)) : QJsonValue();
}

QJsonValue toJsonValue(const QDateTime& time)
{
    return time.isValid() ? QJsonValue(time.toUTC().toString(Qt::ISODateWithMs)) : QJsonValue();
}

QJsonValue toJsonValue(const QByteArray& bytes)
{
    return bytes.isNull() ? QJsonValue() : QJsonValue(QString::fromLatin1(bytes.toBase64()));
}

QJsonValue toJsonValue(const std::vector<QUuid>& ids)
{
    QJsonArray array;
    for (const QUuid& id : ids)
        array.append(toJsonValue(id));
    return array;
}

QJsonValue toJsonValue(const QHash<QString, QString>& texts)
{
    QJsonObject json;
    for (auto text = texts.begin(); text != texts.end(); ++text)
        json.insert(text.key(), toJsonValue(text.value()));
    return json;
}

QJsonObject entityToJson(const Entity& entity)
{
    QJsonObject json;
    json.insert(QLatin1String("id"), toJsonValue(entity.Id()));
    json.insert(QLatin1String("timestamp"), toJsonValue(entity.Timestamp()));
    json.insert(QLatin1String("deleted"), entity.EntityState() == Enumerations::Deleted);
    json.insert(QLatin1String("snap"), entity.EntityState() == Enumerations::Snapshot);
    return json;
}

} // namespace QOR::Entities
