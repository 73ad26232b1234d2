// Choosing a colour by its index in the standard palette.
#pragma once

#include "host/editor/dialogs/DefaultButtonDialog.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QSpinBox;

namespace velmor {

/// The 255 colours of the palette in fields: the mixed ones in ten rows, below them the nine named ones and the greys.
/// Arrow keys move, Home and End go to the ends of a row; a click chooses and a double click is the OK as well.
class ColorGrid final : public QWidget {
    Q_OBJECT
public:
    explicit ColorGrid(QWidget *parent);
    int index() const { return m_index; }
    void setIndex(int index);
    /// The field's middle, and the index that is shown at a place (0: none).
    QRect fieldOf(int index) const;
    int indexAt(const QPoint &place) const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void chosen(int index);
    void activated();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void choose(int index);
    int m_index = 7;
};

class ColorDialog final : public DefaultButtonDialog {
    Q_OBJECT
public:
    ColorDialog(int index, bool withLogical, int layerColor, QWidget *parent);
    int index() const { return m_index; }

private:
    void showIndex(int index);

    int m_index, m_layerColor;
    ColorGrid *m_grid;
    QSpinBox *m_number;
    QLabel *m_sample;
};

} // namespace velmor
