// Asks for the file to write something to.
#pragma once

#include <QString>

class QWidget;

namespace velmor {

/// The file that was chosen, whose name ends in the suffix ("dxf") when it was typed without one; empty when cancelled.
/// A file that stands there already, under the name with its ending, was asked about.
QString askForSaveFile(QWidget *window, const QString &title, const QString &filter, const QString &suffix);

} // namespace velmor
