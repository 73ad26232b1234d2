// Whole documents, positions and the search for elements.
#include "catalog/Markup.h"

#include "catalog/MarkupBuild.h"
#include "catalog/MarkupFile.h"
#include "catalog/MarkupSaved.h"
#include "catalog/MarkupScan.h"

#include <algorithm>
#include <cerrno>
#include <new>

using namespace MarkupScan;

CMarkup::CMarkup()
{
    SetText(nullptr);
}

CMarkup::~CMarkup() = default;

CMarkup::CMarkup(const CMarkup &other)
{
    *this = other;
}

CMarkup &CMarkup::operator=(const CMarkup &other)
{
    if (this == &other)
        return *this;
    // What can fail comes first.
    CMarkupText text(other.m_text);
    CMarkupIndex index(other.m_index);
    auto pSaved = other.m_pSaved ? std::make_unique<CMarkupSavedPositions>(*other.m_pSaved) : nullptr;
    m_strError = other.m_strError;
    m_text = std::move(text);
    m_index = std::move(index);
    m_pSaved = std::move(pSaved);
    m_iParent = other.m_iParent;
    m_iMain = other.m_iMain;
    m_iChild = other.m_iChild;
    m_iDeleted = other.m_iDeleted;
    m_nNodeType = other.m_nNodeType;
    m_nNodeOffset = other.m_nNodeOffset;
    m_nNodeLength = other.m_nNodeLength;
    m_iBehindNode = other.m_iBehindNode;
    m_nDocFlags = other.m_nDocFlags;
    m_isInDocumentOrder = other.m_isInDocumentOrder;
    return *this;
}

// --- Whole documents -------------------------------------------------------------------------------------------------

bool CMarkup::Load(CMarkupArgument path)
{
    try {
        CMarkupText text;
        const MarkupFile::Result read = MarkupFile::Read(path.View(), text);
        if (!read.isGood) {
            m_strError = read.message;
            return false;
        }
        const std::wstring note =
            std::to_wstring(read.bytes) + L" bytes to " + std::to_wstring(text.Size()) + L" wide chars";
        m_text = std::move(text);
        return Parse(note);
    } catch (const std::bad_alloc &) {
        m_strError = MarkupFile::SystemText(ENOMEM);
        return false;
    }
}

bool CMarkup::Save(CMarkupArgument path)
{
    try {
        const MarkupFile::Result written = MarkupFile::Write(path.View(), m_text.View());
        m_strError = written.isGood ? std::to_wstring(m_text.Size()) + L" wide chars to " +
                                          std::to_wstring(written.bytes) + L" bytes"
                                    : written.message;
        return written.isGood;
    } catch (const std::bad_alloc &) {
        m_strError = MarkupFile::SystemText(ENOMEM);
        return false;
    }
}

bool CMarkup::SetText(CMarkupArgument text)
{
    if (!TakeCopy(text, m_text))
        return false;
    Parse({});
    if (text.IsNull())
        m_strError.clear();
    return IsWellFormed();
}

bool CMarkup::TakeCopy(const CMarkupArgument &text, CMarkupText &copy)
{
    const std::size_t length = text.View().size();
    if (length > kLongestText) {
        RefuseLength(length);
        return false;
    }
    copy.Assign(text.View());
    return true;
}

void CMarkup::RefuseLength(std::size_t length)
{
    m_strError = L"A text of " + std::to_wstring(length) + L" characters is too long: at most " +
                 std::to_wstring(kLongestText) + L" are possible";
}

/// Makes the index of the text. The error text is the note, ", " and the parse error.
bool CMarkup::Parse(const std::wstring &note)
{
    Rewind();
    m_pSaved.reset();
    m_iDeleted = 0;
    m_isInDocumentOrder = true;
    m_strError.clear();
    try {
        m_index.Reset(m_text.Size());
        if (m_text.Size() == 0) {
            m_strError = L"Empty document";
        } else {
            const CMarkupBuild build = BuildMarkup(m_text.View(), m_index, 0, (m_nDocFlags & kIgnoreCase) != 0);
            CMarkupRecord &document = m_index[0];
            document.length = static_cast<std::uint32_t>(m_text.Size());
            document.firstChild = build.first;
            if (build.isDamaged)
                document.Set(CMarkupRecord::kIllFormed);
            if (build.isTopDamaged)
                document.Set(CMarkupRecord::kDamaged);
            m_strError = build.error;
            // Without exactly one root nothing else matters.
            if (build.first == 0)
                m_strError = L"No root element";
            else if (m_index[build.first].next != 0)
                m_strError = L"Root element has sibling";
        }
    } catch (...) {
        // A text without its index would be of no use.
        m_text = CMarkupText();
        m_index.Reset(0);
        throw;
    }
    if (!note.empty())
        m_strError = m_strError.empty() ? note : note + L", " + m_strError;
    return IsWellFormed();
}

