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

// `count` (a power of two) random, well-conditioned matrices in both representations.
const Pool& pool(std::size_t count) {
    static Pool p;
    if (p.ours.size() != count) {
        std::mt19937 rng(42);
        std::uniform_real_distribution<double> d(-1, 1);
        p.ours.clear();
        p.eigen.clear();
        for (std::size_t n = 0; n < count; ++n) {
            double v[16];
            for (double& x : v)
                x = d(rng);
            for (int i = 0; i < 4; ++i)
                v[5 * i] += 4; // diagonally dominant: never singular
            p.ours.emplace_back(v);
            p.eigen.emplace_back(Eigen::Map<const Eigen::Matrix4d>(v)); // column-major too
        }
    }
    return p;
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
    const auto& m = pool(static_cast<std::size_t>(state.range(0))).ours;
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
    const auto& m = pool(static_cast<std::size_t>(state.range(0))).eigen;
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
BENCHMARK(InverseMatrix4x4)->Arg(256);
BENCHMARK(InverseEigen)->Arg(256);

BENCHMARK_MAIN();
