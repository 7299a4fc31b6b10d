#include "bench/Report.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSysInfo>
#include <QTextStream>
#include <QThread>

#include <utility>

namespace Bench {

namespace {

QString number(double value)
{
    return QString::number(value, 'f', value < 10 ? 2 : value < 100 ? 1 : 0);
}

QString ratio(double dividend, const std::optional<double>& divisor)
{
    return divisor ? QString::number(dividend / *divisor, 'f', 2) : QStringLiteral("-");
}

void insert(QJsonObject& json, const char* key, const std::optional<double>& value)
{
    if (value)
        json.insert(QLatin1String(key), *value);
}

QJsonObject toJson(const Measurement& measurement)
{
    QJsonObject json{
        {QStringLiteral("pass"), measurement.pass},       {QStringLiteral("backend"), measurement.backend},
        {QStringLiteral("subject"), measurement.subject}, {QStringLiteral("operation"), measurement.operation},
        {QStringLiteral("unit"), measurement.unit},       {QStringLiteral("library"), measurement.library}};
    insert(json, "bare", measurement.bare);
    insert(json, "handWritten", measurement.handWritten);
    insert(json, "aim", measurement.aim);
    return json;
}

QJsonObject toJson(const Growth& growth)
{
    QJsonArray sizes;
    for (const auto& [rows, cost] : growth.microseconds)
        sizes.append(QJsonObject{{QStringLiteral("rows"), rows}, {QStringLiteral("microseconds"), cost}});
    return {{QStringLiteral("backend"), growth.backend},
            {QStringLiteral("operation"), growth.operation},
            {QStringLiteral("sizes"), sizes}};
}

template <typename T>
QJsonArray toJson(const std::vector<T>& results)
{
    QJsonArray json;
    for (const T& result : results)
        json.append(toJson(result));
    return json;
}

} // namespace

Report::Report(QTextStream& out)
    : m_out(out)
{}

void Report::beginPass(const QString& name)
{
    m_pass = name;
    m_sizes.clear();
    m_out
        << "\n## " << name << "\n\n"
        << "| database | data | operation | unit | library | bare | by hand | library / bare | aim | by hand / library |\n"
        << "|---|---|---|---|---|---|---|---|---|---|\n";
    m_out.flush();
}

void Report::add(Measurement measurement)
{
    measurement.pass = m_pass;
    const auto optional = [](const std::optional<double>& value) {
        return value ? number(*value) : QStringLiteral("-");
    };
    const QStringList cells = {measurement.backend,
                               measurement.subject,
                               measurement.operation,
                               measurement.unit,
                               number(measurement.library),
                               optional(measurement.bare),
                               optional(measurement.handWritten),
                               ratio(measurement.library, measurement.bare),
                               optional(measurement.aim),
                               measurement.handWritten ? ratio(*measurement.handWritten, measurement.library)
                                                       : QStringLiteral("-")};
    m_out << "| " << cells.join(QStringLiteral(" | ")) << " |\n";
    m_out.flush();
    m_measurements.push_back(std::move(measurement));
}

void Report::add(const Growth& growth)
{
    QString sizes;
    for (const auto& size : growth.microseconds)
        sizes += QStringLiteral(" %1 |").arg(size.first);
    if (sizes != m_sizes) {
        m_out << "\n## Microseconds a row, by the number of rows in the table\n\n| database | operation |" << sizes
              << " largest / smallest |\n|---|---|"
              << QStringLiteral("---|").repeated(static_cast<int>(growth.microseconds.size()) + 1) << '\n';
        m_sizes = sizes;
    }
    m_out << "| " << growth.backend << " | " << growth.operation << " |";
    for (const auto& size : growth.microseconds)
        m_out << ' ' << number(size.second) << " |";
    m_out << ' ' << ratio(growth.microseconds.back().second, growth.microseconds.front().second) << " |\n";
    m_out.flush();
    m_growths.push_back(growth);
}

bool Report::writeJson(const QString& fileName) const
{
    const QJsonObject json{
        {QStringLiteral("date"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)},
        {QStringLiteral("machine"), QJsonObject{{QStringLiteral("cores"), QThread::idealThreadCount()},
                                                {QStringLiteral("architecture"), QSysInfo::currentCpuArchitecture()},
                                                {QStringLiteral("system"), QSysInfo::prettyProductName()}}},
        {QStringLiteral("measurements"), toJson(m_measurements)},
        {QStringLiteral("growth"), toJson(m_growths)}};
    QFile file(fileName);
    const QByteArray text = QJsonDocument(json).toJson();
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush();
}

} // namespace Bench
