#pragma once

#include "entities/qor/Entity.h"
#include "entities/qor/IObserver.h"

#include <QJsonObject>
#include <QStringList>
#include <QTest>

#include <algorithm>
#include <functional>

namespace TestSupport {

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

} // namespace TestSupport
