// The tree list: a tree of rows with columns of texts, check boxes, locks and images, with rows that are edited in
// place and dragged.
//
// The header that other modules make one with. Rows, columns, selection, expansion and the rules of editing are
// CTreeListModel's.
#pragma once

#include "controls/rules/TreeListGeometry.h"
#include "controls/rules/TreeListImages.h"
#include "controls/rules/TreeListModel.h"
#include "controls/treelist/TreeListEditors.h"

#include <QAbstractScrollArea>
#include <QColor>
#include <QIcon>
#include <QPointer>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class CTLCDragWnd;
class CTLCDropWnd;
class CTreeListAccessible;
class CTreeListCtrl;
class CTreeListGlyphs;
class CTreeListHeaderCtrl;
class CTreeListTipCtrl;

/// A notice of a control to its owner.
struct TreeListNotice {
    CTreeListCtrl *control = nullptr;
    int code = 0; ///< TreeListNotify
    CTreeListItem *item = nullptr;
    int column = 0;
    /// Where dragged rows come from; of the notices of dragging only.
    CTreeListCtrl *source = nullptr;
};

/// Who owns a control's rows: is told what happens and may refuse it.
class TREELIST_API CTreeListOwner {
public:
    virtual ~CTreeListOwner();
    /// 0: go on. What refuses stands with each code.
    virtual std::int64_t OnTreeListNotify(const TreeListNotice &notice) = 0;
};

/// Colours, in the order of their table; numbers in blue, green, red byte order.
enum TreeListColor : int {
    colorTreeBk,
    colorBk,
    colorAltEven,
    colorAltOdd,
    colorDisabledTreeBk,
    colorDisabledBk,
    colorDisabledAltEven,
    colorDisabledAltOdd,
    colorSelectedOther,
    colorSelected,
    colorSelectedActive,
    colorSelectedNoFocus,
    colorSelectedOtherText,
    colorSelectedText,
    colorSelectedActiveText,
    colorSelectedNoFocusText,
    colorTextNormal,
    colorReserved, ///< read by nothing
    colorGrid,
    colorTreeLine,
    kTreeListColors,
};

/// Points and rectangles are pixels of the viewport, whose origin is the client's: the header stands above it. The
/// vertical scroll position counts rows, the horizontal one pixels.
///
/// The control owns its items, header, tip and editors; the owner is not owned and outlives the control or is taken
/// back by SetOwner(nullptr). A control that stands in a CAdUiBaseDialog tells its owner within the dialog's
/// RunHandler; a notice that fails there counts as refused (-1).
///
/// There each notice costs what a handler does: a run of the drawing's change log, begun and kept, and a copy of the
/// window's title, for every row that is deleted, every step of a drag and every click. Whoever deletes many rows does
/// it within one handler of the dialog, to which the notices then belong. While a handler at work asks whether it shall
/// break off, notices are not told at all, neither then nor later, and count as refused: rows that are deleted
/// meanwhile go without NotifySelChanging, an edit ends without NotifyEndEdit. An owner that keeps items by what it is
/// told changes no rows there.
///
/// The owner may destroy the control within the notices of dragging, of expanding (NotifyExpanding, NotifyExpanded), of
/// check and lock, and within NotifySelChanging and NotifySelChanged of a row that a person or SelectItem selects; the
/// last two are told of a deleted item as well, with column -1, and then it may not. Nor may it within the notices of
/// an edit: deleteLater() is the way there.
class TREELIST_API CTreeListCtrl : public QAbstractScrollArea, public CTreeListModel {
    Q_OBJECT

public:
    /// Names of the windows. Each library has these constants for itself: shown, they would be one in the whole program
    /// and keep the library loaded for good.
    [[gnu::visibility("hidden")]] static constexpr char kClassName[] = "Morvane.TreeListCtrl";
    [[gnu::visibility("hidden")]] static constexpr char kHeaderClassName[] = "Morvane.TreeListHeaderCtrl";
    [[gnu::visibility("hidden")]] static constexpr char kTipClassName[] = "Morvane.TreeListTipCtrl";

