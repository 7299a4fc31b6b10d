#pragma once

#include <QString>

#include <optional>
#include <vector>

class QTextStream;

namespace Bench {

/// One line of the table: what one operation costs in each of the three ways to do it.
struct Measurement
{
    QString pass;    ///< How the time zone was set.
    QString backend; ///< Empty for what needs no database.
    QString subject; ///< What was read or written.
    QString operation;
    QString unit;
    double library = 0;
    std::optional<double> bare;        ///< Through the database's own interface.
    std::optional<double> handWritten; ///< Through Qt SQL, as an application would write it.
    std::optional<double> aim;         ///< The most that library / bare should be.
};

/// How the cost of one row changes with the size of the table.
struct Growth
{
    QString backend;
    QString operation;
    std::vector<std::pair<int, double>> microseconds; ///< Of one row, by the number of rows.
};

/// Collects the results, prints each as it comes, and writes them all as JSON.
class Report
{
public:
    explicit Report(QTextStream& out);

    /// What the measurements that follow have in common; printed as a headline.
    void beginPass(const QString& name);
    void add(Measurement measurement);
    void add(const Growth& growth);
    /// False when @p fileName cannot be written.
    bool writeJson(const QString& fileName) const;

private:
    QTextStream& m_out;
    QString m_pass;
    QString m_sizes; // of the growth table last begun
    std::vector<Measurement> m_measurements;
    std::vector<Growth> m_growths;
};

} // namespace Bench
