#include "entities/pd/PdTask.h"

#include "entities/cables/ICable.h"
#include "entities/cables/IRating.h"
#include "entities/cables/IStation.h"
#include "entities/pd/IPdReport.h"
#include "entities/pd/StoredText.h"
#include "entities/pd/TextList.h"
#include "entities/qor/Children.h"

namespace PD::Entities {

Interfaces::IPdTask::~IPdTask() = default;

void PdTask::SetCableId(const QUuid& id)
{
    assignReferenceId(m_cable, id);
}

void PdTask::SetCable(const std::shared_ptr<Cables::Entities::Interfaces::ICable>& cable)
{
    assignReferenceObject(m_cable, cable);
}

void PdTask::SetStationId(const QUuid& id)
{
    assignReferenceId(m_station, id);
}

void PdTask::SetStation(const std::shared_ptr<Cables::Entities::Interfaces::IStation>& station)
{
    assignReferenceObject(m_station, station);
}

void PdTask::SetRating(const std::shared_ptr<Cables::Entities::Interfaces::IRating>& rating)
{
    assignUnstored(m_rating, rating);
}

QStringList PdTask::Devices() const
{
    return TextList::fromText(m_devices);
}

void PdTask::SetDevices(const QStringList& devices)
{
    assign(m_devices, storedText<TextList>(m_devices, devices));
}

void PdTask::SetReports(const std::vector<std::shared_ptr<Interfaces::IPdReport>>& reports)
{
    auto children = QOR::Entities::distinctChildren(reports);
    for (const auto& report : children)
        adopt(*report);
    assignUnstored(m_reports, std::move(children));
}

void PdTask::adopt(Interfaces::IPdReport& report)
{
    if (const std::shared_ptr<PdTask> self = weak_from_this().lock())
        report.SetTask(self);
    else
        report.SetTaskId(Id());
}

std::shared_ptr<Interfaces::IPdReport> PdTask::ReportLatest() const
{
    std::shared_ptr<Interfaces::IPdReport> latest;
    for (const auto& report : m_reports) {
        const QDateTime& time = report->CreationTimestamp();
        const QDateTime soFar = latest ? latest->CreationTimestamp() : QDateTime();
        if (!soFar.isValid() || (time.isValid() && time >= soFar))
            latest = report;
    }
    return latest;
}

QJsonObject PdTask::toJson() const
{
    using QOR::Entities::toJsonValue;
    QJsonObject json = StoredEntity::toJson();
    json.insert(QLatin1String("cableId"), toJsonValue(CableId()));
    json.insert(QLatin1String("stationId"), toJsonValue(StationId()));
    json.insert(QLatin1String("creationDate"), toJsonValue(m_creationDate));
    json.insert(QLatin1String("tester"), toJsonValue(m_tester));
    json.insert(QLatin1String("path"), toJsonValue(m_path));
    json.insert(QLatin1String("comment"), toJsonValue(m_comment));
    json.insert(QLatin1String("devices"), QJsonArray::fromStringList(Devices()));
    json.insert(QLatin1String("kvtrRecommentations"), toJsonValue(m_kvtrRecommentation));
    json.insert(QLatin1String("maxVoltage"), toJsonValue(m_maxVoltage));
    json.insert(QLatin1String("pdiv"), toJsonValue(m_pdiv));
    json.insert(QLatin1String("pdev"), toJsonValue(m_pdev));
    json.insert(QLatin1String("reports"), QOR::Entities::childIds(m_reports));
    return json;
}

} // namespace PD::Entities
