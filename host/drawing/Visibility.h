// What a drawing shows.
#pragma once

#include "host/drawing/Entities.h"

namespace velmor {

/// The entity itself is marked as invisible in the drawing's file (group 60), whatever its layer says.
bool isInvisible(const AcDbEntity &entity);

/// The entity is there and is shown: neither erased nor invisible nor on a layer that is off or frozen.
bool isShown(const Drawing &drawing, const AcDbEntity &entity);

} // namespace velmor
