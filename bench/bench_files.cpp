// Whole-file work on a 512 MiB file: tufile::Copy against the system's `cp` (the speed
// anchor), bare and followed by the same flushes to the disk that Copy makes, and PL_FileSignature
// against OpenSSL's MD5 reading the same file in the same pieces, with the growth of the process's
// peak memory while a signature is computed.
#include <PlumvaleBaseCore/files/PL_FileSpec.h>
#include <PlumvaleBaseCore/files/PL_FileUtil.h>
#include <PlumvaleBaseCore/files/tufile.h>

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

extern char** environ;

namespace {

constexpr long long kSize = 512LL << 20;

// One 512 MiB file of varied bytes for the whole run, beside the copies' target.
struct Fixture {
    QTemporaryDir dir{QStringLiteral("bench_files")}; // in the working folder's file system
    QString source = dir.filePath(QStringLiteral("source.bin"));
    QString target = dir.filePath(QStringLiteral("target.bin"));
    Fixture() {
        QFile file(source);
        if (!file.open(QIODevice::WriteOnly)) return;
        std::vector<char> piece(1 << 20);
        unsigned x = 12345;
        for (long long done = 0; done < kSize; done += static_cast<long long>(piece.size())) {
            for (char& c : piece)
                c = static_cast<char>((x = x * 1103515245u + 12345u) >> 24);
            file.write(piece.data(), static_cast<qint64>(piece.size()));
        }
        // On the disk before any measurement, so that no run competes with its write-back.
        file.flush();
        ::fsync(file.handle());
    }
};

Fixture& fixture() {
    static Fixture f;
    return f;
}

// Before each copy measurement: the target as a previous copy left it, and nothing of any
// other measurement still waiting to be written.
void settle(const Fixture& f) {
    tufile::Copy(f.source, f.target);
    ::sync();
}

void CopyTufile(benchmark::State& state) {
    Fixture& f = fixture();
    settle(f);
    for (auto _ : state)
        tufile::Copy(f.source, f.target);
    state.SetBytesProcessed(state.iterations() * kSize);
}

// `cp`, then the copy flushed to the disk as tufile::Copy flushes it (the file, then its
// folder), when `synced`.
void runCp(benchmark::State& state, bool synced) {
    Fixture& f = fixture();
    const std::string from = f.source.toStdString(), to = f.target.toStdString();
    std::vector<char*> argv{const_cast<char*>("cp"), const_cast<char*>(from.c_str()),
                            const_cast<char*>(to.c_str()), nullptr};
    settle(f);
    for (auto _ : state) {
        pid_t pid;
        if (::posix_spawnp(&pid, "cp", nullptr, nullptr, argv.data(), environ) != 0)
            return state.SkipWithError("cannot start cp");
        int status = 0;
        ::waitpid(pid, &status, 0);
        if (status != 0) return state.SkipWithError("cp failed");
        if (!synced) continue;
        for (const std::string& path : {to, f.dir.path().toStdString()}) {
            const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
            ::fsync(fd);
            ::close(fd);
        }
    }
    state.SetBytesProcessed(state.iterations() * kSize);
}

void CopyCp(benchmark::State& state) {
    runCp(state, false);
}

void CopyCpSynced(benchmark::State& state) {
    runCp(state, true);
}

// The peak resident memory (VmHWM) in KiB, after it has been reset to the current size.
long peakKiB() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0) return std::stol(line.substr(6));
    return -1;
}

void resetPeak() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

void SignatureFile(benchmark::State& state) {
    Fixture& f = fixture();
    const PL_FileSpec file{UT_String(f.source)};
    long growth = 0;
    for (auto _ : state) {
        resetPeak();
        const long before = peakKiB();
        PL_FileSignature signature;
        if (!signature.computeSignature(file)) return state.SkipWithError("no signature");
        benchmark::DoNotOptimize(signature.digest());
        growth = std::max(growth, peakKiB() - before);
    }
    state.counters["peak_growth_KiB"] = static_cast<double>(growth);
    state.SetBytesProcessed(state.iterations() * kSize);
}

void SignatureOpenSsl(benchmark::State& state) {
    Fixture& f = fixture();
    std::vector<char> piece(1 << 20);
    for (auto _ : state) {
        const int fd = ::open(f.source.toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC);
        EVP_MD_CTX* md5 = EVP_MD_CTX_new();
        EVP_DigestInit_ex(md5, EVP_md5(), nullptr);
        for (ssize_t n; (n = ::read(fd, piece.data(), piece.size())) > 0;)
            EVP_DigestUpdate(md5, piece.data(), static_cast<std::size_t>(n));
        unsigned char digest[16];
        unsigned length = 0;
        EVP_DigestFinal_ex(md5, digest, &length);
        EVP_MD_CTX_free(md5);
        ::close(fd);
        benchmark::DoNotOptimize(digest);
    }
    state.SetBytesProcessed(state.iterations() * kSize);
}

} // namespace

BENCHMARK(CopyTufile)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(CopyCp)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(CopyCpSynced)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(SignatureFile)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(SignatureOpenSsl)->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK_MAIN();
