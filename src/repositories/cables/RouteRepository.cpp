#include "repositories/cables/RouteRepository.h"

#include <QStringList>

namespace DataAccess::Repositories {

using Cables::Entities::Route;

namespace {

constexpr QLatin1Char s_separator('#');

QString toText(const std::vector<QUuid>& ids)
{
    QStringList texts;
    for (const QUuid& id : ids)
        texts.append(id.toString());
    // Joining nothing gives a null text, which would be stored as NULL.
    return texts.isEmpty() ? QStringLiteral("") : texts.join(s_separator);
}

std::vector<QUuid> toIds(const QString& text)
{
    std::vector<QUuid> ids;
    if (text.isEmpty())
        return ids;
    const QStringList parts = text.split(s_separator, Qt::KeepEmptyParts);
    for (const QString& part : parts)
        ids.emplace_back(part);
    return ids;
}

class RouteMapping final : public EntityMapping<Route>
{
public:
    const Statements& statements() const override
    {
        static const Statements texts = {
            QStringLiteral("SELECT id, cable, points, timestamp, deleted, snap FROM %1"),
            QStringLiteral("SELECT  id, cable, points, timestamp, deleted, snap FROM %1 WHERE id = '%2'"),
            QStringLiteral(
                "INSERT INTO %1(id, cable, points, snap, deleted, timestamp) VALUES (:id, :cable, :points, :snap, :deleted, :timestamp)"),
            QStringLiteral(
                R"(UPDATE %1 SET "cable" = :cable, "points" = :points, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)"),
            {3, 4, 5}};
        return texts;
    }

    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<Route>& entity) const override
    {
        entity->SetCableId(row.toUuid(1));
        entity->SetPointIds(toIds(row.toString(2)));
    }

    void bind(Interfaces::IValueConverter& values, const Route& entity) const override
    {
        values.bindValue(QStringLiteral(":cable"), entity.CableId());
        values.bindValue(QStringLiteral(":points"), toText(entity.PointIds()));
    }
};

} // namespace

RouteRepository::RouteRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, QStringLiteral("ce_route"), strategy, manager, std::make_shared<RouteMapping>(), parent)
{}

RouteRepository::~RouteRepository() = default;

template class EntityRepository<Cables::Entities::Route>;

} // namespace DataAccess::Repositories
