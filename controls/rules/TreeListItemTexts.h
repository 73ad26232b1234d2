// The texts of one item in one block of memory.
#pragma once

#include "controls/rules/TreeListItem.h"
#include "controls/rules/TreeListItemPool.h"

struct CTreeListItem::Extras {
    TreeListImages images;
    void *spareTexts = nullptr;
    std::int32_t *modify = nullptr;
    std::uint32_t modifyCount = 0;
};

/// A block is null when all texts are empty. It holds where each text ends, then the characters, each in as many bytes
/// as the widest needs: 1, 2 or 4. A column behind the block's last one has an empty text.
namespace TreeListTexts {

/// False when there is no memory; the block is as it was then. columns: how many texts to make room for.
bool Set(CTreeListBlockPool &pool, void *&block, int column, int columns, std::wstring_view text) noexcept;
/// Takes one text out; those behind it move up.
void Remove(CTreeListBlockPool &pool, void *&block, int column) noexcept;
void Release(CTreeListBlockPool &pool, void *&block) noexcept;
TreeListText View(const void *block, int column) noexcept;
std::wstring Get(const void *block, int column);
bool Equal(const TreeListText &stored, std::wstring_view text) noexcept;

} // namespace TreeListTexts
