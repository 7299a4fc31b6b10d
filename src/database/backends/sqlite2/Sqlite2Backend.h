#pragma once

#include "database/backends/SqliteFamily.h"

namespace DataAccess::Converter {

/// The conversions for legacy SQLite 2 files: those of SQLite 3, but bytes are hexadecimal text.
class DATAACCESS_EXPORT SQLite2ValueConverter final : public SqliteValueConverter
{
public:
    using SqliteValueConverter::append;
    using SqliteValueConverter::bindValue;
    using SqliteValueConverter::SqliteValueConverter;
    using SqliteValueConverter::value;

    void bindValue(const QString& placeholder, const QByteArray& value) override;
    void append(QList<QVariant>& list, const QByteArray& value) const override;
    void value(QByteArray& value, int column) const override;
    /// Some programs store the Base64 text as bytes, and so as hexadecimal text; both forms are read.
    QImage toImage(int column) const override;
};

} // namespace DataAccess::Converter

namespace DataAccess::Database {

/// Legacy files of SQLite 2, through their working copies.
class Sqlite2Backend final : public SqliteFamily
{
public:
    Sqlite2Backend();

    QString driver() const override;
    QSqlError prepareOpening(const QString& name, OpenFile& file) const override;
    std::shared_ptr<Interfaces::IValueConverter> converter(QSqlQuery& query) const override;
    /// The legacy file itself is never written.
    bool keepsOriginal() const override { return true; }
};

} // namespace DataAccess::Database
