// Closed walks along faces, each walked once and remembered, and the rings in them.
#pragma once

#include "host/boundary/Arrangement.h"

#include <deque>
#include <functional>

namespace velmor::boundary::detail {

/// The walk along one side of connected linework: the outer outline of a face, seen from inside, or the outline of a
/// connected part, seen from the face around it.
struct Outline {
    static constexpr std::uint32_t kUnknown = 0xffffffffU;
    static constexpr std::uint32_t kOutside = 0; ///< the unbounded face

    bool isFace = false;
    bool isPart = false;     ///< the walk was left where it was seen to be outside: no rings, not all loose ends
    Ring outer;              ///< of a face
    std::vector<Ring> holes; ///< rings that the walk goes round the other way; counter-clockwise here
    double rightX = 0.0, rightY = 0.0; ///< rightmost point
    std::vector<HalfEdge> looseEnds;   ///< each ends in one
    std::uint32_t around = kUnknown;   ///< for a part: the outline of the face around it
    bool islandsKnown = false;
    std::vector<Ring> islands; ///< of a face: what lies inside without touching it
};

class Outlines {
public:
    /// Whether the face of outline `number` at a node, looked at in a direction, is seen to be the unbounded one.
    using Outlook = std::function<bool(std::uint32_t number, std::uint32_t node, const Vector &direction)>;

    Outlines(Arrangement &arrangement, Outlook outlook) : m_arrangement(arrangement), m_outlook(std::move(outlook)) {}
    void reset();

    /// Number of the outline of the face to the left; walks it when nobody did.
    std::uint32_t of(HalfEdge h);
    Outline &operator[](std::uint32_t number) { return m_outlines[number - 1]; }

    std::size_t memoryBytes() const;

private:
    std::uint32_t walk(HalfEdge h);
    bool looksOutside(std::uint32_t number) const;
    void cutRings(Outline &outline);
    void makeRing(const HalfEdge *begin, const HalfEdge *end, Ring &ring);

    Arrangement &m_arrangement;
    Outlook m_outlook;
    std::deque<Outline> m_outlines;
    // Working space of a walk.
    std::vector<HalfEdge> m_path, m_stack;
    std::vector<char> m_keep;
    std::vector<HalfEdge> m_loops;
    std::vector<std::size_t> m_loopAt;
};

} // namespace velmor::boundary::detail
