#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <mutex>
#include <vector>

namespace TestSupport {

/// Keeps the log messages of the library while it lives, instead of printing them. One at a time.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /// The messages of @p category at @p type, in order.
    QStringList messages(QtMsgType type, const QString& category) const;
    /// Whether a message of any category and level contains @p text.
    bool contains(const QString& text) const;

private:
    struct Message
    {
        QtMsgType type;
        QString category;
        QString text;
    };

    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text);

    mutable std::mutex m_mutex;
    std::vector<Message> m_messages;
    QtMessageHandler m_previous;
};

} // namespace TestSupport
