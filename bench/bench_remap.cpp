// Cost of remapping a path, with one rule and with a hundred, against copying the QString.
#include <PlumvaleBaseCore/app/BAPP_SpecialFolders.h>
#include <PlumvaleBaseCore/files/oswRemapPath.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

// A configuration of `rules` shares, each mounted in the temporary folder; the matched
// share is the last one written.
QString configure(const QTemporaryDir& dir, int rules) {
    QByteArray ini;
    for (int i = 0; i < rules; ++i)
        ini += "[Connection" + QByteArray::number(i) + "]\nSharename=\\\\server" +
               QByteArray::number(i) + "\\projects\nMountPoint=" + QFile::encodeName(dir.path()) +
               "\n";
    QFile file(dir.path() + QStringLiteral("/orvacfg.ini"));
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    file.write(ini);
    file.close();
    oswRemapPath::setConfigFile(file.fileName());
    oswRemapPath::RemapPath2(QString(), false); // connect and build the table outside the loop
    return QStringLiteral("//SERVER%1/projects/show/seq010/sh0040/scene.scn").arg(rules - 1);
}

const QString kUnmatched = QStringLiteral("/home/artist/show/seq010/sh0040/scene_v012.scn");

void RemapUnmatched(benchmark::State& state) {
    QTemporaryDir dir;
    configure(dir, static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(oswRemapPath::RemapPath2(kUnmatched, false));
}

void CopyUnmatched(benchmark::State& state) {
    for (auto _ : state) {
        QString copy = kUnmatched;
        benchmark::DoNotOptimize(copy);
    }
}

void RemapMatched(benchmark::State& state) {
    QTemporaryDir dir;
    const QString path = configure(dir, static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(oswRemapPath::RemapPath2(path, false));
}

void CopyMatched(benchmark::State& state) {
    const QString path =
        QStringLiteral("//SERVER%1/projects/show/seq010/sh0040/scene.scn").arg(state.range(0) - 1);
    for (auto _ : state) {
        QString copy = path;
        benchmark::DoNotOptimize(copy);
    }
}

} // namespace

BENCHMARK(RemapUnmatched)->Arg(1)->Arg(100);
BENCHMARK(CopyUnmatched)->Arg(1)->Arg(100);
BENCHMARK(RemapMatched)->Arg(1)->Arg(100);
BENCHMARK(CopyMatched)->Arg(1)->Arg(100);
BENCHMARK_MAIN();
