#pragma once

#include "entities/qor/Entity.h"
#include "entities/qor/IObserver.h"

#include <QJsonObject>
#include <QStringList>
#include <QTest>
#include <QUuid>

#include <algorithm>
#include <functional>
#include <memory>

Q_DECLARE_METATYPE(std::function<void()>)

namespace TestSupport {

/// An entity with an id.
template <typename T>
std::shared_ptr<T> make()
{
    auto entity = std::make_shared<T>();
    entity->SetId(QUuid::createUuid());
    return entity;
}

/// Counts how often it is told of a change.
class CountingObserver final : public QOR::Entities::Interfaces::IObserver
{
public:
    void changed(QOR::Entities::Interfaces::IEntity&) override { ++told; }

    int told = 0;
};

enum class Storage { Stored, MemoryOnly };

/// The names of the members that are not the same in both objects.
inline QStringList changedMembers(const QJsonObject& left, const QJsonObject& right)
{
    QStringList names = left.keys() + right.keys();
    names.removeDuplicates();
    const auto isSame = [&](const QString& name) { return left.value(name) == right.value(name); };
    names.erase(std::remove_if(names.begin(), names.end(), isSame), names.end());
    return names;
}

/**
 * Checks what holds for each property of an entity E. @p value differs from what a new entity has: setting it is read
 * back, touches this member alone, tells observers once and makes a Normal entity (and no other) Modified if the
 * property is stored; setting it again does nothing.
 */
template <typename E, typename Getter, typename Setter, typename Value>
void checkProperty(const QString& member, Getter get, Setter set, const Value& value, Storage storage = Storage::Stored)
{
    using namespace QOR::Entities::Enumerations;
    E entity;
    entity.SetEntityState(Normal);
    CountingObserver observer;
    entity.attach(&observer);
    const QJsonObject before = entity.toJson();

    std::invoke(set, entity, value);
    QVERIFY(std::invoke(get, entity) == value);
    QCOMPARE(changedMembers(before, entity.toJson()), QStringList(member));
    QCOMPARE(entity.EntityState(), storage == Storage::Stored ? Modified : Normal);
    QCOMPARE(observer.told, 1);

    entity.SetEntityState(Normal);
    observer.told = 0;
    std::invoke(set, entity, value);
    QCOMPARE(entity.EntityState(), Normal);
    QCOMPARE(observer.told, 0);

    for (const auto state : {New, Deleted, Snapshot}) {
        E other;
        other.SetEntityState(state);
        std::invoke(set, other, value);
        QCOMPARE(other.EntityState(), state);
    }
}

/// Checks how the id and the object of a reference of E to a T follow one another.
template <typename E, typename T, typename GetId, typename SetId, typename GetObject, typename SetObject>
void checkReference(GetId getId, SetId setId, GetObject getObject, SetObject setObject)
{
    using namespace QOR::Entities::Enumerations;
    const auto target = std::make_shared<T>();
    const QUuid id = QUuid::createUuid();
    target->SetId(id);
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
    const auto late = std::make_shared<T>();
    std::invoke(setObject, entity, late);
    normal();
    late->SetId(id);
    QCOMPARE(std::invoke(getId, entity), id);
    QCOMPARE(entity.EntityState(), Modified);
}

/// Adds a row that runs checkProperty() to a table with one column `check`; @p member may begin with a capital.
template <typename E, typename Getter, typename Setter, typename Value>
void addProperty(const char* entity, const char* member, Getter get, Setter set, const Value& value,
                 Storage storage = Storage::Stored)
{
    QString jsonName = QString::fromLatin1(member);
    jsonName[0] = jsonName[0].toLower();
    const std::function<void()> check = [=] { checkProperty<E>(jsonName, get, set, value, storage); };
    QTest::newRow(QByteArray(entity).append('.').append(member).constData()) << check;
}

/// Adds rows for the id of a reference and for its object.
template <typename E, typename T, typename GetId, typename SetId, typename GetObject, typename SetObject>
void addReference(const char* entity, const char* member, GetId getId, SetId setId, GetObject getObject,
                  SetObject setObject)
{
    addProperty<E>(entity, member, getId, setId, QUuid::createUuid());
    const std::function<void()> check = [=] { checkReference<E, T>(getId, setId, getObject, setObject); };
    QTest::newRow(QByteArray(entity).append(".object of ").append(member).constData()) << check;
}

} // namespace TestSupport
