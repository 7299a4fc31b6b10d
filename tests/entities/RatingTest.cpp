#include "entities/cables/Rating.h"

#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <cmath>
#include <functional>
#include <limits>

using namespace QOR::Entities::Enumerations;
using Cables::Entities::Rating;

using Change = std::function<void(Rating&)>;
Q_DECLARE_METATYPE(Change)

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
const QString segment = QStringLiteral("{a9e63935-52ba-467d-8b82-d1ab111192f8}");

/// A document with members of other makers at each level, and with some of the wrong kind.
const QString foreignText = QStringLiteral(R"( { "maker": {"phases": [1, null]}, "big": 4294967296,
    "phases": { "0": { "segments": { "s": 2.5, "note": "text" }, "color": [true], "summary": 3 }, "list": [] } } )");

Rating normalRating(const QString& text)
{
    Rating rating;
    rating.SetRating(text);
    rating.SetEntityState(Normal);
    return rating;
}

QJsonObject parsed(const QString& text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

} // namespace

/// The document of a rating.
class RatingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsKeptUntilAValueChanges_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("null") << QString();
        QTest::newRow("empty") << QStringLiteral("");
        QTest::newRow("no JSON") << QStringLiteral("-1 {");
        QTest::newRow("array") << QStringLiteral("[{\"phases\":{}}]");
        QTest::newRow("spaced and foreign") << foreignText;
        QTest::newRow("repeated member") << QStringLiteral("{\"a\":1,\"a\":2}");
        QTest::newRow("lone surrogate") << QString(QChar(0xd800));
    }
    void textIsKeptUntilAValueChanges()
    {
        QFETCH(QString, text);
        Rating rating;
        rating.SetRating(QStringLiteral("before"));
        QCOMPARE(rating.isEmpty(), true);
        rating.SetRating(text);
        rating.SetEntityState(Normal);
        // Reading, and changes that change nothing.
        QVERIFY(std::isnan(rating.value(7, QStringLiteral("s"))));
        rating.setValue(7, QStringLiteral("s"), none);
        rating.setSummary(none, 7);
        rating.removePhase(QStringLiteral("7"));
        rating.SetRating(text);
        QCOMPARE(rating.JsonFromRating(), text);
        QCOMPARE(rating.JsonFromRating().isNull(), text.isNull());
        QCOMPARE(rating.EntityState(), Normal);

        QJsonObject expected = parsed(text);
        rating.setSummary(4, 7);
        QCOMPARE(rating.EntityState(), Modified);
        QJsonObject phases = expected.value(QLatin1String("phases")).toObject();
        phases.insert(QStringLiteral("7"), QJsonObject{{QStringLiteral("summary"), 4}});
        expected.insert(QStringLiteral("phases"), phases);
        QCOMPARE(parsed(rating.JsonFromRating()), expected);
        QCOMPARE(rating.rating(), expected);
    }

    void change_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<Change>("apply");
        QTest::addColumn<QString>("expected");
        const QString one = QStringLiteral(R"({"phases":{"0":{"segments":{"s":1}}}})");
        const QString two = QStringLiteral(R"({"phases":{"0":{"segments":{"s":1,"t":2}}}})");
        const QString s = QStringLiteral("s");
        const QString t = QStringLiteral("t");
        const double infinite = std::numeric_limits<double>::infinity();
        const QString spelled = QStringLiteral(R"({"phases":{"0":{"segments":{"s":10.0e-1}}}})");
        const QString wrongKinds = QStringLiteral(R"({"phases":{"0":[1]}})");
        const QString summed = QStringLiteral(R"({"phases":{"0":{"segments":{"s":1,"t":2},"summary":-0.5}}})");
        const QString nothing = QStringLiteral("{}");
        const auto row = [](const char* name, const QString& text, const QString& expected, const Change& apply) {
            QTest::newRow(name) << text << apply << expected;
        };

        row("first value", QString(), one, [=](Rating& r) { r.setValue(0, s, 1); });
        row("second value", one, two, [=](Rating& r) { r.setValue(0, t, 2); });
        row("same value", one, one, [=](Rating& r) { r.setValue(0, s, 1); });
        row("same value, spelled otherwise", spelled, spelled, [=](Rating& r) { r.setValue(0, s, 1); });
        row("infinite value", one, nothing, [=](Rating& r) { r.setValue(0, s, infinite); });
        row("wrong kinds", wrongKinds, one, [=](Rating& r) { r.setValue(0, s, 1); });
        row("other phase's value", one, one, [=](Rating& r) { r.removeValue(1, s); });
        row("value by phase index", two, one, [=](Rating& r) { r.removeValue(0, t); });
        row("value by phase key", two, one, [=](Rating& r) { r.removeValue(QStringLiteral("0"), t); });
        row("summary", two, summed, [](Rating& r) { r.setSummary(-0.5, 0); });
        row("phase", two, nothing, [](Rating& r) { r.removePhase(QStringLiteral("0")); });
        row("same document", two, two, [=](Rating& r) { r.SetRating(parsed(two)); });
        row("other document", two, one, [=](Rating& r) { r.setFromJson(parsed(one)); });
        row("empty document for none", QString(), nothing, [](Rating& r) { r.SetRating(QJsonObject()); });
        row("foreign members", foreignText,
            QStringLiteral(R"({"big":4294967296,"maker":{"phases":[1,null]},)"
                           R"("phases":{"0":{"color":[true],"segments":{"note":"text"}},"list":[]}})"),
            [=](Rating& r) {
                r.setValue(0, t, 8);
                r.removeValue(0, s);
                r.removeValue(0, t);
                // The text is no value, and so not removed as one.
                r.removeValue(0, QStringLiteral("note"));
                QVERIFY(!r.isEmpty());
                r.setSummary(none, 0);
                QVERIFY(r.isEmpty());
            });
        row("no text for an empty one", QStringLiteral(""), QString(), [](Rating& r) { r.SetRating(QString()); });
    }
    void change()
    {
        QFETCH(QString, text);
        QFETCH(Change, apply);
        QFETCH(QString, expected);
        Rating rating = normalRating(text);
        apply(rating);
        QCOMPARE(rating.JsonFromRating(), expected);
        QCOMPARE(rating.JsonFromRating().isNull(), expected.isNull());
        const bool same = text == expected && text.isNull() == expected.isNull();
        QCOMPARE(rating.EntityState(), same ? Normal : Modified);
    }

    void valuesSurviveAsText()
    {
        for (const double value : {0.1, 1.0 / 3, -0.0, 1e308, 5e-324, 9007199254740993.0, -123456789.125}) {
            Rating written;
            written.setValue(2, segment, value);
            written.setSummary(value, 0);
            const Rating read = normalRating(written.JsonFromRating());
            QVERIFY(std::equal_to<>()(read.value(2, segment), value));
            QVERIFY(std::equal_to<>()(read.summary(0), value));
            QVERIFY(std::isnan(read.summary(2)));
            QVERIFY(read.hasValue(2, segment));
            QVERIFY(!read.isEmpty());
        }
    }

    void keysAreThoseWithValues()
    {
        Rating rating = normalRating(foreignText);
        rating.setSummary(1, 2);
        QCOMPARE(rating.phaseKeys(), (QStringList{QStringLiteral("0"), QStringLiteral("2")}));
        QCOMPARE(rating.segmentKeysForPhase(0), QStringList(QStringLiteral("s")));
        QCOMPARE(rating.segmentKeysForPhase(QStringLiteral("2")), QStringList());
        QVERIFY(!rating.hasValue(0, QStringLiteral("note")));
    }

    void idsInAnySpellingAreTheSameSegment()
    {
        Rating rating;
        rating.setValue(0, segment, 1);
        rating.setValue(0, segment.toUpper(), 2);
        rating.setValue(0, QStringLiteral("17"), 3);
        rating.setValue(1, segment, 4);
        const QMultiMap<QUuid, double> values = rating.ratingValuesBySegmentId(0);
        QCOMPARE(values.size(), 2);
        QVERIFY(values.contains(QUuid(segment), 1) && values.contains(QUuid(segment), 2));
    }

    void fingerprintStandsForTheValuesOfASegment()
    {
        const QUuid id(segment);
        Rating rating;
        rating.setValue(1, segment, -1);
        rating.setValue(0, segment, 2.5);
        // From another implementation of the hash: it must never change.
        QCOMPARE(rating.segmentIdFingerprint(id), 1072421999U);

        rating.setValue(0, QStringLiteral("17"), 3);
        rating.setSummary(3, 0);
        const Rating spaced =
            normalRating(QString::fromUtf8(QJsonDocument(rating.rating()).toJson(QJsonDocument::Indented)));
        QCOMPARE(spaced.segmentIdFingerprint(id), 1072421999U);
        QCOMPARE(spaced.segmentIdFingerprint(QUuid()), Rating().segmentIdFingerprint(id));

        rating.setValue(1, segment, 1);
        QVERIFY(rating.segmentIdFingerprint(id) != 1072421999U);
    }
};

DATAACCESS_TEST(RatingTest)
#include "RatingTest.moc"
