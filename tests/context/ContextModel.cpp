#include "context/ContextModel.h"

#include <algorithm>

namespace TestSupport {

using namespace QOR::Entities::Enumerations;

namespace {

bool isMark(EntityState state)
{
    return state == Deleted || state == Snapshot;
}

} // namespace

int ContextModel::add(const Object& object, int kind)
{
    Item item;
    item.object = object;
    item.kind = kind;
    item.id = object ? object->Id() : QUuid();
    items.push_back(item);
    return int(items.size()) - 1;
}

int ContextModel::itemOf(const Object& object) const
{
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const Item& item) { return object && item.object == object; });
    return found == items.end() ? -1 : int(found - items.begin());
}

int ContextModel::filed(int kind, const QUuid& id) const
{
    for (const int item : m_filed) {
        if (items[size_t(item)].kind == kind && items[size_t(item)].id == id)
            return item;
    }
    return -1;
}

void ContextModel::attach(int number)
{
    Item& item = items[size_t(number)];
    const int here = item.isKnown || item.id.isNull() ? -1 : filed(item.kind, item.id);
    if (here < 0 || items[size_t(here)].known.place != Place::Attached)
        adopt(number);
}

void ContextModel::adopt(int number)
{
    Item& item = items[size_t(number)];
    item.isRefused = false;
    if (item.isKnown) {
        item.known.place = Place::Attached;
        item.known.isReferredOnly = false;
    } else {
        item.isKnown = true;
        item.known = {};
        tryToFile(number);
    }
    item.known.isChanged = true;
}

/// An object takes the place of one that is not attached, with what is known of the row.
bool ContextModel::tryToFile(int number)
{
    Item& item = items[size_t(number)];
    if (item.id.isNull())
        return false;
    const int here = filed(item.kind, item.id);
    if (here >= 0 && here != number) {
        const Known other = items[size_t(here)].known;
        if (other.place == Place::Attached)
            return false;
        forget(here);
        if (other.row == Row::Present) {
            item.known.row = Row::Present;
            item.known.mark = other.mark;
            item.known.isChanged = true;
            item.known.hasContent = item.known.hasContent || item.version != items[size_t(here)].version;
        }
    }
    m_filed.insert(number);
    return true;
}

void ContextModel::forget(int number)
{
    items[size_t(number)].isKnown = false;
    m_filed.erase(number);
}

void ContextModel::detach(int number)
{
    if (!items[size_t(number)].isKnown)
        number = items[size_t(number)].id.isNull() ? -1 : filed(items[size_t(number)].kind, items[size_t(number)].id);
    if (number < 0)
        return;
    Item& item = items[size_t(number)];
    if (item.known.row == Row::Present) {
        item.known.place = Place::Detached;
    } else {
        forget(number);
        item.isRefused = true;
    }
}

void ContextModel::touched(int number, bool isOfContent)
{
    Known& known = items[size_t(number)].known;
    known.isChanged = true;
    known.hasContent = known.hasContent || isOfContent;
}

/// Another id is another row.
void ContextModel::idChanged(int number)
{
    Item& item = items[size_t(number)];
    if (!item.isKnown)
        return;
    m_filed.erase(number);
    if (item.known.place == Place::Detached) {
        forget(number);
        return;
    }
    item.known.row = Row::NotAsked;
    item.known.mark = Normal;
    item.known.isHidden = false;
    item.known.place = Place::Attached;
    touched(number, false);
    tryToFile(number);
}

void ContextModel::writeBeside(const QUuid& id, const Content& content)
{
    rows[id].content = content;
    rows[id].version = ++m_clock;
}

void ContextModel::reopen()
{
    for (Item& item : items) {
        item.isKnown = false;
        item.isRefused = false;
    }
    m_filed.clear();
    isLoaded = false;
    hasLoadFailed = false;
}

