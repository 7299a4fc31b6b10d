#include "support/TestMain.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <vector>

namespace TestSupport {

namespace {

std::vector<std::function<std::unique_ptr<QObject>()>>& tests()
{
    static std::vector<std::function<std::unique_ptr<QObject>()>> registered;
    return registered;
}

} // namespace

bool registerTest(std::function<std::unique_ptr<QObject>()> create)
{
    tests().push_back(std::move(create));
    return true;
}

} // namespace TestSupport

int main(int argc, char** argv)
{
    // Nothing of the user's own is read or written: settings and data live in a folder that ends with the tests.
    const QTemporaryDir home;
    for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(variable, home.path().toLocal8Bit());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, home.filePath(QStringLiteral("user")));
    QSettings::setPath(QSettings::IniFormat, QSettings::SystemScope, home.filePath(QStringLiteral("system")));

    const QCoreApplication application(argc, argv);
    int failed = 0;
    for (const auto& create : TestSupport::tests())
        failed += QTest::qExec(create().get(), argc, argv);
    if (TestSupport::tests().empty())
        std::fputs("no tests registered\n", stderr);
    return failed == 0 && !TestSupport::tests().empty() ? 0 : 1;
}
