#pragma once

#include "transfer/private/DirectDatabase.h"

#include <QString>

/// A database as it is named on the command line.
struct DatabaseAddress
{
    DataAccess::Transfer::ConnectionSettings settings;
    /// For messages: the path, or server and name.
    QString text;

    bool isPostgres() const { return settings.type == DataAccess::Enumerations::Postgres; }
    /// Whether it is a file of SQLite 2.
    bool isLegacy() const { return settings.type == DataAccess::Enumerations::SQLite2; }
    /// The path of a file; empty for a database on a server.
    QString path() const { return isPostgres() ? QString() : settings.name; }
    bool exists() const;
    /// Throws ToolError unless there is such a file; a server is asked when it is opened.
    void requireExists() const;

    /**
     * Understands a path, "@name" of a stored configuration and "postgresql://...". Throws ToolError for what is none
     * of them, and for an address with a password: the command line can be read by everybody.
     */
    static DatabaseAddress parse(const QString& argument);
    /// The database of a stored configuration.
    static DatabaseAddress of(DataAccess::Interfaces::IConfig& config);
};

/// What a file is, told by its first bytes.
enum class FileKind { Missing, Empty, SQLite2, SQLite3, PostgresArchive, Other };
FileKind kindOf(const QString& path);

/// Whether writing the file @p output would replace the file @p input or what belongs to it, whatever their names.
bool isReplaced(const QString& input, const QString& output);
/// Throws ToolError when it would.
void refuseToReplace(const QString& input, const QString& output);
