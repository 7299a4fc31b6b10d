#include "entities/pd/TextList.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace PD::Entities {

QString TextList::toText(const QStringList& list)
{
    QString text = QString::fromUtf8(QJsonDocument(QJsonArray::fromStringList(list)).toJson(QJsonDocument::Compact));
    // A text that starts with this character would be read without it, unless it is escaped.
    return text.replace(QChar(QChar::ByteOrderMark), QLatin1String("\\ufeff"));
}

QStringList TextList::fromText(const QString& text)
{
    if (text.isEmpty())
        return {};

    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    const QJsonArray array = document.array();
    const bool allTexts =
        std::all_of(array.begin(), array.end(), [](const QJsonValue& value) { return value.isString(); });
    if (!document.isArray() || !allTexts)
        return {text};

    QStringList list;
    list.reserve(array.size());
    for (const QJsonValue& value : array)
        list.append(value.toString());
    return list;
}

} // namespace PD::Entities
