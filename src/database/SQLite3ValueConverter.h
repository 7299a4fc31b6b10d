#pragma once

#include "database/ValueConverter.h"

namespace DataAccess::Converter {

/// The conversions for SQLite 3, which keeps dates and times as text: "yyyy-MM-dd" and "yyyy-MM-dd HH:mm:ss.zzz".
class DATAACCESS_EXPORT SQLite3ValueConverter : public ValueConverter
{
public:
    using ValueConverter::bindValue;
    using ValueConverter::value;
    using ValueConverter::ValueConverter;
    ~SQLite3ValueConverter() override;

    void bindValue(const QString& placeholder, const QDate& value) override;
    void bindValue(const QString& placeholder, const QDateTime& value) override;
    void value(QByteArray& value, int column) const override;
    QDate toDate(int column) const override;
    QDateTime toDateTime(int column) const override;
    QString type(const Enumerations::DataType& kind, unsigned int size) const override;
    QDateTime toUtcDateTime(int column) const override;

private:
    // Rows that were written together share one time, which is then not parsed for each of them.
    mutable QString m_readTimeText;
    mutable QDateTime m_readTime;
};

} // namespace DataAccess::Converter
