#include "database/StorableText.h"

#include "database/ExecutionException.h"

#include <QByteArray>

namespace DataAccess::Converter {

namespace {

/// Whether every backend gives @p text back as it was.
bool isStorable(const QString& text)
{
    const QChar* const end = text.constEnd();
    for (const QChar* c = text.constBegin(); c != end; ++c) {
        if (c->isNull() || c->unicode() >= 0xfffe || c->isLowSurrogate())
            return false;
        if (c->isHighSurrogate() && (++c == end || !c->isLowSurrogate()))
            return false;
    }
    return true;
}

} // namespace

QString storable(const QString& text, const QString& placeholder)
{
    if (!isStorable(text))
        refuseValue("A text with NUL characters, lone surrogates or noncharacters cannot be stored", placeholder);
    // A leading byte order mark counts as no part of the text, for SQLite where it is bound and for PostgreSQL's driver
    // where it is read; a second one does.
    constexpr QChar byteOrderMark(QChar::ByteOrderMark);
    return text.startsWith(byteOrderMark) ? byteOrderMark + text : text;
}

void refuseValue(const char* reason, const QString& placeholder)
{
    QByteArray text(reason);
    if (!placeholder.isNull())
        text += " as \"" + placeholder.midRef(1).toLocal8Bit() + '"';
    throw Exceptions::ExecutionException(text.constData());
}

} // namespace DataAccess::Converter
