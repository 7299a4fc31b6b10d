#pragma once

#include "database/IValueConverter.h"
#include "transfer/private/SchemaTables.h"

#include <QByteArray>
#include <QJsonValue>
#include <QString>

namespace DataAccess::Transfer {

/**
 * What one column of one row holds, in a form that is the same for every backend. Which member counts follows from the
 * column's kind: a date and a time are their texts, "yyyy-MM-dd" and "yyyy-MM-dd HH:mm:ss.zzz".
 */
struct DATAACCESS_EXPORT StoredValue
{
    bool isNull = true; ///< Nothing is stored.
    qint64 integer = 0; ///< Integers, and booleans as 0 and 1.
    double number = 0;  ///< Numbers with a fraction.
    QString text;       ///< Texts, dates, times and images.
    QByteArray bytes;   ///< Contents of files.

    /// Reads @p column; false when what is stored there is no value of the column's kind.
    bool read(const Interfaces::IValueConverter& row, int position, const SchemaColumn& column);
    /// Takes over what appendTo() has written; false when @p value is no value of the column's kind.
    bool read(const QJsonValue& value, const SchemaColumn& column);
    /// Binds the value as one of @p column. Throws ExecutionException for one that cannot be stored.
    void bind(Interfaces::IValueConverter& values, const QString& placeholder, const SchemaColumn& column) const;
    /// Appends the value as JSON. Equal values give equal texts.
    void appendTo(QByteArray& json, const SchemaColumn& column) const;

private:
    void takeImage();
};

/// Appends @p text to @p json, as a JSON string.
DATAACCESS_EXPORT void appendJsonString(QByteArray& json, const QString& text);

} // namespace DataAccess::Transfer
