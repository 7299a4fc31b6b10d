#pragma once

#include "context/AbstractContext.h"
#include "entities/cables/Cable.h"
#include "entities/cables/Insulation.h"
#include "entities/cables/Owner.h"
#include "entities/cables/Phase.h"
#include "entities/cables/Point.h"
#include "entities/cables/Rating.h"
#include "entities/cables/Route.h"
#include "entities/cables/Segment.h"
#include "entities/cables/SegmentDetail.h"
#include "entities/cables/SegmentType.h"
#include "entities/cables/Station.h"
#include "entities/cables/Switchgear.h"
#include "entities/cables/Termination.h"

#include <vector>

namespace DataAccess::Interfaces {
class IEditorRepositoryManager;
}

namespace DataAccess::Context {

/**
 * The cable network of one database, its entities linked to one another.
 *
 * The accessors of the kinds give what the database held when it was loaded, rows marked deleted and snapshots
 * included, and what was attached since. They may be called on any thread, and wait for a load or save to end.
 *
 * An entity that was saved as deleted or as a snapshot is Normal afterwards, as all others, and keeps that mark in the
 * database when it is changed again; the state New removes the mark.
 */
class DATAACCESS_EXPORT CableContext : public AbstractContext, public std::enable_shared_from_this<CableContext>
{
    Q_OBJECT

public:
    template <typename T>
    using EntitiesOf = QHash<QUuid, std::shared_ptr<T>>;
    using Cable = Cables::Entities::Cable;

    /// The types that every database has, with the same ids everywhere. The find operations give null, and a warning in
    /// the log, when there is no such type.
    class DATAACCESS_EXPORT DefaultTypes
    {
    public:
        std::shared_ptr<Cables::Entities::Insulation> findInsulation(const QUuid& id) const;
        std::shared_ptr<Cables::Entities::SegmentType> findType(const QUuid& id) const;
        std::shared_ptr<Cables::Entities::SegmentDetail> findSegmentDetail(const QUuid& id) const;

        /// The type of a cable's sections, and that of its joints.
        std::shared_ptr<Cables::Entities::SegmentType> cableType() const;
        std::shared_ptr<Cables::Entities::SegmentType> jointType() const;
        /// The details of a section, and of a joint, of which nothing else is known.
        std::shared_ptr<Cables::Entities::SegmentDetail> getSegmentDetailCableDefault() const;
        std::shared_ptr<Cables::Entities::SegmentDetail> getSegmentDetailJointDefault() const;

        std::vector<std::shared_ptr<Cables::Entities::Insulation>> insulations;
        std::vector<std::shared_ptr<Cables::Entities::SegmentType>> segmentTypes;
        /// They are linked to the types, and have the ids of their insulations.
        std::vector<std::shared_ptr<Cables::Entities::SegmentDetail>> segmentDetails;
    };

    /// Stores the default types that the database lacks, if @p manager is an EditorRepositoryManager; loads nothing.
    CableContext(Enumerations::LoadingStrategies strategy,
                 const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, unsigned int value,
                 QObject* parent = nullptr);
    ~CableContext() override;

    void reload() override;
    void saveChanges() override;

    /**
     * Copies cables of another context, with all that they refer to, into this one; saveChanges() stores them. Ids are
     * kept. What is here already wins unless the other one was written later; owners, stations and the like that are
     * here under another id and the same name are used in its place. The source is not changed, and must not be while
     * this runs. Loads the network first when that has not been done, and refuses, with a warning, when the last load
     * failed. Of each cable only the rating that it is linked with comes along.
     */
    void import(const std::vector<std::shared_ptr<Cable>>& cables);
    /// The same, with every rating that @p source has of the cables; refused also when its last load failed.
    void import(const std::vector<std::shared_ptr<Cable>>& cables, const CableContext& source);

    /// A new catalogue of the types that every database has.
    static DefaultTypes defaultTypes();

    EntitiesOf<Cables::Entities::Termination> Terminations() const;
    EntitiesOf<Cables::Entities::SegmentType> SegmentTypes() const;
    EntitiesOf<Cables::Entities::Point> Points() const;
    EntitiesOf<Cables::Entities::Switchgear> Switchgears() const;
    EntitiesOf<Cables::Entities::Insulation> Insulations() const;
    EntitiesOf<Cables::Entities::Station> Stations() const;
    EntitiesOf<Cables::Entities::Segment> Segments() const;
    EntitiesOf<Cables::Entities::Cable> Cables() const;
    EntitiesOf<Cables::Entities::Owner> Owners() const;
    EntitiesOf<Cables::Entities::Phase> Phases() const;
    EntitiesOf<Cables::Entities::Rating> Ratings() const;
    EntitiesOf<Cables::Entities::Route> Routes() const;
    EntitiesOf<Cables::Entities::SegmentDetail> SegmentDetails() const;

private:
    struct Data;
    using RatingsByCable = QHash<QUuid, std::vector<std::shared_ptr<Cables::Entities::Interfaces::IRating>>>;

    void insertDefaults();
    static void insertDefaults(const Interfaces::IEditorRepositoryManager& manager);
    /// Reads all kinds. Gives the reason when something cannot be read; then nothing has changed here.
    QString load();
    /// Repairs what was just read, saves that, and gives everything the state of its row.
    void cleanup();
    /// Links what is here to one another.
    void concat();
    bool isReadyForImport();
    void importWith(const std::vector<std::shared_ptr<Cable>>& cables, const RatingsByCable& ratings);
    template <typename T>
    EntitiesOf<T> all() const;

    std::unique_ptr<Data> m_data;
};

} // namespace DataAccess::Context
