#include "host/editor/LeakMarks.h"

#include "host/drawing/Transient.h"
#include "host/editor/BoundaryCommand.h"
#include "host/editor/CommandStack.h"
#include "host/editor/EditorHold.h"
#include "host/editor/Session.h"

#include <algorithm>
#include <cmath>

namespace velmor {

namespace {

using boundary::Gap;
using boundary::Point;

/// A mark is at least that part of its distance from the point wide, so that a gap of a finger's breadth is seen at a
/// zoom that shows the whole region.
constexpr double kLeastRadius = 1.0 / 12.0;
/// What a circle is wider than its gap.
constexpr double kRoom = 0.75;

TransientPath pathOf(std::vector<AcDbPolyline::Vertex> vertices, bool closed)
{
    return {std::move(vertices), closed, kLeakColor, TransientPath::Life::UntilNextPick};
}

void mark(TransientGraphics &graphics, const Gap &gap, const Point &picked)
{
    const Point middle{(gap.from.x + gap.to.x) / 2.0, (gap.from.y + gap.to.y) / 2.0};
    const double away = std::hypot(gap.from.x - picked.x, gap.from.y - picked.y);
    const double radius = std::max(kRoom * gap.width, kLeastRadius * away), arm = radius / 3.0;
    graphics.drawTemporary(pathOf({{middle.x - radius, middle.y, 1.0}, {middle.x + radius, middle.y, 1.0}}, true));
    graphics.drawTemporary(pathOf({{gap.from.x, gap.from.y}, {gap.to.x, gap.to.y}}, false));
    graphics.drawTemporary(pathOf({{gap.from.x - arm, gap.from.y - arm}, {gap.from.x + arm, gap.from.y + arm}}, false));
    graphics.drawTemporary(pathOf({{gap.from.x - arm, gap.from.y + arm}, {gap.from.x + arm, gap.from.y - arm}}, false));
}

} // namespace

void markLeaks(Session &session, const boundary::Region &region, const Point &picked)
{
    const bool forDialog = isEditorHandedOver();
    if (!session.drawing() || (session.commands().isScripted() && !forDialog))
        return;
    auto &graphics = session.drawing()->component<TransientGraphics>();
    for (const Gap &gap : region.gaps)
        mark(graphics, gap, picked);
    if (!session.view())
        return;
    session.view()->redraw(); // before the alert that follows
    if (forDialog)
        session.view()->showStatus(describe(region)); // of a command that code runs, nothing else is told
}

void clearLeakMarks(Session &session)
{
    if (session.drawing())
        session.drawing()->component<TransientGraphics>().clearUntilNextPick();
}

} // namespace velmor
