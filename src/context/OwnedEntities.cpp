#include "context/OwnedEntities.h"

#include "context/CableNetwork.h"
#include "context/PdNetwork.h"

namespace DataAccess::Context {

using namespace Cables::Entities;
using namespace PD::Entities;

namespace {

/// Tells a visitor of the entities behind their interfaces.
class Teller
{
public:
    explicit Teller(const BondVisitor& visit)
        : m_visit(visit)
    {}

    template <typename... Interface>
    void owned(const std::shared_ptr<Interface>&... parts) const
    {
        (tell(parts, Bond::Owned), ...);
    }

    template <typename Interface>
    void owned(const std::vector<std::shared_ptr<Interface>>& parts) const
    {
        for (const std::shared_ptr<Interface>& part : parts)
            tell(part, Bond::Owned);
    }

    template <typename... Interface>
    void referred(const std::shared_ptr<Interface>&... others) const
    {
        (tell(others, Bond::Referred), ...);
    }

private:
    template <typename Interface>
    void tell(const std::shared_ptr<Interface>& object, Bond bond) const
    {
        if (const auto entity = std::dynamic_pointer_cast<QOR::Entities::Entity>(object))
            m_visit(entity, bond);
    }

    const BondVisitor& m_visit;
};

void tellBonds(const Cable& cable, const Teller& teller)
{
    teller.referred(cable.StationA(), cable.StationB(), cable.TerminationA(), cable.TerminationB(), cable.SwitchGearA(),
                    cable.SwitchGearB(), cable.Owner());
    teller.owned(cable.Route(), cable.Rating());
    teller.owned(cable.Phases());
}

void tellBonds(const Phase& phase, const Teller& teller)
{
    teller.referred(phase.Cable());
    teller.owned(phase.Segments());
}

void tellBonds(const Segment& segment, const Teller& teller)
{
    teller.referred(segment.Phase(), segment.Detail());
}

void tellBonds(const SegmentDetail& detail, const Teller& teller)
{
    teller.referred(detail.Insulation(), detail.Type());
}

void tellBonds(const Station& station, const Teller& teller)
{
    teller.owned(station.Point());
}

void tellBonds(const Route& route, const Teller& teller)
{
    teller.referred(route.Cable());
    teller.owned(route.Points());
}

void tellBonds(const PdTask& task, const Teller& teller)
{
    teller.owned(task.Rating());
    teller.owned(task.Reports());
}

void tellBonds(const PdReport& report, const Teller& teller)
{
    teller.referred(report.Task());
    teller.owned(report.LbDiagram(), report.Summary(), report.TaskInfo());
    teller.owned(report.Files());
    teller.owned(report.IecOverview());
    teller.owned(report.MappingEvents());
}

void tellBonds(const PdFile& file, const Teller& teller)
{
    teller.referred(file.Report());
}

template <typename T>
bool tellBondsIf(const QOR::Entities::Entity& entity, const Teller& teller)
{
    const auto* const ofKind = dynamic_cast<const T*>(&entity);
    if (ofKind)
        tellBonds(*ofKind, teller);
    return ofKind;
}

template <typename... T>
void tellBondsOfKinds(const QOR::Entities::Entity& entity, const Teller& teller)
{
    static_cast<void>((tellBondsIf<T>(entity, teller) || ...));
}

} // namespace

void visitBonds(const QOR::Entities::Entity& entity, const BondVisitor& visit)
{
    tellBondsOfKinds<Segment, Phase, Cable, Station, Route, SegmentDetail, PdTask, PdReport, PdFile>(entity,
                                                                                                     Teller(visit));
}

} // namespace DataAccess::Context
