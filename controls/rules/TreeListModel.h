// The rows and columns of a tree list without a widget: tree, counts, selection, expansion, check and lock, and the
// editing of a row. A view derives from it and is told through the protected hooks.
#pragma once

#include "controls/rules/TreeListItem.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// Bits of the style word.
enum TreeListStyle : std::uint32_t {
    StyleTree = 0x00000001,
    StyleBkBitmap = 0x00000002,
    StyleBkColor = 0x00000004,
    StyleAlternate = 0x00000008,
    StyleMultiSelect = 0x00000010,
    StyleSelectColumn = 0x00000020,
    StyleShowSelectionAlways = 0x00000040,
    StyleFullRowSelect = 0x00000080,
    StyleHeader = 0x00000100,
    StyleHorzGrid = 0x00000200,
    StyleVertGrid = 0x00000400,
    StyleGridInFirstColumn = 0x00000800,
    StyleHorzGridEmptyRows = 0x00001000,
    StyleVertGridAll = 0x00002000,
    StyleHorzGridFull = 0x00004000,
    StyleReadOnly = 0x00008000,
    StyleTreeLines = 0x00010000,
    StyleTreeRootLines = 0x00020000,
    StyleTreeButtons = 0x00040000,
    StyleCheck = 0x00080000,
    StyleLock = 0x00100000,
    StyleImage = 0x00200000,
    StyleHeaderSort = 0x00400000,
    StyleClientEdge = 0x00800000,
    StyleDrag = 0x01000000,
    StyleDrop = 0x02000000,
    StyleDropSelf = 0x04000000,
    StyleDropRoot = 0x08000000,
    StyleHeaderDrag = 0x10000000,
    StyleHeaderDrop = 0x20000000,
    StyleNoCheckPropagation = 0x40000000,
    StyleNoLockPropagation = 0x80000000,
};

/// Codes of the notices to the owner, and the answers that refuse.
enum TreeListNotify : int {
    NotifyColumnChanging = -420, ///< negative
    NotifyRowChanging = -421,    ///< negative
    NotifyEndEdit = -422,        ///< column: -1 cancelled, 0 accepted, 1 nothing changed
    NotifyDragEnter = -423,
    NotifyDragLeave = -424,
    NotifyDragOver = -425, ///< negative
    NotifyDrop = -426,
    NotifyCheck = -427,       ///< -1
    NotifyLock = -428,        ///< -1
    NotifySelChanging = -450, ///< -1 or -2; also told of every item that is being deleted
    NotifySelChanged = -451,
    NotifyExpanding = -454, ///< -1
    NotifyExpanded = -455,
    NotifyBeginDrag = -456, ///< negative
    NotifyBeginControl = -459,
    NotifyEndControl = -460,
};

/// Bits of the control's state word.
enum TreeListControlState : std::uint32_t {
    kControlCreated = 0x1,
    kControlBuffered = 0x2, ///< painted through a double buffer
    kControlFocused = 0x4,
    kControlCaptured = 0x8,
    kControlEditing = 0x10,
    kControlEndingEdit = 0x20,
    kControlDragging = 0x40,
};

/// Bits of a column's format that are read.
enum TreeListFormat : std::uint32_t {
    kColumnLeft = 0x100,
    kColumnRight = 0x200,
    kColumnCentred = 0x400,
    kColumnImageLeft = 0x10000,
    kColumnImageRight = 0x20000,
    kColumnImageCentred = 0x40000,
    kColumnSorts = 0x200000,
    kColumnShowsImage = 0x400000,
    kColumnSortBits = 0x3000000, ///< any of them with kColumnSorts: sortable
    kColumnHidden = 0x10000000,
};
inline constexpr std::uint32_t kColumnDefaultFormat = 0x104144;

/// Kinds of in-place editors.
enum TreeListEditor : int { kEditorStatic = 0, kEditorEdit = 1, kEditorCombo = 2 };

/// Codes of Expand.
enum TreeListExpand : int { kExpand = 0, kCollapse = 1, kToggle = 2, kCollapseAndDelete = 3 };

/// Codes of GetNextItem.
enum TreeListNext : int {
    kNextRoot = 0,
    kNextSibling = 1,
    kPreviousSibling = 2,
    kNextParent = 3,
    kNextChild = 4,
    kFirstVisible = 5,
    kNextVisible = 6,
    kPreviousVisible = 7,
    kFirstSelected = 9,
    kNextSelected = 10,
};

