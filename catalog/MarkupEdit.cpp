// Splicing the text and shifting the index; attributes; adding and removing elements.
#include "catalog/Markup.h"

#include "catalog/MarkupScan.h"

#include <algorithm>

using namespace MarkupScan;

namespace {

constexpr std::wstring_view kLineEnd = L"\r\n";

/// A name that can be read again as the same name.
bool IsUsableName(std::wstring_view name)
{
    return !name.empty() && IsNameStart(name.front()) && std::none_of(name.begin(), name.end(), [](wchar_t c) {
        return IsNameEnd(c) || IsQuote(c) || c == L'<' || c == L'=' || c == L'&' || c == L'\0';
    });
}

/// An end tag's room for its name.
constexpr std::size_t kEndTagFrame = std::wstring_view(L"</>").size();

} // namespace

// --- Places ----------------------------------------------------------------------------------------------------------

std::uint32_t CMarkup::ContentStart(std::uint32_t i) const
{
    return i == 0 ? 0 : m_index[i].start + static_cast<std::uint32_t>(m_index.StartTagLength(i));
}

std::uint32_t CMarkup::ContentEnd(std::uint32_t i) const
{
    if (i == 0)
        return static_cast<std::uint32_t>(m_text.Size());
    const auto endTagLength = static_cast<std::uint32_t>(m_index.EndTagLength(i));
    return endTagLength == 0 ? ContentStart(i) : EndOf(i) - endTagLength;
}

bool CMarkup::IsEmptyTag(std::uint32_t i) const
{
    return i != 0 && m_index.EndTagLength(i) == 0 && !m_index[i].Has(CMarkupRecord::kNotEnded);
}

/// White space before "<" or the end of the text belongs to what stands before it.
std::uint32_t CMarkup::BehindWhiteSpace(std::uint32_t offset) const
{
    std::uint32_t behind = offset;
    while (IsWhiteSpace(m_text.At(behind)))
        ++behind;
    return behind == m_text.Size() || m_text.At(behind) == L'<' ? behind : offset;
}

CMarkup::Place CMarkup::BehindElement(std::uint32_t i) const
{
    return {m_index[i].parent, m_index[i].next, BehindWhiteSpace(EndOf(i))};
}

CMarkup::Place CMarkup::FrontOfContent(std::uint32_t i) const
{
    return {i, m_index[i].firstChild, BehindWhiteSpace(ContentStart(i))};
}

// --- Splicing and shifting -------------------------------------------------------------------------------------------

bool CMarkup::Splice(std::uint32_t offset, std::size_t removed, std::wstring_view inserted)
{
    const std::size_t size = m_text.Size() - removed + inserted.size();
    if (size > kLongestText) {
        RefuseLength(size);
        return false;
    }
    m_text.Replace(offset, removed, inserted);
    return true;
}

/// Shifts an element, its following siblings and all below them.
void CMarkup::ShiftFrom(std::uint32_t iFirst, std::uint32_t difference)
{
    const std::uint32_t iParent = m_index[iFirst].parent;
    std::uint32_t at = iFirst;
    for (CMarkupRecord *pRecord = &m_index[at];;) {
        pRecord->start += difference;
        std::uint32_t next = pRecord->firstChild;
        if (next == 0) {
            const CMarkupRecord *pEnded = pRecord;
            while (pEnded->next == 0) {
                if (pEnded->parent == iParent)
                    return;
                pEnded = &m_index[pEnded->parent];
            }
            next = pEnded->next;
        }
        // Mostly it stands right behind; as a guess that is right, this does not wait for the record to be read.
        if (next == at + 1 && (next & (CMarkupIndex::kSegmentSize - 1)) != 0)
            ++pRecord;
        else
            pRecord = &m_index[next];
        at = next;
    }
}

void CMarkup::Shift(std::uint32_t iParent, std::uint32_t iFirst, std::int64_t difference)
{
    if (difference == 0)
        return;
    const auto change = static_cast<std::uint32_t>(difference); // sums modulo 2^32 are right
    std::uint32_t iLater = iFirst;
    for (std::uint32_t around = iParent;; around = m_index[around].parent) {
        if (m_isInDocumentOrder) {
            // All that stands behind in the text stands behind in the index, in one run.
            if (iLater != 0) {
                m_index.ShiftStarts(iLater, m_index.End(), change);
                iLater = 0;
                for (; around != 0; around = m_index[around].parent)
                    m_index[around].length += change;
            }
        } else if (iLater != 0) {
            ShiftFrom(iLater, change);
        }
        m_index[around].length += change;
        if (around == 0)
            return;
        iLater = m_index[around].next;
    }
}

