// The tags of an entity that was moved: only the points in them change, everything else stays as it was written.
#pragma once

#include "host/drawing/EntityShape.h"
#include "host/drawing/dxf/Tags.h"
#include "host/drawing/dxf/TextCodec.h"

#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace velmor::dxf {

/// Values that stand in place of those of the tags with these indexes.
using NewValues = std::vector<std::pair<std::size_t, std::string>>;

/// What has to change in an entity's tags (without the first one, its type; with those of its vertices) so that they
/// say its shape as it is now. Nothing when that is more than a move of what they say: then the entity has to be
/// written anew. A move by nothing changes nothing, to the last digit.
std::optional<NewValues> movedTags(const AcDbEntity &entity, std::span<const Tag> tags, const TextCodec &codec);

} // namespace velmor::dxf
