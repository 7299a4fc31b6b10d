#include "repositories/pd/PdFileRepository.h"

#include "repositories/private/EntityJobs.h"
#include "repositories/private/LoadedContent.h"
#include "repositories/private/TableMapping.h"

#include <algorithm>
#include <limits>
#include <tuple>
#include <utility>

namespace DataAccess::Repositories {

using Interfaces::IDatabase;
using Interfaces::IValueConverter;
using PD::Entities::PdFile;

namespace {

const QString s_table = QStringLiteral("pd_file");

/// Each select of files by their reports passes all rows of the table, so there should be few; but SQLite has a limit
/// for the length of a statement, a million bytes, and an id takes about forty.
constexpr std::size_t s_idsAtOnce = 10000;

QString columnList(bool withoutContent)
{
    const QStringList columns = {QStringLiteral("id"),
                                 QStringLiteral("name"),
                                 withoutContent ? QStringLiteral("'' AS data") : QStringLiteral("data"),
                                 withoutContent ? QStringLiteral("'' AS hash") : QStringLiteral("hash"),
                                 QStringLiteral("report"),
                                 QStringLiteral("timestamp"),
                                 QStringLiteral("deleted"),
                                 QStringLiteral("snap")};
    return columns.join(QStringLiteral(", "));
}

/// The order in which the files of one report are preferred.
bool isPreferred(const std::shared_ptr<PdFile>& left, const std::shared_ptr<PdFile>& right)
{
    const auto rank = [](const PdFile& file) {
        const bool deleted = file.EntityState() == QOR::Entities::Enumerations::Deleted;
        const QDateTime& written = file.Timestamp();
        const qint64 age = written.isValid() ? -written.toMSecsSinceEpoch() : std::numeric_limits<qint64>::max();
        return std::make_tuple(deleted, age, file.Name(), file.Id());
    };
    return rank(*left) < rank(*right);
}

struct PdFileTable : EntityTable
{
    using Entity = PdFile;
    static constexpr char getAll[] = "SELECT %1 FROM %2";
    static constexpr char getById[] =
        "SELECT id, name, data, hash, report, timestamp, deleted, snap FROM %1 WHERE id = '%2'";
    static constexpr char insert[] =
        "INSERT INTO %1(id, name, data, hash, report, snap, deleted, timestamp) VALUES (:id, :name, :data, :hash, :report, :snap, :deleted, :timestamp)";
    static constexpr char update[] =
        R"(UPDATE %1 SET "name" = :name, "data" = :data, "hash" = :hash, "report" = :report, "deleted" = :deleted, "snap" = :snap, "timestamp" = :timestamp WHERE id = :id)";
    static constexpr std::tuple columns = {column<&PdFile::Name>("name"), column<&PdFile::File>("data"),
                                           column<&PdFile::Hash>("hash"), column<&PdFile::ReportId>("report")};
};

class PdFileMapping final : public TableMapping<PdFileTable>
{
public:
    void read(const IValueConverter& row, const std::shared_ptr<PdFile>& entity) const override
    {
        TableMapping::read(row, entity);
        readLazy(row, *entity);
        // A hash without content is that of a file that was empty when it was stored.
        if (!entity->File().isEmpty() || !entity->Hash().isEmpty())
            m_loaded.add(entity);
    }

    void bindStored(IDatabase& db, IValueConverter& values, const std::shared_ptr<PdFile>& entity) const override
    {
        if (!entity->File().isEmpty() || m_loaded.contains(entity))
            return;
        QSqlQuery query = LoadedContent<PdFile>::selectForUpdate(
            db, QStringLiteral("SELECT data, hash FROM %1 WHERE id = '%2'").arg(s_table, entity->Id().toString()));
        if (!query.next())
            return;
        LoadedContent<PdFile>::bindStored(db, values, QStringLiteral(":data"), query, 0);
        if (entity->Hash().isEmpty())
            LoadedContent<PdFile>::bindStored(db, values, QStringLiteral(":hash"), query, 1);
    }