/// Values that stand in place of an item: the root as a parent; a place among the children.
inline CTreeListItem *TreeListRoot()
{
    return reinterpret_cast<CTreeListItem *>(std::uintptr_t{0xFFFF0001});
}
inline CTreeListItem *TreeListLast()
{
    return reinterpret_cast<CTreeListItem *>(std::uintptr_t{0xFFFF0002});
}
inline CTreeListItem *TreeListFirst()
{
    return reinterpret_cast<CTreeListItem *>(std::uintptr_t{0xFFFF0003});
}
inline CTreeListItem *TreeListSorted()
{
    return reinterpret_cast<CTreeListItem *>(std::uintptr_t{0xFFFF0004});
}

struct CTreeListColumnInfo {
    std::uint32_t format = kColumnDefaultFormat;
    std::int32_t minWidth = 0, maxWidth = 0; ///< 0: no limit
    std::int32_t modify = 0;                 ///< TreeListEditor
    std::int32_t width = 30;
    std::wstring text;
    std::int32_t image = -1;
    std::wstring defaultText; ///< of new items in this column
    std::uint32_t reserved1 = 0, reserved2 = 0;
};

class CTreeListAllocator;
class CTreeListItemGuard;

/// Place in the list of selected items; -1: at its end. It stays good while items are deleted or unselected, and is
/// spoilt by selecting more.
using TreeListPosition = std::ptrdiff_t;

/// Operations answer 0, null, -1 or an empty text for arguments that name nothing, and change nothing then; what needs
/// no other answer is 1. Columns count from 0. Item arguments are pointers of this model's items or TreeListRoot(),
/// which stands for the root; an item of another model, or one that is just being deleted, is refused by whatever would
/// change it. A pointer to an item that was deleted may not be given.
///
/// Notices may change anything, delete items and fill the list anew; every operation looks again at what it holds. The
/// model itself may be destroyed within NotifySelChanging and NotifySelChanged of SelectItem, NotifyExpanding and
/// NotifyExpanded, NotifyCheck and NotifyLock: the operation then answers 0. Within any other notice, those of an edit
/// and of a deletion among them, it may not be.
class TREELIST_API CTreeListModel {
public:
    /// With one column and no items.
    CTreeListModel();
    virtual ~CTreeListModel();
    CTreeListModel(const CTreeListModel &) = delete;
    CTreeListModel &operator=(const CTreeListModel &) = delete;

    // --- Style and state ---

    /// Repairs combinations that can't be. The old style.
    virtual std::uint32_t SetStyle(std::uint32_t style);
    std::uint32_t GetStyle() const { return m_nStyle; }
    bool HasStyle(std::uint32_t bits) const { return (m_nStyle & bits) != 0; }
    /// TreeListControlState
    std::uint32_t GetState(std::uint32_t mask) const { return m_nControlState & mask; }
    void SetState(std::uint32_t add, std::uint32_t remove) { m_nControlState = (m_nControlState & ~remove) | add; }

    // --- Items ---

