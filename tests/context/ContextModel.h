#pragma once

#include "context/ModelFamily.h"

#include <set>

namespace TestSupport {

/**
 * What the rows of a database must hold and what a context on it must show and save, in the plainest words: every
 * operation looks at every object. Objects are numbered. Each operation is told to the model before it is done, since
 * the model reads the contents and the links of the objects as they are then.
 */
class ContextModel
{
public:
    enum class Row { NotAsked, Present, Gone };
    enum class Place { Attached, SetAside, Detached };
    struct Known
    {
        Row row = Row::NotAsked;
        Place place = Place::Attached;
        EntityState mark = QOR::Entities::Enumerations::Normal;
        bool isHidden = false;   ///< The row has the mark, and the object does not show it.
        bool isChanged = false;  ///< The next save has to look at it,
        bool hasContent = false; ///< and to write it.
        bool isReferredOnly = false;
    };
    struct Item
    {
        Object object; ///< Null until what was loaded has been found.
        int kind = 0;
        QUuid id;
        EntityState state = QOR::Entities::Enumerations::New;
        int version = 0; ///< Which write the object is from; 0 for none.
        bool isRefused = false;
        bool isKnown = false;
        Known known;
    };
    struct StoredRow
    {
        int kind;
        Content content;
        EntityState mark;
        int version;
    };

    explicit ContextModel(const ModelFamily& family)
        : m_family(family)
    {}

    std::vector<Item> items;
    std::map<QUuid, StoredRow> rows;
    std::set<int> brokenKinds;
    bool isLoaded = false;
    bool hasLoadFailed = false;

    int add(const Object& object, int kind);
    int itemOf(const Object& object) const;
    void attach(int item);
    void detach(int item);
    /// An object was touched; whether its content has another value.
    void touched(int item, bool isOfContent);
    void idChanged(int item);
    void writeBeside(const QUuid& id, const Content& content);
    void reload();
    void reopen();
    void loadFiles(const QUuid& report);
    /// False when nothing is imported.
    bool import(const std::vector<int>& fresh);
    /// Whether everything could be stored.
    bool save();

    /// The first difference from what the context shows, and its database holds; empty when there is none. Finds the
    /// objects that a load has made.
    QString difference();

private:
    QString bind();
    QString differentRows(int kind);
    unsigned int count() const;
    std::set<QUuid> shown(int kind) const;
    int filed(int kind, const QUuid& id) const;
    void adopt(int item);
    bool tryToFile(int item);
    void forget(int item);
    void take(const QUuid& id, const StoredRow& row, bool replaces);
    void load(int kind);
    void adoptLinked();
    void adoptLinked(int item, bool isReferredOnly, std::vector<int>& open);
    EntityState markToWrite(const Item& item) const;
    bool mustBeWritten(const Item& item) const;
    bool hasUnsavedChanges(const Item& item) const { return item.known.isChanged && mustBeWritten(item); }
    bool noteRow(Item& item, const StoredRow& row) const;
    void saveKind(int kind, const std::vector<int>& candidates, std::set<int>& failed);
    void write(const std::vector<int>& batch, bool isInsert, std::set<int>& failed);
    void settle(Item& item) const;

    const ModelFamily& m_family;
    std::set<int> m_filed;
    int m_clock = 0;
    /// When each row was written last, and by which write.
    std::map<QUuid, std::pair<int, QDateTime>> m_stamps;
};

} // namespace TestSupport
