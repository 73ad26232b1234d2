// One row of a tree list: its place in the tree, its counts, its state and its texts.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// What another module sees of the tree list.
#define TREELIST_API __attribute__((visibility("default")))

/// Bits of an item's state.
enum TreeListItemState : std::uint32_t {
    kItemSelected = 0x1,
    kItemExpanded = 0x2,     ///< setting it sets kItemExpandedOnce too
    kItemExpandedOnce = 0x4, ///< clearing it clears kItemExpanded too
    kItemShowsCheck = 0x10,
    kItemShowsLock = 0x20,
    kItemShowsImage = 0x40,
    kItemChecked = 0x10000,
    kItemUnchecked = 0x20000, ///< both: mixed
    kItemLocked = 0x1000000,
    kItemUnlocked = 0x2000000, ///< both: mixed
};
inline constexpr std::uint32_t kItemDefaultState = 0x2020030;

/// What GetCheck and GetLock answer.
enum TreeListCheck : int { kCheckOff = 0, kCheckOn = 1, kCheckMixed = 2 };

/// A text as it is stored: length characters of 1, 2 or 4 bytes each. Valid until the item's texts change.
struct TreeListText {
    const void *characters = nullptr;
    std::uint32_t length = 0;
    std::uint32_t bytesEach = 1;
};

/// Numbers of an item's images, in the order of SetItemImage.
struct TreeListImages {
    std::int32_t normal = 0;           ///< drawn for an item
    std::int32_t expanded = 0;         ///< kept for the owner
    std::int32_t selected = 0;         ///< drawn for the newest selected item
    std::int32_t expandedSelected = 0; ///< kept for the owner
};

struct TreeListOrderNode;

/// Made, changed and destroyed by CTreeListModel only; a pointer is valid until its item is deleted.
class TREELIST_API CTreeListItem {
public:
    CTreeListItem(const CTreeListItem &) = delete;
    CTreeListItem &operator=(const CTreeListItem &) = delete;

    /// The links as they are: a top-level item's parent is the root here.
    CTreeListItem *Parent() const { return m_pParent; }
    CTreeListItem *FirstChild() const { return m_pChild; }
    CTreeListItem *LastChild() const { return m_pLastChild; }
    CTreeListItem *Previous() const { return m_pPrevious; }
    CTreeListItem *Next() const { return m_pNext; }
    /// Depth; the root has 0.
    int Level() const { return m_nLevel; }
    /// The item and all its descendants.
    int ChildCount() const { return m_nChildCount; }
    /// The item and those descendants that are reached through expanded items.
    int ShowCount() const { return m_nShowCount; }
    /// TreeListItemState
    std::uint32_t State() const { return m_nState; }
    bool Has(std::uint32_t bits) const { return (m_nState & bits) != 0; }
    std::uint32_t Data() const { return m_nData; }
    TreeListImages Images() const;
    /// Empty for a column that there isn't.
    std::wstring Text(int column) const;
    TreeListText TextView(int column) const;
    /// A second text for each column, the owner's.
    std::wstring SpareText(int column) const;
    /// Kind of the editor in that column; -1: the column's own.
    int ColumnModify(int column) const;

private:
    friend class CTreeListModel;
    friend class CTreeListItemPool;
    friend class CTreeListOrder;
    CTreeListItem() = default;
    ~CTreeListItem() = default;

    struct Extras; ///< what few items have: images, spare texts, kinds of editors

    CTreeListItem *m_pParent = nullptr, *m_pChild = nullptr, *m_pLastChild = nullptr;
    CTreeListItem *m_pPrevious = nullptr, *m_pNext = nullptr;
    std::int32_t m_nLevel = 0;
    std::int32_t m_nChildCount = 1;
    std::int32_t m_nShowCount = 1;
    std::int32_t m_nShownBelow = 0; ///< sum of the children's show counts, expanded or not
    std::uint32_t m_nState = kItemDefaultState;
    std::uint32_t m_nData = 0;
    std::int32_t m_nChildren = 0;    ///< direct ones
    std::int32_t m_nSelectSlot = -1; ///< place among the selected items; -1: not selected
    void *m_pTexts = nullptr;        ///< all texts in one block
    Extras *m_pExtras = nullptr;
    TreeListOrderNode *m_pOrder = nullptr; ///< where the item stands in its parent's index
    TreeListOrderNode *m_pIndex = nullptr; ///< index over the children; only when they are many
};
