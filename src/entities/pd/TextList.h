#pragma once

#include "entities/pd/PDExport.h"

#include <QStringList>

namespace PD::Entities {

/// The text form of a list of texts: a JSON array of strings, from which every list comes back as it was.
class PD_EXPORT TextList
{
public:
    static QString toText(const QStringList& list);

    /**
     * The list that @p text stands for. Text of another kind, such as older versions of the suite may have stored, is a
     * list of this one text: nothing says what would separate several. Null and empty text is the empty list.
     */
    static QStringList fromText(const QString& text);
};

} // namespace PD::Entities
