#pragma once

#include "database/IValueConverter.h"

namespace DataAccess::Converter {

/// Throws ExecutionException: @p reason, and the property to which the value was to be bound by @p placeholder, but not
/// the value.
[[noreturn]] void refuseValue(const char* reason, const QString& placeholder);

/// The conversions that all backends share. Bytes, dates and times are bound as the driver has them, which is what
/// PostgreSQL needs.
class DATAACCESS_EXPORT ValueConverter : public Interfaces::IValueConverter
{
public:
    /// Keeps a reference to @p query, which must outlive the converter.
    explicit ValueConverter(QSqlQuery& query);
    ValueConverter(const ValueConverter&) = default;
    ValueConverter& operator=(const ValueConverter&) = delete;
    ~ValueConverter() override;

    void bindValue(const QString& placeholder, signed char value) override;
    void bindValue(const QString& placeholder, short value) override { bind(placeholder, static_cast<int>(value)); }
    void bindValue(const QString& placeholder, int value) override { bind(placeholder, value); }
    void bindValue(const QString& placeholder, unsigned int value) override;
    void bindValue(const QString& placeholder, qint64 value) override { bind(placeholder, value); }
    void bindValue(const QString& placeholder, quint64 value) override;
    void bindValue(const QString& placeholder, bool value) override { bind(placeholder, value); }
    void bindValue(const QString& placeholder, double value) override;
    void bindValue(const QString& placeholder, const QString& value) override;
    void bindValue(const QString& placeholder, const QUuid& value) override { bind(placeholder, value.toString()); }
    void bindValue(const QString& placeholder, const QByteArray& value) override { bind(placeholder, value); }
    void bindValue(const QString& placeholder, const QDate& value) override;
    void bindValue(const QString& placeholder, const QDateTime& value) override;
    void bindValue(const QString& placeholder, const QImage& value) override;
    void bindValue(const QString& placeholder, const QJsonObject& value) override;

    void value(signed char& value, int column) const override { value = static_cast<signed char>(toInt32(column)); }
    void value(char& value, int column) const override;
    void value(short& value, int column) const override { value = toInt16(column); }
    void value(int& value, int column) const override { value = toInt32(column); }
    void value(qint64& value, int column) const override { value = toInt64(column); }
    void value(bool& value, int column) const override { value = toBool(column); }
    void value(float& value, int column) const override { value = static_cast<float>(toDouble(column)); }
    void value(double& value, int column) const override { value = toDouble(column); }
    void value(QString& value, int column) const override { value = toString(column); }
    void value(QByteArray& value, int column) const override { value = read(column).toByteArray(); }
    void value(QDate& value, int column) const override { value = toDate(column); }
    void value(QDateTime& value, int column) const override { value = toDateTime(column); }
    void value(QImage& value, int column) const override { value = toImage(column); }
    void value(QJsonObject& value, int column) const override { value = toJsonObject(column); }

    bool toBool(int column) const override;
    qint16 toInt16(int column) const override { return static_cast<qint16>(toInt32(column)); }
    qint32 toInt32(int column) const override;
    qint64 toInt64(int column) const override { return read(column).toLongLong(); }
    unsigned int toUint(int column) const override;
    double toDouble(int column) const override;
    QString toString(int column) const override;
    QDate toDate(int column) const override { return read(column).toDate(); }
    QDateTime toDateTime(int column) const override { return read(column).toDateTime(); }
    QImage toImage(int column) const override;
    QJsonObject toJsonObject(int column) const override;

    void append(QList<QVariant>& list, int value) const override { list.append(value); }
    void append(QList<QVariant>& list, qint64 value) const override { list.append(value); }
    void append(QList<QVariant>& list, const QString& value) const override;
    void append(QList<QVariant>& list, const QByteArray& value) const override { list.append(value); }

    QString type(const Enumerations::DataType& kind, unsigned int size) const override;
    QSqlQuery& query() override;
    QDateTime toUtcDateTime(int column) const override;
    int columnCount() const override;
    QUuid toUuid(int column) const override { return QUuid(toString(column)); }

protected:
    /// The value of @p column in the current row.
    virtual QVariant read(int column) const;
    /// Binds @p value as it is: a bool, int, qint64, double, QString, QByteArray or QDate, or a null one of these.
    virtual void bind(const QString& placeholder, const QVariant& value);
    /// Binds the text that @p format makes of @p value.
    void bindTime(const QString& placeholder, const QDateTime& value, QString (*format)(const QDateTime&));
    /// Throws ExecutionException when @p date, bound to @p placeholder, does not come back from a database as it was.
    static void requireStorable(const QString& placeholder, const QDate& date);

private:
    QSqlQuery& m_query;
    mutable int m_columnCount = -1;
    // Rows that are written together share one time, which is then neither printed nor converted for each of them.
    QDateTime m_boundTime;
    QString m_boundTimeText;
    mutable QDateTime m_readTime;
    mutable QDateTime m_readUtcTime;
};

} // namespace DataAccess::Converter
