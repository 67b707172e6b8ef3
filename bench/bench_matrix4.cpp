// Matrix4x4 product and inverse against Eigen's Matrix4d on the same random matrices.
#include <PlumvaleBaseCore/math.h>

#include <Eigen/Dense>
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

struct Pool {
    std::vector<Math::Matrix4x4> ours;
    std::vector<Eigen::Matrix4d, Eigen::aligned_allocator<Eigen::Matrix4d>> eigen;
};

Pool makePool(std::size_t count, bool dominant) {
    Pool p;
    std::mt19937 rng(42);
    std::uniform_real_distribution<double> d(-1, 1);
    while (p.ours.size() < count) {
        double v[16];
        for (double& x : v)
            x = d(rng);
        if (dominant)
            for (int i = 0; i < 4; ++i)
                v[5 * i] += 4;
        Math::Matrix4x4 m(v);
        if (m.isSingular()) continue;
        p.ours.push_back(m);
        p.eigen.emplace_back(Eigen::Map<const Eigen::Matrix4d>(v)); // column-major too
    }
    return p;
}

// `count` (a power of two) random matrices in both representations. Diagonally dominant ones
// keep every pivot on the diagonal, as the transforms of a scene mostly do; general ones pick
// their pivots at random.
const Pool& pool(std::size_t count, bool dominant = true) {
    static Pool p[2];
    Pool& chosen = p[dominant ? 1 : 0];
    if (chosen.ours.size() != count) chosen = makePool(count, dominant);
    return chosen;
}

void ProductMatrix4x4(benchmark::State& state) {
    const auto& m = pool(static_cast<std::size_t>(state.range(0))).ours;
    const std::size_t mask = m.size() - 1;
    std::size_t i = 0;
    for (auto _ : state) {
        Math::Matrix4x4 r = m[i] * m[(i + 1) & mask];
        benchmark::DoNotOptimize(r);
        i = (i + 2) & mask;
    }
}

void ProductEigen(benchmark::State& state) {
    const auto& m = pool(static_cast<std::size_t>(state.range(0))).eigen;
    const std::size_t mask = m.size() - 1;
    std::size_t i = 0;
    for (auto _ : state) {
        Eigen::Matrix4d r = m[i] * m[(i + 1) & mask];
        benchmark::DoNotOptimize(r);
        i = (i + 2) & mask;
    }
}

void InverseMatrix4x4(benchmark::State& state) {
    const auto& m = pool(static_cast<std::size_t>(state.range(0)), state.range(1) != 0).ours;
    const std::size_t mask = m.size() - 1;
    std::size_t i = 0;
    for (auto _ : state) {
        Math::Matrix4x4 r = m[i];
        r.inverse();
        benchmark::DoNotOptimize(r);
        i = (i + 1) & mask;
    }
}

void InverseEigen(benchmark::State& state) {
    const auto& m = pool(static_cast<std::size_t>(state.range(0)), state.range(1) != 0).eigen;
    const std::size_t mask = m.size() - 1;
    std::size_t i = 0;
    for (auto _ : state) {
        Eigen::Matrix4d r = m[i].inverse();
        benchmark::DoNotOptimize(r);
        i = (i + 1) & mask;
    }
}

} // namespace

BENCHMARK(ProductMatrix4x4)->Arg(256);
BENCHMARK(ProductEigen)->Arg(256);
// Second argument: 1 for diagonally dominant matrices, 0 for general ones.
BENCHMARK(InverseMatrix4x4)->Args({256, 1})->Args({256, 0});
BENCHMARK(InverseEigen)->Args({256, 1})->Args({256, 0});

BENCHMARK_MAIN();
