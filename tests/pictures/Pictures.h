// Pictures of windows, as small files.
#pragma once

#include <QImage>

class QWidget;

namespace velmor {

/// Few colours make small files, and these pictures have few. False, with a word on the error output, when it can't be
/// written.
bool savePicture(const QImage &picture, const QString &file);
/// The widget as it is painted.
QImage pictureOf(QWidget &widget);
/// The drawing and the dialog side by side.
QImage sideBySide(const QImage &left, const QImage &right);

} // namespace velmor
