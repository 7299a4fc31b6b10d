#pragma once

#include <QByteArray>

namespace DataAccess::Database::Sqlite2 {

/// The texts of a legacy file. Nothing in the file tells their encoding; each is taken by itself.
class LegacyText
{
public:
    /// @p bytes themselves when they are UTF-8; otherwise they were Windows-1252, and become UTF-8. Null stays null.
    static QByteArray toUtf8(const QByteArray& bytes);
    /// Whether two names or keywords are the same: the case of ASCII letters, and of those only, makes no difference.
    static bool sameWord(const QByteArray& left, const QByteArray& right);
};

} // namespace DataAccess::Database::Sqlite2
