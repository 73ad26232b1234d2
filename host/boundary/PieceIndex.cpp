#include "host/boundary/PieceIndex.h"

#include <algorithm>
#include <cmath>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace velmor::boundary::detail {

namespace {

float below(double v)
{
    const float f = static_cast<float>(v);
    return static_cast<double>(f) > v ? std::nextafterf(f, -std::numeric_limits<float>::infinity()) : f;
}

float above(double v)
{
    const float f = static_cast<float>(v);
    return static_cast<double>(f) < v ? std::nextafterf(f, std::numeric_limits<float>::infinity()) : f;
}

/// Position along Hilbert's curve of order 32.
std::uint64_t hilbert(std::uint32_t x, std::uint32_t y)
{
    std::uint64_t key = 0;
    for (int bit = 31; bit >= 0; --bit) {
        const std::uint32_t rx = (x >> bit) & 1U, ry = (y >> bit) & 1U;
        key = (key << 2) | ((3U * rx) ^ ry);
        if (ry == 0) {
            if (rx == 1) {
                x = ~x;
                y = ~y;
            }
            std::swap(x, y);
        }
    }
    return key;
}

double middle(std::vector<double> &values)
{
    const auto mid = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), mid, values.end());
    return *mid;
}

} // namespace

PieceIndex::Block::Block()
{
    for (unsigned i = 0; i < kWide; ++i) {
        x0[i] = y0[i] = std::numeric_limits<float>::infinity();
        x1[i] = y1[i] = -std::numeric_limits<float>::infinity();
    }
}

void PieceIndex::Block::set(unsigned i, const Query &box)
{
    x0[i] = box.x0;
    y0[i] = box.y0;
    x1[i] = box.x1;
    y1[i] = box.y1;
}

PieceIndex::Query PieceIndex::Block::hull() const
{
    return {*std::min_element(x0, x0 + kWide), *std::min_element(y0, y0 + kWide), *std::max_element(x1, x1 + kWide),
            *std::max_element(y1, y1 + kWide)};
}

unsigned PieceIndex::Block::meets(const Query &q) const
{
#if defined(__SSE2__)
    unsigned bits = 0;
    const __m128 qx0 = _mm_set1_ps(q.x0), qy0 = _mm_set1_ps(q.y0), qx1 = _mm_set1_ps(q.x1), qy1 = _mm_set1_ps(q.y1);
    for (unsigned i = 0; i < kWide; i += 4) {
        const __m128 x = _mm_and_ps(_mm_cmple_ps(_mm_load_ps(x0 + i), qx1), _mm_cmpge_ps(_mm_load_ps(x1 + i), qx0));
        const __m128 y = _mm_and_ps(_mm_cmple_ps(_mm_load_ps(y0 + i), qy1), _mm_cmpge_ps(_mm_load_ps(y1 + i), qy0));
        bits |= static_cast<unsigned>(_mm_movemask_ps(_mm_and_ps(x, y))) << i;
    }
    return bits;
#else
    unsigned bits = 0;
    for (unsigned i = 0; i < kWide; ++i)
        bits |= static_cast<unsigned>((x0[i] <= q.x1) & (x1[i] >= q.x0) & (y0[i] <= q.y1) & (y1[i] >= q.y0)) << i;
    return bits;
#endif
}

unsigned PieceIndex::Block::meets(const Strip &s) const
{
    unsigned bits = 0;
    for (unsigned i = 0; i < kWide; ++i) {
        const double cx = 0.5 * (static_cast<double>(x0[i]) + x1[i]), cy = 0.5 * (static_cast<double>(y0[i]) + y1[i]);
        const double hx = x1[i] - cx, hy = y1[i] - cy;
        const double far = std::abs(s.nx * cx + s.ny * cy - s.offset);
        bits |= static_cast<unsigned>(far <= std::abs(s.nx) * hx + std::abs(s.ny) * hy + s.halfWidth) << i;
    }
    return bits;
}

PieceIndex::Query PieceIndex::query(const Box &box) const
{
    return {below(box.x0 - m_originX), below(box.y0 - m_originY), above(box.x1 - m_originX), above(box.y1 - m_originY)};
}

std::uint32_t PieceIndex::insert(std::vector<Stored> added)
{
    if (added.empty())
        return static_cast<std::uint32_t>(m_pieces.size());
    if (!m_hasOrigin) {
        // The middle piece, not the middle of the extents: a stray entity far away must not cost precision.
        std::vector<double> values;
        const std::size_t step = added.size() / 4096 + 1;
        for (std::size_t i = 0; i < added.size(); i += step)
            values.push_back(added[i].ax);
        m_originX = middle(values);
        values.clear();
        for (std::size_t i = 0; i < added.size(); i += step)
            values.push_back(added[i].ay);
        m_originY = middle(values);
        m_hasOrigin = true;
        m_bounds = boxOf(added.front());
    }
    for (const Stored &piece : added) {
        const Box box = boxOf(piece);
        m_bounds = {std::min(m_bounds.x0, box.x0), std::min(m_bounds.y0, box.y0), std::max(m_bounds.x1, box.x1),
                    std::max(m_bounds.y1, box.y1)};
    }
    std::uint32_t begin = static_cast<std::uint32_t>(m_pieces.size());
    if (m_pieces.empty())
        m_pieces = std::move(added);
    else
        m_pieces.insert(m_pieces.end(), added.begin(), added.end());
    const auto end = static_cast<std::uint32_t>(m_pieces.size());
    while (!m_trees.empty() && m_trees.back().end - m_trees.back().begin <= 2 * (end - begin)) {
        begin = m_trees.back().begin;
        m_trees.pop_back();
    }
    if (m_removedCount > 0) {
        // What is merged anew leaves its removed pieces behind.
        std::uint32_t to = begin;
        for (std::uint32_t i = begin; i < end; ++i) {
            if (isRemoved(i))
                --m_removedCount;
            else
                m_pieces[to++] = m_pieces[i];
        }
        m_pieces.resize(to);
        m_removed.resize(std::min<std::size_t>(m_removed.size(), begin));
    }
    build(begin, static_cast<std::uint32_t>(m_pieces.size()));
    return begin;
}

