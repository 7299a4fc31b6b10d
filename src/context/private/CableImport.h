#pragma once

#include "context/private/Networks.h"

#include <functional>
#include <vector>

namespace DataAccess::Context {

/**
 * Copies cables of one network, with all that they refer to, into another one.
 *
 * What is in both by its id stays as it is here, and only gets what it lacks, unless the other one was written later
 * and there are no unsaved changes here. What is here under another id, with a name, is used in place of a copy when it
 * is the same thing by all that tells such things apart; it is never changed, nor are the default types. What is marked
 * deleted here comes back with a cable that is new here, or was marked deleted itself. docs/contexts.md has the rules.
 */
class CableImport
{
public:
    using EntityPointer = std::shared_ptr<QOR::Entities::Entity>;
    using Ratings = std::vector<std::shared_ptr<Cables::Entities::Interfaces::IRating>>;

    /// Whether an entity of the target differs from its row, or has none.
    using IsUnsaved = std::function<bool(const QOR::Entities::Entity&)>;

    /// Adds to @p target, which must outlive the object. @p hasImages: its stations were loaded with their images.
    CableImport(CableNetwork& target, IsUnsaved isUnsaved, bool hasImages);

    /// Notes @p cable and @p ratings for run(). What is missing at the source is left out, with a warning.
    void add(const std::shared_ptr<Cables::Entities::Cable>& cable, const Ratings& ratings);

    /// Copies what was added. Gives what was made or changed in the target: New or Modified, and not linked.
    std::vector<EntityPointer> run();

private:
    template <typename T>
    struct Source
    {
        std::shared_ptr<T> entity;
        /// Whether its counterpart here must not stay deleted.
        bool comesBack = false;
    };
    template <typename T>
    using SourcesById = QHash<QUuid, Source<T>>;
    template <typename... Kind>
    static std::tuple<SourcesById<typename Kind::Entity>...> sourcesOf(const std::tuple<Kind...>& kinds);
    template <typename T>
    using Entities = std::vector<std::shared_ptr<T>>;

    template <typename T>
    SourcesById<T>& sources()
    {
        return std::get<SourcesById<T>>(m_sources);
    }

    /// Notes @p object and what it refers to; except for points, which are copied with what refers to them.
    template <typename T, typename Interface>
    void collect(const std::shared_ptr<Interface>& object, bool comesBack);
    void collectParts(const Cables::Entities::Cable& cable, bool comesBack);
    template <typename Target, typename Interface>
    void collectReferred(const QUuid& id, const std::shared_ptr<Interface>& object, bool comesBack);

    /// Copies the noted entities of one kind. The kinds that it refers to must have been copied before.
    template <typename T>
    void place(const QString& kind);
    template <typename T>
    void merge(const Source<T>& source, const std::shared_ptr<T>& here, const QString& kind);
    template <typename T>
    void insert(const Source<T>& source);
    template <typename T>
    void placePoints(const Source<T>& /*source*/, const T* /*kept*/)
    {}
    void placePoints(const Source<Cables::Entities::Station>& source, const Cables::Entities::Station* kept);
    void placePoints(const Source<Cables::Entities::Route>& source, const Cables::Entities::Route* kept);
    void placePoint(const std::shared_ptr<Cables::Entities::Interfaces::IPoint>& object, bool comesBack);

    template <typename T>
    bool givesWay(const T& here, const Source<T>& source) const;
    /// Gives @p to all values of @p source; references lead to the counterparts here.
    template <typename T>
    void assignContent(const T& source, T& to);
    /// Gives @p here what it lacks, and returns whether that changed anything.
    template <typename T>
    bool complete(const T& source, T& here);

    /// Finds counterparts by name for @p strangers, whose ids are not here.
    template <typename T>
    void findByName(const Entities<T>& strangers);
    template <typename T>
    bool isSameThing(const T& source, const T& here);
    /// Whether two ids belong to entities here that cannot be told apart.
    template <typename T>
    bool areSameThing(const QUuid& left, const QUuid& right);
    QUuid standIn(const QUuid& id) const { return m_standIns.value(id, id); }

    CableNetwork& m_target;
    const IsUnsaved m_isUnsaved;
    const bool m_hasImages;
    decltype(sourcesOf(Manager::editorKinds)) m_sources;
    /// What is here under another id, by the id that it has at the source.
    QHash<QUuid, QUuid> m_standIns;
    std::vector<EntityPointer> m_changed;
    bool m_isIncomplete = false;
};

} // namespace DataAccess::Context