bool CMarkup::IsWellFormed() const
{
    if (m_index.End() == 0 || m_index[0].Has(CMarkupRecord::kIllFormed))
        return false;
    const std::uint32_t iRoot = m_index[0].firstChild;
    return iRoot != 0 && m_index[iRoot].next == 0;
}

std::size_t CMarkup::GetMemoryBesideText() const
{
    return m_index.MemoryBytes() + (m_pSaved ? m_pSaved->MemoryBytes() : 0);
}

// --- Walking ---------------------------------------------------------------------------------------------------------

void CMarkup::MoveTo(std::uint32_t iParent, std::uint32_t iMain, std::uint32_t iChild)
{
    m_iParent = iParent;
    m_iMain = iMain;
    m_iChild = iChild;
    m_nNodeType = iMain != 0 ? kElement : kNoNode;
    m_nNodeOffset = m_nNodeLength = 0;
    m_iBehindNode = 0;
}

void CMarkup::Rewind()
{
    MoveTo(0, 0, 0);
}

std::wstring_view CMarkup::TagName(std::uint32_t i) const
{
    const std::wstring_view tag = StartTag(i);
    std::size_t end = 1;
    while (end < tag.size() && !IsNameEnd(tag[end]))
        ++end;
    return tag.substr(1, end - 1);
}

bool CMarkup::IsName(std::wstring_view name, std::wstring_view given) const
{
    if (given.size() < name.size() ||
        !EqualMarkupNames(given.substr(0, name.size()), name, (m_nDocFlags & kIgnoreCase) != 0))
        return false;
    return given.size() == name.size() ||
           std::wstring_view(L" =/[]").find(given[name.size()]) != std::wstring_view::npos;
}

/// First of a chain of siblings that has the name; 0 for none.
std::uint32_t CMarkup::FindAmong(std::uint32_t iFirst, const CMarkupArgument &name) const
{
    std::uint32_t i = iFirst;
    while (i != 0 && !name.IsNull() && !IsName(TagName(i), name.View()))
        i = m_index[i].next;
    return i;
}

/// The element that the next search starts with.
std::uint32_t CMarkup::FirstBehindPosition() const
{
    if (m_iMain != 0)
        return m_index[m_iMain].next;
    return m_nNodeType != kNoNode ? m_iBehindNode : m_index[m_iParent].firstChild;
}

bool CMarkup::FindElement(CMarkupArgument name)
{
    const std::uint32_t i = FindAmong(FirstBehindPosition(), name);
    if (i != 0)
        MoveTo(m_iParent, i, 0);
    return i != 0;
}

bool CMarkup::FindChildElement(CMarkupArgument name)
{
    const std::uint32_t iMain = m_iMain != 0 ? m_iMain : FirstBehindPosition();
    if (iMain == 0)
        return false;
    const bool isFirst = m_iMain == 0 || m_iChild == 0;
    const std::uint32_t i = FindAmong(isFirst ? m_index[iMain].firstChild : m_index[m_iChild].next, name);
    if (i != 0)
        MoveTo(m_iParent, iMain, i);
    return i != 0;
}

bool CMarkup::EnterChild()
{
    if (m_iMain == 0)
        return false;
    MoveTo(m_iMain, m_iChild, 0);
    return true;
}

bool CMarkup::LeaveElement()
{
    if (m_iParent == 0)
        return false;
    MoveTo(m_index[m_iParent].parent, m_iParent, m_iMain);
    return true;
}

void CMarkup::SavePosition(CMarkupArgument name)
{
    if (!m_pSaved)
        m_pSaved = std::make_unique<CMarkupSavedPositions>();
    m_pSaved->Set(name.View(), {m_iParent, m_iMain, m_iChild});
}

bool CMarkup::RestorePosition(CMarkupArgument name)
{
    const CMarkupSavedPositions::Positions *pSaved = m_pSaved ? m_pSaved->Find(name.View()) : nullptr;
    if (!pSaved)
        return false;
    for (const std::uint32_t i : {pSaved->parent, pSaved->main, pSaved->child}) {
        if (m_index[i].Has(CMarkupRecord::kDeleted))
            return false;
    }
    MoveTo(pSaved->parent, pSaved->main, pSaved->child);
    return true;
}

std::wstring CMarkup::GetElementPath() const
{
    std::vector<std::uint32_t> way;
    for (std::uint32_t i = m_iMain; i != 0; i = m_index[i].parent)
        way.push_back(i);
    std::wstring path;
    for (auto step = way.rbegin(); step != way.rend(); ++step) {
        const std::wstring_view name = TagName(*step);
        std::size_t number = 1;
        for (std::uint32_t i = m_index[m_index[*step].parent].firstChild; i != *step; i = m_index[i].next)
            number += EqualMarkupNames(TagName(i), name, (m_nDocFlags & kIgnoreCase) != 0) ? 1 : 0;
        path += L'/';
        path += name;
        if (number > 1)
            path += L'[' + std::to_wstring(number) + L']';
    }
    return path;
}
