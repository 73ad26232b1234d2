// Marks of all areas at once, as a picture shows them.
#pragma once

namespace velmor {

/// Marks every area of the working drawing with a hatch in a colour; lineSpacing is the distance between the hatch's
/// lines in drawing units. The number of marked areas; hidden ones have nothing to hatch and don't count.
int markAllAreas(int colour, double lineSpacing);

} // namespace velmor
