#include "PropertyRows.h"
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
#include "support/TestMain.h"

#include <limits>

using namespace Cables::Entities;
using namespace QOR::Entities::Enumerations;
using TestSupport::addProperty;
using TestSupport::addReference;
using TestSupport::Storage;

/// What the properties and the references of all cable-network entities have in common.
class CableEntitiesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void property_data();
    void property();
    void reference_data();
    void reference();
    void unknownNumbersAreUnknown();
};

void CableEntitiesTest::property_data()
{
    QTest::addColumn<std::function<void()>>("check");
    const QString text = QStringLiteral("O'Neill \"ü\"");
    const QUuid id = QUuid::createUuid();
    const QDate date(2020, 2, 29);
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    const int unnamed = -77;

    addProperty<Owner>("Owner", "name", &Owner::Name, &Owner::SetName, text);
    addProperty<Switchgear>("Switchgear", "name", &Switchgear::Name, &Switchgear::SetName, text);
    addProperty<Termination>("Termination", "name", &Termination::Name, &Termination::SetName, text);
    addProperty<Insulation>("Insulation", "velocity", &Insulation::Velocity, &Insulation::SetVelocity, 1.6e8);
    addProperty<SegmentType>("SegmentType", "isJoint", &SegmentType::IsJoint, &SegmentType::SetIsJoint, true);
    addProperty<Point>("Point", "index", &Point::Index, &Point::SetIndex, 4000000000U);
    addProperty<Point>("Point", "latitude", &Point::latitude, &Point::setLatitude, -47.5);
    addProperty<Point>("Point", "longitude", &Point::longitude, &Point::setLongitude, 0.0);
    addProperty<Station>("Station", "name", &Station::Name, &Station::SetName, text);
    addProperty<Station>("Station", "city", &Station::City, &Station::SetCity, text);
    addProperty<Station>("Station", "description", &Station::Description, &Station::SetDescrition, text);
    addProperty<Station>("Station", "image", &Station::Image, &Station::SetImage, image);
    addProperty<SegmentDetail>("SegmentDetail", "velocity", &SegmentDetail::Velocity, &SegmentDetail::SetVelocity, 0.0);
    addProperty<SegmentDetail>("SegmentDetail", "isFavorite", &SegmentDetail::IsFavorite, &SegmentDetail::SetIsFavorite,
                               true);
    addProperty<Segment>("Segment", "index", &Segment::Index, &Segment::SetIndex, 3U);
    addProperty<Segment>("Segment", "length", &Segment::Length, &Segment::SetLength, 0.0);
    addProperty<Segment>("Segment", "installationDate", &Segment::InstallationDate, &Segment::SetInstallationDate,
                         date);
    addProperty<Phase>("Phase", "index", &Phase::Index, &Phase::SetIndex, 3U);
    addProperty<Route>("Route", "pointIds", &Route::PointIds, &Route::SetPointIds, std::vector<QUuid>{id, QUuid()});

    addProperty<Cable>("Cable", "number", &Cable::Number, &Cable::SetNumber, text);
    addProperty<Cable>("Cable", "voltage", &Cable::Voltage, &Cable::SetVoltage, 10000.0);
    addProperty<Cable>("Cable", "installationDate", &Cable::InstallationDate, &Cable::SetInstallationDate, date);
    addProperty<Cable>("Cable", "diagnosticStatus", &Cable::DiagnosticStatus, &Cable::SetDiagnosticStatus,
                       static_cast<Enumerations::DiagnosticStatus>(unnamed));
    addProperty<Cable>("Cable", "city", &Cable::City, &Cable::SetCity, text);
    addProperty<Cable>("Cable", "type", &Cable::Type, &Cable::SetType, static_cast<Enumerations::CableType>(unnamed));
    addProperty<Cable>("Cable", "cableStatus", &Cable::CableStatus, &Cable::SetCableStatus, unnamed);
    addProperty<Cable>("Cable", "comment", &Cable::Comment, &Cable::SetComment, text);
    addProperty<Cable>("Cable", "length", &Cable::Length, &Cable::SetLength, 0.1);
    addProperty<Cable>("Cable", "importance", &Cable::Importance, &Cable::SetImportance, unnamed);
    addProperty<Cable>("Cable", "qrCode", &Cable::QrCode, &Cable::SetQrCode, QByteArray(1, '\0'), Storage::MemoryOnly);
    addProperty<Cable>("Cable", "ratingMeasureID", &Cable::ratingMeasureID, &Cable::SetRatingMeasureID, text,
                       Storage::MemoryOnly);

    addProperty<Rating>("Rating", "cableID", &Rating::cableID, &Rating::SetCableID, id);
    addProperty<Rating>("Rating", "taskID", &Rating::taskID, &Rating::SetTaskID, id);
    addProperty<Rating>("Rating", "measureID", &Rating::measureID, &Rating::SetMeasureID, unnamed);
    addProperty<Rating>("Rating", "modeId", &Rating::modeId, &Rating::SetModeId, unnamed);
    addProperty<Rating>("Rating", "measureTime", &Rating::measureTime, &Rating::SetMeasureTime,
                        QDateTime(date, QTime(23, 59, 59, 999), Qt::UTC));
    addProperty<Rating>("Rating", "comment", &Rating::comment, &Rating::SetComment, text);
    addProperty<Rating>("Rating", "automatic", &Rating::automatic, &Rating::SetAutomatic,
                        static_cast<Rating::Tristate>(unnamed));
    addProperty<Rating>("Rating", "oldCable", &Rating::oldCable, &Rating::SetOldCable, Rating::Negative);
    addProperty<Rating>("Rating", "eventselectionmodel", &Rating::eventselectionmodel, &Rating::SetEventselectionmodel,
                        static_cast<Rating::EventSelection>(unnamed));
}