void ContextModel::reload()
{
    reopen();
    hasLoadFailed = std::any_of(m_family.loadedKinds.begin(), m_family.loadedKinds.end(),
                                [this](int kind) { return brokenKinds.count(kind) > 0; });
    isLoaded = !hasLoadFailed;
    for (const int kind : m_family.loadedKinds) {
        if (isLoaded)
            load(kind);
    }
}

void ContextModel::load(int kind)
{
    for (const auto& [id, row] : rows) {
        if (row.kind == kind)
            take(id, row, false);
    }
}

void ContextModel::take(const QUuid& id, const StoredRow& row, bool replaces)
{
    const int here = filed(row.kind, id);
    if (here >= 0) {
        Item& item = items[size_t(here)];
        if (!replaces || item.known.place == Place::Detached || hasUnsavedChanges(item)) {
            if (item.known.row != Row::Present && noteRow(item, row))
                touched(here, true);
            return;
        }
        forget(here);
    }
    const int number = add(nullptr, row.kind);
    Item& item = items[size_t(number)];
    item.id = id;
    item.state = row.mark;
    item.version = row.version;
    item.isKnown = true;
    item.known.row = Row::Present;
    item.known.mark = row.mark;
    item.known.place = row.mark == Deleted ? Place::SetAside : Place::Attached;
    item.known.isChanged = row.mark == Snapshot;
    m_filed.insert(number);
}

void ContextModel::loadFiles(const QUuid& report)
{
    constexpr int fileKind = 2;
    if (brokenKinds.count(fileKind) == 0) {
        std::vector<int> gone;
        for (const int number : m_filed) {
            const Item& item = items[size_t(number)];
            if (item.kind != fileKind || m_family.kinds[fileKind].content(item.object).parent != report)
                continue;
            const auto row = rows.find(item.id);
            if ((row == rows.end() || row->second.content.parent != report) && !hasUnsavedChanges(item))
                gone.push_back(number);
        }
        for (const auto& [id, row] : rows) {
            if (row.kind == fileKind && row.content.parent == report)
                take(id, row, true);
        }
        std::for_each(gone.begin(), gone.end(), [this](int number) { forget(number); });
    }
    adoptLinked();
}

bool ContextModel::import(const std::vector<int>& fresh)
{
    if (!isLoaded) {
        const auto isBroken = [this](int kind) { return brokenKinds.count(kind) > 0; };
        if (hasLoadFailed || std::any_of(m_family.loadedKinds.begin(), m_family.loadedKinds.end(), isBroken))
            return false;
        for (const int kind : m_family.loadedKinds)
            load(kind);
        isLoaded = true;
    }
    adoptLinked();
    for (const int number : fresh)
        adopt(number);
    return true;
}

/// Takes in what the changed objects own, and what they refer to.
void ContextModel::adoptLinked()
{
    std::vector<int> open;
    for (size_t i = 0; i < items.size(); ++i) {
        if (items[i].isKnown && items[i].known.isChanged && items[i].known.place != Place::Detached)
            open.push_back(int(i));
    }
    while (!open.empty()) {
        const Item item = items[size_t(open.back())];
        open.pop_back();
        if (!item.object)
            continue;
        const ModelKind& kind = m_family.kinds[size_t(item.kind)];
        adoptLinked(itemOf(kind.parent(item.object)), true, open);
        for (const Object& child : kind.children(item.object))
            adoptLinked(itemOf(child), item.known.isReferredOnly, open);
    }
}

void ContextModel::adoptLinked(int number, bool isReferredOnly, std::vector<int>& open)
{
    if (number < 0)
        return;
    Item& item = items[size_t(number)];
    if (item.isKnown) {
        if (isReferredOnly || !item.known.isReferredOnly)
            return;
        item.known.isReferredOnly = false;
    } else {
        if (item.isRefused || (!item.id.isNull() && filed(item.kind, item.id) >= 0))
            return;
        adopt(number);
        item.known.isReferredOnly = isReferredOnly;
    }
    open.push_back(number);
}

