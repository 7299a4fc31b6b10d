#include "support/LogCapture.h"

#include <algorithm>
#include <atomic>

namespace TestSupport {

namespace {

std::atomic<LogCapture*> s_current{nullptr};

} // namespace

LogCapture::LogCapture()
    : m_previous(nullptr)
{
    s_current = this;
    m_previous = qInstallMessageHandler(&LogCapture::handle);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previous);
    s_current = nullptr;
}

void LogCapture::handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    LogCapture* const current = s_current;
    if (current == nullptr)
        return;
    const std::lock_guard<std::mutex> lock(current->m_mutex);
    current->m_messages.push_back({type, QString::fromLatin1(context.category), text});
}

QStringList LogCapture::messages(QtMsgType type, const QString& category) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QStringList found;
    for (const Message& message : m_messages) {
        if (message.type == type && message.category == category)
            found.append(message.text);
    }
    return found;
}

bool LogCapture::contains(const QString& text) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::any_of(m_messages.begin(), m_messages.end(),
                       [&](const Message& message) { return message.text.contains(text); });
}

} // namespace TestSupport