    /// With one column and no rows; Create comes next.
    explicit CTreeListCtrl(QWidget *parent = nullptr);
    ~CTreeListCtrl() override;

    /// Sets style and place, makes header, tip and editors. rect may be null: a layout places the control. Not 0 when
    /// all of it stands.
    int Create(std::uint32_t style, const QRect &rect, QWidget *parent, int id);
    void SetOwner(CTreeListOwner *owner) { m_pOwner = owner; }
    CTreeListOwner *GetOwner() const { return m_pOwner; }

    // --- The model's, with what the view has to do: TreeListCtrl.cpp, TreeListScroll.cpp, TreeListWidths.cpp ---

    std::uint32_t SetStyle(std::uint32_t style) override;
    std::int64_t Notify(int code, CTreeListItem *item, int column) override;
    /// Scrolls as little as needed. 0 for an item that is in no shown row. A column that is not shown moves nothing
    /// sideways.
    int EnsureVisible(CTreeListItem *item, int column) override;
    int GetTopIndex() const override;
    /// Rows that fit into the client, less one when there are any: the last row that is seen whole is so many below the
    /// first.
    int GetCountPerPage() const override;
    int SetColumnWidth(int column, int width, int min = 0) override;
    /// Width that SetColumnWidth takes for an automatic one (code -1 to -4); column is one that there is.
    int GetFittedWidth(int column, int code, int min = 0) const;

    // --- Parts ---

    CTreeListHeaderCtrl *GetHeader() const { return m_pHeader; }
    CTreeListTipCtrl *GetTip() const { return m_pTip; }
    CTreeListEditCtrl *GetEdit() const { return m_pEdit; }
    CTreeListComboCtrl *GetCombo() const { return m_pCombo; }
    CTreeListStaticCtrl *GetStatic() const { return m_pStatic; }
    /// The client: the viewport's rectangle.
    QRect GetClient() const;
    int GetHorzScroll() const;
    int GetVertScroll() const;

    // --- The arrow of the header: TreeListHeaderCtrl.cpp ---

    /// The column with the arrow; -1 when there is none. A click on a column puts it there, pointing upward, and turns
    /// it over when it stands there already.
    int GetSortColumn() const;
    bool IsSortDescending() const;
    void SetSortColumn(int column, bool descending = false);

    // --- Colours and images: TreeListColors.cpp ---

    /// code 0 colorBk, 1 colorAltEven, 2 colorAltOdd, any other colorTreeBk. The old one.
    std::uint32_t SetBkColor(std::uint32_t color, int code = 0);
    std::uint32_t GetBkColor(int code = 0) const;
    std::uint32_t SetTextColor(std::uint32_t color);
    std::uint32_t GetTextColor() const;
    /// Any of the colours, by its number.
    std::uint32_t SetColor(TreeListColor which, std::uint32_t color);
    std::uint32_t GetColor(TreeListColor which) const;
    /// What is painted: on a dark or high-contrast desktop a colour that nobody set is the desktop's.
    QColor GetShownColor(TreeListColor which) const;
    /// In place of the default pictures of the items and of the columns.
    void SetItemImages(std::vector<QIcon> images);
    void SetHeaderImages(std::vector<QIcon> images);

    // --- Hit testing and places: TreeListHitTest.cpp ---

    /// flag: TreeListHit; 0 beside all parts. column: -1 beside all. Null when no row or no column is hit; rect is the
    /// part's.
    CTreeListItem *HitTest(const QPoint &point, int *flag = nullptr, int *column = nullptr,
                           QRect *rect = nullptr) const;
    /// False for an item that is in no shown row.
    bool GetItemRect(const CTreeListItem *item, QRect &rect) const;
    bool GetItemRect(const CTreeListItem *item, int column, QRect &rect, bool textOnly) const;
    bool GetItemRectTree(const CTreeListItem *item, QRect &rect, bool textOnly) const;
    bool GetItemRectMain(const CTreeListItem *item, QRect &rect, bool textOnly) const;
    /// What geometry depends on of an item in a column.
    TreeListCell GetCell(const CTreeListItem *item, int column) const;

