#include "EntityChecks.h"
#include "entities/cables/Cable.h"
#include "entities/cables/Insulation.h"
#include "entities/cables/Owner.h"
#include "entities/cables/Phase.h"
#include "entities/cables/Point.h"
#include "entities/cables/Rating.h"
#include "entities/cables/Route.h"
#include "entities/cables/Segment.h"
#include "entities/cables/SegmentDetail.h"
#include "entities/cables/SegmentType.h"
#include "entities/cables/Station.h"
#include "entities/cables/Switchgear.h"
#include "entities/cables/Termination.h"
#include "entities/lb/CablebookMeasure.h"
#include "entities/pd/PdFile.h"
#include "entities/pd/PdIecOverview.h"
#include "entities/pd/PdLbDiagram.h"
#include "entities/pd/PdMappingEvent.h"
#include "entities/pd/PdReport.h"
#include "entities/pd/PdSummary.h"
#include "entities/pd/PdTask.h"
#include "entities/pd/PdTaskInfo.h"
#include "entities/qor/QorUuidHelpers.h"
#include "support/TestMain.h"

#include <limits>

using namespace Cables::Entities;
using namespace PD::Entities;
using namespace QOR::Entities::Enumerations;
using LB::Entities::CablebookMeasure;
using TestSupport::addProperty;
using TestSupport::addReference;
using TestSupport::Storage;

