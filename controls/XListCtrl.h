// The list of the dialogs: a table in which every cell may be plain text, a check box, a drop-down or a box edited in
// place.
#pragma once

#include "controls/rules/ListCells.h"

#include <QPointer>
#include <QTableView>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class CAdUiBaseDialog;
class CXComboList;
class CXHeaderCtrl;
class CXListModel;
class QLineEdit;
class QListWidget;
class QPushButton;

/// Columns come first, then rows: a row has records for the columns that there are when it is inserted. Rows and
/// columns count from 0; a number outside the list is refused, setters answer false then.
///
/// A change by the user is told once it is in the cell. A list in a CAdUiBaseDialog runs the dialog's OnWindowMessage
/// as a handler (RunHandler), with DataChangedMessage(), row and column; any other one emits CellChanged. The handler
/// may fill the list anew.
///
/// Keys: F2 edits the current cell, Space clicks its check box, Alt+Down or F4 opens its popup or its browse button.
/// In the editor Enter commits, Escape abandons.
/// In the editor of a numeric cell a comma that is typed or pasted becomes a decimal point. An editor whose text nobody
/// changed ends like an abandoned one.
class CXListCtrl : public QTableView, private IListCellsView {
    Q_OBJECT

public:
    explicit CXListCtrl(QWidget *parent = nullptr);
    ~CXListCtrl() override;

    /// Number of "WM_XLISTCTRL_QUILLON_DATACHANGED"; wParam is the row, lParam the column.
    static unsigned DataChangedMessage();

    // --- Columns ---

    /// Width of a column that shows its whole header.
    static constexpr int kSizedToHeader = -2;
    /// Width of a column that shows all its texts.
    static constexpr int kSizedToTexts = -1;
    /// format: a ListColumnFormat. The column's number, or -1.
    int InsertColumn(int column, const std::wstring &text, int width = kSizedToHeader, int format = kFormatLeft);
    int GetColumnCount() const { return m_cells.GetColumnCount(); }
    /// In pixels, or one of the two values above.
    bool SetColumnWidth(int column, int width);
    int GetColumnWidth(int column) const;
    bool SetHeaderText(int column, const std::wstring &text);
    std::wstring GetHeaderText(int column) const { return m_cells.GetHeaderText(column); }
    /// The header's check box: -1 none, 0 empty, 1 ticked. It follows the column's check boxes.
    int GetHeaderCheckedState(int column) const { return m_cells.GetHeaderCheckedState(column); }
    bool SetHeaderCheckedState(int column, int state) { return m_cells.SetHeaderCheckedState(column, state); }
    CXHeaderCtrl &GetHeader() const { return *m_header; }
    /// 1: grid lines. 32: the whole row is selected (also without it: there is no other way).
    void SetExtendedStyle(unsigned style);

    // --- Rows ---

    int GetItemCount() const { return m_cells.GetItemCount(); }
    /// The row, or -1.
    int InsertItem(int row, const std::wstring &text);
    /// Colours in blue, green, red byte order, for column 0. -1 also when the row's records can't be had; the row is
    /// in the list then and takes no clicks.
    int InsertItem(int row, const std::wstring &text, std::uint32_t textColor, std::uint32_t backColor);
    bool DeleteItem(int row);
    bool DeleteAllItems();
    bool SetItemText(int row, int column, const std::wstring &text) { return m_cells.SetItemText(row, column, text); }
    /// kSystemColor: the desktop's. A null text leaves the text.
    bool SetItemText(int row, int column, const wchar_t *text, std::uint32_t textColor, std::uint32_t backColor)
    {
        return m_cells.SetItemText(row, column, text, textColor, backColor);
    }
    std::wstring GetItemText(int row, int column) const { return m_cells.GetItemText(row, column); }
    bool SetItemData(int row, std::uint64_t value) { return m_cells.SetItemData(row, value); }
    /// 0 when there is none.
    std::uint64_t GetItemData(int row) const { return m_cells.GetItemData(row); }
    bool SetCurSel(int row);
    /// The first selected row, or -1.
    int GetCurSel() const;

