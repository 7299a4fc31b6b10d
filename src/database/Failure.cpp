#include "database/Failure.h"

#include <algorithm>

namespace DataAccess::Database {

namespace {

thread_local FailureWatch* t_innermost = nullptr;

} // namespace

FailureWatch::FailureWatch()
    : m_outer(t_innermost)
{
    t_innermost = this;
}

FailureWatch::~FailureWatch()
{
    t_innermost = m_outer;
}

void FailureWatch::report(const Failure& failure)
{
    for (FailureWatch* watch = t_innermost; watch != nullptr; watch = watch->m_outer)
        watch->m_failures.append(failure);
}

bool FailureWatch::isUnavailable() const
{
    return std::any_of(m_failures.begin(), m_failures.end(),
                       [](const Failure& failure) { return failure.kind == Failure::Kind::Unavailable; });
}

QString FailureWatch::reason() const
{
    return m_failures.isEmpty() ? QString() : m_failures.first().reason;
}

} // namespace DataAccess::Database
