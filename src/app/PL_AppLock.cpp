// The application and palette locks: the per-thread records, their registry and the scopes.
#include <PlumvaleBaseCore/app/PL_AppLock.h>
#include <PlumvaleBaseCore/app/PL_Mutex.h>

#include "platform/Platform.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <utility>

struct PL_AppLock::ThreadRecord {
    // Written once before the record is published, and stored again (release) when its
    // thread ends, so that a later thread given the same kernel id inherits it in order.
    std::atomic<long> threadId{0};
    unsigned serial = 0;
    Counts counts;
    PL_QueuingRwMutex::ScopeLock palette;
    PL_RecursiveMutex::ScopeLock application;
};

namespace {

using Record = PL_AppLock::ThreadRecord;

// The registry: a null-terminated table of records read without a lock. It only grows, in
// chunks that are linked and never moved, so a reader never sees a pointer go stale.
constexpr int kChunkSlots = 64;

struct Chunk {
    std::atomic<Record*> slots[kChunkSlots] = {};
    std::atomic<Chunk*> next{nullptr};
};

Chunk s_firstChunk;
PL_SpinMutex s_registryMutex;
unsigned s_registered = 0; // under s_registryMutex

// Both mutexes are made on first use and never destroyed, so scopes still alive while the
// process exits (in other threads, or in static objects) stay valid.
PL_RecursiveMutex& applicationMutex() {
    static PL_RecursiveMutex* mutex = new PL_RecursiveMutex;
    return *mutex;
}

PL_QueuingRwMutex& paletteMutex() {
    static PL_QueuingRwMutex* mutex = new PL_QueuingRwMutex;
    return *mutex;
}

Record* findRecord(long id) {
    for (Chunk* chunk = &s_firstChunk; chunk; chunk = chunk->next.load(std::memory_order_acquire)) {
        for (auto& slot : chunk->slots) {
            Record* record = slot.load(std::memory_order_acquire);
            if (!record) return nullptr;
            if (record->threadId.load(std::memory_order_acquire) == id) return record;
        }
    }
    return nullptr;
}

Record* appendRecord(long id) {
    auto* record = new Record;
    record->threadId.store(id, std::memory_order_relaxed);
    PL_SpinMutex::ScopeLock lock(s_registryMutex);
    record->serial = ++s_registered;
    Chunk* chunk = &s_firstChunk;
    for (unsigned index = record->serial - 1; index >= kChunkSlots; index -= kChunkSlots) {
        Chunk* next = chunk->next.load(std::memory_order_relaxed);
        if (!next) {
            next = new Chunk;
            chunk->next.store(next, std::memory_order_release);
        }
        chunk = next;
    }
    chunk->slots[(record->serial - 1) % kChunkSlots].store(record, std::memory_order_release);
    return record;
}

// Marks the end of the thread that owns the record, see ThreadRecord::threadId.
struct ThreadEnd {
    Record* record = nullptr;
    ~ThreadEnd() {
        if (record)
            record->threadId.store(record->threadId.load(std::memory_order_relaxed),
                                   std::memory_order_release);
    }
};

// Initial-exec: one pointer of static TLS, read straight from the thread pointer on every
// scope instead of through the dynamic loader's lookup (glibc keeps spare room for it even
// when the library is loaded late).
__attribute__((tls_model("initial-exec"))) thread_local Record* t_record = nullptr;

Record& registerThread() {
    const long id = plumvale::platform::threadId();
    Record* record = findRecord(id);
    if (!record) record = appendRecord(id);
    static thread_local ThreadEnd end;
    end.record = record;
    t_record = record;
    return *record;
}

inline Record& currentRecord() {
    Record* record = t_record;
    return record ? *record : registerThread();
}

[[noreturn]] void abortMisuse(const char* what) {
    std::fprintf(stderr, "PL_AppLock: %s while the thread holds the palette for reading\n", what);
    std::fflush(stderr);
    std::abort();
}

// The palette goes when no palette scope and no auto-release scope is left.
void releasePaletteIfUnused(Record& record) {
    const PL_AppLock::Counts& c = record.counts;
    if (c.paletteLockCount + c.autoReleaseCount == 0 && c.paletteHeld) {
        record.palette.release();
        record.counts.paletteHeld = false;
    }
}

} // namespace

