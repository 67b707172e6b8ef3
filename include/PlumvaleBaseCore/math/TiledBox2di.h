// Tiled integer regions: the read-only TiledBox2diInterface and its hashed TiledBox2di.
#pragma once

#include <PlumvaleBaseCore/math/Box.h>
#include <PlumvaleBaseCore/math/Matrix2x3.h>

#include <cstdint>
#include <memory>
#include <unordered_map>

namespace Math {

/// Read-only view of an integer region kept as square tiles, each holding the integer
/// bounding box (`Box2di`, half-open cell ranges) of the part of the region inside it.
/// The region is the union of the tile boxes. Tile (tx, ty) covers the cells
/// (tx * size, ty * size, size, size).
class PLUMVALE_EXPORT TiledBox2diInterface {
public:
    /// The iteration interface a region kind implements for `const_iterator`.
    class PLUMVALE_EXPORT abstract_const_iterator {
    public:
        virtual ~abstract_const_iterator();
        /// Moves to the next tile.
        virtual void advance() = 0;
        /// The current tile's box.
        virtual const Box2di& box() const = 0;
        /// Both denote the same position of the same region.
        virtual bool equals(const abstract_const_iterator& other) const = 0;
        /// @{
        /// The current tile's coordinates.
        virtual int tileX() const = 0;
        virtual int tileY() const = 0;
        /// @}
        /// A new iterator at the same position, owned by the caller.
        virtual abstract_const_iterator* clone() const = 0;
    };

    /// Iterator over the tiles of a region, in an unspecified order that callers must not rely
    /// on. It owns its abstract iterator and copies it by cloning. Modifying the region
    /// invalidates it.
    class PLUMVALE_EXPORT const_iterator {
    public:
        /// Takes ownership of `it` (not null).
        explicit const_iterator(abstract_const_iterator* it) : m_it(it) {}
        const_iterator(const const_iterator& o) : m_it(o.m_it->clone()) {}
        const_iterator& operator=(const const_iterator& o) {
            if (this != &o) m_it.reset(o.m_it->clone());
            return *this;
        }
        const_iterator(const_iterator&&) noexcept = default;
        const_iterator& operator=(const_iterator&&) noexcept = default;

        /// The current tile's box.
        const Box2di& operator*() const { return m_it->box(); }
        /// Next tile.
        const_iterator& operator++() {
            m_it->advance();
            return *this;
        }
        /// @{
        /// Same position.
        bool operator==(const const_iterator& o) const { return m_it->equals(*o.m_it); }
        bool operator!=(const const_iterator& o) const { return !(*this == o); }
        /// @}
        /// @{
        /// The current tile's coordinates.
        int tileX() const { return m_it->tileX(); }
        int tileY() const { return m_it->tileY(); }
        /// @}

    private:
        std::unique_ptr<abstract_const_iterator> m_it;
    };

    virtual ~TiledBox2diInterface();
    /// The tile's side in cells.
    virtual int tileSize() const = 0;
    /// No tile holds anything.
    virtual bool isEmpty() const = 0;
    /// The bounding box of everything added.
    virtual Box2di totalBox() const = 0;
    /// The box stored for that tile, or the all-zero box.
    virtual Box2di findTileBox(int tileX, int tileY) const = 0;
    /// @{
    /// The tiles.
    virtual const_iterator begin() const = 0;
    virtual const_iterator end() const = 0;
    /// @}

    /// The range of tile indices covering `box`, found by integer division by tileSize(),
    /// which truncates toward zero: for negative coordinates this is not the tile holding the
    /// cell (x = -1 gives tile 0 with size 16). Kept as the generic interface's rule; an
    /// empty box gives the all-zero box.
    Box2di convertToTileBox(const Box2di& box) const;
    /// The cells of tile (tileX, tileY): (tileX * size, tileY * size, size, size).
    Box2di convertToTileCanvas(int tileX, int tileY) const;
    /// Writes the tiles of the total box's range (found by convertToTileBox above), row by
    /// row, to standard output under "----- label": for each row the tops, then the left and
    /// right, then the bottoms of its tiles, then a blank line.
    void print(const char* label) const;
};

/// A tiled region in a hash table of tiles keyed by (tileX, tileY).
///
/// Conventions:
/// - The tile size is the largest power of two not above max(requested, 16).
/// - The tile of a cell is (x >> k, y >> k) with k = log2(size): an arithmetic shift, so
///   negative coordinates floor (x = -1 lies in tile -1). This class's convertToTileBox uses
///   the shift; the interface's keeps its division.
/// - A tile never stores an empty box: a tile that becomes empty is removed.
/// - The total box is the union of every box added (Box2di::add); `intersect` recomputes
///   it as the union of the tiles left.
/// - A plain value: copying copies the table.
class PLUMVALE_EXPORT TiledBox2di : public TiledBox2diInterface {
public:
    /// Empty, tile size from `requestedTileSize` as above.
    explicit TiledBox2di(int requestedTileSize = 64);
    TiledBox2di(const TiledBox2di&) = default;
    TiledBox2di& operator=(const TiledBox2di&) = default;
    ~TiledBox2di() override;

