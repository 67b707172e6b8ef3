// PL_Timer and PL_TimerManager: starts, stops, the expiry path and the idle queue.
#include <PlumvaleBaseCore/app/PL_Timer.h>

#include "app/TimerThread.h"
#include "platform/Platform.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QPointer>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <new>

namespace {

constexpr QEvent::Type kExpiryType = static_cast<QEvent::Type>(QEvent::User + 44);

// The expiry event, carrying the timer's identifier. Its storage comes from a fixed pool,
// so that the timer thread that posts it allocates nothing; a full pool (more timers
// posted at once than it has slots) falls back to the heap.
class ExpiryEvent : public QEvent {
public:
    explicit ExpiryEvent(unsigned int timerId) : QEvent(kExpiryType), id(timerId) {}
    const unsigned int id;

    static void* operator new(std::size_t size);
    static void operator delete(void* p) noexcept;
};

constexpr int kPoolSlots = 256;
constexpr std::size_t kSlot = sizeof(ExpiryEvent); // a multiple of its alignment
alignas(ExpiryEvent) unsigned char g_pool[kPoolSlots * kSlot];
int g_free[kPoolSlots];
int g_freeCount = -1; // -1: the free list is not filled yet
std::mutex g_poolLock;

void* ExpiryEvent::operator new(std::size_t size) {
    {
        const std::lock_guard<std::mutex> lock(g_poolLock);
        if (g_freeCount < 0) {
            for (int i = 0; i < kPoolSlots; ++i)
                g_free[i] = kPoolSlots - 1 - i;
            g_freeCount = kPoolSlots;
        }
        if (size <= kSlot && g_freeCount > 0) return g_pool + g_free[--g_freeCount] * kSlot;
    }
    return ::operator new(size);
}

void ExpiryEvent::operator delete(void* p) noexcept {
    const auto address = reinterpret_cast<std::uintptr_t>(p);
    const auto first = reinterpret_cast<std::uintptr_t>(g_pool);
    if (address >= first && address < first + sizeof g_pool) {
        const std::lock_guard<std::mutex> lock(g_poolLock);
        g_free[g_freeCount++] = static_cast<int>((address - first) / kSlot);
        return;
    }
    ::operator delete(p);
}

std::atomic<QObject*> g_receiver{nullptr};

// On the receiver: hands each expiry event to the manager.
class ExpiryFilter : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        // On the application object the filter sees every object's events: only the
        // receiver's own are expiries.
        if (event->type() != kExpiryType || watched != parent())
            return QObject::eventFilter(watched, event);
        PL_TimerManager::GetInstance()->HandleTimingEvent(static_cast<ExpiryEvent*>(event)->id);
        return true;
    }
};

QPointer<ExpiryFilter> g_filter; // main thread only

unsigned int g_nextTimerId = 0; // main thread only

} // namespace

struct PL_TimerManager::Thread {
    explicit Thread(PL_TimerManager* manager)
        : timer(
              [](unsigned int id, void* self) { static_cast<PL_TimerManager*>(self)->expired(id); },
              manager) {}
    plumvale::app::TimerThread timer;
};

PL_Timer::~PL_Timer() {
    if (m_data) PL_TimerManager::GetInstance()->Stop(this);
}

unsigned int PL_Timer::timerId() const {
    return m_data ? m_data->id : 0;
}

bool PL_Timer::StartTimer(unsigned long delayMs, bool oneShot) {
    return PL_TimerManager::GetInstance()->Start(this, delayMs, oneShot);
}

bool PL_Timer::StopTimer() {
    return PL_TimerManager::GetInstance()->Stop(this);
}

PL_TimerManager* PL_TimerManager::GetInstance() {
    static PL_TimerManager manager;
    return &manager;
}

PL_TimerManager::PL_TimerManager() {
    // The clock's finest period, in whole milliseconds rounded up, but never under 10 ms.
    const long long ns = plumvale::platform::monotonicResolutionNs();
    m_resolution = static_cast<unsigned int>(std::max<long long>(10, (ns + 999999) / 1000000));
    m_thread = std::make_unique<Thread>(this);
}

PL_TimerManager::~PL_TimerManager() {
    m_thread.reset(); // no expiry runs from here on
    std::vector<PL_TimerData*> all = m_pending;
    all.insert(all.end(), m_idleQueue.begin(), m_idleQueue.end());
    all.insert(all.end(), m_orphans.begin(), m_orphans.end());
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    for (PL_TimerData* data : all) {
        if (data->timer) data->timer->m_data = nullptr;
        delete data;
    }
}

void PL_TimerManager::SetUIThread(QObject* receiver) {
    GetInstance(); // the thread exists before any receiver
    delete g_filter.data();
    g_receiver.store(receiver);
    if (!receiver) return;
    g_filter = new ExpiryFilter(receiver);
    receiver->installEventFilter(g_filter);
}

