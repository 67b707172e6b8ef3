// Starting and waiting for /bin/true: OSW_Execute against a bare posix_spawn + waitpid (the
// speed anchor), fork + exec and QProcess, each with the parent holding 0 or 2 GiB of
// touched memory (a start must not grow with the parent's size).
#include <PlumvaleBaseCore/files/OSW_Execute.h>

#include <QCoreApplication>
#include <QProcess>

#include <benchmark/benchmark.h>

#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

extern char** environ;

namespace {

char kTrue[] = "/bin/true";

// The parent's extra memory for one benchmark run, touched so that every page is mapped.
class Ballast {
public:
    explicit Ballast(long mebibytes) : m_size(static_cast<std::size_t>(mebibytes) << 20) {
        if (m_size == 0) return;
        m_data =
            ::mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (m_data == MAP_FAILED) m_data = nullptr;
        if (m_data) std::memset(m_data, 1, m_size);
    }
    ~Ballast() {
        if (m_data) ::munmap(m_data, m_size);
    }
    bool ok() const { return m_size == 0 || m_data; }

private:
    std::size_t m_size;
    void* m_data = nullptr;
};

void ExecmTrue(benchmark::State& state) {
    Ballast ballast(state.range(0));
    if (!ballast.ok()) return state.SkipWithError("no memory for the ballast");
    for (auto _ : state) {
        OSW_Execute child;
        benchmark::DoNotOptimize(child.execm(QStringList{QString::fromLatin1(kTrue)}));
    }
}

void PosixSpawnTrue(benchmark::State& state) {
    Ballast ballast(state.range(0));
    if (!ballast.ok()) return state.SkipWithError("no memory for the ballast");
    char* argv[] = {kTrue, nullptr};
    for (auto _ : state) {
        pid_t pid = 0;
        if (posix_spawn(&pid, kTrue, nullptr, nullptr, argv, environ) != 0)
            return state.SkipWithError("posix_spawn failed");
        int status = 0;
        waitpid(pid, &status, 0);
        benchmark::DoNotOptimize(status);
    }
}

void ForkExecTrue(benchmark::State& state) {
    Ballast ballast(state.range(0));
    if (!ballast.ok()) return state.SkipWithError("no memory for the ballast");
    char* argv[] = {kTrue, nullptr};
    for (auto _ : state) {
        const pid_t pid = fork();
        if (pid == 0) {
            execv(kTrue, argv);
            _exit(127);
        }
        int status = 0;
        waitpid(pid, &status, 0);
        benchmark::DoNotOptimize(status);
    }
}

void QProcessTrue(benchmark::State& state) {
    Ballast ballast(state.range(0));
    if (!ballast.ok()) return state.SkipWithError("no memory for the ballast");
    for (auto _ : state) {
        QProcess process;
        process.start(QString::fromLatin1(kTrue), QStringList());
        process.waitForFinished();
        benchmark::DoNotOptimize(process.exitCode());
    }
}

BENCHMARK(ExecmTrue)->Arg(0)->Arg(2048)->Unit(benchmark::kMicrosecond);
BENCHMARK(PosixSpawnTrue)->Arg(0)->Arg(2048)->Unit(benchmark::kMicrosecond);
BENCHMARK(ForkExecTrue)->Arg(0)->Arg(2048)->Unit(benchmark::kMicrosecond);
BENCHMARK(QProcessTrue)->Arg(0)->Arg(2048)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv); // QProcess wants one
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
