// Layers that a person names in one answer.
#pragma once

#include "host/drawing/LayerRename.h"

#include <string>
#include <vector>

namespace velmor {

class Session;

/// Adds the layers that a text names to a list, as the drawing spells them: the text is one name (which may hold a
/// comma) or several with commas between. False after an alert when the session's drawing lacks one of them.
bool readLayerNames(Session &session, const std::wstring &text, std::vector<std::wstring> &names);

/// Where those that define areas keep the names of the layers that bound them, in the drawing.
inline constexpr char kSettingsDictionary[] = "ZEMX_LSD2";
inline constexpr char kLayersKey[] = "ZEMX_CATCH_DEFINE_LAYERS";

/// renameLayer, and the drawing's list of layers that bound areas follows.
LayerNaming renameLayerEverywhere(Drawing &drawing, std::size_t index, const std::wstring &name);

/// Why a layer can't have a name: name of a text with %1 for the name; null for LayerNaming::Fine.
const char *refusalOf(LayerNaming naming);

} // namespace velmor
