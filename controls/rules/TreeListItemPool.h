// Memory of the tree list's items: small blocks out of large ones.
#pragma once

#include "controls/rules/TreeListItem.h"

#include <array>
#include <cstddef>

/// Where a tree list takes memory from.
class CTreeListAllocator {
public:
    virtual ~CTreeListAllocator() = default;
    /// Aligned for pointers; null when there is none.
    virtual void *Allocate(std::size_t bytes) noexcept;
    virtual void Release(void *block, std::size_t bytes) noexcept;
    /// False: each item and each text block is asked for by itself, so that a test can let any of them fail and a
    /// sanitizer sees each.
    virtual bool AreBlocksPooled() const noexcept { return true; }
    /// The heap.
    static CTreeListAllocator &Standard();
};

/// Blocks of some bytes, cut from slabs; a block that comes back waits for the next one of its size. The slabs go back
/// when no block is out.
class CTreeListBlockPool {
public:
    explicit CTreeListBlockPool(CTreeListAllocator &allocator);
    ~CTreeListBlockPool();
    CTreeListBlockPool(const CTreeListBlockPool &) = delete;
    CTreeListBlockPool &operator=(const CTreeListBlockPool &) = delete;

    /// What a block of so many bytes really holds.
    static constexpr std::size_t RoomFor(std::size_t bytes)
    {
        return bytes < kStep ? kStep : (bytes + kStep - 1) / kStep * kStep;
    }
    /// Null when there is no memory.
    void *Allocate(std::size_t bytes) noexcept;
    /// bytes as in Allocate, or what RoomFor made of it.
    void Release(void *block, std::size_t bytes) noexcept;

private:
    static constexpr std::size_t kStep = 8;
    static constexpr std::size_t kLargest = 2048; ///< larger blocks are the allocator's affair
    struct Free {
        Free *next;
    };
    struct Slab {
        Slab *next;
        std::size_t bytes;
    };

    void ReleaseSlabs() noexcept;

    CTreeListAllocator &m_allocator;
    bool m_bPooled;
    std::array<Free *, kLargest / kStep + 1> m_free = {};
    Slab *m_pSlabs = nullptr;
    std::byte *m_pCut = nullptr; ///< rest of the newest slab
    std::size_t m_nLeft = 0;     ///< its bytes
    std::size_t m_nOut = 0;      ///< blocks from slabs that are in use
    std::size_t m_nNextSlab = 0;
};

/// Makes and destroys items and what hangs on them. What can't be had leaves the item as it was.
class CTreeListItemPool {
public:
    explicit CTreeListItemPool(CTreeListAllocator &allocator) : m_items(allocator), m_blocks(allocator) {}

    /// Null when there is no memory. No texts, no links.
    CTreeListItem *NewItem() noexcept;
    /// With its texts; its links are the caller's.
    void DeleteItem(CTreeListItem *item) noexcept;
    /// Texts and extras alone.
    void DeleteContents(CTreeListItem *item) noexcept;

    /// columns: how many texts the item is going to have.
    bool SetText(CTreeListItem *item, int column, int columns, std::wstring_view text) noexcept;
    bool SetSpareText(CTreeListItem *item, int column, int columns, std::wstring_view text) noexcept;
    bool SetImages(CTreeListItem *item, const TreeListImages &images) noexcept;
    /// kind -1: the column's own.
    bool SetColumnModify(CTreeListItem *item, int column, int columns, int kind) noexcept;
    /// The texts and kinds of the columns behind it move up.
    void RemoveColumn(CTreeListItem *item, int column) noexcept;

    CTreeListBlockPool &Blocks() { return m_blocks; }

private:
    CTreeListItem::Extras *ExtrasOf(CTreeListItem *item) noexcept;

    CTreeListBlockPool m_items, m_blocks;
};
