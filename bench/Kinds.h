#pragma once

#include "entities/qor/EntityState.h"
#include "repositories/cables/SegmentRepository.h"
#include "repositories/pd/PlainRepositories.h"

#include <array>
#include <cmath>
#include <memory>
#include <type_traits>
#include <vector>

/**
 * The kinds that are measured. Each says which columns it has, in the order in which they are selected and written, and
 * moves one row between them and an object, through whatever reads or writes the columns. An object is an entity of the
 * library, or a structure of nothing but the values.
 */
namespace Bench {

/// What every structure has.
struct Bookkeeping
{
    QUuid id;
    QDateTime timestamp;
    QOR::Entities::Enumerations::EntityState state = QOR::Entities::Enumerations::New;
};

struct Segments
{
    using Entity = Cables::Entities::Segment;
    using Repository = DataAccess::Repositories::SegmentRepository;
    struct Plain : Bookkeeping
    {
        unsigned int index = 0;
        double length = 0;
        QString name;
        QUuid phase;
        QUuid detail;
        QDate installationDate;
    };
    static constexpr const char* table = "ce_segment";
    static constexpr const char* name = "segments";
    static constexpr std::array<const char*, 10> columns = {
        "id", "name", "indexnumber", "length", "phase", "detail", "installationdate", "deleted", "snap", "timestamp"};

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
    static void read(const Row& row, Plain& plain)
    {
        plain.name = row.text(1);
        plain.index = static_cast<unsigned int>(row.integer(2));
        plain.length = row.number(3);
        plain.phase = row.id(4);
        plain.detail = row.id(5);
        plain.installationDate = row.date(6);
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

    template <typename Row>
    static void write(Row& row, const Plain& plain)
    {
        row.text(1, plain.name);
        row.integer(2, static_cast<int>(plain.index));
        row.number(3, plain.length);
        row.id(4, plain.phase);
        row.id(5, plain.detail);
        row.date(6, plain.installationDate);
    }
};

struct MappingEvents
{
    using Entity = PD::Entities::PdMappingEvent;
    using Repository = DataAccess::Repositories::PdMappingEventRepository;
    struct Plain : Bookkeeping
    {
        int phase = 0;
        int classification = 0;
        int mode = 0;
        bool polarity = false;
        double load = 0;
        double voltage = 0;
        double position = 0;
        QUuid report;
    };
    static constexpr const char* table = "pd_mapping_event";
    static constexpr const char* name = "mapping events";
    static constexpr std::array<const char*, 12> columns = {"id",    "report_id", "load",    "phase",
                                                            "class", "polarity",  "voltage", "position",
                                                            "mode",  "deleted",   "snap",    "timestamp"};

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
    static void read(const Row& row, Plain& plain)
    {
        plain.report = row.id(1);
        plain.load = row.number(2);
        plain.phase = row.integer(3);
        plain.classification = row.integer(4);
        plain.polarity = row.flag(5);
        plain.voltage = row.number(6);
        plain.position = row.number(7);
        plain.mode = row.integer(8);
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

    template <typename Row>
    static void write(Row& row, const Plain& plain)
    {
        row.id(1, plain.report);
        row.number(2, plain.load);
        row.integer(3, plain.phase);
        row.integer(4, plain.classification);
        row.flag(5, plain.polarity);
        row.number(6, plain.voltage);
        row.number(7, plain.position);
        row.integer(8, plain.mode);
    }
};

template <typename Object>
using List = std::vector<std::shared_ptr<Object>>;

inline const QUuid& idOf(const QOR::Entities::Entity& entity)
{
    return entity.Id();
}

inline const QUuid& idOf(const Bookkeeping& plain)
{
    return plain.id;
}

inline void setBookkeeping(QOR::Entities::Entity& entity, const Bookkeeping& values)
{
    entity.SetTimestamp(values.timestamp);
    entity.SetEntityState(values.state);
}

inline void setBookkeeping(Bookkeeping& plain, const Bookkeeping& values)
{
    plain.timestamp = values.timestamp;
    plain.state = values.state;
}

inline void setId(QOR::Entities::Entity& entity, const QUuid& id)
{
    entity.SetId(id);
}

inline void setId(Bookkeeping& plain, const QUuid& id)
{
    plain.id = id;
}

/// The columns that all kinds have: the id first, and the time at the end, after the flags of the state.
template <typename Kind>
constexpr int timestampColumn = static_cast<int>(Kind::columns.size()) - 1;

/// Makes an object of the row that @p row stands on.
template <typename Kind, typename Object, typename Row>
std::shared_ptr<Object> readObject(const Row& row)
{
    using namespace QOR::Entities::Enumerations;
    constexpr int timestamp = timestampColumn<Kind>;
    auto object = std::make_shared<Object>();
    setId(*object, row.id(0));
    Kind::read(row, *object);
    const auto state = row.flag(timestamp - 1) ? Snapshot : row.flag(timestamp - 2) ? Deleted : Normal;
    setBookkeeping(*object, {{}, row.time(timestamp), state});
    return object;
}

/// Hands all columns of @p object to @p row, and makes it what a stored one is. None is deleted or a snapshot.
template <typename Kind, typename Object, typename Row>
void writeObject(Row& row, Object& object, const QDateTime& now)
{
    constexpr int timestamp = timestampColumn<Kind>;
    row.id(0, idOf(object));
    Kind::write(row, object);
    row.flag(timestamp - 2, false);
    row.flag(timestamp - 1, false);
    row.time(timestamp, now);
    setBookkeeping(object, {{}, now, QOR::Entities::Enumerations::Normal});
}

/// A row whose values are made up: twenty of one parent, and numbers with all their digits, as they are measured.
struct SampleRow
{
    int position;

    QString text(int /*column*/) const { return QStringLiteral("Segment %1").arg(position % 20 + 1); }
    QUuid id(int column) const
    {
        return {static_cast<uint>(position / 20 + 1), static_cast<ushort>(column), 0x4a3b, 0x8c, 1, 2, 3, 4, 5, 6, 7};
    }
    int integer(int /*column*/) const { return position % 20; }
    bool flag(int /*column*/) const { return position % 2 == 0; }
    double number(int column) const { return std::fmod((position + column) * 0.6180339887498949, 1) * 5000; }
    QDate date(int /*column*/) const { return QDate(1970, 1, 1).addDays(position % 18000); }
};

/// @p count objects that are stored nowhere yet.
template <typename Kind, typename Object>
List<Object> makeObjects(int count)
{
    List<Object> objects;
    objects.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        auto object = std::make_shared<Object>();
        setId(*object, QUuid::createUuid());
        Kind::read(SampleRow{i}, *object);
        objects.push_back(std::move(object));
    }
    return objects;
}

} // namespace Bench
