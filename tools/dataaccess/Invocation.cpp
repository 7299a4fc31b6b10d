#include "Invocation.h"

#include <QJsonDocument>

#include <cstdio>
#include <memory>

namespace {

void writeOut(const QByteArray& text)
{
    if (std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout) !=
            static_cast<std::size_t>(text.size()) ||
        std::fflush(stdout) != 0)
        throw ToolError(Failed, QStringLiteral("Standard output can't be written: %1").arg(qt_error_string(errno)));
}

} // namespace

void Invocation::print(const QString& line) const
{
    if (!isJson())
        writeOut(line.toUtf8() + '\n');
}

void Invocation::note(const QString& line) const
{
    if (!isQuiet())
        warn(line);
}

void Invocation::warn(const QString& line)
{
    std::fprintf(stderr, "%s\n", line.toUtf8().constData());
}

void Invocation::answer(const QJsonObject& document) const
{
    if (isJson())
        writeOut(QJsonDocument(document).toJson());
}

std::function<bool(qint64, qint64)> Invocation::progress(const QString& what, const QString& unit) const
{
    const auto line = std::make_shared<ProgressLine>(what, unit, !isQuiet());
    return [line](qint64 done, qint64 total) { return line->show(done, total); };
}

QString counted(qint64 number, const char* noun)
{
    return QString::number(number) + QLatin1Char(' ') + QLatin1String(noun) +
           (number == 1 ? QString() : QStringLiteral("s"));
}

QCommandLineOption forceOption(const char* description)
{
    return {{QStringLiteral("f"), QStringLiteral("force")}, QString::fromLatin1(description)};
}