bool PL_TimerManager::ConnectIdle() {
    QCoreApplication* app = QCoreApplication::instance();
    QAbstractEventDispatcher* dispatcher =
        app ? QAbstractEventDispatcher::instance(app->thread()) : nullptr;
    if (!dispatcher) return false;
    // Once per dispatcher (a functor connection cannot be made unique by Qt itself).
    static QPointer<QAbstractEventDispatcher> connected;
    if (connected != dispatcher) {
        QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, dispatcher,
                         [] { GetInstance()->Idle(); });
        connected = dispatcher;
    }
    return true;
}

PL_TimerData* PL_TimerManager::findInPendingTimers(unsigned int id) const {
    const std::lock_guard<std::mutex> lock(m_pendingLock);
    const auto it = std::find_if(m_pending.begin(), m_pending.end(),
                                 [id](const PL_TimerData* d) { return d->id == id; });
    return it == m_pending.end() ? nullptr : *it;
}

void PL_TimerManager::eraseFromPendingTimers(unsigned int id) {
    const std::lock_guard<std::mutex> lock(m_pendingLock);
    m_pending.erase(std::remove_if(m_pending.begin(), m_pending.end(),
                                   [id](const PL_TimerData* d) { return d->id == id; }),
                    m_pending.end());
}

bool PL_TimerManager::Start(PL_Timer* timer, unsigned long delayMs, bool oneShot) {
    if (!timer) return false;
    if (timer->m_data) Stop(timer);
    const auto delay = static_cast<unsigned int>(
        std::min<unsigned long>(std::max<unsigned long>(delayMs, m_resolution), 0xFFFFFFFFu));
    auto* data = new PL_TimerData{timer, ++g_nextTimerId, 0, oneShot, false, false};
    {
        const std::lock_guard<std::mutex> lock(m_pendingLock);
        m_pending.push_back(data);
    }
    const std::lock_guard<std::mutex> state(m_stateLock); // before an expiry can look
    data->eventId = m_thread->timer.setEvent(delay, data->id, !oneShot);
    if (data->eventId == 0) {
        // Unlike the record left pending "until a later erase", it goes at once: a freed
        // record must never stay where a search can reach it.
        eraseFromPendingTimers(data->id);
        delete data;
        return false;
    }
    timer->m_data = data;
    return true;
}

void PL_TimerManager::expired(unsigned int id) {
    QObject* receiver = g_receiver.load();
    if (!receiver) return;
    {
        const std::lock_guard<std::mutex> state(m_stateLock);
        PL_TimerData* data = findInPendingTimers(id);
        if (!data || data->posted) return; // a slow main thread: this expiry is dropped
        if (data->oneShot) data->eventId = 0;
        data->posted = true;
    }
    QCoreApplication::postEvent(receiver, new ExpiryEvent(id));
}

void PL_TimerManager::HandleTimingEvent(unsigned long timerId) {
    const auto id = static_cast<unsigned int>(timerId);
    const std::lock_guard<std::mutex> state(m_stateLock);
    PL_TimerData* data = findInPendingTimers(id);
    if (!data) {
        // A timer stopped while this event was on its way: its record goes now, unrun.
        const auto it = std::find_if(m_orphans.begin(), m_orphans.end(),
                                     [id](const PL_TimerData* d) { return d->id == id; });
        if (it != m_orphans.end()) {
            delete *it;
            m_orphans.erase(it);
        }
        return;
    }
    if (data->queued) return;
    if (data->oneShot) eraseFromPendingTimers(id);
    m_idleQueue.push_back(data);
    data->queued = true;
}

void PL_TimerManager::Idle() {
    if (m_inIdle) return;
    m_inIdle = true;
    while (!m_idleQueue.empty()) {
        PL_TimerData* data = m_idleQueue.front();
        m_idleQueue.pop_front();
        {
            const std::lock_guard<std::mutex> state(m_stateLock);
            data->posted = false;
            data->queued = false;
        }
        PL_Timer* timer = data->timer;
        if (!timer) {
            // Stopped while queued: Stop left the record pending, so it leaves both here.
            eraseFromPendingTimers(data->id);
            delete data;
            continue;
        }
        if (data->oneShot) {
            timer->m_data = nullptr;
            delete data;
        }
        timer->OnTimer();
    }
    m_inIdle = false;
}

bool PL_TimerManager::Stop(PL_Timer* timer) {
    if (!timer || !timer->m_data) return true;
    PL_TimerData* data = timer->m_data;
    const std::lock_guard<std::mutex> state(m_stateLock);
    const bool ended = data->eventId == 0 || m_thread->timer.killEvent(data->eventId);
    data->eventId = 0;
    data->timer = nullptr;
    timer->m_data = nullptr;
    if (!data->queued) eraseFromPendingTimers(data->id);
    if (!data->posted)
        delete data;
    else if (!data->queued)
        m_orphans.push_back(data);
    return ended;
}
