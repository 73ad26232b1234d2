// Pictures of drawing files in a widget's field.
#pragma once

#include <QColor>
#include <QImage>

#include <filesystem>

class QWidget;

namespace velmor {

/// What a file would look like as a block, attributes that can be seen shown by their tags (constant ones by their
/// text), all of it within size, which counts logical pixels. A null image when the file can't be read or holds nothing
/// that is drawn. The last few files and their last pictures are remembered until the files change.
QImage filePicture(const std::filesystem::path &file, const QSize &size, const QColor &ground, double pixelRatio = 1.0);

/// The ground on which a widget's window shows drawings, light or dark.
QColor drawingGround(const QWidget &widget);

/// Shows a file's picture over the whole field of a widget: at once when the widget is being painted, else from its
/// next paint on until another file is shown. False when there is nothing to show; the field is then left as it is.
bool showFilePicture(QWidget &widget, const std::filesystem::path &file, const QColor &ground);

} // namespace velmor
