// Loose ends of linework, and what would join them.
#pragma once

#include "host/boundary/Arrangement.h"

namespace velmor::boundary::detail {

/// An end at which nothing goes on.
struct LooseEnd {
    double x, y;
    Vector ahead; ///< unit vector that the piece would go on in
    std::uint32_t piece;
};

/// All loose ends. The cost follows the number of pieces.
std::vector<LooseEnd> looseEnds(const PieceIndex &index, Arrangement &arrangement);

/// Straight pieces that join loose ends closer to each other than gapTolerance: each end with the nearest one, and ends
/// that have no such partner with the nearest linework more or less ahead of them.
std::vector<Piece> joints(const PieceIndex &index, Arrangement &arrangement, double gapTolerance);

} // namespace velmor::boundary::detail
