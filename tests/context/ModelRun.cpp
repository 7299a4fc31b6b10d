#include "context/ModelRun.h"

#include "context/SampleNetwork.h"
#include "entities/cables/Cable.h"
#include "entities/cables/Owner.h"

#include <QSignalSpy>
#include <QThread>

#include <random>

namespace TestSupport {

using namespace QOR::Entities::Enumerations;
using DataAccess::Context::AbstractContext;

namespace {

/// What an observer of an object is told of, as it was before a step.
struct Look
{
    Content content;
    QUuid id;
    Object parent;
    std::vector<Object> children;
    EntityState state;
};

class ModelRun
{
public:
    explicit ModelRun(ModelFamily& family)
        : m_family(family)
        , m_model(family)
    {
        m_family.reopen(true);
    }
    ~ModelRun() { mendAll(); }
    ModelRun(const ModelRun&) = delete;
    ModelRun& operator=(const ModelRun&) = delete;

    QString run(const ModelStep& step);

private:
    using Item = ContextModel::Item;

    const ModelKind& kindOf(const Item& item) const { return m_family.kinds[size_t(item.kind)]; }
    int pick(int number) const;
    static QUuid idOf(int kind, int number) { return sampleId(QStringLiteral("model %1 %2").arg(kind).arg(number)); }

    void make(int kind, int id);
    void edit(int item, int number);
    void link(int item, int number);
    void setId(int item, int number);
    void writeBeside(int number);
    void removeBeside(int number);
    void breakOrMend(int kind);
    void mendAll();
    QString save();
    QString reload();
    void loadMore(int item);
    void import();

    std::vector<Look> look() const;
    void noteTouched(const std::vector<Look>& before);
    QString bind();
    QString difference();
    QString differentRows(int kind);

