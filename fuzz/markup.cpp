// Markup documents: parse, edit, parse. Whatever the text, nothing crashes, what an edit does not concern stays as it
// was, and the index is what a fresh parse would make as long as nothing is damaged.
//
// Input: commands up to the first null byte, then the bytes of a file.
#include "catalog/Markup.h"
#include "catalog/MarkupFile.h"
#include "catalog/MarkupScan.h"
#include "tests/catalog/IndexCheck.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

void require(bool holds, const std::string &what)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what.c_str());
        std::abort();
    }
}

constexpr int kSteps = 24;

class Session {
public:
    Session(const std::uint8_t *commands, std::size_t count) : m_at(commands), m_end(commands + count) {}

    /// The same commands on the text with a long comment behind it, without looking at the whole in between: so edits
    /// far from the end are made one upon the other.
    void runQuietly(const std::wstring &text, std::wstring_view tail)
    {
        m_isQuiet = true;
        m_document.SetDocumentFlags((next() & 1) != 0 ? CMarkup::kIgnoreCase : 0);
        m_document.SetText(text + std::wstring(tail));
        for (int i = 0; i < kSteps && m_at != m_end; ++i)
            step(next() % 24);
        check();
    }
    const CMarkup &document() const { return m_document; }
    /// Nothing looked at the end of the document, which is another one with a tail.
    bool isAsGoodWithATail() const { return !m_hasSeenTheEnd; }

    void run(const std::wstring &text)
    {
        m_document.SetDocumentFlags((next() & 1) != 0 ? CMarkup::kIgnoreCase : 0);
        m_document.SetText(text);
        m_hasBadTokens = hasBadTokens(text);
        require(m_document.GetText() == text, "the text of a parse");
        check();
        require(markup_check::differenceToFreshParse(m_document).empty(), "a parse is like another one");
        for (int i = 0; i < kSteps && m_at != m_end; ++i)
            step(next() % 24);
        CMarkup copy(m_document);
        require(copy.GetText() == m_document.GetText() && copy.IsWellFormed() == m_document.IsWellFormed(), "a copy");
        copy.SetText(m_document.GetText());
        require(copy.GetText() == m_document.GetText(), "the text of the last parse");
        check();
    }

private:
    std::uint8_t next() { return m_at == m_end ? std::uint8_t{0} : *m_at++; }
    const wchar_t *word()
    {
        static const wchar_t *const words[] = {L"a", L"b",   L"Terrain", L"A", L"n", L"name", L"x=1", L"",
                                               L"<", L"a b", L"\u0161",  L"1", L"_", L"b/",   L":",   nullptr};
        return words[next() % 16];
    }
    std::wstring value()
    {
        static const wchar_t *const values[] = {
            L"",       L"1",    L"a&b",   L"<x>", L"\"'", L"]]>",    L"&#65;", L"long long long long long value",
            L"\r\n\t", L"&lt;", L"-->?>", L">",   L"]]",  L"\u0160", L" ",     L"'"};
        return values[next() % 16];
    }
    const wchar_t *fragment()
    {
        static const wchar_t *const fragments[] = {L"<f/>",
                                                   L"<f>x</f>\r\n",
                                                   L"<f><g h='1'/></f>",
                                                   L"<!-- c --><f a=\"2\"></f> ",
                                                   L"<f/><g/>",
                                                   L"text",
                                                   L"<f>",
                                                   L"</f>",
                                                   L"<f></g></f>",
                                                   L"<![CDATA[",
                                                   L"<f a='",
                                                   L" <f/> ",
                                                   L"",
                                                   L"<1><f/>",
                                                   L"<f/>\n<f/>\n",
                                                   L"<?xml version='1.0'?><f><f/></f>"};
        return fragments[next() % 16];
    }

    /// A token that is none may become another one when its neighbours change; then no more than the rules that always
    /// hold can be asked of the index.
    static bool hasBadTokens(const std::wstring &text)
    {
        CMarkupText padded;
        padded.Assign(text);
        for (std::size_t at = 0; at < text.size();) {
            const MarkupScan::Token token = MarkupScan::ScanToken(padded.View(), at);
            if (token.kind == MarkupScan::TokenKind::Error)
                return true;
            at = token.End();
        }
        return false;
    }

    void check() const
    {
        const std::string broken = markup_check::brokenRule(m_document);
        require(broken.empty(), broken);
    }
    void step(int command)
    {
        if (command < 11) {
            move(command);
            return;
        }
        if (!m_isQuiet)
            m_before = m_document.GetText();
        edit(command);
        if (m_isQuiet)
            return;
        check();
        if (!m_hasBadTokens) {
            const std::string difference = markup_check::differenceToFreshParse(m_document);
            require(difference.empty(), difference);
        }
    }

