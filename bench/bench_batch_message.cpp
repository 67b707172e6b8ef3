// Cost of one worker-thread report into TUBatchMessage against a mutex-guarded vector push.
#include <PlumvaleBaseCore/PlumvaleBaseCore.h>

#include <QCoreApplication>
#include <QEventLoop>

#include <benchmark/benchmark.h>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace {

TUBatchMessage* g_centre = nullptr;

// What the baseline stores: the same record a worker report queues.
struct Record {
    char kind;
    QString text;
    QString translated;
};

std::mutex g_baselineMutex;
std::vector<Record> g_baseline;
// The baseline hands its records over in batches, as a consumer would, so that neither side
// measures an ever-growing vector.
constexpr std::size_t kBaselineBatch = 1024;

void ReportFromWorker(benchmark::State& state) {
    // Each thread reports its own texts, as workers build their own messages.
    const QString text = QStringLiteral("worker %1 finished a frame").arg(state.thread_index());
    const QString translated = text;
    for (auto _ : state)
        g_centre->warning(text, translated);
}

void MutexVectorPush(benchmark::State& state) {
    const QString text = QStringLiteral("worker %1 finished a frame").arg(state.thread_index());
    const QString translated = text;
    for (auto _ : state) {
        std::vector<Record> taken;
        {
            std::lock_guard<std::mutex> lock(g_baselineMutex);
            g_baseline.push_back(Record{'W', text, translated});
            if (g_baseline.size() >= kBaselineBatch) taken.swap(g_baseline);
        }
    }
}

} // namespace

BENCHMARK(ReportFromWorker)->Threads(1)->Threads(2)->Threads(4)->UseRealTime();
BENCHMARK(MutexVectorPush)->Threads(1)->Threads(2)->Threads(4)->UseRealTime();

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    // Google Benchmark runs thread 0 on this thread, so the centre's main thread is a separate
    // one running an event loop: every report takes the worker path and is drained there, as
    // in a batch tool whose main thread runs its loop.
    std::mutex m;
    std::condition_variable cv;
    QEventLoop* loop = nullptr;
    std::thread mainThread([&] {
        BAPP_Application::setupMainThread();
        TUBatchMessage centre(QStringLiteral("bench"), false, false);
        QEventLoop eventLoop;
        {
            std::lock_guard<std::mutex> lock(m);
            g_centre = &centre;
            loop = &eventLoop;
        }
        cv.notify_all();
        eventLoop.exec();
        g_centre = nullptr;
    });
    {
        std::unique_lock<std::mutex> lock(m);
        cv.wait(lock, [&] { return loop != nullptr; });
    }

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();

    QMetaObject::invokeMethod(loop, "quit", Qt::QueuedConnection);
    mainThread.join();
    return 0;
}
