#include "repositories/cables/StationMapping.h"

#include <QSqlQuery>

#include <utility>

namespace DataAccess::Repositories {

using Interfaces::IDatabase;
using Interfaces::IValueConverter;

StationMapping::StationMapping(QString table, bool withImages)
    : m_table(std::move(table))
    , m_withImages(withImages)
{}

const Statements& StationMapping::statements() const
{
    static const Statements texts = {
        QStringLiteral("SELECT id, name, city, point, description, image, timestamp, deleted, snap FROM %1"),
        QStringLiteral(
            "SELECT  id, name, city, point, description, image, timestamp, deleted, snap FROM %1 WHERE id = '%2'"),
        QStringLiteral(
            "INSERT INTO %1(id, name, city, point, description, image, snap, deleted, timestamp) VALUES (:id, :name, :city, :point, :description, :image, :snap, :deleted, :timestamp)"),
        QStringLiteral(
            R"(UPDATE %1 SET "name" = :name, "city" = :city, "point" = :point, "description" = :description, "image" = :image, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)"),
        {6, 7, 8}};
    return texts;
}

void StationMapping::read(const IValueConverter& row, const std::shared_ptr<Station>& entity) const
{
    entity->SetName(row.toString(1));
    entity->SetCity(row.toString(2));
    entity->SetPointId(row.toUuid(3));
    entity->SetDescrition(row.toString(4));
    if (!m_withImages)
        return;
    entity->SetImage(row.toImage(5));
    remember(entity);
}

void StationMapping::bind(IValueConverter& values, const Station& entity) const
{
    values.bindValue(QStringLiteral(":name"), entity.Name());
    values.bindValue(QStringLiteral(":city"), entity.City());
    values.bindValue(QStringLiteral(":point"), entity.PointId());
    values.bindValue(QStringLiteral(":description"), entity.Description());
    values.bindValue(QStringLiteral(":image"), entity.Image());
}

void StationMapping::bindStored(IDatabase& db, IValueConverter& values, const std::shared_ptr<Station>& entity) const
{
    if (!entity->Image().isNull() || m_hadImage.contains(entity))
        return;
    QSqlQuery query = LoadedContent<Station>::selectForUpdate(db, imageStatement(entity->Id()));
    if (query.next())
        LoadedContent<Station>::bindStored(db, values, QStringLiteral(":image"), query, 0);
}

void StationMapping::written(const std::shared_ptr<Station>& entity) const
{
    remember(entity);
}

void StationMapping::loadImage(IDatabase& db, const std::shared_ptr<Station>& station) const
{
    QSqlQuery query = db.Exec(imageStatement(station->Id()));
    if (!query.next())
        return;
    const auto state = station->EntityState();
    station->SetImage(db.Converter(query)->toImage(0));
    station->SetEntityState(state);
    remember(station);
}

QString StationMapping::imageStatement(const QUuid& id) const
{
    return QStringLiteral("SELECT  image FROM %1 WHERE id = '%2'").arg(m_table, id.toString());
}

void StationMapping::remember(const std::shared_ptr<Station>& station) const
{
    // A stored image that could not be decoded counts as not loaded: an update must not wipe it either.
    if (!station->Image().isNull())
        m_hadImage.add(station);
}

} // namespace DataAccess::Repositories
