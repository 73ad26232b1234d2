#include "host/drawing/Visibility.h"

#include "host/drawing/ObjectAccess.h"

namespace velmor {

bool isInvisible(const AcDbEntity &entity)
{
    return ObjectAccess::has(entity, kInvisible);
}

bool isShown(const Drawing &drawing, const AcDbEntity &entity)
{
    return !entity.isErased() && !isInvisible(entity) && drawing.layer(layerIndexOf(entity)).visible();
}

} // namespace velmor
