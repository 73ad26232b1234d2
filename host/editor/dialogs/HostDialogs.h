// The host's own small dialogs that the contracts open.
#pragma once

#include <QWidget>

#include <cstdint>
#include <functional>
#include <string>

namespace velmor {

/// The widget that a dialog of the host belongs to: the dialog that is open, else the window, else none.
QWidget *dialogOwner();
/// False in a program that runs without widgets; nothing is shown then, and every choice counts as cancelled.
bool canShowDialogs();

/// Numbers of the dialogs' controls, for scripts and tests.
enum HostControl : int {
    kControlOk = 1,
    kControlCancel = 2,
    kControlDefaults = 3,
    kControlSettings = 1000, ///< first field of the settings, then by the table's rows; their reset buttons 100 later
    kControlPatterns = 1200,
    kControlPatternFilter = 1201,
    kControlColours = 1210,
    kControlColourNumber = 1211,
    kControlByLayer = 1212,
    kControlByBlock = 1213,
};

/// Shows the settings of a group ("TCE1", "TCE2") with all others of the two groups below; true on OK, when what was
/// changed is set.
bool runSettingsDialog(const std::wstring &group);

/// Lets the user choose a pattern, beginning at current; chosen gets its name on OK. showCustom: the user's own
/// patterns are among them.
bool runPatternDialog(const std::wstring &current, bool showCustom, std::wstring &chosen);

/// Lets the user choose a colour index; index is where it begins and what OK leaves in it. withLogical offers "by
/// layer" (256) and "by block" (0), too; layerColor is what "by layer" looks like.
bool runColorDialog(int &index, bool withLogical, int layerColor);

} // namespace velmor