    void move(int command)
    {
        switch (command) {
        case 0:
            return m_document.Rewind();
        case 1:
            m_document.FindElement();
            return;
        case 2:
            m_document.FindElement(word());
            return;
        case 3:
        case 4:
            m_document.FindChildElement();
            return;
        case 5:
            m_document.FindChildElement(word());
            return;
        case 6:
            m_document.EnterChild();
            return;
        case 7:
            m_document.LeaveElement();
            return;
        case 8:
            return m_document.SavePosition(word());
        case 9:
            m_document.RestorePosition(word());
            return;
        default:
            walkNodes();
        }
    }

    /// All nodes from here on stand one behind the other.
    void walkNodes()
    {
        m_hasSeenTheEnd = true;
        int behind = -1;
        for (int i = 0; i < 8; ++i) {
            const int type = m_document.FindNode();
            m_document.GetNodeName();
            m_document.GetNodeText();
            m_document.GetElementPath();
            if (type == CMarkup::kNoNode)
                return;
            if (type == CMarkup::kElement) {
                require(behind < 0 || m_document.GetElementOffset() == behind, "an element without a gap");
                behind = -1;
                continue;
            }
            require(m_document.GetNodeLength() > 0, "a node has a length");
            require(behind < 0 || m_document.GetNodeOffset() == behind, "nodes without a gap");
            behind = m_document.GetNodeOffset() + m_document.GetNodeLength();
        }
    }

    /// Damage put in may join with what stands around it as bad tokens do.
    const wchar_t *wholeOr(const wchar_t *fragment)
    {
        CMarkup alone;
        alone.SetText((std::wstring(L"<x>") + fragment + L"</x>"));
        m_hasBadTokens = m_hasBadTokens || !alone.IsWellFormed();
        return fragment;
    }

    // --- What an edit may change -----------------------------------------------------------------------------------

    std::uint32_t recordAt(int offset) const
    {
        const CMarkupIndex &index = m_document.GetIndex();
        for (std::uint32_t i = 1; i < index.End(); ++i) {
            if (!index[i].Has(CMarkupRecord::kDeleted) && index[i].start == static_cast<std::uint32_t>(offset))
                return i;
        }
        require(false, "an element at its offset");
        return 0;
    }
    void requireSame() const
    {
        if (!m_isQuiet)
            require(m_document.GetText() == m_before, "a refused edit changes nothing");
    }
    /// Nothing outside of [from, to) of the text before.
    void requireInside(std::size_t from, std::size_t to) const
    {
        if (m_isQuiet)
            return;
        const std::wstring_view before = m_before, after = m_document.GetText();
        require(after.size() >= from + before.size() - to && after.starts_with(before.substr(0, from)) &&
                    after.ends_with(before.substr(to)),
                "the text around an edit");
    }
    /// Characters were put in at one place, where at most two (the end of an empty tag) went away.
    void requireInsertion() const
    {
        if (m_isQuiet)
            return;
        const std::wstring_view before = m_before, after = m_document.GetText();
        const auto [x, y] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
        const auto front = static_cast<std::size_t>(x - before.begin());
        const auto [u, v] = std::mismatch(before.rbegin(), before.rend(), after.rbegin(), after.rend());
        const auto back = static_cast<std::size_t>(u - before.rbegin());
        require(after.size() >= before.size() && front + back + 2 >= before.size(), "the text around an insertion");
    }

    void edit(int command)
    {
        switch (command) {
        case 11:
            return setAttribute(false);
        case 12:
        case 13:
            return setAttribute(true);
        case 14:
        case 15:
            return addElement();
        case 16:
        case 17:
            m_document.InsertChildFragment(wholeOr(fragment()));
            return requireInsertion();
        case 18:
            return removeElement();
        case 19:
            return setText(true);
        case 20:
            return setText(false);
        case 21:
            return setContent(true);
        case 22:
            return setContent(false);
        default: {
            const int type = 1 << (1 + next() % 6);
            const std::wstring text = value();
            const bool isAdded = m_document.AddNode(type, text);
            m_hasSeenTheEnd = m_hasSeenTheEnd || isAdded;
            if (isAdded && type == CMarkup::kText)
                require(m_document.GetNodeText() == text, "the text of an added node");
            requireInsertion();
        }
        }
    }

