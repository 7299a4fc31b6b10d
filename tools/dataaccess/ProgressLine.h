#pragma once

#include <QElapsedTimer>
#include <QString>

/// Shows how far a long operation is on standard error: as a bar on a terminal, as a plain line now and then otherwise.
class ProgressLine
{
public:
    /// @p unit is what is counted: "rows".
    ProgressLine(QString what, QString unit, bool isShown);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Of @p total, which is 0 when it is not known. False when the user wants to end the program.
    bool show(qint64 done, qint64 total);

private:
    QString text(qint64 done, qint64 total) const;

    QString m_what;
    QString m_unit;
    bool m_isShown;
    bool m_isTerminal;
    bool m_hasBar = false;
    QElapsedTimer m_begin;
    qint64 m_next = 0; // when to show something again, in milliseconds after the beginning
};
