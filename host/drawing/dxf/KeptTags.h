// What the tags of an entity say beside its shape, kept when the shape is written anew.
#pragma once

#include "host/drawing/dxf/LayersOfFile.h"
#include "host/drawing/dxf/Tags.h"

#include <span>

namespace velmor::dxf {

/// Whether an entity's object in the file has others behind it: vertices, attributes.
bool hasParts(EntityKind kind);

/// text: an entity as it is written from its shape, perhaps with parts behind it. former: the own tags that it had so
/// far, without the first one, that names the type. The answer is text with what former says beside the shape: line
/// type and its scale, weight, true colour (unless the entity got another colour since), transparency, thickness, the
/// style of a text, the gradient of a hatch that is solid still, reactors, and extended data of other programs, in
/// which renamed layers get their new names.
std::string withKeptTags(const AcDbEntity &entity, const std::string &text, std::span<const Tag> former,
                         const FileText &file, const LayersOfFile &layers);

} // namespace velmor::dxf
