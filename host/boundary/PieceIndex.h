// Spatial index over pieces: a forest of packed box trees.
//
// Pieces are halved by place until eight are left, so that neighbours share cache lines; eight boxes make a block,
// eight blocks a parent, and no pointers are kept: 18 bytes a piece. A tree never changes: pieces that come later
// make a tree of their own, and small trees are merged into one, so that there are at most a logarithmic number.
#pragma once

#include "host/boundary/PieceGeometry.h"

#include <algorithm>
#include <limits>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace velmor::boundary::detail {

class PieceIndex {
public:
    /// Adds pieces; the numbers of pieces from the answer on may have changed.
    std::uint32_t insert(std::vector<Stored> added);
    /// Takes the piece out; numbers stay.
    void remove(std::uint32_t piece);

    const std::vector<Stored> &pieces() const { return m_pieces; }
    bool isRemoved(std::uint32_t piece) const { return m_removed.size() > piece && m_removed[piece]; }
    std::size_t size() const { return m_pieces.size() - m_removedCount; }
    std::size_t memoryBytes() const;
    /// Typical size of a piece.
    double spacing() const { return m_spacing; }
    /// Box of all pieces.
    Box bounds() const { return m_bounds; }

    /// Calls visit(piece number) for every piece whose box, possibly widened by rounding, meets the box.
    template <class Visit>
    void inBox(const Box &box, Visit visit) const
    {
        const Query q = query(box);
        for (const Tree &tree : m_trees)
            descend(
                tree, [&q](const Block &b, bool) { return b.meets(q); }, visit);
    }
    /// Calls visit for every piece that lies within the box, and for some that reach out of it by rounding.
    template <class Visit>
    void within(const Box &box, Visit visit) const
    {
        const double slack = 1e-6 * std::max({std::abs(box.x0 - m_originX), std::abs(box.x1 - m_originX),
                                              std::abs(box.y0 - m_originY), std::abs(box.y1 - m_originY)});
        const Query q = query({box.x0 - slack, box.y0 - slack, box.x1 + slack, box.y1 + slack});
        for (const Tree &tree : m_trees)
            descend(
                tree, [&q](const Block &b, bool isLeaf) { return isLeaf ? b.liesIn(q) : b.meets(q); }, visit);
    }
    /// The same for boxes that a straight strip from one point to another, pad wide to each side, may touch.
    template <class Visit>
    void alongLine(double ax, double ay, double bx, double by, double pad, Visit visit) const
    {
        const Query q =
            query({std::min(ax, bx) - pad, std::min(ay, by) - pad, std::max(ax, bx) + pad, std::max(ay, by) + pad});
        const double length = lengthOf(bx - ax, by - ay);
        const Strip strip{static_cast<float>((by - ay) / length), static_cast<float>((ax - bx) / length),
                          ((by - ay) * (ax - m_originX) - (bx - ax) * (ay - m_originY)) / length,
                          pad + 1e-5 * (std::abs(ax - m_originX) + std::abs(ay - m_originY) + length)};
        for (const Tree &tree : m_trees)
            descend(
                tree, [&](const Block &b, bool) { return b.meets(q) & b.meets(strip); }, visit);
    }

private:
    struct Query {
        float x0, y0, x1, y1;
    };
    struct Strip {
        float nx, ny; ///< unit normal
        double offset, halfWidth;
    };
    static constexpr unsigned kWide = 8;
    struct alignas(64) Block {
        float x0[kWide], y0[kWide], x1[kWide], y1[kWide];
        Block();
        /// Bits of the boxes that meet the query, that lie within it, that touch the strip.
        unsigned meets(const Query &q) const;
        unsigned liesIn(const Query &q) const;
        unsigned meets(const Strip &s) const;
        void set(unsigned i, const Query &box);
        Query hull() const;
    };
    struct Tree {
        std::uint32_t begin = 0, end = 0;   ///< its pieces
        std::vector<Block> blocks;          ///< level by level, pieces' boxes first, the root last
        std::vector<std::uint32_t> levelAt; ///< first block of each level
    };

