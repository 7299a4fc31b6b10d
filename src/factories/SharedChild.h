#pragma once

#include <QObject>

#include <memory>

namespace DataAccess::Factories {

/// Makes the parent of @p child, which others own, let go of it where it would delete it: at its own end.
void keepFromDeletion(QObject& child);

/**
 * Makes a T that is a child of @p parent, as far as that is on the calling thread, and yet ends with its last shared
 * reference only. That, or the parent, may end first, though not at the same time on two threads.
 */
template <typename T>
std::shared_ptr<T> makeSharedChild(QObject* parent)
{
    auto child = std::make_shared<T>(parent);
    keepFromDeletion(*child);
    return child;
}

} // namespace DataAccess::Factories
