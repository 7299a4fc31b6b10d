#include "context/ContextModel.h"

#include <algorithm>

// Compares what the model expects with what the context shows and the database holds.
namespace TestSupport {

using namespace QOR::Entities::Enumerations;

unsigned int ContextModel::count() const
{
    return unsigned(std::count_if(items.begin(), items.end(), [](const Item& item) {
        return item.isKnown && item.known.place == Place::Attached;
    }));
}

std::set<QUuid> ContextModel::shown(int kind) const
{
    std::set<QUuid> ids;
    for (const int number : m_filed) {
        const Item& item = items[size_t(number)];
        if (item.kind == kind && !(item.known.isHidden && item.known.mark == Deleted))
            ids.insert(item.id);
    }
    return ids;
}

/// Finds the objects that a load made.
QString ContextModel::bind()
{
    for (size_t k = 0; k < m_family.kinds.size(); ++k) {
        for (const Object& object : m_family.kinds[k].shown()) {
            if (itemOf(object) >= 0)
                continue;
            const auto made = std::find_if(items.begin(), items.end(), [&](const Item& item) {
                return !item.object && item.kind == int(k) && item.id == object->Id();
            });
            if (made == items.end())
                return QStringLiteral("kind %1 shows an object that is not expected").arg(k);
            made->object = object;
        }
    }
    const auto isMissing = [](const Item& item) { return !item.object; };
    return std::any_of(items.begin(), items.end(), isMissing) ? QStringLiteral("an object was not loaded") : QString();
}

QString ContextModel::difference()
{
    const QString unbound = bind();
    if (!unbound.isEmpty())
        return unbound;
    for (size_t k = 0; k < m_family.kinds.size(); ++k) {
        std::set<QUuid> found;
        for (const Object& object : m_family.kinds[k].shown()) {
            const int item = itemOf(object);
            if (item < 0 || !items[size_t(item)].isKnown)
                return QStringLiteral("kind %1 shows item %2, which is not known").arg(k).arg(item);
            found.insert(object->Id());
        }
        if (found != shown(int(k)))
            return QStringLiteral("kind %1 shows %2 objects, not %3")
                .arg(k)
                .arg(found.size())
                .arg(shown(int(k)).size());
        const QString difference = differentRows(int(k));
        if (!difference.isEmpty())
            return difference;
    }
    for (size_t i = 0; i < items.size(); ++i) {
        const Item& item = items[i];
        if (item.object->EntityState() != item.state)
            return QStringLiteral("item %1 has state %2, not %3")
                .arg(i)
                .arg(item.object->EntityState())
                .arg(item.state);
    }
    const unsigned int others = isLoaded && !m_family.hasFiles ? 37 : 0;
    if (m_family.context().count() != count() + others)
        return QStringLiteral("%1 are attached, not %2").arg(m_family.context().count()).arg(count() + others);
    return {};
}

QString ContextModel::differentRows(int kind)
{
    if (brokenKinds.count(kind) > 0)
        return {};
    const ModelKind& of = m_family.kinds[size_t(kind)];
    std::map<QUuid, StoredRow> expected;
    for (const auto& [id, row] : rows) {
        if (row.kind == kind)
            expected.insert({id, row});
    }
    for (const Object& object : of.rows()) {
        const auto row = expected.find(object->Id());
        if (row == expected.end())
            return QStringLiteral("kind %1 has a row too many").arg(kind);
        const Content content = of.content(object);
        if (!(content == row->second.content) || object->EntityState() != row->second.mark)
            return QStringLiteral("a row of kind %1 is '%2', state %3, parent %4, and not '%5', %6, %7")
                .arg(kind)
                .arg(content.text)
                .arg(object->EntityState())
                .arg(content.parent.toString(), row->second.content.text)
                .arg(row->second.mark)
                .arg(row->second.content.parent.toString());
        for (const Item& item : items) {
            if (item.id == object->Id() && item.version == row->second.version &&
                item.object->Timestamp() != object->Timestamp())
                return QStringLiteral("an object of kind %1 has another time than its row").arg(kind);
        }
        const auto last = m_stamps.find(object->Id());
        if (last != m_stamps.end() &&
            (last->second.first == row->second.version) != (last->second.second == object->Timestamp()))
            return QStringLiteral("a row of kind %1 was written for nothing, or not at all").arg(kind);
        m_stamps[object->Id()] = {row->second.version, object->Timestamp()};
        expected.erase(row);
    }
    return expected.empty() ? QString() : QStringLiteral("kind %1 lacks a row").arg(kind);
}

} // namespace TestSupport
