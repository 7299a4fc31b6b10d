#include "context/ModelRun.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QTest>

using namespace TestSupport;

/// Contexts under random sequences of operations, beside a model of what their databases must hold. The environment
/// asks for more: DATAACCESS_TEST_MODEL_ROUNDS sequences, from the seed DATAACCESS_TEST_MODEL_SEED on.
class ModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomSequences_data() { addFamilies(); }
    void randomSequences();

private:
    static void addFamilies();
};

void ModelTest::addFamilies()
{
    QTest::addColumn<int>("backend");
    QTest::addColumn<bool>("isPd");
    using namespace DataAccess::Enumerations;
    QTest::newRow("cables, SQLite") << int(SQLite3) << false;
    QTest::newRow("cables, PostgreSQL") << int(Postgres) << false;
    QTest::newRow("tests, SQLite") << int(SQLite3) << true;
    QTest::newRow("tests, PostgreSQL") << int(Postgres) << true;
}

void ModelTest::randomSequences()
{
    QFETCH(bool, isPd);
    const int rounds = qEnvironmentVariableIntValue("DATAACCESS_TEST_MODEL_ROUNDS");
    const int first = qEnvironmentVariableIntValue("DATAACCESS_TEST_MODEL_SEED");
    const auto family = ModelFamily::make(isPd);
    // What fails is told each time, and is wanted here.
    const LogCapture log;
    for (int seed = first; seed < first + (rounds > 0 ? rounds : 12); ++seed) {
        const ModelSteps steps = randomSteps(unsigned(seed), 40);
        if (runModel(*family, steps).isEmpty())
            continue;
        const ModelSteps few = shrunk(*family, steps);
        QFAIL(qPrintable(QStringLiteral("seed %1: %2\n%3").arg(seed).arg(textFromSteps(few), runModel(*family, few))));
    }
}

DATAACCESS_TEST(ModelTest)

#include "ModelTest.moc"
