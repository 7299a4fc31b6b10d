#include "context/ModelFamily.h"

#include "manager/private/Kinds.h"

#include <functional>

using namespace Cables::Entities;
using namespace PD::Entities;
using DataAccess::Context::CableContext;
using DataAccess::Context::PdContext;

namespace TestSupport {

namespace {

template <typename T>
std::shared_ptr<T> as(const Object& object)
{
    return std::dynamic_pointer_cast<T>(object);
}

template <typename List>
std::vector<Object> objectsOf(const List& entities)
{
    std::vector<Object> objects;
    for (const auto& entity : entities)
        objects.push_back(std::dynamic_pointer_cast<QOR::Entities::Entity>(entity));
    return objects;
}

QString textOf(const QString& text)
{
    return text;
}

QString textOf(unsigned int number)
{
    return QString::number(number);
}

/// Adds a reference to a @p Parent.
template <typename Parent, typename T, typename Interface, typename SetParent>
void addParent(ModelKind& kind, const QUuid& (T::*id)() const, std::shared_ptr<Interface> (T::*parent)() const,
               SetParent setParent)
{
    kind.content = [id, content = kind.content](const Object& object) {
        return Content{content(object).text, ((*as<T>(object)).*id)()};
    };
    kind.parent = [parent](const Object& object) {
        return std::dynamic_pointer_cast<QOR::Entities::Entity>(((*as<T>(object)).*parent)());
    };
    kind.setParent = [setParent](const Object& object, const Object& other) {
        std::invoke(setParent, *as<T>(object), as<Parent>(other));
    };
}

/// Adds a list of what a kind owns.
template <typename T, typename List>
void addChildren(ModelKind& kind, List (T::*children)() const)
{
    kind.children = [children](const Object& object) { return objectsOf(((*as<T>(object)).*children)()); };
}

/// A family with a @p Context, on a manager of @p kindsOf that @p makeManager makes.
template <typename Context, auto makeManager, const auto& kindsOf>
class FamilyOf : public ModelFamily
{
public:
    DataAccess::Context::AbstractContext& context() const override { return *m_context; }

    void reopen() override
    {
        m_manager = (m_database.*makeManager)();
        m_context = std::make_shared<Context>(DataAccess::Enumerations::Complete, m_manager, 0);
    }

protected:
    FamilyOf() { FamilyOf::reopen(); }

    /// The operations that all kinds have alike; @p shown gives what the context shows, and the text that is compared
    /// is what @p text gives, and @p setText sets.
    template <typename T, typename Shown, typename Text, typename SetText>
    ModelKind makeKind(const char* table, Shown shown, Text text, SetText setText)
    {
        const auto repository = [this] { return ((*m_manager).*DataAccess::Manager::kindOf<T>(kindsOf).repository)(); };
        ModelKind kind;
        kind.table = table;
        kind.make = [] { return std::make_shared<T>(); };
        kind.content = [text](const Object& object) { return Content{textOf(((*as<T>(object)).*text)()), QUuid()}; };
        kind.setText = [setText](const Object& object, int number) {
            if constexpr (std::is_invocable_v<SetText, T&, QString>)
                // What no text may hold, so that it cannot be stored.
                std::invoke(setText, *as<T>(object),
                            number < 0 ? QString(QChar(0xd800)) : QStringLiteral("text %1").arg(number));
            else
                std::invoke(setText, *as<T>(object), unsigned(qAbs(number)));
        };
        kind.setParent = [](const Object&, const Object&) {};
        kind.parent = [](const Object&) { return nullptr; };
        kind.children = [](const Object&) { return std::vector<Object>(); };
        kind.shown = [this, shown] { return objectsOf(((*m_context).*shown)()); };
        kind.rows = [repository] { return objectsOf(repository()->GetAll()); };
        kind.update = [repository](const Object& row) { return repository()->Update({as<T>(row)}); };
        kind.remove = [repository](const Object& row) { return repository()->Remove({as<T>(row)}); };
        return kind;
    }

    decltype((std::declval<ContextDatabase&>().*makeManager)()) m_manager;
    std::shared_ptr<Context> m_context;
};

class CableFamily final
    : public FamilyOf<CableContext, &ContextDatabase::editorManager, DataAccess::Manager::editorKinds>
{
public:
    CableFamily()
    {
        savingOrder = {0, 1, 2};
        loadedKinds = {0, 1, 2};
        kinds = {makeKind<Owner>("ce_owner", &CableContext::Owners, &Owner::Name, &Owner::SetName),
                 makeKind<Cable>("ce_cable", &CableContext::Cables, &Cable::Comment, &Cable::SetComment),
                 makeKind<Phase>("ce_phase", &CableContext::Phases, &Phase::Index, &Phase::SetIndex)};
        addParent<Owner>(kinds[1], &Cable::OwnerId, &Cable::Owner, &Cable::SetOwner);
        addChildren(kinds[1], &Cable::Phases);
        addParent<Cable>(kinds[2], &Phase::CableId, &Phase::Cable, &Phase::SetCable);
    }

    void loadMore(const Object& object) override { m_context->import({as<Cable>(object)}); }
};

class PdFamily final : public FamilyOf<PdContext, &ContextDatabase::pdManager, DataAccess::Manager::pdKinds>
{
public:
    PdFamily()
    {
        savingOrder = {2, 1, 0};
        loadedKinds = {0, 1};
        hasFiles = true;
        kinds = {makeKind<PdTask>("pd_task", &PdContext::Tasks, &PdTask::Comment, &PdTask::SetComment),
                 makeKind<PdReport>("pd_report", &PdContext::Reports, &PdReport::Recommentation,
                                    &PdReport::SetRecommentation),
                 makeKind<PdFile>("pd_file", &PdContext::Files, &PdFile::Name, &PdFile::SetName)};
        addChildren(kinds[0], &PdTask::Reports);
        addParent<PdTask>(kinds[1], &PdReport::TaskId, &PdReport::Task, &PdReport::SetTask);
        addChildren(kinds[1], &PdReport::Files);
        addParent<PdReport>(kinds[2], &PdFile::ReportId, &PdFile::Report, &PdFile::SetReport);
        kinds[2].make = [] {
            auto made = std::make_shared<PdFile>();
            made->SetFile("content");
            return made;
        };
    }

    void loadMore(const Object& object) override { m_context->loadFiles({object->Id()}); }
};

} // namespace

ModelFamily::ModelFamily()
{
    // Locks are met on purpose, and nobody lets go of them meanwhile.
    if (m_database.type() == DataAccess::Enumerations::SQLite3)
        run(QStringLiteral("PRAGMA busy_timeout = 1"));
}

ModelFamily::~ModelFamily() = default;

std::unique_ptr<FileLocker> ModelFamily::lock()
{
    return m_database.type() == DataAccess::Enumerations::SQLite3 ? std::make_unique<FileLocker>(m_database.name())
                                                                  : nullptr;
}

std::unique_ptr<ModelFamily> ModelFamily::make(bool isPd)
{
    if (isPd)
        return std::make_unique<PdFamily>();
    return std::make_unique<CableFamily>();
}

void ModelFamily::run(const QString& statement)
{
    m_database.worker().run([&](DataAccess::Interfaces::IDatabase& db) { db.Exec(statement); });
}

void ModelFamily::empty()
{
    for (const ModelKind& kind : kinds)
        run(QStringLiteral("DELETE FROM %1").arg(QLatin1String(kind.table)));
    reopen();
}

} // namespace TestSupport
