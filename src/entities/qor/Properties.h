#pragma once

#include "entities/qor/QorEntityExport.h"

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <cmath>
#include <functional>
#include <memory>
#include <tuple>
#include <type_traits>
#include <vector>

namespace QOR::Entities {

class Entity;

/// The forms that the properties of entities take in toJson(); what is null or NaN is a JSON null.
QORENTITY_EXPORT QJsonValue toJsonValue(double value);
QORENTITY_EXPORT QJsonValue toJsonValue(const QString& text);
QORENTITY_EXPORT QJsonValue toJsonValue(const QUuid& id);
QORENTITY_EXPORT QJsonValue toJsonValue(const QDate& date);
QORENTITY_EXPORT QJsonValue toJsonValue(const QDateTime& time);
QORENTITY_EXPORT QJsonValue toJsonValue(const QByteArray& bytes);
QORENTITY_EXPORT QJsonValue toJsonValue(const std::vector<QUuid>& ids);
QORENTITY_EXPORT QJsonValue toJsonValue(const QHash<QString, QString>& texts);

/// The same for the types that JSON has itself, for other numbers and for enumerations, which become their numbers.
template <typename T>
QJsonValue toJsonValue(const T& value)
{
    if constexpr (std::is_enum_v<T>)
        return static_cast<int>(value);
    else if constexpr (std::is_same_v<T, unsigned int>)
        return static_cast<qint64>(value);
    else if constexpr (std::is_same_v<T, QStringList>)
        return QJsonArray::fromStringList(value);
    else
        return value;
}

/// The id of an entity that belongs to another one.
template <typename T>
QJsonValue toJsonValue(const std::shared_ptr<T>& child)
{
    return child ? toJsonValue(child->Id()) : QJsonValue();
}

/// The ids of a list of such entities.
template <typename T>
QJsonValue toJsonValue(const std::vector<std::shared_ptr<T>>& children)
{
    QJsonArray ids;
    for (const std::shared_ptr<T>& child : children)
        ids.append(toJsonValue(child));
    return ids;
}

/// The members that every entity has: id, timestamp, deleted and snap.
QORENTITY_EXPORT QJsonObject entityToJson(const Entity& entity);

/// What a property is to the row of its entity.
enum class PropertyKind {
    Stored,    ///< A value in the row.
    Lazy,      ///< A value in the row that some reads leave out: null says nothing about the row.
    Reference, ///< The id of another entity, which may be linked as an object too.
    Parent,    ///< The same of the entity that lists this one.
    InMemory,  ///< A value without a place in the database.
    Children   ///< Entities that have the id of this one. It cannot be set, nor copied.
};

/// The type that a getter gives, without reference.
template <typename Getter>
struct GetterValue;
/// That of a member function.
template <typename Value, typename E>
struct GetterValue<Value (E::*)() const>
{
    /// The type, as a variable of it has.
    using Type = std::decay_t<Value>;
};

/**
 * One property of an entity: what all code needs that does the same with each property. The operations are template
 * arguments, so that a call costs what it costs by name. @p jsonGetter gives what toJson() shows.
 */
template <PropertyKind propertyKind, auto getter, auto setter, auto jsonGetter = getter>
struct Property
{
    /// The type of the value.
    using Value = typename GetterValue<decltype(getter)>::Type;
    /// What the property stands for.
    static constexpr PropertyKind kind = propertyKind;
    /// Whether the value is the id of another entity.
    static constexpr bool isReference = kind == PropertyKind::Reference || kind == PropertyKind::Parent;
    /// Whether the row of an entity has it.
    static constexpr bool isStored = isReference || kind == PropertyKind::Stored || kind == PropertyKind::Lazy;
    /// Member function that gives the value.
    static constexpr auto get = getter;
    /// Member function that sets the value.
    static constexpr auto set = setter;

    /// The member of toJson().
    const char* name;

