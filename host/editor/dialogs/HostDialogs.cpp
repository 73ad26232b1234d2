#include "host/editor/dialogs/HostDialogs.h"

#include <QApplication>

namespace velmor {

bool canShowDialogs()
{
    return qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr;
}

QWidget *dialogOwner()
{
    if (QWidget *modal = QApplication::activeModalWidget())
        return modal;
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->isWindow() && window->inherits("QMainWindow"))
            return window;
    return nullptr;
}

} // namespace velmor
