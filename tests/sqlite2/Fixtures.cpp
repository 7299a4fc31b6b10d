#include "Fixtures.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTest>

namespace TestSupport {

QString fixturePath(const QString& name)
{
    return QStringLiteral(SQLITE2_FIXTURES "/") + name;
}

QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s can't be read", qPrintable(path));
    return file.readAll();
}

QJsonObject expectedContent(const QString& name)
{
    return QJsonDocument::fromJson(fileBytes(fixturePath(name + QLatin1String(".json")))).object();
}

void addSoundDatabases()
{
    QTest::addColumn<QString>("name");
    const QFileInfoList files = QDir(fixturePath(QString())).entryInfoList({QStringLiteral("*.db")});
    if (files.size() < 9)
        qFatal("the fixtures are incomplete");
    for (const QFileInfo& file : files)
        QTest::newRow(qPrintable(file.fileName())) << file.completeBaseName();
}

LegacyCopy::LegacyCopy(const QString& name)
    : m_source(fixturePath(name))
    , m_path(m_folder.filePath(QFileInfo(name).fileName()))
{
    for (const char* const suffix : {"", "-journal"}) {
        const QString end = QLatin1String(suffix);
        if (QFile::exists(m_source + end) && !QFile::copy(m_source + end, m_path + end))
            qFatal("%s can't be copied", qPrintable(m_source + end));
    }
}

QString LegacyCopy::workingCopy() const
{
    return m_path + QLatin1String(".sqlite3");
}

QStringList LegacyCopy::files() const
{
    return QDir(folder()).entryList(QDir::Files | QDir::Hidden);
}

bool LegacyCopy::isUnchanged() const
{
    const QString journal = QStringLiteral("-journal");
    return fileBytes(m_path) == fileBytes(m_source) &&
           QFile::exists(m_path + journal) == QFile::exists(m_source + journal) &&
           (!QFile::exists(m_path + journal) || fileBytes(m_path + journal) == fileBytes(m_source + journal));
}

} // namespace TestSupport
