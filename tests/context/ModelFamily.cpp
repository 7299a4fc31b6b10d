#include "context/ModelFamily.h"

#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PdReportRepository.h"
#include "repositories/pd/PdTaskRepository.h"

using namespace Cables::Entities;
using namespace PD::Entities;

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

/// The operations that all kinds have alike; @p repository and @p shown are called for each, and the text that is
/// compared is what @p text gives, and @p setText sets.
template <typename T, typename RepositoryOf, typename Shown, typename Text, typename SetText>
ModelKind makeKind(const char* table, const RepositoryOf& repository, const Shown& shown, Text text, SetText setText)
{
    ModelKind kind;
    kind.table = table;
    kind.make = [] { return std::make_shared<T>(); };
    kind.content = [text](const Object& object) { return Content{textOf(std::invoke(text, *as<T>(object))), QUuid()}; };
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
    kind.shown = [shown] { return objectsOf(shown()); };
    kind.rows = [repository] { return objectsOf(repository()->GetAll()); };
    kind.update = [repository](const Object& row) { return repository()->Update({as<T>(row)}); };
    kind.remove = [repository](const Object& row) { return repository()->Remove({as<T>(row)}); };
    return kind;
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

class CableFamily final : public ModelFamily
{
public:
    CableFamily()
    {
        savingOrder = {0, 1, 2};
        loadedKinds = {0, 1, 2};
        reopen(false);
        kinds = {makeKind<Owner>(
                     "ce_owner", [this] { return m_manager->OwnerRepository(); },
                     [this] { return m_context->Owners(); }, &Owner::Name, &Owner::SetName),
                 makeKind<Cable>(
                     "ce_cable", [this] { return m_manager->CableRepository(); },
                     [this] { return m_context->Cables(); }, &Cable::Comment, &Cable::SetComment),
                 makeKind<Phase>(
                     "ce_phase", [this] { return m_manager->PhaseRepository(); },
                     [this] { return m_context->Phases(); }, &Phase::Index, &Phase::SetIndex)};
        addParent<Owner>(kinds[1], &Cable::OwnerId, &Cable::Owner, &Cable::SetOwner);
        addChildren(kinds[1], &Cable::Phases);
        addParent<Cable>(kinds[2], &Phase::CableId, &Phase::Cable, &Phase::SetCable);
    }

    DataAccess::Context::AbstractContext& context() const override { return *m_context; }

    void reopen(bool isEmptied) override
    {
        rebuild(isEmptied);
        m_manager = m_database.editorManager();
        m_context =
            std::make_shared<DataAccess::Context::CableContext>(DataAccess::Enumerations::Complete, m_manager, 0);
    }

    void loadMore(const Object& object) override { m_context->import({as<Cable>(object)}); }

private:
    std::shared_ptr<DataAccess::Manager::EditorRepositoryManager> m_manager;
    std::shared_ptr<DataAccess::Context::CableContext> m_context;
};

class PdFamily final : public ModelFamily
{
public:
    PdFamily()
    {
        savingOrder = {2, 1, 0};
        loadedKinds = {0, 1};
        hasFiles = true;
        reopen(false);
        kinds = {makeKind<PdTask>(
                     "pd_task", [this] { return m_manager->PdTaskRepository(); }, [this] { return m_context->Tasks(); },
                     &PdTask::Comment, &PdTask::SetComment),
                 makeKind<PdReport>(
                     "pd_report", [this] { return m_manager->PdReportRepository(); },
                     [this] { return m_context->Reports(); }, &PdReport::Recommentation, &PdReport::SetRecommentation),
                 makeKind<PdFile>(
                     "pd_file", [this] { return m_manager->PdFileRepository(); }, [this] { return m_context->Files(); },
                     &PdFile::Name, &PdFile::SetName)};
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

    DataAccess::Context::AbstractContext& context() const override { return *m_context; }

    void reopen(bool isEmptied) override
    {
        rebuild(isEmptied);
        m_manager = m_database.pdManager();
        m_context = std::make_shared<DataAccess::Context::PdContext>(DataAccess::Enumerations::Complete, m_manager, 0);
    }

    void loadMore(const Object& object) override { m_context->loadFiles({object->Id()}); }

private:
    std::shared_ptr<DataAccess::Manager::PdRepositoryManager> m_manager;
    std::shared_ptr<DataAccess::Context::PdContext> m_context;
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

void ModelFamily::rebuild(bool isEmptied)
{
    if (!isEmptied)
        return;
    for (const ModelKind& kind : kinds)
        run(QStringLiteral("DELETE FROM %1").arg(QLatin1String(kind.table)));
}

} // namespace TestSupport
