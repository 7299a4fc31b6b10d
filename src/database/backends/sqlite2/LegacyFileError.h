#pragma once

#include <QString>

#include <stdexcept>

namespace DataAccess::Database::Sqlite2 {

/// Why a legacy file can't be opened: damaged, unreadable, locked, changed, or its working copy can't be made.
class LegacyFileError : public std::runtime_error
{
public:
    explicit LegacyFileError(const QString& text)
        : std::runtime_error(text.toStdString())
    {}

    /// A sentence or part of one, for the user.
    QString text() const { return QString::fromUtf8(what()); }
};

} // namespace DataAccess::Database::Sqlite2