void PieceIndex::remove(std::uint32_t piece)
{
    if (isRemoved(piece))
        return;
    if (m_removed.size() < m_pieces.size())
        m_removed.resize(m_pieces.size());
    m_removed[piece] = true;
    ++m_removedCount;
    for (Tree &tree : m_trees) {
        if (piece < tree.begin || piece >= tree.end)
            continue;
        const float inf = std::numeric_limits<float>::infinity();
        const std::uint32_t i = piece - tree.begin;
        tree.blocks[i / kWide].set(i % kWide, {inf, inf, -inf, -inf});
    }
}

void PieceIndex::sortPieces(std::uint32_t begin, std::uint32_t end)
{
    const std::uint32_t n = end - begin;
    // The curve runs over the part where most pieces lie; what is farther out is drawn to its edge.
    std::vector<double> xs, ys, sizes;
    const std::uint32_t step = n / 4096 + 1;
    for (std::uint32_t i = begin; i < end; i += step) {
        const Stored &p = m_pieces[i];
        xs.push_back((p.ax + p.bx) * 0.5);
        ys.push_back((p.ay + p.by) * 0.5);
        sizes.push_back(std::max(std::abs(p.bx - p.ax), std::abs(p.by - p.ay)));
    }
    const double typical = middle(sizes);
    std::sort(xs.begin(), xs.end());
    std::sort(ys.begin(), ys.end());
    const std::size_t cutOff = xs.size() / 50;
    const double spanX = xs[xs.size() - 1 - cutOff] - xs[cutOff], spanY = ys[ys.size() - 1 - cutOff] - ys[cutOff];
    const double span = std::max({spanX, spanY, 1e-300});
    const double left = xs[cutOff] - span, down = ys[cutOff] - span, scale = 4294967295.0 / (3.0 * span);
    if (begin == 0) // the eldest tree holds most pieces
        m_spacing = std::max(typical, span / std::sqrt(static_cast<double>(n)));

    struct Key {
        std::uint64_t place;
        std::uint32_t piece;
        std::uint32_t sizeClass;
    };
    std::vector<Key> keys(n);
    for (std::uint32_t i = 0; i < n; ++i) {
        const Stored &p = m_pieces[begin + i];
        const double x = std::clamp(((p.ax + p.bx) * 0.5 - left) * scale, 0.0, 4294967295.0);
        const double y = std::clamp(((p.ay + p.by) * 0.5 - down) * scale, 0.0, 4294967295.0);
        // Long pieces stand by themselves, so that they don't widen the boxes of short ones.
        const double size = std::max(std::abs(p.bx - p.ax), std::abs(p.by - p.ay));
        std::uint32_t sizeClass = 0;
        for (double limit = 16.0 * typical; size > limit && sizeClass < 4; limit *= 8.0)
            ++sizeClass;
        keys[i] = {hilbert(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y)), i, sizeClass};
    }
    std::sort(keys.begin(), keys.end(), [](const Key &a, const Key &b) {
        return a.sizeClass != b.sizeClass ? a.sizeClass < b.sizeClass
               : a.place != b.place       ? a.place < b.place
                                          : a.piece < b.piece;
    });
    // Follow the cycles of the order, so that no second copy of the pieces is needed.
    for (std::uint32_t i = 0; i < n; ++i) {
        if (keys[i].piece == i)
            continue;
        const Stored first = m_pieces[begin + i];
        std::uint32_t at = i;
        while (keys[at].piece != i) {
            const std::uint32_t from = keys[at].piece;
            m_pieces[begin + at] = m_pieces[begin + from];
            keys[at].piece = at;
            at = from;
        }
        m_pieces[begin + at] = first;
        keys[at].piece = at;
    }
}

void PieceIndex::build(std::uint32_t begin, std::uint32_t end)
{
    if (begin == end)
        return;
    sortPieces(begin, end);
    Tree tree;
    tree.begin = begin;
    tree.end = end;
    std::uint32_t count = (end - begin + kWide - 1) / kWide, total = 0;
    for (std::uint32_t c = count;; c = (c + kWide - 1) / kWide) {
        tree.levelAt.push_back(total);
        total += c;
        if (c == 1)
            break;
    }
    tree.blocks.resize(total);
    for (std::uint32_t i = 0; i < end - begin; ++i)
        tree.blocks[i / kWide].set(i % kWide, query(boxOf(m_pieces[begin + i])));
    for (std::size_t level = 1; level < tree.levelAt.size(); ++level) {
        for (std::uint32_t i = 0; i < count; ++i) {
            tree.blocks[tree.levelAt[level] + i / kWide].set(i % kWide,
                                                             tree.blocks[tree.levelAt[level - 1] + i].hull());
        }
        count = (count + kWide - 1) / kWide;
    }
    m_trees.push_back(std::move(tree));
}

std::size_t PieceIndex::memoryBytes() const
{
    std::size_t bytes = m_pieces.capacity() * sizeof(Stored) + m_removed.capacity() / 8;
    for (const Tree &tree : m_trees)
        bytes += tree.blocks.capacity() * sizeof(Block);
    return bytes;
}

} // namespace velmor::boundary::detail
