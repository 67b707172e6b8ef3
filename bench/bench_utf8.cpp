// UTF-8 decoding into UT_String and encoding back, side by side with QString.
#include <PlumvaleBaseCore/text/UT_String.h>

#include <QByteArray>
#include <QString>

#include <benchmark/benchmark.h>

#include <map>
#include <string>

namespace {

enum Corpus { Ascii, Latin, Cjk, Emoji };

const char* const kSamples[] = {
    "The quick brown fox jumps over the lazy dog; frame 0042 of scene 7. ",
    "D\xC3\xA9j\xC3\xA0 vu: l'\xC3\xA9l\xC3\xA8ve na\xC3\xAF" "f \xC3\xA0 la f\xC3\xAAte, "
    "\xC3\xA7\xC3\xA0 et l\xC3\xA0. ",
    "\xE5\x8B\x95\xE7\x94\xBB\xE3\x81\xAE\xE5\xA0\xB4\xE9\x9D\xA2\xE3\x82\x92\xE6\x8F\x8F"
    "\xE3\x81\x8F\xE3\x80\x82\xE7\xB7\x9A\xE3\x81\xA8\xE8\x89\xB2\xE3\x80\x82",
    "ok \xF0\x9F\x98\x80 go \xF0\x9F\x8E\xA8 draw \xE2\x9C\x8F\xEF\xB8\x8F cel \xF0\x9F\x8E\xAC ",
};

/// The corpus sample repeated to `size` bytes, cut on a character boundary.
const std::string& corpus(int which, std::size_t size) {
    static std::map<std::pair<int, std::size_t>, std::string> cache;
    std::string& text = cache[{which, size}];
    if (text.empty()) {
        while (text.size() < size)
            text += kSamples[which];
        std::size_t cut = size;
        while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
            --cut;
        text.resize(cut);
    }
    return text;
}

void setCounters(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

void DecodeUTString(benchmark::State& state) {
    const std::string& text = corpus(int(state.range(0)), std::size_t(state.range(1)));
    for (auto _ : state) {
        UT_String s(text.c_str());
        benchmark::DoNotOptimize(s.data());
    }
    setCounters(state, text.size());
}

void DecodeQString(benchmark::State& state) {
    const std::string& text = corpus(int(state.range(0)), std::size_t(state.range(1)));
    for (auto _ : state) {
        QString s = QString::fromUtf8(text.c_str());
        benchmark::DoNotOptimize(s.data());
    }
    setCounters(state, text.size());
}

void EncodeUTString(benchmark::State& state) {
    const std::string& text = corpus(int(state.range(0)), std::size_t(state.range(1)));
    const UT_String s(text.c_str());
    for (auto _ : state) {
        std::string bytes = s.utf8();
        benchmark::DoNotOptimize(bytes.data());
    }
    setCounters(state, text.size());
}

void EncodeQString(benchmark::State& state) {
    const std::string& text = corpus(int(state.range(0)), std::size_t(state.range(1)));
    const QString s = QString::fromUtf8(text.c_str());
    for (auto _ : state) {
        QByteArray bytes = s.toUtf8();
        benchmark::DoNotOptimize(bytes.data());
    }
    setCounters(state, text.size());
}

void corpora(benchmark::internal::Benchmark* b) {
    b->ArgNames({"corpus", "bytes"});
    for (int which : {Ascii, Latin, Cjk, Emoji})
        for (int size : {64, 1 << 20})
            b->Args({which, size});
}

} // namespace

BENCHMARK(DecodeUTString)->Apply(corpora);
BENCHMARK(DecodeQString)->Apply(corpora);
BENCHMARK(EncodeUTString)->Apply(corpora);
BENCHMARK(EncodeQString)->Apply(corpora);

BENCHMARK_MAIN();
