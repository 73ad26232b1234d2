#include "controls/rules/TreeListItemTexts.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

using Bytes = unsigned char;

/// Head of a block; behind it `count` ends of 1 << endShift bytes each, then the characters of 1 << charShift bytes.
struct Head {
    std::uint32_t room; ///< bytes of the block in steps of 8
    std::uint32_t count : 28, charShift : 2, endShift : 2;
};
static_assert(sizeof(Head) == 8);
constexpr std::uint64_t kMostBytes = std::uint64_t{0xFFFFFFFF} * 8;
constexpr std::uint32_t kMostTexts = (1u << 28) - 1;

/// How a block is laid out.
struct Layout {
    std::uint32_t count = 0;
    std::uint64_t characters = 0;
    unsigned charShift = 0, endShift = 0;

    std::size_t CharactersAt() const
    {
        const std::size_t behindEnds = sizeof(Head) + (std::size_t{count} << endShift);
        const std::size_t align = std::size_t{1} << charShift;
        return (behindEnds + align - 1) & ~(align - 1);
    }
    std::uint64_t TotalBytes() const { return CharactersAt() + (characters << charShift); }
};

Head *headOf(void *block)
{
    return static_cast<Head *>(block);
}

const Head *headOf(const void *block)
{
    return static_cast<const Head *>(block);
}

template <class Number>
Number loadAs(const Bytes *from)
{
    Number number;
    std::memcpy(&number, from, sizeof number);
    return number;
}

std::uint32_t load(const Bytes *from, unsigned shift)
{
    return shift == 0 ? *from : shift == 1 ? loadAs<std::uint16_t>(from) : loadAs<std::uint32_t>(from);
}

void store(Bytes *to, unsigned shift, std::uint32_t value)
{
    if (shift == 0) {
        *to = static_cast<Bytes>(value);
    } else if (shift == 1) {
        const auto narrow = static_cast<std::uint16_t>(value);
        std::memcpy(to, &narrow, sizeof narrow);
    } else {
        std::memcpy(to, &value, sizeof value);
    }
}

std::uint32_t endOf(const Head *head, std::uint32_t column)
{
    const auto *ends = reinterpret_cast<const Bytes *>(head + 1);
    return load(ends + (std::size_t{column} << head->endShift), head->endShift);
}

std::uint32_t beginOf(const Head *head, std::uint32_t column)
{
    return column == 0 ? 0 : endOf(head, column - 1);
}

void setEnd(Head *head, std::uint32_t column, std::uint32_t end)
{
    auto *ends = reinterpret_cast<Bytes *>(head + 1);
    store(ends + (std::size_t{column} << head->endShift), head->endShift, end);
}

Layout layoutOf(const Head *head)
{
    return {head->count, head->count ? endOf(head, head->count - 1) : 0, head->charShift, head->endShift};
}

Bytes *charactersOf(Head *head)
{
    return reinterpret_cast<Bytes *>(head) + layoutOf(head).CharactersAt();
}

const Bytes *charactersOf(const Head *head)
{
    return reinterpret_cast<const Bytes *>(head) + layoutOf(head).CharactersAt();
}

unsigned shiftFor(std::uint32_t allBits)
{
    return allBits < 0x100 ? 0 : allBits < 0x10000 ? 1 : 2;
}

/// Bytes that the widest of these characters needs.
unsigned charShiftOf(std::wstring_view text)
{
    std::uint32_t bits = 0;
    for (const wchar_t character : text)
        bits |= static_cast<std::uint32_t>(character);
    return shiftFor(bits);
}

unsigned charShiftOf(const Bytes *from, std::size_t count, unsigned shift)
{
    std::uint32_t bits = 0;
    for (std::size_t at = 0; at < count; ++at)
        bits |= load(from + (at << shift), shift);
    return shiftFor(bits);
}

void putText(Bytes *to, unsigned shift, std::wstring_view text)
{
    if (shift == 0) {
        std::transform(text.begin(), text.end(), to, [](wchar_t character) { return static_cast<Bytes>(character); });
    } else {
        for (std::size_t at = 0; at < text.size(); ++at)
            store(to + (at << shift), shift, static_cast<std::uint32_t>(text[at]));
    }
}