    // --- Scroll bars: TreeListScroll.cpp ---

    /// Ranges and pages of both bars; each takes room that the other may then need.
    void SetAllScroll();
    /// In the client as it is; true when the bar is needed.
    bool SetVertScroll();
    bool SetHorzScroll();

    // --- Editors: TreeListEditors.cpp ---
    //
    // They stand over the cell as long as its row is in edit, and go along when rows, columns or the window move. A row
    // that is hidden by a collapsed parent, or a column of no width, ends the edit as FinishModify does; what is
    // refused then waits in the editor until the cell is shown again.
    //
    // When the focus leaves the control and its editors, FinishModify ends the edit. Popups and menus are no such
    // place: the focus comes back from them.

    /// rect: the cell's text area. 0 for an empty one. When it is narrower than the column's least width or than the
    /// text it becomes as wide as the column; the grid's lines stay free. All of the text is selected.
    int BeginEdit(CTreeListItem *item, int column, const QRect &rect);
    /// The box's text goes to the item's column, unless the box is hidden; the box is hidden and disabled.
    int CancelEdit(CTreeListItem *item, int column);
    /// Shows the box with what it held, after a refusal.
    int RestoreEdit(CTreeListItem *item, int column, const QRect &rect);
    /// The same with the list that the owner filled at NotifyBeginControl: GetCombo()->AddString. A text that is not in
    /// the list stays until another one is chosen.
    int BeginCombo(CTreeListItem *item, int column, const QRect &rect);
    int CancelCombo(CTreeListItem *item, int column);
    int RestoreCombo(CTreeListItem *item, int column, const QRect &rect);
    /// The control takes the focus, nothing else.
    int BeginStatic(CTreeListItem *item, int column, const QRect &rect);
    int CancelStatic(CTreeListItem *item, int column);
    int RestoreStatic(CTreeListItem *item, int column, const QRect &rect);
    /// Focus to the editor of the cell in edit, else to the control.
    void SetCtrlFocus();
    /// Of the row in edit only. Empties the editors, tells NotifyBeginControl, scrolls the cell into view and begins
    /// the editor of its kind.
    int BeginControl(CTreeListItem *item, int column) override;
    int CancelControl(CTreeListItem *item, int column) override;
    int RestoreControl(CTreeListItem *item, int column) override;

    // --- Keys: TreeListKeys.cpp ---

    /// A key that goes down in the control or in an editor. True when it was taken. With no columns shown all keys but
    /// Tab are taken and do nothing; Alt and its likes belong to the desktop.
    bool PreTranslateMessage(QKeyEvent *event);
    /// Keys of the rows. The page keys bring a focus item that lies off the page into view and do nothing else. For a
    /// focus item in a collapsed branch its row that is shown is meant; without a selected column the first shown one.
    /// Under StyleReadOnly Enter is not taken.
    bool PreTranslateKeyDownMessage(QKeyEvent *event);
    /// Keys of a row in edit: Tab, Enter, Escape. In a cell without an editor Tab and Enter count as long as it is the
    /// focus item's in the selected column, and Tab goes on to the next widget when there is no editable column.
    bool PreTranslateKeyDownMessage2(QKeyEvent *event);

    // --- Dragging: TreeListDragging.cpp ---

    // The source tells NotifyBeginDrag with its newest selected item and column. The control under the rows tells
    // NotifyDragEnter and NotifyDragLeave without an item, NotifyDragOver and NotifyDrop with the item (null in
    // NotifyDrop: at the root), all with column 0 and the source. Nothing moves by itself: the owner does that at
    // NotifyDrop, when nothing of the drag is left. A press whose movement becomes a drag ends the edit that it began.

