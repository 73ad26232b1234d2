#include "host/editor/SaveFileDialog.h"

#include <QFileDialog>

namespace velmor {

QString askForSaveFile(QWidget *window, const QString &title, const QString &filter, const QString &suffix)
{
    QFileDialog dialog(window, title, {}, filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(suffix); // before the question whether to replace, not after it
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

} // namespace velmor
