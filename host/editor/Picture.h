// A drawing as a picture file.
#pragma once

#include "host/drawing/Drawing.h"
#include "host/editor/Painter.h"

#include <QSize>

#include <cstdint>
#include <filesystem>
#include <string>

namespace velmor {

/// The most pixels of a picture: a gigabyte of memory while it is drawn.
inline constexpr std::int64_t kMostPixels = std::int64_t{1} << 28;

struct PictureOptions {
    QSize size{1600, 1200}; ///< at most kMostPixels in all
    PaintStyle style;
    Extents extents; ///< empty: everything visible
};

/// Writes a picture (the kind by the file's ending, PNG for none that is known). Needs a QGuiApplication.
/// On failure the answer has a message of one line and an older file is as it was.
SaveResult savePicture(Drawing &drawing, const std::filesystem::path &file, const PictureOptions &options = {});

} // namespace velmor
