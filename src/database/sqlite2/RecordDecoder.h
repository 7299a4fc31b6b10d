#pragma once

#include <QByteArray>
#include <QVector>

namespace DataAccess::Database::Sqlite2 {

/// Splits the records of one table into the values of its columns.
class RecordDecoder
{
public:
    explicit RecordDecoder(int columnCount);

    /// The values of @p record as stored, null for NULL; they refer to its bytes and are valid as long as those, until
    /// the next call. Throws LegacyFileError when the record is damaged or has another number of columns.
    QVector<QByteArray>& decode(const QByteArray& record);

private:
    QVector<QByteArray> m_values;
};

} // namespace DataAccess::Database::Sqlite2
