#pragma once

#include "PropertyCheck.h"

#include <QByteArray>
#include <QUuid>

#include <memory>

Q_DECLARE_METATYPE(std::function<void()>)

namespace TestSupport {

/// Checks how the id and the object of a reference of E to a T follow one another.
template <typename E, typename T, typename GetId, typename SetId, typename GetObject, typename SetObject>
void checkReference(GetId getId, SetId setId, GetObject getObject, SetObject setObject)
{
    using namespace QOR::Entities::Enumerations;
    const auto target = std::make_shared<T>();
    const QUuid id = QUuid::createUuid();
    target->SetId(id);
    E entity;
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
}

/// Adds a row that runs checkProperty() to a table with one column `check`.
template <typename E, typename Getter, typename Setter, typename Value>
void addProperty(const char* entity, const char* member, Getter get, Setter set, const Value& value,
                 Storage storage = Storage::Stored)
{
    const std::function<void()> check = [=] {
        checkProperty<E>(QString::fromLatin1(member), get, set, value, storage);
    };
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
