// Uncontended cost of the library's mutexes and application locks against the threading
// library's and the standard library's own.
#include <PlumvaleBaseCore/app/PL_AppLock.h>
#include <PlumvaleBaseCore/app/PL_Mutex.h>

#include <oneapi/tbb/queuing_rw_mutex.h>
#include <oneapi/tbb/spin_mutex.h>

#include <benchmark/benchmark.h>

#include <mutex>

namespace {

void SpinPlumvale(benchmark::State& state) {
    PL_SpinMutex mutex;
    for (auto _ : state) {
        PL_SpinMutex::ScopeLock lock(mutex);
        benchmark::DoNotOptimize(&mutex);
    }
}

void SpinTbb(benchmark::State& state) {
    tbb::spin_mutex mutex;
    for (auto _ : state) {
        tbb::spin_mutex::scoped_lock lock(mutex);
        benchmark::DoNotOptimize(&mutex);
    }
}

// An AppLock inside one that is already held: the nested enter and leave.
void NestedAppLock(benchmark::State& state) {
    PL_AppLock::AppLock outer;
    for (auto _ : state) {
        PL_AppLock::AppLock inner;
        benchmark::DoNotOptimize(&inner);
    }
}

// The anchor held once already, as the nested AppLock is (the cheaper of its two paths).
void NestedRecursiveMutex(benchmark::State& state) {
    std::recursive_mutex mutex;
    std::lock_guard<std::recursive_mutex> outer(mutex);
    for (auto _ : state) {
        std::lock_guard<std::recursive_mutex> inner(mutex);
        benchmark::DoNotOptimize(&mutex);
    }
}

void FreshRecursiveMutex(benchmark::State& state) {
    std::recursive_mutex mutex;
    for (auto _ : state) {
        std::lock_guard<std::recursive_mutex> lock(mutex);
        benchmark::DoNotOptimize(&mutex);
    }
}

// The outermost read scope: it takes the queuing lock itself.
void PaletteRead(benchmark::State& state) {
    for (auto _ : state) {
        PL_AppLock::PaletteReadLock read;
        benchmark::DoNotOptimize(&read);
    }
}

// A read scope inside one that holds the palette: counts only.
void NestedPaletteRead(benchmark::State& state) {
    PL_AppLock::PaletteReadLock outer;
    for (auto _ : state) {
        PL_AppLock::PaletteReadLock read;
        benchmark::DoNotOptimize(&read);
    }
}

void TbbQueuingRead(benchmark::State& state) {
    tbb::queuing_rw_mutex mutex;
    for (auto _ : state) {
        tbb::queuing_rw_mutex::scoped_lock lock(mutex, false);
        benchmark::DoNotOptimize(&lock);
    }
}

void QueuingReadPlumvale(benchmark::State& state) {
    PL_QueuingRwMutex mutex;
    for (auto _ : state) {
        PL_QueuingRwMutex::ScopeLock lock(mutex, false);
        benchmark::DoNotOptimize(&lock);
    }
}

} // namespace

BENCHMARK(SpinPlumvale);
BENCHMARK(SpinTbb);
BENCHMARK(NestedAppLock);
BENCHMARK(NestedRecursiveMutex);
BENCHMARK(FreshRecursiveMutex);
BENCHMARK(PaletteRead);
BENCHMARK(NestedPaletteRead);
BENCHMARK(TbbQueuingRead);
BENCHMARK(QueuingReadPlumvale);
BENCHMARK_MAIN();
