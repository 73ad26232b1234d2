// Where a search for a region leaked, marked in the drawing for the person who picked the point.
//
// The marks are temporary drawing: at each loose end that could be seen from the point a cross, and a circle around the
// gap with what is missing across it. They stand until the next search, the next point or entity that is picked for a
// module, the next command (but for those that may run inside another one, such as a zoom to the marks), or until the
// temporary drawing is wiped.
//
// A module asks for nothing of that: the boundary command marks what it failed over when a person stands behind it,
// that is when it was started as a command, or called by a dialog that has handed the editor over. A search that a
// dialog runs by itself marks nothing.
#pragma once

#include "host/boundary/Regions.h"

namespace velmor {

class Session;

/// Colour index of the marks.
inline constexpr int kLeakColor = 1;

/// Marks the gaps of a region that was not found from that point, and tells of the nearest; no gaps, no marks.
void markLeaks(Session &session, const boundary::Region &region, const boundary::Point &picked);
void clearLeakMarks(Session &session);

} // namespace velmor
