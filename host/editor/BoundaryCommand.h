// The host command that draws the region around a point, prompt by prompt:
//
//   internal point     a point searches its region; Advanced goes to the options; Enter draws what was found and ends
//   advanced options   Boundary set, Island detection, Object type; Enter goes back to the point
//   boundary set       New (then a selection, ended by Enter) or Everything; Enter keeps it as it is
//   island detection   Yes or No; after No one more question about the ray's direction, which is not used here
//   object type        Polyline or Region; a region is a body of a solid modeller, which drawings of this host don't
//                      hold, so none is made and one line at the end says so
//
// The options' own words are understood at the prompt for the point too. At the start the set is everything visible,
// islands are searched and polylines are made.
#pragma once

#include "host/boundary/Regions.h"

#include <string>

namespace velmor {

class Session;

/// One line that says why a search found nothing.
std::wstring describe(const boundary::Region &region);

/// Loose ends nearer than this are joined in searches: the host variable HPGAPTOL, drawing units.
double gapTolerance(const Session &session);

} // namespace velmor
