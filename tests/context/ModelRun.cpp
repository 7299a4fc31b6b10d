#include "context/ModelRun.h"

#include "context/SampleNetwork.h"
#include "entities/cables/Cable.h"
#include "entities/cables/Owner.h"

#include <QSignalSpy>
#include <QThread>

#include <utility>

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
        m_family.empty();
    }
    ~ModelRun() { mendAll(); }
    ModelRun(const ModelRun&) = delete;
    ModelRun& operator=(const ModelRun&) = delete;

    QString run(const ModelStep& step);

private:
    using Item = ContextModel::Item;

    const ModelKind& kindOf(const Item& item) const { return m_family.kinds[size_t(item.kind)]; }
    int pick(const ModelStep& step) const;
    static QUuid idOf(int kind, int number) { return sampleId(QStringLiteral("model %1 %2").arg(kind).arg(number)); }

    void make(int kind, int id);
    void makeChild(int item, int id);
    void attach(int item);
    void detach(int item);
    void edit(int item, int number);
    void setState(int item, int number);
    void link(int item, int number);
    void setId(int item, int number);
    void changeBeside(int number, bool isRemoval);
    void breakOrMend(int kind);
    void mendAll();
    QString save();
    QString reload();
    void reopen();
    void loadMore(int item);
    void import();

    std::vector<Look> look() const;
    void noteTouched(const std::vector<Look>& before);

    ModelFamily& m_family;
    ContextModel m_model;
    std::unique_ptr<FileLocker> m_locker;
    int m_texts = 0;
    int m_imports = 0;
};

/// The object of a step: rather one that the context knows, except for links; one that has files, for loading these.
int ModelRun::pick(const ModelStep& step) const
{
    const bool hasFiles = m_family.hasFiles && step.name == QLatin1String("more");
    const bool prefersKnown = step.first % 4 != 0 && step.name != QLatin1String("link");
    std::vector<int> known;
    std::vector<int> all;
    for (size_t i = 0; i < m_model.items.size(); ++i) {
        if (hasFiles && m_model.items[i].kind != 1)
            continue;
        all.push_back(int(i));
        if (m_model.items[i].isKnown)
            known.push_back(int(i));
    }
    const std::vector<int>& chosen = prefersKnown && !known.empty() ? known : all;
    return chosen.empty() ? -1 : chosen[size_t(step.first) % chosen.size()];
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

/// Makes an object that refers to another one, and is not attached.
void ModelRun::makeChild(int number, int id)
{
    const Item parent = m_model.items[size_t(number)];
    if (parent.kind + 1 == int(m_family.kinds.size()))
        return;
    make(parent.kind + 1, id);
    kindOf(m_model.items.back()).setParent(m_model.items.back().object, parent.object);
}

void ModelRun::attach(int item)
{
    m_model.attach(item);
    m_family.context().attach(m_model.items[size_t(item)].object);
}

void ModelRun::detach(int item)
{
    m_model.detach(item);
    m_family.context().detach(m_model.items[size_t(item)].object);
}

void ModelRun::setState(int number, int state)
{
    constexpr EntityState states[] = {Deleted, Snapshot, New, Modified, Normal};
    Item& item = m_model.items[size_t(number)];
    item.state = states[state % 5];
    item.object->SetEntityState(item.state);
}

void ModelRun::reopen()
{
    m_model.reopen();
    m_family.reopen();
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
    const QUuid former = item.id;
    item.id = idOf(item.kind, 1 + id % 5);
    item.object->SetId(item.id);
    if (item.id != former)
        m_model.idChanged(number);
}

/// Another program writes a row, or removes it.
void ModelRun::changeBeside(int number, bool isRemoval)
{
    if (m_model.rows.empty())
        return;
    const auto row = std::next(m_model.rows.begin(), number % int(m_model.rows.size()));
    if (m_model.brokenKinds.count(row->second.kind) > 0)
        return;
    const ModelKind& kind = m_family.kinds[size_t(row->second.kind)];
    const std::vector<Object> rows = kind.rows();
    const Object object =
        *std::find_if(rows.begin(), rows.end(), [&](const Object& each) { return each->Id() == row->first; });
    if (isRemoval) {
        kind.remove(object);
        m_model.rows.erase(row);
    } else {
        kind.setText(object, ++m_texts);
        kind.update(object);
        m_model.writeBeside(row->first, kind.content(object));
    }
}

/// Takes a table away, or gives it back; or lets another program lock everything.
void ModelRun::breakOrMend(int kind)
{
    kind %= int(m_family.kinds.size()) + 1;
    const bool isLock = kind == int(m_family.kinds.size());
    if (isLock || m_locker)
        mendAll();
    if (isLock)
        m_locker = m_family.lock();
    if (m_locker)
        m_model.brokenKinds = {0, 1, 2};
    if (isLock)
        return;
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
    if (std::exchange(m_locker, nullptr))
        m_model.brokenKinds.clear();
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
    if (!m_family.hasFiles)
        import();
    if (!m_family.hasFiles || number < 0)
        return;
    const Object report = m_model.items[size_t(number)].object;
    if (report->Id().isNull())
        return;
    m_model.loadFiles(report->Id());
    m_family.loadMore(report);
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
    const int item = pick(step);
    const std::vector<Look> before = look();
    QString failure;
    const std::map<QString, std::function<void()>> general = {
        {QStringLiteral("make"), [&] { make(step.first, step.second); }},
        {QStringLiteral("save"), [&] { failure = save(); }},
        {QStringLiteral("reload"), [&] { failure = reload(); }},
        {QStringLiteral("reopen"), [&] { reopen(); }},
        {QStringLiteral("write"), [&] { changeBeside(step.first, false); }},
        {QStringLiteral("remove"), [&] { changeBeside(step.first, true); }},
        {QStringLiteral("break"), [&] { breakOrMend(step.first); }},
        {QStringLiteral("more"), [&] { loadMore(item); }}};
    const std::map<QString, std::function<void()>> ofAnItem = {
        {QStringLiteral("attach"), [&] { attach(item); }},
        {QStringLiteral("detach"), [&] { detach(item); }},
        {QStringLiteral("child"), [&] { makeChild(item, step.second); }},
        {QStringLiteral("edit"), [&] { edit(item, step.second); }},
        {QStringLiteral("link"), [&] { link(item, step.second); }},
        {QStringLiteral("id"), [&] { setId(item, step.second); }},
        {QStringLiteral("state"), [&] { setState(item, step.second); }}};
    const auto found = general.find(step.name);
    if (found != general.end()) {
        found->second();
    } else if (item >= 0) {
        ofAnItem.at(step.name)();
        noteTouched(before);
    }
    // What is out of order is so for one of these operations.
    static const QStringList mending = {QStringLiteral("save"), QStringLiteral("reload"), QStringLiteral("more")};
    if (mending.contains(step.name))
        mendAll();
    // Two writes within a millisecond have one time stamp.
    QThread::msleep(2);
    return failure.isEmpty() ? m_model.difference() : failure;
}

} // namespace

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

} // namespace TestSupport
