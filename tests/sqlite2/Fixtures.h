#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace TestSupport {

/// Path of a file in the folder of the fixtures.
QString fixturePath(const QString& name);
/// The whole file at @p path; fails the test when it can't be read.
QByteArray fileBytes(const QString& path);
/// What the library that made NAME.db said of its content: NAME.json.
QJsonObject expectedContent(const QString& name);
/// A row for each sound database NAME.db in the folder of the fixtures, with its NAME in the column "name".
void addSoundDatabases();

/// A copy of a fixture in a folder of its own, where a driver may put its working copy.
class LegacyCopy
{
public:
    /// Copies @p name, which may have a folder before it, and its journal.
    explicit LegacyCopy(const QString& name);

    const QString& path() const { return m_path; }
    QString workingCopy() const;
    QString folder() const { return m_folder.path(); }
    /// The names of all files in the folder.
    QStringList files() const;
    /// Whether the file and its journal are byte for byte those of the fixture.
    bool isUnchanged() const;

private:
    QTemporaryDir m_folder;
    QString m_source;
    QString m_path;
};

} // namespace TestSupport
