// Tags of an entity taken from one drawing into another as they are.
#pragma once

#include "host/drawing/Drawing.h"

#include <optional>
#include <set>
#include <string>

namespace velmor::dxf {

class TagCarrier {
public:
    TagCarrier(const Drawing &source, const Drawing &target);
    /// What the entity's tags in source say beyond type, handle, owner, layer and colour, in the code page and line
    /// form of target. References to other objects are taken out; a line type or text style that target lacks falls
    /// back to the standard one. None for what has no tags, for what leans on other objects (dimensions, pictures,
    /// references), and where target's version is older than what the tags were written for. Within one drawing also
    /// extended data of other programs, and of what has parts (old polylines, references) the tags of its own head.
    std::optional<std::string> carry(const AcDbEntity &entity) const;

private:
    bool isWithin() const { return &m_source == &m_target; }
    const Drawing &m_source, &m_target;
    std::set<std::wstring> m_styles, m_lineTypes; ///< of target, folded
};

} // namespace velmor::dxf