void CMarkup::Link(const Place &place, std::uint32_t iFirst, std::uint32_t iLast)
{
    CMarkupRecord &parent = m_index[place.parent];
    CMarkupRecord &first = m_index[iFirst], &last = m_index[iLast];
    last.next = place.before;
    first.Drop(CMarkupRecord::kFirstChild);
    if (parent.firstChild == place.before) { // in front of all, or the only ones
        first.Set(CMarkupRecord::kFirstChild);
        first.previous = iLast;
        if (place.before != 0) {
            CMarkupRecord &before = m_index[place.before];
            first.previous = before.previous;
            before.previous = iLast;
            before.Drop(CMarkupRecord::kFirstChild);
        }
        parent.firstChild = iFirst;
        return;
    }
    // The one whose "previous" names the element in front: the next sibling, or the first one, which knows the last.
    CMarkupRecord &knowing = m_index[place.before != 0 ? place.before : parent.firstChild];
    first.previous = knowing.previous;
    m_index[knowing.previous].next = iFirst;
    knowing.previous = iLast;
}

void CMarkup::Unlink(std::uint32_t i)
{
    const CMarkupRecord record = m_index[i];
    CMarkupRecord &parent = m_index[record.parent];
    if (parent.firstChild == i) {
        parent.firstChild = record.next;
        if (record.next != 0) {
            m_index[record.next].Set(CMarkupRecord::kFirstChild);
            m_index[record.next].previous = record.previous;
        }
        return;
    }
    m_index[record.previous].next = record.next;
    m_index[record.next != 0 ? record.next : parent.firstChild].previous = record.previous;
}

/// Puts a chain of unlinked siblings with all below them on the list of deleted records.
void CMarkup::GiveBack(std::uint32_t iFirst)
{
    std::uint32_t iLast = iFirst;
    while (m_index[iLast].next != 0)
        iLast = m_index[iLast].next;
    for (std::uint32_t i = iFirst; i != 0; i = m_index[i].next) {
        CMarkupRecord &record = m_index[i];
        record.Set(CMarkupRecord::kDeleted);
        if (record.firstChild != 0) {
            m_index[iLast].next = record.firstChild;
            iLast = m_index[record.firstChild].previous;
        }
    }
    m_index[iLast].next = m_iDeleted;
    m_iDeleted = iFirst;
}

std::uint32_t CMarkup::InsertAt(const Place &place, std::wstring_view content, bool withLineEnd)
{
    const std::uint32_t iParent = place.parent;
    const std::wstring_view lineEnd = withLineEnd ? kLineEnd : std::wstring_view();
    std::wstring front, behind(lineEnd);
    std::uint32_t offset = place.offset;
    std::size_t removed = 0;
    std::size_t startTag = 0, endTag = 0;
    if (iParent != 0) {
        startTag = m_index.StartTagLength(iParent);
        endTag = m_index.EndTagLength(iParent);
        if (endTag == 0) {
            const std::wstring_view name = TagName(iParent);
            offset = ContentStart(iParent);
            if (IsEmptyTag(iParent)) {
                offset -= 2;
                removed = 2;
                startTag -= 1;
                front = L'>';
            }
            front += lineEnd;
            behind += L"</" + std::wstring(name) + L'>';
            endTag = name.size() + kEndTagFrame;
        } else if (startTag + endTag == m_index[iParent].length) {
            front = lineEnd;
        }
    }
    const std::wstring inserted = front + std::wstring(content) + behind;
    if (!Splice(offset, removed, inserted))
        return kRefused;
    if (iParent != 0) {
        m_index.SetTagLengths(iParent, startTag, endTag);
        m_index[iParent].Drop(CMarkupRecord::kNotEnded);
    }
    Shift(iParent, place.before, static_cast<std::int64_t>(inserted.size()) - static_cast<std::int64_t>(removed));
    return offset + static_cast<std::uint32_t>(front.size());
}

// --- Attributes ------------------------------------------------------------------------------------------------------

std::wstring CMarkup::ReadAttribute(std::uint32_t i, const CMarkupArgument &name) const
{
    if (i == 0)
        return {};
    const std::wstring_view tag = StartTag(i);
    AttributeScan scan(tag, TagName(i).size() + 1, IsEmptyTag(i));
    for (Attribute attribute; scan.Next(attribute);) {
        if (IsName(tag.substr(attribute.nameStart, attribute.nameEnd - attribute.nameStart), name.View())) {
            const std::size_t quote = attribute.isQuoted ? 1 : 0;
            return Unescape(
                tag.substr(attribute.valueStart + quote, attribute.valueEnd - attribute.valueStart - 2 * quote));
        }
    }
    return {};
}

