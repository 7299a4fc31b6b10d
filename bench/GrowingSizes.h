#pragma once

#include "bench/BenchDatabase.h"
#include "bench/Report.h"
#include "bench/Stopwatch.h"

namespace Bench {

/// The costs of the operations of one backend, measured at one size after another.
class GrowingSizes
{
public:
    explicit GrowingSizes(DataAccess::Enumerations::DatabaseType type)
        : m_backend(backendName(type))
    {}

    /// Notes what one of the @p operations that @p work does costs at @p size.
    template <typename Work>
    void time(const char* operation, int size, int operations, const Work& work)
    {
        const QString name = QString::fromUtf8(operation);
        auto growth = std::find_if(m_growths.begin(), m_growths.end(),
                                   [&](const Growth& each) { return each.operation == name; });
        if (growth == m_growths.end())
            growth = m_growths.insert(growth, {m_backend, name, {}});
        growth->microseconds.emplace_back(size, 1e6 * seconds(work) / operations);
    }

    void report(Report& report) const
    {
        for (const Growth& growth : m_growths)
            report.add(growth);
    }

private:
    QString m_backend;
    std::vector<Growth> m_growths;
};

} // namespace Bench
