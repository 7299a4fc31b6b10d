#pragma once

#include "EntityChecks.h"

#include <algorithm>
#include <array>
#include <vector>

namespace TestSupport {

using Object = std::shared_ptr<QOR::Entities::Entity>;
using Objects = std::vector<Object>;

/// A list, or a single place, of a parent and the reference of the child that faces it.
struct Link
{
    std::function<Object()> makeParent;
    std::function<Object()> makeChild;
    std::function<Objects(const Object&)> children;
    std::function<void(const Object&, const Objects&)> replace;
    std::function<QUuid(const Object&)> parentId;
    std::function<void(const Object&, const QUuid&)> setParentId;
    // Not every link has these.
    std::function<void(const Object&, const Object&)> add = {};
    std::function<void(const Object&, const Object&)> remove = {};
    std::function<void(const Object&, const Object&)> setParent = {};
    bool isSingle = false;
};

template <typename T>
T& as(const Object& object)
{
    return dynamic_cast<T&>(*object);
}

template <typename P, typename C, typename Get, typename Set, typename GetId, typename SetId>
Link makeLink(Get get, Set set, GetId getId, SetId setId)
{
    using Place = std::decay_t<std::invoke_result_t<Get, P&>>;
    Link link;
    link.makeParent = [] { return make<P>(); };
    link.makeChild = [] { return make<C>(); };
    link.parentId = [=](const Object& child) { return std::invoke(getId, as<C>(child)); };
    link.setParentId = [=](const Object& child, const QUuid& id) { std::invoke(setId, as<C>(child), id); };
    if constexpr (std::is_convertible_v<std::shared_ptr<C>, Place>) {
        link.isSingle = true;
        link.children = [=](const Object& parent) {
            const auto child = std::dynamic_pointer_cast<C>(std::invoke(get, as<P>(parent)));
            return child ? Objects{child} : Objects();
        };
        link.replace = [=](const Object& parent, const Objects& children) {
            std::invoke(set, as<P>(parent),
                        children.empty() ? nullptr : std::dynamic_pointer_cast<C>(children.front()));
        };
    } else {
        link.children = [=](const Object& parent) {
            Objects children;
            for (const auto& child : std::invoke(get, as<P>(parent)))
                children.push_back(std::dynamic_pointer_cast<C>(child));
            return children;
        };
        link.replace = [=](const Object& parent, const Objects& children) {
            Place list;
            for (const Object& child : children)
                list.push_back(std::dynamic_pointer_cast<C>(child));
            std::invoke(set, as<P>(parent), list);
        };
    }
    return link;
}

template <typename P, typename C, typename SetParent>
void addParentSetter(Link& link, SetParent setParent)
{
    link.setParent = [=](const Object& child, const Object& parent) {
        std::invoke(setParent, as<C>(child), std::dynamic_pointer_cast<P>(parent));
    };
}

template <typename P, typename C, typename Add, typename Remove>
void addListOperations(Link& link, Add add, Remove remove)
{
    link.add = [=](const Object& parent, const Object& child) {
        std::invoke(add, as<P>(parent), std::dynamic_pointer_cast<C>(child));
    };
    link.remove = [=](const Object& parent, const Object& child) {
        std::invoke(remove, as<P>(parent), std::dynamic_pointer_cast<C>(child));
    };
}

/// Two parents, two children, and what is expected of them: the parent of each child by its number, -1 for none.
struct Family
{
    explicit Family(const Link& of)
        : link(of)
    {}

    const Link& link;
    Objects parents = {link.makeParent(), link.makeParent()};
    Objects children = {link.makeChild(), link.makeChild()};
    std::array<int, 2> parentOf = {-1, -1};

    void settle() const
    {
        for (const Objects& objects : {parents, children}) {
            for (const Object& object : objects)
                object->SetEntityState(QOR::Entities::Enumerations::Normal);
        }
    }

    void put(int child, int parent)
    {
        if (link.isSingle && parent >= 0)
            std::replace(parentOf.begin(), parentOf.end(), parent, -1);
        parentOf[std::size_t(child)] = parent;
    }

    bool holds(const std::array<int, 2>& before) const
    {
        for (std::size_t c = 0; c < children.size(); ++c) {
            const QUuid id = link.parentId(children[c]);
            if (id != (parentOf[c] < 0 ? QUuid() : parents[std::size_t(parentOf[c])]->Id()))
                return false;
            if ((children[c]->EntityState() == QOR::Entities::Enumerations::Modified) != (parentOf[c] != before[c]))
                return false;
            for (std::size_t p = 0; p < parents.size(); ++p) {
                const Objects listed = link.children(parents[p]);
                if (std::count(listed.begin(), listed.end(), children[c]) != (int(p) == parentOf[c] ? 1 : 0))
                    return false;
            }
        }
        return true;
    }
};

using Step = std::function<void(Family&)>;
struct NamedStep
{
    QByteArray name;
    Step run;
};

/// Every operation that a link has, on every parent and child.
inline std::vector<NamedStep> stepsOf(const Link& link)
{
    std::vector<NamedStep> steps;
    const auto add = [&steps](const QByteArray& name, int p, int c, const Step& run) {
        steps.push_back({name + ' ' + QByteArray::number(p) + ' ' + QByteArray::number(c) + "; ", run});
    };
    for (int p = 0; p < 2; ++p) {
        const auto parent = std::size_t(p);
        for (int set = 0; set < (link.isSingle ? 3 : 4); ++set) {
            add("replace", p, set, [=](Family& family) {
                Objects list;
                for (int c = 0; c < 2; ++c) {
                    if (set & (c + 1))
                        list.push_back(family.children[std::size_t(c)]);
                    else if (family.parentOf[std::size_t(c)] == p)
                        family.put(c, -1);
                }
                for (int c = 0; c < 2; ++c) {
                    if (set & (c + 1))
                        family.put(c, p);
                }
                family.link.replace(family.parents[parent], list);
            });
        }
        for (int c = 0; c < 2; ++c) {
            const auto child = std::size_t(c);
            if (link.setParent) {
                add("setParent", p, c, [=](Family& family) {
                    family.put(c, p);
                    family.link.setParent(family.children[child], family.parents[parent]);
                });
            }
            if (!link.add)
                continue;
            add("add", p, c, [=](Family& family) {
                family.put(c, p);
                family.link.add(family.parents[parent], family.children[child]);
            });
            add("remove", p, c, [=](Family& family) {
                if (family.parentOf[child] == p)
                    family.put(c, -1);
                family.link.remove(family.parents[parent], family.children[child]);
            });
        }
    }
    for (int c = 0; c < 2; ++c) {
        const auto child = std::size_t(c);
        add("no id", -1, c, [=](Family& family) {
            family.put(c, -1);
            family.link.setParentId(family.children[child], QUuid());
        });
        if (link.setParent) {
            add("no parent", -1, c, [=](Family& family) {
                family.put(c, -1);
                family.link.setParent(family.children[child], nullptr);
            });
        }
    }
    return steps;
}

} // namespace TestSupport
