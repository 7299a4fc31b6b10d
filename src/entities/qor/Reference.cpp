#include "entities/qor/Reference.h"

#include "entities/qor/IEntity.h"

#include <utility>

namespace QOR::Entities {

class IdArrival::Observer final : public Interfaces::IObserver
{
public:
    Observer(const std::shared_ptr<Interfaces::IEntity>& entity, Callback arrived)
        : m_entity(entity)
        , m_arrived(std::move(arrived))
    {
        entity->attach(this);
    }
    ~Observer() override
    {
        if (const auto entity = m_entity.lock())
            entity->detach(this);
    }
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;

    void changed(Interfaces::IEntity& entity) override
    {
        if (entity.Id().isNull())
            return;
        entity.detach(this);
        // The callback may destroy this object.
        const Callback arrived = std::move(m_arrived);
        arrived(entity.Id());
    }

    std::shared_ptr<Interfaces::IEntity> entity() const { return m_entity.lock(); }

private:
    std::weak_ptr<Interfaces::IEntity> m_entity;
    Callback m_arrived;
};

IdArrival::IdArrival() = default;
IdArrival::~IdArrival() = default;
IdArrival::IdArrival(const IdArrival& /*other*/)
{}
IdArrival::IdArrival(IdArrival&& other) noexcept = default;
IdArrival& IdArrival::operator=(IdArrival&& other) noexcept = default;

void IdArrival::stop()
{
    m_observer.reset();
}

void IdArrival::awaitSameAs(const IdArrival& other, Callback arrived)
{
    awaitEntity(other.m_observer ? other.m_observer->entity() : nullptr, std::move(arrived));
}

void IdArrival::awaitEntity(const std::shared_ptr<Interfaces::IEntity>& entity, Callback arrived)
{
    stop();
    if (entity)
        m_observer = std::make_unique<Observer>(entity, std::move(arrived));
}

} // namespace QOR::Entities
