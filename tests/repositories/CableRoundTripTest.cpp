#include "repositories/EditorDatabase.h"
#include "repositories/RoundTrip.h"
#include "repositories/cables/CableRepository.h"
#include "repositories/cables/InsulationRepository.h"
#include "repositories/cables/OwnerRepository.h"
#include "repositories/cables/PhaseRepository.h"
#include "repositories/cables/PointRepository.h"
#include "repositories/cables/RatingRepository.h"
#include "repositories/cables/RouteRepository.h"
#include "repositories/cables/SegmentDetailRepository.h"
#include "repositories/cables/SegmentRepository.h"
#include "repositories/cables/SegmentTypeRepository.h"
#include "repositories/cables/StationRepository.h"
#include "repositories/cables/SwitchgearRepository.h"
#include "repositories/cables/TerminationRepository.h"
#include "support/TestMain.h"

#include <QTest>

using namespace DataAccess;
using namespace Cables::Entities;
using TestSupport::EditorDatabase;
using TestSupport::Values;

namespace {

QImage image(int i)
{
    if (i == 1)
        return {};
    QImage picture(i == 3 ? 2000 : 3, i == 3 ? 1500 : 2, QImage::Format_ARGB32);
    picture.fill(QColor(200, 10 * i, 30, 40 * i));
    picture.setPixelColor(1, 1, Qt::green);
    return picture;
}

template <typename T>
void fillName(T& entity, int i)
{
    entity.SetName(Values::text(i));
}

void fill(Owner& owner, int i)
{
    fillName(owner, i);
}

void fill(Switchgear& switchgear, int i)
{
    fillName(switchgear, i);
}

void fill(Termination& termination, int i)
{
    fillName(termination, i);
}

void fill(SegmentType& type, int i)
{
    fillName(type, i);
    type.SetIsJoint(Values::flag(i));
}

void fill(Insulation& insulation, int i)
{
    fillName(insulation, i);
    insulation.SetVelocity(Values::number(i));
}

void fill(SegmentDetail& detail, int i)
{
    fillName(detail, i);
    detail.SetVelocity(Values::number(i));
    detail.SetInsulationId(Values::id(i));
    detail.SetTypeId(Values::id(i));
    detail.SetIsFavorite(Values::flag(i));
}

void fill(Point& point, int i)
{
    point.SetIndex(i == 3 ? std::numeric_limits<unsigned int>::max() : Values::index(i));
    point.setLatitude(Values::number(i));
    point.setLongitude(-Values::number(i));
}

void fill(Station& station, int i)
{
    fillName(station, i);
    station.SetCity(Values::text(i));
    station.SetDescrition(Values::text(Values::count - 1 - i));
    station.SetImage(image(i));
    station.SetPointId(Values::id(i));
}

void fill(Route& route, int i)
{
    route.SetCableId(Values::id(i));
    std::vector<QUuid> points;
    points.reserve(5000);
    for (int k = 0; k < (i == 3 ? 5000 : i); ++k)
        points.push_back(Values::id(k));
    route.SetPointIds(points);
}

void fill(Phase& phase, int i)
{
    phase.SetIndex(Values::index(i));
    phase.SetCableId(Values::id(i));
}

void fill(Segment& segment, int i)
{
    fillName(segment, i);
    segment.SetIndex(Values::index(i));
    segment.SetLength(Values::number(i));
    segment.SetInstallationDate(Values::date(i));
    segment.SetPhaseId(Values::id(i));
    segment.SetDetailId(Values::id(i));
}

void fill(Cable& cable, int i)
{
    cable.SetNumber(Values::text(i));
    cable.SetVoltage(Values::number(i));
    cable.SetInstallationDate(Values::date(i));
    cable.SetDiagnosticStatus(static_cast<Cables::Entities::Enumerations::DiagnosticStatus>(Values::integer(i)));
    cable.SetCity(Values::text(Values::count - 1 - i));
    cable.SetType(static_cast<Cables::Entities::Enumerations::CableType>(Values::integer(i)));
    cable.SetCableStatus(Values::integer(i));
    cable.SetComment(Values::text(i));
    cable.SetLength(Values::number(Values::count - 1 - i));
    cable.SetImportance(Values::integer(Values::count - 1 - i));
    cable.SetStationAId(Values::id(i));
    cable.SetStationBId(Values::id(i));
    cable.SetTerminationAId(Values::id(i));
    cable.SetTerminationBId(Values::id(i));
    cable.SetSwitchgearAId(Values::id(i));
    cable.SetSwitchgearBId(Values::id(i));
    cable.SetRouteId(Values::id(i));
    cable.SetOwnerId(Values::id(i));
}

void fill(Rating& rating, int i)
{
    rating.SetCableID(Values::id(i));
    rating.SetTaskID(Values::id(i));
    rating.SetMeasureID(Values::integer(i));
    rating.SetModeId(Values::integer(i));
    rating.SetMeasureTime(Values::dateTime(i));
    rating.SetComment(Values::text(i));
    rating.SetAutomatic(static_cast<Rating::Tristate>(Values::integer(i)));
    rating.SetOldCable(static_cast<Rating::Tristate>(Values::integer(i)));
    rating.SetEventselectionmodel(static_cast<Rating::EventSelection>(Values::integer(i)));
    rating.SetRating(Values::text(i));
    if (i == 0)
        rating.setValue(1, QStringLiteral("Größe"), 2.5);
}

template <typename Repository>
void check(bool failures)
{
    TestSupport::checkKind<Repository, EditorDatabase>(failures, [](auto& entity, int i) { fill(entity, i); });
}

constexpr std::pair<const char*, void (*)(bool)> s_kinds[] = {
    {"cable", &check<Repositories::CableRepository>},
    {"insulation", &check<Repositories::InsulationRepository>},
    {"owner", &check<Repositories::OwnerRepository>},
    {"phase", &check<Repositories::PhaseRepository>},
    {"point", &check<Repositories::PointRepository>},
    {"rating", &check<Repositories::RatingRepository>},
    {"route", &check<Repositories::RouteRepository>},
    {"segment", &check<Repositories::SegmentRepository>},
    {"segment detail", &check<Repositories::SegmentDetailRepository>},
    {"segment type", &check<Repositories::SegmentTypeRepository>},
    {"station", &check<Repositories::StationRepository>},
    {"switchgear", &check<Repositories::SwitchgearRepository>},
    {"termination", &check<Repositories::TerminationRepository>},
};

} // namespace

/// Every property of every kind of entity comes back as it was stored, and what is not stored is told.
class CableRoundTripTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyProperty_data() { TestSupport::addKinds(s_kinds); }
    void everyProperty()
    {
        QFETCH(int, kind);
        s_kinds[kind].second(false);
    }

    void failures_data() { TestSupport::addKinds(s_kinds); }
    void failures()
    {
        QFETCH(int, kind);
        s_kinds[kind].second(true);
    }
};

DATAACCESS_TEST(CableRoundTripTest)

#include "CableRoundTripTest.moc"
