// Tests of TiledBox2di against an explicit set of cells, and its fixed rules and layout.
#include <PlumvaleBaseCore/math.h>

#include <gtest/gtest.h>

#include <random>
#include <vector>

using namespace Math;

namespace {

// Every cell of the window [-kHalf, kHalf)^2, as a flat array of flags: the brute-force model.
constexpr int kHalf = 64;
constexpr int kSide = 2 * kHalf;

struct Cells {
    std::vector<char> in = std::vector<char>(kSide * kSide, 0);
    char& at(int x, int y) { return in[size_t((y + kHalf) * kSide + x + kHalf)]; }
    char at(int x, int y) const { return in[size_t((y + kHalf) * kSide + x + kHalf)]; }

    void fill(const Box2di& b, char v = 1) {
        for (int y = b.y1(); y < b.y2(); ++y)
            for (int x = b.x1(); x < b.x2(); ++x)
                at(x, y) = v;
    }
    // What a tiled region keeps of these cells: in each tile, the box of the cells inside it.
    void boxPerTile(int size) {
        for (int ty = -kHalf; ty < kHalf; ty += size)
            for (int tx = -kHalf; tx < kHalf; tx += size) {
                Box2di bound;
                for (int y = ty; y < ty + size; ++y)
                    for (int x = tx; x < tx + size; ++x)
                        if (at(x, y)) bound.add(x, y);
                fill(bound);
            }
    }
};

Box2di randomBox(std::mt19937& rng) {
    std::uniform_int_distribution<int> origin(-kHalf, kHalf - 1), extent(0, 24);
    Box2di b(origin(rng), origin(rng), extent(rng), extent(rng));
    b.intersect(Box2di(-kHalf, -kHalf, kSide, kSide));
    return b;
}

void expectSameCells(const TiledBox2di& region, const Cells& cells) {
    int tiles = 0;
    for (int y = -kHalf; y < kHalf; ++y)
        for (int x = -kHalf; x < kHalf; ++x) {
            ASSERT_EQ(region.isContaining(x, y), bool(cells.at(x, y))) << x << "," << y;
            const int size = region.tileSize();
            if (x % size == 0 && y % size == 0)
                tiles += !region
                              .findTileBox(x >> region.tileSizePowerOf2(),
                                           y >> region.tileSizePowerOf2())
                              .hasNullArea();
        }
    EXPECT_EQ(region.numTiles(), tiles);
    int iterated = 0;
    for (auto it = region.begin(); it != region.end(); ++it, ++iterated)
        EXPECT_EQ(*it, region.findTileBox(it.tileX(), it.tileY()));
    EXPECT_EQ(iterated, tiles);
}

TEST(TiledBox2di, RandomSequencesAgainstCells) {
    std::mt19937 rng(21);
    for (int round = 0; round < 60; ++round) {
        const int size = round % 2 ? 16 : 32;
        TiledBox2di a(size), b(size);
        Cells ca, cb;
        Box2di total;
        for (int i = 0; i < 6; ++i) {
            const Box2di box = randomBox(rng);
            a.add(box);
            total.add(box);
            ca.fill(box);
            ca.boxPerTile(size);
            const Box2di other = randomBox(rng);
            b.add(other);
            cb.fill(other);
            cb.boxPerTile(size);
        }
        expectSameCells(a, ca);
        EXPECT_EQ(a.totalBox(), total);

        // Tests against boxes and the other region, cell by cell.
        for (int i = 0; i < 20; ++i) {
            const Box2di probe = randomBox(rng);
            bool all = !probe.hasNullArea(), any = false;
            for (int y = probe.y1(); y < probe.y2(); ++y)
                for (int x = probe.x1(); x < probe.x2(); ++x)
                    all = all && ca.at(x, y), any = any || ca.at(x, y);
            EXPECT_EQ(a.isContaining(probe), all);
            EXPECT_EQ(a.isIntersecting(probe), any);
        }
        bool bInA = !b.isEmpty(), meet = false;
        for (int y = -kHalf; y < kHalf; ++y)
            for (int x = -kHalf; x < kHalf; ++x) {
                if (cb.at(x, y) && !ca.at(x, y)) bInA = false;
                if (cb.at(x, y) && ca.at(x, y)) meet = true;
            }
        EXPECT_EQ(a.isContaining(b), bInA);
        EXPECT_EQ(a.isIntersecting(b), meet);

        // Union and intersection of the two regions.
        TiledBox2di both(size), common(size);
        both.getUnion(a, b);
        Cells cu = ca;
        for (size_t k = 0; k < cu.in.size(); ++k)
            cu.in[k] = char(cu.in[k] | cb.in[k]);
        cu.boxPerTile(size);
        expectSameCells(both, cu);
        common.getIntersection(a, b);
        Cells ci = ca;
        for (size_t k = 0; k < ci.in.size(); ++k)
            ci.in[k] = char(ci.in[k] & cb.in[k]);
        expectSameCells(common, ci);

        // Intersecting with a box keeps exactly the cells inside it.
        const Box2di window = randomBox(rng);
        TiledBox2di cut = a;
        cut.intersect(window);
        Cells cc;
        for (int y = window.y1(); y < window.y2(); ++y)
            for (int x = window.x1(); x < window.x2(); ++x)
                cc.at(x, y) = ca.at(x, y);
        expectSameCells(cut, cc);

        // Equality: adding the tile boxes again, in any order, gives the same region; a cell
        // outside it makes a different one.
        TiledBox2di again(size);
        for (auto it = a.begin(); it != a.end(); ++it)
            again.add(*it);
        EXPECT_EQ(again, a);
        if (!ca.at(-kHalf, -kHalf)) {
            again.add(-kHalf, -kHalf);
            EXPECT_NE(again, a);
        }
        EXPECT_NE(a, b);
    }
}

TEST(TiledBox2di, TileSizesAndNegativeCells) {
    const std::pair<int, int> sizes[] = {{0, 16},  {16, 16},  {31, 16},
                                         {32, 32}, {100, 64}, {64, 64}};
    for (const auto& s : sizes) {
        const TiledBox2di t(s.first);
        EXPECT_EQ(t.tileSize(), s.second) << s.first;
        EXPECT_EQ(1 << t.tileSizePowerOf2(), s.second);
        EXPECT_EQ(t.tileMask(), s.second - 1);
        EXPECT_EQ(t.tileMaskInverse(), ~(s.second - 1));
    }

    TiledBox2di t(16);
    t.add(Box2di(-1, -1, 2, 2));
    EXPECT_EQ(t.numTiles(), 4);
    EXPECT_EQ(t.findTileBox(-1, -1), Box2di(-1, -1, 1, 1));
    EXPECT_EQ(t.findTileBox(0, -1), Box2di(0, -1, 1, 1));
    EXPECT_EQ(t.findTileBox(-1, 0), Box2di(-1, 0, 1, 1));
    EXPECT_EQ(t.findTileBox(0, 0), Box2di(0, 0, 1, 1));
    const TiledBox2di before = t;
    t.add(Box2di(5, 5, 0, 3));
    EXPECT_EQ(t, before);
    EXPECT_EQ(t.totalBox(), Box2di(-1, -1, 2, 2));

    // The generic interface divides (x = -1 in tile 0); the class itself shifts (tile -1).
    const TiledBox2diInterface& generic = t;
    EXPECT_EQ(generic.convertToTileBox(Box2di(-1, -1, 1, 1)), Box2di(0, 0, 1, 1));
    EXPECT_EQ(generic.convertToTileCanvas(-2, 1), Box2di(-32, 16, 16, 16));

    // Moving a region by a matrix moves its tile boxes.
    TiledBox2di moved(16);
    moved.addTransformedBox(t, Matrix2x3::CreateTranslate({20, 0}));
    EXPECT_EQ(moved.totalBox(), Box2di(19, -1, 2, 2));
    EXPECT_TRUE(moved.isContaining(Box2di(19, -1, 2, 2)));
}

TEST(TiledBox2di, PrintLayout) {
    TiledBox2di t(16);
    t.add(Box2di(2, 3, 20, 4));
    testing::internal::CaptureStdout();
    t.print("dirty");
    const std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(out, "----- dirty\n"
                   "              3                   3     \n"
                   "         2        16        16        22\n"
                   "              7                   7     \n"
                   "\n");
}

} // namespace
