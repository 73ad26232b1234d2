// Pictures of the review of areas.
#pragma once

#include <QDir>

#include <filesystem>

namespace velmor {

class Session;

/// The review dialog over the session's drawing, with an area of several sections in focus. look: how the picture's
/// name ends.
bool reviewPicture(Session &session, const QDir &folder, const QString &look);
/// Checked areas with their hatch in the drawing, and the choice of a pattern. False when one can't be written.
bool reviewRoadPictures(const std::filesystem::path &drawing, const QDir &folder);

} // namespace velmor
