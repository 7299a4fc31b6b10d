#include "context/ContextDatabase.h"
#include "context/SampleNetwork.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QRandomGenerator>
#include <QSet>
#include <QTest>

#include <tuple>

using namespace Cables::Entities;
using namespace DataAccess;
using namespace QOR::Entities::Enumerations;
using namespace TestSupport;
using Context::CableContext;

namespace {

/// Stations, "number name city latitude", or details, "number name velocity insulation type", in a short form,
/// separated by commas. A detail has an insulation and a type of its own: the velocity of the one, and whether joints
/// are of the other, are given. What is not known is "-". Behind the number: of what is in the source, + when it was
/// written later than what is in the target, and in the target ! when it is renamed after that was loaded.
using Things = std::vector<std::shared_ptr<QOR::Entities::Entity>>;

QStringList split(const QString& text)
{
    return text.split(QStringLiteral(", "), Qt::SkipEmptyParts);
}

Things makeThing(const QString& text)
{
    const QStringList words = text.split(QLatin1Char(' '));
    const QString number = words.at(0).left(1);
    const QString side = words.at(0).mid(1);
    const QDateTime time = QDateTime::currentDateTimeUtc().addDays(side == QLatin1String("+") ? 0 : -1);
    Things things;
    const auto make = [&](auto thing, const QString& name) {
        thing->SetId(sampleId(number + name));
        thing->SetTimestamp(time);
        things.push_back(thing);
        return thing;
    };
    if (words.size() == 4) {
        const auto station = make(std::make_shared<Station>(), QString());
        station->SetName(words.at(1));
        station->SetCity(words.at(2) == QLatin1String("-") ? QString() : words.at(2));
        if (words.at(3) == QLatin1String("-"))
            return things;
        const auto point = make(std::make_shared<Point>(), QStringLiteral("point"));
        point->setLatitude(words.at(3).toDouble());
        point->setLongitude(10);
        station->SetPoint(point);
    } else {
        const auto detail = make(std::make_shared<SegmentDetail>(), QString());
        const auto insulation = make(std::make_shared<Insulation>(), QStringLiteral("insulation"));
        const auto type = make(std::make_shared<SegmentType>(), QStringLiteral("type"));
        insulation->SetName(QStringLiteral("I"));
        insulation->SetVelocity(words.at(3).toDouble());
        type->SetName(QStringLiteral("T"));
        type->SetIsJoint(words.at(4) == QLatin1String("joint"));
        detail->SetName(words.at(1));
        detail->SetVelocity(words.at(2).toDouble());
        detail->SetInsulation(insulation);
        detail->SetType(type);
    }
    return things;
}

/// A cable between two stations, or of two segments.
std::shared_ptr<Cable> makeCable(const Things& ends)
{
    auto cable = std::make_shared<Cable>();
    cable->SetId(sampleId(QStringLiteral("cable")));
    cable->SetStationA(std::dynamic_pointer_cast<Station>(ends.front()));
    cable->SetStationB(std::dynamic_pointer_cast<Station>(ends.back()));
    const auto phase = std::make_shared<Phase>();
    phase->SetId(sampleId(QStringLiteral("phase")));
    cable->AddPhase(phase);
    for (const auto& end : ends) {
        const auto segment = std::make_shared<Segment>();
        segment->SetId(QUuid::createUuid());
        segment->SetIndex(unsigned(phase->Segments().size()));
        segment->SetName(QStringLiteral("S"));
        segment->SetDetail(std::dynamic_pointer_cast<SegmentDetail>(end));
        phase->AddSegment(segment);
    }
    return cable;
}

/// "number name" of all stations and details that the tests made, and the numbers of those that the cable refers to.
QString describeThings(const CableContext& context)
{
    const auto cable = context.Cables().value(sampleId(QStringLiteral("cable")));
    const auto segments = cable->Phases().at(0)->Segments();
    QStringList names;
    QString ends = QStringLiteral("??");
    for (const QChar number : QStringLiteral("12389")) {
        const QUuid id = sampleId(number);
        const auto station = context.Stations().value(id);
        const auto detail = context.SegmentDetails().value(id);
        if (station || detail)
            names << QString(number) + QLatin1Char(' ') + (station ? station->Name() : detail->Name());
        if (cable->StationAId() == id || segments.front()->DetailId() == id)
            ends[0] = number;
        if (cable->StationBId() == id || segments.back()->DetailId() == id)
            ends[1] = number;
    }
    return names.join(QStringLiteral(", ")) + QStringLiteral(": ") + ends;
}

/// Gives @p entity another name, if it is of a kind that is known by names.
void rename(QOR::Entities::Entity& entity, const QString& name)
{
    const auto renameAs = [&](auto* kind) {
        if (auto* named = dynamic_cast<decltype(kind)>(&entity))
            named->SetName(name);
    };
    std::apply([&](auto*... kinds) { (renameAs(kinds), ...); },
               std::tuple<Insulation*, SegmentType*, SegmentDetail*, Owner*, Termination*, Switchgear*, Station*>());
}

} // namespace

