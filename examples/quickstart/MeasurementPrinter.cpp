#include "MeasurementPrinter.h"

#include "entities/cables/ICable.h"

#include <algorithm>

using namespace PD::Entities;

namespace {

QString kilovolts(double volts)
{
    return QStringLiteral("%1 kV").arg(volts / 1e3, 0, 'f', 1);
}

QString picocoulombs(double coulombs)
{
    return QStringLiteral("%1 pC").arg(coulombs * 1e12, 0, 'f', 0);
}

void printReport(const Interfaces::IPdReport& report, QTextStream& out)
{
    out << "  Report of " << report.CreationTimestamp().toString(Qt::ISODate) << ": " << report.MappingEvents().size()
        << " events, filters: " << report.Filter().size() << '\n';
    for (const auto& file : report.Files())
        out << "    File " << file->Name() << ": " << file->File().size() << " bytes\n";
    for (const auto& overview : report.IecOverview()) {
        out << "    Phase " << overview->phaseIndex() + 1 << ": PDIV " << kilovolts(overview->pdivVoltage())
            << ", PDEV " << kilovolts(overview->pdevVoltage()) << ", at most "
            << picocoulombs(overview->maxChargeAtVoltage(20e3)) << " at 20.0 kV\n";
    }
    if (const auto summary = report.Summary())
        out << "    Summary: " << kilovolts(summary->maxAppliedVoltage()) << " applied\n";
}

} // namespace

void printMeasurements(const DataAccess::Context::PdContext& context, QTextStream& out)
{
    const auto all = context.Tasks();
    std::vector<std::shared_ptr<PdTask>> tasks(all.begin(), all.end());
    std::sort(tasks.begin(), tasks.end(), [](const auto& left, const auto& right) {
        return std::make_pair(left->CreationDate(), left->Id()) < std::make_pair(right->CreationDate(), right->Id());
    });
    for (const auto& task : tasks) {
        out << "Partial-discharge test of " << (task->Cable() ? task->Cable()->Number() : QStringLiteral("?")) << " on "
            << task->CreationDate().toString(Qt::ISODate) << " by " << task->Tester()
            << ", devices: " << task->Devices().join(QStringLiteral(", ")) << '\n';
        for (const auto& report : task->Reports())
            printReport(*report, out);
    }
}
