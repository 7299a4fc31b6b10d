#pragma once

#include "bench/BareThread.h"
#include "bench/Contender.h"

#include <string>

namespace Bench {

/// The database's own interface: @p Connection is BareSqlite or BarePostgres.
template <typename Kind, typename Connection>
class BareContender final : public Contender<Kind>
{
public:
    using typename Contender<Kind>::Entities;
    using typename Contender<Kind>::List;

    explicit BareContender(DataAccess::Interfaces::IConfig& config)
        : m_connection(config)
    {}

    Entities load() override
    {
        List rows;
        m_connection.select(select(), [&](const auto& row, int count) {
            if (rows.empty() && count > 0)
                rows.reserve(static_cast<std::size_t>(count));
            rows.push_back(readEntity<Kind>(row));
        });
        Entities entities;
        entities.reserve(static_cast<int>(rows.size()));
        for (auto& entity : rows) {
            const QUuid id = entity->Id();
            entities.insert(id, std::move(entity));
        }
        return entities;
    }

    void insert(const List& entities) override
    {
        std::string names;
        std::string values;
        for (std::size_t i = 0; i < Kind::columns.size(); ++i) {
            names.append(i == 0 ? "" : ", ").append(Kind::columns[i]);
            values.append(i == 0 ? "" : ", ").append(Connection::placeholder(static_cast<int>(i)));
        }
        write("INSERT INTO " + table() + " (" + names + ") VALUES (" + values + ")", entities);
    }

    void update(const List& entities) override
    {
        std::string assignments;
        for (std::size_t i = 1; i < Kind::columns.size(); ++i)
            assignments.append(i == 1 ? "" : ", ")
                .append(Kind::columns[i])
                .append(" = ")
                .append(Connection::placeholder(static_cast<int>(i)));
        write("UPDATE " + table() + " SET " + assignments + " WHERE id = " + Connection::placeholder(0), entities);
    }

    List get(const std::vector<QUuid>& ids) override
    {
        List entities;
        // One statement an id, with the id in its text, as the library has it.
        for (const QUuid& id : ids) {
            m_thread.submit([this, &entities, id] {
                m_connection.select(select() + " WHERE id = '" + id.toByteArray().toStdString() + "'",
                                    [&](const auto& row, int) { entities.push_back(readEntity<Kind>(row)); });
            });
        }
        m_thread.wait();
        return entities;
    }

    void softDelete(const List& entities) override
    {
        runForEach("UPDATE " + table() + " SET deleted = " + Connection::placeholder(0) +
                       ", timestamp = " + Connection::placeholder(1) + " WHERE id = " + Connection::placeholder(2),
                   3, entities, [](auto& statement, const auto& entity) {
                       statement.flag(0, true);
                       statement.time(1, QDateTime::currentDateTimeUtc());
                       statement.id(2, entity.Id());
                   });
    }

    void remove(const List& entities) override
    {
        runForEach("DELETE FROM " + table() + " WHERE id = " + Connection::placeholder(0), 1, entities,
                   [](auto& statement, const auto& entity) { statement.id(0, entity.Id()); });
    }

    unsigned int count() override
    {
        int rows = 0;
        m_connection.select("SELECT count(*) FROM " + table(), [&](const auto& row, int) { rows = row.integer(0); });
        return static_cast<unsigned int>(rows);
    }

private:
    static std::string table() { return Kind::table; }

    static std::string select()
    {
        std::string names;
        for (const char* column : Kind::columns)
            names.append(names.empty() ? "" : ", ").append(column);
        return "SELECT " + names + " FROM " + table();
    }

    template <typename Bind>
    void runForEach(const std::string& text, int parameters, const List& entities, const Bind& bind)
    {
        m_connection.run("BEGIN");
        {
            auto statement = m_connection.prepare(text, parameters);
            for (const auto& entity : entities) {
                bind(statement, *entity);
                statement.execute();
            }
        }
        m_connection.run("COMMIT");
    }

    void write(const std::string& text, const List& entities)
    {
        const QDateTime now = QDateTime::currentDateTimeUtc();
        runForEach(text, static_cast<int>(Kind::columns.size()), entities, [&](auto& statement, auto& entity) {
            writeEntity<Kind>(statement, entity, now);
            entity.SetTimestamp(now);
            entity.SetEntityState(QOR::Entities::Enumerations::Normal);
        });
    }

    Connection m_connection;
    BareThread m_thread;
};

} // namespace Bench