/// What of a network an import takes for what is there already.
class CableMatchingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void networksAreImportedOnce_data() { addBackends(); }
    void networksAreImportedOnce()
    {
        for (quint32 seed = 1; seed <= 4; ++seed) {
            QRandomGenerator random(seed);
            const auto renameAtRandom = [&random](QOR::Entities::Entity& entity) {
                rename(entity, QStringLiteral(" AB").mid(random.bounded(3), 1).trimmed());
            };
            ContextDatabase database;
            {
                const auto context = database.cableContext();
                SampleNetwork network(3);
                for (const char* own : {"4 A - -", "5 B - -", "6 A Kiel -", "7 A 171e6 170e6 cable"}) {
                    for (const auto& thing : makeThing(QLatin1String(own)))
                        network.entities.push_back(thing);
                }
                for (const auto& entity : network.entities) {
                    renameAtRandom(*entity);
                    if (random.bounded(2) == 0)
                        context->attach(entity);
                }
                context->saveChanges();
            }
            SampleNetwork source(3);
            for (const auto& entity : source.entities) {
                renameAtRandom(*entity);
                entity->SetTimestamp(QDateTime::currentDateTimeUtc().addDays(random.bounded(2) == 0 ? 1 : -1));
            }
            const auto target = seed % 2 == 0 ? database.cableContext() : database.loadedCableContext();
            const QStringList before = database.cableRows();
            target->import(source.cables);
            const QByteArray imported = describe(*target);
            target->import(source.cables);
            QCOMPARE(describe(*target), imported);
            target->saveChanges();
            const QStringList rows = database.cableRows();
            const auto again = database.loadedCableContext();
            again->import(source.cables);
            again->saveChanges();
            QCOMPARE(database.cableRows(), rows);
            // Of what was here only that has changed that is in the source too; and no two stations have become one.
            for (const QString& row : changedRows(rows, before))
                QVERIFY2(std::any_of(source.entities.begin(), source.entities.end(),
                                     [&row](const auto& entity) { return row.contains(entity->Id().toString()); }),
                         qPrintable(row));
            QSet<QUuid> stations;
            int ends = 0;
            for (const auto& cable : again->Cables()) {
                if (before.filter(QStringLiteral("ce_cable|") + cable->Id().toString()).isEmpty()) {
                    stations << cable->StationAId() << cable->StationBId();
                    ends += 2;
                }
            }
            QCOMPARE(stations.size(), ends);
        }
    }

    void stationsAndDetailsAreFound_data()
    {
        QTest::addColumn<QString>("here");
        QTest::addColumn<QString>("there");
        QTest::addColumn<QString>("after");
        QTest::addColumn<int>("overwritten");
        const auto add = [](const char* name, const char* here, const char* there, const char* after,
                            int overwritten = 0) {
            QTest::addRow("%s", name) << QString::fromLatin1(here) << QString::fromLatin1(there)
                                      << QString::fromLatin1(after) << overwritten;
        };
        add("by id, written later there", "1 A - -", "1+ B - -, 2 C - -", "1 B, 2 C: 12", 1);
        add("by id, written later here", "1 A - -", "1 B - -, 2 C - -", "1 A, 2 C: 12");
        add("by id, with unsaved changes", "1! A - -", "1+ B - -, 2 C - -", "1 A!, 2 C: 12");
        add("by id, the same", "1 A - -", "1+ A - -, 2 C - -", "1 A, 2 C: 12");
        add("by name", "9 A - -", "1+ A Kiel 54, 2 B - -", "2 B, 9 A: 92");
        add("no name", "9  - -", "1  - -, 2  - -", "1 , 2 , 9 : 12");
        add("the name goes to another one", "1 A - -", "1+ B - -, 3 A - -", "1 B, 3 A: 13", 1);
        add("the name comes from another one", "1 A - -", "1+ B - -, 3 B - -", "1 B, 3 B: 13", 1);
        add("kept under the name of another one", "1 A - -", "1 B - -, 3 A - -", "1 A, 3 A: 13");
        add("two of one name", "", "1 A - -, 2 A - -", "1 A, 2 A: 12");
        add("two of one name there", "9 A - -", "1 A - -, 2 A - -", "1 A, 2 A, 9 A: 12");
        add("two of one name here", "8 A - -, 9 A - -", "1 A - -, 2 B - -", "1 A, 2 B, 8 A, 9 A: 12");
        add("another city", "9 A Bonn -", "1+ A Kiel -, 2 A Bonn -", "1 A, 9 A: 19");
        add("another place", "9 A Kiel 54.3", "1 A Kiel 54.4, 2 A - 54.3002", "1 A, 9 A: 19");
        add("details", "9 A 1 2 cable", "1+ A 1 2 cable, 2 A 1 2 cable", "9 A: 99");
        add("two details alike here", "8 A 1 2 cable, 9 A 1 2 cable", "1 A 1 2 cable, 2 B 1 2 cable",
            "2 B, 8 A, 9 A: 82");
        add("another velocity", "9 A 1 2 cable", "1+ A 3 2 cable, 2 A 1 2 cable", "1 A, 9 A: 19");
        add("another insulation", "9 A 1 2 cable", "1+ A 1 3 cable, 2 A 1 2 cable", "1 A, 9 A: 19");
        add("another type", "9 A 1 2 cable", "1+ A 1 2 joint, 2 A 1 2 cable", "1 A, 9 A: 19");
    }
    void stationsAndDetailsAreFound()
    {
        QFETCH(QString, here);
        QFETCH(QString, there);
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto context = database.cableContext();
        for (const QString& text : split(here)) {
            for (const auto& thing : makeThing(text))
                context->attach(thing);
        }
        context->saveChanges();
        const QStringList before = database.cableRows();
        const auto target = database.loadedCableContext();
        for (const auto& station : target->Stations()) {
            if (here.contains(QLatin1Char('!')))
                station->SetName(station->Name() + QLatin1Char('!'));
        }
        QTest::qWait(2);
        Things ends;
        for (const QString& text : split(there))
            ends.push_back(makeThing(text).front());
        const auto cable = makeCable(ends);

        const LogCapture log;
        target->import({cable});
        QTEST(describeThings(*target), "after");
        QTEST(log.messages(QtInfoMsg, QStringLiteral("qor.context"))
                  .filter(sampleId(QStringLiteral("1")).toString())
                  .size(),
              "overwritten");
        QTest::qWait(2);
        target->saveChanges();
        const QStringList rows = database.cableRows();
        const auto again = database.loadedCableContext();
        again->import({cable});
        again->saveChanges();
        QTEST(describeThings(*again), "after");
        QCOMPARE(database.cableRows(), rows);
        // What is not here by its id is not touched.
        const QStringList gone = changedRows(rows, before);
        QCOMPARE(gone.filter(sampleId(QStringLiteral("1")).toString()).size(), gone.size());
    }

    void defaultTypesAreNeverOverwritten()
    {
        ContextDatabase other(DataAccess::Enumerations::SQLite3);
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto source = other.loadedCableContext();
        const auto change = [](const auto& entities) {
            for (const auto& entity : entities) {
                entity->SetTimestamp(QDateTime::currentDateTimeUtc().addDays(1));
                entity->SetName(entity->Name() + QStringLiteral(" of others"));
            }
        };
        change(source->Insulations());
        change(source->SegmentTypes());
        change(source->SegmentDetails());
        change(source->Terminations());
        change(source->Switchgears());
        const auto details = source->SegmentDetails();
        std::vector<std::shared_ptr<Cable>> cables = {makeCable(Things(details.begin(), details.end()))};
        const auto add = [&cables](const auto& kinds, const auto& set) {
            for (const auto& kind : kinds) {
                cables.push_back(std::make_shared<Cable>());
                cables.back()->SetId(QUuid::createUuid());
                (cables.back().get()->*set)(kind);
            }
        };
        add(source->Terminations(), &Cable::SetTerminationA);
        add(source->Switchgears(), &Cable::SetSwitchgearB);
        const auto target = database.loadedCableContext();
        const QStringList before = database.cableRows();
        target->import(cables);
        target->saveChanges();
        QCOMPARE(changedRows(database.cableRows(), before), QStringList());
        QCOMPARE(target->Cables().size(), int(cables.size()));
    }
};

DATAACCESS_TEST(CableMatchingTest)

#include "CableMatchingTest.moc"