PL_AppLock::Counts PL_AppLock::currentCounts() {
    const Record* record = t_record;
    return record ? record->counts : Counts{};
}

unsigned PL_AppLock::threadSerial() {
    return currentRecord().serial;
}

bool PL_AppLock::isApplicationMutexAvailable() {
    PL_RecursiveMutex& mutex = applicationMutex();
    if (!mutex.tryLock()) return false;
    mutex.unlock();
    return true;
}

bool PL_AppLock::isPaletteAvailable() {
    PL_QueuingRwMutex::ScopeLock probe;
    return probe.tryAcquire(paletteMutex(), true);
}

bool PL_AppLock::holdsPaletteForWriting() {
    const Record* record = t_record;
    return record && record->palette.isWriter();
}

PL_AppLock::SmartLocker::SmartLocker() : m_record(&currentRecord()) {
    m_depth = ++m_record->counts.depth;
}

PL_AppLock::SmartLocker::~SmartLocker() {
    --m_record->counts.depth;
}

PL_AppLock::AppLock::AppLock() {
    Record& record = *m_record;
    if (record.counts.appLockCount == 0) {
        if (record.counts.paletteHeld) {
            if (record.counts.paletteReadCount != 0) abortMisuse("AppLock");
            // Keep the order application, then palette: let the palette go meanwhile.
            record.palette.release();
            record.application.acquire(applicationMutex());
            record.palette.acquire(paletteMutex(), true);
        } else {
            record.application.acquire(applicationMutex());
        }
    }
    ++record.counts.appLockCount;
}

PL_AppLock::AppLock::~AppLock() {
    if (--m_record->counts.appLockCount == 0) m_record->application.release();
}

PL_AppLock::PaletteLock::PaletteLock() {
    Record& record = *m_record;
    if (record.counts.paletteReadCount != 0) abortMisuse("PaletteLock");
    if (!record.counts.paletteHeld) {
        record.palette.acquire(paletteMutex(), true);
        record.counts.paletteHeld = true;
    }
    ++record.counts.paletteLockCount;
}

PL_AppLock::PaletteLock::~PaletteLock() {
    --m_record->counts.paletteLockCount;
    releasePaletteIfUnused(*m_record);
}

PL_AppLock::PaletteReadLock::PaletteReadLock() {
    Record& record = *m_record;
    if (!record.counts.paletteHeld) {
        record.palette.acquire(paletteMutex(), false);
        record.counts.paletteHeld = true;
    }
    ++record.counts.paletteLockCount;
    ++record.counts.paletteReadCount;
}

PL_AppLock::PaletteReadLock::~PaletteReadLock() {
    --m_record->counts.paletteLockCount;
    --m_record->counts.paletteReadCount;
    releasePaletteIfUnused(*m_record);
}

PL_AppLock::AutoReleasePaletteLock::AutoReleasePaletteLock() {
    ++m_record->counts.autoReleaseCount;
}

PL_AppLock::AutoReleasePaletteLock::~AutoReleasePaletteLock() {
    --m_record->counts.autoReleaseCount;
    releasePaletteIfUnused(*m_record);
}

PL_AppLock::UnlockAll::UnlockAll() {
    Record& record = *m_record;
    if (record.counts.paletteHeld) record.palette.release();
    if (record.counts.appLockCount != 0) record.application.release();
    std::swap(record.counts, m_saved);
}

PL_AppLock::UnlockAll::~UnlockAll() {
    Record& record = *m_record;
    record.counts = m_saved;
    if (record.counts.appLockCount != 0) record.application.acquire(applicationMutex());
    // A read hold comes back as a write hold, as documented in the header.
    if (record.counts.paletteHeld) record.palette.acquire(paletteMutex(), true);
}
