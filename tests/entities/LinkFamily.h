#pragma once

#include "EntityChecks.h"
#include "entities/cables/Route.h"

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace TestSupport {

/// A list, or a single place, of a parent P and the reference of the child C that faces it. Not every link has the last
/// operations.
template <typename P, typename C, auto getChildren, auto setChildren, auto getParentId, auto setParentId,
          auto getParentObject = nullptr, auto setParentObject = nullptr, auto addChild = nullptr,
          auto removeChild = nullptr>
struct Link
{
    using Parent = P;
    using Children = std::vector<std::shared_ptr<C>>;
    using Place = std::decay_t<std::invoke_result_t<decltype(getChildren), P&>>;
    using Child = C;
    static constexpr bool isSingle = std::is_convertible_v<std::shared_ptr<C>, Place>;
    static constexpr bool hasParent = !std::is_null_pointer_v<decltype(setParentObject)>;
    /// The route of a cable is stored at both ends.
    static constexpr bool isStoredByParent = std::is_same_v<C, Cables::Entities::Route>;
    static constexpr bool hasAdd = !std::is_null_pointer_v<decltype(addChild)>;

    static QString listName() { return nameOf<getChildren>(); }

    static Children children(const P& parent)
    {
        Children found;
        const auto note = [&found](const auto& child) {
            if (child)
                found.push_back(std::dynamic_pointer_cast<C>(child));
        };
        if constexpr (isSingle) {
            note(std::invoke(getChildren, parent));
        } else {
            for (const auto& child : std::invoke(getChildren, parent))
                note(child);
        }
        return found;
    }

    static void replace(P& parent, const Children& children)
    {
        if constexpr (isSingle) {
            std::invoke(setChildren, parent, children.empty() ? nullptr : children.front());
        } else {
            Place list(children.begin(), children.end());
            std::invoke(setChildren, parent, list);
        }
    }

    static bool refersTo(const C& child, const std::shared_ptr<P>& parent)
    {
        if constexpr (hasParent) {
            if (std::invoke(getParentObject, child) != parent)
                return false;
        }
        return parentId(child) == (parent ? parent->Id() : QUuid());
    }
    static QUuid parentId(const C& child) { return std::invoke(getParentId, child); }
    static void setId(C& child, const QUuid& id) { std::invoke(setParentId, child, id); }
    static void setParent(C& child, const std::shared_ptr<P>& parent) { std::invoke(setParentObject, child, parent); }
    static void add(P& parent, const std::shared_ptr<C>& child) { std::invoke(addChild, parent, child); }
    static void remove(P& parent, const std::shared_ptr<C>& child) { std::invoke(removeChild, parent, child); }
};

/// Two parents, two children, and what is expected of them: the parent of each child by its number, -1 for none.
template <typename L>
struct Family
{
    std::array<std::shared_ptr<typename L::Parent>, 2> parents = {make<typename L::Parent>(),
                                                                  make<typename L::Parent>()};
    std::array<std::shared_ptr<typename L::Child>, 2> children = {make<typename L::Child>(), make<typename L::Child>()};
    std::array<int, 2> parentOf = {-1, -1};

    void settle() const
    {
        for (const auto& parent : parents)
            parent->SetEntityState(QOR::Entities::Enumerations::Normal);
        for (const auto& child : children)
            child->SetEntityState(QOR::Entities::Enumerations::Normal);
    }

    void put(std::size_t child, int parent)
    {
        if (L::isSingle && parent >= 0)
            std::replace(parentOf.begin(), parentOf.end(), parent, -1);
        parentOf[child] = parent;
    }

    bool holds(const std::array<int, 2>& before) const
    {
        for (std::size_t c = 0; c < 2; ++c) {
            if (!L::refersTo(*children[c], parentOf[c] < 0 ? nullptr : parents[std::size_t(parentOf[c])]))
                return false;
            if ((children[c]->EntityState() == QOR::Entities::Enumerations::Modified) != (parentOf[c] != before[c]))
                return false;
            for (std::size_t p = 0; p < 2; ++p) {
                if (!L::isStoredByParent && parents[p]->EntityState() != QOR::Entities::Enumerations::Normal)
                    return false;
                const auto listed = L::children(*parents[p]);
                if (std::count(listed.begin(), listed.end(), children[c]) != (int(p) == parentOf[c] ? 1 : 0))
                    return false;
            }
        }
        return true;
    }
};

template <typename L>
using Steps = std::vector<std::pair<QByteArray, std::function<void(Family<L>&)>>>;

/// Every operation that a link has, on every parent and child.
template <typename L>
Steps<L> stepsOf()
{
    using F = Family<L>;
    Steps<L> steps;
    const auto add = [&steps](const char* name, std::size_t p, std::size_t c, const std::function<void(F&)>& run) {
        steps.emplace_back(
            QByteArray(name) + ' ' + QByteArray::number(int(p)) + ' ' + QByteArray::number(int(c)) + "; ", run);
    };
    for (std::size_t p = 0; p < 2; ++p) {
        for (unsigned set = 0; set < (L::isSingle ? 3 : 4); ++set) {
            add("replace", p, set, [=](F& family) {
                typename L::Children list;
                for (std::size_t c = 0; c < 2; ++c) {
                    if (set & (c + 1))
                        list.push_back(family.children[c]);
                    else if (family.parentOf[c] == int(p))
                        family.put(c, -1);
                }
                for (std::size_t c = 0; c < 2; ++c) {
                    if (set & (c + 1))
                        family.put(c, int(p));
                }
                L::replace(*family.parents[p], list);
            });
        }
        for (std::size_t c = 0; c < 2; ++c) {
            if constexpr (L::hasParent) {
                add("set parent", p, c, [=](F& family) {
                    family.put(c, int(p));
                    L::setParent(*family.children[c], family.parents[p]);
                });
            }
            if constexpr (L::hasAdd) {
                add("add", p, c, [=](F& family) {
                    family.put(c, int(p));
                    L::add(*family.parents[p], family.children[c]);
                });
                add("remove", p, c, [=](F& family) {
                    if (family.parentOf[c] == int(p))
                        family.put(c, -1);
                    L::remove(*family.parents[p], family.children[c]);
                });
            }
        }
    }
    for (std::size_t c = 0; c < 2; ++c) {
        add("no id", 9, c, [=](F& family) {
            family.put(c, -1);
            L::setId(*family.children[c], QUuid());
        });
        if constexpr (L::hasParent) {
            add("no parent", 9, c, [=](F& family) {
                family.put(c, -1);
                L::setParent(*family.children[c], nullptr);
            });
        }
    }
    return steps;
}

} // namespace TestSupport
