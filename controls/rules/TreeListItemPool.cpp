#include "controls/rules/TreeListItemPool.h"

#include "controls/rules/TreeListItemTexts.h"

#include <algorithm>
#include <new>

void *CTreeListAllocator::Allocate(std::size_t bytes) noexcept
{
    return ::operator new(bytes, std::nothrow);
}

void CTreeListAllocator::Release(void *block, std::size_t) noexcept
{
    ::operator delete(block);
}

CTreeListAllocator &CTreeListAllocator::Standard()
{
    static CTreeListAllocator heap;
    return heap;
}

// --- Blocks ---

namespace {
constexpr std::size_t kFirstSlab = 4096;
constexpr std::size_t kLargestSlab = 256 * 1024;
} // namespace

CTreeListBlockPool::CTreeListBlockPool(CTreeListAllocator &allocator)
    : m_allocator(allocator), m_bPooled(allocator.AreBlocksPooled()), m_nNextSlab(kFirstSlab)
{
}

CTreeListBlockPool::~CTreeListBlockPool()
{
    ReleaseSlabs();
}

void *CTreeListBlockPool::Allocate(std::size_t bytes) noexcept
{
    const std::size_t room = RoomFor(bytes);
    if (!m_bPooled || room > kLargest)
        return m_allocator.Allocate(room);
    Free *&waiting = m_free[room / kStep];
    if (waiting) {
        Free *block = waiting;
        waiting = block->next;
        ++m_nOut;
        return block;
    }
    if (m_nLeft < room) {
        void *memory = m_allocator.Allocate(m_nNextSlab);
        if (!memory)
            return nullptr;
        if (m_nLeft >= kStep) { // the old slab's rest is a block as well
            Free *&rests = m_free[m_nLeft / kStep];
            rests = new (m_pCut) Free{rests};
        }
        m_pSlabs = new (memory) Slab{m_pSlabs, m_nNextSlab};
        m_pCut = static_cast<std::byte *>(memory) + sizeof(Slab);
        m_nLeft = m_nNextSlab - sizeof(Slab);
        m_nNextSlab = std::min(kLargestSlab, m_nNextSlab * 2);
    }
    void *block = m_pCut;
    m_pCut += room;
    m_nLeft -= room;
    ++m_nOut;
    return block;
}

void CTreeListBlockPool::Release(void *block, std::size_t bytes) noexcept
{
    if (!block)
        return;
    const std::size_t room = RoomFor(bytes);
    if (!m_bPooled || room > kLargest) {
        m_allocator.Release(block, room);
        return;
    }
    if (--m_nOut == 0) {
        ReleaseSlabs();
        return;
    }
    Free *&waiting = m_free[room / kStep];
    waiting = new (block) Free{waiting};
}

void CTreeListBlockPool::ReleaseSlabs() noexcept
{
    while (m_pSlabs) {
        Slab *slab = m_pSlabs;
        m_pSlabs = slab->next;
        m_allocator.Release(slab, slab->bytes);
    }
    m_free = {};
    m_pCut = nullptr;
    m_nLeft = 0;
    m_nNextSlab = kFirstSlab;
}

// --- Items ---

CTreeListItem *CTreeListItemPool::NewItem() noexcept
{
    void *memory = m_items.Allocate(sizeof(CTreeListItem));
    return memory ? new (memory) CTreeListItem : nullptr;
}

void CTreeListItemPool::DeleteItem(CTreeListItem *item) noexcept
{
    DeleteContents(item);
    item->~CTreeListItem();
    m_items.Release(item, sizeof(CTreeListItem));
}

void CTreeListItemPool::DeleteContents(CTreeListItem *item) noexcept
{
    TreeListTexts::Release(m_blocks, item->m_pTexts);
    if (CTreeListItem::Extras *extras = item->m_pExtras) {
        TreeListTexts::Release(m_blocks, extras->spareTexts);
        m_blocks.Release(extras->modify, extras->modifyCount * sizeof(std::int32_t));
        extras->~Extras();
        m_blocks.Release(extras, sizeof(CTreeListItem::Extras));
        item->m_pExtras = nullptr;
    }
}

CTreeListItem::Extras *CTreeListItemPool::ExtrasOf(CTreeListItem *item) noexcept
{
    if (!item->m_pExtras) {
        if (void *memory = m_blocks.Allocate(sizeof(CTreeListItem::Extras)))
            item->m_pExtras = new (memory) CTreeListItem::Extras;
    }
    return item->m_pExtras;
}

bool CTreeListItemPool::SetText(CTreeListItem *item, int column, int columns, std::wstring_view text) noexcept
{
    return TreeListTexts::Set(m_blocks, item->m_pTexts, column, columns, text);
}

bool CTreeListItemPool::SetSpareText(CTreeListItem *item, int column, int columns, std::wstring_view text) noexcept
{
    CTreeListItem::Extras *extras = ExtrasOf(item);
    return extras && TreeListTexts::Set(m_blocks, extras->spareTexts, column, columns, text);
}

bool CTreeListItemPool::SetImages(CTreeListItem *item, const TreeListImages &images) noexcept
{
    CTreeListItem::Extras *extras = ExtrasOf(item);
    if (extras)
        extras->images = images;
    return extras;
}

bool CTreeListItemPool::SetColumnModify(CTreeListItem *item, int column, int columns, int kind) noexcept
{
    CTreeListItem::Extras *extras = ExtrasOf(item);
    if (!extras)
        return false;
    const auto at = static_cast<std::uint32_t>(column);
    if (at >= extras->modifyCount) {
        const auto count = static_cast<std::uint32_t>(std::max(columns, column + 1));
        auto *kinds = static_cast<std::int32_t *>(m_blocks.Allocate(count * sizeof(std::int32_t)));
        if (!kinds)
            return false;
        std::fill_n(kinds, count, -1);
        std::copy_n(extras->modify, extras->modifyCount, kinds);
        m_blocks.Release(extras->modify, extras->modifyCount * sizeof(std::int32_t));
        extras->modify = kinds;
        extras->modifyCount = count;
    }
    extras->modify[at] = kind;
    return true;
}

void CTreeListItemPool::RemoveColumn(CTreeListItem *item, int column) noexcept
{
    TreeListTexts::Remove(m_blocks, item->m_pTexts, column);
    CTreeListItem::Extras *extras = item->m_pExtras;
    if (!extras)
        return;
    TreeListTexts::Remove(m_blocks, extras->spareTexts, column);
    const auto at = static_cast<std::uint32_t>(column);
    if (at >= extras->modifyCount)
        return;
    // The room stays; the last place is the one of a column that there may be again.
    std::copy(extras->modify + at + 1, extras->modify + extras->modifyCount, extras->modify + at);
    extras->modify[extras->modifyCount - 1] = -1;
}