// The member of toJson() is named like the getter.
#define PROPERTY(Class, get, set, ...) addProperty<Class>(#Class, #get, &Class::get, &Class::set, __VA_ARGS__)
#define REFERENCE(Class, Target, getId, setId, get, set)                                                               \
    addReference<Class, Target>(#Class, #getId, &Class::getId, &Class::setId, &Class::get, &Class::set)

namespace {

const QString text = QStringLiteral("O'Neill \"ü\"");
const QUuid id = QUuid::createUuid();
const QDate date(2020, 2, 29);
const QDateTime time(date, QTime(23, 59, 59, 999), Qt::UTC);
constexpr int unnamed = -77; ///< No value that an enumeration has a name for.

void networkRows()
{
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(Qt::red);

    PROPERTY(Owner, Name, SetName, text);
    PROPERTY(Switchgear, Name, SetName, text);
    PROPERTY(Termination, Name, SetName, text);
    PROPERTY(Insulation, Velocity, SetVelocity, 1.6e8);
    PROPERTY(SegmentType, IsJoint, SetIsJoint, true);
    PROPERTY(Point, Index, SetIndex, 4000000000U);
    PROPERTY(Point, latitude, setLatitude, -47.5);
    PROPERTY(Point, longitude, setLongitude, 0.0);
    PROPERTY(Station, Name, SetName, text);
    PROPERTY(Station, City, SetCity, text);
    PROPERTY(Station, Description, SetDescrition, text);
    PROPERTY(Station, Image, SetImage, image);
    PROPERTY(SegmentDetail, Velocity, SetVelocity, 0.0);
    PROPERTY(SegmentDetail, IsFavorite, SetIsFavorite, true);
    PROPERTY(Segment, Index, SetIndex, 3U);
    PROPERTY(Segment, Length, SetLength, 0.0);
    PROPERTY(Segment, InstallationDate, SetInstallationDate, date);
    PROPERTY(Phase, Index, SetIndex, 3U);
    PROPERTY(Route, PointIds, SetPointIds, std::vector<QUuid>{id, QUuid()});
}

void cableRows()
{
    PROPERTY(Cable, Number, SetNumber, text);
    PROPERTY(Cable, Voltage, SetVoltage, 10000.0);
    PROPERTY(Cable, InstallationDate, SetInstallationDate, date);
    PROPERTY(Cable, DiagnosticStatus, SetDiagnosticStatus, static_cast<Enumerations::DiagnosticStatus>(unnamed));
    PROPERTY(Cable, City, SetCity, text);
    PROPERTY(Cable, Type, SetType, static_cast<Enumerations::CableType>(unnamed));
    PROPERTY(Cable, CableStatus, SetCableStatus, unnamed);
    PROPERTY(Cable, Comment, SetComment, text);
    PROPERTY(Cable, Length, SetLength, 0.1);
    PROPERTY(Cable, Importance, SetImportance, unnamed);
    PROPERTY(Cable, QrCode, SetQrCode, QByteArray(1, '\0'), Storage::MemoryOnly);
    PROPERTY(Cable, ratingMeasureID, SetRatingMeasureID, text, Storage::MemoryOnly);

    PROPERTY(Rating, cableID, SetCableID, id);
    PROPERTY(Rating, taskID, SetTaskID, id);
    PROPERTY(Rating, measureID, SetMeasureID, unnamed);
    PROPERTY(Rating, modeId, SetModeId, unnamed);
    PROPERTY(Rating, measureTime, SetMeasureTime, time);
    PROPERTY(Rating, comment, SetComment, text);
    PROPERTY(Rating, automatic, SetAutomatic, static_cast<Rating::Tristate>(unnamed));
    PROPERTY(Rating, oldCable, SetOldCable, Rating::Negative);
    PROPERTY(Rating, eventselectionmodel, SetEventselectionmodel, static_cast<Rating::EventSelection>(unnamed));
}

void networkReferences()
{
    REFERENCE(Station, Point, PointId, SetPointId, Point, SetPoint);
    REFERENCE(SegmentDetail, Insulation, InsulationId, SetInsulationId, Insulation, SetInsulation);
    REFERENCE(SegmentDetail, SegmentType, TypeId, SetTypeId, Type, SetType);
    REFERENCE(Segment, Phase, PhaseId, SetPhaseId, Phase, SetPhase);
    REFERENCE(Segment, SegmentDetail, DetailId, SetDetailId, Detail, SetDetail);
    REFERENCE(Phase, Cable, CableId, SetCableId, Cable, SetCable);
    REFERENCE(Route, Cable, CableId, SetCableId, Cable, SetCable);
    REFERENCE(Cable, Station, StationAId, SetStationAId, StationA, SetStationA);
    REFERENCE(Cable, Station, StationBId, SetStationBId, StationB, SetStationB);
    REFERENCE(Cable, Termination, TerminationAId, SetTerminationAId, TerminationA, SetTerminationA);
    REFERENCE(Cable, Termination, TerminationBId, SetTerminationBId, TerminationB, SetTerminationB);
    REFERENCE(Cable, Switchgear, SwitchgearAId, SetSwitchgearAId, SwitchGearA, SetSwitchgearA);
    REFERENCE(Cable, Switchgear, SwitchgearBId, SetSwitchgearBId, SwitchGearB, SetSwitchgearB);
    REFERENCE(Cable, Route, RouteId, SetRouteId, Route, SetRoute);
    REFERENCE(Cable, Owner, OwnerId, SetOwnerId, Owner, SetOwner);
}

void taskRows()
{
    using E = PdTask;
    const char* name = "PdTask";
    const QStringList devices = {text, QString()};
    REFERENCE(PdTask, Cable, CableId, SetCableId, Cable, SetCable);
    REFERENCE(PdTask, Station, StationId, SetStationId, Station, SetStation);
    PROPERTY(PdTask, CreationDate, SetCreationDate, time);
    PROPERTY(PdTask, Tester, SetTester, text);
    PROPERTY(PdTask, Path, SetPath, text);
    PROPERTY(PdTask, Comment, SetComment, text);
    PROPERTY(PdTask, Devices, SetDevices, devices);
    addProperty<E>(name, "devices", &E::DevicesText, &E::SetDevicesFromText, text);
    PROPERTY(PdTask, KvtrRecommentations, SetKvtrRecommentation, text);
    PROPERTY(PdTask, MaxVoltage, SetMaxVoltage, 0.0, Storage::MemoryOnly);
    PROPERTY(PdTask, Pdiv, SetPdiv, 0.0, Storage::MemoryOnly);
    PROPERTY(PdTask, Pdev, SetPdev, 0.0, Storage::MemoryOnly);
}

void reportRows()
{
    REFERENCE(PdReport, PdTask, TaskId, SetTaskId, Task, SetTask);
    PROPERTY(PdReport, CreationTimestamp, SetCreationTimestamp, QDateTime::fromMSecsSinceEpoch(0, Qt::UTC));
    PROPERTY(PdReport, Flags, SetFlags, -1);
    PROPERTY(PdReport, Recommentation, SetRecommentation, text);
    PROPERTY(PdReport, Filter, SetFilter, QHash<QString, QString>{{text, QString()}});

    PROPERTY(PdFile, Name, SetName, text);
    PROPERTY(PdFile, File, SetFile, QByteArray("a\0\xff", 3));
    PROPERTY(PdFile, Hash, SetHash, QByteArray(""));
    REFERENCE(PdFile, PdReport, ReportId, SetReportId, Report, SetReport);
}

void overviewRows()
{
    using E = PdIecOverview;
    const char* name = "PdIecOverview";
    PROPERTY(PdIecOverview, reportId, setReportId, id);
    PROPERTY(PdIecOverview, phaseIndex, setPhaseIndex, 2);
    PROPERTY(PdIecOverview, groundNoise, setGroundNoise, 0.0);
    PROPERTY(PdIecOverview, sensitivityLevel, setSensitivityLevel, 0.0);
    PROPERTY(PdIecOverview, frequency, setFrequency, 0.0);
    PROPERTY(PdIecOverview, pdivVoltage, setPdivVoltage, 0.0);
    PROPERTY(PdIecOverview, pdevVoltage, setPdevVoltage, 0.0);
    PROPERTY(PdIecOverview, pdivMaxCharge, setPdivMaxCharge, 0.0);

    const QString charges = QStringLiteral("{\"20400\":1.5e-12}");
    const auto setMax = [](E& entity, const QString& stored) { entity.setMaxCharges(stored); };
    const auto setMed = [](E& entity, const QString& stored) { entity.setMedCharges(stored); };
    addProperty<E>(name, "maxCharges", &E::maxChargesText, setMax, charges);
    addProperty<E>(name, "medCharges", &E::medChargesText, setMed, charges);
    const auto setMaxAt = [](E& entity, double charge) { entity.setMaxCharges(QMap<double, double>{{20400, charge}}); };
    const auto setMedAt = [](E& entity, double charge) { entity.setMedCharges(QMap<double, double>{{20400, charge}}); };
    const auto maxAt = [](const E& entity) { return entity.maxChargeAtVoltage(20400); };
    const auto medAt = [](const E& entity) { return entity.medChargeAtVoltage(20400); };
    addProperty<E>(name, "maxCharges", maxAt, setMaxAt, 1.5e-12);
    addProperty<E>(name, "medCharges", medAt, setMedAt, 1.5e-12);
}

void partRows()
{
    PROPERTY(PdMappingEvent, reportId, setReportId, id);
    PROPERTY(PdMappingEvent, load, setLoad, 0.0);
    PROPERTY(PdMappingEvent, voltage, setVoltage, 0.0);
    PROPERTY(PdMappingEvent, position, setPosition, 0.0);
    PROPERTY(PdMappingEvent, phaseIndex, setPhaseIndex, -1);
    PROPERTY(PdMappingEvent, classification, setClassification, -1);
    PROPERTY(PdMappingEvent, mode, setMode, -1);
    PROPERTY(PdMappingEvent, polarity, setPolarity, true);

    PROPERTY(PdLbDiagram, reportId, setReportId, id);
    PROPERTY(PdLbDiagram, phase1Visible, setPhase1Visible, true);
    PROPERTY(PdLbDiagram, phase2Visible, setPhase2Visible, true);
    PROPERTY(PdLbDiagram, phase3Visible, setPhase3Visible, true);
    PROPERTY(PdLbDiagram, filterClass, setFilterClass, 4000000000U);
    PROPERTY(PdLbDiagram, filterVoltageMin, setFilterVoltageMin, 0.0);
    PROPERTY(PdLbDiagram, filterVoltageMax, setFilterVoltageMax, 0.0);

    PROPERTY(PdSummary, reportId, setReportId, id);
    PROPERTY(PdSummary, pdivState, setPdivState, true);
    PROPERTY(PdSummary, pdevState, setPdevState, true);
    PROPERTY(PdSummary, noiseState, setNoiseState, true);
    PROPERTY(PdSummary, dataState, setDataState, true);
    PROPERTY(PdSummary, vwdState, setVwdState, true);
    PROPERTY(PdSummary, dacPosState, setDacPosState, true);
    PROPERTY(PdSummary, dacNegState, setDacNegState, true);
    PROPERTY(PdSummary, vlfCrState, setVlfCrState, true);
    PROPERTY(PdSummary, vlfSinState, setVlfSinState, true);
    PROPERTY(PdSummary, maxAppliedVoltage, setMaxAppliedVoltage, 0.0);

    PROPERTY(PdTaskInfo, reportId, setReportId, id);
    PROPERTY(PdTaskInfo, softwareVersion, setSoftwareVersion, text);
    PROPERTY(PdTaskInfo, systemType, setSystemType, text);
    PROPERTY(PdTaskInfo, serialNumber, setSerialNumber, text);
    PROPERTY(PdTaskInfo, calibrationDate, setCalibrationDate, time);
}

void measureRows()
{
    PROPERTY(CablebookMeasure, CableId, SetCableId, id);
    PROPERTY(CablebookMeasure, StationId, SetStationId, id);
    PROPERTY(CablebookMeasure, ImportDate, SetImportDate, time);
    PROPERTY(CablebookMeasure, LastEditDate, SetLastEditDate, time);
}

} // namespace

/// What the properties and the references of all entities have in common.
class PropertiesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void property_data();
    void property();
    void unknownNumbersAreUnknown();
    void measureIdGivesTheId_data();
    void measureIdGivesTheId();
};