    Query query(const Box &box) const;
    void build(std::uint32_t begin, std::uint32_t end);
    void sortPieces(std::uint32_t begin, std::uint32_t end);

    template <class Test, class Visit>
    void descend(const Tree &tree, Test test, Visit visit) const
    {
        struct Step {
            std::uint32_t level, block;
        };
        if (tree.levelAt.empty())
            return;
        Step stack[kWide * 12];
        unsigned depth = 0;
        stack[depth++] = {static_cast<std::uint32_t>(tree.levelAt.size() - 1), 0};
        while (depth > 0) {
            const Step at = stack[--depth];
            unsigned bits = test(tree.blocks[tree.levelAt[at.level] + at.block], at.level == 0);
            while (bits != 0) {
                const unsigned i = static_cast<unsigned>(__builtin_ctz(bits));
                bits &= bits - 1;
                if (at.level == 0) {
                    visit(tree.begin + at.block * kWide + i);
                } else {
                    stack[depth++] = {at.level - 1, at.block * kWide + i};
                    // All children are on their way from memory before the first of them is looked at.
                    const Block &child = tree.blocks[tree.levelAt[at.level - 1] + at.block * kWide + i];
                    __builtin_prefetch(child.x0);
                    __builtin_prefetch(child.x1);
                }
            }
        }
    }

    std::vector<Stored> m_pieces;
    std::vector<bool> m_removed;
    std::size_t m_removedCount = 0;
    std::vector<Tree> m_trees;
    double m_originX = 0.0, m_originY = 0.0; ///< boxes are kept from here, where singles are fine enough
    bool m_hasOrigin = false;
    double m_spacing = 1.0;
    Box m_bounds{0, 0, 0, 0};
};

inline unsigned PieceIndex::Block::meets(const Query &q) const
{
    unsigned bits = 0;
#if defined(__SSE2__)
    const __m128 qx0 = _mm_set1_ps(q.x0), qy0 = _mm_set1_ps(q.y0), qx1 = _mm_set1_ps(q.x1), qy1 = _mm_set1_ps(q.y1);
    for (unsigned i = 0; i < kWide; i += 4) {
        const __m128 x = _mm_and_ps(_mm_cmple_ps(_mm_load_ps(x0 + i), qx1), _mm_cmpge_ps(_mm_load_ps(x1 + i), qx0));
        const __m128 y = _mm_and_ps(_mm_cmple_ps(_mm_load_ps(y0 + i), qy1), _mm_cmpge_ps(_mm_load_ps(y1 + i), qy0));
        bits |= static_cast<unsigned>(_mm_movemask_ps(_mm_and_ps(x, y))) << i;
    }
#else
    for (unsigned i = 0; i < kWide; ++i)
        bits |= static_cast<unsigned>((x0[i] <= q.x1) & (x1[i] >= q.x0) & (y0[i] <= q.y1) & (y1[i] >= q.y0)) << i;
#endif
    return bits;
}

inline unsigned PieceIndex::Block::liesIn(const Query &q) const
{
    // An empty box reaches from plus to minus infinity: it must also begin within the query.
    unsigned bits = 0;
    for (unsigned i = 0; i < kWide; ++i) {
        bits |= static_cast<unsigned>((x0[i] >= q.x0) & (x0[i] <= q.x1) & (x1[i] <= q.x1) & (y0[i] >= q.y0) &
                                      (y1[i] <= q.y1))
                << i;
    }
    return bits;
}

inline PieceIndex::Query PieceIndex::query(const Box &box) const
{
    // Singles are off by 6e-8 of their size at most; twice that is taken off or added.
    const auto below = [](double v) {
        const auto f = static_cast<float>(v);
        return f - 1.2e-7F * std::abs(f);
    };
    const auto above = [](double v) {
        const auto f = static_cast<float>(v);
        return f + 1.2e-7F * std::abs(f);
    };
    return {below(box.x0 - m_originX), below(box.y0 - m_originY), above(box.x1 - m_originX), above(box.y1 - m_originY)};
}

} // namespace velmor::boundary::detail
