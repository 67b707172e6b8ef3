// The tiled region interface's generic operations and the hashed TiledBox2di.
#include <PlumvaleBaseCore/math/TiledBox2di.h>

#include <algorithm>
#include <cstdio>

namespace Math {

namespace {

// Floor division, for tile indices of any tile size.
int floorDiv(int v, int size) {
    const int q = v / size;
    return (v % size != 0 && v < 0) ? q - 1 : q;
}

// The tiles of `region` holding the cells of `cells` (not empty), by floor division.
Box2di tilesCovering(const TiledBox2diInterface& region, const Box2di& cells) {
    const int size = region.tileSize();
    const int x0 = floorDiv(cells.x1(), size), y0 = floorDiv(cells.y1(), size);
    const int x1 = floorDiv(cells.x2() - 1, size), y1 = floorDiv(cells.y2() - 1, size);
    return Box2di(x0, y0, x1 - x0 + 1, y1 - y0 + 1);
}

// The bounding box of the cells of `region` inside `cells`.
Box2di partInside(const TiledBox2diInterface& region, const Box2di& cells) {
    const Box2di tiles = tilesCovering(region, cells);
    Box2di part;
    for (int ty = tiles.y1(); ty < tiles.y2(); ++ty)
        for (int tx = tiles.x1(); tx < tiles.x2(); ++tx)
            part.add(region.findTileBox(tx, ty).getIntersection(cells));
    return part;
}

} // namespace

// --- TiledBox2diInterface ---

TiledBox2diInterface::abstract_const_iterator::~abstract_const_iterator() = default;
TiledBox2diInterface::~TiledBox2diInterface() = default;

Box2di TiledBox2diInterface::convertToTileBox(const Box2di& box) const {
    if (box.hasNullArea()) return Box2di();
    const int size = tileSize();
    const int x0 = box.x1() / size, y0 = box.y1() / size;
    const int x1 = (box.x2() - 1) / size, y1 = (box.y2() - 1) / size;
    return Box2di(x0, y0, x1 - x0 + 1, y1 - y0 + 1);
}

Box2di TiledBox2diInterface::convertToTileCanvas(int tileX, int tileY) const {
    const int size = tileSize();
    return Box2di(tileX * size, tileY * size, size, size);
}

void TiledBox2diInterface::print(const char* label) const {
    std::printf("----- %s\n", label ? label : "");
    const Box2di range = convertToTileBox(totalBox());
    for (int ty = range.y1(); ty < range.y2(); ++ty) {
        for (int tx = range.x1(); tx < range.x2(); ++tx)
            std::printf("          %5d     ", findTileBox(tx, ty).y1());
        std::printf("\n");
        for (int tx = range.x1(); tx < range.x2(); ++tx) {
            const Box2di b = findTileBox(tx, ty);
            std::printf("     %5d     %5d", b.x1(), b.x2());
        }
        std::printf("\n");
        for (int tx = range.x1(); tx < range.x2(); ++tx)
            std::printf("          %5d     ", findTileBox(tx, ty).y2());
        std::printf("\n\n");
    }
    std::fflush(stdout);
}

// --- TiledBox2di ---

class TiledBox2di::Iterator : public TiledBox2diInterface::abstract_const_iterator {
public:
    Iterator(const Table* table, Table::const_iterator at) : m_table(table), m_at(at) {}
    void advance() override { ++m_at; }
    const Box2di& box() const override { return m_at->second; }
    bool equals(const abstract_const_iterator& other) const override {
        const auto* o = dynamic_cast<const Iterator*>(&other);
        return o && o->m_table == m_table && o->m_at == m_at;
    }
    int tileX() const override { return int(std::uint32_t(m_at->first >> 32)); }
    int tileY() const override { return int(std::uint32_t(m_at->first)); }
    abstract_const_iterator* clone() const override { return new Iterator(*this); }

private:
    const Table* m_table;
    Table::const_iterator m_at;
};

TiledBox2di::TiledBox2di(int requestedTileSize) : m_table(8) {
    m_table.max_load_factor(1.0f);
    const int size = requestedTileSize > 16 ? requestedTileSize : 16;
    m_shift = 4;
    while (m_shift < 30 && (2 << m_shift) <= size)
        ++m_shift;
}

TiledBox2di::~TiledBox2di() = default;

Box2di TiledBox2di::findTileBox(int tileX, int tileY) const {
    const auto it = m_table.find(key(tileX, tileY));
    return it == m_table.end() ? Box2di() : it->second;
}

TiledBox2diInterface::const_iterator TiledBox2di::begin() const {
    return const_iterator(new Iterator(&m_table, m_table.begin()));
}

TiledBox2diInterface::const_iterator TiledBox2di::end() const {
    return const_iterator(new Iterator(&m_table, m_table.end()));
}

Box2di TiledBox2di::convertToTileBox(const Box2di& box) const {
    if (box.hasNullArea()) return Box2di();
    const int x0 = box.x1() >> m_shift, y0 = box.y1() >> m_shift;
    const int x1 = (box.x2() - 1) >> m_shift, y1 = (box.y2() - 1) >> m_shift;
    return Box2di(x0, y0, x1 - x0 + 1, y1 - y0 + 1);
}

Box2di& TiledBox2di::tile(int x, int y) {
    return m_table.try_emplace(key(x >> m_shift, y >> m_shift)).first->second;
}

void TiledBox2di::add(const Box2di& box) {
    if (box.hasNullArea()) return;
    m_total.add(box);
    const Box2di tiles = convertToTileBox(box);
    const int size = tileSize();
    // Every tile of the range overlaps the box, so (entry union box) within the tile is the
    // union of the entry and the box's part inside the tile, computed here without calls.
    for (int ty = tiles.y1(); ty < tiles.y2(); ++ty) {
        const int y = ty * size; // a multiplication: shifting a negative value is undefined
        const int y1 = std::max(box.y1(), y), y2 = std::min(box.y2(), y + size);
        for (int tx = tiles.x1(); tx < tiles.x2(); ++tx) {
            const int x = tx * size;
            const int x1 = std::max(box.x1(), x), x2 = std::min(box.x2(), x + size);
            Box2di& entry = tile(x, y);
            if (entry.hasNullArea()) {
                entry = Box2di(x1, y1, x2 - x1, y2 - y1);
            } else {
                const int ex = std::min(entry.x1(), x1), ey = std::min(entry.y1(), y1);
                entry =
                    Box2di(ex, ey, std::max(entry.x2(), x2) - ex, std::max(entry.y2(), y2) - ey);
            }
        }
    }
}

void TiledBox2di::add(const TiledBox2diInterface& region) {
    if (&region == this) return;
    for (auto it = region.begin(), last = region.end(); it != last; ++it)
        add(*it);
}

void TiledBox2di::addTransformedBox(const TiledBox2diInterface& region, const Matrix2x3& m) {
    if (&region == this) {
        const TiledBox2di copy(*this);
        addTransformedBox(copy, m);
        return;
    }
    for (auto it = region.begin(), last = region.end(); it != last; ++it)
        add(m.Transform(*it));
}

void TiledBox2di::recomputeTotal() {
    m_total = Box2di();
    for (const auto& entry : m_table)
        m_total.add(entry.second);
}

void TiledBox2di::intersect(const Box2di& box) {
    for (auto it = m_table.begin(); it != m_table.end();) {
        it->second.intersect(box);
        it = it->second.hasNullArea() ? m_table.erase(it) : std::next(it);
    }
    recomputeTotal();
}

void TiledBox2di::intersect(const TiledBox2diInterface& region) {
    if (&region == this) return;
    for (auto it = m_table.begin(); it != m_table.end();) {
        it->second = partInside(region, it->second);
        it = it->second.hasNullArea() ? m_table.erase(it) : std::next(it);
    }
    recomputeTotal();
}

void TiledBox2di::getUnion(const TiledBox2diInterface& a, const TiledBox2diInterface& b) {
    TiledBox2di result(tileSize());
    result.add(a);
    result.add(b);
    *this = std::move(result);
}

void TiledBox2di::getIntersection(const TiledBox2diInterface& a, const TiledBox2diInterface& b) {
    TiledBox2di result(tileSize());
    result.add(a);
    result.intersect(b);
    *this = std::move(result);
}

void TiledBox2di::reset() {
    m_table.clear();
    m_total = Box2di();
}

bool TiledBox2di::isContaining(const Box2di& box) const {
    if (box.hasNullArea()) return false;
    const Box2di tiles = convertToTileBox(box);
    for (int ty = tiles.y1(); ty < tiles.y2(); ++ty)
        for (int tx = tiles.x1(); tx < tiles.x2(); ++tx)
            if (!findTileBox(tx, ty).isContaining(box.getIntersection(convertToTileCanvas(tx, ty))))
                return false;
    return true;
}

bool TiledBox2di::isContaining(const TiledBox2diInterface& region) const {
    if (region.isEmpty()) return false;
    for (auto it = region.begin(), last = region.end(); it != last; ++it)
        if (!isContaining(*it)) return false;
    return true;
}

bool TiledBox2di::isIntersecting(const Box2di& box) const {
    if (box.hasNullArea() || !m_total.isIntersecting(box)) return false;
    const Box2di tiles = convertToTileBox(box.getIntersection(m_total));
    // Walk whichever is smaller: the box's tiles or the stored ones.
    if (std::int64_t(tiles.width()) * tiles.height() > std::int64_t(m_table.size())) {
        for (const auto& entry : m_table)
            if (entry.second.isIntersecting(box)) return true;
        return false;
    }
    for (int ty = tiles.y1(); ty < tiles.y2(); ++ty)
        for (int tx = tiles.x1(); tx < tiles.x2(); ++tx)
            if (findTileBox(tx, ty).isIntersecting(box)) return true;
    return false;
}

bool TiledBox2di::isIntersecting(const TiledBox2diInterface& region) const {
    for (const auto& entry : m_table)
        if (!partInside(region, entry.second).hasNullArea()) return true;
    return false;
}

bool TiledBox2di::operator==(const TiledBox2di& o) const {
    if (m_shift != o.m_shift || m_total != o.m_total || m_table.size() != o.m_table.size())
        return false;
    for (const auto& entry : m_table) {
        const auto it = o.m_table.find(entry.first);
        if (it == o.m_table.end() || it->second != entry.second) return false;
    }
    return true;
}

} // namespace Math
