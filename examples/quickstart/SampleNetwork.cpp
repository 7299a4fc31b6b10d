#include "SampleNetwork.h"

#include <QImage>

using namespace Cables::Entities;

namespace {

/// The same id in every run.
QUuid idOf(const char* name)
{
    static const QUuid space(QStringLiteral("{5b0e2ad4-6e5c-5f1c-9a55-0d3c2f8f7c11}"));
    return QUuid::createUuidV5(space, QByteArray(name));
}

template <typename T>
std::shared_ptr<T> make(const char* name)
{
    auto entity = std::make_shared<T>();
    entity->SetId(idOf(name));
    return entity;
}

template <typename T>
std::shared_ptr<T> makeNamed(const char* idName, const QString& name)
{
    auto entity = make<T>(idName);
    entity->SetName(name);
    return entity;
}

QImage photograph()
{
    QImage image(160, 120, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(90 + y, 140 + y / 2, 230 - x / 4));
    }
    return image;
}

std::shared_ptr<Point> makePoint(const char* name, unsigned int index, double latitude, double longitude)
{
    auto point = make<Point>(name);
    point->SetIndex(index);
    point->setLatitude(latitude);
    point->setLongitude(longitude);
    return point;
}

std::shared_ptr<Station> makeStation(const char* idName, const QString& name, const std::shared_ptr<Point>& point)
{
    auto station = makeNamed<Station>(idName, name);
    station->SetCity(QStringLiteral("Harbourtown"));
    station->SetPoint(point);
    return station;
}

std::shared_ptr<Segment> makeSegment(const char* idName, const QString& name, unsigned int index, double length,
                                     const std::shared_ptr<Phase>& phase, const std::shared_ptr<SegmentDetail>& detail)
{
    auto segment = makeNamed<Segment>(idName, name);
    segment->SetIndex(index);
    segment->SetLength(length);
    segment->SetInstallationDate(QDate(1998, 5, 4));
    segment->SetDetail(detail);
    phase->AddSegment(segment);
    return segment;
}

std::vector<std::shared_ptr<Segment>> makeSegments(const std::vector<std::shared_ptr<Phase>>& phases,
                                                   const std::shared_ptr<SegmentDetail>& section,
                                                   const std::shared_ptr<SegmentDetail>& joint)
{
    const QString first = QStringLiteral("Quay - Bridge");
    const QString second = QStringLiteral("Bridge - Mill");
    const QString jointName = QStringLiteral("Bridge joint");
    return {makeSegment("segment 1.1", first, 0, 420.5, phases[0], section),
            makeSegment("segment 1.2", jointName, 1, 0.0, phases[0], joint),
            makeSegment("segment 1.3", second, 2, 859.5, phases[0], section),
            makeSegment("segment 2.1", first, 0, 420.5, phases[1], section),
            makeSegment("segment 2.2", jointName, 1, 0.0, phases[1], joint),
            makeSegment("segment 2.3", second, 2, 859.5, phases[1], section),
            makeSegment("segment 3.1", QStringLiteral("Quay - Mill"), 0, 1280.0, phases[2], section)};
}

std::shared_ptr<Rating> makeRating(const std::shared_ptr<Cable>& cable,
                                   const std::vector<std::shared_ptr<Segment>>& segments)
{
    auto rating = make<Rating>("rating");
    rating->SetCableID(cable->Id());
    rating->SetMeasureTime(QDateTime(QDate(2021, 6, 14), QTime(10, 30)));
    rating->SetComment(QStringLiteral("After the repair of the bridge"));
    for (std::size_t i = 0; i < segments.size(); ++i)
        rating->setValue(static_cast<int>(i / 3), segments[i]->Id().toString(), i % 3 == 1 ? 2.0 : 1.0);
    for (int phase = 0; phase < 3; ++phase)
        rating->setSummary(phase == 2 ? 1.0 : 2.0, phase);
    return rating;
}

template <typename T>
void attachAll(DataAccess::Context::CableContext& context, const std::vector<std::shared_ptr<T>>& entities)
{
    for (const std::shared_ptr<T>& entity : entities)
        context.attach(entity);
}

} // namespace

QUuid sampleCableId()
{
    return idOf("cable");
}

QUuid sampleStationId()
{
    return idOf("station quay");
}

void attachSampleNetwork(DataAccess::Context::CableContext& context)
{
    if (!context.Cables().isEmpty())
        return;
    // The types that every database has, in the state that they have in this one.
    const auto types = DataAccess::Context::CableContext::defaultTypes();
    const auto section = makeNamed<SegmentDetail>("detail", QStringLiteral("XLPE 150"));
    section->SetVelocity(166e6);
    section->SetInsulation(context.Insulations().value(types.insulations.at(3)->Id()));
    section->SetType(context.SegmentTypes().value(types.cableType()->Id()));
    const auto joint = context.SegmentDetails().value(types.segmentDetails.at(11)->Id());
    const auto owner = makeNamed<Owner>("owner", QStringLiteral("Harbourtown Grid"));
    const auto plug = makeNamed<Termination>("termination", QStringLiteral("Plug"));
    const auto gas = makeNamed<Switchgear>("switchgear", QStringLiteral("Gas"));

    const std::vector<std::shared_ptr<Point>> points = {makePoint("point quay", 0, 54.3233, 10.1394),
                                                        makePoint("point bridge", 1, 54.3259, 10.1342),
                                                        makePoint("point mill", 2, 54.3301, 10.1266)};
    const auto quay = makeStation("station quay", QStringLiteral("Quay"), points.front());
    quay->SetImage(photograph());
    const auto mill = makeStation("station mill", QStringLiteral("Mill"), points.back());

    const auto cable = make<Cable>("cable");
    cable->SetNumber(QStringLiteral("K-17"));
    cable->SetVoltage(20000);
    cable->SetLength(1280);
    cable->SetCity(QStringLiteral("Harbourtown"));
    cable->SetInstallationDate(QDate(1998, 5, 4));
    cable->SetOwner(owner);
    cable->SetStationA(quay);
    cable->SetStationB(mill);
    cable->SetTerminationA(plug);
    cable->SetTerminationB(plug);
    cable->SetSwitchgearA(gas);
    cable->SetSwitchgearB(gas);
    const auto route = make<Route>("route");
    std::vector<std::shared_ptr<Interfaces::IPoint>> way(points.begin(), points.end());
    route->SetPoints(way);
    cable->SetRoute(route);
    std::vector<std::shared_ptr<Phase>> phases = {make<Phase>("phase 1"), make<Phase>("phase 2"),
                                                  make<Phase>("phase 3")};
    for (unsigned int i = 0; i < phases.size(); ++i) {
        phases[i]->SetIndex(i);
        cable->AddPhase(phases[i]);
    }
    const auto segments = makeSegments(phases, section, joint);

    attachAll(context, std::vector<std::shared_ptr<QOR::Entities::Entity>>{owner, plug, gas, section, quay, mill, cable,
                                                                           route, makeRating(cable, segments)});
    attachAll(context, points);
    attachAll(context, phases);
    attachAll(context, segments);
}