    int BeginDraging(const QPoint &point);
    int DoDraging(const QPoint &point);
    /// drop false: ended without one.
    int EndDraging(const QPoint &point, bool drop = true);
    void DragEnter(CTreeListCtrl *source);
    void DragLeave(CTreeListCtrl *source);
    /// 0 refused, 1 neutral, 2 on an item, 3 at the root.
    int DragOver(CTreeListCtrl *source, const QPoint &point, CTreeListItem **item);
    int Drop(CTreeListCtrl *source, const QPoint &point);
    void SetTargetItem(CTreeListItem *item);
    void SetHoverItem(CTreeListItem *item);
    CTreeListItem *GetTargetItem() const { return m_pTargetItem; }
    CTreeListItem *GetHoverItem() const { return m_pHoverItem; }
    /// Numbers of the timers: expand the hovered item; scroll at the edges.
    enum Timer : int { kTimerExpand = 1, kTimerScroll = 2 };
    /// What a timer does when its time has come; nothing for one that does not run.
    void OnTimer(int timer);
    /// Milliseconds of a timer; -1 when it doesn't run.
    int GetTimerInterval(int timer) const;
    /// Ends a drag without a drop.
    void OnCancelMode();
    /// Windows of a drag; null when there is none.
    CTLCDragWnd *GetDragWnd() const;
    CTLCDropWnd *GetDropWnd() const;
    /// Control that the dragged rows are over; null when there is none.
    CTreeListCtrl *GetDragTarget() const;
    /// The selected rows as they stand around the point of the press, half transparent and fading at the edges.
    QPixmap GetDragImage(const QSize &size) const;
    /// Number of the shown cursor: 8005 button, 8006 check box, 8007 lock, 8015 drop allowed, 8016 refused; 0 the
    /// arrow.
    int GetCursorNumber() const { return m_nCursor; }

    // --- Painting: TreeListPainting.cpp ---
    //
    // paintEvent paints each piece of its region by DrawCtrl, which is all that others may ask for: what it takes apart
    // (background, rows, cells, grid) goes by what is prepared there, as the hit tests of single cells go by a row that
    // HitTest found.

