// Pictures of the four ways of defining areas, in the example town.
#pragma once

#include <QDir>

#include <filesystem>

namespace velmor {

/// Works each method on a town with its network and boundary layers and without areas, and takes a picture of the
/// dialog beside the drawing. Also the two small dialogs.
bool methodPictures(const std::filesystem::path &drawing, const QDir &folder);

} // namespace velmor
