#include "database/DatabaseConfig.h"

#include "support/LogCapture.h"
#include "support/TestMain.h"
#include "support/UnprivilegedUser.h"

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

#include <sys/stat.h>

using namespace DataAccess::Enumerations;
using DataAccess::Database::DatabaseConfig;
using TestSupport::LogCapture;

namespace {

constexpr QFile::Permissions s_readOnly = QFile::ReadOwner | QFile::ReadOther;
constexpr QFile::Permissions s_usable = s_readOnly | QFile::WriteOwner | QFile::WriteOther;

/// The user's settings file, as any other program would open it.
struct Store : QSettings
{
    Store()
        : QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Talvik"), QStringLiteral("QOR"))
    {}
};

std::shared_ptr<DatabaseConfig> serverConfig(const QString& text)
{
    auto config = std::make_shared<DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(text);
    config->SetHostName(text);
    config->SetUserName(text);
    config->SetPassword(text);
    config->SetPort(5433);
    config->SetType(Postgres);
    return config;
}

void makeFile(const QString& path, QFile::Permissions permissions)
{
    QFile file(path);
    QVERIFY(QDir().mkpath(QFileInfo(path).absolutePath()) && file.open(QIODevice::WriteOnly));
    QVERIFY(file.setPermissions(permissions));
}

} // namespace

