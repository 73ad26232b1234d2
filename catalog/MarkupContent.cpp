// Fragments and the content of elements.
#include "catalog/Markup.h"

#include "catalog/MarkupBuild.h"
#include "catalog/MarkupScan.h"

using namespace MarkupScan;

namespace {

constexpr std::wstring_view kCDataOpen = L"<![CDATA[", kCDataClose = L"]]>";

} // namespace

/// Escaped text, or CDATA sections; a "]]>" in the text is split between two of them.
std::wstring CMarkup::AsContent(std::wstring_view text, int flags)
{
    if ((flags & kAsCData) == 0)
        return Escape(text, false);
    std::wstring content(kCDataOpen);
    for (;;) {
        const std::size_t close = text.find(kCDataClose);
        if (close == text.npos)
            break;
        content += text.substr(0, close);
        content += L"]]]]><![CDATA[>";
        text.remove_prefix(close + kCDataClose.size());
    }
    content += text;
    content += kCDataClose;
    return content;
}

std::wstring CMarkup::GetChildFragment() const
{
    if (m_iChild == 0)
        return {};
    const std::uint32_t start = m_index[m_iChild].start;
    return std::wstring(m_text.Part(start, BehindWhiteSpace(EndOf(m_iChild)) - start));
}

void CMarkup::TakeIn(const CMarkupBuild &build, const Place &place, std::int64_t offset)
{
    m_index.ShiftStarts(build.begin, build.end, static_cast<std::uint32_t>(offset));
    if (build.first != 0)
        Link(place, build.first, build.last);
    if (build.isDamaged)
        m_index[0].Set(CMarkupRecord::kIllFormed);
    if (build.isTopDamaged)
        m_index[place.parent].Set(CMarkupRecord::kDamaged);
}

bool CMarkup::InsertChildFragment(CMarkupArgument text)
{
    CMarkupText piece;
    if (m_iMain == 0 || text.View().empty() || !TakeCopy(text, piece))
        return false;
    const Place place = m_iChild != 0 ? Place{m_iMain, m_iChild, m_index[m_iChild].start} : FrontOfContent(m_iMain);
    m_isInDocumentOrder = false;
    const CMarkupBuild build = BuildMarkup(piece.View(), m_index, m_iMain, (m_nDocFlags & kIgnoreCase) != 0);
    std::uint32_t from = 0, to = static_cast<std::uint32_t>(piece.Size());
    if (!build.isDamaged && build.first != 0) {
        from = m_index[build.first].start;
        to = EndOf(build.last);
    }
    const std::uint32_t offset = InsertAt(place, piece.View().substr(from, to - from), false);
    if (offset == kRefused) {
        m_index.Truncate(build.begin);
        return false;
    }
    TakeIn(build, place, std::int64_t{offset} - from);
    if (build.first != 0)
        m_iChild = build.first;
    return !build.isDamaged && build.first != 0 && build.first == build.last;
}

std::wstring CMarkup::ContentText(std::uint32_t i) const
{
    if (i == 0 || m_index[i].firstChild != 0)
        return {};
    std::wstring content;
    const std::uint32_t end = ContentEnd(i);
    for (std::uint32_t at = ContentStart(i); at < end;) {
        const Token token = ScanToken(m_text.View().substr(0, end), at);
        content += TokenText(token);
        at = token.End();
    }
    return content;
}

/// What a token adds to the text of its element.
std::wstring CMarkup::TokenText(const Token &token) const
{
    const std::wstring_view whole = m_text.View().substr(token.start, token.length);
    if (token.kind == TokenKind::Text || token.kind == TokenKind::WhiteSpace)
        return Unescape(whole);
    if (token.kind != TokenKind::CData)
        return {};
    const std::size_t close = whole.size() - kCDataClose.size(), open = whole.find(L'[', 3);
    return open < close ? std::wstring(whole.substr(open + 1, close - open - 1)) : std::wstring();
}

std::wstring CMarkup::GetElementText() const
{
    return ContentText(m_iMain);
}

std::wstring CMarkup::GetChildText() const
{
    return ContentText(m_iChild);
}

/// Puts other text in the place of all content; the child elements are gone.
bool CMarkup::ReplaceContent(std::uint32_t i, std::wstring_view markup)
{
    const std::size_t startTag = m_index.StartTagLength(i), endTag = m_index.EndTagLength(i);
    if (endTag == 0) {
        return markup.empty() || InsertAt({i, 0, ContentStart(i)}, markup, false) != kRefused;
    }
    const std::uint32_t start = ContentStart(i);
    const std::size_t removed = m_index[i].length - startTag - endTag;
    if (!Splice(start, removed, markup))
        return false;
    if (const std::uint32_t iFirst = m_index[i].firstChild; iFirst != 0) {
        m_index[i].firstChild = 0;
        GiveBack(iFirst);
    }
    if (i == m_iMain)
        m_iChild = 0;
    Shift(i, 0, static_cast<std::int64_t>(markup.size()) - static_cast<std::int64_t>(removed));
    return true;
}

bool CMarkup::ReplaceText(std::uint32_t i, const CMarkupArgument &text, int flags)
{
    if (i == 0)
        return false;
    return ReplaceContent(i, text.View().empty() ? std::wstring() : AsContent(text.View(), flags));
}

bool CMarkup::SetElementText(CMarkupArgument text, int flags)
{
    return ReplaceText(m_iMain, text, flags);
}

bool CMarkup::SetChildText(CMarkupArgument text, int flags)
{
    return ReplaceText(m_iChild, text, flags);
}

bool CMarkup::SetContent(std::uint32_t i, const CMarkupArgument &markup)
{
    CMarkupText piece;
    if (i == 0 || !TakeCopy(markup, piece))
        return false;
    const std::uint32_t begin = m_index.End();
    const bool wasInDocumentOrder = m_isInDocumentOrder;
    const CMarkupBuild build = BuildMarkup(piece.View(), m_index, i, (m_nDocFlags & kIgnoreCase) != 0);
    if (build.begin != build.end)
        m_isInDocumentOrder = false;
    if (!ReplaceContent(i, piece.View())) {
        m_index.Truncate(begin);
        m_isInDocumentOrder = wasInDocumentOrder;
        return false;
    }
    TakeIn(build, {i, 0, 0}, ContentStart(i));
    return !build.isDamaged;
}

bool CMarkup::SetElementContent(CMarkupArgument markup)
{
    return SetContent(m_iMain, markup);
}

bool CMarkup::SetChildContent(CMarkupArgument markup)
{
    return SetContent(m_iChild, markup);
}
