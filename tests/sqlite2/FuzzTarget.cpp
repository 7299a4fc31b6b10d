#include "FuzzTarget.h"

#include "database/backends/sqlite2/CopyWriter.h"
#include "database/backends/sqlite2/FileImage.h"
#include "database/backends/sqlite2/LegacyFileError.h"

#include <QBuffer>

using namespace DataAccess::Database::Sqlite2;

extern "C" int LLVMFuzzerTestOneInput(const uchar* data, size_t size);

namespace {

qint64 readRows(LegacyFile& file, const LegacyFile::Table& table)
{
    qint64 count = 0;
    try {
        file.readRows(table, [&count](qint64, const QVector<QByteArray>&) { ++count; });
    } catch (const LegacyFileError&) {
        // The other tables are to be tried as well.
        return count;
    }
    return count;
}

} // namespace

qint64 TestSupport::readLegacyInput(const QByteArray& input, CopyWriter* writer)
{
    const int journalAt = input.indexOf("\xd9\xd5\x05\xf9\x20\xa1\x63");
    QBuffer file, journal;
    file.setData(input.mid(0, journalAt));
    journal.setData(journalAt < 0 ? QByteArray() : input.mid(journalAt));
    file.open(QIODevice::ReadOnly);
    journal.open(QIODevice::ReadOnly);
    try {
        const auto image = [&] {
            file.seek(0);
            journal.seek(0);
            return FileImage(file, journalAt < 0 ? nullptr : &journal);
        };
        if (writer != nullptr) {
            LegacyFile legacy(image());
            writer->write(legacy, QByteArray());
        }
        LegacyFile legacy(image());
        qint64 count = 0;
        for (const LegacyFile::Table& table : legacy.tables())
            count += readRows(legacy, table);
        return count;
    } catch (const LegacyFileError&) {
        return -1;
    }
}

int LLVMFuzzerTestOneInput(const uchar* data, size_t size)
{
    TestSupport::readLegacyInput(QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    return 0;
}
