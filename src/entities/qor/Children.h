#pragma once

#include <algorithm>
#include <memory>
#include <unordered_set>
#include <vector>

namespace QOR::Entities {

/// The list without null and repeated entries, in its order.
template <typename T>
std::vector<std::shared_ptr<T>> distinctChildren(const std::vector<std::shared_ptr<T>>& list)
{
    std::vector<std::shared_ptr<T>> distinct;
    distinct.reserve(list.size());
    std::unordered_set<const T*> seen;
    for (const std::shared_ptr<T>& child : list) {
        if (child && seen.insert(child.get()).second)
            distinct.push_back(child);
    }
    return distinct;
}

/// Appends @p child unless it is null or in the list; tells whether it did.
template <typename T>
bool addChild(std::vector<std::shared_ptr<T>>& list, const std::shared_ptr<T>& child)
{
    if (!child || std::find(list.begin(), list.end(), child) != list.end())
        return false;
    list.push_back(child);
    return true;
}

/// Takes @p child out of the list; tells whether it was there.
template <typename T>
bool removeChild(std::vector<std::shared_ptr<T>>& list, const std::shared_ptr<T>& child)
{
    const auto found = std::find(list.begin(), list.end(), child);
    if (found == list.end())
        return false;
    list.erase(found);
    return true;
}

} // namespace QOR::Entities
