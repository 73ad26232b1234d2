// What is seen of a header's column while it is dragged: its picture under the pointer, and a mark at its new place.
#pragma once

#include <QPixmap>
#include <QWidget>

/// The picture of a dragged column, seen through. Children of the control rather than windows of the desktop, since a
/// column goes nowhere else; no mouse event ends in them.
class CTLHDragWnd : public QWidget {
    Q_OBJECT

public:
    static constexpr char kClassName[] = "Morvane.TLHDragWnd";

    CTLHDragWnd(const QPixmap &picture, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap m_picture;
};

/// A line between two columns with a point at each end.
class CTLHDropWnd : public QWidget {
    Q_OBJECT

public:
    static constexpr char kClassName[] = "Morvane.TLHDropWnd";

    explicit CTLHDropWnd(QWidget *parent);
    /// Marks the edge at x over the height of the given rectangle, both in pixels of the parent; at the parent's own
    /// edge the mark stays within it.
    void ShowAt(int x, const QRect &header);
    /// The middle of the line, in pixels of the parent.
    int GetLine() const { return x() + m_nLine; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_nLine = 0;
};