/// Characters of a block into another one, whose characters may have another size.
void putCharacters(Bytes *to, unsigned toShift, const Bytes *from, unsigned fromShift, std::size_t count)
{
    if (toShift == fromShift) {
        std::memcpy(to, from, count << toShift);
        return;
    }
    for (std::size_t at = 0; at < count; ++at)
        store(to + (at << toShift), toShift, load(from + (at << fromShift), fromShift));
}

/// Bytes a character that the texts need together when one of them is replaced.
unsigned charShiftWith(const Head *head, std::uint32_t begin, std::uint32_t end, std::wstring_view text)
{
    const unsigned own = charShiftOf(text);
    if (!head || head->charShift <= own)
        return own;
    const Bytes *characters = charactersOf(head);
    const unsigned before = charShiftOf(characters, begin, head->charShift);
    const auto total = static_cast<std::size_t>(layoutOf(head).characters);
    const Bytes *behind = characters + (std::size_t{end} << head->charShift);
    return std::max({own, before, charShiftOf(behind, total - end, head->charShift)});
}

} // namespace

bool TreeListTexts::Set(CTreeListBlockPool &pool, void *&block, int column, int columns,
                        std::wstring_view text) noexcept
{
    const auto at = static_cast<std::uint32_t>(column);
    Head *old = headOf(block);
    const std::uint32_t oldCount = old ? old->count : 0;
    if (text.empty() && at >= oldCount)
        return true;
    if (at >= kMostTexts || text.size() >= 0xFFFFFFFF)
        return false;

    const Layout was = old ? layoutOf(old) : Layout();
    const bool stands = at < oldCount;
    const std::uint32_t begin = stands ? beginOf(old, at) : static_cast<std::uint32_t>(was.characters);
    const std::uint32_t end = stands ? endOf(old, at) : begin;
    Layout now;
    now.characters = was.characters - (end - begin) + text.size();
    now.count =
        stands ? oldCount : std::max({at + 1, oldCount, std::min(static_cast<std::uint32_t>(columns), kMostTexts)});
    now.charShift = charShiftWith(old, begin, end, text);
    now.endShift = now.characters < 0x100 ? 0 : now.characters < 0x10000 ? 1 : 2;
    if (now.characters >= 0xFFFFFFFF || now.TotalBytes() > kMostBytes)
        return false;

    const std::size_t behind = static_cast<std::size_t>(was.characters) - end;
    const auto grown = static_cast<std::uint32_t>(text.size()) - (end - begin); // wraps when it shrinks
    const bool sameLayout =
        old && now.count == was.count && now.charShift == was.charShift && now.endShift == was.endShift;
    if (sameLayout && now.TotalBytes() <= std::uint64_t{old->room} * 8) {
        Bytes *characters = charactersOf(old);
        const unsigned shift = now.charShift;
        std::memmove(characters + ((begin + text.size()) << shift), characters + (std::size_t{end} << shift),
                     behind << shift);
        putText(characters + (std::size_t{begin} << shift), shift, text);
        for (std::uint32_t later = at; later < now.count; ++later)
            setEnd(old, later, endOf(old, later) + grown);
        return true;
    }

    const std::size_t room = CTreeListBlockPool::RoomFor(static_cast<std::size_t>(now.TotalBytes()));
    void *memory = pool.Allocate(room);
    if (!memory)
        return false;
    Head *made = new (memory) Head;
    made->room = static_cast<std::uint32_t>(room / 8);
    made->count = now.count;
    made->charShift = now.charShift & 3;
    made->endShift = now.endShift & 3;
    for (std::uint32_t each = 0; each < now.count; ++each) {
        const std::uint32_t oldEnd = each < oldCount ? endOf(old, each) : static_cast<std::uint32_t>(was.characters);
        setEnd(made, each, each < at ? oldEnd : oldEnd + grown);
    }
    Bytes *to = reinterpret_cast<Bytes *>(made) + now.CharactersAt();
    const unsigned shift = now.charShift;
    if (old) {
        const Bytes *from = charactersOf(static_cast<const Head *>(old));
        putCharacters(to, shift, from, was.charShift, begin);
        putCharacters(to + ((begin + text.size()) << shift), shift, from + (std::size_t{end} << was.charShift),
                      was.charShift, behind);
    }
    putText(to + (std::size_t{begin} << shift), shift, text);
    Release(pool, block);
    block = made;
    return true;
}

