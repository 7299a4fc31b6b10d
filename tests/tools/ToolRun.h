#pragma once

#include "support/TestDatabase.h"

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// How a run of the tool ended.
struct Run
{
    int exitCode = -1;
    QByteArray output;
    QString error;

    QJsonObject document() const;
};

/// Starts the tool with the words of @p command and the arguments; a server's password is in its environment.
std::unique_ptr<QProcess> startTool(const char* command, const QStringList& arguments = {});
/// Runs it to its end.
Run tool(const char* command, const QStringList& arguments = {}, const QByteArray& input = {});
/// The same as a process that cannot write more than @p blocks kibibytes into one file.
Run toolOnFullDisk(const char* command, const QStringList& arguments, int blocks);

/// The database as it is named on the command line.
QString addressOf(const TestSupport::TestDatabase& database);
/// A file with the network and the measurements of the quickstart, in a folder that goes with the object.
class Sample
{
public:
    Sample();

    QString path() const { return file("sample.vbk"); }
    QString file(const char* name) const { return m_folder.filePath(QString::fromLatin1(name)); }
    QStringList files() const;

private:
    QTemporaryDir m_folder;
};

/// Runs statements, separated by "; ", on a database or on a file of SQLite.
void execute(const std::shared_ptr<DataAccess::Interfaces::IConfig>& config, const char* statements);
void execute(const QString& path, const char* statements,
             DataAccess::Enumerations::DatabaseType type = DataAccess::Enumerations::SQLite3);
QByteArray bytesOf(const QString& path);
/// The dump of a database; fails the process when there is none.
QByteArray dumpOf(const QString& address);
