#pragma once

#include "entities/qor/IEntity.h"
#include "entities/qor/QorEntityExport.h"

#include <QVarLengthArray>

#include <cmath>
#include <functional>
#include <type_traits>
#include <utility>

namespace QOR::Entities {

/**
 * Base of every entity. A new object has the null id and the state New; a setter that changes a stored value makes a
 * Normal entity Modified and notifies the observers. Not synchronised: one thread at a time changes an entity.
 */
class QORENTITY_EXPORT Entity : public Interfaces::IEntity
{
public:
    Entity();
    ~Entity() override;
    /// Deleted because an entity stands for one row: another must not overwrite it.
    Entity& operator=(const Entity& other) = delete;

    const QUuid& Id() const override;
    void SetId(const QUuid& id) override;
    const QDateTime& Timestamp() const override;
    void SetTimestamp(const QDateTime& timestamp) override;
    Enumerations::EntityState EntityState() const override;
    void SetEntityState(Enumerations::EntityState state) override;
    bool Selected() const override;
    void SetSelected(bool selected) override;
    void attach(Interfaces::IObserver* observer) override;
    void detach(Interfaces::IObserver* observer) override;

protected:
    /// A copy has the values, and none of the observers.
    Entity(const Entity& other);

    /// Gives a stored property another value: a Normal entity becomes Modified, and the observers are told.
    template <typename T>
    bool assign(T& property, const T& value)
    {
        if (same(property, value))
            return false;
        property = value;
        markModified();
        return true;
    }

    /// Gives a property that is not stored with this entity another value, and tells the observers.
    template <typename T>
    bool assignUnstored(T& property, T value)
    {
        if (same(property, value))
            return false;
        property = std::move(value);
        notify();
        return true;
    }

    /// Makes a Normal entity Modified and notifies the observers, as assign() does.
    void markModified();
    /// Tells every observer that this entity has changed.
    void notify();

private:
    /// Calls @p call with every observer that is still attached when it is its turn.
    template <typename Call>
    void tell(const Call& call);

    /// Whether both are stored alike: NaN and NaN are, a null and an empty text, or no time and the epoch, are not.
    template <typename T>
    static bool same(const T& left, const T& right)
    {
        if constexpr (std::is_floating_point_v<T>)
            return (std::isnan(left) && std::isnan(right)) || std::equal_to<T>()(left, right);
        else if constexpr (std::is_same_v<T, QString> || std::is_same_v<T, QByteArray> || std::is_same_v<T, QDateTime>)
            return left.isNull() == right.isNull() && left == right;
        else
            return left == right;
    }

    QUuid m_id;
    QDateTime m_timestamp;
    /// Room for one needs no allocation: most entities are observed by their context only.
    QVarLengthArray<Interfaces::IObserver*, 1> m_observers;
    Enumerations::EntityState m_state = Enumerations::New;
    bool m_selected = false;
};

/// Whether a parent lists a child by itself: not one marked deleted, nor a snapshot among live ones.
QORENTITY_EXPORT bool isListed(Enumerations::EntityState child, Enumerations::EntityState parent);

} // namespace QOR::Entities