EntityState ContextModel::markToWrite(const Item& item) const
{
    if (isMark(item.state))
        return item.state;
    return item.state != New && item.known.isHidden ? item.known.mark : Normal;
}

bool ContextModel::mustBeWritten(const Item& item) const
{
    if (item.known.row == Row::NotAsked)
        return markToWrite(item) != Deleted;
    return item.known.hasContent || item.state == New || item.state == Modified || markToWrite(item) != item.known.mark;
}

bool ContextModel::noteRow(Item& item, const StoredRow& row) const
{
    item.known.row = Row::Present;
    item.known.mark = row.mark;
    item.known.isReferredOnly = false;
    return item.version != row.version;
}

bool ContextModel::save()
{
    adoptLinked();
    std::vector<int> candidates;
    for (size_t i = 0; i < items.size(); ++i) {
        if (items[i].isKnown && items[i].known.isChanged && items[i].known.place != Place::Detached)
            candidates.push_back(int(i));
    }
    std::set<int> failed;
    for (const int kind : m_family.savingOrder)
        saveKind(kind, candidates, failed);
    for (const int number : candidates) {
        if (failed.count(number) == 0)
            settle(items[size_t(number)]);
    }
    return failed.empty();
}

void ContextModel::saveKind(int kind, const std::vector<int>& candidates, std::set<int>& failed)
{
    std::vector<int> inserts;
    std::vector<int> updates;
    for (const int number : candidates) {
        Item& item = items[size_t(number)];
        if (item.kind != kind || !item.isKnown)
            continue;
        if (item.known.row != Row::Present) {
            const auto row = rows.find(item.id);
            if (!tryToFile(number) || (item.known.row != Row::Present && brokenKinds.count(kind) > 0)) {
                failed.insert(number);
                continue;
            }
            if (item.known.row == Row::Present) {
                // What it took the place of had the row.
            } else if (row != rows.end() && item.known.isReferredOnly) {
                forget(number);
                continue;
            } else if (row != rows.end()) {
                item.known.hasContent = noteRow(item, row->second) || item.known.hasContent;
            } else if (markToWrite(item) == Deleted) {
                item.known.row = Row::NotAsked;
                item.known.mark = Deleted;
                continue;
            } else if (item.known.row == Row::Gone && item.state != New) {
                failed.insert(number);
                continue;
            } else {
                inserts.push_back(number);
                continue;
            }
        }
        if (mustBeWritten(item))
            updates.push_back(number);
    }
    write(inserts, true, failed);
    write(updates, false, failed);
}

void ContextModel::write(const std::vector<int>& batch, bool isInsert, std::set<int>& failed)
{
    const auto cannotBeStored = [this](int number) {
        const Item& item = items[size_t(number)];
        const QString text = m_family.kinds[size_t(item.kind)].content(item.object).text;
        return brokenKinds.count(item.kind) > 0 || text.contains(QChar(0xd800));
    };
    const bool fails = std::any_of(batch.begin(), batch.end(), cannotBeStored);
    for (const int number : batch) {
        Item& item = items[size_t(number)];
        const bool isGone = !isInsert && brokenKinds.count(item.kind) == 0 && rows.count(item.id) == 0;
        if (isGone)
            item.known.row = Row::Gone;
        if (fails || isGone) {
            failed.insert(number);
            continue;
        }
        item.version = ++m_clock;
        item.known.mark = markToWrite(item);
        item.known.row = Row::Present;
        item.known.isReferredOnly = false;
        rows[item.id] = {item.kind, m_family.kinds[size_t(item.kind)].content(item.object), item.known.mark, m_clock};
    }
}

void ContextModel::settle(Item& item) const
{
    if (!item.isKnown)
        return;
    item.known.isChanged = false;
    item.known.hasContent = false;
    if (item.known.place == Place::SetAside && item.known.mark == Deleted)
        return;
    item.known.place = Place::Attached;
    item.known.isHidden = isMark(item.known.mark);
    item.state = Normal;
}

} // namespace TestSupport
