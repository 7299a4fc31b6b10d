#include "database/backends/ParameterNames.h"

#include "database/DbException.h"
#include "database/private/StatementError.h"

#include <algorithm>
#include <utility>

namespace DataAccess::Database {

ParameterNames::ParameterNames(std::vector<QString> names)
    : m_names(std::move(names))
    , m_asked(m_names.size(), false)
    , m_following(m_names.size(), 0)
{}

std::size_t ParameterNames::placeOf(const QString& name)
{
    if (!m_names.empty() && m_asked[m_following[m_last]] && m_names[m_following[m_last]] == name)
        return m_last = m_following[m_last];
    const auto found = std::find(m_names.begin(), m_names.end(), name);
    if (found == m_names.end()) {
        const QString text = QStringLiteral("The statement has no parameter %1").arg(name);
        throw Exceptions::ExecutionException(text.toLocal8Bit().constData());
    }
    const auto place = static_cast<std::size_t>(found - m_names.begin());
    m_asked[place] = true;
    m_following[m_last] = place;
    return m_last = place;
}

void ParameterNames::requireAll() const
{
    if (std::find(m_asked.begin(), m_asked.end(), false) != m_asked.end())
        throwStatementError(QStringLiteral("Parameter count mismatch"));
}

} // namespace DataAccess::Database
