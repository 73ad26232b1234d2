#include "catalog/MarkupBuild.h"

#include "catalog/MarkupScan.h"

#include <algorithm>
#include <array>
#include <cwctype>
#include <utility>

using namespace MarkupScan;

bool EqualMarkupNames(std::wstring_view a, std::wstring_view b, bool ignoreCase)
{
    if (a.size() != b.size())
        return false;
    if (!ignoreCase)
        return a == b;
    return std::equal(a.begin(), a.end(), b.begin(), [](wchar_t x, wchar_t y) {
        return std::towlower(static_cast<std::wint_t>(x)) == std::towlower(static_cast<std::wint_t>(y));
    });
}

namespace {

/// An element whose end tag has not come yet. The first one stands for the parent of the whole.
struct OpenElement {
    std::uint32_t record;
    std::uint32_t nameStart, nameLength;
    std::uint32_t startTagLength;
    std::uint32_t firstChild, lastChild;
    std::uint32_t below;     ///< stack place of the next outer element of the same bucket; 0: none
    bool hasForeignChildren; ///< some of its children came from elements that were not ended
};

class Builder {
public:
    Builder(std::wstring_view text, CMarkupIndex &index, std::uint32_t iParent, bool ignoreCase)
        : m_text(text), m_begin(text.data()), m_end(text.data() + text.size()), m_index(index), m_parent(iParent),
          m_level(std::size_t{index[iParent].Level()} + 1), m_ignoreCase(ignoreCase)
    {
    }
    CMarkupBuild Run();

private:
    void AddElement(const wchar_t *p, const wchar_t *nameEnd, const wchar_t *behind, bool isEmptyTag);
    void Close(std::uint32_t nameStart, std::uint32_t nameLength, std::uint32_t end);
    void CloseTop(std::uint32_t end, std::uint32_t endTagLength);
    std::uint32_t FindOpen(std::wstring_view name) const;
    void EndTop();
    void Fault(const Token &token);
    void Damage();
    void GiveChildrenTheirParent(std::uint32_t iFirst, std::uint32_t iParent);
    void CorrectLevels(std::uint32_t begin);

    std::uint32_t Offset(const wchar_t *p) const { return static_cast<std::uint32_t>(p - m_begin); }
    std::wstring_view NameOf(const OpenElement &element) const
    {
        return m_text.substr(element.nameStart, element.nameLength);
    }
    /// Only elements of one bucket can have equal names, so that an end tag without a start tag costs little however
    /// deep it stands.
    std::uint32_t &Bucket(std::wstring_view name) { return m_buckets[BucketOf(name)]; }
    std::size_t BucketOf(std::wstring_view name) const
    {
        if (name.empty() || m_ignoreCase)
            return name.size() % kBuckets;
        const auto ends = static_cast<std::uint32_t>(name.front()) * 7 + static_cast<std::uint32_t>(name.back()) * 31 +
                          static_cast<std::uint32_t>(name[name.size() / 2]);
        return (ends + name.size() * 131) % kBuckets;
    }

    static constexpr std::size_t kBuckets = 256;

