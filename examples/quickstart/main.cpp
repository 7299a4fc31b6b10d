// Opens a SQLite file, or a legacy SQLite 2 file, brings its schema up to date, stores a small cable network with a
// partial-discharge test in it if it is new and empty, and prints what is in it. Then copies its first cable into
// another database, which is made if it is not there: quickstart [FILE [OTHER-FILE]]

#include "MeasurementPrinter.h"
#include "NetworkPrinter.h"
#include "OpenDatabase.h"
#include "SampleMeasurement.h"
#include "SampleNetwork.h"
#include "facade/DataAccessFacade.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <exception>

namespace {

void printVersions(QTextStream& out)
{
    const QHash<QString, QString> versions = DataAccess::DataAccessFacade::Instance()->GetVersions();
    QStringList features = versions.keys();
    features.sort();
    for (const QString& feature : features)
        out << "Schema of " << feature << ": " << versions.value(feature) << '\n';
}

void fill(const OpenDatabase& database)
{
    attachSampleNetwork(database.network());
    if (database.network().Cables().contains(sampleCableId()))
        attachSampleMeasurement(database.measurements(), sampleCableId(), sampleStationId());
    database.save();
    // What is shown is what a program would find that opens the file later.
    database.network().reload();
    database.measurements().reload();
    database.measurements().loadFiles();
}

void show(const OpenDatabase& database, QTextStream& out)
{
    NetworkPrinter printer(database.network(), out);
    printer.printCounts();
    out << '\n';
    printer.printNetwork();
    out << '\n';
    printMeasurements(database.measurements(), out);
}

void copyFirstCable(const OpenDatabase& from, const QString& path, QTextStream& out)
{
    const auto cables = from.network().Cables();
    if (cables.isEmpty())
        return;
    const auto isBefore = [](const auto& left, const auto& right) { return left->Number() < right->Number(); };
    const auto cable = *std::min_element(cables.begin(), cables.end(), isBefore);
    const OpenDatabase to(path);
    to.network().import({cable}, from.network());
    to.save();
    to.network().reload();
    out << "\nCopied cable " << cable->Number() << " into another database, which now has "
        << to.network().Cables().size() << " cable, " << to.network().Segments().size() << " segments, "
        << to.network().Points().size() << " points, " << to.network().Stations().size() << " stations, "
        << to.network().Ratings().size() << " rating\n";
}

void run(const QString& path, const QString& otherPath)
{
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    const OpenDatabase database(path);
    out << QFileInfo(path).absoluteFilePath() << '\n';
    if (database.workingCopy().isEmpty())
        fill(database);
    else
        out << "A legacy file, which stays as it is. Its data, and all changes, are in "
            << QFileInfo(database.workingCopy()).absoluteFilePath() << '\n';
    printVersions(out);
    out << '\n';
    show(database, out);
    const QTemporaryDir folder;
    copyFirstCable(database, otherPath.isEmpty() ? folder.filePath(QStringLiteral("copy.vbk")) : otherPath, out);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 3) {
        std::fputs("usage: quickstart [FILE [OTHER-FILE]]\n", stderr);
        return 2;
    }
    // What fails is asked for; the log of the library is for its developers.
    QLoggingCategory::setFilterRules(QStringLiteral("qor.*=false"));
    const QString path = arguments.value(1, QStringLiteral("quickstart.vbk"));
    try {
        run(path, arguments.value(2));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quickstart: %s: %s\n", qPrintable(path), error.what());
        return 1;
    }
    return 0;
}
