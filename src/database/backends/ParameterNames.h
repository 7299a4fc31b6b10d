#pragma once

#include <QString>

#include <vector>

namespace DataAccess::Database {

/// Finds the place of a statement's parameter by its name.
class ParameterNames
{
public:
    /// @p names with their colons, by place.
    explicit ParameterNames(std::vector<QString> names);

    std::size_t count() const { return m_names.size(); }
    /// The place of @p name. Throws ExecutionException when the statement has no such parameter.
    std::size_t placeOf(const QString& name);
    /// Throws ExecutionException when a place was never asked for: nothing can be bound there.
    void requireAll() const;

private:
    std::vector<QString> m_names;
    std::vector<bool> m_asked;
    // Every row is bound in the same order: after which parameter which other one was asked for last.
    std::vector<std::size_t> m_following;
    std::size_t m_last = 0;
};

} // namespace DataAccess::Database
