#include "context/CableImport.h"

#include "context/EntityContent.h"
#include "database/LoggingCategories.h"

#include <type_traits>

namespace DataAccess::Context {

using namespace Cables::Entities;
using namespace QOR::Entities::Enumerations;

namespace {

/// Whether entities of a kind stand for the same thing when they have the same name.
template <typename T>
constexpr bool isKnownByName =
    std::is_same_v<T, Insulation> || std::is_same_v<T, SegmentType> || std::is_same_v<T, SegmentDetail> ||
    std::is_same_v<T, Owner> || std::is_same_v<T, Termination> || std::is_same_v<T, Switchgear> ||
    std::is_same_v<T, Station>;

} // namespace

CableImport::CableImport(CableNetwork& target)
    : m_target(target)
{
    m_target.visit([this](const auto& entities) {
        for (const auto& entity : entities) {
            const QString key = isLive(*entity) ? nameKey(*entity) : QString();
            if (key.isEmpty())
                continue;
            QUuid& id = idsByName(*entity)[key];
            if (id.isNull() || entity->Id() < id)
                id = entity->Id();
        }
    });
}

template <typename T>
QHash<QString, QUuid>& CableImport::idsByName(const T& /*kind*/)
{
    return std::get<IdByName<T>>(m_idByName).ids;
}

template <typename T>
QString CableImport::nameKey(const T& entity) const
{
    if constexpr (!isKnownByName<T>) {
        return {};
    } else if constexpr (std::is_same_v<T, SegmentDetail>) {
        // Sections and joints may be made of things of one name, and yet are not the same.
        std::shared_ptr<Interfaces::ISegmentType> type = entity.Type();
        if (!type)
            type = m_target.find<SegmentType>(entity.TypeId());
        const bool isJoint = type && type->IsJoint();
        return entity.Name().isEmpty() ? QString() : entity.Name() + QLatin1Char(isJoint ? 'j' : 's');
    } else {
        return entity.Name();
    }
}

void CableImport::add(const std::shared_ptr<Cable>& cable, const Ratings& ratings)
{
    if (!cable)
        return;
    if (cable->Id().isNull() || !isLive(*cable)) {
        qCWarning(lcContext).noquote() << "Cable" << cable->Id().toString()
                                       << "has no id, is deleted or is a snapshot; it is not imported";
        return;
    }
    const auto here = m_target.find<Cable>(cable->Id());
    m_bringsBack = !here || here->EntityState() == Deleted;
    m_isIncomplete = false;
    take<Cable>(cable);
    takeParts(*cable);
    for (const auto& rating : ratings)
        take<Rating>(rating);
    if (m_isIncomplete)
        qCWarning(lcContext).noquote() << "Cable" << cable->Id().toString() << "was imported without all of its parts";
}

void CableImport::takeParts(const Cable& cable)
{
    // Of what is here already the references may be here under other ids: they are taken in any case.
    Cable references;
    mapReferences(cable, references);
    for (const auto& phase : cable.Phases()) {
        if (!take<Phase>(phase))
            continue;
        for (const auto& segment : phase->Segments())
            take<Segment>(segment);
    }
    if (cable.Rating())
        take<Rating>(cable.Rating());
}

template <typename T, typename Interface>
std::shared_ptr<T> CableImport::take(const std::shared_ptr<Interface>& object)
{
    const auto source = std::dynamic_pointer_cast<T>(object);
    if (!source || source->Id().isNull()) {
        m_isIncomplete = true;
        return nullptr;
    }
    std::shared_ptr<T> here = find(*source);
    if (here == source || (here && !mustGiveWay(*here, *source)))
        return here;

    auto copy = std::make_shared<T>();
    copyContent(*source, *copy);
    mapReferences(*source, *copy);
    if (!here) {
        copy->SetId(source->Id());
        m_target.of<T>().insert(copy->Id(), copy);
        const QString key = nameKey(*copy);
        if (!key.isEmpty())
            idsByName(*copy).insert(key, copy->Id());
        m_changed.push_back(copy);
        return copy;
    }
    copyContent(*copy, *here);
    if (here->EntityState() == Deleted)
        here->SetEntityState(Modified);
    if (here->EntityState() != Normal)
        m_changed.push_back(here);
    return here;
}

template <typename T, typename Interface>
QUuid CableImport::refer(const QUuid& id, const std::shared_ptr<Interface>& object)
{
    if (id.isNull())
        return id;
    if (object) {
        if (const auto taken = take<T>(object))
            return taken->Id();
    }
    if (!m_target.find<T>(id))
        m_isIncomplete = true;
    return id;
}

template <typename T>
std::shared_ptr<T> CableImport::find(const T& source)
{
    if (std::shared_ptr<T> sameId = m_target.find<T>(source.Id()))
        return sameId;
    const QString key = nameKey(source);
    return key.isEmpty() ? nullptr : m_target.find<T>(idsByName(source).value(key));
}

template <typename T>
bool CableImport::mustGiveWay(const T& here, const T& source) const
{
    if (here.EntityState() == Deleted && m_bringsBack)
        return true;
    const bool hasUnsavedChanges = here.EntityState() == New || here.EntityState() == Modified;
    return !hasUnsavedChanges && source.Timestamp().isValid() && here.Timestamp().isValid() &&
           source.Timestamp() > here.Timestamp();
}

void CableImport::mapReferences(const SegmentDetail& source, SegmentDetail& copy)
{
    copy.SetInsulationId(refer<Insulation>(source.InsulationId(), source.Insulation()));
    copy.SetTypeId(refer<SegmentType>(source.TypeId(), source.Type()));
}

void CableImport::mapReferences(const Station& source, Station& copy)
{
    copy.SetPointId(refer<Point>(source.PointId(), source.Point()));
}

void CableImport::mapReferences(const Route& source, Route& /*copy*/)
{
    for (const auto& point : source.Points())
        take<Point>(point);
    for (const QUuid& id : source.PointIds()) {
        if (!m_target.find<Point>(id))
            m_isIncomplete = true;
    }
}

void CableImport::mapReferences(const Segment& source, Segment& copy)
{
    copy.SetDetailId(refer<SegmentDetail>(source.DetailId(), source.Detail()));
}

void CableImport::mapReferences(const Cable& source, Cable& copy)
{
    copy.SetStationAId(refer<Station>(source.StationAId(), source.StationA()));
    copy.SetStationBId(refer<Station>(source.StationBId(), source.StationB()));
    copy.SetTerminationAId(refer<Termination>(source.TerminationAId(), source.TerminationA()));
    copy.SetTerminationBId(refer<Termination>(source.TerminationBId(), source.TerminationB()));
    copy.SetSwitchgearAId(refer<Switchgear>(source.SwitchgearAId(), source.SwitchGearA()));
    copy.SetSwitchgearBId(refer<Switchgear>(source.SwitchgearBId(), source.SwitchGearB()));
    copy.SetRouteId(refer<Route>(source.RouteId(), source.Route()));
    copy.SetOwnerId(refer<Owner>(source.OwnerId(), source.Owner()));
}

} // namespace DataAccess::Context
