#include "context/ModelFamily.h"

#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PdReportRepository.h"
#include "repositories/pd/PlainRepositories.h"

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

/// The operations that all kinds have alike; @p repository and @p shown are called for each.
template <typename T, typename RepositoryOf, typename Shown>
ModelKind makeKind(const char* table, const RepositoryOf& repository, const Shown& shown)
{
    ModelKind kind;
    kind.table = table;
    kind.make = [] { return std::make_shared<T>(); };
    kind.setParent = [](const Object&, const Object&) {};
    kind.parent = [](const Object&) { return nullptr; };
    kind.children = [](const Object&) { return std::vector<Object>(); };
    kind.shown = [shown] { return objectsOf(shown()); };
    kind.rows = [repository] { return objectsOf(repository()->GetAll()); };
    kind.update = [repository](const Object& row) { return repository()->Update({as<T>(row)}); };
    kind.remove = [repository](const Object& row) { return repository()->Remove({as<T>(row)}); };
    return kind;
}

QString textOf(int number)
{
    // What no text may hold, so that it cannot be stored.
    return number < 0 ? QString(QChar(0xd800)) : QStringLiteral("text %1").arg(number);
}

class CableFamily final : public ModelFamily
{
public:
    CableFamily()
    {
        savingOrder = {0, 1, 2};
        loadedKinds = {0, 1, 2};
        reopen(false);
        ModelKind owner = makeKind<Owner>(
            "ce_owner", [this] { return m_manager->OwnerRepository(); }, [this] { return m_context->Owners(); });
        owner.content = [](const Object& object) { return Content{as<Owner>(object)->Name(), QUuid()}; };
        owner.setText = [](const Object& object, int text) { as<Owner>(object)->SetName(textOf(text)); };
        ModelKind cable = makeKind<Cable>(
            "ce_cable", [this] { return m_manager->CableRepository(); }, [this] { return m_context->Cables(); });
        cable.content = [](const Object& object) {
            return Content{as<Cable>(object)->Comment(), as<Cable>(object)->OwnerId()};
        };
        cable.setText = [](const Object& object, int text) { as<Cable>(object)->SetComment(textOf(text)); };
        cable.setParent = [](const Object& object, const Object& parent) {
            as<Cable>(object)->SetOwner(as<Owner>(parent));
        };
        cable.parent = [](const Object& object) { return toObject(as<Cable>(object)->Owner()); };
        cable.children = [](const Object& object) { return objectsOf(as<Cable>(object)->Phases()); };
        ModelKind phase = makeKind<Phase>(
            "ce_phase", [this] { return m_manager->PhaseRepository(); }, [this] { return m_context->Phases(); });
        phase.content = [](const Object& object) {
            return Content{QString::number(as<Phase>(object)->Index()), as<Phase>(object)->CableId()};
        };
        phase.setText = [](const Object& object, int text) { as<Phase>(object)->SetIndex(unsigned(qAbs(text))); };
        phase.setParent = [](const Object& object, const Object& parent) {
            as<Phase>(object)->SetCable(as<Cable>(parent));
        };
        phase.parent = [](const Object& object) { return toObject(as<Phase>(object)->Cable()); };
        kinds = {owner, cable, phase};
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
    template <typename Interface>
    static Object toObject(const std::shared_ptr<Interface>& object)
    {
        return std::dynamic_pointer_cast<QOR::Entities::Entity>(object);
    }

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
        ModelKind task = makeKind<PdTask>(
            "pd_task", [this] { return m_manager->PdTaskRepository(); }, [this] { return m_context->Tasks(); });
        task.content = [](const Object& object) { return Content{as<PdTask>(object)->Comment(), QUuid()}; };
        task.setText = [](const Object& object, int text) { as<PdTask>(object)->SetComment(textOf(text)); };
        task.children = [](const Object& object) { return objectsOf(as<PdTask>(object)->Reports()); };
        ModelKind report = makeKind<PdReport>(
            "pd_report", [this] { return m_manager->PdReportRepository(); }, [this] { return m_context->Reports(); });
        report.content = [](const Object& object) {
            return Content{as<PdReport>(object)->Recommentation(), as<PdReport>(object)->TaskId()};
        };
        report.setText = [](const Object& object, int text) { as<PdReport>(object)->SetRecommentation(textOf(text)); };
        report.setParent = [](const Object& object, const Object& parent) {
            as<PdReport>(object)->SetTask(as<PdTask>(parent));
        };
        report.parent = [](const Object& object) {
            return std::dynamic_pointer_cast<QOR::Entities::Entity>(as<PdReport>(object)->Task());
        };
        report.children = [](const Object& object) { return objectsOf(as<PdReport>(object)->Files()); };
        ModelKind file = makeKind<PdFile>(
            "pd_file", [this] { return m_manager->PdFileRepository(); }, [this] { return m_context->Files(); });
        file.make = [] {
            auto made = std::make_shared<PdFile>();
            made->SetFile("content");
            return made;
        };
        file.content = [](const Object& object) {
            return Content{as<PdFile>(object)->Name(), as<PdFile>(object)->ReportId()};
        };
        file.setText = [](const Object& object, int text) { as<PdFile>(object)->SetName(textOf(text)); };
        file.setParent = [](const Object& object, const Object& parent) {
            as<PdFile>(object)->SetReport(as<PdReport>(parent));
        };
        file.parent = [](const Object& object) {
            return std::dynamic_pointer_cast<QOR::Entities::Entity>(as<PdFile>(object)->Report());
        };
        kinds = {task, report, file};
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

ModelFamily::~ModelFamily() = default;

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
