#pragma once

#include <QJsonObject>
#include <QStringList>
#include <QUuid>

#include <algorithm>
#include <memory>

namespace TestSupport {

/// An entity with an id.
template <typename T>
std::shared_ptr<T> make(const QUuid& id = QUuid::createUuid())
{
    auto entity = std::make_shared<T>();
    entity->SetId(id);
    return entity;
}

/// The names of the members that are not the same in both objects.
inline QStringList changedMembers(const QJsonObject& left, const QJsonObject& right)
{
    QStringList names = left.keys() + right.keys();
    names.removeDuplicates();
    const auto isSame = [&](const QString& name) { return left.value(name) == right.value(name); };
    names.erase(std::remove_if(names.begin(), names.end(), isSame), names.end());
    return names;
}

} // namespace TestSupport