    /// A new item with the text in column 0; null when it can't be had.
    CTreeListItem *InsertItem(const std::wstring &text, CTreeListItem *parent = TreeListRoot(),
                              CTreeListItem *after = TreeListLast());
    /// In a list taken as flat: index 0 first, at or past the count of rows last, else in front of that row. The new
    /// index; -1 on failure and for a negative one.
    int InsertItem(int index, const std::wstring &text);
    /// As the only child (null when there are children), as the first child, behind a sibling.
    CTreeListItem *InsertItemNew(const std::wstring &text, CTreeListItem *parent);
    CTreeListItem *InsertItemFirst(const std::wstring &text, CTreeListItem *parent);
    CTreeListItem *InsertItemNext(const std::wstring &text, CTreeListItem *sibling);
    /// Null or the root: all items.
    int DeleteItem(CTreeListItem *item);
    /// Unlinks, takes the counts off upward and destroys the item with its descendants, children before their parents.
    /// Each leaves the selection and the focus, then NotifySelChanging is sent with it and column -1.
    int DeleteItemX(CTreeListItem *item);
    /// The last part of DeleteItemX, for an item that is unlinked already; 0 for one that stands in the tree. No
    /// operation leaves an item unlinked, so for whatever an owner holds the answer is 0: DeleteItemX is the one to
    /// call.
    int DeleteItemFast(CTreeListItem *item);
    /// What notices insert meanwhile stays.
    int DeleteAllItems();
    /// True for an item that stands in this tree, the root too.
    bool OwnsItem(const CTreeListItem *item) const;
    /// Two items, each with its descendants, take each other's places. 0 when one stands within the other.
    int ExchangeItem(CTreeListItem *one, CTreeListItem *other);
    /// Moves an item with its descendants under a parent; after as in InsertItem. 0 when the parent stands within the
    /// item.
    int MoveAfterItem(CTreeListItem *item, CTreeListItem *parent, CTreeListItem *after = TreeListLast());
    int SetItemText(CTreeListItem *item, int column, const std::wstring &text);
    std::wstring GetItemText(const CTreeListItem *item, int column = 0) const;
    int SetItemSpareText(CTreeListItem *item, int column, const std::wstring &text);
    int SetItemData(CTreeListItem *item, std::uint32_t data);
    std::uint32_t GetItemData(const CTreeListItem *item) const;
    int SetItemImage(CTreeListItem *item, int normal, int expanded, int selected, int expandedSelected);
    int GetItemImage(const CTreeListItem *item, TreeListImages &images) const;
    /// Kind of the editor of one cell; -1: the column's own.
    int SetItemModify(CTreeListItem *item, int column, int kind);
    /// Counts and selection follow the bits, without notices. The root stays expanded.
    int SetItemState(CTreeListItem *item, std::uint32_t add, std::uint32_t remove);
    std::uint32_t GetItemState(const CTreeListItem *item, std::uint32_t mask) const;
    /// The item's own check, nothing else; TreeListCheck.
    int SetCheck(CTreeListItem *item, int check);
    int GetCheck(const CTreeListItem *item) const;
    int SetLock(CTreeListItem *item, int lock);
    int GetLock(const CTreeListItem *item) const;
    /// Asks the owner; with toggle flips the check (mixed becomes on); then all descendants get the item's check and
    /// the parents that of their children who show a check box, unless the style forbids it. 0 when refused.
    int SetItemCheck(CTreeListItem *item, bool toggle);
    int SetItemLock(CTreeListItem *item, bool toggle);

    // --- Navigation ---

    CTreeListItem *GetRootItem() const { return m_pRoot; }
    /// Null for a top-level item.
    CTreeListItem *GetParentItem(const CTreeListItem *item) const;
    /// null or TreeListRoot(): the root's.
    CTreeListItem *GetChildItem(const CTreeListItem *item) const;
    CTreeListItem *GetLastChildItem(const CTreeListItem *item) const;
    CTreeListItem *GetNextSiblingItem(const CTreeListItem *item) const;
    CTreeListItem *GetPrevSiblingItem(const CTreeListItem *item) const;
    /// code: TreeListNext
    CTreeListItem *GetNextItem(CTreeListItem *item, int code) const;
    /// Visible: reached through expanded items, on the screen or not.
    CTreeListItem *GetFirstVisibleItem() const;
    CTreeListItem *GetNextVisibleItem(const CTreeListItem *item) const;
    CTreeListItem *GetPrevVisibleItem(const CTreeListItem *item) const;
    CTreeListItem *GetLastVisibleItem() const;
    /// The item of a row; null outside. 2 microseconds in a million rows.
    CTreeListItem *GetFirstShowItem(int index) const;
    CTreeListItem *GetNextShowItem(CTreeListItem *item, bool descend = true) const;
    /// Row of an item; -1 when it can't be reached through expanded items, and for the root.
    int GetShowIndex(const CTreeListItem *item) const;
    /// The item of a row, as GetFirstShowItem.
    CTreeListItem *GetTreeListItem(int index) const;
    /// child itself when it is a child of parent, else null.
    CTreeListItem *GetValidChildItem(const CTreeListItem *parent, CTreeListItem *child) const;
    /// Where a sorted item goes behind: the last child, since nothing is compared.
    CTreeListItem *GetSortChildItem(CTreeListItem *parent) const;
    bool ItemHasChildren(const CTreeListItem *item) const;
    /// All items, shown or not.
    int GetCount() const;
    /// Rows in view.
    int GetVisibleCount() const;

    // --- Selection ---

