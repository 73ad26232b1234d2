// How points that a person gives in the view are guided: object snaps, ortho, polar tracking.
#pragma once

#include "host/editor/Session.h"

#include <optional>

namespace velmor {

/// Bits of the host variable OSMODE.
enum SnapBit : int {
    kSnapEnd = 1,
    kSnapMiddle = 2,
    kSnapCenter = 4,
    kSnapNode = 8,
    kSnapQuadrant = 16,
    kSnapIntersection = 32,
    kSnapInsertion = 64,
    kSnapPerpendicular = 128,
    kSnapNearest = 512,
    kSnapSuppressed = 16384, ///< the other bits are kept and do nothing
};
/// Bits of the host variable AUTOSNAP.
enum AutoSnapBit : int { kAutoSnapMarker = 1, kAutoSnapTip = 2, kAutoSnapPolar = 8 };

struct Drafting {
    int snaps = 0;           ///< OSMODE
    bool ortho = false;      ///< ORTHOMODE; excludes polar
    bool polar = false;      ///< AUTOSNAP, bit 8
    bool markers = true;     ///< AUTOSNAP, bit 1
    bool tips = true;        ///< AUTOSNAP, bit 2
    double polarStep = 90.0; ///< POLARANG, degrees, above 0
    int aperture = 10;       ///< APERTURE: half of the width of the field in which snaps are looked for, pixels
    int pickBox = 6;         ///< PICKBOX: how far from an entity a click may be, pixels
    /// The snaps that work; 0 while they are suppressed.
    int activeSnaps() const { return (snaps & kSnapSuppressed) != 0 ? 0 : snaps; }
    bool operator==(const Drafting &) const = default;
};

/// From the session's host variables.
Drafting draftingOf(const Session &session);
/// Writes what differs to the host variables.
void setDrafting(Session &session, const Drafting &drafting);

/// The point that is meant by one given freely, seen from a base: with ortho the nearest one right, left, above or
/// below of the base; with polar tracking the nearest one on a ray at a multiple of the step when that is no farther
/// than reach (drawing units), else the point itself. Without a base, too.
AcGePoint3d guidedPoint(const AcGePoint3d &point, const std::optional<AcGePoint3d> &base, const Drafting &drafting,
                        double reach);

} // namespace velmor
