// The header of the tree list: texts, images and sort arrow of the columns, sized and moved with the mouse or the keys.
#pragma once

#include "controls/treelist/TreeListCtrl.h"

#include <QBasicTimer>
#include <QPixmap>
#include <QPointer>
#include <QWidget>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

class CTLHDragWnd;
class CTLHDropWnd;
class QMenu;

/// Bits of the header's own style.
enum TreeListHeaderStyle : std::uint32_t {
    kHeaderShown = 1,
    kHeaderColumnDrag = 2, ///< a column can be picked up
    kHeaderColumnDrop = 4, ///< and let go at another place
    kHeaderSort = 8,       ///< a click on a sortable column is told
};

/// A window of its own that paints itself; it stands above the viewport of its control and scrolls with its rows.
/// Places are pixels of the header.
///
/// The mouse: a divider within some pixels sizes its column at once, between the column's limits; a double click on it
/// fits the column to its texts; a column that is dragged goes to the place of the marker. Escape, the other button
/// and a lost capture take back what a drag changed. A column goes nowhere but within its own header: there is no
/// notice that could tell an owner of a column of another control. A column of no width is opened by the right half of
/// its divider.
///
/// The keys: Left, Right, Home and End go from column to column, with Ctrl they make it narrower and wider, with Ctrl
/// and Shift they move it; plus fits it, Space and Enter click it, the menu key opens the menu.
class TREELIST_API CTreeListHeaderCtrl : public QWidget {
    Q_OBJECT

public:
    /// A child of the control, hidden until its style says that it is shown.
    explicit CTreeListHeaderCtrl(CTreeListCtrl *list);
    ~CTreeListHeaderCtrl() override;

    /// Bits of TreeListHeaderStyle; the old ones.
    std::uint32_t SetStyle(std::uint32_t style);
    std::uint32_t GetStyle() const { return m_nStyle; }
    /// The height that the header wants from its control's layout.
    int GetHeight() const;
    /// The columns of the control have changed.
    void OnColumnsChanged();
    /// Ends what the mouse is at and takes back what it changed so far.
    void OnCancelMode();

    /// Where a column stands, scrolled as the rows are; empty for one that is hidden or that there isn't.
    QRect GetColumnRect(int column) const;
    /// The column at a place; -1 beside all.
    int GetColumnAt(int x) const;
    /// The column that is sized from a place; -1 away from all dividers.
    int GetDividerAt(int x) const;
    /// What a person is told of a column that there is: its text, or its number when it has none.
    QString NameOf(int column) const;
    /// Width at which nothing of the column is cut, header and shown rows, within the column's limits.
    int GetWholeWidth(int column) const;
    void FitColumn(int column);

    /// The column with the arrow; -1 when there is none.
    int GetSortColumn() const;
    bool IsSortDescending() const { return m_bDescending; }
    /// Puts the arrow on a column; -1 takes it away. Nothing is told.
    void SetSortColumn(int column, bool descending);

    /// True when a click on the column is told.
    bool Sorts(int column) const;
    /// What a click on the column does: its arrow turns and the click is told, if it sorts.
    void ClickColumn(int column);

    /// The column that keys go to; -1 when there is none.
    int GetCurrentColumn() const { return m_nCurrent; }
    void SetCurrentColumn(int column);

    /// The menu of a column, -1: of the place beside all: what is shown, what is fitted.
    std::unique_ptr<QMenu> MakeMenu(int column);
    /// Windows of a column's drag; null when there is none.
    CTLHDragWnd *GetDragWnd() const;
    CTLHDropWnd *GetDropWnd() const;
    /// A dragged column that is held beside the header's left or right edge scrolls the control; a step at each time.
    bool IsScrolling() const { return m_scroll.isActive(); }
    void OnScrollTimer();

    QSize sizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// A column in the order in which they are shown.
    struct Section {
        int column = 0;
        int left = 0;
        int width = 0;
        int right() const { return left + width; }
    };
    enum class Gesture { None, Pressed, Sizing, Dragging };
    /// Where the parts of a section stand; an empty rectangle for one that is not painted.
    struct Parts {
        QRect image, text, arrow;
        Qt::Alignment alignment;
    };

    // TreeListHeaderCtrl.cpp
    void ComeBeforeRows();
    std::vector<Section> Sections() const;
    bool IsArrowOn(int column) const { return column >= 0 && column == GetSortColumn(); }
    int Limited(int column, int width) const;
    void ShowCurrent();
    void TellCurrent();

    // TreeListHeaderPainting.cpp
    Parts PartsIn(int column, const QRect &rect) const;
    void PaintSection(QPainter &painter, int column, const QRect &rect, bool lifted) const;
    QPixmap PictureOf(const Section &section) const;
    /// The text of a column that doesn't find room in its header; empty for any other.
    QString CutTextAt(int x) const;

    // TreeListHeaderMouse.cpp
    /// Ends the edit of a row; false when the owner keeps it.
    bool EndsEdit();
    void Begin(Gesture gesture, int column, const QPoint &at);
    void End();
    bool IsGestureAlive() const;
    void SizeTo(int x);
    void StartDrag();
    void DragTo(const QPoint &at);
    /// Index in the order before which a column goes that is let go at a place; none where it is refused.
    std::optional<int> PlaceAt(const QPoint &at) const;
    void MoveColumn(int column, int place);
    void SetHot(int column);
    void SetCursorAt(const QPoint &at);

    CTreeListCtrl &m_list;
    std::uint32_t m_nStyle = 0;
    int m_nCurrent = -1;
    int m_nHot = -1; ///< under the pointer
    const CTreeListColumnInfo *m_pSorted = nullptr;
    bool m_bDescending = false;

    Gesture m_gesture = Gesture::None;
    int m_nColumn = -1;                             ///< of the gesture
    const CTreeListColumnInfo *m_pColumn = nullptr; ///< to see whether it still is that column
    QPoint m_press, m_pointer;
    QBasicTimer m_scroll;
    int m_nWidthBefore = 0;
    int m_nGrab = 0; ///< pixels from the left edge of a column that is picked up
    QPointer<CTLHDragWnd> m_pDragWnd;
    QPointer<CTLHDropWnd> m_pDropWnd;
};
