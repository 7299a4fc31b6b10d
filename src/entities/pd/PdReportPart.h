#pragma once

#include "entities/pd/PDExport.h"
#include "entities/qor/StoredEntity.h"

#include <memory>

namespace PD::Entities {

class PdReport;

namespace Interfaces {
class IPdReportPart;
}

/// The report object that lists a part. The part itself stores only the report's id; it leaves that object when it gets
/// another id. A copy is not listed.
class PD_EXPORT PdReportListing
{
public:
    PdReport* report() const { return m_report; }
    void setReport(PdReport* report) { m_report = report; }

protected:
    PdReportListing() = default;
    PdReportListing(const PdReportListing& /*other*/) {}
    ~PdReportListing() = default;
    PdReportListing& operator=(const PdReportListing&) = delete;

    /// Takes @p part out of the lists of its report unless that has @p id. The caller keeps the result while it uses
    /// the part: nothing else may hold it any more.
    std::shared_ptr<Interfaces::IPdReportPart> leave(const Interfaces::IPdReportPart& part, const QUuid& id) const;

private:
    PdReport* m_report = nullptr;
};

/// What the entities share that belong to one report and know it by its id only.
template <typename Interface>
class PD_EXPORT PdReportPart : public QOR::Entities::StoredEntity<Interface>, public PdReportListing
{
public:
    const QUuid& reportId() const override { return m_reportId; }
    void setReportId(const QUuid& id) override
    {
        const std::shared_ptr<Interfaces::IPdReportPart> self = leave(*this, id);
        this->assign(m_reportId, id);
    }

protected:
    PdReportPart() = default;
    PdReportPart(const PdReportPart&) = default;

private:
    QUuid m_reportId;
};

} // namespace PD::Entities
