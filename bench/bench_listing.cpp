// Folder listing with PL_FileSpec_iterator against readdir and QDirIterator on 100,000
// entries, and UT_Path::SetPath against QDir::cleanPath.
#include <PlumvaleBaseCore/files.h>

#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// A folder of `count` entries (one in sixteen a folder), made once per process.
const QString& folderOf(int count) {
    static std::unique_ptr<QTemporaryDir> dir;
    static QString path;
    if (!dir) {
        dir = std::make_unique<QTemporaryDir>();
        path = dir->path();
        for (int i = 0; i < count; ++i) {
            const QByteArray name = (path + QStringLiteral("/entry_%1.dat").arg(i)).toUtf8();
            if (i % 16 == 0) {
                ::mkdir(name.constData(), 0755);
            } else {
                const int fd = ::open(name.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
                if (fd >= 0) ::close(fd);
            }
        }
    }
    return path;
}

void ListFileSpec(benchmark::State& state) {
    const PL_FileSpec folder{UT_String(folderOf(static_cast<int>(state.range(0))))};
    for (auto _ : state) {
        std::size_t folders = 0, chars = 0;
        for (PL_FileSpec::iterator it = folder.begin(), end = folder.end(); it != end; ++it) {
            folders += it->IsFolder();
            chars += it->GetFilePath().size();
        }
        benchmark::DoNotOptimize(folders);
        benchmark::DoNotOptimize(chars);
    }
}

void ListReaddir(benchmark::State& state) {
    const QByteArray folder = folderOf(static_cast<int>(state.range(0))).toUtf8();
    for (auto _ : state) {
        std::size_t folders = 0, chars = 0;
        DIR* dir = ::opendir(folder.constData());
        while (const struct dirent* e = ::readdir(dir)) {
            if (std::strcmp(e->d_name, ".") == 0 || std::strcmp(e->d_name, "..") == 0) continue;
            folders += e->d_type == DT_DIR;
            chars += std::strlen(e->d_name);
        }
        ::closedir(dir);
        benchmark::DoNotOptimize(folders);
        benchmark::DoNotOptimize(chars);
    }
}

void ListQDirIterator(benchmark::State& state) {
    const QString folder = folderOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::size_t folders = 0, chars = 0;
        QDirIterator it(folder,
                        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        while (it.hasNext()) {
            chars += static_cast<std::size_t>(it.next().size());
            folders += it.fileInfo().isDir();
        }
        benchmark::DoNotOptimize(folders);
        benchmark::DoNotOptimize(chars);
    }
}

// Typical paths of the family's projects, some needing cleaning.
const QString kPaths[] = {
    QStringLiteral("C:\\Projects\\Show\\scenes\\sc010\\sc010_v003.pvs"),
    QStringLiteral("/home/artist/projects/show/scenes/../assets/char/hero_v12.png"),
    QStringLiteral("//render-farm/share/output/./sc020/frame_0001.tif"),
    QStringLiteral("relative/folder//with/extra/slashes/file.txt"),
};

void SetPathUTPath(benchmark::State& state) {
    UT_Path path;
    for (auto _ : state)
        for (const QString& p : kPaths) {
            path.SetPath(p);
            benchmark::DoNotOptimize(path);
        }
}

void CleanPathQDir(benchmark::State& state) {
    for (auto _ : state)
        for (const QString& p : kPaths) {
            QString clean = QDir::cleanPath(QDir::fromNativeSeparators(p));
            benchmark::DoNotOptimize(clean);
        }
}

} // namespace

BENCHMARK(ListFileSpec)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ListReaddir)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ListQDirIterator)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(SetPathUTPath)->Arg(4);
BENCHMARK(CleanPathQDir)->Arg(4);

BENCHMARK_MAIN();
