#include "dialogs/DefaultButtonDialog.h"

#include <QEvent>
#include <QKeyEvent>

void CDefaultButtonDialog::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        QDialog::keyPressEvent(event);
    else
        CAdUiBaseDialog::keyPressEvent(event);
}

CFocusedDefault::CFocusedDefault(CAdUiBaseDialog &dialog)
{
    for (QPushButton *button : dialog.findChildren<QPushButton *>()) {
        button->setAutoDefault(false); // else the toolkit chooses one when the dialog is shown
        button->installEventFilter(this);
    }
}

bool CFocusedDefault::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        if (auto *button = qobject_cast<QPushButton *>(watched))
            button->setDefault(event->type() == QEvent::FocusIn);
    }
    return QObject::eventFilter(watched, event);
}
