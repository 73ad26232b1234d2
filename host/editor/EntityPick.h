// Which entity an answer means.
#pragma once

#include "host/editor/Session.h"

namespace velmor {

/// The entity of a pick, of a list with one member, of a text "#1F4" (a handle), or nearest to a point, no farther
/// than the host variable PICKRADIUS, among what is visible in model space; of two equally near ones the later drawn.
std::optional<Answer::Pick> pickedEntity(Session &session, const Answer &answer);

/// Distance of a point from what an entity draws as linework; infinite for other kinds.
double distanceTo(const Drawing &drawing, const AcDbEntity &entity, const AcGePoint3d &point);

} // namespace velmor
