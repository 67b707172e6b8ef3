// Lateness of a 10 ms periodic timer: PL_Timer against a bare timerfd loop (the speed
// anchor) and a precise QTimer, each for PLUMVALE_TIMER_SECONDS (10 by default). The time
// reported for each run is the 99th percentile of the lateness; p50 and p99.9 are counters.
#include <PlumvaleBaseCore/app/PL_Timer.h>

#include <QCoreApplication>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kPeriod = std::chrono::milliseconds(10);

double runSeconds() {
    const QByteArray env = qgetenv("PLUMVALE_TIMER_SECONDS");
    return env.isEmpty() ? 10.0 : env.toDouble();
}

// The lateness of each expiry behind the latest point of its 10 ms grid, in seconds.
class Lateness {
public:
    Lateness() { m_samples.reserve(4096); }
    void start() { m_start = Clock::now(); }
    void expired() {
        const auto since = Clock::now() - m_start;
        m_samples.push_back(std::chrono::duration<double>(since % kPeriod).count());
    }
    bool done(double seconds) const {
        return Clock::now() - m_start >= std::chrono::duration<double>(seconds);
    }
    // Reports p99 as the run's time, p50 and p99.9 as counters (microseconds).
    void report(benchmark::State& state) {
        if (m_samples.empty()) return state.SkipWithError("no expiry");
        std::sort(m_samples.begin(), m_samples.end());
        const auto at = [&](double q) {
            return m_samples[std::min(m_samples.size() - 1,
                                      static_cast<std::size_t>(q * m_samples.size()))];
        };
        state.SetIterationTime(at(0.99));
        state.counters["p50_us"] = at(0.5) * 1e6;
        state.counters["p999_us"] = at(0.999) * 1e6;
        state.counters["expiries"] = static_cast<double>(m_samples.size());
    }

private:
    Clock::time_point m_start;
    std::vector<double> m_samples;
};

struct App {
    int argc = 1;
    char name[12] = "bench_timer";
    char* argv[2] = {name, nullptr};
    QCoreApplication app{argc, argv};
};

struct Sampler : PL_Timer {
    Lateness* lateness = nullptr;
    void OnTimer() override { lateness->expired(); }
};

void PeriodicPLTimer(benchmark::State& state) {
    App app;
    PL_TimerManager::SetUIThread(&app.app);
    PL_TimerManager::ConnectIdle();
    for (auto _ : state) {
        Lateness lateness;
        Sampler timer;
        timer.lateness = &lateness;
        lateness.start();
        timer.StartTimer(10, false);
        QTimer::singleShot(static_cast<int>(runSeconds() * 1000), [] { QCoreApplication::quit(); });
        QCoreApplication::exec();
        timer.StopTimer();
        lateness.report(state);
    }
    PL_TimerManager::SetUIThread(nullptr);
}

void PeriodicTimerfd(benchmark::State& state) {
    for (auto _ : state) {
        Lateness lateness;
        const int fd = ::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC);
        struct itimerspec every10ms = {};
        every10ms.it_interval.tv_nsec = 10000000;
        every10ms.it_value.tv_nsec = 10000000;
        lateness.start();
        ::timerfd_settime(fd, 0, &every10ms, nullptr);
        while (!lateness.done(runSeconds())) {
            std::uint64_t expirations = 0;
            if (::read(fd, &expirations, sizeof expirations) != sizeof expirations) break;
            lateness.expired();
        }
        ::close(fd);
        lateness.report(state);
    }
}

void PeriodicQTimerPrecise(benchmark::State& state) {
    App app;
    for (auto _ : state) {
        Lateness lateness;
        QTimer timer;
        timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer, &QTimer::timeout, [&] { lateness.expired(); });
        lateness.start();
        timer.start(10);
        QTimer::singleShot(static_cast<int>(runSeconds() * 1000), [] { QCoreApplication::quit(); });
        QCoreApplication::exec();
        lateness.report(state);
    }
}

} // namespace

// Three runs each, whatever the command line asks: each run takes the whole duration.
BENCHMARK(PeriodicPLTimer)
    ->Iterations(1)
    ->Repetitions(3)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(PeriodicTimerfd)
    ->Iterations(1)
    ->Repetitions(3)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(PeriodicQTimerPrecise)
    ->Iterations(1)
    ->Repetitions(3)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
