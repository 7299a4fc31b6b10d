#pragma once

#include <QString>

#include <optional>
#include <vector>

class QTextStream;

namespace Bench {

/// One line of the table: what one operation costs in each of the ways to do it.
struct Measurement
{
    QString pass;    ///< How the time zone was set.
    QString backend; ///< Empty for what needs no database.
    QString subject; ///< What was read or written.
    QString operation;
    QString unit;
    double library = 0;
    std::optional<double> bare;   ///< Through the database's own interface, with the library's entities.
    std::optional<double> plain;  ///< The same with plain structures.
    std::optional<double> byHand; ///< Through Qt SQL, as an application would write it.
};

/// How the cost of one operation, or of one row of it, changes with the size of what is there.
struct Growth
{
    QString backend;
    QString operation;
    std::vector<std::pair<int, double>> microseconds; ///< By the size.
};

/// Collects the results, prints each as it comes, and writes them all as JSON.
class Report
{
public:
    explicit Report(QTextStream& out);

    /// What the measurements that follow have in common; printed as a headline.
    void beginPass(const QString& name);
    void add(Measurement measurement);
    /// Begins the table of growth, too, with the first one.
    void add(const Growth& growth);
    /// Prints the ratios of the first pass alone, the kinds of rows side by side: the table of the README.
    void summarize();
    /// False when @p fileName cannot be written.
    bool writeJson(const QString& fileName) const;

private:
    void printLine(const QStringList& cells);
    void printHead(const QStringList& cells);

    QTextStream& m_out;
    QString m_pass;
    std::vector<Measurement> m_measurements;
    std::vector<Growth> m_growths;
};

} // namespace Bench
