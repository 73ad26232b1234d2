// The plane arrangement of all pieces, made only where somebody walks.
//
// A piece that is reached gets its list of nodes: the points in which other pieces meet it, sorted along it. Both are
// remembered until the linework changes. Between neighbouring nodes of a list lies an edge, and each of its two
// directions is a half-edge with the face on its left. Coincident edges of several pieces count as one: the half-edges
// that this class hands out are always those of the piece that comes first in canonical order.
#pragma once

#include "host/boundary/PieceIndex.h"

#include <utility>

namespace velmor::boundary::detail {

/// Half-edge: twice the slot of its edge, plus 1 when it runs against the piece.
using HalfEdge = std::uint32_t;
constexpr HalfEdge kNoHalfEdge = 0xffffffffU;
inline HalfEdge twin(HalfEdge h)
{
    return h ^ 1U;
}

class Arrangement {
public:
    explicit Arrangement(const PieceIndex &index) : m_index(index) {}

    /// Forgets everything; to be called when pieces came or went. The tolerance is in drawing units.
    void reset(double tolerance);
    double tolerance() const { return m_tolerance; }

    struct Node {
        double x, y;
        std::uint32_t mark; ///< for the walk: free use
        std::uint32_t starAt;
        std::uint32_t starCount;
        std::uint32_t nextInCell;
    };
    std::vector<Node> &nodes() { return m_nodes; }
    std::uint32_t startNode(HalfEdge h) const { return m_slots[(h >> 1) + (h & 1U)].node; }
    std::uint32_t endNode(HalfEdge h) const { return m_slots[(h >> 1) + (~h & 1U)].node; }
    std::uint32_t pieceOf(HalfEdge h) const { return m_slots[h >> 1].piece; }
    Curve curve(HalfEdge h) const;

    /// Number of the outline that a half-edge belongs to; 0 before it was walked.
    std::uint32_t &outlineOf(HalfEdge h) { return m_slots[h >> 1].outline[h & 1U]; }
    /// The outlines that a piece takes part in, if it was reached: calls visit(outline number).
    template <class Visit>
    void outlinesOfPiece(std::uint32_t piece, Visit visit) const
    {
        if (piece >= m_listOf.size() || m_listOf[piece] == 0)
            return;
        const List &l = m_lists[m_listOf[piece] - 1];
        for (std::uint32_t s = l.first; s + 1 < l.first + l.count; ++s) {
            visit(m_slots[s].outline[0]);
            visit(m_slots[s].outline[1]);
        }
    }

    /// The same for every half-edge that coincides with the piece, and reaches the piece for it.
    template <class Visit>
    void outlinesAlongPiece(std::uint32_t piece, Visit visit)
    {
        const List l = list(piece);
        for (std::uint32_t s = l.first; s + 1 < l.first + l.count; ++s) {
            visit(outlineOf(representative(s << 1)));
            visit(outlineOf(representative((s << 1) | 1U)));
        }
    }

    /// The half-edge that follows on the outline of the face to the left; its twin at a loose end.
    HalfEdge next(HalfEdge h);
    /// The half-edge that leaves the node with the direction (from the node) just to its left.
    HalfEdge leaving(std::uint32_t node, Vector direction, double reach);
    /// The half-edge of the piece at the point on it, with (fromX, fromY) on its left. Nothing lies between both
    /// points.
    HalfEdge facing(std::uint32_t piece, double x, double y, double fromX, double fromY);
    /// Whether nothing goes on where the piece ends (or starts, at a); coincident pieces count once.
    bool endsLoose(std::uint32_t piece, bool atA);
    /// Whether some piece runs from the first half-edge to the following second one without an end between them.
    bool runsThrough(HalfEdge first, HalfEdge second);
    /// Whether a piece as it was given ends at the node, and not just a part that an arc was cut into.
    bool isVertex(std::uint32_t node) const;

    std::size_t memoryBytes() const;

private:
    struct Slot {
        double along; ///< from the middle of the piece's chord
        std::uint32_t node;
        std::uint32_t piece;
        std::uint32_t outline[2];
    };
    struct List {
        std::uint32_t piece, first, count;
    };
    struct Leaf { ///< an edge as seen from a node
        HalfEdge half;
        std::uint32_t endNode;
        Curve curve;
        Vector tangent;
    };
    struct Meeting {
        double along, x, y;
    };

    List list(std::uint32_t piece);
    void collectNear(const Stored &piece, std::uint32_t number);
    std::uint32_t nodeAt(double x, double y, std::uint32_t piece);
    std::uint32_t findNode(double x, double y) const;
    Vector settledPlace(double x, double y, const std::vector<std::uint32_t> &near) const;
    void growCells();
    double cell(double coordinate) const;
    std::size_t cellOf(double column, double row) const;
    /// The half-edges of the piece that leave the node, forward and backward; kNoHalfEdge where there is none.
    std::pair<HalfEdge, HalfEdge> halvesAt(std::uint32_t piece, std::uint32_t node);
    HalfEdge quickNext(HalfEdge h);
    bool isEndAt(const Stored &piece, const Node &node) const;
    bool standsAlone(HalfEdge h) const;
    bool mayRunThrough(std::uint32_t node, const Vector &direction) const;
    Leaf leaf(HalfEdge h) const;
    void collectLeaves(std::uint32_t node);
    bool coincide(const Leaf &a, const Leaf &b) const;
    double turn(const Leaf &a, const Leaf &b) const;
    HalfEdge firstClockwise(const Leaf &from, bool fromIsEdge);
    HalfEdge representative(HalfEdge h);
    bool comesFirst(HalfEdge a, HalfEdge b) const;

    const PieceIndex &m_index;
    double m_tolerance = 0.0, m_perCell = 1.0;
    std::vector<std::uint32_t> m_listOf; ///< list + 1 of each piece, 0 when not reached
    std::vector<List> m_lists;
    std::vector<Slot> m_slots;
    std::vector<Node> m_nodes;
    std::vector<std::uint32_t> m_stars;
    std::vector<std::uint32_t> m_cells; ///< hash of node places: first node + 1
    // Working space of single calls.
    std::vector<std::uint32_t> m_near, m_nearNode, m_nodeRun;
    std::vector<Meeting> m_meetings;
    std::vector<Leaf> m_leaves;
};

} // namespace velmor::boundary::detail
