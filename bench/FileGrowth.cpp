#include "bench/GrowingSizes.h"
#include "bench/Suites.h"
#include "context/CableContext.h"
#include "context/PdContext.h"
#include "facade/DataAccessFacade.h"
#include "manager/IRepositoryManager.h"

#include <QImage>
#include <QRandomGenerator>

namespace Bench {

namespace {

using Cables::Entities::Station;
using DataAccess::Enumerations::DatabaseType;
using PD::Entities::PdFile;
using PD::Entities::PdReport;

constexpr int s_repeats = 10;

/// Nothing that could be made smaller: 4 bytes for each of @p words.
QByteArray noise(int words)
{
    QByteArray bytes(4 * words, Qt::Uninitialized);
    QRandomGenerator(1).fillRange(reinterpret_cast<quint32*>(bytes.data()), words);
    return bytes;
}

std::shared_ptr<PdFile> makeFile(const QUuid& report, const QByteArray& content)
{
    auto file = std::make_shared<PdFile>();
    file->SetId(QUuid::createUuid());
    file->SetReportId(report);
    file->SetFile(content);
    return file;
}

std::shared_ptr<Station> makeStation(const QImage& image)
{
    auto station = std::make_shared<Station>();
    station->SetId(QUuid::createUuid());
    station->SetImage(image);
    return station;
}

/// Attaches @p count reports with a file of @p content each.
void addReports(DataAccess::Context::PdContext& context, int count, const QByteArray& content)
{
    for (int i = 0; i < count; ++i) {
        const auto report = std::make_shared<PdReport>();
        report->SetId(QUuid::createUuid());
        context.attach(report);
        context.attach(makeFile(report->Id(), content));
    }
}

/// Opens a new database, and calls @p work with its repositories.
template <typename Work>
void withDatabase(DatabaseType type, const Work& work)
{
    const TestSupport::TestDatabase database(type);
    const auto config = database.config();
    const auto facade = DataAccess::DataAccessFacade::Instance();
    work(*facade->AddDatabase(config));
    facade->RemoveDatabase(config);
}

void measureLoads(DatabaseType type, int reports, GrowingSizes& growth)
{
    withDatabase(type, [&](const DataAccess::Interfaces::IRepositoryManager& manager) {
        const auto context = manager.PdContext();
        addReports(*context, reports, noise(256));
        context->saveChanges();
        context->reload();
        growth.time("load the file of a report with all", reports, reports, [&] { context->loadFiles(); });
        const QUuid report = context->Reports().begin().key();
        growth.time("load the file of one report", reports, s_repeats, [&] {
            for (int i = 0; i < s_repeats; ++i)
                context->loadFiles({report});
        });
    });
}

void measureStores(DatabaseType type, int others, GrowingSizes& growth)
{
    withDatabase(type, [&](const DataAccess::Interfaces::IRepositoryManager& manager) {
        const auto reports = manager.PdContext();
        addReports(*reports, others, noise(65536));
        reports->saveChanges();
        const QUuid report = reports->Reports().begin().key();
        growth.time("store a small file beside large ones", others, s_repeats, [&] {
            for (int i = 0; i < s_repeats; ++i) {
                reports->attach(makeFile(report, noise(16)));
                reports->saveChanges();
            }
        });

        const auto network = manager.CableContext();
        const QByteArray pixels = noise(256 * 256);
        const QImage image(reinterpret_cast<const uchar*>(pixels.constData()), 256, 256, QImage::Format_RGB32);
        for (int i = 0; i < others; ++i)
            network->attach(makeStation(image));
        network->saveChanges();
        growth.time("store a small station beside large ones", others, s_repeats, [&] {
            for (int i = 0; i < s_repeats; ++i) {
                network->attach(makeStation({}));
                network->saveChanges();
            }
        });
    });
}

} // namespace

void measureFileGrowth(const Settings& settings, DatabaseType type, Report& report)
{
    GrowingSizes growth(type);
    for (const int reports : {50, 400})
        measureLoads(type, reports, growth);
    for (const int others : {settings.rows(100), settings.rows(1000)})
        measureStores(type, others, growth);
    growth.report(report);
}

} // namespace Bench
