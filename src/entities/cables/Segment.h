#pragma once

#include "entities/cables/ISegment.h"
#include "entities/cables/ISegmentDetail.h"
#include "entities/cables/NamedEntity.h"
#include "entities/qor/Reference.h"

#include <limits>

namespace Cables::Entities {

class Phase;
class SegmentDetail;

/// Piece of a phase; table `ce_segment`. A phase that it is given lists it only if a shared pointer owns it.
class CABLES_EXPORT Segment : public NamedEntity<Interfaces::ISegment>, public std::enable_shared_from_this<Segment>
{
public:
    unsigned int Index() const override { return m_index; }
    void SetIndex(const unsigned int& index) override { assign(m_index, index); }
    double Length() const override { return m_length; }
    void SetLength(double length) override { assign(m_length, length); }
    QDate InstallationDate() const override { return m_installationDate; }
    void SetInstallationDate(const QDate& date) override { assign(m_installationDate, date); }
    const QUuid& PhaseId() const override { return m_phase.id(); }
    void SetPhaseId(const QUuid& id) override;
    std::shared_ptr<Interfaces::IPhase> Phase() const override { return m_phase.object(); }
    void SetPhase(std::shared_ptr<Interfaces::IPhase> phase) override;
    /// Points at the phase of PhaseId(): nothing that is stored changes, and no list of the phase's.
    void LinkPhase(const std::shared_ptr<Interfaces::IPhase>& phase) { linkReference(m_phase, phase); }
    const QUuid& DetailId() const override { return m_detail.id(); }
    void SetDetailId(const QUuid& id) override { assignReferenceId(m_detail, id); }
    std::shared_ptr<Interfaces::ISegmentDetail> Detail() const override { return m_detail.object(); }
    void SetDetail(std::shared_ptr<Interfaces::ISegmentDetail> detail) override
    {
        assignReferenceObject(m_detail, std::move(detail));
    }

    QJsonObject toJson() const override;

private:
    QOR::Entities::ParentReference<Interfaces::IPhase> m_phase;
    QOR::Entities::OwningReference<Interfaces::ISegmentDetail> m_detail;
    QDate m_installationDate;
    double m_length = std::numeric_limits<double>::quiet_NaN();
    unsigned int m_index = 0;
};

} // namespace Cables::Entities

template <>
inline constexpr auto QOR::Entities::properties<Cables::Entities::Segment> = [] {
    using namespace Cables::Entities;
    using E = Segment;
    return std::tuple{stored<&E::Name, &E::SetName>("name"),
                      stored<&E::Index, &E::SetIndex>("index"),
                      stored<&E::Length, &E::SetLength>("length"),
                      stored<&E::InstallationDate, &E::SetInstallationDate>("installationDate"),
                      parent<Phase, &E::PhaseId, &E::SetPhaseId, &E::Phase, &E::SetPhase>("phaseId"),
                      reference<SegmentDetail, &E::DetailId, &E::SetDetailId, &E::Detail, &E::SetDetail>("detailId")};
}();
