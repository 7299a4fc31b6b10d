#include "bench/Kinds.h"

namespace Bench {

std::shared_ptr<Segments::Entity> Segments::make(int number)
{
    // Twenty segments a phase, a hundred kinds of cable: as in a network.
    auto segment = std::make_shared<Entity>();
    segment->SetId(QUuid::createUuid());
    segment->SetName(QStringLiteral("Segment %1").arg(number % 20 + 1));
    segment->SetIndex(static_cast<unsigned int>(number % 20));
    segment->SetLength(120.5 + number % 1000 * 0.25);
    segment->SetPhaseId(QUuid(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    segment->SetDetailId(QUuid(static_cast<uint>(number % 100 + 1), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    segment->SetInstallationDate(QDate(1970, 1, 1).addDays(number % 18000));
    return segment;
}

std::shared_ptr<MappingEvents::Entity> MappingEvents::make(int number)
{
    auto event = std::make_shared<Entity>();
    event->SetId(QUuid::createUuid());
    event->setReportId(QUuid(static_cast<uint>(number / 10000 + 1), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    event->setLoad(1e-12 * (number % 5000));
    event->setPhaseIndex(number % 3);
    event->setClassification(number % 7);
    event->setPolarity(number % 2 == 0);
    event->setVoltage(8000 + number % 12000 * 0.5);
    event->setPosition(number % 10000 * 0.137);
    event->setMode(number % 4);
    return event;
}

} // namespace Bench
