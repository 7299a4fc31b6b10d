#pragma once

#include "entities/lb/ICablebookMeasure.h"
#include "entities/lb/LBExport.h"
#include "entities/qor/StoredEntity.h"

namespace LB::Entities {

/// Link between a measurement of the cable book and the cable network; table `cablebook_measures`.
class LB_EXPORT CablebookMeasure : public QOR::Entities::StoredEntity<Interfaces::ICablebookMeasure>
{
public:
    int MeasureId() const override { return m_measureId; }
    void SetMeasureId(int id) override;
    const QUuid& CableId() const override { return m_cableId; }
    void SetCableId(const QUuid& id) override { assign(m_cableId, id); }
    const QUuid& StationId() const override { return m_stationId; }
    void SetStationId(const QUuid& id) override { assign(m_stationId, id); }
    const QDateTime& ImportDate() const override { return m_importDate; }
    void SetImportDate(const QDateTime& date) override { assign(m_importDate, date); }
    const QDateTime& LastEditDate() const override { return m_lastEditDate; }
    void SetLastEditDate(const QDateTime& date) override { assign(m_lastEditDate, date); }

    QJsonObject toJson() const override;

private:
    QUuid m_cableId;
    QUuid m_stationId;
    QDateTime m_importDate;
    QDateTime m_lastEditDate;
    int m_measureId = 0;
};

} // namespace LB::Entities

template <>
inline constexpr auto QOR::Entities::properties<LB::Entities::CablebookMeasure> = [] {
    using namespace LB::Entities;
    using E = CablebookMeasure;
    return std::tuple{
        stored<&E::MeasureId, &E::SetMeasureId>("measureId"), stored<&E::CableId, &E::SetCableId>("cableId"),
        stored<&E::StationId, &E::SetStationId>("stationId"), stored<&E::ImportDate, &E::SetImportDate>("importDate"),
        stored<&E::LastEditDate, &E::SetLastEditDate>("lastEditDate")};
}();
