#pragma once

#include <QUuid>

#include <memory>
#include <type_traits>
#include <utility>

namespace QOR::Entities {

/// What an entity keeps of another one that it refers to: the id, which is stored, and the object once it is linked.
template <typename T, typename Pointer>
class Reference
{
public:
    const QUuid& id() const { return m_id; }

    std::shared_ptr<T> object() const
    {
        if constexpr (std::is_same_v<Pointer, std::weak_ptr<T>>)
            return m_object.lock();
        else
            return m_object;
    }

    void set(const QUuid& id, std::shared_ptr<T> object)
    {
        m_id = id;
        m_object = std::move(object);
    }

private:
    QUuid m_id;
    Pointer m_object;
};

/// Reference that keeps its object alive.
template <typename T>
using OwningReference = Reference<T, std::shared_ptr<T>>;

/// Reference to the object that owns the referring one.
template <typename T>
using ParentReference = Reference<T, std::weak_ptr<T>>;

} // namespace QOR::Entities
