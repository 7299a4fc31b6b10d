#include "database/private/SettingsFile.h"

#include "database/LoggingCategories.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>

namespace DataAccess::Database {

namespace {

const QString s_organisation = QStringLiteral("Talvik");
const QString s_application = QStringLiteral("QOR");

/// The folder in which the settings of @p scope lie. QSettings reads its files when it is made, and so it is asked
/// for a file that does not exist.
QString folderOf(QSettings::Scope scope)
{
    const QSettings settings(QSettings::IniFormat, scope, s_organisation + QStringLiteral(".folder"));
    return settings.fileName().isEmpty() ? QString() : QFileInfo(settings.fileName()).absolutePath();
}

bool isReadable(const QString& path)
{
    const QFileInfo file(path);
    if (!file.exists() || file.isFile())
        return true;
    qCCritical(lcDatabaseConfig) << "Can't read settings:" << path << "is no regular file";
    return false;
}

} // namespace

std::unique_ptr<SettingsFile> SettingsFile::open()
{
    // QSettings falls back to the files of the organisation and of all users.
    for (const QSettings::Scope scope : {QSettings::UserScope, QSettings::SystemScope}) {
        const QString organisation = folderOf(scope) + QLatin1Char('/') + s_organisation;
        if (!isReadable(organisation + QLatin1Char('/') + s_application + QStringLiteral(".ini")) ||
            !isReadable(organisation + QStringLiteral(".ini")))
            return nullptr;
    }
    return std::unique_ptr<SettingsFile>(new SettingsFile);
}

SettingsFile::SettingsFile()
    : m_settings(QSettings::IniFormat, QSettings::UserScope, s_organisation, s_application)
{
    // Reads and writes letters beyond ASCII as they are; without it raw UTF-8 is taken for Latin-1.
    m_settings.setIniCodec("UTF-8");
}

bool SettingsFile::prepareChange()
{
    if (!replaceLink())
        return false;
    // The passwords must at no moment stand in a file that others may read.
    restrictPermissions();
    return true;
}

void SettingsFile::save()
{
    m_settings.sync();
    if (m_settings.status() != QSettings::NoError)
        qCCritical(lcDatabaseConfig) << "Can't write settings:" << m_settings.fileName();
}

bool SettingsFile::replaceLink() const
{
    const QString path = m_settings.fileName();
    const QFileInfo link(path);
    if (!link.isSymLink())
        return true;
    const auto refuse = [&path](const QString& reason) {
        qCCritical(lcDatabaseConfig) << "Can't write settings:" << path << reason;
        return false;
    };
    const QString target = link.symLinkTarget();
    QFile present(path);
    if (link.exists() && !present.open(QIODevice::ReadOnly))
        return refuse(present.errorString());
    const QByteArray content = present.isOpen() ? present.readAll() : QByteArray();
    // Made so that only its user may read it.
    QTemporaryFile file(path + QStringLiteral(".XXXXXX"));
    if (!file.open() || file.write(content) != content.size() || !file.flush())
        return refuse(file.errorString());
    if (std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(path).constData()) != 0)
        return refuse(qt_error_string(errno));
    file.setAutoRemove(false);
    qCWarning(lcDatabaseConfig) << "The settings file" << path << "is no link to" << target
                                << "any more: settings are not written through links";
    return true;
}

void SettingsFile::restrictPermissions() const
{
    constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    QFile file(m_settings.fileName());
    // An empty file is made first, and keeps its permissions; one that Qt makes others may read.
    if (!file.exists() && QDir().mkpath(QFileInfo(file).absolutePath()) && file.open(QIODevice::NewOnly))
        file.close();
    if (file.exists() && file.permissions() != ownerOnly)
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
}

QString SettingsFile::systemFolder()
{
    const QString folder = folderOf(QSettings::SystemScope);
    return folder.isEmpty() ? QString() : folder + QLatin1Char('/') + s_organisation;
}

} // namespace DataAccess::Database
