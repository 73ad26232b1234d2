// The hatches of marks as a view shows them.
#pragma once

#include "host/drawing/HatchPattern.h"
#include "host/drawing/Transient.h"

#include <string>
#include <vector>

namespace velmor {

/// Extents of rings with their bulges; never too small.
Extents boxOf(const std::vector<TransientRing> &rings);

/// The lines of marks for one view. Marks that come one after the other with the same pattern, which is how a dialog
/// sets them, share its families.
class MarkHatches {
public:
    /// visible: the part of the world that is shown; pixelsPerUnit: of the image.
    MarkHatches(const Extents &visible, double pixelsPerUnit);
    /// Whether a pattern without lines fills its area. A mark without a pattern's name is an outline only.
    bool isFilled(const TransientMark &mark);
    std::vector<PatternLine> linesOf(const TransientMark &mark);

private:
    void take(const TransientMark &mark);

    PatternView m_view;
    bool m_isKnown = false; ///< the families are those of the values below
    std::wstring m_pattern;
    double m_angle = 0.0, m_scale = 0.0;
    std::vector<HatchFamily> m_families;
};

} // namespace velmor