/// Configurations, their settings file and the default one.
class DatabaseConfigTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_home;

    QString path(const char* file) const { return m_home->filePath(QLatin1String(file)); }

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        QVERIFY(
            QFile::setPermissions(m_home->path(), s_readOnly | QFile::WriteOwner | QFile::ExeOwner | QFile::ExeOther));
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, path("user"));
        QSettings::setPath(QSettings::IniFormat, QSettings::SystemScope, path("system"));
        qputenv("XDG_DATA_HOME", QFile::encodeName(path("data")));
    }

    void validity()
    {
        DatabaseConfig config;
        config.SetType(SQLite3);
        config.SetConnectionName(QStringLiteral("name"));
        QVERIFY(!config.IsValid());
        config.SetDatabaseName(QStringLiteral("file"));
        QVERIFY(config.IsValid());
        config.SetType(Postgres);
        QVERIFY(!config.IsValid());
        config.SetHostName(QStringLiteral("host"));
        QVERIFY(config.IsValid());
        // A type that is none changes nothing, nor does any value under it.
        config.SetType(static_cast<DatabaseType>(4));
        config.SetDatabaseName(QString());
        config.SetType(None);
        QVERIFY(config.IsValid());
        config.SetType(SQLite2);
        QVERIFY(!config.IsValid());
    }

    void everyTextSurvivesTheSettings_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("list") << QStringLiteral("a, b,c");
        QTest::newRow("path") << QStringLiteral("C:\\new\\x41 folder\\\\server");
        QTest::newRow("comment") << QStringLiteral("before;after#more");
        QTest::newRow("quotes") << QStringLiteral("\"it's\"");
        QTest::newRow("percent") << QStringLiteral("100%20%1%U00e4");
        QTest::newRow("at") << QStringLiteral("@Invalid()");
        QTest::newRow("equals") << QStringLiteral("[a]=b/c");
        QTest::newRow("blanks") << QStringLiteral(" \tx\n ");
        QTest::newRow("letters") << QStringLiteral(u"\u00c4\u00df\u6570\u636e\u5e93\U00020000");
    }
    void everyTextSurvivesTheSettings()
    {
        QFETCH(QString, text);
        const auto config = serverConfig(text);
        DatabaseConfig::SetDefaultConfig(config);
        const auto stored = DatabaseConfig::GetConfiguartions();
        QCOMPARE(stored.size(), size_t(1));
        for (const auto& read : {stored.front(), DatabaseConfig::DefaultConfig()}) {
            QCOMPARE(read->ConnectionName(), config->ConnectionName());
            QVERIFY(read->Port() == 5433 && read->Type() == Postgres && read->IsValid());
            for (const QString& value : {read->DatabaseName(), read->HostName(), read->UserName(), read->Password()})
                QCOMPARE(value, text);
        }
    }

    void settingsArePrivate()
    {
        for (const bool existsWider : {false, true}) {
            if (existsWider)
                makeFile(Store().fileName(), s_usable);
            DatabaseConfig::AddConfig(serverConfig(QStringLiteral("secret")));
            const QFile::Permissions others =
                QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
            QVERIFY(!(QFile::permissions(Store().fileName()) & others));
            QVERIFY(QFile::remove(Store().fileName()));
        }
        QVERIFY(QFile::setPermissions(path("user/Talvik"), QFile::ReadOwner | QFile::ExeOwner));
        const TestSupport::UnprivilegedUser user;
        const LogCapture log;
        DatabaseConfig::AddConfig(serverConfig(QStringLiteral("secret")));
        QVERIFY(log.contains(QStringLiteral("Can't write settings: \"%1\"").arg(Store().fileName())));
        QVERIFY(!log.contains(QStringLiteral("secret")));
    }

    void addAndRemove()
    {
        const auto config = serverConfig(QStringLiteral("stored"));
        DatabaseConfig::AddConfig(config);
        config->SetPassword(QString());
        config->SetUserName(QStringLiteral("other"));
        config->SetPort(0);
        DatabaseConfig::AddConfig(config);
        const auto read = DatabaseConfig::GetConfiguartions().front();
        QCOMPARE(read->Password(), QStringLiteral("stored"));
        QCOMPARE(read->UserName(), QStringLiteral("other"));
        QCOMPARE(read->Port(), 5433U);
        // The spelling that is written is part of the format.
        QVERIFY(Store().contains(QStringLiteral("QOR/%1/Hostname").arg(config->ConnectionName())));
        const auto kept = serverConfig(QStringLiteral("kept"));
        DatabaseConfig::AddConfig(kept);
        DatabaseConfig::RemoveConfig(serverConfig(QStringLiteral("never stored")));
        DatabaseConfig::RemoveConfig(config);
        QCOMPARE(DatabaseConfig::GetConfiguartions().size(), size_t(1));
        QCOMPARE(DatabaseConfig::GetConfiguartions().front()->ConnectionName(), kept->ConnectionName());
    }

    void namelessIsNotRemoved()
    {
        DatabaseConfig::AddConfig(serverConfig(QStringLiteral("kept")));
        for (const char* const name : {"", "//"}) {
            const auto nameless = serverConfig(QStringLiteral("nameless"));
            nameless->SetConnectionName(QLatin1String(name));
            DatabaseConfig::AddConfig(nameless);
            const LogCapture log;
            DatabaseConfig::RemoveConfig(nameless);
            QVERIFY(log.contains(QStringLiteral("without a name")));
            QCOMPARE(DatabaseConfig::GetConfiguartions().size(), size_t(1));
        }
    }

    void noRegularFile_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("pipe") << QStringLiteral("user/Talvik/QOR.ini");
        QTest::newRow("pipe for the organisation") << QStringLiteral("user/Talvik.ini");
        QTest::newRow("pipe for all users") << QStringLiteral("system/Talvik/QOR.ini");
    }
    void noRegularFile()
    {
        QFETCH(QString, file);
        const QString pipe = m_home->filePath(file);
        QVERIFY(QDir().mkpath(QFileInfo(pipe).path()) && mkfifo(QFile::encodeName(pipe).constData(), 0600) == 0);
        const LogCapture log;
        const auto config = serverConfig(QStringLiteral("secret"));
        DatabaseConfig::AddConfig(config);
        DatabaseConfig::SetDefaultConfig(config);
        DatabaseConfig::RemoveConfig(config);
        QVERIFY(DatabaseConfig::GetConfiguartions().empty());
        QVERIFY(DatabaseConfig::DefaultConfig()->IsValid());
        const QStringList told = log.messages(QtCriticalMsg, QStringLiteral("qor.database.config"));
        QCOMPARE(told.count(QStringLiteral("Can't read settings: \"%1\" is no regular file").arg(pipe)), 5);
    }

    void linksAreReadAndNeverWritten_data()
    {
        QTest::addColumn<bool>("leadsSomewhere");
        QTest::newRow("to a file") << true;
        QTest::newRow("to nothing") << false;
    }
    void linksAreReadAndNeverWritten()
    {
        QFETCH(bool, leadsSomewhere);
        const QString store = Store().fileName();
        const QString foreign = path("foreign.ini");
        if (leadsSomewhere) {
            DatabaseConfig::AddConfig(serverConfig(QStringLiteral("of the file")));
            QVERIFY(QFile::rename(store, foreign) && QFile::setPermissions(foreign, s_usable));
        }
        QVERIFY(QDir().mkpath(QFileInfo(store).path()) && QFile::link(foreign, store));
        const auto stored = [] { return static_cast<int>(DatabaseConfig::GetConfiguartions().size()); };
        QCOMPARE(stored(), int(leadsSomewhere));
        QVERIFY(QFileInfo(store).isSymLink());
        const LogCapture log;
        DatabaseConfig::AddConfig(serverConfig(QStringLiteral("new")));
        QVERIFY(log.contains(QStringLiteral("is no link to \"%1\" any more").arg(foreign)));
        QCOMPARE(stored(), int(leadsSomewhere) + 1);
        QCOMPARE(QFileInfo::exists(foreign), leadsSomewhere);
        QVERIFY(!leadsSomewhere || QSettings(foreign, QSettings::IniFormat).allKeys().size() == 7);
        QVERIFY(!leadsSomewhere || QFile::permissions(foreign) & QFile::WriteOther);
        QVERIFY(!QFileInfo(store).isSymLink() && !(QFile::permissions(store) & QFile::ReadOther));
        QCOMPARE(QFileInfo(store).dir().entryList(QDir::Files), QStringList(QStringLiteral("QOR.ini")));
    }

    void groupsOfOthers()
    {
        DatabaseConfig::AddConfig(nullptr);
        DatabaseConfig::RemoveConfig(nullptr);
        DatabaseConfig::SetDefaultConfig(nullptr);
        QVERIFY(!QFile::exists(Store().fileName()));
        Store().setValue(QStringLiteral("qor/{a}/ConnectionName"), QStringLiteral("of another application"));
        QVERIFY(DatabaseConfig::GetConfiguartions().empty());

        const QString id = QUuid::createUuid().toString();
        Store().setValue(QStringLiteral("QOR/no identifier/ConnectionName"), QStringLiteral("x"));
        Store().setValue(QStringLiteral("QOR/%1/HostName").arg(id), id);
        const auto read = DatabaseConfig::GetConfiguartions();
        QCOMPARE(read.size(), size_t(2));
        for (const auto& config : read)
            QVERIFY(config->ConnectionName().isEmpty() && config->HostName().isEmpty());

        QFile file(Store().fileName()); // as somebody may write it with an editor
        QVERIFY(file.open(QIODevice::WriteOnly));
        const QByteArray group = "\n%7B" + id.mid(1, 36).toLatin1() + "%7D\\";
        file.write("[QOR]\nDefault=" + id.toLatin1() + group + "ConnectionName=x" + group + "Port=y" + group +
                   "HostName=h\xc3\xb6st\n");
        file.close();
        const auto written = DatabaseConfig::DefaultConfig();
        QCOMPARE(written->HostName(), QStringLiteral(u"h\u00f6st"));
        QVERIFY(written->ConnectionName() == QStringLiteral("x") && written->Port() == 0);
    }

    void defaultPath_data()
    {
        QTest::addColumn<int>("oldFile"); // its permissions; -1: there is none
        QTest::addColumn<int>("newFile");
        QTest::addColumn<bool>("usesOld");
        QTest::newRow("none") << -1 << -1 << false;
        QTest::newRow("old one only") << int(s_usable) << -1 << true;
        QTest::newRow("both") << int(s_usable) << int(s_usable) << false;
        QTest::newRow("new one read-only") << int(s_usable) << int(s_readOnly) << true;
        QTest::newRow("old one read-only") << int(s_readOnly) << -1 << false;
        QTest::newRow("both read-only") << int(s_readOnly) << int(s_readOnly) << false;
    }
    void defaultPath()
    {
        QFETCH(int, oldFile);
        QFETCH(int, newFile);
        QFETCH(bool, usesOld);
        const QString oldPath = path("data/Talvik/Talvik.vbk");
        const QString newPath = path("system/Talvik/Talvik.vbk");
        if (oldFile >= 0)
            makeFile(oldPath, QFile::Permissions(oldFile));
        if (newFile >= 0)
            makeFile(newPath, QFile::Permissions(newFile));
        const TestSupport::UnprivilegedUser user;
        const LogCapture log;
        const auto config = DatabaseConfig::DefaultConfig();
        QCOMPARE(config->DatabaseName(), usesOld ? oldPath : newPath);
        QCOMPARE(log.contains(QStringLiteral("Using old database path: \"%1\"").arg(oldPath)), usesOld);
        const auto says = [&](const QString& text) {
            return log.contains(QStringLiteral("[ \"%1\" ] ").arg(config->ConnectionName()) + text.arg(newPath));
        };
        QCOMPARE(says(QStringLiteral("File not exists: \"%1\"")), !usesOld && newFile < 0);
        QCOMPARE(says(QStringLiteral("Insufficient permissions: \"%1\" r: true w: false")),
                 !usesOld && newFile == int(s_readOnly));
    }

    void defaultConfig()
    {
        const auto fresh = DatabaseConfig::DefaultConfig();
        QVERIFY(fresh->IsValid() && !QUuid(fresh->ConnectionName()).isNull());
        QVERIFY(fresh->ConnectionName() != DatabaseConfig::DefaultConfig()->ConnectionName());
        QVERIFY(!QFile::exists(Store().fileName()));
        // A record of a configuration that is gone, and one that is no identifier, count as none.
        for (const QString& stale : {QUuid::createUuid().toString(), QStringLiteral("none")}) {
            Store().setValue(QStringLiteral("QOR/Default"), stale);
            const LogCapture log;
            QCOMPARE(DatabaseConfig::DefaultConfig()->DatabaseName(), fresh->DatabaseName());
            QCOMPARE(DatabaseConfig::DefaultConfig()->Type(), SQLite3);
            QVERIFY(log.contains(QStringLiteral("The settings have no configuration")));
        }
    }
};

DATAACCESS_TEST(DatabaseConfigTest)
#include "DatabaseConfigTest.moc"
