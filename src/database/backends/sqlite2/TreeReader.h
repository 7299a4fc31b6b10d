#pragma once

#include <QByteArray>

#include <functional>
#include <vector>

namespace DataAccess::Database::Sqlite2 {

class FileImage;

/**
 * Walks the trees of tables. Nothing in the file is believed: every page is checked before use, and belongs to one tree
 * and one place in it, so that reading all tables of a file takes time linear in its size whatever it contains.
 */
class TreeReader
{
public:
    /// Gets a row's id and its record, which is valid during the call. A large one is the handler's alone: its memory
    /// is given back as soon as the handler drops it.
    using RowHandler = std::function<void(qint64 rowId, QByteArray record)>;

    /// @p image must outlive the reader, which releases pages of it that hold parts of large values.
    explicit TreeReader(FileImage& image);

    /// Hands out the rows of the table whose tree begins at page @p root, by ascending id. Each table can be read once.
    /// Throws LegacyFileError at the first damage, and lets pass what the handler throws.
    void readTable(quint32 root, const RowHandler& handler);

private:
    struct Node;
    struct Cell;

    /// The bytes of page @p number, which from now on belongs to the place that asked.
    const uchar* claimPage(quint32 number);
    Node openNode(quint32 number, bool isRoot);
    quint32 child(const Node& node, int index) const;
    Cell cell(const uchar* at) const;
    QByteArray record(const Cell& cell);

    FileImage& m_image;
    std::vector<bool> m_used;
};

} // namespace DataAccess::Database::Sqlite2
