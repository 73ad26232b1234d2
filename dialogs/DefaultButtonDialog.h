// Which button Return presses.
#pragma once

#include "contracts/HostDialog.h"

class QKeyEvent;

/// A dialog that OK ends: Return in a field or a list presses the form's default button, as everywhere else; on a push
/// button it presses that one. The base itself ends on no Return.
class CDefaultButtonDialog : public CAdUiBaseDialog {
    Q_OBJECT
public:
    using CAdUiBaseDialog::CAdUiBaseDialog;

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

/// For a dialog that Return never ends: the push button that has the focus, and no other, is the default one. Return
/// presses it, and a field's or a list's Return presses nothing; so the ring shows what Return will do. Left to itself
/// the toolkit draws a ring round the first button.
class CFocusedDefault : public QObject {
    Q_OBJECT
public:
    /// For all push buttons that the dialog has by now; after the form was set up.
    explicit CFocusedDefault(CAdUiBaseDialog &dialog);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
