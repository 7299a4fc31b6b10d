#pragma once

#include "repositories/cables/SegmentRepository.h"
#include "repositories/pd/PlainRepositories.h"

#include <array>
#include <memory>
#include <vector>

/**
 * The kinds of entities that are measured. Each says which columns it has, in the order in which they are selected and
 * written, and moves one row between them and an object, through whatever reads or writes the columns.
 */
namespace Bench {

struct Segments
{
    using Entity = Cables::Entities::Segment;
    using Repository = DataAccess::Repositories::SegmentRepository;
    static constexpr const char* table = "ce_segment";
    static constexpr const char* name = "segments";
    static constexpr std::array<const char*, 10> columns = {
        "id", "name", "indexnumber", "length", "phase", "detail", "installationdate", "deleted", "snap", "timestamp"};

    static std::shared_ptr<Entity> make(int number);

    template <typename Row>
    static void read(const Row& row, Entity& entity)
    {
        entity.SetName(row.text(1));
        entity.SetIndex(static_cast<unsigned int>(row.integer(2)));
        entity.SetLength(row.number(3));
        entity.SetPhaseId(row.id(4));
        entity.SetDetailId(row.id(5));
        entity.SetInstallationDate(row.date(6));
    }

    template <typename Row>
    static void write(Row& row, const Entity& entity)
    {
        row.text(1, entity.Name());
        row.integer(2, static_cast<int>(entity.Index()));
        row.number(3, entity.Length());
        row.id(4, entity.PhaseId());
        row.id(5, entity.DetailId());
        row.date(6, entity.InstallationDate());
    }
};

struct MappingEvents
{
    using Entity = PD::Entities::PdMappingEvent;
    using Repository = DataAccess::Repositories::PdMappingEventRepository;
    static constexpr const char* table = "pd_mapping_event";
    static constexpr const char* name = "mapping events";
    static constexpr std::array<const char*, 12> columns = {"id",    "report_id", "load",    "phase",
                                                            "class", "polarity",  "voltage", "position",
                                                            "mode",  "deleted",   "snap",    "timestamp"};

    static std::shared_ptr<Entity> make(int number);

    template <typename Row>
    static void read(const Row& row, Entity& entity)
    {
        entity.setReportId(row.id(1));
        entity.setLoad(row.number(2));
        entity.setPhaseIndex(row.integer(3));
        entity.setClassification(row.integer(4));
        entity.setPolarity(row.flag(5));
        entity.setVoltage(row.number(6));
        entity.setPosition(row.number(7));
        entity.setMode(row.integer(8));
    }

    template <typename Row>
    static void write(Row& row, const Entity& entity)
    {
        row.id(1, entity.reportId());
        row.number(2, entity.load());
        row.integer(3, entity.phaseIndex());
        row.integer(4, entity.classification());
        row.flag(5, entity.polarity());
        row.number(6, entity.voltage());
        row.number(7, entity.position());
        row.integer(8, entity.mode());
    }
};

/// The columns that all kinds have: the id first, and these at the end.
template <typename Kind>
struct Bookkeeping
{
    static constexpr int id = 0;
    static constexpr int timestamp = static_cast<int>(Kind::columns.size()) - 1;
    static constexpr int snap = timestamp - 1;
    static constexpr int deleted = timestamp - 2;
};

template <typename Kind>
using EntityList = std::vector<std::shared_ptr<typename Kind::Entity>>;

/// @p count entities that are stored nowhere yet.
template <typename Kind>
EntityList<Kind> makeEntities(int count)
{
    EntityList<Kind> entities;
    entities.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        entities.push_back(Kind::make(i));
    return entities;
}

/// Makes an object of the row that @p row stands on.
template <typename Kind, typename Row>
std::shared_ptr<typename Kind::Entity> readEntity(const Row& row)
{
    using namespace QOR::Entities::Enumerations;
    auto entity = std::make_shared<typename Kind::Entity>();
    entity->SetId(row.id(Bookkeeping<Kind>::id));
    Kind::read(row, *entity);
    entity->SetTimestamp(row.time(Bookkeeping<Kind>::timestamp));
    entity->SetEntityState(row.flag(Bookkeeping<Kind>::snap)      ? Snapshot
                           : row.flag(Bookkeeping<Kind>::deleted) ? Deleted
                                                                  : Normal);
    return entity;
}

/// Hands all columns of @p entity to @p row.
template <typename Kind, typename Row>
void writeEntity(Row& row, const typename Kind::Entity& entity, const QDateTime& now)
{
    using namespace QOR::Entities::Enumerations;
    row.id(Bookkeeping<Kind>::id, entity.Id());
    Kind::write(row, entity);
    row.flag(Bookkeeping<Kind>::deleted, entity.EntityState() == Deleted);
    row.flag(Bookkeeping<Kind>::snap, entity.EntityState() == Snapshot);
    row.time(Bookkeeping<Kind>::timestamp, now);
}

} // namespace Bench
