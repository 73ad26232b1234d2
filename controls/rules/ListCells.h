// The extended list without its widget: rows of texts, a record for every cell, and what clicks, popup and in-place
// editor do to them. No Qt.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// A colour value that stands for the desktop's own.
inline constexpr std::uint32_t kSystemColor = 0xFFFFFFFF;

/// What a cell is beside its text.
struct CellRecord {
    bool enabled = true; ///< counts in column 0 only: a disabled row takes no clicks and greys its text
    bool bold = false;
    bool combo = false;                                      ///< the cell is a drop-down
    bool comboPressed = false;                               ///< its arrow button is held down
    const std::vector<std::wstring> *comboStrings = nullptr; ///< not owned; outlives the row
    int comboListHeight = 10;                                ///< rows shown by the popup
    int comboInitialSel = 0;
    std::uint32_t textColor = kSystemColor; ///< blue, green, red
    std::uint32_t backColor = kSystemColor;
    bool noDraw = false;
    int checkState = -1;         ///< -1: no check box, else its state
    bool checkExclusive = false; ///< the column acts as a set of radio buttons
    bool numeric = false;        ///< the in-place editor takes numbers only
    std::uint64_t itemData = 0;  ///< the owner's value, in the record of column 0
};

/// How a column's texts stand; the values of the platform's column formats.
enum ListColumnFormat : int {
    kFormatLeft = 0,
    kFormatRight = 1,
    kFormatCenter = 2,
    kFormatOwnerDraw = 0x8000, ///< beside one of the others: the owner paints the column's header
};

/// What numbers a numeric cell takes.
struct ListNumericLimits {
    double min = 0.001;
    double max = 1000.0;
    int whole = 6;
    int decimals = 3;
    bool operator==(const ListNumericLimits &) const = default;
};

/// A cell's place in pixels; right and bottom are the first ones behind it.
struct ListRect {
    int left = 0, top = 0, right = 0, bottom = 0;
    bool operator==(const ListRect &) const = default;
};

/// Who shows the cells.
class IListCellsView {
public:
    virtual void RepaintCell(int row, int column) = 0;
    virtual void RepaintHeader(int column) = 0;
    /// Tells the parent, which may fill the list anew.
    virtual void TellChanged(int row, int column) = 0;
    virtual void ClosePopup() = 0;

protected:
    ~IListCellsView() = default;
};

/// Row and column numbers from 0; one outside the list is refused: setters answer false and do nothing.
///
/// A row gets one record for each column that there is when it is inserted, so columns come first: a cell of a later
/// column has a text and no record, and takes nothing that a record holds. A row whose records could not be had stays
/// in the list as plain text that takes no clicks.
class CListCells {
public:
    explicit CListCells(IListCellsView &view);
    CListCells(const CListCells &) = delete;
    CListCells &operator=(const CListCells &) = delete;

    // --- Columns ---

    /// At the end when the number is above the count. The column's number, -1 for a negative one.
    int InsertColumn(int column, const std::wstring &text, int format);
    int GetColumnCount() const { return static_cast<int>(m_columns.size()); }
    bool SetHeaderText(int column, const std::wstring &text);
    std::wstring GetHeaderText(int column) const;
    /// A ListColumnFormat; left when out of range.
    int GetColumnFormat(int column) const;
    /// The image number of the header: -1 none, 0 an empty check box, 1 a ticked one. -1 when out of range.
    int GetHeaderCheckedState(int column) const;
    bool SetHeaderCheckedState(int column, int state);

    // --- Rows ---

    int GetItemCount() const { return static_cast<int>(m_rows.size()); }
    /// The row, or -1: out of range (the count itself is the end), or its records could not be had; the row is there
    /// in the second case. The colours go to column 0.
    int InsertItem(int row, const std::wstring &text, std::uint32_t textColor, std::uint32_t backColor);
    bool DeleteItem(int row);
    void DeleteAllItems();
    bool SetItemText(int row, int column, const std::wstring &text);
    /// A null text leaves the text.
    bool SetItemText(int row, int column, const wchar_t *text, std::uint32_t textColor, std::uint32_t backColor);
    std::wstring GetItemText(int row, int column) const;
    bool SetItemData(int row, std::uint64_t value);
    std::uint64_t GetItemData(int row) const;

    // --- Cell records ---

    /// Null when out of range or without a record.
    const CellRecord *GetRecord(int row, int column) const;
    bool HasRecords(int row) const;
    /// How many records the row got at its insertion; 0 when out of range.
    int GetRecordCount(int row) const;
    /// Brings the header's check box up to date when it has one.
    bool SetCheckbox(int row, int column, int state, bool exclusive);
    /// -1 when out of range or without a record.
    int GetCheckbox(int row, int column) const;
    int CountCheckedItems(int column) const;
    /// When not enabled only that is stored. An initial choice below 0 or beyond the strings leaves the text.
    bool SetComboBox(int row, int column, bool enable, const std::vector<std::wstring> *strings, int listHeight,
                     int initialSel);
    bool SetBold(int row, int column, bool bold);
    bool GetBold(int row, int column) const;
    /// Of the whole row.
    bool SetEnabled(int row, bool enabled);
    bool GetEnabled(int row) const;
    bool SetCellNumeric(int row, int column, bool numeric);
    bool SetNoDraw(int row, int column, bool noDraw);

