#include "database/backends/postgres/PostgresParameters.h"

#include "database/private/DateTimeText.h"

#include <QLocale>
#include <QRegularExpression>
#include <QUuid>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <utility>

namespace DataAccess::Database {

namespace {

/// The types that are named, by the numbers that PostgreSQL's catalogue pg_type gives them.
enum Type : Oid { Unknown = 0, Boolean = 16, BigInt = 20, Numeric = 1700 };

Oid typeOf(const QVariant& value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::Bool:
        return Boolean;
    case QMetaType::Int:
    case QMetaType::LongLong:
        return BigInt;
    case QMetaType::Double:
        return std::isinf(value.toDouble()) ? Unknown : Numeric; // infinity is written as a text
    default:
        return Unknown;
    }
}

QByteArray textOf(const QVariant& value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::LongLong:
        return QByteArray::number(value.toLongLong());
    case QMetaType::Double: {
        const double number = value.toDouble();
        return std::isinf(number) ? QByteArray(number > 0 ? "Infinity" : "-Infinity")
                                  : QByteArray::number(number, 'g', QLocale::FloatingPointShortest);
    }
    case QMetaType::QByteArray:
        return "\\x" + value.toByteArray().toHex();
    case QMetaType::QDate:
        return DateTimeText::format(value.toDate()).toLatin1();
    default:
        return value.toString().toUtf8();
    }
}

} // namespace

NumberedStatement::NumberedStatement(const QString& statement)
{
    // Quoted texts and names, and casts, are passed over.
    static const QRegularExpression pattern(QStringLiteral(R"('[^']*'|"[^"]*"|::|(:[A-Za-z_]\w*))"));
    int done = 0;
    for (auto match = pattern.globalMatch(statement); match.hasNext();) {
        const QRegularExpressionMatch parameter = match.next();
        const QString name = parameter.captured(1);
        if (name.isEmpty())
            continue;
        auto known = std::find(names.begin(), names.end(), name);
        if (known == names.end())
            known = names.insert(names.end(), name);
        text += statement.midRef(done, parameter.capturedStart() - done) + QLatin1Char('$') +
                QString::number(known - names.begin() + 1);
        done = parameter.capturedEnd();
    }
    text += statement.midRef(done);
}

PostgresParameters::PostgresParameters(QSqlQuery& query, std::vector<QString> names)
    : ValueConverter(query)
    , m_names(std::move(names))
    , m_types(m_names.count(), Unknown)
    , m_texts(m_names.count())
{}

PostgresParameters::~PostgresParameters() = default;

void PostgresParameters::bindValue(const QString& placeholder, const QUuid& value)
{
    const std::size_t place = m_names.placeOf(placeholder);
    m_types[place] = Unknown;
    m_texts[place] = value.toByteArray();
}

void PostgresParameters::bind(const QString& placeholder, const QVariant& value)
{
    const std::size_t place = m_names.placeOf(placeholder);
    if (value.isNull()) {
        m_texts[place] = QByteArray(); // NULL is of whatever type the other rows have there.
        return;
    }
    m_types[place] = typeOf(value);
    m_texts[place] = textOf(value);
}

std::vector<const char*> PostgresParameters::texts() const
{
    std::vector<const char*> texts;
    texts.reserve(m_texts.size());
    for (const QByteArray& text : m_texts)
        texts.push_back(text.isNull() ? nullptr : text.constData());
    return texts;
}

std::size_t PostgresParameters::size() const
{
    std::size_t size = 0;
    for (const QByteArray& text : m_texts)
        size += static_cast<std::size_t>(text.size());
    return size;
}

} // namespace DataAccess::Database
