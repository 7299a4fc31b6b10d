#include "database/Failure.h"
#include "entities/qor/QorUuidHelpers.h"
#include "repositories/PdDatabase.h"
#include "repositories/cables/CableRepository.h"
#include "repositories/cables/PhaseRepository.h"
#include "repositories/cables/PlainRepositories.h"
#include "repositories/cables/PointRepository.h"
#include "repositories/cables/RatingRepository.h"
#include "repositories/cables/SegmentRepository.h"
#include "repositories/cables/StationRepository.h"
#include "repositories/lb/CablebookMeasuresRepository.h"
#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PdReportRepository.h"
#include "repositories/pd/PlainRepositories.h"
#include "support/Entities.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QTest>

#include <array>
#include <functional>
#include <limits>

using namespace DataAccess;
using namespace QOR::Entities::Enumerations;
using LB::Entities::CablebookMeasure;
using TestSupport::make;

namespace {

/// A text of all that Unicode has and a database can hold, in the order of the code points.
QString allOfUnicode()
{
    QString text;
    for (uint code = 1; code <= 0x10ffff; ++code) {
        if ((code < 0xd800 || code > 0xdfff) && code != 0xfffe && code != 0xffff)
            text += QString::fromUcs4(&code, 1);
    }
    return text;
}

/// Values that a property should survive: ordinary, unusual and extreme ones. Those of row 0 are no property's first.
constexpr int rows = 6;

template <typename Value>
Value valueOf(int row)
{
    using Limits = std::numeric_limits<double>;
    if constexpr (std::is_same_v<Value, QString>) {
        static const QString texts[rows] = {QStringLiteral("{ \"Umspannwerk Süd\": 1.5 }"),
                                            QString(),
                                            QStringLiteral(""),
                                            QString(10 * 1024 * 1024, QLatin1Char('x')),
                                            QStringLiteral("'; DROP TABLE ce_cable; -- \"\\ %1 :name"),
                                            allOfUnicode()};
        return texts[row];
    } else if constexpr (std::is_same_v<Value, double>) {
        return std::array{166000000.25, Limits::quiet_NaN(), 0.0, Limits::lowest(), Limits::denorm_min(), 0.1}[row];
    } else if constexpr (std::is_same_v<Value, int> || std::is_enum_v<Value>) {
        using IntLimits = std::numeric_limits<int>;
        return static_cast<Value>(std::array{7, 0, -1, IntLimits::max(), IntLimits::min(), 1}[row]);
    } else if constexpr (std::is_same_v<Value, unsigned int>) {
        return std::array{3U, 0U, 2U, 2147483647U, 4U, 1U}[row];
    } else if constexpr (std::is_same_v<Value, QByteArray>) {
        QByteArray all;
        for (int byte = 0; byte < 256; ++byte)
            all.append(static_cast<char>(byte));
        return std::array{
            all, QByteArray(), QByteArray(""), all.repeated(4096), QByteArray("\\x41"), QByteArray(1, '\0')}[row];
    } else if constexpr (std::is_same_v<Value, QUuid>) {
        return row == 1 ? QUuid() : QUuid::createUuid();
    } else if constexpr (std::is_same_v<Value, QDate>) {
        return std::array{QDate(2021, 3, 14),  QDate(),           QDate(1969, 12, 31), QDate(1, 1, 1),
                          QDate(9999, 12, 31), QDate(2000, 2, 29)}[row];
    } else if constexpr (std::is_same_v<Value, QDateTime>) {
        // Among them a time given in UTC, and the second one of an hour that the clocks of St John's strike twice.
        return std::array{QDateTime(QDate(2021, 6, 14), QTime(23, 59, 59, 999)),
                          QDateTime(),
                          QDateTime(QDate(1960, 1, 2), QTime(3, 4, 5)),
                          QDateTime(QDate(2021, 7, 1), QTime(12, 0), Qt::UTC),
                          QDateTime(QDate(9999, 12, 31), QTime(12, 0)),
                          QDateTime(QDate(2022, 2, 3), QTime(4, 5), Qt::OffsetFromUTC, 7200)}[row];
    } else if constexpr (std::is_same_v<Value, std::vector<QUuid>>) {
        std::vector<QUuid> ids(std::array{3, 0, 1, 5000, 2, 4}[row]);
        for (std::size_t i = 1; i < ids.size(); ++i) // The first one is null.
            ids[i] = QUuid::createUuid();
        return ids;
    } else if constexpr (std::is_same_v<Value, QImage>) {
        QImage image(row == 1 ? QSize() : row == 3 ? QSize(2000, 1500) : QSize(3, 2), QImage::Format_ARGB32);
        image.fill(QColor(200, 10 * row, 30, 40 * row));
        return image;
    } else {
        Value filter;
        for (int i = 0; i < row; ++i)
            filter.insert(i == 4 ? QStringLiteral("';--") : QString::number(i), valueOf<QString>(i));
        return filter;
    }
}

/// What some kinds have beyond the values of their types.
template <typename T>
void fillMore(T& /*entity*/, int /*row*/)
{}
void fillMore(Cables::Entities::Point& point, int row)
{
    point.SetIndex(row == 3 ? std::numeric_limits<unsigned int>::max() : point.Index());
}
void fillMore(PD::Entities::PdLbDiagram& diagram, int row)
{
    diagram.setFilterClass(row == 3 ? std::numeric_limits<unsigned int>::max() : diagram.filterClass());
}
void fillMore(Cables::Entities::Rating& rating, int row)
{
    if (row == 0)
        rating.setValue(1, QStringLiteral("Größe"), 2.5);
}
void fillMore(PD::Entities::PdTask& task, int row)
{
    if (row == 4)
        task.SetDevices({QStringLiteral("; \",[]"), QString(), QStringLiteral("Öl")});
}

/// Gives each stored property of @p entity a value. No two of one type get the same ones in all rows.
template <typename T>
void fill(T& entity, int row)
{
    int nth = 0;
    QOR::Entities::forEachProperty<T>([&](const auto& property) {
        using P = std::decay_t<decltype(property)>;
        using Value = typename P::Value;
        if constexpr (P::isStored) {
            const int own = (nth < rows ? row + nth : 2 * rows - 1 - row + nth) % rows;
            if constexpr (std::is_same_v<Value, bool>)
                std::invoke(P::set, entity, (own == 0) == (nth < rows));
            else
                std::invoke(P::set, entity, valueOf<Value>(own));
            ++nth;
        }
    });
    fillMore(entity, row);
}

/// The number is the key: it stays.
void fill(CablebookMeasure& measure, int row)
{
    const int key = measure.MeasureId() != 0 ? measure.MeasureId() : row == 0 ? std::numeric_limits<int>::min() : row;
    fill<CablebookMeasure>(measure, row);
    measure.SetMeasureId(key);
    measure.SetId(QOR::Entities::QorUuidHelpers::uuidFromInt(key));
}

template <typename Repository>
using EntityOf = typename Repository::Entities::mapped_type::element_type;

/// Has the tables of the repository.
template <typename Repository>
using DatabaseOf = std::conditional_t<std::is_base_of_v<PD::Entities::Interfaces::IPdEntity, EntityOf<Repository>>,
                                      TestSupport::PdDatabase, TestSupport::EditorDatabase>;

/// Whatever differs between what was stored and what was read.
template <typename T>
QString difference(const T& stored, const T& read)
{
    if (read.Timestamp().timeSpec() != Qt::UTC || read.EntityState() != stored.EntityState())
        return QStringLiteral("time zone or state");
    return TestSupport::changedMembers(stored.toJson(), read.toJson()).join(QLatin1Char(' '));
}

/// What differs between @p entities and what @p repository holds, read in both ways; empty when nothing does.
template <typename Repository, typename T>
QString difference(const std::vector<std::shared_ptr<T>>& entities, Repository& repository)
{
    const auto all = repository.GetAll();
    if (all.size() != static_cast<int>(entities.size()) || repository.Count() != entities.size())
        return QStringLiteral("number of rows");
    for (const std::shared_ptr<T>& entity : entities) {
        const auto single = repository.GetById(entity->Id());
        const auto listed = all.value(entity->Id());
        if (!single || !listed)
            return QStringLiteral("missing row");
        const QString found = difference(*entity, *single) + difference(*entity, *listed);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

/// Whoever writes NULL into a column changes the member that @p columns names for it ("column=member"), and no other.
template <typename Repository>
void checkColumns(DatabaseOf<Repository>& database, Repository& repository, const QString& table,
                  const QString& columns)
{
    auto entity = make<EntityOf<Repository>>();
    QOR::Entities::forEachProperty<EntityOf<Repository>>([&](const auto& property) {
        using P = std::decay_t<decltype(property)>;
        using Value = typename P::Value;
        if constexpr (std::is_same_v<Value, bool>)
            std::invoke(P::set, *entity, true);
        else if constexpr (P::isStored)
            std::invoke(P::set, *entity, valueOf<Value>(0));
    });
    if constexpr (std::is_same_v<EntityOf<Repository>, CablebookMeasure>)
        entity->SetId(QOR::Entities::QorUuidHelpers::uuidFromInt(entity->MeasureId()));
    QVERIFY(repository.Insert({entity}));
    for (const QString& pair : columns.split(QLatin1Char(' '))) {
        const QStringList names = pair.split(QLatin1Char('='));
        const QJsonObject before = repository.GetById(entity->Id())->toJson();
        database.value(QStringLiteral("UPDATE %1 SET \"%2\" = NULL").arg(table, names.first()));
        const QJsonObject after = repository.GetById(entity->Id())->toJson();
        QCOMPARE(TestSupport::changedMembers(before, after), QStringList(names.last()));
    }
}

/// Takes entities of all values through insert, update, soft delete and remove, comparing what is stored each time;
/// then looks into the columns.
template <typename Repository>
void roundTrip(const QString& table, const QString& columns)
{
    DatabaseOf<Repository> database;
    auto repository = database.template repository<Repository>();
    std::vector<std::shared_ptr<EntityOf<Repository>>> entities;
    for (int row = 0; row < rows; ++row) {
        entities.push_back(make<EntityOf<Repository>>());
        fill(*entities.back(), row);
    }
    entities[3]->SetEntityState(Snapshot);
    QVERIFY(repository.Insert(entities));
    QCOMPARE(entities[0]->EntityState(), Normal);
    QCOMPARE(difference(entities, repository), QString());

    for (int row = 0; row < rows; ++row)
        fill(*entities[static_cast<std::size_t>(row)], rows - 1 - row);
    entities[4]->SetEntityState(Deleted);
    QVERIFY(repository.Update(entities));
    QCOMPARE(difference(entities, repository), QString());

    QVERIFY(repository.Delete({entities[0]}));
    const auto deleted = repository.GetById(entities[0]->Id());
    QCOMPARE(deleted->EntityState(), Deleted);
    QVERIFY(deleted->Timestamp() >= entities[0]->Timestamp());
    QCOMPARE(deleted->toJson(), repository.GetAll().value(entities[0]->Id())->toJson());

    QVERIFY(repository.Remove({entities[0], entities[1]}));
    QVERIFY(!repository.GetById(entities[0]->Id()));
    entities.erase(entities.begin(), entities.begin() + 2);
    QCOMPARE(difference(entities, repository), QString());
    checkColumns(database, repository, table, columns);
}

/// What @p operation reports to its caller about @p table, a line a failure: the kind, and the row where that is known.
template <typename Operation>
QStringList failuresOf(const QString& table, const Operation& operation)
{
    const Database::FailureWatch watch;
    operation();
    QStringList lines;
    for (const Database::Failure& failure : watch.failures()) {
        const QString row = failure.row.isNull() ? QString() : failure.row.toString();
        const bool named = failure.table == table && failure.reason.contains(table) && failure.reason.contains(row);
        lines += named ? QString::number(static_cast<int>(failure.kind)) + row : failure.reason;
    }
    return lines;
}

/// A row that another program has removed is not written, and told; a table that cannot be used never looks empty.
template <typename Repository>
void tellFailures(const QString& table, const QString& /*columns*/)
{
    DatabaseOf<Repository> database;
    auto repository = database.template repository<Repository>();
    std::vector<std::shared_ptr<EntityOf<Repository>>> entities;
    for (int row = 0; row < 3; ++row) {
        entities.push_back(make<EntityOf<Repository>>());
        fill(*entities.back(), row);
    }
    const auto stored = entities[1];
    const TestSupport::LogCapture log;
    QVERIFY(repository.Insert({stored}));
    const QString noRow = QStringLiteral("1");
    const QString first = noRow + entities[0]->Id().toString();
    QCOMPARE(failuresOf(table, [&] { repository.GetById(entities[0]->Id()); }), QStringList());

    const QJsonObject before = repository.GetById(stored->Id())->toJson();
    fill(*stored, 4);
    bool done = true;
    QCOMPARE(failuresOf(table,
                        [&] {
                            done = repository.Update({entities[0], nullptr, stored, entities[2]});
                        }),
             QStringList({first, noRow + entities[2]->Id().toString()}));
    QVERIFY(!done);
    QCOMPARE(repository.GetById(stored->Id())->toJson(), before);
    for (const auto& entity : {entities[0], entities[2]}) {
        const QStringList lines = log.messages(QtWarningMsg, QStringLiteral("qor.database")).filter(table);
        QVERIFY(!lines.filter(entity->Id().toString()).isEmpty());
    }
    QCOMPARE(failuresOf(table, [&] { done = repository.Delete({entities[0], stored}); }), QStringList(first));
    QVERIFY(done && repository.GetById(stored->Id())->EntityState() == QOR::Entities::Enumerations::Deleted);
    QCOMPARE(failuresOf(table, [&] { done = repository.Remove({entities[0], stored}); }), QStringList(first));
    QVERIFY(done && !repository.GetById(stored->Id()));

    database.value(QStringLiteral("ALTER TABLE %1 RENAME TO elsewhere").arg(table));
    const std::vector<std::function<bool()>> operations = {[&] { return !repository.GetAll().isEmpty(); },
                                                           [&] { return repository.GetById(stored->Id()) != nullptr; },
                                                           [&] { return repository.Count() != 0; },
                                                           [&] { return repository.Insert({stored}); },
                                                           [&] { return repository.Update({stored}); },
                                                           [&] { return repository.Delete({stored}) && false; },
                                                           [&] { return repository.Remove({stored}) && false; }};
    for (const auto& operation : operations) {
        const QStringList told = failuresOf(table, [&] { done = operation(); });
        QVERIFY(!done && !told.isEmpty());
        QVERIFY2(told.first().startsWith(QLatin1Char('0')), qUtf8Printable(told.first()));
    }
}

struct Kind
{
    using Check = void (*)(const QString& table, const QString& columns);

    const char* table;
    /// Which column holds which member of the JSON: what other programs rely on. A new one need not stand here.
    const char* columns;
    Check roundTrip;
    Check failures;
};

template <typename Repository>
Kind kind(const char* table, const char* columns)
{
    return {table, columns, &roundTrip<Repository>, &tellFailures<Repository>};
}

const Kind s_kinds[] = {
    kind<Repositories::CableRepository>(
        "ce_cable", "number voltage installationdate=installationDate diagnosticstate=diagnosticStatus city "
                    "stationa=stationAId stationb=stationBId terminationa=terminationAId terminationb=terminationBId "
                    "switchgeara=switchgearAId switchgearb=switchgearBId route=routeId owner=ownerId type "
                    "cablestate=cableStatus comment length importance"),
    kind<Repositories::InsulationRepository>("ce_insulation", "name velocity"),
    kind<Repositories::OwnerRepository>("ce_owner", "name"),
    kind<Repositories::PhaseRepository>("ce_phase", "indexnumber=index cable=cableId"),
    kind<Repositories::PointRepository>("ce_point", "indexnumber=index latitude longitude"),
    kind<Repositories::RatingRepository>(
        "qor_rating", "mid=measureID tid=taskID cid=cableID comment evaluation=rating automatic oldcable=oldCable "
                      "eventselectionmodel modeid=modeId measuretime=measureTime"),
    kind<Repositories::RouteRepository>("ce_route", "cable=cableId points=pointIds"),
    kind<Repositories::SegmentRepository>("ce_segment", "name indexnumber=index length phase=phaseId detail=detailId "
                                                        "installationdate=installationDate"),
    kind<Repositories::SegmentDetailRepository>("ce_segment_detail",
                                                "name velocity insulation=insulationId type=typeId "
                                                "favorite=isFavorite"),
    kind<Repositories::SegmentTypeRepository>("ce_segmenttype", "name isjoint=isJoint"),
    kind<Repositories::StationRepository>("ce_station", "name city point=pointId description image"),
    kind<Repositories::SwitchgearRepository>("ce_switchgear", "name"),
    kind<Repositories::TerminationRepository>("ce_termination", "name"),
    kind<Repositories::CablebookMeasuresRepository>("cablebook_measures",
                                                    "cableid=cableId importdate=importDate stationid=stationId"),
    kind<Repositories::PdTaskRepository>("pd_task", "cable=cableId creationdate=creationDate station=stationId tester "
                                                    "path comment devices kvtrrecommentation=kvtrRecommentations"),
    kind<Repositories::PdReportRepository>("pd_report",
                                           "task=taskId creationtimestamp=creationTimestamp flags recommentation"),
    kind<Repositories::PdFileRepository>("pd_file", "name data=file hash report=reportId"),
    kind<Repositories::PdIecOverviewRepository>(
        "pd_iec_overview", "report_id=reportId phase=phaseIndex groundnoise=groundNoise "
                           "sensitivity_level=sensitivityLevel frequency pdivvoltage=pdivVoltage "
                           "pdevvoltage=pdevVoltage pdivmaxcharge=pdivMaxCharge pdmaxcharges=maxCharges "
                           "pdmedcharges=medCharges"),
    kind<Repositories::PdMappingEventRepository>("pd_mapping_event",
                                                 "report_id=reportId load phase=phaseIndex class=classification "
                                                 "polarity voltage position mode"),
    kind<Repositories::PdLbDiagramRepository>(
        "pd_lbdiagram", "report_id=reportId phase1visible=phase1Visible phase2visible=phase2Visible "
                        "phase3visible=phase3Visible filterclass=filterClass filtervoltagemin=filterVoltageMin "
                        "filtervoltagemax=filterVoltageMax"),
    kind<Repositories::PdSummaryReporsitory>(
        "pd_summary", "report_id=reportId pdiv=pdivState pdev=pdevState groundnoise=noiseState data=dataState "
                      "vwd=vwdState dac_pos=dacPosState dac_neg=dacNegState vlf_cr=vlfCrState vlf_sin=vlfSinState "
                      "max_applied_voltage=maxAppliedVoltage"),
    kind<Repositories::PdTaskInfoRepository>("pd_task_info",
                                             "report_id=reportId pd_version=softwareVersion system_type=systemType "
                                             "serial_number=serialNumber calibration_date=calibrationDate"),
};

} // namespace

/// Every stored property of every kind of entity comes back as it was stored, and what is not stored is told.
class RoundTripTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyProperty_data() { addKinds(); }
    void everyProperty() { check(&Kind::roundTrip); }
    void failures_data() { addKinds(); }
    void failures() { check(&Kind::failures); }

private:
    static void addKinds()
    {
        QTest::addColumn<int>("backend");
        QTest::addColumn<int>("kind");
        for (int kind = 0; kind < static_cast<int>(std::size(s_kinds)); ++kind) {
            QTest::addRow("%s, SQLite", s_kinds[kind].table) << int(Enumerations::SQLite3) << kind;
            QTest::addRow("%s, PostgreSQL", s_kinds[kind].table) << int(Enumerations::Postgres) << kind;
        }
    }

    static void check(Kind::Check Kind::*which)
    {
        QFETCH(int, kind);
        (s_kinds[kind].*which)(QString::fromLatin1(s_kinds[kind].table), QString::fromLatin1(s_kinds[kind].columns));
    }
};

DATAACCESS_TEST(RoundTripTest)

#include "RoundTripTest.moc"
