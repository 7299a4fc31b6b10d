#include "database/sqlite2/LegacyFileError.h"

namespace DataAccess::Database::Sqlite2 {

LegacyFileError::LegacyFileError(const QString& text)
    : std::runtime_error(text.toStdString())
{}

LegacyFileError::~LegacyFileError() = default;

QString LegacyFileError::text() const
{
    return QString::fromUtf8(what());
}

} // namespace DataAccess::Database::Sqlite2
