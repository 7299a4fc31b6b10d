#pragma once

#include "NetworkData.h"

#include <QIODevice>

/// One file of HTML that shows a network: nothing in it is loaded from elsewhere.
class ReportPage
{
public:
    /// Both must outlive the page.
    ReportPage(const NetworkData& data, QIODevice& file);

    /// @p title names the database. Throws std::runtime_error when the file can't be written.
    void write(const QString& title);

private:
    void writePlan();
    void writeTable();
    void writeCable(const CableRow& cable, int place);
    QString bar(const CableRow& cable, const PhaseRow& phase, double length, int y) const;
    QString events(const TestRow& test, double length) const;
    QString stationName(const QString& id) const;
    void put(const QString& text);

    const NetworkData& m_data;
    QIODevice& m_file;
};
