// The timer thread behind PL_TimerManager: absolute deadlines on the monotonic clock.
#include "app/TimerThread.h"

#include <algorithm>
#include <system_error>

namespace plumvale::app {

TimerThread::TimerThread(Callback callback, void* context)
    : m_callback(callback), m_context(context) {
    m_events.reserve(64);
}

TimerThread::~TimerThread() {
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        m_stopping = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable()) m_thread.join();
}

unsigned int TimerThread::setEvent(unsigned int delayMs, unsigned int user, bool periodic) {
    const auto delay = std::chrono::milliseconds(delayMs);
    std::unique_lock<std::mutex> lock(m_lock);
    if (!m_thread.joinable()) {
        try {
            m_thread = std::thread([this] { run(); });
        } catch (const std::system_error&) {
            return 0;
        }
    }
    if (++m_nextId == 0) ++m_nextId;
    // Reserved here, on the caller's thread, so the timer thread never grows the storage.
    if (m_events.size() == m_events.capacity()) m_events.reserve(m_events.size() * 2);
    m_events.push_back({m_nextId, user, periodic ? Clock::duration(delay) : Clock::duration::zero(),
                        Clock::now() + delay});
    const unsigned int id = m_nextId;
    lock.unlock();
    m_wake.notify_one();
    return id;
}

bool TimerThread::killEvent(unsigned int eventId) {
    if (eventId == 0) return false;
    const std::lock_guard<std::mutex> lock(m_lock);
    const auto it = std::find_if(m_events.begin(), m_events.end(),
                                 [eventId](const Event& e) { return e.id == eventId; });
    if (it != m_events.end()) {
        *it = m_events.back();
        m_events.pop_back();
    }
    return true;
}

void TimerThread::run() {
    constexpr std::size_t kBatch = 32;
    unsigned int due[kBatch];
    std::unique_lock<std::mutex> lock(m_lock);
    while (!m_stopping) {
        if (m_events.empty()) {
            m_wake.wait(lock);
            continue;
        }
        const auto first =
            std::min_element(m_events.begin(), m_events.end(), [](const Event& a, const Event& b) {
                return a.deadline < b.deadline;
            });
        const Clock::time_point now = Clock::now();
        if (first->deadline > now) {
            // Woken early by a new or ended event, the search is simply made again.
            m_wake.wait_until(lock, first->deadline);
            continue;
        }
        std::size_t count = 0;
        for (std::size_t i = 0; i < m_events.size() && count < kBatch;) {
            Event& e = m_events[i];
            if (e.deadline > now) {
                ++i;
                continue;
            }
            due[count++] = e.user;
            if (e.period == Clock::duration::zero()) {
                e = m_events.back();
                m_events.pop_back();
                continue;
            }
            const auto missed = (now - e.deadline) / e.period;
            e.deadline += (missed + 1) * e.period;
            ++i;
        }
        lock.unlock();
        for (std::size_t i = 0; i < count; ++i)
            m_callback(due[i], m_context);
        lock.lock();
    }
}

} // namespace plumvale::app
