// A drawing is loaded beside the window, which shows how far it is and takes a cancel.
#pragma once

#include "host/drawing/Drawing.h"

#include <functional>

class QWidget;

namespace velmor {

class Session;

/// Loads a drawing. With a window over the session a load that takes longer than a moment shows its progress there and
/// can be cancelled (the status Cancelled); without one it just loads. The session's drawing stays as it is.
LoadResult loadShown(Session &session, const std::filesystem::path &file);

/// The same for any work of that kind; it runs on a thread of its own, while the window takes no other input.
LoadResult loadBeside(QWidget &window, const std::filesystem::path &file,
                      const std::function<LoadResult(const LoadOptions &)> &work);

} // namespace velmor