    std::wstring_view m_text;
    const wchar_t *m_begin, *m_end;
    CMarkupIndex &m_index;
    std::uint32_t m_parent;
    std::size_t m_level; ///< of the top-level elements
    bool m_ignoreCase;
    bool m_hasForeignChildren = false; ///< anywhere
    bool m_hasToldNotEnded = false;    ///< only the first element that is not ended is told
    std::vector<OpenElement> m_open;
    std::array<std::uint32_t, kBuckets> m_buckets{};
    CMarkupBuild m_result;
};

CMarkupBuild Builder::Run()
{
    m_result.begin = m_index.End();
    m_open.push_back({m_parent, 0, 0, 0, 0, 0, 0, false});
    const wchar_t *p = m_begin;
    for (;;) {
        // What stands between tags is skipped; behind a tag that is mostly a line end.
        while (p != m_end && IsWhiteSpace(*p))
            ++p;
        if (p != m_end && *p != L'<')
            p = FindMarkup(p, m_end);
        if (p == m_end)
            break;
        if (IsNameStart(p[1]) && p + 1 != m_end) {
            const wchar_t *nameEnd = p + 2;
            while (nameEnd < m_end && !IsNameEnd(*nameEnd))
                ++nameEnd;
            const wchar_t *close = FindTagEnd(nameEnd, m_end);
            if (close != m_end) {
                AddElement(p, nameEnd, close + 1, IsEmptyTagEnd(nameEnd, close));
                p = close + 1;
                continue;
            }
        }
        const Token token = ScanToken(m_text, Offset(p));
        if (token.kind == TokenKind::EndTag)
            Close(token.nameStart, token.nameLength, token.End());
        else if (token.kind == TokenKind::Error)
            Fault(token);
        p = m_begin + token.End();
    }
    while (m_open.size() > 1) {
        if (!std::exchange(m_hasToldNotEnded, true))
            m_result.error = L"Element '" + std::wstring(NameOf(m_open.back())) + L"' at offset " +
                             std::to_wstring(m_open.back().nameStart - 1) + L" not ended";
        EndTop();
    }
    const OpenElement &top = m_open.front();
    m_result.first = top.firstChild;
    m_result.last = top.lastChild;
    m_result.end = m_index.End();
    if (top.firstChild != 0) {
        m_index[top.firstChild].previous = top.lastChild;
        if (top.hasForeignChildren)
            GiveChildrenTheirParent(top.firstChild, m_parent);
    }
    if (m_hasForeignChildren)
        CorrectLevels(m_result.begin);
    return std::move(m_result);
}

void Builder::AddElement(const wchar_t *p, const wchar_t *nameEnd, const wchar_t *behind, bool isEmptyTag)
{
    const std::uint32_t i = m_index.Add();
    OpenElement &open = m_open.back();
    const auto length = static_cast<std::uint32_t>(behind - p);
    CMarkupRecord &record = m_index[i];
    record.start = Offset(p);
    record.length = length;
    record.tagLengths = length & CMarkupRecord::kStartTagMask;
    record.levelAndFlags = 0;
    record.SetLevel(m_level + m_open.size() - 1);
    record.parent = open.record;
    record.firstChild = 0;
    record.next = 0;
    if ((length & ~CMarkupRecord::kStartTagMask) != 0)
        m_index.SetTagLengths(i, length, 0);
    if (open.firstChild == 0) {
        open.firstChild = i;
        record.Set(CMarkupRecord::kFirstChild);
        record.previous = i;
    } else {
        m_index[open.lastChild].next = i;
        record.previous = open.lastChild;
    }
    open.lastChild = i;
    if (isEmptyTag)
        return;
    const std::wstring_view name(p + 1, static_cast<std::size_t>(nameEnd - p - 1));
    std::uint32_t &bucket = Bucket(name);
    const auto place = static_cast<std::uint32_t>(m_open.size());
    m_open.push_back({i, Offset(p + 1), static_cast<std::uint32_t>(name.size()), length, 0, 0, bucket, false});
    bucket = place;
}

std::uint32_t Builder::FindOpen(std::wstring_view name) const
{
    std::uint32_t place = m_buckets[BucketOf(name)];
    while (place != 0 && !EqualMarkupNames(NameOf(m_open[place]), name, m_ignoreCase))
        place = m_open[place].below;
    return place;
}

void Builder::Close(std::uint32_t nameStart, std::uint32_t nameLength, std::uint32_t end)
{
    const std::wstring_view name = m_text.substr(nameStart, nameLength);
    const std::uint32_t slash = nameStart - 1;
    const std::uint32_t place = FindOpen(name);
    if (place == 0) {
        m_result.error = L"No start tag for end tag '" + std::wstring(name) + L"' at offset " + std::to_wstring(slash);
        Damage();
        return;
    }
    while (m_open.size() - 1 > place) {
        if (!std::exchange(m_hasToldNotEnded, true))
            m_result.error = L"End tag '" + std::wstring(name) + L"' at offset " + std::to_wstring(slash) +
                             L" does not match start tag '" + std::wstring(NameOf(m_open.back())) + L"' at offset " +
                             std::to_wstring(m_open.back().nameStart - 1);
        EndTop();
    }
    CloseTop(end, end - slash + 1);
}

void Builder::CloseTop(std::uint32_t end, std::uint32_t endTagLength)
{
    const OpenElement &open = m_open.back();
    CMarkupRecord &record = m_index[open.record];
    record.length = end - record.start;
    m_index.SetTagLengths(open.record, open.startTagLength, endTagLength);
    record.firstChild = open.firstChild;
    if (open.firstChild != 0) {
        m_index[open.firstChild].previous = open.lastChild;
        if (open.hasForeignChildren)
            GiveChildrenTheirParent(open.firstChild, open.record);
    }
    Bucket(NameOf(open)) = open.below;
    m_open.pop_back();
}

/// The innermost open element is not ended.
void Builder::EndTop()
{
    const OpenElement open = m_open.back();
    Bucket(NameOf(open)) = open.below;
    m_open.pop_back();
    OpenElement &outer = m_open.back();
    CMarkupRecord &record = m_index[open.record];
    record.Set(CMarkupRecord::kNotEnded);
    if (record.Has(CMarkupRecord::kDamaged)) {
        record.Drop(CMarkupRecord::kDamaged);
        if (m_open.size() > 1)
            m_index[outer.record].Set(CMarkupRecord::kDamaged);
        else
            m_result.isTopDamaged = true;
    }
    m_result.isDamaged = true;
    if (open.firstChild == 0)
        return;
    record.next = open.firstChild;
    m_index[open.firstChild].previous = open.record;
    m_index[open.firstChild].Drop(CMarkupRecord::kFirstChild);
    outer.lastChild = open.lastChild;
    outer.hasForeignChildren = m_hasForeignChildren = true;
}

/// The scanner's messages count only where nothing was said before.
void Builder::Fault(const Token &token)
{
    if (m_result.error.empty())
        m_result.error = FaultText(token);
    Damage();
}

/// Around the innermost open element.
void Builder::Damage()
{
    m_result.isDamaged = true;
    if (m_open.size() > 1)
        m_index[m_open.back().record].Set(CMarkupRecord::kDamaged);
    else
        m_result.isTopDamaged = true;
}

void Builder::GiveChildrenTheirParent(std::uint32_t iFirst, std::uint32_t iParent)
{
    for (std::uint32_t i = iFirst; i != 0; i = m_index[i].next)
        m_index[i].parent = iParent;
}

/// Parents stand before their children in the index, so that one pass is enough.
void Builder::CorrectLevels(std::uint32_t begin)
{
    for (std::uint32_t i = begin; i < m_index.End(); ++i) {
        CMarkupRecord &record = m_index[i];
        record.SetLevel(record.parent == m_parent ? m_level : std::size_t{m_index[record.parent].Level()} + 1);
    }
}

} // namespace

CMarkupBuild BuildMarkup(std::wstring_view text, CMarkupIndex &index, std::uint32_t iParent, bool ignoreCase)
{
    return Builder(text, index, iParent, ignoreCase).Run();
}