    // --- Cells ---

    /// state: -1 no check box, 0 or 1.
    bool SetCheckbox(int row, int column, int state, bool exclusive)
    {
        return m_cells.SetCheckbox(row, column, state, exclusive);
    }
    int GetCheckbox(int row, int column) const { return m_cells.GetCheckbox(row, column); }
    int CountCheckedItems(int column) const { return m_cells.CountCheckedItems(column); }
    /// strings is not owned and outlives the row.
    bool SetComboBox(int row, int column, bool enable, const std::vector<std::wstring> *strings, int listHeight,
                     int initialSel)
    {
        return m_cells.SetComboBox(row, column, enable, strings, listHeight, initialSel);
    }
    bool SetBold(int row, int column, bool bold) { return m_cells.SetBold(row, column, bold); }
    bool GetBold(int row, int column) const { return m_cells.GetBold(row, column); }
    bool SetEnabled(int row, bool enabled) { return m_cells.SetEnabled(row, enabled); }
    bool GetEnabled(int row) const { return m_cells.GetEnabled(row); }
    /// Leaves a cell undrawn.
    bool SetNoDraw(int row, int column, bool noDraw) { return m_cells.SetNoDraw(row, column, noDraw); }
    /// The in-place editor takes numbers within the limits only.
    bool SetCellNumeric(int row, int column, bool numeric = true)
    {
        return m_cells.SetCellNumeric(row, column, numeric);
    }
    void SetNumericLimits(double min, double max, int whole, int decimals);
    ListNumericLimits GetNumericLimits() const { return m_cells.m_numericLimits; }

    // --- Columns of a kind ---

    /// Edited in place.
    void AddEditColumn(int column) { m_cells.m_editColumns.Add(column); }
    void ClearEditColumns() { m_cells.m_editColumns.Clear(); }
    /// A colour index with its swatch.
    void AddColorColumn(int column);
    void ClearColorColumns();
    void AddHatchColumn(int column);
    void ClearHatchColumns();
    void AddLayerColumn(int column);
    void ClearLayerColumns();
    /// What a colour column shows in place of -1.
    void SetColorLabel(const std::wstring &label);
    std::wstring GetColorLabel() const { return m_cells.m_strColorLabel; }

    // --- Places ---

    /// Parts of a cell, as the platform numbers them.
    enum RectCode : int { kBounds = 0, kIcon = 1, kLabel = 2 };
    /// In pixels of the viewport. False when out of range.
    bool GetSubItemRect(int row, int column, int code, QRect &rect) const;
    /// Paints one cell anew.
    bool UpdateSubItem(int row, int column);

    // --- The in-place editor ---

    /// Control numbers of what the list shows over its cells.
    enum ChildId : int {
        kEditBox = 713,
        kColorButton = 714,
        kNumericBox = 715,
        kHatchButton = 716,
        kLayerButton = 717,
        kLayerList = 718,
    };
    /// True while the in-place editor is shown.
    bool IsEditing() const;
    /// The editor; null when there is none.
    QLineEdit *GetEditBox() const;
    /// Opens the editor as a click on the cell does. False for a cell that is not edited in place.
    bool EditCell(int row, int column);
    /// Gives a cell that is edited in place a text as if it were typed there, a comma in a number included. False when
    /// it is refused.
    bool TakeText(int row, int column, const std::wstring &text);
    /// Ends editing as if the focus had left: takes the text over and tells the parent. False when nothing is edited.
    bool CommitEditing();
    /// Ends editing; the cell keeps its text. False when nothing is edited.
    bool AbandonEditing();

    // --- The popup ---

