// Layers that a person names in one answer.
#pragma once

#include <string>
#include <vector>

namespace velmor {

class Session;

/// Adds the layers that a text names to a list, as the drawing spells them: the text is one name (which may hold a
/// comma) or several with commas between. False after an alert when the session's drawing lacks one of them.
bool readLayerNames(Session &session, const std::wstring &text, std::vector<std::wstring> &names);

} // namespace velmor
