#pragma once

#include "database/ValueConverter.h"
#include "database/backends/ParameterNames.h"

#include <QByteArray>
#include <QString>

#include <libpq-fe.h>
#include <vector>

namespace DataAccess::Database {

/// A statement in PostgreSQL's own form: its parameters have numbers.
struct NumberedStatement
{
    /// Puts "$1" and so on for the names of @p statement, such as ":id". One name has one number, wherever it stands.
    explicit NumberedStatement(const QString& statement);

    QString text;
    std::vector<QString> names; ///< With their colons; the first is that of number 1.
};

/// Holds the values of one row's parameters as the texts that PostgreSQL reads.
class PostgresParameters final : public Converter::ValueConverter
{
public:
    using ValueConverter::bindValue;

    /// Keeps a reference to @p query, which is not bound to. @p names are those of the parameters, by place.
    PostgresParameters(QSqlQuery& query, std::vector<QString> names);
    PostgresParameters(const PostgresParameters&) = delete;
    PostgresParameters& operator=(const PostgresParameters&) = delete;
    ~PostgresParameters() override;

    void bindValue(const QString& placeholder, const QUuid& value) override;

    /// Throws ExecutionException when a parameter was never bound.
    void requireAll() const { m_names.requireAll(); }

    /// What the server is to take the values for: the types of the literals that Qt's driver writes, which the server
    /// converts to those of the columns, or 0 where it is to find the type itself.
    const std::vector<Oid>& types() const { return m_types; }
    /// The texts, by place; null for NULL. Good until a value is bound.
    std::vector<const char*> texts() const;
    /// Of all texts, in bytes.
    std::size_t size() const;

protected:
    void bind(const QString& placeholder, const QVariant& value) override;

private:
    ParameterNames m_names;
    std::vector<Oid> m_types;
    std::vector<QByteArray> m_texts;
};

} // namespace DataAccess::Database
