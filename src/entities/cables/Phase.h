#pragma once

#include "entities/cables/IPhase.h"
#include "entities/qor/Reference.h"
#include "entities/qor/StoredEntity.h"

namespace Cables::Entities {

/// Conductor of a cable; table `ce_phase`. Its segments can refer to it as an object only if a shared pointer owns it.
class CABLES_EXPORT Phase : public QOR::Entities::StoredEntity<Interfaces::IPhase>,
                            public std::enable_shared_from_this<Phase>
{
public:
    ~Phase() override;

    unsigned int Index() const override { return m_index; }
    void SetIndex(const unsigned int& index) override { assign(m_index, index); }
    const QUuid& CableId() const override { return m_cable.id(); }
    void SetCableId(const QUuid& id) override;
    std::shared_ptr<Interfaces::ICable> Cable() const override { return m_cable.object(); }
    void SetCable(std::shared_ptr<Interfaces::ICable> cable) override;
    const std::vector<std::shared_ptr<Interfaces::ISegment>>& Segments() const override { return m_segments; }
    void SetSegments(std::vector<std::shared_ptr<Interfaces::ISegment>>& segments) override;
    void AddSegment(std::shared_ptr<Interfaces::ISegment> segment) override;
    void RemoveSegment(std::shared_ptr<Interfaces::ISegment> segment) override;
    double Length() const override;
    double Velocity() const override;

    QJsonObject toJson() const override;

private:
    void adopt(Interfaces::ISegment& segment);

    QOR::Entities::ParentReference<Interfaces::ICable> m_cable;
    std::vector<std::shared_ptr<Interfaces::ISegment>> m_segments;
    unsigned int m_index = 0;
};

} // namespace Cables::Entities