    /// Null: nothing is selected any more. clear false, in multi-selection only: the item's selection flips. 0 when
    /// refused.
    int SelectItem(CTreeListItem *item, int column = 0, bool clear = true);
    /// Selects or unselects without notices.
    int Select(CTreeListItem *item, bool select = true);
    /// Makes it the focus item in that column and shows it; in multi-selection a selected item becomes the newest.
    int ActiveItem(CTreeListItem *item, int column);
    /// The newest; null when there is none.
    CTreeListItem *GetSelectedItem() const;
    int GetSelectedCount() const;
    /// Newest first.
    TreeListPosition GetFirstSelectedItemPosition() const;
    CTreeListItem *GetNextSelectedItem(TreeListPosition &position) const;
    int GetSelectColumn() const { return m_nSelectColumn; }
    CTreeListItem *GetSelectionMark() const { return m_pFocusItem; }
    /// The old one.
    CTreeListItem *SetSelectionMark(CTreeListItem *item);
    /// True for a selected item and for a descendant of one.
    bool IsInSelectsTree(const CTreeListItem *item) const;
    CTreeListItem *GetFocusItem() const { return m_pFocusItem; }

    // --- Expansion and view ---

    /// code: TreeListExpand. 0 when something changed or was refused, 1 when there was nothing to do. After
    /// kCollapseAndDelete the item counts as never expanded.
    int Expand(CTreeListItem *item, int code, int column = 0);
    virtual int EnsureVisible(CTreeListItem *item, int column) = 0;
    virtual int GetTopIndex() const = 0;
    virtual int GetCountPerPage() const = 0;
    /// -1: from the font. The old height; a row's height is always even, an odd one gets one more.
    int SetItemHeight(int height);
    int GetItemHeight() const { return m_nItemHeight; }

    // --- Columns ---

    /// The new column's number: it is the last. -1 for a negative width.
    int InsertColumn(const std::wstring &text, std::uint32_t format = kColumnDefaultFormat, int width = 30,
                     int image = -1, int minWidth = 0, int maxWidth = 0);
    /// With its texts.
    int DeleteColumn(int column);
    int GetColumnCount() const { return static_cast<int>(m_columns.size()); }
    /// Null for a number that there isn't.
    const CTreeListColumnInfo *GetColumns(int column) const;
    int SetColumnText(int column, const std::wstring &text);
    std::wstring GetColumnText(int column) const;
    int SetColumnFormat(int column, std::uint32_t add, std::uint32_t remove);
    std::uint32_t GetColumnFormat(int column) const;
    /// width: pixels, or -1 to -4: fitted to the texts (-1, -3: from min on) or to the header as well (-2, -4).
    virtual int SetColumnWidth(int column, int width, int min = 0);
    int GetColumnWidth(int column) const;
    int SetColumnImage(int column, int image);
    int GetColumnImage(int column) const;
    int SetColumnModify(int column, int kind);
    int GetColumnModify(int column) const;
    int SetColumnDefaultText(int column, const std::wstring &text);
    std::wstring GetColumnDefaultText(int column) const;
    /// Columns in the order in which they are shown: each that is not hidden once; hidden ones are passed over.
    int SetColumnOrderArray(const std::vector<int> &order);
    const std::vector<int> &GetColumnOrderArray() const { return m_showOrder; }
    const std::vector<int> &GetSortOrderArray() const { return m_sortOrder; }
    /// Sum of the widths of the columns in showOrder.
    int GetTotalWidth() const;

    // --- Editing a row: TreeListEditing.cpp ---
    //
    // One row is in edit at a time (kControlEditing), in one of its columns; a shadow keeps all its texts from before.
    // It is those texts and no item of its own: an item has a place in the tree, counts and bits that nobody would read
    // in a shadow, and what else a row holds (spare texts, images, kinds of editors, data) is the owner's, which no
    // editor writes and no end of an edit takes back. The end of an edit (kControlEndingEdit) is told step by step:
    // NotifyColumnChanging, NotifyRowChanging, NotifyEndEdit. From inside of these notices FinishModify, UpdateModify
    // and the like answer 1 and do nothing, BeginModify answers 0, and CancelModify ends the edit at once. A failed
    // handler counts as a veto.
    //
    // A row in edit that is deleted, by a notice or otherwise, ends its edit as CancelModify does, before the row goes:
    // NotifyEndEdit with -1. When the column in edit is deleted its text goes, and the edit of the row ends as by
    // UpdateModify with the texts of the other columns. NotifyColumnChanging comes for the column that is left,
    // NotifyRowChanging with the column that was last in edit.
    //
    // The texts of the row in edit are compared with the shadow, whoever wrote them: what the owner writes to it by
    // SetItemText counts as typed, and goes when the edit is cancelled or refused. A click puts a row in edit, so an
    // owner who writes to rows by himself calls FinishModify first.

