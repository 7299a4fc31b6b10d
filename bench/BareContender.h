#pragma once

#include "bench/Contender.h"
#include "bench/TextForms.h"

#include <string>

namespace Bench {

/// The database's own interface, on the caller's thread: as fast as it can be had. @p Connection is BareSqlite or
/// BarePostgres.
template <typename Kind, typename Object, typename Connection>
class BareContender final : public Contender<Object>
{
public:
    using typename Contender<Object>::Objects;

    explicit BareContender(DataAccess::Interfaces::IConfig& config)
        : m_connection(config)
    {}

    Objects load() override
    {
        // The objects of one select come first: the hash is then made once, in its size.
        List<Object> rows;
        read(select(), rows);
        Objects objects;
        objects.reserve(static_cast<int>(rows.size()));
        for (auto& object : rows) {
            auto& place = objects[idOf(*object)];
            place = std::move(object);
        }
        return objects;
    }

    void insert(const List<Object>& objects) override
    {
        std::string names;
        std::string values;
        for (std::size_t i = 0; i < Kind::columns.size(); ++i) {
            names.append(i == 0 ? "" : ", ").append(Kind::columns[i]);
            values.append(i == 0 ? "" : ", ").append(Connection::placeholder(static_cast<int>(i)));
        }
        write("INSERT INTO " + table() + " (" + names + ") VALUES (" + values + ")", objects);
    }

    void update(const List<Object>& objects) override
    {
        std::string assignments;
        for (std::size_t i = 1; i < Kind::columns.size(); ++i)
            assignments.append(i == 1 ? "" : ", ")
                .append(Kind::columns[i])
                .append(" = ")
                .append(Connection::placeholder(static_cast<int>(i)));
        write("UPDATE " + table() + " SET " + assignments + " WHERE id = " + Connection::placeholder(0), objects);
    }

    void remove(const List<Object>& objects) override
    {
        runForEach("DELETE FROM " + table() + " WHERE id = " + Connection::placeholder(0), objects,
                   [](auto& statement, const auto& object) { statement.id(0, idOf(object)); });
    }

    List<Object> get(const std::vector<QUuid>& ids) override
    {
        List<Object> objects;
        objects.reserve(ids.size());
        char id[idSize];
        for (const QUuid& each : ids) {
            // The id stands in the text, as the library has it.
            const std::string_view text(id, static_cast<std::size_t>(printId(id, each)));
            read(select().append(" WHERE id = '").append(text).append("'"), objects);
        }
        return objects;
    }

private:
    static std::string table() { return Kind::table; }

    static std::string select()
    {
        static const std::string text = [] {
            std::string names;
            for (const char* column : Kind::columns)
                names.append(names.empty() ? "" : ", ").append(column);
            return "SELECT " + names + " FROM " + table();
        }();
        return text;
    }

    void read(const std::string& select, List<Object>& objects)
    {
        m_connection.select(select, [&](const auto& row) { objects.push_back(readObject<Kind, Object>(row)); });
    }

    template <typename Bind>
    void runForEach(const std::string& text, const List<Object>& objects, const Bind& bind)
    {
        m_connection.run("BEGIN");
        {
            auto statement = m_connection.prepare(text);
            for (const auto& object : objects) {
                bind(statement, *object);
                statement.execute();
            }
        }
        m_connection.run("COMMIT");
    }

    void write(const std::string& text, const List<Object>& objects)
    {
        // Each row gets a time of its own: who loads them is not to profit from equal ones.
        QDateTime time = QDateTime::currentDateTimeUtc();
        runForEach(text, objects, [&](auto& statement, auto& object) {
            time = time.addMSecs(1);
            writeObject<Kind>(statement, object, time);
        });
    }

    Connection m_connection;
};

} // namespace Bench
