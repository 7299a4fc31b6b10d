#include "MeasurementPrinter.h"

#include "manager/PdRepositoryManager.h"
#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PdIecOverviewRepository.h"
#include "repositories/pd/PdMappingEventRepository.h"
#include "repositories/pd/PdReportRepository.h"
#include "repositories/pd/PdSummaryReporsitory.h"
#include "repositories/pd/PdTaskRepository.h"

#include <algorithm>

using namespace PD::Entities;

namespace {

/// The parts of @p report among @p parts, by phase.
template <typename T>
std::vector<std::shared_ptr<T>> partsOf(const QUuid& report, const QHash<QUuid, std::shared_ptr<T>>& parts)
{
    std::vector<std::shared_ptr<T>> found;
    for (const auto& part : parts) {
        if (part->reportId() == report)
            found.push_back(part);
    }
    std::sort(found.begin(), found.end(),
              [](const auto& left, const auto& right) { return left->phaseIndex() < right->phaseIndex(); });
    return found;
}

QString kilovolts(double volts)
{
    return QStringLiteral("%1 kV").arg(volts / 1e3, 0, 'f', 1);
}

QString picocoulombs(double coulombs)
{
    return QStringLiteral("%1 pC").arg(coulombs * 1e12, 0, 'f', 0);
}

} // namespace

void printMeasurements(DataAccess::Manager::PdRepositoryManager& manager, QTextStream& out)
{
    const auto reports = manager.PdReportRepository()->GetAll();
    const auto overviews = manager.PdIecOverviewRepository()->GetAll();
    const auto events = manager.PdMappingEventRepository()->GetAll();
    const auto summaries = manager.PdSummaryRepository()->GetAll();
    for (const auto& task : manager.PdTaskRepository()->GetAll()) {
        out << "Partial-discharge test of " << task->CreationDate().toString(Qt::ISODate) << " by " << task->Tester()
            << ", devices: " << task->Devices().join(QStringLiteral(", ")) << '\n';
        for (const auto& report : reports) {
            if (report->TaskId() != task->Id())
                continue;
            out << "  Report of " << report->CreationTimestamp().toString(Qt::ISODate) << ": "
                << partsOf(report->Id(), events).size() << " events, filters: " << report->Filter().size() << '\n';
            for (const auto& file : manager.PdFileRepository()->GetByReportId(std::vector<QUuid>{report->Id()}, false))
                out << "    File " << file->Name() << ": " << file->File().size() << " bytes\n";
            for (const auto& overview : partsOf(report->Id(), overviews)) {
                out << "    Phase " << overview->phaseIndex() + 1 << ": PDIV " << kilovolts(overview->pdivVoltage())
                    << ", PDEV " << kilovolts(overview->pdevVoltage()) << ", at most "
                    << picocoulombs(overview->maxChargeAtVoltage(20e3)) << " at 20.0 kV\n";
            }
            for (const auto& summary : summaries) {
                if (summary->reportId() == report->Id())
                    out << "    Summary: " << kilovolts(summary->maxAppliedVoltage()) << " applied\n";
            }
        }
    }
}