    /// The value of @p entity as toJson() shows it.
    template <typename E>
    static QJsonValue json(const E& entity)
    {
        return toJsonValue(std::invoke(jsonGetter, entity));
    }
};

/// A property that refers to a @p TargetEntity: the id is the property's value.
template <PropertyKind kind, typename TargetEntity, auto idGetter, auto idSetter, auto objectGetter, auto objectSetter>
struct ReferenceProperty : Property<kind, idGetter, idSetter>
{
    /// The entity referred to.
    using Target = TargetEntity;
    /// Member function that gives the object; null unless it is linked.
    static constexpr auto getObject = objectGetter;
    /// Member function that sets the object, and the id with it.
    static constexpr auto setObject = objectSetter;
};

template <auto getter, auto setter, auto jsonGetter = getter>
constexpr auto stored(const char* name)
{
    return Property<PropertyKind::Stored, getter, setter, jsonGetter>{name};
}

template <auto getter, auto setter, auto jsonGetter = getter>
constexpr auto lazy(const char* name)
{
    return Property<PropertyKind::Lazy, getter, setter, jsonGetter>{name};
}

template <auto getter, auto setter>
constexpr auto inMemory(const char* name)
{
    return Property<PropertyKind::InMemory, getter, setter>{name};
}

template <auto getter>
constexpr auto children(const char* name)
{
    return Property<PropertyKind::Children, getter, nullptr>{name};
}

template <typename Target, auto getId, auto setId, auto getObject, auto setObject>
constexpr auto reference(const char* name)
{
    return ReferenceProperty<PropertyKind::Reference, Target, getId, setId, getObject, setObject>{{name}};
}

template <typename Target, auto getId, auto setId, auto getObject, auto setObject>
constexpr auto parent(const char* name)
{
    return ReferenceProperty<PropertyKind::Parent, Target, getId, setId, getObject, setObject>{{name}};
}

/// The tuple of all properties of the entity @p E, beyond what every entity has. It stands beside the class; one
/// without such a list does not compile where the list is needed.
template <typename E>
inline constexpr auto properties = nullptr;

/// Calls @p visit with each property of @p E.
template <typename E, typename Visitor>
void forEachProperty(const Visitor& visit)
{
    std::apply([&visit](const auto&... property) { (visit(property), ...); }, properties<E>);
}

/// Calls @p visit with each property of @p E that refers to what does not list it.
template <typename E, typename Visitor>
void forEachReference(const Visitor& visit)
{
    forEachProperty<E>([&visit](const auto& property) {
        if constexpr (std::decay_t<decltype(property)>::kind == PropertyKind::Reference)
            visit(property);
    });
}

/// One member for each property, and those that every entity has.
template <typename E>
QJsonObject propertiesToJson(const E& entity)
{
    QJsonObject json = entityToJson(entity);
    forEachProperty<E>([&](const auto& property) { json.insert(QLatin1String(property.name), property.json(entity)); });
    return json;
}

/// Whether a value that an object may lack is null or NaN.
template <typename T>
bool isMissing(const T& value)
{
    if constexpr (std::is_floating_point_v<T>)
        return std::isnan(value);
    else
        return value.isNull();
}

/// Gives @p to the values of @p from, ids of references included; not its id, state, time stamp or links. What an
/// object may have been loaded without is copied only when it is there.
template <typename E>
void copyProperties(const E& from, E& to)
{
    forEachProperty<E>([&](const auto& property) {
        using P = std::decay_t<decltype(property)>;
        if constexpr (P::kind == PropertyKind::Lazy || P::kind == PropertyKind::InMemory) {
            if (!isMissing(std::invoke(P::get, from)))
                std::invoke(P::set, to, std::invoke(P::get, from));
        } else if constexpr (P::kind != PropertyKind::Children) {
            std::invoke(P::set, to, std::invoke(P::get, from));
        }
    });
}

} // namespace QOR::Entities
