// TUBatchMessage, the message centre of batch runs: a bounded in-memory log on the main thread.
#pragma once

#include <PlumvaleBaseCore/app/PL_Mutex.h>
#include <PlumvaleBaseCore/text/TUMessage.h>

#include <QEvent>
#include <QObject>
#include <QStringList>

#include <vector>

/// The event (type 1234, no data) that makes the main thread drain the worker queue.
class PLUMVALE_EXPORT MessageCmdEvent : public QEvent {
public:
    /// The event type number.
    static constexpr int kType = 1234;
    /// An event of type kType.
    MessageCmdEvent() : QEvent(static_cast<QEvent::Type>(kType)) {}
};

/// Message centre of batch runs. Reports made on the main thread go to the log at once;
/// reports from other threads are queued under a recursive mutex and moved to the log, in
/// arrival order, by one posted MessageCmdEvent or by the main thread's next own report,
/// whichever comes first. The log keeps its first 200 entries; later ones are dropped.
/// Build it on the main thread (BAPP_Application::isMainThread()), which must run an event
/// loop for worker reports to arrive between its own reports.
class PLUMVALE_EXPORT TUBatchMessage : public QObject, public TUMessage {
public:
    /// The log's bound.
    static constexpr int kMaxEntries = 200;

    /// A batch centre with an empty log, as TUMessage takes the arguments.
    TUBatchMessage(const QString& applicationName, bool debugMode, bool flag);
    /// Drops the log and any queued worker reports.
    ~TUBatchMessage() override;

    /// `source` translated in the "TUBatchMessage" context.
    static QString tr(const char* source);

    /// Empties the log and writes the five-entry header.
    void initLog();
    /// Empties the log.
    void flushLog();
    /// The log entries: "K hh:mm:ss.zzz text".
    QStringList getLog() const { return m_log; }
    /// @{
    /// The version text of the log header. Empty until set; initLog() then fills an empty
    /// one from the application identity, its lines joined by ", ".
    void setVersionText(const QString& text) { m_versionText = text; }
    const QString& getVersionText() const { return m_versionText; }
    /// @}

    /// Logs on the main thread, queues from any other (see the class comment). Thread-safe.
    void writeLog(char kind, const QString& text, const QString& translated,
                  bool important) override;

protected:
    /// Drains the worker queue on a MessageCmdEvent.
    void customEvent(QEvent* event) override;

private:
    struct Record {
        char kind;
        QString text;
        QString translated;
    };

    /// Moves the worker queue to the log (main thread only).
    void emptyWorkerThreadLog();
    /// Appends one entry to the log (main thread only).
    void writeEntry(char kind, const QString& text);

    QStringList m_log;
    QString m_versionText;
    PL_RecursiveMutex m_mutex;
    std::vector<Record> m_queue;
    std::vector<Record> m_draining; ///< main thread only
    int m_eventPosted = 0;
};

/// The batch centre of the running tool, or null; set by the application.
extern PLUMVALE_EXPORT TUBatchMessage* tuBatchMsg;