bool CMarkup::WriteAttribute(std::uint32_t i, const CMarkupArgument &name, const CMarkupArgument &value)
{
    if (i == 0)
        return false;
    const std::size_t nameEnd = TagName(i).size() + 1;
    const bool isEmptyTag = IsEmptyTag(i);
    const std::wstring quoted = L'"' + Escape(value.View(), true) + L'"';
    const std::wstring_view tag = StartTag(i);
    const std::size_t tagLength = tag.size();
    const auto find = [&](std::wstring_view in, Attribute &attribute) {
        AttributeScan scan(in, nameEnd, isEmptyTag);
        while (scan.Next(attribute)) {
            if (IsName(in.substr(attribute.nameStart, attribute.nameEnd - attribute.nameStart), name.View()))
                return true;
        }
        return false;
    };
    std::wstring inserted;
    Attribute attribute{nameEnd, nameEnd, nameEnd, nameEnd};
    if (find(tag, attribute)) {
        if (attribute.valueStart == attribute.valueEnd && !attribute.hasEqualSign)
            inserted = L'=';
    } else {
        if (!IsUsableName(name.View()))
            return false;
        inserted = L' ' + std::wstring(name.View()) + L'=';
        attribute.valueStart = attribute.valueEnd; // behind the last one
    }
    inserted += quoted;

    // Loose quotes in the old tag could make the new one end elsewhere.
    std::wstring changed(tag);
    changed.replace(attribute.valueStart, attribute.valueEnd - attribute.valueStart, inserted);
    const std::size_t changedLength = changed.size();
    changed.append(CMarkupText::kPadding, L'\0');
    const std::wstring_view newTag(changed.data(), changedLength);
    const Token token = ScanToken(newTag, 0);
    Attribute again;
    if (token.kind != TokenKind::StartTag || token.length != changedLength || token.isEmptyTag != isEmptyTag ||
        !find(newTag, again) || newTag.substr(again.valueStart, again.valueEnd - again.valueStart) != quoted)
        return false;

    // As a whole, so that it can be read in one piece before the text is.
    if (!Splice(m_index[i].start, tagLength, newTag))
        return false;
    m_index.SetTagLengths(i, changedLength, m_index.EndTagLength(i));
    Shift(i, m_index[i].firstChild, static_cast<std::int64_t>(changedLength) - static_cast<std::int64_t>(tagLength));
    return true;
}

std::wstring CMarkup::GetAttribute(CMarkupArgument name) const
{
    return ReadAttribute(m_iMain, name);
}

std::wstring CMarkup::GetChildAttribute(CMarkupArgument name) const
{
    return ReadAttribute(m_iChild, name);
}

bool CMarkup::SetAttribute(CMarkupArgument name, CMarkupArgument value)
{
    return WriteAttribute(m_iMain, name, value);
}

bool CMarkup::SetChildAttribute(CMarkupArgument name, CMarkupArgument value)
{
    return WriteAttribute(m_iChild, name, value);
}

// --- Adding and removing elements ------------------------------------------------------------------------------------

bool CMarkup::AddChildElement(CMarkupArgument name, CMarkupArgument text, int flags)
{
    if (m_iMain == 0 || !IsUsableName(name.View()))
        return false;
    std::wstring element = L'<' + std::wstring(name.View());
    std::size_t startTag = 0, endTag = 0;
    if (text.IsNull()) {
        element += L"/>";
        startTag = element.size();
    } else {
        element += L'>';
        startTag = element.size();
        element += AsContent(text.View(), flags);
        element += L"</" + std::wstring(name.View()) + L'>';
        endTag = name.View().size() + kEndTagFrame;
    }
    const Place place = m_iChild != 0 ? BehindElement(m_iChild) : EndOfContent(m_iMain);
    m_isInDocumentOrder = false;
    const std::uint32_t i = m_index.Add();
    m_index[i] = CMarkupRecord();
    const std::uint32_t offset = InsertAt(place, element, true);
    if (offset == kRefused) {
        m_index.Truncate(i);
        return false;
    }
    CMarkupRecord &record = m_index[i];
    record.start = offset;
    record.length = static_cast<std::uint32_t>(element.size());
    record.parent = m_iMain;
    record.SetLevel(std::size_t{m_index[m_iMain].Level()} + 1);
    m_index.SetTagLengths(i, startTag, endTag);
    Link(place, i, i);
    m_iChild = i;
    return true;
}

bool CMarkup::RemoveChildElement()
{
    if (m_iChild == 0)
        return false;
    const std::uint32_t i = m_iChild, iNext = m_index[i].next;
    const std::uint32_t iBefore = m_index[m_iMain].firstChild == i ? 0 : m_index[i].previous;
    const std::uint32_t start = m_index[i].start;
    const std::uint32_t length = BehindWhiteSpace(EndOf(i)) - start;
    m_text.Replace(start, length, {});
    Unlink(i);
    Shift(m_iMain, iNext, -std::int64_t{length});
    m_index[i].next = 0;
    GiveBack(i);
    m_iChild = iBefore;
    return true;
}