    /// Not 0 when the cell is in edit behind it. A row that is in edit moves on to the column, unless the owner refuses
    /// the text of the old one; another row in edit ends by UpdateModify. 0: StyleReadOnly, no such cell, a refusal.
    int BeginModify(CTreeListItem *item, int column);
    /// The user is done with the row. 1: it ended. 0: nothing is in edit, or the owner refused. A refused column keeps
    /// the row in edit, its editor comes back with what was typed; a refused row has its old texts again.
    int FinishModify();
    /// The row's old texts come back. 0 when nothing is in edit.
    int CancelModify();
    /// Ends the row's edit, whatever the owner says: 1 accepted or nothing changed, 0 refused (the row has its old
    /// texts again) or nothing in edit.
    int UpdateModify();
    /// Hides the editor and asks for its column alone; the row stays in edit. 0 when it is refused: the column has its
    /// old text again, RestoreControl brings what was typed.
    int UpdateModifyColumn();
    /// As UpdateModify, save that a refused column leaves the row in edit, as UpdateModifyColumn does.
    int UpdateModifyColumns();
    /// The first column whose text is not that of the shadow; -1 when there is none.
    int GetModifiedColumnIndex() const;
    /// Editable columns of the row in edit in showOrder, before and behind the one in edit; those of width 0 are passed
    /// over. -1 when there is none.
    int GetNextModifyCol() const;
    int GetPrevModifyCol() const;
    /// Kind of a cell's editor: TreeListEditor. The item's own, or when that is -1 the column's.
    int GetControl(const CTreeListItem *item, int column) const;
    CTreeListItem *GetModifyItem() const { return m_pModifyItem; }
    int GetModifyColumn() const { return m_nModifyColumn; }
    /// The text that a column of the row in edit had before the edit.
    std::wstring GetModifyShadow(int column) const;

    /// Tells the owner; his answer, 0 without one.
    virtual std::int64_t Notify(int code, CTreeListItem *item, int column) = 0;

protected:
    /// The memory of items comes from there; it outlives the model. Within the library only.
    explicit CTreeListModel(CTreeListAllocator &allocator);

    // --- What the view is told ---

    /// Off: no painting until it is on again; nests.
    virtual void SetRedraw(bool on) = 0;
    /// Places header and bars anew.
    virtual void Layout() = 0;
    /// Items came, went or changed places, or a branch opened or closed; Layout and Invalidate follow.
    virtual void OnRowsChanged() {}
    virtual void Invalidate() = 0;
    virtual void InvalidateItem(const CTreeListItem *item) = 0;
    /// Height of the view's font as the platform gives it: negative, positive or 0.
    virtual int GetFontHeight() const = 0;
    /// An item is about to be destroyed; the view forgets it. It still has its texts, and no place in the tree.
    virtual void OnItemDeleted(const CTreeListItem *item) = 0;
    /// The repaint that this and the next one need is told by itself.
    virtual void OnTextChanged(const CTreeListItem *item, int column) = 0;
    /// changed: bits of the item's state; kItemSelected also when the item became or ceased to be the newest or the
    /// focus item.
    virtual void OnStateChanged(const CTreeListItem *item, std::uint32_t changed) = 0;
    /// Number, order, width or format of columns changed.
    virtual void OnColumnsChanged() = 0;
    /// Shows the editor of a cell, between NotifyBeginControl and the user. Not 0 when it stands.
    virtual int BeginControl(CTreeListItem *item, int column) = 0;
    /// Writes what was typed to the cell and hides the editor, then NotifyEndControl. column -1: the column is gone,
    /// nothing is written. Does nothing when no editor has begun.
    virtual int CancelControl(CTreeListItem *item, int column) = 0;
    /// Brings the editor back as it was, without a notice.
    virtual int RestoreControl(CTreeListItem *item, int column) = 0;

    // --- The counts ---

