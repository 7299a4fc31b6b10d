#pragma once

#include "context/CableNetwork.h"

#include <vector>

namespace DataAccess::Context {

/**
 * Copies cables of one network, with all that they refer to, into another one.
 *
 * An entity that is in both by its id, or one with a name by that, is not copied: the one here wins, unless the other
 * one was written later and there are no unsaved changes here. What is marked deleted here comes back with a cable that
 * is new here, or was marked deleted itself.
 */
class CableImport
{
public:
    using EntityPointer = std::shared_ptr<QOR::Entities::Entity>;
    using Ratings = std::vector<std::shared_ptr<Cables::Entities::Interfaces::IRating>>;

    /// Adds to @p target, which must outlive the object.
    explicit CableImport(CableNetwork& target);

    /// Copies @p cable and @p ratings. What is missing at the source is left out, with a warning.
    void add(const std::shared_ptr<Cables::Entities::Cable>& cable, const Ratings& ratings);

    /// What was made or changed in the target: New or Modified, and not linked.
    const std::vector<EntityPointer>& changed() const { return m_changed; }

private:
    /// The live entities of one kind by their names; of those with one name the one with the lowest id.
    template <typename T>
    struct IdByName
    {
        QHash<QString, QUuid> ids;
    };

    /// The entity here that stands for @p source, made or changed if need be; null when there is no source.
    template <typename T, typename Interface>
    std::shared_ptr<T> take(const std::shared_ptr<Interface>& source);
    /// The id here of what @p object, whose id is @p id, stands for; the id itself when the object is not at hand.
    template <typename T, typename Interface>
    QUuid refer(const QUuid& id, const std::shared_ptr<Interface>& object);
    template <typename T>
    std::shared_ptr<T> find(const T& source);
    template <typename T>
    QHash<QString, QUuid>& idsByName(const T& kind);
    /// What entities are told apart by that stand for the same thing when it is the same; empty when there is none.
    template <typename T>
    QString nameKey(const T& entity) const;
    template <typename T>
    bool mustGiveWay(const T& here, const T& source) const;

    /// Takes what @p source refers to, and lets @p copy refer to what stands for it here.
    template <typename T>
    void mapReferences(const T& /*source*/, T& /*copy*/)
    {}
    void mapReferences(const Cables::Entities::SegmentDetail& source, Cables::Entities::SegmentDetail& copy);
    void mapReferences(const Cables::Entities::Station& source, Cables::Entities::Station& copy);
    void mapReferences(const Cables::Entities::Route& source, Cables::Entities::Route& copy);
    void mapReferences(const Cables::Entities::Segment& source, Cables::Entities::Segment& copy);
    void mapReferences(const Cables::Entities::Cable& source, Cables::Entities::Cable& copy);

    void takeParts(const Cables::Entities::Cable& cable);

    CableNetwork& m_target;
    ForEachCableKind<IdByName> m_idByName;
    std::vector<EntityPointer> m_changed;
    bool m_bringsBack = false;
    bool m_isIncomplete = false;
};

} // namespace DataAccess::Context
