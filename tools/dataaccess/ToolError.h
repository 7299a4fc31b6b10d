#pragma once

#include <QString>

#include <stdexcept>

/// What the process ends with.
enum ExitCode {
    Succeeded = 0,
    Failed = 1,
    WrongUsage = 2,
    FaultsFound = 3,
    NewerSchema = 4,
    MigrationNeeded = 5,
    Unavailable = 6, ///< Locked or not reachable: trying again later may help.
};

/// Why a command ends without success: one sentence, and what to do next.
class ToolError : public std::runtime_error
{
public:
    ToolError(ExitCode code, const QString& text, const QString& advice = {})
        : std::runtime_error(text.toStdString())
        , m_code(code)
        , m_text(text)
        , m_advice(advice)
    {}

    ExitCode code() const { return m_code; }
    const QString& text() const { return m_text; }
    const QString& advice() const { return m_advice; }

private:
    ExitCode m_code;
    QString m_text;
    QString m_advice;
};
