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

/// Runs the tool to its end; a server's password is in its environment.
Run tool(const QStringList& arguments, const QByteArray& input = {});
/// Starts the tool.
std::unique_ptr<QProcess> startTool(const QStringList& arguments);
/// Starts the tool as a process that cannot write more than @p blocks kibibytes into one file.
Run toolOnFullDisk(const QStringList& arguments, int blocks);

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

void execute(const std::shared_ptr<DataAccess::Interfaces::IConfig>& config, const QStringList& statements);
void execute(const QString& path, const QStringList& statements);
QByteArray bytesOf(const QString& path);
/// The dump of a database; fails the process when there is none.
QByteArray dumpOf(const QString& address);
