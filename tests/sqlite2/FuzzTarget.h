#pragma once

#include <QByteArray>

namespace DataAccess::Database::Sqlite2 {
class CopyWriter;
}

namespace TestSupport {

/**
 * Reads @p input, a legacy file behind which its journal may follow, and returns the number of rows that could be read;
 * -1 when it was refused as a whole. Writes it with @p writer, too, unless that is null.
 */
qint64 readLegacyInput(const QByteArray& input, DataAccess::Database::Sqlite2::CopyWriter* writer = nullptr);

} // namespace TestSupport
