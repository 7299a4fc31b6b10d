#pragma once

#include "entities/cables/Station.h"
#include "repositories/EntityMapping.h"
#include "repositories/LoadedContent.h"

namespace DataAccess::Repositories {

/// How stations are stored. Used on the worker's thread only, where it also remembers which objects had their image.
class StationMapping final : public EntityMapping<Cables::Entities::Station>
{
public:
    using Station = Cables::Entities::Station;

    /// @p table is the name of the table; without @p withImages images are not read along.
    StationMapping(QString table, bool withImages);

    const Statements& statements() const override;
    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<Station>& entity) const override;
    void bind(Interfaces::IValueConverter& values, const Station& entity) const override;
    void bindStored(Interfaces::IDatabase& db, Interfaces::IValueConverter& values,
                    const std::shared_ptr<Station>& entity) const override;
    bool usesConnection() const override { return true; }
    void written(const std::shared_ptr<Station>& entity) const override;

    /// Reads the image of @p station from the database into the object.
    void loadImage(Interfaces::IDatabase& db, const std::shared_ptr<Station>& station) const;

private:
    QString imageStatement(const QUuid& id) const;
    void remember(const std::shared_ptr<Station>& station) const;

    QString m_table;
    bool m_withImages;
    mutable LoadedContent<Station> m_hadImage;
};

} // namespace DataAccess::Repositories
