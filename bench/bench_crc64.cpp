// TUCRC64Calculator::compute side by side with the plain byte-at-a-time table loop.
#include <PlumvaleBaseCore/numerics/TUCRC64Calculator.h>

#include <benchmark/benchmark.h>

#include <random>
#include <string>

namespace {

/// The anchor: one table lookup per byte, the textbook reflected loop.
struct ByteTable {
    std::uint64_t table[256];
    ByteTable() {
        for (unsigned i = 0; i < 256; ++i) {
            std::uint64_t v = i;
            for (int k = 0; k < 8; ++k)
                v = (v >> 1) ^ ((v & 1) ? 0xD800000000000000ull : 0);
            table[i] = v;
        }
    }
    std::uint64_t compute(const std::string& bytes) const {
        std::uint64_t crc = 0;
        for (const char c : bytes)
            crc = table[(crc ^ static_cast<unsigned char>(c)) & 0xFF] ^ (crc >> 8);
        return crc;
    }
};

const std::string& input(std::size_t size) {
    static std::string data;
    if (data.size() < size) {
        std::mt19937 rng(1);
        data.resize(size);
        for (auto& c : data)
            c = static_cast<char>(rng());
    }
    static std::string cut;
    cut.assign(data, 0, size);
    return cut;
}

void ByteAtATime(benchmark::State& state) {
    const std::string bytes = input(std::size_t(state.range(0)));
    const ByteTable anchor;
    for (auto _ : state)
        benchmark::DoNotOptimize(anchor.compute(bytes));
    state.SetBytesProcessed(int64_t(state.iterations()) * state.range(0));
}

void Compute(benchmark::State& state) {
    const std::string bytes = input(std::size_t(state.range(0)));
    const TUCRC64Calculator calc;
    const ByteTable anchor;
    const std::uint64_t expected = anchor.compute(bytes);
    const auto got = calc.compute(bytes);
    if (((std::uint64_t(got.first) << 32) | got.second) != expected)
        state.SkipWithError("results differ from the anchor");
    for (auto _ : state)
        benchmark::DoNotOptimize(calc.compute(bytes));
    state.SetBytesProcessed(int64_t(state.iterations()) * state.range(0));
}

} // namespace

BENCHMARK(ByteAtATime)->Arg(64)->Arg(4096)->Arg(1 << 20);
BENCHMARK(Compute)->Arg(64)->Arg(4096)->Arg(1 << 20);

BENCHMARK_MAIN();
