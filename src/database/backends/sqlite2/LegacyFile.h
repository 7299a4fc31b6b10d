#pragma once

#include "database/backends/sqlite2/FileImage.h"
#include "database/backends/sqlite2/TableParser.h"
#include "database/backends/sqlite2/TreeReader.h"

#include <QVector>

#include <functional>
#include <vector>

namespace DataAccess::Database::Sqlite2 {

/// The tables, rows and other objects of a legacy file.
class LegacyFile
{
public:
    struct Table
    {
        LegacyTable definition;
        quint32 root = 0; ///< The page where its tree begins.
    };

    /// An index, a view or a trigger.
    struct Object
    {
        QByteArray type;      ///< "index", "view" or "trigger".
        QByteArray name;      ///< UTF-8.
        QByteArray tableName; ///< Of the table that it belongs to; UTF-8.
        QByteArray sql;       ///< The statement that made it, UTF-8.
    };

    /// Gets a row's id and the values of its columns in UTF-8, null for NULL; they are valid during the call.
    using RowHandler = std::function<void(qint64 rowId, const QVector<QByteArray>& values)>;

    /// Reads the schema. Throws LegacyFileError.
    explicit LegacyFile(FileImage image);
    LegacyFile(const LegacyFile&) = delete;
    LegacyFile& operator=(const LegacyFile&) = delete;

    quint32 pageCount() const { return m_image.pageCount(); }
    /// In the order of their creation.
    const std::vector<Table>& tables() const { return m_tables; }
    /// In the order of their creation, without the indexes that belong to a constraint.
    const std::vector<Object>& objects() const { return m_objects; }

    /// Hands out the rows of @p table by ascending id. Each table can be read once. Throws LegacyFileError at the first
    /// damage, and lets pass what the handler throws.
    void readRows(const Table& table, const RowHandler& handler);

private:
    void addSchemaRow(const QVector<QByteArray>& values);

    FileImage m_image;
    TreeReader m_reader;
    std::vector<Table> m_tables;
    std::vector<Object> m_objects;
};

} // namespace DataAccess::Database::Sqlite2
