// What the model keeps behind its header.
#pragma once

#include "controls/rules/TreeListItemPool.h"
#include "controls/rules/TreeListModel.h"
#include "controls/rules/TreeListOrder.h"

/// What stands in an exported class and is no part of the export.
#define TREELIST_HIDDEN __attribute__((visibility("hidden")))

struct CTreeListModel::Private {
    explicit Private(CTreeListAllocator &allocator) : pool(allocator), order(pool) {}

    CTreeListItemPool pool;
    CTreeListOrder order;
    /// Oldest first. An item that left leaves a null, so that a place stays the same item's; never null at the end.
    std::vector<CTreeListItem *> selected;
    int selectedCount = 0;
    CTreeListItemGuard *guards = nullptr;
};

struct TREELIST_HIDDEN CTreeListModel::Mark {
    std::uint32_t box, on, off;
    int notice;
    std::uint32_t stays; ///< style bit: a change stays on the one item

    std::uint32_t Bits() const { return on | off; }
    int ValueOf(std::uint32_t state) const
    {
        const std::uint32_t bits = state & Bits();
        return bits == Bits() ? kCheckMixed : bits == on ? kCheckOn : kCheckOff;
    }
    std::uint32_t BitsOf(int value) const { return value == kCheckMixed ? Bits() : value == kCheckOn ? on : off; }

    static const Mark kCheck, kLock;
};

inline constexpr CTreeListModel::Mark CTreeListModel::Mark::kCheck = {kItemShowsCheck, kItemChecked, kItemUnchecked,
                                                                      NotifyCheck, StyleNoCheckPropagation};
inline constexpr CTreeListModel::Mark CTreeListModel::Mark::kLock = {kItemShowsLock, kItemLocked, kItemUnlocked,
                                                                     NotifyLock, StyleNoLockPropagation};

/// Redrawing is off as long as it lives, whatever a notice does.
class TREELIST_HIDDEN CTreeListModel::RedrawOff {
public:
    explicit RedrawOff(CTreeListModel &model) : m_model(model) { m_model.SetRedraw(false); }
    ~RedrawOff() { m_model.SetRedraw(true); }
    RedrawOff(const RedrawOff &) = delete;
    RedrawOff &operator=(const RedrawOff &) = delete;

private:
    CTreeListModel &m_model;
};

/// One of the four values that stand in place of an item.
inline bool IsFixedTreeListValue(const CTreeListItem *item)
{
    const auto value = reinterpret_cast<std::uintptr_t>(item);
    return value >= 0xFFFF0001 && value <= 0xFFFF0004;
}
