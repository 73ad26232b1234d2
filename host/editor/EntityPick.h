// Which entity an answer means.
#pragma once

#include "host/editor/Session.h"

namespace velmor {

/// The entity of a pick, of a list with one member, of a text "#1F4" (a handle), or nearest to a point, no farther
/// than the host variable PICKRADIUS, among what is visible in model space; of two equally near ones the later drawn.
std::optional<Answer::Pick> pickedEntity(Session &session, const Answer &answer);

/// What a selection prompt takes besides picks: everything visible in model space.
inline constexpr wchar_t kAllWord[] = L"ALL";

/// The entities that an answer to a selection prompt means: those of a list or of a set, all for kAllWord, else the one
/// that pickedEntity finds. Nothing when it means none.
std::optional<AcDbObjectIdArray> selectedEntities(Session &session, const Answer &answer);

} // namespace velmor
