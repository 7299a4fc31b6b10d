#pragma once

#include "repositories/IRepository.h"

namespace DataAccess::Interfaces {

/// A repository that answers from memory what it has already read or written.
template <typename T>
class DATAACCESS_EXPORT ICachedRepository : public IRepository<T>
{
public:
    /// Forgets everything, and reads the table anew.
    virtual void Reload() = 0;
    /// Forgets everything.
    virtual void Wipe() = 0;

protected:
    ICachedRepository() = default;
    ICachedRepository(const ICachedRepository&) = default;
    ICachedRepository& operator=(const ICachedRepository&) = default;
};

} // namespace DataAccess::Interfaces