    /// @{
    /// The tile size, its base-2 exponent, size - 1 and its complement.
    int tileSize() const override { return 1 << m_shift; }
    int tileSizePowerOf2() const { return m_shift; }
    int tileMask() const { return (1 << m_shift) - 1; }
    int tileMaskInverse() const { return ~tileMask(); }
    /// @}
    bool isEmpty() const override { return m_table.empty(); }
    Box2di totalBox() const override { return m_total; }
    Box2di findTileBox(int tileX, int tileY) const override;
    const_iterator begin() const override;
    const_iterator end() const override;
    /// The number of tiles holding something.
    int numTiles() const { return static_cast<int>(m_table.size()); }

    /// @{
    /// Adds the cell, or the box: every tile the box touches grows to
    /// (tile box union box) intersected with the tile's cells. An empty box changes nothing.
    void add(int x, int y) { add(Box2di(x, y, 1, 1)); }
    void add(const Point2di& p) { add(p.x, p.y); }
    void add(const Box2di& box);
    /// @}
    /// @{
    /// Adds every tile box of another region (any tile size).
    void add(const TiledBox2di& region) { add(static_cast<const TiledBox2diInterface&>(region)); }
    void add(const TiledBox2diInterface& region);
    /// @}
    /// Adds each tile box of `region` mapped by m (Matrix2x3::Transform of a Box2di: the
    /// integer box covering the transformed corners).
    void addTransformedBox(const TiledBox2diInterface& region, const Matrix2x3& m);

    /// Keeps, in every tile, the box of its part inside `box`; an empty box empties the region.
    void intersect(const Box2di& box);
    /// @{
    /// Keeps, in every tile, the box of its part inside the other region (tile by tile over
    /// the receiver's tiles; any tile size).
    void intersect(const TiledBox2di& region) {
        intersect(static_cast<const TiledBox2diInterface&>(region));
    }
    void intersect(const TiledBox2diInterface& region);
    /// @}
    /// @{
    /// The receiver becomes a's region united with (intersected with) b's, in the receiver's
    /// own tile size. Either argument may be the receiver.
    void getUnion(const TiledBox2diInterface& a, const TiledBox2diInterface& b);
    void getIntersection(const TiledBox2diInterface& a, const TiledBox2diInterface& b);
    /// @}
    /// Empty again: no tile, all-zero total box; the tile size stays.
    void reset();

    /// @{
    /// The cell, the box's cells, or the other region's cells all lie in this region. As for
    /// Box2di, an empty argument is not contained.
    bool isContaining(int x, int y) const { return find(x, y).isContaining(x, y); }
    bool isContaining(const Point2di& p) const { return isContaining(p.x, p.y); }
    bool isContaining(const Box2di& box) const;
    bool isContaining(const TiledBox2di& region) const {
        return isContaining(static_cast<const TiledBox2diInterface&>(region));
    }
    bool isContaining(const TiledBox2diInterface& region) const;
    /// @}
    /// @{
    /// Some cell of the box or of the other region lies in this region.
    bool isIntersecting(const Box2di& box) const;
    bool isIntersecting(const TiledBox2di& region) const {
        return isIntersecting(static_cast<const TiledBox2diInterface&>(region));
    }
    bool isIntersecting(const TiledBox2diInterface& region) const;
    /// @}

    /// @{
    /// Same tile size, same total box and the same tile boxes.
    bool operator==(const TiledBox2di& o) const;
    bool operator!=(const TiledBox2di& o) const { return !(*this == o); }
    /// @}

    /// The table's key: tileX in the high 32 bits, tileY in the low ones.
    static std::uint64_t key(int tileX, int tileY) {
        return (std::uint64_t(std::uint32_t(tileX)) << 32) | std::uint32_t(tileY);
    }
    /// The table's hash: the key with tileX folded into the low half. The container reduces
    /// it modulo a prime, so every bit counts, and tiles of one neighbourhood land in nearby
    /// buckets (measured faster than both the plain key and a multiplicative mix).
    struct KeyHash {
        size_t operator()(std::uint64_t k) const noexcept { return size_t(k ^ (k >> 32)); }
    };
    /// The standard hashed container: 8 initial buckets, maximum load factor 1, entries in one
    /// list (whose order is the iteration order).
    using Table = std::unordered_map<std::uint64_t, Box2di, KeyHash>;

protected:
    /// The range of tiles holding the cells of `box`, by arithmetic shift (floors); the
    /// all-zero box for an empty one.
    Box2di convertToTileBox(const Box2di& box) const;

private:
    class Iterator;

    /// The entry of the tile holding cell (x, y), created empty when missing.
    Box2di& tile(int x, int y);
    /// The box of the tile holding cell (x, y), or the all-zero box.
    Box2di find(int x, int y) const { return findTileBox(x >> m_shift, y >> m_shift); }
    void recomputeTotal();

    Table m_table;
    int m_shift = 6;
    Box2di m_total;
};

} // namespace Math
