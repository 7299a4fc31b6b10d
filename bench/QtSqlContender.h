#pragma once

#include "bench/Contender.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

namespace Bench {

/// Qt SQL, as an application writes it by hand: prepared once, values by name, times through format strings.
template <typename Kind>
class QtSqlContender final : public Contender<typename Kind::Entity>
{
public:
    using Entity = typename Kind::Entity;
    using typename Contender<Entity>::Objects;

    explicit QtSqlContender(DataAccess::Interfaces::IConfig& config)
        : m_sqlite(config.Type() == DataAccess::Enumerations::SQLite3)
        , m_database(QSqlDatabase::addDatabase(m_sqlite ? QStringLiteral("QSQLITE") : QStringLiteral("QPSQL"),
                                               config.ConnectionName()))
    {
        m_database.setDatabaseName(config.DatabaseName());
        m_database.setHostName(config.HostName());
        m_database.setPort(static_cast<int>(config.Port()));
        m_database.setUserName(config.UserName());
        m_database.setPassword(config.Password());
        require(m_database.open(), m_database.lastError());
    }

    ~QtSqlContender() override
    {
        const QString name = m_database.connectionName();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
    }

    Objects load() override
    {
        QSqlQuery query(m_database);
        run(query, select());
        Objects entities;
        while (query.next()) {
            const auto entity = readObject<Kind, Entity>(Row{query, m_sqlite});
            entities.insert(entity->Id(), entity);
        }
        return entities;
    }

    void insert(const List<Entity>& entities) override
    {
        write(QStringLiteral("INSERT INTO %1 (%2) VALUES (:%3)")
                  .arg(table(), columns().join(QLatin1String(", ")), columns().join(QLatin1String(", :"))),
              entities);
    }

    void update(const List<Entity>& entities) override
    {
        QStringList assignments;
        for (const QString& column : columns().mid(1))
            assignments.append(column + QLatin1String(" = :") + column);
        write(QStringLiteral("UPDATE %1 SET %2 WHERE id = :id").arg(table(), assignments.join(QLatin1String(", "))),
              entities);
    }

    List<Entity> get(const std::vector<QUuid>& ids) override
    {
        List<Entity> entities;
        QSqlQuery query(m_database);
        prepare(query, select() + QLatin1String(" WHERE id = :id"));
        for (const QUuid& id : ids) {
            query.bindValue(QStringLiteral(":id"), id.toString());
            require(query.exec() && query.next(), query.lastError());
            entities.push_back(readObject<Kind, Entity>(Row{query, m_sqlite}));
        }
        return entities;
    }

    void remove(const List<Entity>& entities) override
    {
        runForEach(QStringLiteral("DELETE FROM %1 WHERE id = :id").arg(table()), entities,
                   [](QSqlQuery& query, const auto& entity) {
                       query.bindValue(QStringLiteral(":id"), entity.Id().toString());
                   });
    }

private:
    static QString timeFormat() { return QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"); }
    static QString dateFormat() { return QStringLiteral("yyyy-MM-dd"); }
    static QString table() { return QString::fromLatin1(Kind::table); }
    static QString column(int number) { return QString::fromLatin1(Kind::columns[static_cast<std::size_t>(number)]); }
    static QStringList columns()
    {
        QStringList names;
        for (const char* name : Kind::columns)
            names.append(QString::fromLatin1(name));
        return names;
    }
    static QString select()
    {
        return QStringLiteral("SELECT %1 FROM %2").arg(columns().join(QLatin1String(", ")), table());
    }

    /// The row that a query stands on, and the values of the one that it writes.
    struct Row
    {
        QSqlQuery& query;
        bool sqlite;

        QString text(int index) const { return query.value(index).toString(); }
        QUuid id(int index) const { return QUuid(query.value(index).toString()); }
        int integer(int index) const { return query.value(index).toInt(); }
        bool flag(int index) const { return query.value(index).toBool(); }
        double number(int index) const { return query.value(index).toDouble(); }
        QDate date(int index) const
        {
            return sqlite ? QDate::fromString(text(index), dateFormat()) : query.value(index).toDate();
        }
        QDateTime time(int index) const
        {
            return sqlite ? QDateTime::fromString(text(index), timeFormat()) : query.value(index).toDateTime();
        }

        void text(int index, const QString& value) { bind(index, value); }
        void id(int index, const QUuid& value) { bind(index, value.toString()); }
        void integer(int index, int value) { bind(index, value); }
        void flag(int index, bool value) { bind(index, value); }
        void number(int index, double value) { bind(index, value); }
        void date(int index, const QDate& value) { bind(index, value.toString(dateFormat())); }
        void time(int index, const QDateTime& value) { bind(index, value.toString(timeFormat())); }

    private:
        void bind(int index, const QVariant& value) { query.bindValue(QLatin1Char(':') + column(index), value); }
    };

    static void require(bool done, const QSqlError& error)
    {
        if (!done)
            qFatal("%s", qUtf8Printable(error.text()));
    }
    static void prepare(QSqlQuery& query, const QString& text) { require(query.prepare(text), query.lastError()); }
    static void run(QSqlQuery& query, const QString& text) { require(query.exec(text), query.lastError()); }

    template <typename Bind>
    void runForEach(const QString& text, const List<Entity>& entities, const Bind& bind)
    {
        require(m_database.transaction(), m_database.lastError());
        QSqlQuery query(m_database);
        prepare(query, text);
        for (const auto& entity : entities) {
            bind(query, *entity);
            require(query.exec(), query.lastError());
        }
        require(m_database.commit(), m_database.lastError());
    }

    void write(const QString& text, const List<Entity>& entities)
    {
        const QDateTime now = QDateTime::currentDateTimeUtc();
        runForEach(text, entities, [&](QSqlQuery& query, auto& entity) {
            Row row{query, m_sqlite};
            writeObject<Kind>(row, entity, now);
        });
    }

    bool m_sqlite;
    QSqlDatabase m_database;
};

} // namespace Bench
