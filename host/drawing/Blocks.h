// Block definitions and their references beyond what a Drawing does itself.
#pragma once

#include "host/drawing/Drawing.h"

#include <map>
#include <set>

namespace velmor {

/// Tags of a definition's attribute definitions in their order; constant ones and those of nested blocks do not count.
std::vector<std::wstring> attributeTagsOf(const BlockRecord &definition);

/// Places a definition in a record with an attribute for each of its tags, which starts with the
/// definition's default text. An attribute whose definition stands on layer "0" goes to the reference's layer.
AcDbObjectId appendReference(Drawing &drawing, BlockRecord &definition, const AcDbBlockReference::Placement &placement,
                             std::size_t layer, BlockRecord &owner);

/// Where a text of a definition stands in a placed reference.
TextShape placedShape(const TextShape &shape, const AcGePoint3d &base, const AcDbBlockReference::Placement &placement);

struct BlockImport {
    BlockRecord *block = nullptr;
    std::set<std::wstring> nested;              ///< names, in the target, of the definitions that came with it
    std::map<std::string, std::size_t> leftOut; ///< number of entities that could not be copied, by kind
};
/// Copies the model space of source into the definition of that name, replacing what it held, with the definitions it
/// refers to. A nested definition keeps its name when the name is free or in replaceable (those are replaced), else it
/// is put under NAME$n$NESTED. A reference of a block within itself is left out, and so is what is nested more
/// than a thousand levels deep.
BlockImport importBlockInto(Drawing &target, const std::wstring &name, const Drawing &source,
                            const std::set<std::wstring> &replaceable);

} // namespace velmor