    void StatChildAdd(CTreeListItem *item, int add, int addShown);
    void StatChildDel(CTreeListItem *item, int del, int delShown);
    void StatExpand(CTreeListItem *item);
    void StatCollapse(CTreeListItem *item);
    /// Bits and box of a three-state mark: check or lock.
    struct Mark;
    void SetItemParentStatus(CTreeListItem *item, const Mark &mark);

    std::vector<std::unique_ptr<CTreeListColumnInfo>> m_columns;

private:
    friend class CTreeListItemGuard;
    struct Private;

    // TreeListEditing.cpp
    struct EndingScope;
    int StartModify(CTreeListItem *item, int column);
    int MoveModify(int column);
    int EndRow(bool keepRefused);
    bool AskColumn();
    void RestoreShadow(int column);
    void CloseModify(int how);
    void ClearModify();
    int StepModifyCol(int step) const;
    /// Before an item is unlinked with its descendants (null: all): an edit of one of these rows is cancelled. Tells
    /// notices.
    void EndModifyWithin(const CTreeListItem *item);
    /// An item is about to be destroyed: an edit that a notice of its deletion left or began ends. Tells notices.
    void ForgetModify(const CTreeListItem *item);
    /// Behind the change of columns, texts and orders. The second tells notices.
    void OnModifyColumnInserted(int column);
    void OnModifyColumnDeleted(int column);

    CTreeListItem *ItemOf(CTreeListItem *item) const;
    CTreeListItem *PlaceBehind(CTreeListItem *parent, CTreeListItem *after) const;
    CTreeListItem *NewItem(const std::wstring &text, const CTreeListItem *parent);
    CTreeListItem *InsertBehind(const std::wstring &text, CTreeListItem *parent, CTreeListItem *previous);
    void Link(CTreeListItem *item, CTreeListItem *parent, CTreeListItem *previous);
    void Unlink(CTreeListItem *item);
    void SetLevels(CTreeListItem *top, int level);
    void AddShownAbove(CTreeListItem *item, int shown);
    void Bury(CTreeListItem &grave, CTreeListItem *parent);
    void DestroyBuried(CTreeListItem &grave);
    void LeaveSelection(CTreeListItem *item);
    void DestroyLeaf(CTreeListItem *item);
    class RedrawOff;
    void RowsChanged();
    void ChangeState(CTreeListItem *item, std::uint32_t state);
    int SetMark(CTreeListItem *item, int value, const Mark &mark);
    int SetMarkWithOthers(CTreeListItem *item, bool toggle, const Mark &mark);
    bool MakeRoomForSelected();
    void AddSelected(CTreeListItem *item);
    void RemoveSelected(CTreeListItem *item);
    void UnselectAll();
    void TellNewest(CTreeListItem *before);
    void SetFocusItem(CTreeListItem *item);
    void ColumnsChanged();
    void EnterOrders(int column);
    int ColumnOf(const CTreeListColumnInfo *info, int column) const;

    std::uint32_t m_nStyle = 0;
    std::uint32_t m_nControlState = 0;
    CTreeListItem *m_pRoot = nullptr;
    std::vector<int> m_showOrder, m_sortOrder;
    CTreeListItem *m_pFocusItem = nullptr;
    int m_nSelectColumn = -1;
    int m_nItemHeight = 20;
    CTreeListItem *m_pModifyItem = nullptr;
    std::vector<std::wstring> m_modifyShadow; ///< texts of the row before its edit
    int m_nModifyColumn = -1;
    std::uint64_t m_nModifySerial = 0;  ///< another one with each begin and end of an edit
    std::uint64_t m_nEndToldSerial = 0; ///< of the edit whose end was told
    std::unique_ptr<Private> d;
};

/// Holds an item over a notice: null once the item was deleted, or its model destroyed. Lives on the stack.
class TREELIST_API CTreeListItemGuard {
public:
    CTreeListItemGuard(CTreeListModel &model, CTreeListItem *item);
    ~CTreeListItemGuard();
    CTreeListItemGuard(const CTreeListItemGuard &) = delete;
    CTreeListItemGuard &operator=(const CTreeListItemGuard &) = delete;
    CTreeListItem *Get() const { return m_pItem; }
    /// False once the model was destroyed: nothing of it may be touched any more.
    bool IsModelAlive() const { return m_pModel; }

private:
    friend class CTreeListModel;
    CTreeListModel *m_pModel;
    CTreeListItem *m_pItem;
    CTreeListItemGuard *m_pNextGuard = nullptr;
};
