#include "Faults.h"

#include <QLoggingCategory>
#include <QMutex>

namespace {

QMutex s_mutex;
QString s_first;

void handle(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    const QMutexLocker lock(&s_mutex);
    if (type == QtCriticalMsg && s_first.isEmpty())
        s_first = text.simplified();
}

} // namespace

void Faults::keep()
{
    qInstallMessageHandler(handle);
}

QString Faults::first()
{
    const QMutexLocker lock(&s_mutex);
    return s_first.isEmpty() ? QStringLiteral("the database cannot be used") : s_first;
}