    void setAttribute(bool ofChild)
    {
        const wchar_t *name = word();
        const std::wstring wanted = value();
        const int offset = ofChild ? m_document.GetChildOffset() : m_document.GetElementOffset();
        const std::size_t length =
            offset < 0 ? 0 : m_document.GetIndex().StartTagLength(recordAt(offset)) + static_cast<std::size_t>(offset);
        if (!(ofChild ? m_document.SetChildAttribute(name, wanted) : m_document.SetAttribute(name, wanted)))
            return requireSame();
        require((ofChild ? m_document.GetChildAttribute(name) : m_document.GetAttribute(name)) == wanted,
                "an attribute that was set");
        requireInside(static_cast<std::size_t>(offset), length);
    }

    void addElement()
    {
        const wchar_t *name = word();
        const std::wstring text = value();
        const bool withText = (next() & 1) != 0;
        const int flags = (next() & 1) != 0 ? CMarkup::kAsCData : CMarkup::kEscaped;
        if (!m_document.AddChildElement(name, withText ? text.c_str() : nullptr, flags))
            return requireSame();
        require(m_isQuiet || m_document.GetChildText() == (withText ? text : L""), "the text of an added element");
        requireInsertion();
    }

    void removeElement()
    {
        const int offset = m_document.GetChildOffset();
        const std::wstring fragment = m_document.GetChildFragment();
        if (!m_document.RemoveChildElement())
            return requireSame();
        if (m_isQuiet)
            return;
        std::wstring rest = m_before;
        require(rest.compare(static_cast<std::size_t>(offset), fragment.size(), fragment) == 0, "what a removal takes");
        require(m_document.GetText() == rest.erase(static_cast<std::size_t>(offset), fragment.size()),
                "the text around a removal");
    }

    /// The content of the child (of the main element), or all of it when it has no end tag.
    bool content(bool ofChild, std::size_t &from, std::size_t &to) const
    {
        const int offset = ofChild ? m_document.GetChildOffset() : m_document.GetElementOffset();
        if (offset < 0)
            return false;
        const CMarkupIndex &index = m_document.GetIndex();
        const std::uint32_t i = recordAt(offset);
        const bool hasEnd = index.EndTagLength(i) > 0;
        from = index[i].start + (hasEnd ? index.StartTagLength(i) : 0);
        to = std::size_t{index[i].start} + index[i].length - index.EndTagLength(i);
        return true;
    }

    void setText(bool ofChild)
    {
        std::size_t from = 0, to = 0;
        const bool isThere = content(ofChild, from, to);
        const std::wstring text = value();
        const int flags = (next() & 1) != 0 ? CMarkup::kAsCData : CMarkup::kEscaped;
        if (!(ofChild ? m_document.SetChildText(text, flags) : m_document.SetElementText(text, flags)))
            return requireSame();
        require(isThere, "an element whose text was set");
        require(m_isQuiet || (ofChild ? m_document.GetChildText() : m_document.GetElementText()) == text,
                "a text that was set");
        requireInside(from, to);
    }

    void setContent(bool ofChild)
    {
        std::size_t from = 0, to = 0;
        const bool isThere = content(ofChild, from, to);
        const wchar_t *markup = wholeOr(fragment());
        if (ofChild)
            m_document.SetChildContent(markup);
        else
            m_document.SetElementContent(markup);
        if (!isThere)
            return requireSame();
        requireInside(from, to);
    }

    const std::uint8_t *m_at, *m_end;
    CMarkup m_document;
    std::wstring m_before;
    bool m_isQuiet = false;
    bool m_hasBadTokens = false;
    bool m_hasSeenTheEnd = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::uint8_t *end = data + size, *split = std::find(data, end, std::uint8_t{0});
    const std::string bytes(split == end ? split : split + 1, end);
    std::wstring text(bytes.size(), L'\0');
    std::size_t used = 0;
    text.resize(static_cast<std::size_t>(MarkupFile::Widen(bytes, true, text.data(), used) - text.data()));
    require(used == bytes.size() && markup_check::narrow(text) == bytes, "the bytes of a file come back");
    const auto count = static_cast<std::size_t>(split - data);
    Session session(data, count);
    session.run(text);
    // Now and then with a long tail, where splices are noted first.
    if (count > 0 && (data[0] & 2) != 0 && session.isAsGoodWithATail()) {
        static const std::wstring tail = L"<!--" + std::wstring(40000, L'.') + L"-->";
        Session far(data, count);
        far.runQuietly(text, tail);
        CMarkup parsed;
        parsed.SetText(text);
        if (parsed.IsWellFormed())
            require(far.document().GetText() == std::wstring(session.document().GetText()) + tail,
                    "edits far from the end");
    }
    return 0;
}
