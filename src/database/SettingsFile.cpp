#include "database/SettingsFile.h"

#include "database/LoggingCategories.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace DataAccess::Database {

namespace {

const QString s_organisation = QStringLiteral("Talvik");
const QString s_application = QStringLiteral("QOR");

} // namespace

SettingsFile::SettingsFile()
    : m_settings(QSettings::IniFormat, QSettings::UserScope, s_organisation, s_application)
{
    // Reads and writes letters beyond ASCII as they are; without it raw UTF-8 is taken for Latin-1.
    m_settings.setIniCodec("UTF-8");
}

void SettingsFile::save()
{
    // Before writing: the passwords must at no moment stand in a file that others may read.
    restrictPermissions();
    m_settings.sync();
    if (m_settings.status() != QSettings::NoError)
        qCCritical(lcDatabaseConfig) << "Can't write settings:" << m_settings.fileName();
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
    const QSettings settings(QSettings::IniFormat, QSettings::SystemScope, s_organisation, s_application);
    return settings.fileName().isEmpty() ? QString() : QFileInfo(settings.fileName()).absolutePath();
}

} // namespace DataAccess::Database