    /// The open popup of a drop-down; null when there is none.
    CXComboList *GetPopup() const;
    /// Opens the popup of a drop-down cell as a click on its arrow does, and leaves it open.
    bool OpenPopup(int row, int column);
    /// A message of the popup: one of CXComboList's numbers. 0.
    std::intptr_t OnPopupMessage(unsigned message);
    /// The popup took the mouse button's way up, which belongs to the click that opened it.
    void OnButtonUpOverPopup();
    /// The open layer list; null when there is none.
    QListWidget *GetLayerList() const;

    /// The cell last clicked; -1 when none was.
    int GetCurrentRow() const { return m_cells.m_nCurrentRow; }
    int GetCurrentColumn() const { return m_cells.m_nCurrentColumn; }

    /// True for the cell that shows a browse button.
    bool HasBrowseButton(int row, int column) const;

    /// Cells and rules without the widget.
    const CListCells &GetCells() const { return m_cells; }
    /// In place of the allocation of a row's records.
    void SetRecordMaker(CListCells::RecordMaker maker) { m_cells.SetRecordMaker(std::move(maker)); }

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The user changed a cell of a list that stands in no CAdUiBaseDialog.
    void CellChanged(int row, int column);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void hideEvent(QHideEvent *event) override;

private:
    friend class CXListModel;

    // IListCellsView
    void RepaintCell(int row, int column) override;
    void RepaintHeader(int column) override;
    void TellChanged(int row, int column) override;
    void ClosePopup() override;

    CAdUiBaseDialog *Dialog() const;
    /// As a handler of the dialog, when the list stands in one.
    void RunAsHandler(const std::function<void()> &handler);
    void SetRowHeight();
    /// Row and column under a point of the viewport; -1 each when there is none.
    struct Cell {
        int row = -1, column = -1;
    };
    Cell HitTest(const QPoint &point) const;
    ListRect CellRect(int row, int column) const;
    void PlaceChildren();
    bool ShowCutText(const QPoint &point, const QPoint &onScreen);

    // XListCtrlClicks.cpp
    void Click(QMouseEvent *event);
    void ClickDropDown(const Cell &cell, const QPoint &point, QMouseEvent *event);
    /// The platform's own handling of a click: focus, selection.
    void PassOn(QMouseEvent *event);
    /// What comes behind a click whose button went up again.
    void OnClicked(const QPoint &point);
    bool HandleCellKey(QKeyEvent *event);

    // XListCtrlEditing.cpp
    void OpenEditBox(int row, int column);
    void DestroyEditBox();
    void PlaceEditBox();
    /// The editor's text goes into the cell, by the rules of a lost focus.
    void EndEditing();
    bool Normalise(std::wstring &text);
    bool IsNumeric(int row, int column) const;
    bool FilterEditBox(QEvent *event);

    // XListCtrlDropDown.cpp
    /// Painting a pressed drop-down of the selected row brings its popup.
    void OpenPopupIfDue();

    // XListCtrlSpecial.cpp
    void ShowBrowseButtons();
    void PlaceBrowseButtons();
    /// Opens what the browse button of a cell opens. False for a cell that has none.
    bool Browse(int row, int column);
    void BrowseColor();
    void BrowseHatch();
    void DropLayers();
    void CloseLayers(bool take);

    CListCells m_cells;
    CXListModel *m_model = nullptr;
    class CXListDelegate *m_delegate = nullptr;
    CXHeaderCtrl *m_header = nullptr;
    QPointer<QLineEdit> m_edit;
    QString m_strOpened; ///< the editor's text at first
    bool m_bTyped = false;
    bool m_bEndingEdit = false;
    QPointer<CXComboList> m_popup;
    QPointer<QPushButton> m_colorButton, m_hatchButton, m_layerButton;
    QPointer<QListWidget> m_layers;
    Cell m_layersOf; ///< the cell that the layer list was dropped for
    bool m_bClosingLayers = false;
    bool m_bClickGoesOn = false; ///< the button is down, and the press was passed on
    QPoint m_pressedAt;
};
