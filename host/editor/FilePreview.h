// Pictures of drawing files in a widget's field.
#pragma once

#include <QColor>
#include <QImage>

#include <filesystem>

class QWidget;

namespace velmor {

/// What a file would look like as a block, attributes shown by their tags, all of it within size. A null image when
/// the file can't be read or holds nothing that is drawn. The last few files are remembered until they change.
QImage filePicture(const std::filesystem::path &file, const QSize &size, const QColor &ground);

/// Shows a file's picture over the whole field of a widget: at once when the widget is being painted, else from its
/// next paint on until another file is shown. False when there is nothing to show; the field is then left as it is.
bool showFilePicture(QWidget &widget, const std::filesystem::path &file, const QColor &ground);

} // namespace velmor