    bool usesConnection() const override { return true; }

    void written(const std::shared_ptr<PdFile>& entity) const override
    {
        if (!entity->File().isEmpty())
            m_loaded.add(entity);
    }

private:
    mutable LoadedContent<PdFile> m_loaded;
};

} // namespace

PdFileRepository::PdFileRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                                   const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent)
    : EntityRepository(worker, s_table, strategy, manager, std::make_shared<PdFileMapping>(), parent)
{}

PdFileRepository::~PdFileRepository() = default;

Database::Task<PdFileRepository::Entities>* PdFileRepository::GetAllAsync()
{
    return GetAllAsync(false);
}

Database::Task<PdFileRepository::Entities>* PdFileRepository::GetAllAsync(bool withoutContent)
{
    const Statements& statements = mapping()->statements();
    auto statement = [text = statements.getAll.arg(columnList(withoutContent), table())](IDatabase&) { return text; };
    return getRows(std::move(statement), statements.bookkeeping, Q_FUNC_INFO);
}

PdFileRepository::Entities PdFileRepository::GetAll(bool withoutContent)
{
    return wait(GetAllAsync(withoutContent));
}

Database::Task<PdFileRepository::Entities>* PdFileRepository::GetByReportIdAsync(const std::vector<QUuid>& reportIds,
                                                                                 bool withoutContent)
{
    return submit<Entities>(getRecordsByIdFunction(reportIds, withoutContent));
}

PdFileRepository::Entities PdFileRepository::GetByReportId(const std::vector<QUuid>& reportIds, bool withoutContent)
{
    return wait(GetByReportIdAsync(reportIds, withoutContent));
}

Database::Task<std::shared_ptr<PdFile>>* PdFileRepository::GetByReportIdAsync(QUuid reportId, bool withoutContent)
{
    // Without their content, since only that of one file is needed.
    return submit<std::shared_ptr<PdFile>>([table = table(), mapping = mapping(),
                                            candidates = getRecordsByIdFunction({reportId}, true), withoutContent,
                                            function = Q_FUNC_INFO](IDatabase& db) {
        const Entities files = candidates(db);
        const auto preferred = std::min_element(files.begin(), files.end(), isPreferred);
        if (preferred == files.end())
            return std::shared_ptr<PdFile>();
        return withoutContent ? *preferred : EntityRows::readById(db, table, preferred.key(), *mapping, function);
    });
}

std::shared_ptr<PdFile> PdFileRepository::GetByReportId(QUuid reportId, bool withoutContent)
{
    return wait(GetByReportIdAsync(reportId, withoutContent));
}

std::function<PdFileRepository::Entities(IDatabase&)>
PdFileRepository::getRecordsByIdFunction(const std::vector<QUuid>& reportIds, bool withoutContent) const
{
    std::vector<QUuid> distinct = reportIds;
    std::sort(distinct.begin(), distinct.end());
    distinct.erase(std::unique(distinct.begin(), distinct.end()), distinct.end());

    QStringList statements;
    for (std::size_t first = 0; first < distinct.size(); first += s_idsAtOnce) {
        QStringList ids;
        for (std::size_t i = first; i < std::min(first + s_idsAtOnce, distinct.size()); ++i)
            ids.append(QStringLiteral("'%1'").arg(distinct[i].toString()));
        statements.append(QStringLiteral("SELECT %1 FROM %2 WHERE report IN (%3)")
                              .arg(columnList(withoutContent), table(), ids.join(QLatin1Char(','))));
    }
    return [table = table(), mapping = mapping(), statements, function = Q_FUNC_INFO](IDatabase& db) {
        const auto all = [&](IDatabase&) { return statements; };
        const Database::Operation operation(function, table);
        return EntityRows::byId(EntityRows::read(db, all, *mapping, mapping->statements().bookkeeping, operation),
                                *mapping);
    };
}

template class EntityRepository<PD::Entities::PdFile>;

} // namespace DataAccess::Repositories
