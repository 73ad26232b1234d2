#include "catalog/MarkupText.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <new>
#include <utility>

const wchar_t CMarkupText::s_empty[kPadding] = {};

namespace {

constexpr std::size_t kLargePage = std::size_t{1} << 21;
/// In a new block, so that a small edit or two need no larger one.
constexpr std::size_t kRoomForEdits = 128;

wchar_t *Allocate(std::size_t capacity)
{
    const std::size_t bytes = (capacity + CMarkupText::kPadding) * sizeof(wchar_t);
    void *pBlock = std::malloc(bytes);
    if (!pBlock)
        throw std::bad_alloc();
    // Whole large pages inside the block only, so that no memory is taken beyond the text. A system without them just
    // refuses.
    const auto begin = (reinterpret_cast<std::uintptr_t>(pBlock) + kLargePage - 1) / kLargePage * kLargePage;
    const auto end = (reinterpret_cast<std::uintptr_t>(pBlock) + bytes) / kLargePage * kLargePage;
    if (begin < end) {
        ::madvise(reinterpret_cast<void *>(begin), end - begin, MADV_HUGEPAGE);
        return static_cast<wchar_t *>(pBlock);
    }
    return static_cast<wchar_t *>(pBlock);
}

std::size_t GrownCapacity(std::size_t needed)
{
    return needed + needed / 2 + 128;
}

void Copy(wchar_t *pTo, const wchar_t *pFrom, std::size_t count)
{
    if (count > 0)
        std::wmemcpy(pTo, pFrom, count);
}

/// Characters that move together.
struct Run {
    std::size_t from, to, count;
};

} // namespace

CMarkupText::~CMarkupText()
{
    Free();
}

CMarkupText::CMarkupText(const CMarkupText &other)
{
    Assign(other.View());
}

CMarkupText &CMarkupText::operator=(const CMarkupText &other)
{
    Assign(other.View());
    return *this;
}

CMarkupText::CMarkupText(CMarkupText &&other) noexcept
{
    *this = std::move(other);
}

CMarkupText &CMarkupText::operator=(CMarkupText &&other) noexcept
{
    std::swap(m_pData, other.m_pData);
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
    std::swap(m_noted, other.m_noted);
    std::swap(m_strNoted, other.m_strNoted);
    return *this;
}

void CMarkupText::Free()
{
    if (m_capacity > 0)
        std::free(m_pData);
    m_pData = const_cast<wchar_t *>(s_empty);
    m_size = m_capacity = 0;
    m_noted.clear();
    m_strNoted.clear();
}

void CMarkupText::Assign(std::wstring_view text)
{
    // A block that is much too large would stay so for the life of the document.
    if (m_noted.empty() && text.size() <= m_capacity && m_capacity / 4 <= text.size()) {
        std::wmemmove(m_pData, text.data(), text.size());
        SetSize(text.size());
        return;
    }
    CMarkupText other;
    Copy(other.Prepare(text.size()), text.data(), text.size());
    other.SetSize(text.size());
    *this = std::move(other);
}

wchar_t *CMarkupText::Prepare(std::size_t size)
{
    Free();
    if (size == 0)
        return m_pData;
    m_pData = Allocate(size + kRoomForEdits);
    m_capacity = size + kRoomForEdits;
    SetSize(0);
    return m_pData;
}

void CMarkupText::SetSize(std::size_t size)
{
    m_size = size;
    if (m_capacity > 0)
        std::wmemset(m_pData + size, L'\0', kPadding);
}

void CMarkupText::Replace(std::size_t offset, std::size_t removed, std::wstring_view inserted)
{
    const std::size_t needed = m_size - removed + inserted.size();
    const std::size_t behind = m_size - offset - removed;
    if (m_noted.empty() && removed == inserted.size()) {
        Copy(m_pData + offset, inserted.data(), inserted.size());
        return;
    }
    if (!m_noted.empty() || behind >= kWorthNoting) {
        if (m_noted.size() >= kMostNoted || m_strNoted.size() + inserted.size() > kMostNotedCharacters)
            Settle();
        if (inserted.size() <= kMostNotedCharacters / 2) {
            Note(offset, removed, inserted);
            return;
        }
    }
    if (needed <= m_capacity) {
        if (behind > 0)
            std::wmemmove(m_pData + offset + inserted.size(), m_pData + offset + removed, behind);
        Copy(m_pData + offset, inserted.data(), inserted.size());
        SetSize(needed);
        return;
    }
    const std::size_t capacity = GrownCapacity(needed);
    wchar_t *pData = Allocate(capacity);
    Copy(pData, m_pData, offset);
    Copy(pData + offset, inserted.data(), inserted.size());
    Copy(pData + offset + inserted.size(), m_pData + offset + removed, behind);
    Free();
    m_pData = pData;
    m_capacity = capacity;
    SetSize(needed);
}

// --- Noted splices ---------------------------------------------------------------------------------------------------

