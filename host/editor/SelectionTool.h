// Selecting sections in the window: the ways that the selection button's menu offers.
#pragma once

#include "host/drawing/Drawing.h"

#include <optional>
#include <vector>

class QWidget;

namespace velmor {

class Network;
class Session;

enum class SectionMode {
    All,        ///< the whole network, nothing is asked
    Pick,       ///< by clicks and windows, till Enter
    Window,     ///< by two corners, till Enter
    Upstream,   ///< all that drains through the picked section or node
    Downstream, ///< all that flows on from it
    Path,       ///< the shortest way between two nodes
};

/// Shows the menu below a widget; nothing when it is left without a choice. What the network can't offer (branches and
/// paths need nodes, all but nothing needs sections) is hidden or else disabled.
std::optional<SectionMode> chooseSectionMode(QWidget &below, const Network &network, bool hideDisabled);

/// Lets the person select in a way; what is selected so far is highlighted meanwhile. Sections in the order in which
/// they were picked, each once; entities that are none are passed over, which is told. Nothing after Escape.
std::optional<std::vector<AcDbObjectId>> selectSections(Session &session, SectionMode mode);

} // namespace velmor
