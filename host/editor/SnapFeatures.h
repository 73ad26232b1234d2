// The points and curves of one entity that object snaps go by.
#pragma once

#include "host/editor/CurvePieces.h"
#include "host/editor/DisplayIndex.h"
#include "host/editor/Drafting.h"
#include "host/editor/EntityParts.h"

#include <functional>
#include <vector>

namespace velmor {

/// Collects snap features near a pointer.
class SnapFeatures {
public:
    struct Spot {
        SnapBit kind;
        boundary::Point point;
    };
    struct Center { ///< of a curve that runs through the field
        boundary::Point point;
        double distance; ///< of the pointer from the curve
    };

    /// Field: the square around the pointer outside of which no spot is wanted. Modes: SnapBits.
    SnapFeatures(const Drawing &drawing, boundary::Point pointer, const Extents &field, int modes);
    /// Adds those of an entity, or of some segments of a polyline.
    void add(const DisplayIndex::Part &part);

    std::vector<Spot> spots;             ///< all in the field
    std::vector<Center> centers;         ///< not in the field
    std::vector<boundary::Piece> pieces; ///< those that meet the field; source numbers the calls of add

private:
    using Point = boundary::Point;
    using Vertex = AcDbPolyline::Vertex;
    bool wants(SnapBit kind) const { return (m_modes & kind) != 0; }
    void spot(SnapBit kind, Point p);
    void entity(const AcDbEntity &entity, const Affine &affine, int depth);
    void reference(const AcDbBlockReference &reference, const Affine &affine, int depth);
    void segment(Point a, Point b, double bulge, const Affine &affine);
    template <class Vertices>
    void path(const Vertices &vertices, std::size_t first, std::size_t count, const Affine &affine);
    /// centre + cos(t) u + sin(t) v in the world, from one parameter to a later one.
    void elliptic(Point center, Point u, Point v, double from, double to, bool hasEnds);
    void spline(const SplineEntity &spline, const Affine &affine);
    void middleOfCurve(const std::function<Point(double)> &at, double from, double to);

    const Drawing &m_drawing;
    Point m_pointer;
    Extents m_field;
    double m_reach;
    int m_modes;
    std::uint32_t m_source = 0;
    std::size_t m_left; ///< entities inside of references that are still looked at
    std::vector<const BlockRecord *> m_open;
};

} // namespace velmor
