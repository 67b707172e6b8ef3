// Segment meeting tests, tiled-box adds and the view-volume clip, each beside a plain anchor.
#include <PlumvaleBaseCore/math.h>

#include <benchmark/benchmark.h>

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <new>
#include <random>
#include <unordered_map>
#include <vector>

// Every allocation of the process is counted, so that a benchmark can report its own.
static std::atomic<long> g_allocations{0};

void* operator new(std::size_t n) {
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(n ? n : 1)) return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}

namespace {

using namespace Math;

// --- segment meeting tests ---

const std::vector<Segment2d>& segments() {
    static const std::vector<Segment2d> pool = [] {
        std::mt19937 rng(17);
        std::uniform_real_distribution<double> c(0, 100);
        std::vector<Segment2d> s;
        for (int i = 0; i < 4096; ++i)
            s.emplace_back(Point2d(c(rng), c(rng)), Point2d(c(rng), c(rng)));
        return s;
    }();
    return pool;
}

void SegmentMeeting_Ours(benchmark::State& state) {
    const auto& s = segments();
    size_t i = 0;
    for (auto _ : state) {
        Segment2d::IntersectionType type;
        const bool met = s[i & 4095].GetNonColinearIntersection(s[(i + 1) & 4095], type);
        benchmark::DoNotOptimize(met);
        benchmark::DoNotOptimize(type);
        ++i;
    }
}

// The anchor: the textbook crossing test in doubles, without boundaries or touch flags.
struct PlainMeeting {
    double t, u, x, y;
};

__attribute__((noinline)) bool plainCrossing(const Segment2d& a, const Segment2d& b,
                                             PlainMeeting& out) {
    const Vector2d d1 = a.GetVector(), d2 = b.GetVector();
    const Vector2d w = a.GetFromPoint() - b.GetFromPoint();
    const double det = d1.x * d2.y - d1.y * d2.x;
    if (det == 0) return false;
    const double t = (d2.x * w.y - d2.y * w.x) / det;
    const double u = (d1.x * w.y - d1.y * w.x) / det;
    if (t < 0 || t > 1 || u < 0 || u > 1) return false;
    out = {t, u, a.GetFromPoint().x + t * d1.x, a.GetFromPoint().y + t * d1.y};
    return true;
}

void SegmentMeeting_PlainDouble(benchmark::State& state) {
    const auto& s = segments();
    size_t i = 0;
    for (auto _ : state) {
        PlainMeeting m{};
        const bool met = plainCrossing(s[i & 4095], s[(i + 1) & 4095], m);
        benchmark::DoNotOptimize(met);
        benchmark::DoNotOptimize(m);
        ++i;
    }
}

BENCHMARK(SegmentMeeting_Ours);
BENCHMARK(SegmentMeeting_PlainDouble);

// --- tiled boxes ---

const std::vector<Box2di>& tileBoxes() {
    static const std::vector<Box2di> pool = [] {
        std::mt19937 rng(29);
        std::uniform_int_distribution<int> origin(-2048, 2047), size(1, 64);
        std::vector<Box2di> b;
        for (int i = 0; i < 100000; ++i)
            b.emplace_back(origin(rng), origin(rng), size(rng), size(rng));
        return b;
    }();
    return pool;
}

void TiledBoxAdd_Ours(benchmark::State& state) {
    const auto& boxes = tileBoxes();
    for (auto _ : state) {
        TiledBox2di region(64);
        for (const Box2di& b : boxes)
            region.add(b);
        benchmark::DoNotOptimize(region.numTiles());
    }
    state.SetItemsProcessed(state.iterations() * int64_t(boxes.size()));
}

// The anchor: the standard hashed container with its default hash of the same packed key,
// updated by the same rule.
void TiledBoxAdd_UnorderedMap(benchmark::State& state) {
    const auto& boxes = tileBoxes();
    for (auto _ : state) {
        std::unordered_map<std::uint64_t, Box2di> tiles;
        Box2di total;
        for (const Box2di& b : boxes) {
            total.add(b);
            const int x0 = b.x1() >> 6, y0 = b.y1() >> 6;
            const int x1 = (b.x2() - 1) >> 6, y1 = (b.y2() - 1) >> 6;
            for (int ty = y0; ty <= y1; ++ty)
                for (int tx = x0; tx <= x1; ++tx) {
                    Box2di& e = tiles[TiledBox2di::key(tx, ty)];
                    e = e.getUnion(b).getIntersection(Box2di(tx * 64, ty * 64, 64, 64));
                    if (e.hasNullArea()) tiles.erase(TiledBox2di::key(tx, ty));
                }
        }
        benchmark::DoNotOptimize(tiles.size());
        benchmark::DoNotOptimize(total);
    }
    state.SetItemsProcessed(state.iterations() * int64_t(boxes.size()));
}

BENCHMARK(TiledBoxAdd_Ours)->Unit(benchmark::kMillisecond);
BENCHMARK(TiledBoxAdd_UnorderedMap)->Unit(benchmark::kMillisecond);

// --- clipping ---

// 1,000 points on a wavy ring that leaves the volume through all six planes.
Polyline4d ring() {
    Polyline4d p(true);
    for (int i = 0; i < 1000; ++i) {
        const double a = 2 * TUMaths::pi * i / 1000;
        p.append(Point4d(1.25 * std::cos(a), 1.25 * std::sin(a), 1.6 * std::sin(7 * a), 1));
    }
    return p;
}

void Clip1000(benchmark::State& state) {
    const Polyline4d source = ring();
    long allocations = 0, outputPoints = 0;
    for (auto _ : state) {
        Polyline4d p = source; // the copy is one allocation
        const long before = g_allocations.load(std::memory_order_relaxed);
        p.clip();
        allocations += g_allocations.load(std::memory_order_relaxed) - before;
        outputPoints += p.numPoints();
        benchmark::DoNotOptimize(p.numPoints());
    }
    state.SetItemsProcessed(state.iterations() * 1000);
    state.counters["allocs_per_clip"] = double(allocations) / double(state.iterations());
    state.counters["points_out"] = double(outputPoints) / double(state.iterations());
}

BENCHMARK(Clip1000);

} // namespace

BENCHMARK_MAIN();
