// Internal: one thread that calls back at absolute deadlines of the monotonic clock.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace plumvale::app {

/// Timer events, one-shot or periodic, served by one thread: the system timer that
/// PL_TimerManager builds on.
///
/// Conventions: times in milliseconds; event identifiers are never 0. The callback runs on
/// the thread, outside its lock, with the event's user value. Once the thread runs it
/// allocates nothing: the events live in storage reserved when they are set. A periodic
/// event keeps its grid (deadline + period); periods missed while late are skipped.
class TimerThread {
public:
    using Callback = void (*)(unsigned int user, void* context);

    TimerThread(Callback callback, void* context);
    /// Ends and joins the thread; callbacks under way finish first.
    ~TimerThread();
    TimerThread(const TimerThread&) = delete;
    TimerThread& operator=(const TimerThread&) = delete;

    /// A new event first due `delayMs` from now: its identifier, or 0 when the thread
    /// could not be started.
    unsigned int setEvent(unsigned int delayMs, unsigned int user, bool periodic);
    /// Ends the event; a callback already collected may still run. True unless `eventId`
    /// is 0 (an event that already ended has nothing left to end).
    bool killEvent(unsigned int eventId);

private:
    using Clock = std::chrono::steady_clock;
    struct Event {
        unsigned int id;
        unsigned int user;
        Clock::duration period; // zero for a one-shot event
        Clock::time_point deadline;
    };

    void run();

    Callback m_callback;
    void* m_context;
    std::mutex m_lock;
    std::condition_variable m_wake;
    std::vector<Event> m_events;
    unsigned int m_nextId = 0;
    bool m_stopping = false;
    std::thread m_thread;
};

} // namespace plumvale::app
