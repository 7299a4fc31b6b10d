#pragma once

#include "entities/pd/IPdEntity.h"

namespace PD::Entities::Interfaces {

/// Something measured or set up for one report, which owns it.
class PD_EXPORT IPdReportPart : public IPdEntity
{
public:
    ~IPdReportPart() override = default;

    /// Id of the report.
    virtual const QUuid& reportId() const = 0;
    virtual void setReportId(const QUuid& id) = 0;
};

} // namespace PD::Entities::Interfaces
