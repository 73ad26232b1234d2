// Curves of every kind as vertices with bulges, for temporary drawing and hatch loops.
#pragma once

#include "host/drawing/Entities.h"

#include <optional>
#include <vector>

namespace velmor {

/// Where a counter-clockwise turn ends, as a number above start and at most a full turn away (angles and parameters in
/// radians): end itself when it lies there, else moved by full turns, so that equal ends mean a full turn.
double endOfTurn(double start, double end);

/// The same direction within a few turns of zero, where steps from it can still be told apart: start itself when it
/// lies there.
double startOfTurn(double start);

struct CurvePath {
    std::vector<AcDbPolyline::Vertex> vertices; ///< a closed path does not repeat its first vertex
    bool closed = false;
    bool operator==(const CurvePath &) const = default;
};

/// The curve in the plane: lines, arcs and circles exactly, polylines with their bulges, ellipses and splines as chords
/// no farther than tolerance from them. A path whose ends meet is closed. None for what is no curve, or for a curve
/// without a vertex.
/// REQUIRES: tolerance > 0, drawing units.
std::optional<CurvePath> curvePathOf(const AcDbEntity &entity, double tolerance);

/// Signed area with its arcs, positive when counter-clockwise; square drawing units.
double ringAreaOf(const std::vector<AcDbPolyline::Vertex> &ring);

} // namespace velmor
