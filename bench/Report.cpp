#include "bench/Report.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QSysInfo>
#include <QTextStream>
#include <QThread>

#include <algorithm>
#include <utility>

namespace Bench {

namespace {

QString number(double value)
{
    return QString::number(value, 'f', value < 10 ? 2 : value < 100 ? 1 : 0);
}

QString number(const std::optional<double>& value)
{
    return value ? number(*value) : QStringLiteral("-");
}

QString ratio(const std::optional<double>& dividend, const std::optional<double>& divisor)
{
    return dividend && divisor ? QString::number(*dividend / *divisor, 'f', 2) : QStringLiteral("-");
}

/// How the library stands to each of the other ways.
QStringList ratios(const Measurement& measurement)
{
    return {ratio(measurement.library, measurement.bare), ratio(measurement.library, measurement.plain),
            ratio(measurement.byHand, measurement.library)};
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
    insert(json, "plain", measurement.plain);
    insert(json, "byHand", measurement.byHand);
    return json;
}

QJsonObject toJson(const Growth& growth)
{
    QJsonArray sizes;
    for (const auto& [size, cost] : growth.microseconds)
        sizes.append(QJsonObject{{QStringLiteral("size"), size}, {QStringLiteral("microseconds"), cost}});
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

void Report::printLine(const QStringList& cells)
{
    m_out << "| " << cells.join(QStringLiteral(" | ")) << " |\n";
    m_out.flush();
}

void Report::printHead(const QStringList& cells)
{
    printLine(cells);
    m_out << '|' << QStringLiteral("---|").repeated(cells.size()) << '\n';
}

void Report::beginPass(const QString& name)
{
    m_pass = name;
    m_out << "\n## " << name << "\n\n";
    printHead({QStringLiteral("database"), QStringLiteral("data"), QStringLiteral("operation"), QStringLiteral("unit"),
               QStringLiteral("library"), QStringLiteral("bare"), QStringLiteral("plain"), QStringLiteral("by hand"),
               QStringLiteral("library / bare"), QStringLiteral("library / plain"),
               QStringLiteral("by hand / library")});
}

void Report::add(Measurement measurement)
{
    measurement.pass = m_pass;
    printLine(QStringList{measurement.backend, measurement.subject, measurement.operation, measurement.unit,
                          number(measurement.library), number(measurement.bare), number(measurement.plain),
                          number(measurement.byHand)} +
              ratios(measurement));
    m_measurements.push_back(std::move(measurement));
}

void Report::add(const Growth& growth)
{
    if (m_growths.empty()) {
        m_out << "\n## Growth\n\n";
        printHead({QStringLiteral("database"), QStringLiteral("operation"), QStringLiteral("size"),
                   QStringLiteral("µs"), QStringLiteral("largest / smallest")});
    }
    QStringList sizes;
    QStringList costs;
    for (const auto& [size, cost] : growth.microseconds) {
        sizes.append(QString::number(size));
        costs.append(number(cost));
    }
    const QString arrow = QStringLiteral(" → ");
    printLine({growth.backend, growth.operation, sizes.join(arrow), costs.join(arrow),
               ratio(growth.microseconds.back().second, growth.microseconds.front().second)});
    m_growths.push_back(growth);
}

void Report::summarize()
{
    std::vector<std::pair<QString, QStringList>> lines;
    QStringList head(QStringLiteral(" "));
    for (const Measurement& measurement : m_measurements) {
        if (measurement.pass != m_measurements.front().pass || !measurement.plain)
            continue;
        const QString label = measurement.backend + QStringLiteral(", ") + measurement.operation;
        auto line = std::find_if(lines.begin(), lines.end(), [&](const auto& each) { return each.first == label; });
        if (line == lines.end())
            line = lines.insert(line, {label, {}});
        line->second += ratios(measurement);
        const QString first = measurement.subject + QStringLiteral(": library / bare");
        if (!head.contains(first))
            head << first << QStringLiteral("library / plain") << QStringLiteral("by hand / library");
    }
    if (lines.empty())
        return;
    m_out << "\n## Ratios\n\n";
    printHead(head);
    for (const auto& [label, cells] : lines)
        printLine(QStringList(label) + cells);
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
