// Turns the entities of a drawing into straight pieces and arcs, as the region search takes them.
//
// Lines, arcs, circles and all polylines come over exactly. Ellipses, splines and whatever a block reference scales
// unevenly become chains of arcs that keep the curve's tangents and stay within kCurveTolerance of the curve's size.
#pragma once

#include "host/boundary/Regions.h"
#include "host/drawing/Drawing.h"

#include <functional>
#include <vector>

namespace velmor {

/// Greatest distance between a curve and its chain of arcs, as a fraction of the curve's extents.
inline constexpr double kCurveTolerance = 1e-7;

/// Placement in the plane: x' = a x + c y + tx, y' = b x + d y + ty.
struct Affine {
    double a = 1.0, b = 0.0, c = 0.0, d = 1.0, tx = 0.0, ty = 0.0;
    boundary::Point apply(double x, double y) const { return {a * x + c * y + tx, b * x + d * y + ty}; }
    boundary::Point applyVector(double x, double y) const { return {a * x + c * y, b * x + d * y}; }
    /// First inner, then this.
    Affine operator*(const Affine &inner) const;
    bool isIdentity() const { return a == 1.0 && b == 0.0 && c == 0.0 && d == 1.0 && tx == 0.0 && ty == 0.0; }
    /// Circles stay circles (turned, moved, mirrored or scaled evenly).
    bool keepsCircles() const;
    bool mirrors() const { return a * d - b * c < 0.0; }
};

/// Where the contents of a reference's definition go, for one column and row of it.
Affine placementOf(const AcDbBlockReference &reference, const AcGePoint3d &basePoint, int column, int row);

class PieceMaker {
public:
    /// Says whether what stands on a layer (by its index) counts; called once for each entity inside blocks.
    using LayerFilter = std::function<bool(std::size_t layer)>;

    /// Nested references can stand for any number of entities; what goes beyond this number of entities, places and
    /// pieces inside of references is left out.
    static constexpr std::size_t kMostNested = 10'000'000;

    PieceMaker(const Drawing &drawing, LayerFilter filter, std::size_t mostNested = kMostNested);

    /// Whether entities of that kind can bound a region.
    static bool isLinework(const AcDbEntity &entity);
    /// Appends the pieces of an entity of model space, contents of block references included. The entity's own layer
    /// is not tested. What is on layer "0" inside a block stands on the layer of its reference.
    void append(const AcDbEntity &entity, std::uint32_t source, std::vector<boundary::Piece> &pieces) const;

private:
    struct Placed;
    void appendPlaced(const AcDbEntity &entity, const Placed &placed, std::vector<boundary::Piece> &pieces) const;
    void appendReference(const AcDbBlockReference &reference, const Placed &placed,
                         std::vector<boundary::Piece> &pieces) const;

    LayerFilter m_filter;
    std::size_t m_layerZero;
    mutable std::size_t m_left; ///< of mostNested
};

} // namespace velmor
