#pragma once

#include "database/SQLite3ValueConverter.h"

namespace DataAccess::Converter {

/// The conversions for legacy SQLite 2 files: those of SQLite 3, but bytes are hexadecimal text.
class DATAACCESS_EXPORT SQLite2ValueConverter final : public SQLite3ValueConverter
{
public:
    using SQLite3ValueConverter::append;
    using SQLite3ValueConverter::bindValue;
    using SQLite3ValueConverter::SQLite3ValueConverter;
    using SQLite3ValueConverter::value;
    ~SQLite2ValueConverter() override;

    void bindValue(const QString& placeholder, const QByteArray& value) override;
    void append(QList<QVariant>& list, const QByteArray& value) const override;
    void value(QByteArray& value, int column) const override;
    /// Some programs store the Base64 text as bytes, and so as hexadecimal text; both forms are read.
    QImage toImage(int column) const override;
};

} // namespace DataAccess::Converter
