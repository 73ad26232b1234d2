// A dialog of the host's own in which Return presses the default button, as everywhere else.
#pragma once

#include "contracts/HostDialog.h"

#include <QKeyEvent>

namespace velmor {

/// The contract's dialog ends on no Return, which is what a module's fields rely on.
class DefaultButtonDialog : public CAdUiBaseDialog {
public:
    using CAdUiBaseDialog::CAdUiBaseDialog;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            QDialog::keyPressEvent(event);
        else
            CAdUiBaseDialog::keyPressEvent(event);
    }
};

} // namespace velmor
