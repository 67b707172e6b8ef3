// TUBatchMessage: the bounded batch log, its header, and the worker-thread queue.
#include <PlumvaleBaseCore/app/BAPP_Identity.h>
#include <PlumvaleBaseCore/text/TUBatchMessage.h>

#include "app/MainThread.h"

#include <QCoreApplication>
#include <QDateTime>

#include <cstdio>

TUBatchMessage* tuBatchMsg = nullptr;

TUBatchMessage::TUBatchMessage(const QString& applicationName, bool debugMode, bool flag)
    : TUMessage(applicationName, debugMode, flag) {}

TUBatchMessage::~TUBatchMessage() {
    if (tuBatchMsg == this) tuBatchMsg = nullptr;
}

QString TUBatchMessage::tr(const char* source) {
    return QCoreApplication::translate("TUBatchMessage", source);
}

void TUBatchMessage::initLog() {
    m_log.clear();
    if (m_versionText.isEmpty()) {
        QString version = BAPP_Identity::current().versionText();
        version.remove(QStringLiteral("\n\n"));
        version.replace(QLatin1Char('\n'), QStringLiteral(", "));
        m_versionText = version;
    }
    const QString debug = isDebugMode() ? tr(" Debug mode : ON") : tr(" Debug mode : OFF");
    const QString header[] = {
        tr(" Date - Time : %1").arg(QDateTime::currentDateTime().toString()),
        tr(" Application : %1").arg(getApplicationName()),
        tr(" Version : %1").arg(m_versionText),
        tr(" O/S User name : %1").arg(getUserName()),
        debug,
    };
    for (const QString& line : header)
        m_log.append(line);
}

void TUBatchMessage::flushLog() {
    m_log.clear();
}

void TUBatchMessage::writeLog(char kind, const QString& text, const QString& translated, bool) {
    if (!plumvale::app::isMainThread()) {
        PL_RecursiveMutex::ScopeLock lock(m_mutex);
        m_queue.push_back(Record{kind, text, translated});
        if (!m_eventPosted) {
            m_eventPosted = 1;
            QCoreApplication::postEvent(this, new MessageCmdEvent());
        }
        return;
    }
    emptyWorkerThreadLog();
    writeEntry(kind, text);
}

void TUBatchMessage::customEvent(QEvent* event) {
    if (event->type() != static_cast<QEvent::Type>(MessageCmdEvent::kType)) {
        QObject::customEvent(event);
        return;
    }
    {
        PL_RecursiveMutex::ScopeLock lock(m_mutex);
        m_eventPosted = 0;
    }
    emptyWorkerThreadLog();
}

void TUBatchMessage::emptyWorkerThreadLog() {
    // The queue is exchanged with an emptied vector that kept its capacity, so workers do not
    // grow a fresh vector after every drain.
    {
        PL_RecursiveMutex::ScopeLock lock(m_mutex);
        m_queue.swap(m_draining);
    }
    for (const Record& record : m_draining)
        writeEntry(record.kind, record.text);
    m_draining.clear();
}

void TUBatchMessage::writeEntry(char kind, const QString& text) {
    const bool echo = getDebugMode() != 0;
    if (m_log.size() >= kMaxEntries && !echo) return; // dropped: the log is a bounded summary
    QString entry{QLatin1Char(kind)};
    entry += QLatin1Char(' ') + QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz")) +
             QLatin1Char(' ') + text;
    if (m_log.size() < kMaxEntries) m_log.append(entry);
    if (echo) {
        const QByteArray bytes = entry.toUtf8() + '\n';
        std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
    }
}
