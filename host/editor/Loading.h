// A drawing or a network is loaded beside the window, which shows how far it is and takes a cancel.
#pragma once

#include "host/drawing/Drawing.h"
#include "host/network/Network.h"

#include <functional>

class QWidget;

namespace velmor {

class Session;

/// The window over the session, when it can be seen; else null.
QWidget *shownWindowOf(const Session &session);

/// Loads a drawing. With a window a load that takes longer than a moment shows its progress there and can be cancelled
/// (the status Cancelled); without one it just loads.
LoadResult loadBeside(QWidget *window, const std::filesystem::path &file);

/// The same for any work of that kind; it runs on a thread of its own, while the window takes no other input.
LoadResult loadBeside(QWidget &window, const std::filesystem::path &file,
                      const std::function<LoadResult(const LoadOptions &)> &work);

/// Imports a network in the same way. The file is read on a thread of its own, the drawing is changed on this one. What
/// a cancelled import had drawn stays for the step that it is part of to take back.
NetworkImportResult importBeside(QWidget *window, Drawing &drawing, const std::filesystem::path &file,
                                 const NetworkImportOptions &options);

} // namespace velmor
