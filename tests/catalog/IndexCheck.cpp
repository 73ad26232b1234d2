#include "tests/catalog/IndexCheck.h"

#include "catalog/MarkupFile.h"

namespace markup_check {

namespace {

constexpr std::uint32_t kCompared = CMarkupRecord::kFirstChild | CMarkupRecord::kNotEnded | CMarkupRecord::kDeleted |
                                    CMarkupRecord::kTagsBeside | CMarkupRecord::kLevelMask;

/// The next record in document order; 0 behind the last one.
std::uint32_t following(const CMarkupIndex &index, std::uint32_t i)
{
    if (index[i].firstChild != 0)
        return index[i].firstChild;
    while (i != 0 && index[i].next == 0)
        i = index[i].parent;
    return i == 0 ? 0 : index[i].next;
}

std::string at(const char *what, const CMarkupRecord &record)
{
    return std::string(what) + " of the element at " + std::to_string(record.start);
}

} // namespace

std::string narrow(std::wstring_view text)
{
    std::string bytes(text.size() * 4, '\0');
    bytes.resize(static_cast<std::size_t>(MarkupFile::Narrow(text, bytes.data()) - bytes.data()));
    return bytes;
}

std::string differenceToFreshParse(const CMarkup &document)
{
    CMarkup fresh;
    fresh.SetDocumentFlags(document.GetDocumentFlags());
    fresh.SetText(document.GetText());
    const CMarkupIndex &mine = document.GetIndex(), &other = fresh.GetIndex();
    if (mine[0].length != document.GetText().size())
        return "length of the document";
    std::uint32_t a = 0, b = 0;
    for (;;) {
        a = following(mine, a);
        b = following(other, b);
        if (a == 0 || b == 0)
            return a == b ? "" : "number of elements";
        const CMarkupRecord &x = mine[a], &y = other[b];
        if (x.start != y.start)
            return "start " + std::to_string(x.start) + " for " + std::to_string(y.start);
        if (x.length != y.length)
            return at("length", y);
        if (mine.StartTagLength(a) != other.StartTagLength(b) || mine.EndTagLength(a) != other.EndTagLength(b))
            return at("tag lengths", y);
        if ((x.levelAndFlags & kCompared) != (y.levelAndFlags & kCompared))
            return at("level or flags", y);
        if (mine[x.parent].start != other[y.parent].start || (x.parent == 0) != (y.parent == 0))
            return at("parent", y);
        if (mine[x.previous].start != other[y.previous].start)
            return at("previous sibling", y);
    }
}

std::string brokenRule(const CMarkup &document)
{
    const CMarkupIndex &index = document.GetIndex();
    const std::wstring_view text = document.GetText();
    if (index[0].length != text.size())
        return "length of the document";
    for (std::uint32_t i = following(index, 0); i != 0; i = following(index, i)) {
        const CMarkupRecord &record = index[i], &parent = index[record.parent];
        if (record.Has(CMarkupRecord::kDeleted))
            return at("deletion", record);
        if (record.start >= text.size() || text[record.start] != L'<')
            return at("first character", record);
        const std::size_t end = std::size_t{record.start} + record.length;
        const std::size_t contentBegin = record.parent == 0 ? 0 : parent.start + index.StartTagLength(record.parent);
        const std::size_t contentEnd = std::size_t{parent.start} + parent.length - index.EndTagLength(record.parent);
        if (record.start < contentBegin || end > contentEnd)
            return at("place inside its parent", record);
        if (index.StartTagLength(i) + index.EndTagLength(i) > record.length)
            return at("tag lengths", record);
        if (index.EndTagLength(i) == 0 && index.StartTagLength(i) != record.length)
            return at("length", record);
        if (index.EndTagLength(i) == 0 && record.firstChild != 0)
            return at("children", record);
        if (record.Has(CMarkupRecord::kFirstChild) != (parent.firstChild == i))
            return at("first child mark", record);
        const CMarkupRecord &previous = index[record.previous];
        if (previous.parent != record.parent)
            return at("previous sibling", record);
        if (parent.firstChild == i ? previous.next != 0 : previous.next != i)
            return at("link to the previous sibling", record);
        if (parent.firstChild != i && previous.start + previous.length > record.start)
            return at("distance to the previous sibling", record);
    }
    return "";
}

} // namespace markup_check