std::size_t CMarkupText::FirstNotedEndingFrom(std::size_t offset) const
{
    const auto found = std::lower_bound(m_noted.begin(), m_noted.end(), offset,
                                        [](const Noted &noted, std::size_t wanted) { return noted.End() < wanted; });
    return static_cast<std::size_t>(found - m_noted.begin());
}

/// Place in the block of a character that stays and stands before the noted splice `next`, behind the one before it.
std::size_t CMarkupText::BlockOffset(std::size_t offset, std::size_t next) const
{
    return next == 0 ? offset : m_noted[next - 1].blockEnd + (offset - m_noted[next - 1].End());
}

void CMarkupText::Note(std::size_t offset, std::size_t removed, std::wstring_view inserted)
{
    const std::size_t end = offset + removed;
    // Those that the new one overlaps or touches become one with it.
    const std::size_t first = FirstNotedEndingFrom(offset);
    std::size_t last = first;
    while (last < m_noted.size() && m_noted[last].offset <= end)
        ++last;
    std::wstring text;
    std::size_t begin = offset;
    std::size_t blockBegin = 0, blockEnd = 0;
    if (first < last && m_noted[first].offset <= offset) {
        const Noted &front = m_noted[first];
        begin = front.offset;
        blockBegin = front.blockBegin;
        text.assign(m_strNoted, front.characters, offset - front.offset);
    } else {
        blockBegin = BlockOffset(offset, first);
    }
    text += inserted;
    if (first < last && end <= m_noted[last - 1].End()) {
        const Noted &back = m_noted[last - 1];
        blockEnd = back.blockEnd;
        text.append(m_strNoted, back.characters + (end - back.offset), back.End() - end);
    } else {
        blockEnd = BlockOffset(end, last);
    }
    const auto place = m_noted.begin() + static_cast<std::ptrdiff_t>(first);
    const std::size_t characters = m_strNoted.size();
    m_strNoted += text;
    const Noted noted{static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(text.size()),
                      static_cast<std::uint32_t>(blockBegin), static_cast<std::uint32_t>(blockEnd), characters};
    if (first == last) {
        m_noted.insert(place, noted);
    } else {
        *place = noted;
        m_noted.erase(place + 1, m_noted.begin() + static_cast<std::ptrdiff_t>(last));
    }
    const auto difference = static_cast<std::uint32_t>(inserted.size() - removed); // sums modulo 2^32 are right
    for (std::size_t i = first + 1; i < m_noted.size(); ++i)
        m_noted[i].offset += difference;
    m_size = m_size - removed + inserted.size();
}

wchar_t CMarkupText::At(std::size_t offset) const
{
    return offset < m_size ? Part(offset, 1).front() : L'\0';
}

std::wstring_view CMarkupText::PartBesideNoted(std::size_t offset, std::size_t length) const
{
    std::size_t next = FirstNotedEndingFrom(offset);
    if (next < m_noted.size() && m_noted[next].End() == offset)
        ++next;
    if (next == m_noted.size() || m_noted[next].offset >= offset + length)
        return {m_pData + BlockOffset(offset, next), length};
    const Noted &noted = m_noted[next];
    if (noted.offset <= offset && offset + length <= noted.End())
        return std::wstring_view(m_strNoted).substr(noted.characters + (offset - noted.offset), length);
    Settle();
    return {m_pData + offset, length};
}

/// Does the noted splices, moving each run of characters between them once.
void CMarkupText::Settle() const
{
    const std::size_t blockSize = BlockOffset(m_size, m_noted.size());
    const auto run = [&](std::size_t i) { // the run before noted splice i, or the last one
        const std::size_t from = i == 0 ? 0 : m_noted[i - 1].blockEnd;
        const std::size_t to = i == 0 ? 0 : m_noted[i - 1].End();
        const std::size_t end = i == m_noted.size() ? blockSize : m_noted[i].blockBegin;
        return Run{from, to, end - from};
    };
    if (m_size <= m_capacity) {
        // Those that move toward the front first, in order, then the others from the end: none runs over another.
        for (std::size_t i = 1; i <= m_noted.size(); ++i) {
            if (const Run r = run(i); r.to < r.from)
                std::wmemmove(m_pData + r.to, m_pData + r.from, r.count);
        }
        for (std::size_t i = m_noted.size(); i > 0; --i) {
            if (const Run r = run(i); r.to > r.from)
                std::wmemmove(m_pData + r.to, m_pData + r.from, r.count);
        }
    } else {
        const std::size_t capacity = GrownCapacity(m_size);
        wchar_t *pData = Allocate(capacity);
        for (std::size_t i = 0; i <= m_noted.size(); ++i) {
            const Run r = run(i);
            Copy(pData + r.to, m_pData + r.from, r.count);
        }
        if (m_capacity > 0)
            std::free(m_pData);
        m_pData = pData;
        m_capacity = capacity;
    }
    for (const Noted &noted : m_noted)
        Copy(m_pData + noted.offset, m_strNoted.data() + noted.characters, noted.length);
    m_noted.clear();
    m_strNoted.clear();
    std::wmemset(m_pData + m_size, L'\0', kPadding);
}