void PropertiesTest::property_data()
{
    QTest::addColumn<std::function<void()>>("check");
    networkRows();
    cableRows();
    networkReferences();
    taskRows();
    reportRows();
    overviewRows();
    partRows();
    measureRows();
}

void PropertiesTest::property()
{
    QFETCH(std::function<void()>, check);
    check();
}

void PropertiesTest::unknownNumbersAreUnknown()
{
    Cable cable;
    cable.SetEntityState(Normal);
    cable.SetVoltage(std::numeric_limits<double>::quiet_NaN());
    cable.SetLength(-std::numeric_limits<double>::quiet_NaN());
    QCOMPARE(cable.EntityState(), Normal);
    QVERIFY(cable.toJson().value(QLatin1String("voltage")).isNull());
    cable.SetVoltage(0);
    QCOMPARE(cable.EntityState(), Modified);
    cable.SetEntityState(Normal);
    cable.SetVoltage(std::numeric_limits<double>::quiet_NaN());
    QCOMPARE(cable.EntityState(), Modified);
}

void PropertiesTest::measureIdGivesTheId_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("changes");
    // A new entity has the number 0 already: it gets its id all the same.
    QTest::newRow("zero") << 0 << false;
    QTest::newRow("one") << 1 << true;
    QTest::newRow("negative") << -7 << true;
    QTest::newRow("largest") << std::numeric_limits<int>::max() << true;
    QTest::newRow("smallest") << std::numeric_limits<int>::min() << true;
}

void PropertiesTest::measureIdGivesTheId()
{
    QFETCH(int, number);
    QFETCH(bool, changes);
    CablebookMeasure measure;
    measure.SetEntityState(Normal);
    measure.SetMeasureId(number);
    QCOMPARE(QOR::Entities::QorUuidHelpers::intFromUuid(measure.Id()), qint64(number));
    QCOMPARE(measure.MeasureId(), number);
    QCOMPARE(measure.EntityState(), changes ? Modified : Normal);

    const QUuid id = measure.Id();
    measure.SetMeasureId(5);
    QCOMPARE(measure.Id(), id);
    QCOMPARE(measure.MeasureId(), 5);
    QCOMPARE(measure.EntityState(), Modified);
    QCOMPARE(measure.toJson().value(QLatin1String("measureId")).toInt(), 5);
}

DATAACCESS_TEST(PropertiesTest)

#include "PropertiesTest.moc"