void TreeListTexts::Remove(CTreeListBlockPool &pool, void *&block, int column) noexcept
{
    Head *head = headOf(block);
    const auto at = static_cast<std::uint32_t>(column);
    if (!head || at >= head->count)
        return;
    if (head->count == 1) {
        Release(pool, block);
        return;
    }
    // The places of the ends move, and so may the first character's: all of it within the block, which never grows.
    const Layout was = layoutOf(head);
    const std::uint32_t begin = beginOf(head, at), end = endOf(head, at);
    Bytes *from = charactersOf(head);
    for (std::uint32_t later = at + 1; later < was.count; ++later)
        setEnd(head, later - 1, endOf(head, later) - (end - begin));
    Layout now = was;
    now.count = was.count - 1;
    now.characters = was.characters - (end - begin);
    head->count = now.count;
    Bytes *to = reinterpret_cast<Bytes *>(head) + now.CharactersAt();
    const unsigned shift = was.charShift;
    std::memmove(to, from, std::size_t{begin} << shift);
    std::memmove(to + (std::size_t{begin} << shift), from + (std::size_t{end} << shift),
                 (static_cast<std::size_t>(was.characters) - end) << shift);
}

void TreeListTexts::Release(CTreeListBlockPool &pool, void *&block) noexcept
{
    if (block)
        pool.Release(block, std::size_t{headOf(block)->room} * 8);
    block = nullptr;
}

TreeListText TreeListTexts::View(const void *block, int column) noexcept
{
    const Head *head = headOf(block);
    if (!head || column < 0 || static_cast<std::uint32_t>(column) >= head->count)
        return {};
    const auto at = static_cast<std::uint32_t>(column);
    const std::uint32_t begin = beginOf(head, at);
    return {charactersOf(head) + (std::size_t{begin} << head->charShift), endOf(head, at) - begin,
            1u << head->charShift};
}

std::wstring TreeListTexts::Get(const void *block, int column)
{
    const TreeListText view = View(block, column);
    std::wstring text(view.length, L'\0');
    const auto *from = static_cast<const Bytes *>(view.characters);
    const unsigned shift = view.bytesEach / 2;
    for (std::uint32_t at = 0; at < view.length; ++at)
        text[at] = static_cast<wchar_t>(load(from + (std::size_t{at} << shift), shift));
    return text;
}

bool TreeListTexts::Equal(const TreeListText &stored, std::wstring_view text) noexcept
{
    if (stored.length != text.size())
        return false;
    const auto *from = static_cast<const Bytes *>(stored.characters);
    const unsigned shift = stored.bytesEach / 2;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (load(from + (at << shift), shift) != static_cast<std::uint32_t>(text[at]))
            return false;
    }
    return true;
}

// --- What an item reads of it ---

TreeListImages CTreeListItem::Images() const
{
    return m_pExtras ? m_pExtras->images : TreeListImages();
}

std::wstring CTreeListItem::Text(int column) const
{
    return TreeListTexts::Get(m_pTexts, column);
}

TreeListText CTreeListItem::TextView(int column) const
{
    return TreeListTexts::View(m_pTexts, column);
}

std::wstring CTreeListItem::SpareText(int column) const
{
    return m_pExtras ? TreeListTexts::Get(m_pExtras->spareTexts, column) : std::wstring();
}

int CTreeListItem::ColumnModify(int column) const
{
    const bool own = m_pExtras && column >= 0 && static_cast<std::uint32_t>(column) < m_pExtras->modifyCount;
    return own ? m_pExtras->modify[column] : -1;
}