void CableEntitiesTest::property()
{
    QFETCH(std::function<void()>, check);
    check();
}

void CableEntitiesTest::reference_data()
{
    QTest::addColumn<std::function<void()>>("check");
    addReference<Station, Point>("Station", "pointId", &Station::PointId, &Station::SetPointId, &Station::Point,
                                 &Station::SetPoint);
    addReference<SegmentDetail, Insulation>("SegmentDetail", "insulationId", &SegmentDetail::InsulationId,
                                            &SegmentDetail::SetInsulationId, &SegmentDetail::Insulation,
                                            &SegmentDetail::SetInsulation);
    addReference<SegmentDetail, SegmentType>("SegmentDetail", "typeId", &SegmentDetail::TypeId,
                                             &SegmentDetail::SetTypeId, &SegmentDetail::Type, &SegmentDetail::SetType);
    addReference<Segment, Phase>("Segment", "phaseId", &Segment::PhaseId, &Segment::SetPhaseId, &Segment::Phase,
                                 &Segment::SetPhase);
    addReference<Segment, SegmentDetail>("Segment", "detailId", &Segment::DetailId, &Segment::SetDetailId,
                                         &Segment::Detail, &Segment::SetDetail);
    addReference<Phase, Cable>("Phase", "cableId", &Phase::CableId, &Phase::SetCableId, &Phase::Cable,
                               &Phase::SetCable);
    addReference<Route, Cable>("Route", "cableId", &Route::CableId, &Route::SetCableId, &Route::Cable,
                               &Route::SetCable);
    addReference<Cable, Station>("Cable", "stationAId", &Cable::StationAId, &Cable::SetStationAId, &Cable::StationA,
                                 &Cable::SetStationA);
    addReference<Cable, Station>("Cable", "stationBId", &Cable::StationBId, &Cable::SetStationBId, &Cable::StationB,
                                 &Cable::SetStationB);
    addReference<Cable, Termination>("Cable", "terminationAId", &Cable::TerminationAId, &Cable::SetTerminationAId,
                                     &Cable::TerminationA, &Cable::SetTerminationA);
    addReference<Cable, Termination>("Cable", "terminationBId", &Cable::TerminationBId, &Cable::SetTerminationBId,
                                     &Cable::TerminationB, &Cable::SetTerminationB);
    addReference<Cable, Switchgear>("Cable", "switchgearAId", &Cable::SwitchgearAId, &Cable::SetSwitchgearAId,
                                    &Cable::SwitchGearA, &Cable::SetSwitchgearA);
    addReference<Cable, Switchgear>("Cable", "switchgearBId", &Cable::SwitchgearBId, &Cable::SetSwitchgearBId,
                                    &Cable::SwitchGearB, &Cable::SetSwitchgearB);
    addReference<Cable, Route>("Cable", "routeId", &Cable::RouteId, &Cable::SetRouteId, &Cable::Route,
                               &Cable::SetRoute);
    addReference<Cable, Owner>("Cable", "ownerId", &Cable::OwnerId, &Cable::SetOwnerId, &Cable::Owner,
                               &Cable::SetOwner);
}

void CableEntitiesTest::reference()
{
    QFETCH(std::function<void()>, check);
    check();
}

void CableEntitiesTest::unknownNumbersAreUnknown()
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

DATAACCESS_TEST(CableEntitiesTest)
#include "CableEntitiesTest.moc"
