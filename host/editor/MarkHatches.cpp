#include "host/editor/MarkHatches.h"

#include <cmath>

namespace velmor {

namespace {

/// Image pixels between lines; nearer ones run into a plain surface.
constexpr double kDensestLines = 3.0;

} // namespace

Extents boxOf(const std::vector<TransientRing> &rings)
{
    Extents box;
    for (const TransientRing &ring : rings)
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const auto &a = ring[i], &b = ring[(i + 1) % ring.size()];
            Extents side;
            side.add(a.x, a.y);
            if (a.bulge != 0.0) {
                side.add(b.x, b.y);
                // No point of an arc is farther from its chord than its height, nor from its ends than its diameter.
                const double chord = std::hypot(b.x - a.x, b.y - a.y), bulge = std::abs(a.bulge);
                side.grow(bulge <= 1.0 ? chord * bulge / 2.0 : chord * (bulge + 1.0 / bulge) / 2.0);
            }
            box.add(side);
        }
    return box;
}

MarkHatches::MarkHatches(const Extents &visible, double pixelsPerUnit)
    : m_view{.part = visible, .finest = kDensestLines / pixelsPerUnit}
{
}

void MarkHatches::take(const TransientMark &mark)
{
    if (m_isKnown && m_pattern == mark.pattern && m_angle == mark.angle && m_scale == mark.scale)
        return;
    m_isKnown = true;
    m_pattern = mark.pattern;
    m_angle = mark.angle;
    m_scale = mark.scale;
    m_families = hatchFamilies(m_pattern, m_angle, m_scale);
}

bool MarkHatches::isFilled(const TransientMark &mark)
{
    take(mark);
    return m_families.empty() && !m_pattern.empty();
}

std::vector<PatternLine> MarkHatches::linesOf(const TransientMark &mark)
{
    take(mark);
    return patternLines(mark.rings, m_families, m_view);
}

} // namespace velmor
