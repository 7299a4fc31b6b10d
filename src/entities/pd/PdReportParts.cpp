// What belongs to one report, and how the report holds it.

#include "entities/pd/PdIecOverview.h"
#include "entities/pd/PdLbDiagram.h"
#include "entities/pd/PdMappingEvent.h"
#include "entities/pd/PdReport.h"
#include "entities/pd/PdSummary.h"
#include "entities/pd/PdTaskInfo.h"
#include "entities/pd/private/TextForms.h"

#include <algorithm>
#include <unordered_set>

namespace PD::Entities {

using QOR::Entities::propertiesToJson;

QJsonObject PdIecOverview::maxCharges() const
{
    return ChargeMap::toJson(m_maxCharges);
}

void PdIecOverview::setMaxCharges(const QMap<double, double>& charges)
{
    assign(m_maxCharges, storedText<ChargeMap>(m_maxCharges, charges));
}

double PdIecOverview::maxChargeAtVoltage(double voltage) const
{
    return ChargeMap::chargeAt(m_maxCharges, voltage);
}

QJsonObject PdIecOverview::medCharges() const
{
    return ChargeMap::toJson(m_medCharges);
}

void PdIecOverview::setMedCharges(const QMap<double, double>& charges)
{
    assign(m_medCharges, storedText<ChargeMap>(m_medCharges, charges));
}

double PdIecOverview::medChargeAtVoltage(double voltage) const
{
    return ChargeMap::chargeAt(m_medCharges, voltage);
}

QJsonObject PdIecOverview::toJson() const
{
    return propertiesToJson(*this);
}

QJsonObject PdLbDiagram::toJson() const
{
    return propertiesToJson(*this);
}

QJsonObject PdMappingEvent::toJson() const
{
    return propertiesToJson(*this);
}

QJsonObject PdSummary::toJson() const
{
    return propertiesToJson(*this);
}

QJsonObject PdTaskInfo::toJson() const
{
    return propertiesToJson(*this);
}

std::shared_ptr<Interfaces::IPdReportPart> PdReportListing::leave(const Interfaces::IPdReportPart& part,
                                                                  const QUuid& id) const
{
    return m_report && m_report->Id() != id ? m_report->drop(part) : nullptr;
}

template <typename Visitor>
void PdReport::visitParts(const Visitor& visit) const
{
    const auto visitOne = [&visit](const auto& part) {
        if (part)
            visit(*part);
    };
    // Copied because an observer may change the lists.
    const auto overview = m_iecOverview;
    const auto events = m_mappingEvents;
    std::for_each(overview.begin(), overview.end(), visitOne);
    std::for_each(events.begin(), events.end(), visitOne);
    visitOne(std::shared_ptr<Interfaces::IPdReportPart>(m_lbDiagram));
    visitOne(std::shared_ptr<Interfaces::IPdReportPart>(m_summary));
    visitOne(std::shared_ptr<Interfaces::IPdReportPart>(m_taskInfo));
}

PdReport::~PdReport()
{
    visitParts([this](Interfaces::IPdReportPart& part) { noteUnlisted(part); });
}

void PdReport::SetId(const QUuid& id)
{
    const bool hadNone = Id().isNull();
    StoredEntity::SetId(id);
    if (!hadNone)
        return;
    // The objects linked before this could not be given the id.
    const std::vector<std::shared_ptr<Interfaces::IPdFile>> files = Files();
    for (const std::shared_ptr<Interfaces::IPdFile>& file : files)
        adopt(*file);
    visitParts([this](Interfaces::IPdReportPart& part) { part.setReportId(Id()); });
}

template <typename T>
void PdReport::assignPart(std::shared_ptr<T>& place, std::shared_ptr<T> part)
{
    const std::shared_ptr<T> former = std::exchange(place, part);
    if (former && former != part)
        noteUnlisted(*former);
    if (part) {
        if (PdReport* const other = noteListed(*part))
            other->drop(*part);
        part->setReportId(Id());
    }
    if (former == part)
        return;
    if (former)
        release(*former);
    notify();
}

template <typename T>
void PdReport::assignParts(PartList<T> list, const std::vector<std::shared_ptr<T>>& parts)
{
    const std::vector<std::shared_ptr<T>> children = QOR::Entities::distinctChildren(parts);
    const std::vector<std::shared_ptr<T>> former = std::exchange(this->*list, children);
    for (const std::shared_ptr<T>& part : former)
        noteUnlisted(*part);
    std::unordered_set<const T*> staying;
    std::unordered_set<PdReport*> others;
    for (const std::shared_ptr<T>& part : children) {
        staying.insert(part.get());
        if (PdReport* const other = noteListed(*part))
            others.insert(other);
    }
    // All at once, since dropping them one by one would take quadratic time.
    for (PdReport* const other : others)
        other->dropMoved(list);
    for (const std::shared_ptr<T>& part : children)
        part->setReportId(Id());
    for (const std::shared_ptr<T>& part : former) {
        if (staying.count(part.get()) == 0)
            release(*part);
    }
    if (former != children)
        notify();
}

template <typename T>
void PdReport::linkPart(std::shared_ptr<T>& place, std::shared_ptr<T> part)
{
    if (place == part)
        return;
    if (place)
        noteUnlisted(*place);
    place = std::move(part);
    if (place)
        noteListed(*place);
    notify();
}

template <typename T>
void PdReport::linkParts(PartList<T> list, std::vector<std::shared_ptr<T>> parts)
{
    if (this->*list == parts)
        return;
    for (const std::shared_ptr<T>& part : this->*list)
        noteUnlisted(*part);
    this->*list = std::move(parts);
    for (const std::shared_ptr<T>& part : this->*list)
        noteListed(*part);
    notify();
}

/// Notes that this report lists @p part; gives another report that did, and has to drop it.
PdReport* PdReport::noteListed(Interfaces::IPdReportPart& part)
{
    // A part of an application's own class keeps no such note.
    auto* const listing = dynamic_cast<PdReportListing*>(&part);
    if (!listing)
        return nullptr;
    PdReport* const other = listing->report();
    listing->setReport(this);
    return other == this ? nullptr : other;
}

void PdReport::noteUnlisted(Interfaces::IPdReportPart& part) const
{
    auto* const listing = dynamic_cast<PdReportListing*>(&part);
    if (listing && listing->report() == this)
        listing->setReport(nullptr);
}

/// Takes the id of this report from a part that is listed no longer.
void PdReport::release(Interfaces::IPdReportPart& part) const
{
    if (part.reportId() == Id())
        part.setReportId(QUuid());
}

/// Takes @p part out of its place, and returns it.
std::shared_ptr<Interfaces::IPdReportPart> PdReport::drop(const Interfaces::IPdReportPart& part)
{
    std::shared_ptr<Interfaces::IPdReportPart> dropped;
    const auto isPart = [&part](const std::shared_ptr<Interfaces::IPdReportPart>& listed) {
        return listed.get() == &part;
    };
    const auto dropFrom = [&](auto& list) {
        const auto found = std::find_if(list.begin(), list.end(), isPart);
        if (found == list.end())
            return;
        dropped = *found;
        list.erase(found);
    };
    const auto dropOne = [&](auto& place) {
        if (isPart(place))
            dropped = std::exchange(place, nullptr);
    };
    dropFrom(m_mappingEvents);
    dropFrom(m_iecOverview);
    dropOne(m_lbDiagram);
    dropOne(m_summary);
    dropOne(m_taskInfo);
    if (dropped) {
        noteUnlisted(*dropped);
        notify();
    }
    return dropped;
}

/// Takes the parts out of @p list that another report lists now.
template <typename T>
void PdReport::dropMoved(PartList<T> list)
{
    std::vector<std::shared_ptr<T>>& parts = this->*list;
    const auto isMoved = [this](const std::shared_ptr<T>& part) {
        const auto* const listing = dynamic_cast<const PdReportListing*>(part.get());
        return listing && listing->report() != this;
    };
    parts.erase(std::remove_if(parts.begin(), parts.end(), isMoved), parts.end());
    notify();
}

void PdReport::SetLbDiagram(const std::shared_ptr<Interfaces::IPdLbDiagram>& diagram)
{
    assignPart(m_lbDiagram, diagram);
}

void PdReport::LinkLbDiagram(std::shared_ptr<Interfaces::IPdLbDiagram> diagram)
{
    linkPart(m_lbDiagram, std::move(diagram));
}

void PdReport::setSummary(const std::shared_ptr<Interfaces::IPdSummary>& summary)
{
    assignPart(m_summary, summary);
}

void PdReport::LinkSummary(std::shared_ptr<Interfaces::IPdSummary> summary)
{
    linkPart(m_summary, std::move(summary));
}

void PdReport::setTaskInfo(const std::shared_ptr<Interfaces::IPdTaskInfo>& info)
{
    assignPart(m_taskInfo, info);
}

void PdReport::LinkTaskInfo(std::shared_ptr<Interfaces::IPdTaskInfo> info)
{
    linkPart(m_taskInfo, std::move(info));
}

const std::vector<std::shared_ptr<Interfaces::IPdIecOverview>>& PdReport::IecOverview() const
{
    return m_iecOverview;
}

void PdReport::setIecOverview(const std::vector<std::shared_ptr<Interfaces::IPdIecOverview>>& overview)
{
    assignParts(&PdReport::m_iecOverview, overview);
}

void PdReport::LinkIecOverview(std::vector<std::shared_ptr<Interfaces::IPdIecOverview>> overview)
{
    linkParts(&PdReport::m_iecOverview, std::move(overview));
}

const std::vector<std::shared_ptr<Interfaces::IPdMappingEvent>>& PdReport::MappingEvents() const
{
    return m_mappingEvents;
}

void PdReport::setMappingEvents(const std::vector<std::shared_ptr<Interfaces::IPdMappingEvent>>& events)
{
    assignParts(&PdReport::m_mappingEvents, events);
}

void PdReport::LinkMappingEvents(std::vector<std::shared_ptr<Interfaces::IPdMappingEvent>> events)
{
    linkParts(&PdReport::m_mappingEvents, std::move(events));
}

} // namespace PD::Entities
