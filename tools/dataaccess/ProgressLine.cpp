#include "ProgressLine.h"

#include "Interrupt.h"

#include <cstdio>
#include <unistd.h>
#include <utility>

namespace {

constexpr qint64 s_barInterval = 100;
constexpr qint64 s_lineInterval = 3000;
constexpr qint64 s_second = 1000;

QString duration(qint64 seconds)
{
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

ProgressLine::ProgressLine(QString what, QString unit, bool isShown)
    : m_what(std::move(what))
    , m_unit(std::move(unit))
    , m_isShown(isShown)
    , m_isTerminal(isatty(STDERR_FILENO) != 0)
{
    m_begin.start();
    m_next = m_isTerminal ? 0 : s_lineInterval;
}

ProgressLine::~ProgressLine()
{
    if (m_hasBar)
        std::fputs("\r\033[K", stderr);
}

QString ProgressLine::text(qint64 done, qint64 total) const
{
    const qint64 elapsed = m_begin.elapsed();
    const qint64 rate = elapsed > 0 ? done * s_second / elapsed : 0;
    QString text = QStringLiteral("%1: %2").arg(m_what).arg(done);
    if (total > 0)
        text += QStringLiteral(" of %1 %2 (%3%)").arg(total).arg(m_unit).arg(done * 100 / total);
    else
        text += QLatin1Char(' ') + m_unit;
    text += QStringLiteral(", %1/s").arg(rate);
    if (rate > 0 && total > done)
        text += QStringLiteral(", %1 left").arg(duration((total - done) / rate));
    return text;
}

bool ProgressLine::show(qint64 done, qint64 total)
{
    if (m_isShown && m_begin.elapsed() >= m_next) {
        m_next = m_begin.elapsed() + (m_isTerminal ? s_barInterval : s_lineInterval);
        if (m_isTerminal) {
            constexpr int width = 20;
            const int filled = total > 0 ? static_cast<int>(done * width / total) : 0;
            const QString bar = QString(filled, QLatin1Char('#')) + QString(width - filled, QLatin1Char('.'));
            std::fprintf(stderr, "\r\033[K[%s] %s", qPrintable(bar), qPrintable(text(done, total)));
            m_hasBar = true;
        } else {
            std::fprintf(stderr, "%s\n", qPrintable(text(done, total)));
        }
    }
    return !Interrupt::requested();
}
