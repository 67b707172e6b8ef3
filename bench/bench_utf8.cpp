// UTF-8 decoding into UT_String and encoding back, side by side with QString.
#include <PlumvaleBaseCore/text/UT_String.h>

#include <QByteArray>
#include <QString>

#include <benchmark/benchmark.h>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

enum Corpus { Ascii, Latin, Cjk, Emoji };

// Phrases per corpus. The texts are drawn from them at random (fixed seed), so that no
// short period lets a branch predictor learn the input by heart.
const std::vector<std::vector<const char*>> kPhrases = {
    {"The quick brown fox jumps over the lazy dog. ", "Frame 0042 of scene 7, layer B. ",
     "Export finished in 12.5 s; ", "cel /render/out/shot_010.png ", "x=1, y=2; ",
     "Timeline: 24 fps, 1440 frames. "},
    {"D\xC3\xA9j\xC3\xA0 vu ",
     "l'\xC3\xA9l\xC3\xA8ve na\xC3\xAF"
     "f ",
     "\xC3\xA0 la f\xC3\xAAte, ", "\xC3\xA7\xC3\xA0 et l\xC3\xA0. ",
     "Stra\xC3\x9F"
     "e ",
     "\xC3\xB1"
     "and\xC3\xBA ",
     "frame 12 ", "sc\xC3\xA8ne ",
     "\xE2\x80\x99"
     "quote\xE2\x80\x99 "},
    {"\xE5\x8B\x95\xE7\x94\xBB", "\xE3\x81\xAE", "\xE5\xA0\xB4\xE9\x9D\xA2", "\xE3\x82\x92",
     "\xE6\x8F\x8F\xE3\x81\x8F", "\xE3\x80\x82", "\xE7\xB7\x9A\xE3\x81\xA8\xE8\x89\xB2",
     "\xEF\xBC\x8C", "\xE5\x8A\xA8\xE7\x94\xBB"},
    {"ok ", "\xF0\x9F\x98\x80", " go ", "\xF0\x9F\x8E\xA8", " draw ", "\xE2\x9C\x8F\xEF\xB8\x8F",
     " cel ", "\xF0\x9F\x8E\xAC", "! ", "\xF0\x9F\x91\x8D\xF0\x9F\x8F\xBD", " done. "},
};

/// Phrases of the corpus drawn at random until `size` bytes, cut on a character boundary.
const std::string& corpus(int which, std::size_t size) {
    static std::map<std::pair<int, std::size_t>, std::string> cache;
    std::string& text = cache[{which, size}];
    if (text.empty()) {
        const auto& phrases = kPhrases[std::size_t(which)];
        std::mt19937 rng(42);
        while (text.size() < size)
            text += phrases[rng() % phrases.size()];
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
