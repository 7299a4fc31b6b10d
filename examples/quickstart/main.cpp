// Opens a SQLite file, brings its schema up to date, stores a small cable network with a
// partial-discharge test in it if it is empty, and prints what is in it: quickstart [FILE]

#include "MeasurementPrinter.h"
#include "NetworkPrinter.h"
#include "OpenDatabase.h"
#include "Repositories.h"
#include "SampleMeasurement.h"
#include "SampleNetwork.h"
#include "factories/PdRepositoryManagerFactory.h"
#include "manager/PdRepositoryManager.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QTextStream>

#include <cstdio>
#include <exception>

namespace {

void show(const QString& path)
{
    OpenDatabase database(path);
    Repositories repositories(database.worker());
    storeSampleNetwork(repositories);
    const auto measurements = DataAccess::Factories::PdRepositoryManagerFactory().create(
        database.worker(), DataAccess::Enumerations::Complete);
    if (repositories.cables.GetById(sampleCableId()))
        storeSampleMeasurement(*measurements, sampleCableId(), sampleStationId());

    QTextStream out(stdout);
    out.setCodec("UTF-8");
    out << QFileInfo(path).absoluteFilePath() << '\n';
    out << "Schema version of the cable network: " << database.version();
    if (database.versionBefore() != database.version() && database.versionBefore() != 0)
        out << " (was " << database.versionBefore() << ')';
    out << "\n\n";
    NetworkPrinter printer(repositories, out);
    printer.printCounts();
    out << '\n';
    printer.printNetwork();
    out << '\n';
    printMeasurements(*measurements, out);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 2) {
        std::fputs("usage: quickstart [FILE]\n", stderr);
        return 2;
    }
    // What goes wrong is told in one line below.
    QLoggingCategory::setFilterRules(QStringLiteral("qor.*=false"));
    const QString path = arguments.size() == 2 ? arguments.at(1) : QStringLiteral("quickstart.vbk");
    try {
        show(path);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quickstart: %s: %s\n", qPrintable(path), error.what());
        return 1;
    }
    return 0;
}
