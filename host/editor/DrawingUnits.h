// What length one drawing unit is.
#pragma once

#include "host/drawing/Drawing.h"

namespace velmor {

/// The numbers are those of the header variable $INSUNITS.
enum class DrawingUnit { None = 0, Inches = 1, Feet = 2, Millimetres = 4, Centimetres = 5, Metres = 6, Kilometres = 7 };

/// What the drawing names; None for one that it doesn't name or that is not among these.
DrawingUnit unitOf(const Drawing &drawing);
/// Only the name changes: coordinates stay as they are.
void setUnit(Drawing &drawing, DrawingUnit unit);
/// Metres in one drawing unit, also for units that are not among these; a drawing that names none is in metres.
double metresPerUnit(const Drawing &drawing);

} // namespace velmor
