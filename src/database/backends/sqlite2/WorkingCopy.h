#pragma once

#include "database/DataAccessExport.h"

#include <QSqlDatabase>
#include <QString>

namespace DataAccess::Database::Sqlite2 {

class LockedFile;

/// A connection of Qt's SQLite driver that is in no list of connections, and so bound to no name and no thread.
class PrivateConnection : public QSqlDatabase
{
public:
    PrivateConnection()
        : QSqlDatabase(QStringLiteral("QSQLITE"))
    {}
};

/**
 * The SQLite 3 database beside a legacy file that stands in for it: NAME.sqlite3 for NAME. It is made once, from then
 * on all changes go to it, and the legacy file is never written.
 *
 * The copy carries a fingerprint of the legacy file. Should that change later, nobody can tell which of the two holds
 * the truth, so neither is used until the user has decided.
 */
class WorkingCopy
{
public:
    explicit WorkingCopy(const QString& legacyPath);

    const QString& path() const { return m_path; }

    /// Makes the copy, whole or not at all, unless there is one, and makes sure that it is one of the legacy file as it
    /// is now. Throws LegacyFileError, whose text is a whole message for the user.
    void prepare();

private:
    void requireWritable(const QString& path) const;
    void make(LockedFile& legacy, const QByteArray& fingerprint) const;
    void write(const QString& path, LockedFile& legacy, const QByteArray& fingerprint) const;
    void verify(const QByteArray& fingerprint) const;

    QString m_legacyPath;
    QString m_path;
};

} // namespace DataAccess::Database::Sqlite2

namespace DataAccess::Database {

/// The file that changes of the legacy file @p path are kept in.
DATAACCESS_EXPORT QString workingCopyOf(const QString& path);

/**
 * Copies the legacy file @p from to @p to, as it is at one moment, together with what belongs to it: its journal, and
 * its working copy if there is one. Nothing beside @p from is made or changed. What is there under the new names is
 * replaced once everything is written, the working copy last: until then what applications open is the old one, or,
 * when another legacy file takes the place of the old, is refused with a reason. Throws std::runtime_error.
 */
DATAACCESS_EXPORT void copyLegacyFile(const QString& from, const QString& to);

} // namespace DataAccess::Database
