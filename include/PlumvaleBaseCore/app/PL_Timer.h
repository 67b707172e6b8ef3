// PL_Timer and PL_TimerManager: timers whose callbacks always run on the main thread.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <list>
#include <memory>
#include <mutex>
#include <vector>

class QObject;
struct PL_TimerData;

/// A timer: derive, implement OnTimer(), and start it through StartTimer().
///
/// Conventions: started, stopped and destroyed on the main thread; OnTimer() runs there
/// too, from PL_TimerManager::Idle(). A periodic timer whose last expiry has not been
/// handled yet loses the next ones (they never pile up). Destroying a started timer stops
/// it; a timer stopped or destroyed while an expiry is on its way is never called back.
class PLUMVALE_EXPORT PL_Timer {
public:
    PL_Timer() = default;
    /// Stops the timer when it is active.
    virtual ~PL_Timer();
    PL_Timer(const PL_Timer&) = delete;
    PL_Timer& operator=(const PL_Timer&) = delete;

    /// The expiry, on the main thread.
    virtual void OnTimer() = 0;

    /// PL_TimerManager::GetInstance()->Start(this, delayMs, oneShot).
    bool StartTimer(unsigned long delayMs, bool oneShot);
    /// PL_TimerManager::GetInstance()->Stop(this).
    bool StopTimer();
    /// Whether the timer is started (it has its data).
    bool IsTimerActive() const { return m_data != nullptr; }
    /// The identifier of the current start (a new one for every start, from 1); 0 when the
    /// timer is not started.
    unsigned int timerId() const;

private:
    friend class PL_TimerManager;
    PL_TimerData* m_data = nullptr;
};

/// A started timer's record, owned by the manager.
struct PL_TimerData {
    PL_Timer* timer;      ///< null once stopped
    unsigned int id;      ///< from a process-wide counter, one per start
    unsigned int eventId; ///< the timer thread's event; 0 when none
    bool oneShot;         ///< stopped after its first expiry
    bool posted;          ///< an expiry event is on its way to the main thread
    bool queued;          ///< the expiry waits in the idle queue
};

/// The process-wide timer manager.
///
/// Conventions:
/// - Times are milliseconds. The resolution is the monotonic clock's finest period, never
///   less than 10 ms; shorter delays are raised to it.
/// - One timer thread sleeps to absolute deadlines on the monotonic clock (a periodic timer
///   keeps its grid; missed periods are skipped, not caught up). At an expiry it marks the
///   timer posted and posts an event of type QEvent::User + 44 (1044) carrying the timer's
///   identifier to the receiver set by SetUIThread; until one is set, expiries are ignored.
///   The thread allocates nothing (its events come from a fixed pool) and holds its lock
///   only for a search.
/// - An event filter on the receiver hands each expiry to HandleTimingEvent, which queues
///   it; Idle(), on the main thread, runs the queue. ConnectIdle() calls Idle() whenever the
///   main event loop is about to wait.
/// - Locks: the state lock is taken before the pending lock, never the other way round.
class PLUMVALE_EXPORT PL_TimerManager {
public:
    /// The manager, created on first call (on the main thread).
    static PL_TimerManager* GetInstance();
    /// Stops the timer thread and frees the records (not the timers).
    virtual ~PL_TimerManager();
    PL_TimerManager(const PL_TimerManager&) = delete;
    PL_TimerManager& operator=(const PL_TimerManager&) = delete;

    /// The object, living on the main thread, that receives the expiry events (null: none,
    /// expiries ignored). Replaces the previous one.
    static void SetUIThread(QObject* receiver);
    /// Connects Idle() to the main thread's event dispatcher, called when it is about to
    /// wait; false without a QCoreApplication. Once is enough.
    static bool ConnectIdle();

    /// Starts `timer` (stopping it first when started) with a new identifier; false when the
    /// timer thread refuses (it could not be started).
    bool Start(PL_Timer* timer, unsigned long delayMs, bool oneShot);
    /// Stops `timer`: true when it had nothing to stop or its event was ended.
    bool Stop(PL_Timer* timer);
    /// Queues the expiry of timer `timerId` (main thread); nothing when it is not pending
    /// or already queued.
    void HandleTimingEvent(unsigned long timerId);
    /// Runs the queued expiries (main thread); returns at once when called from within.
    void Idle();

    /// The resolution in milliseconds.
    unsigned int resolution() const { return m_resolution; }
    /// The pending record with identifier `id`, or null.
    PL_TimerData* findInPendingTimers(unsigned int id) const;
    /// Removes the record with identifier `id` from the pending records (not freeing it).
    void eraseFromPendingTimers(unsigned int id);

private:
    PL_TimerManager();
    // At an expiry of the timer `id`, on the timer thread.
    void expired(unsigned int id);

    unsigned int m_resolution;
    std::vector<PL_TimerData*> m_pending;
    std::list<PL_TimerData*> m_idleQueue;
    bool m_inIdle = false;
    // Stopped while posted and not queued: freed when their event arrives, or at the end.
    std::vector<PL_TimerData*> m_orphans;
    mutable std::mutex m_pendingLock;
    std::mutex m_stateLock;
    struct Thread;
    std::unique_ptr<Thread> m_thread;
};