    ModelFamily& m_family;
    ContextModel m_model;
    /// When each row was written last, and by which write.
    std::map<QUuid, std::pair<int, QDateTime>> m_stamps;
    int m_texts = 0;
    int m_imports = 0;
};

/// Rather one of the objects that the context knows.
int ModelRun::pick(int number) const
{
    std::vector<int> known;
    for (size_t i = 0; i < m_model.items.size(); ++i) {
        if (m_model.items[i].isKnown)
            known.push_back(int(i));
    }
    if (number % 4 != 0 && !known.empty())
        return known[size_t(number) % known.size()];
    return m_model.items.empty() ? -1 : number % int(m_model.items.size());
}

void ModelRun::make(int kind, int id)
{
    kind %= int(m_family.kinds.size());
    const Object object = m_family.kinds[size_t(kind)].make();
    // Few ids, so that they meet; none now and then.
    if (id % 6 != 0)
        object->SetId(idOf(kind, id % 6));
    m_family.kinds[size_t(kind)].setText(object, ++m_texts);
    m_model.add(object, kind);
}

void ModelRun::edit(int item, int number)
{
    kindOf(m_model.items[size_t(item)]).setText(m_model.items[size_t(item)].object, number % 12 == 0 ? -1 : ++m_texts);
}

void ModelRun::link(int item, int number)
{
    const Item& child = m_model.items[size_t(item)];
    std::vector<Object> parents = {nullptr};
    for (const Item& each : m_model.items) {
        if (each.kind == child.kind - 1)
            parents.push_back(each.object);
    }
    kindOf(child).setParent(child.object, parents[size_t(number) % parents.size()]);
}

void ModelRun::setId(int number, int id)
{
    Item& item = m_model.items[size_t(number)];
    if (!item.id.isNull())
        return;
    item.id = idOf(item.kind, 1 + id % 5);
    item.object->SetId(item.id);
    m_model.idArrived(number);
}

void ModelRun::writeBeside(int number)
{
    if (m_model.rows.empty())
        return;
    const auto row = std::next(m_model.rows.begin(), number % int(m_model.rows.size()));
    if (m_model.brokenKinds.count(row->second.kind) > 0)
        return;
    const ModelKind& kind = m_family.kinds[size_t(row->second.kind)];
    for (const Object& object : kind.rows()) {
        if (object->Id() != row->first)
            continue;
        kind.setText(object, ++m_texts);
        kind.update(object);
        m_model.writeBeside(row->first, kind.content(object));
    }
}

void ModelRun::removeBeside(int number)
{
    if (m_model.rows.empty())
        return;
    const auto row = std::next(m_model.rows.begin(), number % int(m_model.rows.size()));
    if (m_model.brokenKinds.count(row->second.kind) > 0)
        return;
    const ModelKind& kind = m_family.kinds[size_t(row->second.kind)];
    for (const Object& object : kind.rows()) {
        if (object->Id() == row->first)
            kind.remove(object);
    }
    m_model.rows.erase(row);
}

void ModelRun::breakOrMend(int kind)
{
    kind %= int(m_family.kinds.size());
    const QString table = QLatin1String(m_family.kinds[size_t(kind)].table);
    const bool isBroken = m_model.brokenKinds.erase(kind) > 0;
    m_family.run(QStringLiteral("ALTER TABLE %1 RENAME TO %2")
                     .arg(isBroken ? table + QStringLiteral("_away") : table,
                          isBroken ? table : table + QStringLiteral("_away")));
    if (!isBroken)
        m_model.brokenKinds.insert(kind);
}

void ModelRun::mendAll()
{
    const std::set<int> broken = m_model.brokenKinds;
    for (const int kind : broken)
        breakOrMend(kind);
}

QString ModelRun::save()
{
    const QSignalSpy failed(&m_family.context(), &AbstractContext::savingFailed);
    const QSignalSpy completed(&m_family.context(), &AbstractContext::savingCompleted);
    const bool isSaved = m_model.save();
    m_family.context().saveChanges();
    if (completed.count() != 1 || failed.isEmpty() != isSaved)
        return isSaved ? QStringLiteral("saving failed") : QStringLiteral("saving did not fail");
    return {};
}

QString ModelRun::reload()
{
    const QSignalSpy failed(&m_family.context(), &AbstractContext::loadingFailed);
    m_model.reload();
    m_family.context().reload();
    if (failed.isEmpty() == m_model.hasLoadFailed)
        return m_model.hasLoadFailed ? QStringLiteral("loading did not fail") : QStringLiteral("loading failed");
    return {};
}

void ModelRun::loadMore(int number)
{
    if (!m_family.hasFiles) {
        import();
        return;
    }
    const Item& item = m_model.items[size_t(number)];
    if (item.kind != 1 || item.id.isNull())
        return;
    m_model.loadFiles(item.id);
    m_family.loadMore(item.object);
}

/// Imports a cable that is not here, with an owner that is not here.
void ModelRun::import()
{
    using namespace Cables::Entities;
    const auto cable = std::make_shared<Cable>();
    const auto owner = std::make_shared<Owner>();
    cable->SetId(sampleId(QStringLiteral("imported cable %1").arg(++m_imports)));
    owner->SetId(sampleId(QStringLiteral("imported owner %1").arg(m_imports)));
    owner->SetName(QStringLiteral("imported %1").arg(m_imports));
    cable->SetOwner(owner);
    const int ownerItem = m_model.add(nullptr, 0);
    const int cableItem = m_model.add(nullptr, 1);
    m_model.items[size_t(ownerItem)].id = owner->Id();
    m_model.items[size_t(cableItem)].id = cable->Id();
    if (!m_model.import({ownerItem, cableItem}))
        m_model.items.resize(size_t(ownerItem));
    m_family.loadMore(cable);
}

std::vector<Look> ModelRun::look() const
{
    std::vector<Look> looks;
    for (const Item& item : m_model.items) {
        const ModelKind& kind = kindOf(item);
        looks.push_back({kind.content(item.object), item.object->Id(), kind.parent(item.object),
                         kind.children(item.object), item.object->EntityState()});
    }
    return looks;
}

void ModelRun::noteTouched(const std::vector<Look>& before)
{
    const std::vector<Look> after = look();
    for (size_t i = 0; i < before.size(); ++i) {
        Item& item = m_model.items[i];
        const bool isOfContent = !(before[i].content == after[i].content);
        if (isOfContent && item.state == Normal)
            item.state = Modified;
        if (item.isKnown && (isOfContent || before[i].id != after[i].id || before[i].parent != after[i].parent ||
                             before[i].children != after[i].children || before[i].state != after[i].state))
            m_model.touched(int(i), isOfContent);
    }
}

QString ModelRun::run(const ModelStep& step)
{
    const int item = pick(step.first);
    const std::vector<Look> before = look();
    QString failure;
    if (step.name == QLatin1String("make"))
        make(step.first, step.second);
    else if (step.name == QLatin1String("save"))
        failure = save();
    else if (step.name == QLatin1String("reload"))
        failure = reload();
    else if (step.name == QLatin1String("reopen")) {
        m_model.reopen();
        m_family.reopen(false);
    } else if (step.name == QLatin1String("write"))
        writeBeside(step.first);
    else if (step.name == QLatin1String("remove"))
        removeBeside(step.first);
    else if (step.name == QLatin1String("break"))
        breakOrMend(step.first);
    else if (item < 0)
        return {};
    else if (step.name == QLatin1String("more"))
        loadMore(item);
    else {
        Item& chosen = m_model.items[size_t(item)];
        if (step.name == QLatin1String("attach")) {
            m_model.attach(item);
            m_family.context().attach(chosen.object);
        } else if (step.name == QLatin1String("detach")) {
            m_model.detach(item);
            m_family.context().detach(chosen.object);
        } else if (step.name == QLatin1String("edit")) {
            edit(item, step.second);
        } else if (step.name == QLatin1String("link")) {
            link(item, step.second);
        } else if (step.name == QLatin1String("id")) {
            setId(item, step.second);
        } else if (step.name == QLatin1String("state")) {
            constexpr EntityState states[] = {Deleted, Snapshot, New, Modified, Normal};
            chosen.state = states[step.second % 5];
            chosen.object->SetEntityState(chosen.state);
        }
        noteTouched(before);
    }
    // What is out of order is so for one of these operations.
    static const QStringList mending = {QStringLiteral("save"), QStringLiteral("reload"), QStringLiteral("more")};
    if (mending.contains(step.name))
        mendAll();
    // Two writes within a millisecond have one time stamp.
    QThread::msleep(2);
    if (failure.isEmpty())
        failure = bind();
    return failure.isEmpty() ? difference() : failure;
}

/// Finds the objects that a load made.
QString ModelRun::bind()
{
    for (size_t k = 0; k < m_family.kinds.size(); ++k) {
        for (const Object& object : m_family.kinds[k].shown()) {
            if (m_model.itemOf(object) >= 0)
                continue;
            const auto made = std::find_if(m_model.items.begin(), m_model.items.end(), [&](const Item& item) {
                return !item.object && item.kind == int(k) && item.id == object->Id();
            });
            if (made == m_model.items.end())
                return QStringLiteral("kind %1 shows an object that is not expected").arg(k);
            made->object = object;
        }
    }
    const auto isMissing = [](const Item& item) { return !item.object; };
    return std::any_of(m_model.items.begin(), m_model.items.end(), isMissing)
               ? QStringLiteral("an object was not loaded")
               : QString();
}

QString ModelRun::difference()
{
    for (size_t k = 0; k < m_family.kinds.size(); ++k) {
        std::set<QUuid> shown;
        for (const Object& object : m_family.kinds[k].shown()) {
            const int item = m_model.itemOf(object);
            if (item < 0 || !m_model.items[size_t(item)].isKnown)
                return QStringLiteral("kind %1 shows item %2, which is not known").arg(k).arg(item);
            shown.insert(object->Id());
        }
        if (shown != m_model.shown(int(k)))
            return QStringLiteral("kind %1 shows %2 objects, not %3")
                .arg(k)
                .arg(shown.size())
                .arg(m_model.shown(int(k)).size());
        const QString rows = differentRows(int(k));
        if (!rows.isEmpty())
            return rows;
    }
    for (size_t i = 0; i < m_model.items.size(); ++i) {
        const Item& item = m_model.items[i];
        if (item.object->EntityState() != item.state)
            return QStringLiteral("item %1 has state %2, not %3")
                .arg(i)
                .arg(item.object->EntityState())
                .arg(item.state);
    }
    const unsigned int others = m_model.isLoaded && !m_family.hasFiles ? 37 : 0;
    if (m_family.context().count() != m_model.count() + others)
        return QStringLiteral("%1 are attached, not %2").arg(m_family.context().count()).arg(m_model.count() + others);
    return {};
}

QString ModelRun::differentRows(int kind)
{
    if (m_model.brokenKinds.count(kind) > 0)
        return {};
    const ModelKind& of = m_family.kinds[size_t(kind)];
    std::map<QUuid, ContextModel::StoredRow> expected;
    for (const auto& [id, row] : m_model.rows) {
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
        const auto last = m_stamps.find(object->Id());
        if (last != m_stamps.end() &&
            (last->second.first == row->second.version) != (last->second.second == object->Timestamp()))
            return QStringLiteral("a row of kind %1 was written for nothing, or not at all").arg(kind);
        m_stamps[object->Id()] = {row->second.version, object->Timestamp()};
        expected.erase(row);
    }
    return expected.empty() ? QString() : QStringLiteral("kind %1 lacks a row").arg(kind);
}

} // namespace

ModelSteps randomSteps(unsigned int seed, int count)
{
    // How often each comes. A row that is missing and a text that cannot be stored do not come together: which of them
    // is met first in a batch is open.
    const QString common =
        QStringLiteral("make make attach attach attach edit edit edit edit state state state link link link detach id "
                       "save save save save save reload more more write break break reopen");
    QStringList names = common.split(QLatin1Char(' '));
    const bool hasRemovals = seed % 2 == 0;
    if (hasRemovals)
        names << QStringLiteral("remove") << QStringLiteral("remove");
    // The generator's numbers are fixed by the standard, those of the distributions are not.
    std::mt19937 numbers(seed);
    ModelSteps steps;
    for (int i = 0; i < count; ++i) {
        ModelStep step;
        step.name = names[int(numbers() % unsigned(names.size()))];
        step.first = int(numbers() % 1000);
        step.second = int(numbers() % 1000);
        if (hasRemovals && step.name == QLatin1String("edit") && step.second % 12 == 0)
            ++step.second;
        steps.push_back(step);
    }
    return steps;
}

ModelSteps stepsFromText(const QString& text)
{
    ModelSteps steps;
    for (const QString& line : text.split(QStringLiteral("; "))) {
        const QStringList words = line.split(QLatin1Char(' '));
        steps.push_back({words.value(0), words.value(1).toInt(), words.value(2).toInt()});
    }
    return steps;
}

QString textFromSteps(const ModelSteps& steps)
{
    QStringList lines;
    for (const ModelStep& step : steps)
        lines << QStringLiteral("%1 %2 %3").arg(step.name).arg(step.first).arg(step.second);
    return lines.join(QStringLiteral("; "));
}

QString runModel(ModelFamily& family, const ModelSteps& steps)
{
    ModelRun run(family);
    for (const ModelStep& step : steps) {
        const QString difference = run.run(step);
        if (!difference.isEmpty())
            return QStringLiteral("%1: %2").arg(step.name, difference);
    }
    return {};
}

ModelSteps shrunk(ModelFamily& family, ModelSteps steps)
{
    for (size_t length = steps.size() / 2; length > 0; length /= 2) {
        for (size_t from = 0; from + length <= steps.size();) {
            ModelSteps fewer = steps;
            fewer.erase(fewer.begin() + long(from), fewer.begin() + long(from + length));
            if (runModel(family, fewer).isEmpty())
                from += length;
            else
                steps = fewer;
        }
    }
    return steps;
}

} // namespace TestSupport