    // --- Special columns ---

    /// A list of column numbers; one that is no column (yet) is taken too.
    class CColumnSet {
    public:
        void Add(int column);
        void Clear() { m_columns.clear(); }
        bool Has(int column) const;

    private:
        std::vector<int> m_columns;
    };
    CColumnSet m_editColumns, m_colorColumns, m_hatchColumns, m_layerColumns;

    ListNumericLimits m_numericLimits;
    std::wstring m_strColorLabel; ///< shown in place of -1 in a colour column

    // --- Clicks ---

    enum class Target {
        None,    ///< no cell: the popup closes, the click goes on
        Refused, ///< a row without records or a disabled one: the click ends here
        CheckBox,
        DropDown,
        Other, ///< as None
    };
    Target TargetOf(int row, int column) const;
    /// What a click on a check box does: a free one flips; an exclusive one is the only one set in its column
    /// afterwards, and every row of the column has a state then. The parent is told in any case, then the header's
    /// check box follows.
    void ClickCheckbox(int row, int column);
    /// Left edge of the arrow button of a drop-down cell: a square at the right end.
    static int ArrowLeft(const ListRect &cell) { return cell.right - (cell.bottom - cell.top); }
    /// True when a click at that point counts as one on the arrow. The y is held against the cell's right edge, which
    /// is what the dialogs were made with: in a list of normal proportions that always holds.
    static bool IsOnArrow(const ListRect &cell, int x, int y) { return x >= ArrowLeft(cell) && y <= cell.right; }

    // --- Drop-down ---

    void PressArrow(int row, int column);
    void ReleaseArrow();
    bool IsArrowDown() const { return m_bComboDown; }
    /// The drop-down pressed last; -1 when none was.
    int GetComboRow() const { return m_nComboRow; }
    int GetComboColumn() const { return m_nComboColumn; }
    /// What a popup shows.
    struct Choices {
        std::vector<std::wstring> strings; ///< without the empty ones
        int selected = -1;
    };
    /// Of the pressed drop-down. An empty cell takes its first choice; a text that is no choice selects the first.
    Choices OpenChoices();
    /// The popup's selected string goes into the pressed cell; null when the popup has none. False when nothing was
    /// written.
    bool ShowChoice(const std::wstring *selected);
    /// The same; then the popup closes and the parent is told, also of the choice that stood there before.
    void TakeChoice(const std::wstring *selected);

    // --- In-place editor ---

    /// The cell last clicked; -1 when none was.
    int m_nCurrentRow = -1;
    int m_nCurrentColumn = -1;

    /// True when a click on the current cell opens the editor.
    bool CanEdit(int row, int column) const;
    /// Answers whether a text is valid, and makes of it what the cell shall hold.
    using NumericRule = std::function<bool(std::wstring &text)>;
    enum class EditEnd {
        NoRecord, ///< the current row has none: nothing happens, the editor stays
        Refused,  ///< the cell keeps its text
        Written,  ///< and the parent told when it differs
    };
    /// The editor's text for the current cell. Numeric cells ask the rule, any other takes every text.
    EditEnd EndEditing(std::wstring text, const NumericRule &rule);
    /// A text written by the browse buttons of the special columns; the parent is told when it differs.
    void WriteChoice(int row, int column, const std::wstring &text);

    // --- Where records come from ---

    /// Makes so many records; throws std::bad_alloc when it can't.
    using RecordMaker = std::function<std::vector<CellRecord>(std::size_t count)>;
    void SetRecordMaker(RecordMaker maker) { m_maker = std::move(maker); }

private:
    struct Column {
        std::wstring text;
        int format = kFormatLeft;
        int image = -1;
    };
    struct Row {
        std::vector<std::wstring> texts; ///< as far as they were set
        std::vector<CellRecord> records;
        bool hasRecords = false;
    };

    bool IsRow(int row) const { return row >= 0 && row < GetItemCount(); }
    bool IsColumn(int column) const { return column >= 0 && column < GetColumnCount(); }
    CellRecord *Record(int row, int column);
    void SetCheckState(int row, int column, int state);
    void CountOut(const Row &row);
    int &CheckedCount(int column);
    void FollowInHeader(int column);

    IListCellsView &m_view;
    std::vector<Column> m_columns;
    std::vector<Row> m_rows;
    std::vector<int> m_checked; ///< by column: how many rows have a check state of 1
    bool m_bComboDown = false;
    bool m_bReleasing = false;
    int m_nComboRow = -1;
    int m_nComboColumn = -1;
    RecordMaker m_maker;
};
