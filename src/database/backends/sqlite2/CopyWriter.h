#pragma once

#include "database/backends/sqlite2/LegacyFile.h"

#include <QSqlDatabase>

namespace DataAccess::Database::Sqlite2 {

/// Writes the content of a legacy file into an empty SQLite 3 database.
class CopyWriter
{
public:
    /// @p connection is open on a database that may be lost when writing fails.
    explicit CopyWriter(const QSqlDatabase& connection);

    /**
     * Writes everything in one transaction, and @p fingerprint into the table legacyOriginTable. Rows keep their ids.
     * Indexes, views and triggers that SQLite 3 does not understand are left out, with a warning in the log. Throws
     * LegacyFileError.
     */
    void write(LegacyFile& file, const QByteArray& fingerprint);

private:
    void exec(const QByteArray& sql);
    void setCacheSize(quint32 kibibytes);
    bool hasIndex(const QByteArray& table);
    void writeRows(LegacyFile& file, const LegacyFile::Table& table);
    void writeObject(const LegacyFile::Object& object);
    /// Returns why SQLite 3 refuses it; empty when it does not.
    QString create(const LegacyFile::Object& object);
    QByteArray trialStatement(const LegacyFile::Object& object);

    QSqlDatabase m_connection;
};

} // namespace DataAccess::Database::Sqlite2
