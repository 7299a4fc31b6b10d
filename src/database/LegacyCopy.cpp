#include "database/LegacyCopy.h"

#include "database/FilePublication.h"
#include "database/SqliteBackup.h"
#include "database/sqlite2/LegacyFileError.h"
#include "database/sqlite2/LockedFile.h"
#include "database/sqlite2/WorkingCopy.h"

#include <QFile>

namespace DataAccess::Database {

using namespace Sqlite2;

namespace {

void publishCopy(QIODevice& content, const QString& original, const QString& path)
{
    QFile file(unfinishedName(path));
    file.remove();
    createFileLike(file.fileName(), original);
    bool isWritten = file.open(QIODevice::WriteOnly);
    constexpr qint64 part = 1 << 20;
    while (isWritten && !content.atEnd()) {
        const QByteArray bytes = content.read(part);
        isWritten = !bytes.isEmpty() && file.write(bytes) == bytes.size();
    }
    if (!isWritten || !file.flush())
        throw LegacyFileError(QStringLiteral("%1 can't be written: %2").arg(path, file.errorString()));
    file.close();
    publishFile(file.fileName(), path);
}

} // namespace

void copyLegacyFile(const QString& from, const QString& to)
{
    LockedFile legacy(from);
    const QString copy = WorkingCopy(from).path();
    const QString copyOfCopy = WorkingCopy(to).path();
    QFile::remove(copyOfCopy);
    if (QFile::exists(copy)) {
        const QString unfinished = unfinishedName(copyOfCopy);
        QFile::remove(unfinished);
        createFileLike(unfinished, copy);
        backupSqlite(copy, unfinished, true);
        publishFile(unfinished, copyOfCopy);
    }
    const QString journal = QStringLiteral("-journal");
    QFile::remove(to + journal);
    if (legacy.journal() != nullptr)
        publishCopy(*legacy.journal(), from, to + journal);
    publishCopy(legacy.file(), from, to);
}

} // namespace DataAccess::Database
