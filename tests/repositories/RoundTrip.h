#pragma once

#include "database/DatabaseType.h"
#include "database/Failure.h"
#include "entities/qor/EntityState.h"
#include "repositories/EditorDatabase.h"
#include "repositories/IRepository.h"
#include "support/LogCapture.h"

#include <QDateTime>
#include <QTest>

#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <vector>

namespace TestSupport {

/// A text of all that Unicode has and a database can hold, in the order of the code points.
inline QString allOfUnicode()
{
    QString text;
    for (uint code = 1; code <= 0x10ffff; ++code) {
        if ((code < 0xd800 || code > 0xdfff) && code != 0xfffe && code != 0xffff)
            text += QString::fromUcs4(&code, 1);
    }
    return text;
}

/// Values a property should survive: ordinary, unusual and extreme ones. Row @p i of each kind goes into entity i.
struct Values
{
    static constexpr int count = 6;

    static QString text(int i)
    {
        static const QString texts[count] = {QStringLiteral("Umspannwerk Süd"),
                                             QString(),
                                             QStringLiteral(""),
                                             QString(10 * 1024 * 1024, QLatin1Char('x')),
                                             QStringLiteral("'; DROP TABLE ce_cable; -- \"\\ %1 :name"),
                                             allOfUnicode()};
        return texts[i];
    }
    static double number(int i)
    {
        using Limits = std::numeric_limits<double>;
        static const double numbers[count] = {166000000.25,     Limits::quiet_NaN(),  0.0,
                                              Limits::lowest(), Limits::denorm_min(), 0.1};
        return numbers[i];
    }
    static int integer(int i)
    {
        static const int integers[count] = {7, 0, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min(),
                                            1};
        return integers[i];
    }
    static unsigned int index(int i) { return i == 3 ? 2147483647U : static_cast<unsigned int>(i); }
    static QByteArray bytes(int i)
    {
        static const QByteArray all = [] {
            QByteArray values;
            for (int value = 0; value < 256; ++value)
                values.append(static_cast<char>(value));
            return values;
        }();
        static const QByteArray arrays[count] = {
            all, QByteArray(), QByteArray(""), all.repeated(4096), QByteArray("\\x41"), QByteArray(1, '\0')};
        return arrays[i];
    }
    static bool flag(int i) { return i % 2 == 0; }
    static QUuid id(int i) { return i == 1 ? QUuid() : QUuid::createUuid(); }
    static QDate date(int i)
    {
        static const QDate dates[count] = {QDate(2021, 3, 14),  QDate(),           QDate(1969, 12, 31), QDate(1, 1, 1),
                                           QDate(9999, 12, 31), QDate(2000, 2, 29)};
        return dates[i];
    }
    /// Among them a time given in UTC, and the second one of an hour that the clocks of St John's strike twice.
    static QDateTime dateTime(int i)
    {
        static const QDateTime times[count] = {QDateTime(QDate(2021, 6, 14), QTime(23, 59, 59, 999)),
                                               QDateTime(),
                                               QDateTime(QDate(1960, 1, 2), QTime(3, 4, 5)),
                                               QDateTime(QDate(2021, 7, 1), QTime(12, 0), Qt::UTC),
                                               QDateTime(QDate(9999, 12, 31), QTime(12, 0)),
                                               QDateTime(QDate(2022, 2, 3), QTime(4, 5), Qt::OffsetFromUTC, 7200)};
        return times[i];
    }
};

/// Adds the columns "backend" and "kind", and a row a backend for each of @p kinds, an array of pairs that name it.
template <typename Kinds>
void addKinds(const Kinds& kinds)
{
    QTest::addColumn<int>("backend");
    QTest::addColumn<int>("kind");
    for (int kind = 0; kind < static_cast<int>(std::size(kinds)); ++kind) {
        QTest::addRow("%s, SQLite", kinds[kind].first) << static_cast<int>(DataAccess::Enumerations::SQLite3) << kind;
        QTest::addRow("%s, PostgreSQL", kinds[kind].first)
            << static_cast<int>(DataAccess::Enumerations::Postgres) << kind;
    }
}

/// What fails when @p left and @p right are not the same entity; empty when they are.
template <typename T>
QString difference(const T& left, const T& right)
{
    if (left.Id() != right.Id())
        return QStringLiteral("id");
    if (left.Timestamp() != right.Timestamp() || right.Timestamp().timeSpec() != Qt::UTC)
        return QStringLiteral("time stamp of ") + left.Id().toString();
    if (left.EntityState() != right.EntityState())
        return QStringLiteral("state of ") + left.Id().toString();
    const QJsonObject stored = left.toJson();
    const QJsonObject loaded = right.toJson();
    for (const QString& key : stored.keys()) {
        if (stored.value(key) != loaded.value(key))
            return key;
    }
    return {};
}

/// What differs between @p entities and what @p repository holds, read in both ways; empty when nothing does.
template <typename T>
QString difference(const std::vector<std::shared_ptr<T>>& entities, DataAccess::Interfaces::IRepository<T>& repository)
{
    const auto all = repository.GetAll();
    if (all.size() != static_cast<int>(entities.size()) || repository.Count() != entities.size())
        return QStringLiteral("number of rows");
    for (const std::shared_ptr<T>& entity : entities) {
        const auto single = repository.GetById(entity->Id());
        const auto listed = all.value(entity->Id());
        if (!single || !listed)
            return QStringLiteral("missing row");
        QString found = difference(*entity, *single) + difference(*entity, *listed);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

/// Takes entities of all values through insert, update, soft delete and remove, comparing what is stored each time.
template <typename T>
void roundTrip(DataAccess::Interfaces::IRepository<T>& repository, const std::function<void(T&, int)>& fill)
{
    using namespace QOR::Entities::Enumerations;
    std::vector<std::shared_ptr<T>> entities;
    for (int i = 0; i < Values::count; ++i) {
        entities.push_back(std::make_shared<T>());
        entities.back()->SetId(QUuid::createUuid());
        fill(*entities.back(), i);
    }
    entities[3]->SetEntityState(Snapshot);
    QVERIFY(repository.Insert(entities));
    QCOMPARE(entities[0]->EntityState(), Normal);
    QCOMPARE(difference(entities, repository), QString());

    for (int i = 0; i < Values::count; ++i)
        fill(*entities[static_cast<std::size_t>(i)], Values::count - 1 - i);
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
}

/// What @p operation reports to its caller about @p table, a line a failure: the kind, and the row where that is known.
template <typename Operation>
QStringList failuresOf(const QString& table, const Operation& operation)
{
    const DataAccess::Database::FailureWatch watch;
    operation();
    QStringList lines;
    for (const DataAccess::Database::Failure& failure : watch.failures()) {
        const QString row = failure.row.isNull() ? QString() : failure.row.toString();
        const bool named = failure.table == table && failure.reason.contains(table) && failure.reason.contains(row);
        lines += named ? QString::number(static_cast<int>(failure.kind)) + row : failure.reason;
    }
    return lines;
}

/// A row that another program has removed is not written, and told; a table that cannot be used never looks empty.
template <typename T>
void tellFailures(EditorDatabase& database, DataAccess::Interfaces::IRepository<T>& repository,
                  const std::function<void(T&, int)>& fill)
{
    using DataAccess::Database::FailureWatch;
    std::vector<std::shared_ptr<T>> entities;
    for (int i = 0; i < 3; ++i) {
        entities.push_back(std::make_shared<T>());
        entities.back()->SetId(QUuid::createUuid());
        fill(*entities.back(), i);
    }
    const auto stored = entities[1];
    const LogCapture log;
    QVERIFY(repository.Insert({stored}));
    const QString table = [&] {
        const FailureWatch watch;
        repository.Remove({entities[0]});
        return watch.failures().value(0).table;
    }();
    const QString noRow = QStringLiteral("1");
    const QString first = noRow + entities[0]->Id().toString();
    QVERIFY(!table.isEmpty());
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

/// What is tested of every kind of entity, with the repository and the values that @p fill gives the entities.
template <typename Repository, typename Database, typename Fill>
void checkKind(bool failures, const Fill& fill)
{
    Database database;
    auto repository = database.template repository<Repository>();
    using T = typename decltype(repository.GetAll())::mapped_type::element_type;
    if (failures)
        tellFailures<T>(database, repository, fill);
    else
        roundTrip<T>(repository, fill);
}

} // namespace TestSupport
