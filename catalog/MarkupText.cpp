#include "catalog/MarkupText.h"

#include <sys/mman.h>

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <new>
#include <utility>

const wchar_t CMarkupText::s_empty[kPadding] = {};

namespace {

constexpr std::size_t kLargePage = std::size_t{1} << 21;

wchar_t *Allocate(std::size_t capacity)
{
    const std::size_t bytes = (capacity + CMarkupText::kPadding) * sizeof(wchar_t);
    if (bytes < 2 * kLargePage) {
        if (void *pBlock = std::malloc(bytes))
            return static_cast<wchar_t *>(pBlock);
        throw std::bad_alloc();
    }
    void *pBlock = nullptr;
    if (::posix_memalign(&pBlock, kLargePage, bytes) != 0)
        throw std::bad_alloc();
    // Whole large pages only, so that no memory is taken beyond the text. A system without them just refuses.
    ::madvise(pBlock, bytes / kLargePage * kLargePage, MADV_HUGEPAGE);
    return static_cast<wchar_t *>(pBlock);
}

void Copy(wchar_t *pTo, const wchar_t *pFrom, std::size_t count)
{
    if (count > 0)
        std::wmemcpy(pTo, pFrom, count);
}

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
    return *this;
}

void CMarkupText::Free()
{
    if (m_capacity > 0)
        std::free(m_pData);
    m_pData = const_cast<wchar_t *>(s_empty);
    m_size = m_capacity = 0;
}

void CMarkupText::Assign(std::wstring_view text)
{
    // A block that is much too large would stay so for the life of the document.
    if (text.size() <= m_capacity && m_capacity / 4 <= text.size()) {
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
    m_pData = Allocate(size);
    m_capacity = size;
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
    if (needed <= m_capacity) {
        if (removed != inserted.size() && behind > 0)
            std::wmemmove(m_pData + offset + inserted.size(), m_pData + offset + removed, behind);
        Copy(m_pData + offset, inserted.data(), inserted.size());
        SetSize(needed);
        return;
    }
    const std::size_t capacity = needed + needed / 2 + 128;
    wchar_t *pData = Allocate(capacity);
    Copy(pData, m_pData, offset);
    Copy(pData + offset, inserted.data(), inserted.size());
    Copy(pData + offset + inserted.size(), m_pData + offset + removed, behind);
    Free();
    m_pData = pData;
    m_capacity = capacity;
    SetSize(needed);
}
