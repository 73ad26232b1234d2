// A button of the status bar that shows a switch, on or off.
#pragma once

#include <QToolButton>

namespace velmor {

/// Painted in the theme's own colours at each time, since the style's mark of what is switched on is hardly seen. Its
/// action is the caller's.
class SwitchButton final : public QToolButton {
    Q_OBJECT
public:
    SwitchButton(QAction &action, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace velmor
