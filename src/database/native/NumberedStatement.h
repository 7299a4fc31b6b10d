#pragma once

#include <QString>

#include <vector>

namespace DataAccess::Database::Native {

/// A statement in PostgreSQL's own form: its parameters have numbers.
struct NumberedStatement
{
    /// Puts "$1" and so on for the names of @p statement, such as ":id". One name has one number, wherever it stands.
    explicit NumberedStatement(const QString& statement);

    QString text;
    std::vector<QString> names; ///< With their colons; the first is that of number 1.
};

} // namespace DataAccess::Database::Native
