#include "context/SampleNetwork.h"

#include "manager/private/Kinds.h"

#include <QImage>
#include <QJsonDocument>

#include <algorithm>

using namespace Cables::Entities;
using DataAccess::Context::CableContext;

namespace TestSupport {

namespace {

template <typename Pointer>
QByteArray idOf(const Pointer& entity)
{
    return entity ? entity->Id().toByteArray() : QByteArray("-");
}

template <typename List>
QByteArray idsOf(const List& entities)
{
    QByteArray ids;
    for (const auto& entity : entities)
        ids += idOf(entity);
    return ids;
}

QByteArray linksOf(const Cable& cable)
{
    return idOf(cable.StationA()) + idOf(cable.StationB()) + idOf(cable.TerminationA()) + idOf(cable.TerminationB()) +
           idOf(cable.SwitchGearA()) + idOf(cable.SwitchGearB()) + idOf(cable.Owner()) + idOf(cable.Route()) +
           idOf(cable.Rating()) + idsOf(cable.Phases()) + QByteArray::number(cable.NrOfJoint());
}

QByteArray linksOf(const Phase& phase)
{
    return idOf(phase.Cable()) + idsOf(phase.Segments());
}

QByteArray linksOf(const Segment& segment)
{
    return idOf(segment.Phase()) + idOf(segment.Detail());
}

QByteArray linksOf(const SegmentDetail& detail)
{
    return idOf(detail.Insulation()) + idOf(detail.Type());
}

QByteArray linksOf(const Route& route)
{
    return idOf(route.Cable()) + idsOf(route.Points());
}

QByteArray linksOf(const Station& station)
{
    return idOf(station.Point());
}

template <typename T>
QByteArray linksOf(const T& /*entity*/)
{
    return {};
}

template <typename T>
void addLines(QList<QByteArray>& lines, const QHash<QUuid, std::shared_ptr<T>>& entities)
{
    for (const auto& entity : entities)
        lines.append(QJsonDocument(entity->toJson()).toJson(QJsonDocument::Compact) + linksOf(*entity) +
                     QByteArray::number(entity->EntityState()));
}

} // namespace

QUuid sampleId(const QString& name)
{
    static const QUuid space(QStringLiteral("{5e9f0c7a-7a43-4d5b-9d5e-6b1f7f0c1a55}"));
    return QUuid::createUuidV5(space, name);
}

std::shared_ptr<Owner> makeOwner(const QString& name)
{
    auto owner = std::make_shared<Owner>();
    owner->SetId(sampleId(name));
    owner->SetName(name);
    return owner;
}

QByteArray describe(const CableContext& context)
{
    using C = CableContext;
    constexpr auto accessors = std::make_tuple(&C::Insulations, &C::SegmentTypes, &C::SegmentDetails, &C::Owners,
                                               &C::Terminations, &C::Switchgears, &C::Points, &C::Stations, &C::Routes,
                                               &C::Cables, &C::Phases, &C::Segments, &C::Ratings);
    static_assert(std::tuple_size_v<decltype(accessors)> == std::tuple_size_v<DataAccess::Manager::EditorKinds>);
    QList<QByteArray> lines;
    std::apply([&](auto... accessor) { (addLines(lines, (context.*accessor)()), ...); }, accessors);
    std::sort(lines.begin(), lines.end());
    return lines.join('\n');
}

SampleNetwork::SampleNetwork(int count)
    : m_owner(make<Owner>(QStringLiteral("owner")))
    , m_terminations{make<Termination>(QStringLiteral("termination A")),
                     make<Termination>(QStringLiteral("termination B"))}
    , m_switchgears{make<Switchgear>(QStringLiteral("switchgear A")), make<Switchgear>(QStringLiteral("switchgear B"))}
    , m_section(makeDetail(QStringLiteral("section"), false))
    , m_joint(makeDetail(QStringLiteral("joint"), true))
{
    m_owner->SetName(QStringLiteral("Grid"));
    m_terminations[0]->SetName(QStringLiteral("Plug"));
    m_terminations[1]->SetName(QStringLiteral("Pothead"));
    m_switchgears[0]->SetName(QStringLiteral("Vacuum"));
    m_switchgears[1]->SetName(QStringLiteral("Air"));
    for (int number = 0; number < count; ++number)
        addCable(number);
}

void SampleNetwork::attachTo(DataAccess::Context::AbstractContext& context) const
{
    for (const auto& entity : entities)
        context.attach(entity);
}

template <typename T>
std::shared_ptr<T> SampleNetwork::make(const QString& name)
{
    auto entity = std::make_shared<T>();
    entity->SetId(sampleId(name));
    entities.push_back(entity);
    return entity;
}

std::shared_ptr<SegmentDetail> SampleNetwork::makeDetail(const QString& name, bool isJoint)
{
    auto detail = make<SegmentDetail>(name);
    const auto insulation = make<Insulation>(name + QStringLiteral(" insulation"));
    const auto type = make<SegmentType>(name + QStringLiteral(" type"));
    insulation->SetName(insulation->Id().toString());
    insulation->SetVelocity(170e6);
    type->SetName(type->Id().toString());
    type->SetIsJoint(isJoint);
    detail->SetName(name);
    detail->SetVelocity(isJoint ? 0 : 171e6);
    detail->SetIsFavorite(true);
    detail->SetInsulation(insulation);
    detail->SetType(type);
    return detail;
}

std::shared_ptr<Point> SampleNetwork::makePoint(const QString& name, double offset)
{
    auto point = make<Point>(name);
    point->SetIndex(7);
    point->setLatitude(54 + offset / 1000);
    point->setLongitude(10.25);
    return point;
}

std::shared_ptr<Station> SampleNetwork::makeStation(const QString& name, double offset)
{
    auto station = make<Station>(name);
    station->SetName(name);
    station->SetCity(QStringLiteral("Kiel"));
    station->SetDescrition(QStringLiteral("By the harbour"));
    station->SetPoint(makePoint(name + QStringLiteral(" point"), offset));
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    station->SetImage(image);
    return station;
}

void SampleNetwork::addCable(int number)
{
    const QString name = QStringLiteral("cable %1").arg(number);
    const auto cable = make<Cable>(name);
    cables.push_back(cable);
    cable->SetNumber(name);
    cable->SetVoltage(20e3);
    cable->SetInstallationDate(QDate(1987, 5, 4));
    cable->SetDiagnosticStatus(static_cast<Enumerations::DiagnosticStatus>(2));
    cable->SetCity(QStringLiteral("Kiel"));
    cable->SetType(static_cast<Enumerations::CableType>(1));
    cable->SetCableStatus(3);
    cable->SetComment(QStringLiteral("Below the quay"));
    cable->SetLength(1234.5);
    cable->SetImportance(4);
    cable->SetOwner(m_owner);
    cable->SetStationA(makeStation(name + QStringLiteral(" A"), number));
    cable->SetStationB(makeStation(name + QStringLiteral(" B"), number + 0.5));
    cable->SetTerminationA(m_terminations[0]);
    cable->SetTerminationB(m_terminations[1]);
    cable->SetSwitchgearA(m_switchgears[0]);
    cable->SetSwitchgearB(m_switchgears[1]);
    addRoute(*cable, name, number);
    addPhases(*cable, name);
    addRating(*cable, name);
}

void SampleNetwork::addRoute(Cable& cable, const QString& name, int number)
{
    const auto route = make<Route>(name + QStringLiteral(" route"));
    std::vector<std::shared_ptr<Interfaces::IPoint>> points = {cable.StationA()->Point()};
    // Not in the order of their ids.
    for (int i = 1; i < 9; ++i)
        points.push_back(makePoint(QStringLiteral("%1 point %2").arg(name).arg(i), number + i / 10.0));
    points.push_back(cable.StationB()->Point());
    route->SetPoints(points);
    cable.SetRoute(route);
}

void SampleNetwork::addPhases(Cable& cable, const QString& name)
{
    for (unsigned int i = 0; i < 3; ++i) {
        const auto phase = make<Phase>(QStringLiteral("%1 phase %2").arg(name).arg(i));
        phase->SetIndex(i);
        cable.AddPhase(phase);
        const unsigned int count = i < 2 ? 7 : 6;
        for (unsigned int j = 0; j < count; ++j) {
            const auto segment = make<Segment>(QStringLiteral("%1 segment %2.%3").arg(name).arg(i).arg(j));
            const bool isJoint = j % 2 == 1 && j + 1 < count;
            segment->SetIndex(j);
            segment->SetName(QStringLiteral("S%1").arg(j));
            segment->SetLength(isJoint ? 0 : 100.5 + j);
            segment->SetInstallationDate(QDate(1987, 5, 5));
            segment->SetDetail(isJoint ? m_joint : m_section);
            phase->AddSegment(segment);
        }
    }
}

void SampleNetwork::addRating(Cable& cable, const QString& name)
{
    const auto rating = make<Rating>(name + QStringLiteral(" rating"));
    rating->SetCableID(cable.Id());
    rating->SetTaskID(sampleId(name + QStringLiteral(" task")));
    rating->SetMeasureID(5);
    rating->SetModeId(6);
    rating->SetComment(QStringLiteral("Seen twice"));
    rating->SetAutomatic(Rating::Positive);
    rating->SetOldCable(Rating::Negative);
    rating->SetEventselectionmodel(Rating::Median);
    rating->SetMeasureTime(QDateTime(QDate(2021, 6, 14), QTime(10, 30)));
    rating->setSummary(1.5, 0);
    cable.SetRating(rating);
}

} // namespace TestSupport
