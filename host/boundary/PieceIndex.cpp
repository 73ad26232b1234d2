#include "host/boundary/PieceIndex.h"

#include <algorithm>
#include <cmath>

namespace velmor::boundary::detail {

namespace {

struct Centre {
    float x, y;
    std::uint32_t piece;
};

/// Orders centres so that the pieces of each block, and the blocks of each block above, lie together: halves a range
/// across its longer side, at the multiple of the highest power of a block's width nearest to its middle.
void arrange(std::vector<Centre> &centres, std::size_t begin, std::size_t end, std::size_t width)
{
    std::size_t cutAt = 0;
    for (std::size_t u = width; u < end; u *= width) {
        const std::size_t first = (begin / u + 1) * u;
        if (first >= end)
            break;
        const std::size_t last = (end - 1) / u * u;
        cutAt = first + (last - first) / u / 2 * u;
    }
    if (cutAt == 0)
        return;
    float x0 = centres[begin].x, x1 = x0, y0 = centres[begin].y, y1 = y0;
    for (std::size_t i = begin; i < end; ++i) {
        x0 = std::min(x0, centres[i].x);
        x1 = std::max(x1, centres[i].x);
        y0 = std::min(y0, centres[i].y);
        y1 = std::max(y1, centres[i].y);
    }
    const auto at = [&centres](std::size_t i) { return centres.begin() + static_cast<std::ptrdiff_t>(i); };
    if (x1 - x0 > y1 - y0)
        std::nth_element(at(begin), at(cutAt), at(end), [](const Centre &a, const Centre &b) { return a.x < b.x; });
    else
        std::nth_element(at(begin), at(cutAt), at(end), [](const Centre &a, const Centre &b) { return a.y < b.y; });
    arrange(centres, begin, cutAt, width);
    arrange(centres, cutAt, end, width);
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
    if (begin == 0) { // the eldest tree holds most pieces
        std::vector<double> sizes;
        for (std::uint32_t i = begin; i < end; i += n / 4096 + 1)
            sizes.push_back(
                std::max(std::abs(m_pieces[i].bx - m_pieces[i].ax), std::abs(m_pieces[i].by - m_pieces[i].ay)));
        m_spacing = middle(sizes);
    }
    std::vector<Centre> centres(n);
    for (std::uint32_t i = 0; i < n; ++i) {
        const Stored &p = m_pieces[begin + i];
        centres[i] = {static_cast<float>((p.ax + p.bx) * 0.5 - m_originX),
                      static_cast<float>((p.ay + p.by) * 0.5 - m_originY), i};
    }
    arrange(centres, 0, n, kWide);
    // Follow the cycles of the order, so that no second copy of the pieces is needed.
    for (std::uint32_t i = 0; i < n; ++i) {
        if (centres[i].piece == i)
            continue;
        const Stored first = m_pieces[begin + i];
        std::uint32_t at = i;
        while (centres[at].piece != i) {
            const std::uint32_t from = centres[at].piece;
            m_pieces[begin + at] = m_pieces[begin + from];
            centres[at].piece = at;
            at = from;
        }
        m_pieces[begin + at] = first;
        centres[at].piece = at;
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
