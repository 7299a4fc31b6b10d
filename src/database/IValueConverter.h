#pragma once

#include "database/DataAccessExport.h"
#include "database/DataType.h"

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QImage>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QUuid>
#include <QVariant>

class QSqlQuery;

namespace DataAccess::Interfaces {

/**
 * Binds values to a query and reads them from it in the form in which one backend stores them.
 *
 * Binding throws ExecutionException, which names the property but not the value, for a value that no backend gives back
 * as it was: a text with NUL characters, lone surrogates or one of the noncharacters U+FFFE and U+FFFF, a date outside
 * the years 1 to 9999, and an integer above the largest signed one. A null text and an invalid date are bound as NULL.
 * Reading never throws: what does not convert gives the type's default value, and NaN for a floating type and NULL.
 */
class DATAACCESS_EXPORT IValueConverter
{
public:
    virtual ~IValueConverter();

    /// Binds @p value to @p placeholder, which starts with a colon, as the class describes.
    virtual void bindValue(const QString& placeholder, signed char value) = 0;
    virtual void bindValue(const QString& placeholder, short value) = 0;
    virtual void bindValue(const QString& placeholder, int value) = 0;
    virtual void bindValue(const QString& placeholder, unsigned int value) = 0;
    virtual void bindValue(const QString& placeholder, qint64 value) = 0;
    virtual void bindValue(const QString& placeholder, quint64 value) = 0;
    virtual void bindValue(const QString& placeholder, bool value) = 0;

    /// NaN is bound as NULL.
    virtual void bindValue(const QString& placeholder, double value) = 0;
    /// A null text is bound as NULL, an empty one as it is.
    virtual void bindValue(const QString& placeholder, const QString& value) = 0;
    /// Text with braces.
    virtual void bindValue(const QString& placeholder, const QUuid& value) = 0;
    /// Bytes as they are; SQLite 2 gets them as hexadecimal text.
    virtual void bindValue(const QString& placeholder, const QByteArray& value) = 0;
    /// An invalid date is bound as NULL.
    virtual void bindValue(const QString& placeholder, const QDate& value) = 0;
    /// The date and the time as they stand; the time zone is not stored.
    virtual void bindValue(const QString& placeholder, const QDateTime& value) = 0;
    /// Base64 of the image as PNG; a null image is bound as NULL.
    virtual void bindValue(const QString& placeholder, const QImage& value) = 0;
    /// Compact JSON text.
    virtual void bindValue(const QString& placeholder, const QJsonObject& value) = 0;

    /// Reads @p column of the current row, the first being 0.
    virtual void value(signed char& value, int column) const = 0;
    /// The first character of a text, as Latin-1; NUL of an empty one.
    virtual void value(char& value, int column) const = 0;

    /// Reads @p column of the current row.
    virtual void value(short& value, int column) const = 0;
    virtual void value(int& value, int column) const = 0;
    virtual void value(qint64& value, int column) const = 0;
    virtual void value(bool& value, int column) const = 0;
    virtual void value(float& value, int column) const = 0;
    virtual void value(double& value, int column) const = 0;
    virtual void value(QString& value, int column) const = 0;
    virtual void value(QByteArray& value, int column) const = 0;
    virtual void value(QDate& value, int column) const = 0;
    virtual void value(QDateTime& value, int column) const = 0;
    virtual void value(QImage& value, int column) const = 0;
    virtual void value(QJsonObject& value, int column) const = 0;

    /// The value of @p column in the current row.
    virtual bool toBool(int column) const = 0;
    virtual qint16 toInt16(int column) const = 0;
    virtual qint32 toInt32(int column) const = 0;
    virtual qint64 toInt64(int column) const = 0;
    virtual unsigned int toUint(int column) const = 0;
    virtual double toDouble(int column) const = 0;
    virtual QString toString(int column) const = 0;
    virtual QDate toDate(int column) const = 0;

    /// The stored date and time as a local time.
    virtual QDateTime toDateTime(int column) const = 0;
    /// The image of a Base64 text; null when it is none.
    virtual QImage toImage(int column) const = 0;
    /// The object of a JSON text; empty when it is none.
    virtual QJsonObject toJsonObject(int column) const = 0;

    /// Append one value to a column list of IDatabase::ExecBatch().
    virtual void append(QList<QVariant>& list, int value) const = 0;
    virtual void append(QList<QVariant>& list, qint64 value) const = 0;
    virtual void append(QList<QVariant>& list, const QString& value) const = 0;
    virtual void append(QList<QVariant>& list, const QByteArray& value) const = 0;

    /// SQL text of a column of @p kind. Throws ExecutionException for a size that the backend's kind cannot have.
    virtual QString type(const Enumerations::DataType& kind, unsigned int size) const = 0;

    /// The query that is bound to and read from. Row readers and writers have none that can be used.
    virtual QSqlQuery& query() = 0;

    /// The stored date and time as UTC: the form of the bookkeeping column `timestamp`.
    virtual QDateTime toUtcDateTime(int column) const = 0;

    /// Number of columns of the query's result.
    virtual int columnCount() const = 0;

    /// The UUID whose text is stored; null when there is none.
    virtual QUuid toUuid(int column) const = 0;
};

} // namespace DataAccess::Interfaces
