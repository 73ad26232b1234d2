// The text of an empty drawing.
#pragma once

#include <string>

namespace velmor {

/// A complete empty drawing as ASCII DXF in version AC1027: metres, UTF-8, layer "0", model space and one paper space,
/// the three line types and one style of each kind that every drawing has. The same text at every call.
std::string newDrawingText();

} // namespace velmor