    /// Paints what stands in clip and nothing beside it; through a CTreeListDC with kControlBuffered.
    void DrawCtrl(QPainter &painter, const QRect &clip) const;
    QSize sizeHint() const override;

Q_SIGNALS:
    /// A sortable column's header was clicked, under StyleHeaderSort; its arrow stands already. Nothing is sorted by
    /// the control.
    void ColumnClicked(int column);

protected:
    // Model: TreeListCtrl.cpp
    void SetRedraw(bool on) override;
    void Invalidate() override;
    void InvalidateItem(const CTreeListItem *item) override;
    int GetFontHeight() const override;
    void OnItemDeleted(const CTreeListItem *item) override;
    void OnTextChanged(const CTreeListItem *item, int column) override;
    void OnStateChanged(const CTreeListItem *item, std::uint32_t changed) override;
    void OnColumnsChanged() override;
    void OnRowsChanged() override;
    // TreeListScroll.cpp
    void Layout() override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent *event) override;
    // TreeListCtrl.cpp
    bool event(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    // TreeListPainting.cpp
    void paintEvent(QPaintEvent *event) override;
    // TreeListMouse.cpp
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    // TreeListEditors.cpp
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    // TreeListKeys.cpp
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    // TreeListDragging.cpp
    void timerEvent(QTimerEvent *event) override;

private:
    friend class CTreeListHeaderCtrl;
    friend class CTreeListAccessible;

    // TreeListPainting.cpp
    struct RowLook;
    /// Which of the selection's colours a row or a cell has.
    enum class Selection { None, Other, Selected, Active, NoFocus };
    void DrawBkgnd(QPainter &painter, const QRect &clip) const;
    void DrawBkgndBmp(QPainter &painter, const QRect &clip) const;
    void DrawItems(QPainter &painter, const QRect &clip) const;
    RowLook LookOf(const QRect &row, int index, CTreeListItem *item, const QRect &clip) const;
    TreeListColor RowColor(int index) const;
    void DrawRowBkgnd(QPainter &painter, const RowLook &row) const;
    void DrawItem(QPainter &painter, const RowLook &row) const;
    /// True when the row was filled in a colour of the selection.
    bool DrawItemBkgnd(QPainter &painter, const RowLook &row) const;
    /// Check box, lock and image of column 0, which stay on the row's own background; from left to right.
    std::array<QRect, 3> DrawItemExclude(const RowLook &row) const;
    /// Paints one row as it looks, its first column at a place.
    void DrawItemAt(QPainter &painter, const QPoint &at, CTreeListItem *item) const;
    void DrawFocus(QPainter &painter, const RowLook &row) const;
    /// The 3-D frame of a control without the client edge.
    void DrawNcFrame();
    // TreeListPaintingCells.cpp
    void DrawItemTree(QPainter &painter, const RowLook &row, const QRect &cell) const;
    void DrawItemMain(QPainter &painter, const RowLook &row, const QRect &cell) const;
    void DrawItemList(QPainter &painter, const RowLook &row, const QRect &cell, int column) const;
    void DrawItemTreeLine(QPainter &painter, const RowLook &row, const QRect &button) const;
    void DrawItemTreeButton(QPainter &painter, const RowLook &row, const QRect &button) const;
    void DrawItemGlyphs(QPainter &painter, const RowLook &row, const TreeListParts &parts) const;
    void DrawItemTreeText(QPainter &painter, const RowLook &row, const QRect &cell, const QRect &text) const;
    void DrawItemListText(QPainter &painter, const RowLook &row, const QRect &cell, const QRect &text,
                          int column) const;
    void DrawItemText(QPainter &painter, const RowLook &row, const QRect &cell, const QRect &text, int column) const;
    /// Lines at a cell's bottom, and by its style at its right.
    void DrawCellGrid(QPainter &painter, const QRect &cell, bool bottom) const;
    /// Grid of an empty row.
    void DrawGrid(QPainter &painter, const QRect &row) const;
    /// column -1: of the row as a whole.
    Selection SelectionOf(const CTreeListItem *item, int column) const;
    static TreeListColor ColorOf(Selection selection);
    static TreeListColor TextColorOf(Selection selection);

    // TreeListHitTest.cpp
    CTreeListItem *HitTest(const QPoint &point, const QRect &row, CTreeListItem *item, int *flag, int *column,
                           QRect *rect) const;
    int HitTestTree(const QPoint &point, const QRect &cell, const CTreeListItem *item, QRect *rect) const;
    int HitTestMain(const QPoint &point, const QRect &cell, const CTreeListItem *item, QRect *rect) const;
    int HitTestList(const QPoint &point, const QRect &cell, const CTreeListItem *item, int column, QRect *rect) const;

    // TreeListCtrl.cpp
    void SetOwnHeight();

    // TreeListScroll.cpp
    void LayoutNow();
    /// The work that Layout only noted, before its outcome is asked for. Nobody can tell when it was done.
    void UpToDate() const;
    /// Left edge of a column over all columns, not scrolled; -1 when it is not shown.
    int ColumnLeft(int column) const;
    /// Shows the tip of a cut text under the pointer, or hides it.
    void ShowTip(const QPoint &point);
    void HideTip();

    // TreeListEditors.cpp
    bool CreateEditors();
    /// The editor follows its cell: behind scrolling, layout and changes of columns.
    void PlaceEditor();
    QWidget *ShownEditor() const;
    QRect EditorRect(int column, const QRect &rect, const QWidget &editor, const QString &text) const;
    QRect TextAreaOf(CTreeListItem *item, int column) const;
    void PrepareEditor(QWidget &editor, int column);
    void ShowEditor(QWidget &editor, const QRect &rect);
    void HideEditor(QWidget &editor);
    bool HoldsFocus() const;
    void OnFocusLeft(Qt::FocusReason reason);
    void FinishHiddenEdit();

    // TreeListKeys.cpp
    bool IsKeyForEditor() const;
    bool TakesKey(const QKeyEvent &event) const;
    bool GiveKeyToEditor(QKeyEvent *event);
    CTreeListItem *RowForKeys() const;
    int ColumnForKeys() const;
    void SelectByKey(CTreeListItem *item);
    void MoveByRow(bool down);
    void MoveByPage(bool down);
    void MoveByColumn(bool right);

    // TreeListMouse.cpp
    void OnLeftDown(const QPoint &point, Qt::KeyboardModifiers keys);
    void ClickRow(const QPoint &point, Qt::KeyboardModifiers keys);
    /// Where the first cell stands as the bars are.
    QPoint RowsOrigin() const;
    void OnRightDown(const QPoint &point);
    /// Steps 3 of a click: what the part does. False for a part that does nothing of its own.
    bool ClickPart(CTreeListItem *item, int flag, int column);
    /// False when the click may not go on: a row in edit refused to end.
    bool ClickInEdit(CTreeListItem *item, int flag, int column);
    void SetPartCursor(const QPoint &point);
    void ShowCursor(int number);

    // TreeListDragging.cpp
    class DragWatch;
    void WatchPress();
    void UnwatchPress();
    bool HasLostCapture() const;
    bool OpenDragWindows(const QPoint &point);
    void MoveDragWindow(const QPoint &point);
    void PlaceDropWindow(const CTreeListCtrl &target, const CTreeListItem *item);
    bool EnterTarget(CTreeListCtrl *target);
    void LeaveTarget();
    int AnswerDragOver(CTreeListCtrl *source, CTreeListItem *item);
    std::int64_t NotifyDrag(int code, CTreeListItem *item, int column, CTreeListCtrl *source);
    QImage PaintSelectedRows(QRegion &rows) const;
    QPixmap GetPlainDragImage(QRegion &shape) const;
    void BeginTimer(int timer, int interval, bool anew);
    void StopTimer(int timer);
    void StopTimers();
    /// The control goes: it drags no more.
    void AbandonDrag();
    /// An item goes.
    void ForgetDragged(const CTreeListItem *item);

    CTreeListOwner *m_pOwner = nullptr;
    CTreeListCtrl *m_pNoticeSource = nullptr; ///< while a notice of dragging is told
    CTreeListHeaderCtrl *m_pHeader = nullptr;
    CTreeListTipCtrl *m_pTip = nullptr;
    CTreeListStaticCtrl *m_pStatic = nullptr;
    CTreeListEditCtrl *m_pEdit = nullptr;
    CTreeListComboCtrl *m_pCombo = nullptr;
    bool m_bControlBegun = false; ///< NotifyBeginControl was told, NotifyEndControl not yet
    bool m_bRestoreDue = false;   ///< a refused text waits for its cell to be shown
    int m_nRedrawOff = 0;
    bool m_bLayoutDue = false, m_bPaintDue = false;
    bool m_bLayingOut = false;
    int m_nItemsDue = 0;     ///< single rows marked since the last paint
    int m_nHeaderHeight = 0; ///< the margin over the viewport
    int m_nOwnHeight = 0;    ///< item height as it came from the font
    int m_nWheel = 0;        ///< what the wheel turned since the last whole notch
    QSize m_client;          ///< what the bars leave; right before the first show as well

    std::array<std::uint32_t, kTreeListColors> m_colors;
    std::uint32_t m_nSetColors = 0; ///< bit n: somebody set colour n
    std::unique_ptr<CTreeListGlyphs> m_glyphs;

    int m_nCursor = 0;
    QPoint m_pressShift; ///< how far the last press moved the rows by showing its own; none once they moved further
    QPoint m_dragStart, m_dragOffset;
    QPoint m_dragOverPoint;           ///< where dragged rows were last told over this control
    QPointer<QObject> m_pDragWatch;   ///< while the button is down
    int m_nDragLeaves = 0;            ///< how often DragLeave was called
    CTreeListItem *m_pOver = nullptr; ///< under the dragged rows while the owner is asked
    QPointer<CTLCDragWnd> m_pDragWnd;
    QPointer<CTLCDropWnd> m_pDropWnd;
    QPointer<CTreeListCtrl> m_pDragTarget;
    CTreeListItem *m_pTargetItem = nullptr, *m_pHoverItem = nullptr;
    std::array<int, 3> m_timerIds = {}; ///< of the event system, by Timer
    std::array<int, 3> m_timerIntervals = {-1, -1, -1};
    std::unique_ptr<CTreeListAccessible> m_accessible;
};
