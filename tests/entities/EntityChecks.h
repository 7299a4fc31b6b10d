#pragma once

#include "entities/qor/Entity.h"
#include "entities/qor/IObserver.h"
#include "entities/qor/Properties.h"
#include "support/Entities.h"

#include <QTest>

namespace TestSupport {

/// The name of an operation of a class, as the compiler writes it.
template <auto operation>
QString nameOf()
{
    const QString name = QString::fromLatin1(Q_FUNC_INFO).remove(QLatin1Char(']'));
    return name.mid(name.lastIndexOf(QLatin1Char(':')) + 1);
}

/// Counts how often it is told of a change.
class CountingObserver final : public QOR::Entities::Interfaces::IObserver
{
public:
    void changed(QOR::Entities::Interfaces::IEntity&) override { ++told; }

    int told = 0;
};

/// A value that no property has at first, chosen so that the type's own comparison finds it equal to the first one
/// where it can: an empty text is stored differently from a null one, and the epoch from no time.
template <typename Value>
Value otherValue()
{
    if constexpr (std::is_enum_v<Value> || std::is_same_v<Value, int>)
        return static_cast<Value>(-77); // No enumeration has a name for it.
    else if constexpr (std::is_same_v<Value, unsigned int>)
        return 4000000000U;
    else if constexpr (std::is_same_v<Value, bool>)
        return true;
    else if constexpr (std::is_same_v<Value, double>)
        return 0;
    else if constexpr (std::is_same_v<Value, QString>)
        return QStringLiteral("{\"20400\":1.5e-12}"); // Those that are texts of something else are objects.
    else if constexpr (std::is_same_v<Value, QByteArray>)
        return QByteArray("");
    else if constexpr (std::is_same_v<Value, QUuid>)
        return QUuid::createUuid();
    else if constexpr (std::is_same_v<Value, QDate>)
        return QDate(2020, 2, 29);
    else if constexpr (std::is_same_v<Value, QDateTime>)
        return QDateTime::fromMSecsSinceEpoch(0, Qt::UTC);
    else if constexpr (std::is_same_v<Value, std::vector<QUuid>>)
        return {QUuid::createUuid(), QUuid()};
    else if constexpr (std::is_same_v<Value, QHash<QString, QString>>)
        return {{QStringLiteral("key"), QString()}};
    else {
        Value image(2, 2, Value::Format_RGB32);
        image.fill(Qt::red);
        return image;
    }
}

/**
 * Checks what holds for each property P of an entity E: setting it is read back, touches its member of the JSON alone,
 * tells observers once and makes a Normal entity (and no other) Modified if the property is stored; setting it again
 * does nothing. Copies have it; what may be missing in an object is not copied over what is there.
 */
template <typename E, typename P>
void checkProperty(const char* name)
{
    using namespace QOR::Entities::Enumerations;
    using QOR::Entities::PropertyKind;
    constexpr auto get = P::get;
    constexpr auto set = P::set;
    const auto value = otherValue<typename P::Value>();
    const auto made = make<E>(QUuid(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11));
    E& entity = *made;
    entity.SetEntityState(Normal);
    CountingObserver observer;
    entity.attach(&observer);
    const QJsonObject before = entity.toJson();

    std::invoke(set, entity, value);
    QVERIFY(std::invoke(get, entity) == value);
    QCOMPARE(changedMembers(before, entity.toJson()), QStringList(QString::fromLatin1(name)));
    QCOMPARE(entity.EntityState(), P::isStored ? Modified : Normal);
    QCOMPARE(observer.told, 1);
    entity.SetEntityState(Normal);
    observer.told = 0;
    std::invoke(set, entity, value);
    QCOMPARE(entity.EntityState(), Normal);
    QCOMPARE(observer.told, 0);

    const auto copy = make<E>(entity.Id());
    QOR::Entities::copyProperties(entity, *copy);
    QCOMPARE(copy->toJson(), entity.toJson());
    QCOMPARE(E(entity).toJson(), entity.toJson());
    QOR::Entities::copyProperties(E(), *copy);
    const bool stays = P::kind == PropertyKind::Lazy || P::kind == PropertyKind::InMemory;
    QCOMPARE(std::invoke(get, *copy) == value, stays);
    for (const auto state : {New, Deleted, Snapshot}) {
        E other;
        other.SetEntityState(state);
        std::invoke(set, other, value);
        QCOMPARE(other.EntityState(), state);
    }
}

/// Checks how the id and the object of a reference R of E follow one another.
template <typename E, typename R>
void checkReference()
{
    using namespace QOR::Entities::Enumerations;
    constexpr auto getId = R::get;
    constexpr auto setId = R::set;
    constexpr auto getObject = R::getObject;
    constexpr auto setObject = R::setObject;
    const QUuid id = QUuid::createUuid();
    const auto target = make<typename R::Target>(id);
    const auto owned = std::make_shared<E>();
    E& entity = *owned;
    CountingObserver observer;
    entity.attach(&observer);
    const auto normal = [&] {
        entity.SetEntityState(Normal);
        observer.told = 0;
    };

    std::invoke(setId, entity, id);
    normal();
    std::invoke(setObject, entity, target);
    QCOMPARE(std::invoke(getObject, entity).get(), target.get());
    QCOMPARE(entity.EntityState(), Normal);
    QCOMPARE(observer.told, 1);

    std::invoke(setObject, entity, target);
    std::invoke(setId, entity, id);
    QCOMPARE(std::invoke(getObject, entity).get(), target.get());
    QCOMPARE(observer.told, 1);

    const QUuid otherId = QUuid::createUuid();
    std::invoke(setId, entity, otherId);
    QVERIFY(!std::invoke(getObject, entity));
    QCOMPARE(std::invoke(getId, entity), otherId);
    QCOMPARE(entity.EntityState(), Modified);

    normal();
    std::invoke(setObject, entity, target);
    QCOMPARE(std::invoke(getId, entity), id);
    QCOMPARE(entity.EntityState(), Modified);

    // The object has got another id since: its old one names another object.
    normal();
    target->SetId(otherId);
    std::invoke(setId, entity, id);
    QVERIFY(!std::invoke(getObject, entity));
    QCOMPARE(entity.EntityState(), Normal);

    std::invoke(setObject, entity, nullptr);
    QVERIFY(std::invoke(getId, entity).isNull());
    QCOMPARE(entity.EntityState(), Modified);

    // An object without an id gives it when it gets one.
    const auto late = std::make_shared<typename R::Target>();
    std::invoke(setObject, entity, late);
    normal();
    late->SetId(id);
    QCOMPARE(std::invoke(getId, entity), id);
    QCOMPARE(entity.EntityState(), Modified);
}

} // namespace TestSupport
