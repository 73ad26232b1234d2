#include "catalog/MarkupScan.h"

#include <algorithm>
#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace MarkupScan {

namespace {

constexpr int kBlock = 16;
static_assert(sizeof(wchar_t) == 4, "blocks are compared as 32-bit characters");

/// A block of 16 characters, to ask which of them equal another one: bit i for character i.
class Block {
public:
#if defined(__SSE2__)
    explicit Block(const wchar_t *p)
    {
        for (int i = 0; i < 4; ++i)
            m_parts[i] = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p + i * 4));
    }
    unsigned Equal(wchar_t c) const
    {
        const __m128i wanted = _mm_set1_epi32(c);
        const __m128i low = _mm_packs_epi32(_mm_cmpeq_epi32(m_parts[0], wanted), _mm_cmpeq_epi32(m_parts[1], wanted));
        const __m128i high = _mm_packs_epi32(_mm_cmpeq_epi32(m_parts[2], wanted), _mm_cmpeq_epi32(m_parts[3], wanted));
        return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(low, high)));
    }

private:
    __m128i m_parts[4];
#else
    explicit Block(const wchar_t *p) : m_p(p) {}
    unsigned Equal(wchar_t c) const
    {
        unsigned mask = 0;
        for (int i = 0; i < kBlock; ++i)
            mask |= static_cast<unsigned>(m_p[i] == c) << i;
        return mask;
    }

private:
    const wchar_t *m_p;
#endif
};

const wchar_t *Find(const wchar_t *p, const wchar_t *end, wchar_t c)
{
    for (; p < end; p += kBlock) {
        if (const unsigned mask = Block(p).Equal(c))
            return std::min(p + std::countr_zero(mask), end);
    }
    return end;
}

/// 1 for an odd number of bits among 16, else 0.
unsigned Parity(unsigned bits)
{
    bits ^= bits >> 8;
    bits ^= bits >> 4;
    return 0x6996U >> (bits & 15U) & 1U;
}

/// First ">" outside quotes, or end; open: the quote that p stands in, or null.
const wchar_t *FindTagEndAmongQuotes(const wchar_t *p, const wchar_t *end, wchar_t open)
{
    for (; p < end; p += kBlock) {
        const Block block(p);
        const unsigned doubles = block.Equal(L'"'), singles = block.Equal(L'\'');
        const unsigned marks = doubles | singles | block.Equal(L'>');
        for (unsigned rest = marks; rest != 0;) {
            if (open != L'\0')
                rest &= open == L'"' ? doubles : singles;
            if (rest == 0)
                break;
            const int at = std::countr_zero(rest);
            const unsigned behind = ~0U << at << 1;
            if (open != L'\0') {
                open = L'\0';
                rest = marks & behind; // behind the closing quote all marks count again
            } else if (((doubles | singles) >> at & 1U) != 0) {
                open = p[at];
                rest &= behind;
            } else {
                return std::min(p + at, end);
            }
        }
    }
    return end;
}

/// Behind the first occurrence of a text of 2 or 3 characters, or null.
const wchar_t *FindBehind(const wchar_t *p, const wchar_t *end, std::wstring_view wanted)
{
    const std::wstring_view rest(p, static_cast<std::size_t>(end - p));
    const std::size_t found = rest.find(wanted);
    return found == rest.npos ? nullptr : p + found + wanted.size();
}

/// Behind the ">" that closes no "<" opened since p, or null.
const wchar_t *FindDeclarationEnd(const wchar_t *p, const wchar_t *end)
{
    std::size_t depth = 0;
    for (; p != end; ++p) {
        if (*p == L'<') {
            ++depth;
        } else if (*p == L'>') {
            if (depth == 0)
                return p + 1;
            --depth;
        }
    }
    return nullptr;
}

/// One scan of a token, at its first character.
class Scan {
public:
    Scan(std::wstring_view text, std::size_t offset)
        : m_text(text.data()), m_at(m_text + offset), m_end(m_text + text.size())
    {
        m_token.start = static_cast<std::uint32_t>(offset);
    }

    Token Run()
    {
        if (m_at == m_end)
            return m_token;
        if (*m_at != L'<')
            return Characters();
        const wchar_t c = Peek(1);
        if (m_at + 1 == m_end)
            return Unterminated(L"tag");
        if (IsNameStart(c))
            return StartTag();
        if (c == L'/')
            return EndTag();
        if (c == L'?')
            return Wrapped(TokenKind::ProcessingInstruction, 2, L"?>", L"Processing instruction");
        if (c == L'!')
            return Exclamation();
        return Incorrect(L"tag name character");
    }

private:
    /// Null at and behind the end, which is as good as a character that fits nowhere.
    wchar_t Peek(int i) const { return i < m_end - m_at ? m_at[i] : L'\0'; }

    Token &To(TokenKind kind, const wchar_t *end)
    {
        m_token.kind = kind;
        m_token.length = static_cast<std::uint32_t>(end - m_at);
        return m_token;
    }
    Token &Name(const wchar_t *p, const wchar_t *stop)
    {
        m_token.nameStart = static_cast<std::uint32_t>(p - m_text);
        while (p < stop && !IsNameEnd(*p))
            ++p;
        m_token.nameLength = static_cast<std::uint32_t>(p - m_text) - m_token.nameStart;
        return m_token;
    }
    Token &Unterminated(const wchar_t *what)
    {
        m_token.what = what;
        m_token.isUnterminated = true;
        return To(TokenKind::Error, m_end);
    }
    Token &Incorrect(const wchar_t *what)
    {
        m_token.what = what;
        const wchar_t *p = m_at + 1;
        while (p != m_end && *p != L'<' && *p != L'>')
            ++p;
        return To(TokenKind::Error, p != m_end && *p == L'>' ? p + 1 : p);
    }

    Token &Characters()
    {
        const wchar_t *p = m_at;
        while (p != m_end && IsWhiteSpace(*p))
            ++p;
        if (p == m_end || *p == L'<')
            return To(TokenKind::WhiteSpace, p);
        return To(TokenKind::Text, FindMarkup(p, m_end));
    }
    Token &StartTag()
    {
        Name(m_at + 1, m_end);
        const wchar_t *nameEnd = m_text + m_token.nameStart + m_token.nameLength;
        const wchar_t *close = FindTagEnd(nameEnd, m_end);
        if (close == m_end)
            return Unterminated(L"Element tag");
        m_token.isEmptyTag = IsEmptyTagEnd(nameEnd, close);
        return To(TokenKind::StartTag, close + 1);
    }
    Token &EndTag()
    {
        Name(m_at + 2, m_end);
        const wchar_t *close = Find(m_text + m_token.nameStart + m_token.nameLength, m_end, L'>');
        return close == m_end ? Unterminated(L"Element end tag") : To(TokenKind::EndTag, close + 1);
    }
    Token &Wrapped(TokenKind kind, int opening, std::wstring_view closing, const wchar_t *what)
    {
        const wchar_t *behind = FindBehind(m_at + opening, m_end, closing);
        if (!behind)
            return Unterminated(what);
        To(kind, behind);
        if (kind != TokenKind::ProcessingInstruction)
            return m_token;
        Name(m_at + opening, behind - closing.size());
        return m_token;
    }
    Token &Exclamation()
    {
        const wchar_t c = Peek(2);
        if (m_at + 2 == m_end)
            return Unterminated(L"tag");
        if (c == L'-') {
            if (Peek(3) == L'-')
                return Wrapped(TokenKind::Comment, 4, L"-->", L"Comment");
            return m_at + 3 == m_end ? Unterminated(L"tag") : Incorrect(L"comment tag");
        }
        if (c == L'[') {
            if (Peek(3) == L'C')
                return Wrapped(TokenKind::CData, 4, L"]]>", L"CDATA Section");
            return m_at + 3 == m_end ? Unterminated(L"tag") : Incorrect(L"tag");
        }
        if (c == L'D')
            return DocumentType(FindDeclarationEnd(m_at + 1, m_end));
        if (c == L'E' || c == L'A' || c == L'N') {
            const wchar_t *close = Find(m_at, m_end, L'>');
            return DocumentType(close == m_end ? nullptr : close + 1);
        }
        return Incorrect(L"! tag");
    }
    /// Its name is the second word: "<!DOCTYPE name".
    Token &DocumentType(const wchar_t *behind)
    {
        if (!behind)
            return Unterminated(L"Doctype");
        const wchar_t *p = m_at + 2;
        while (p < behind && !IsNameEnd(*p))
            ++p;
        while (p < behind && IsWhiteSpace(*p))
            ++p;
        Name(p, behind);
        return To(TokenKind::DocumentType, behind);
    }

    const wchar_t *m_text, *m_at, *m_end;
    Token m_token;
};

} // namespace

const wchar_t *FindMarkup(const wchar_t *p, const wchar_t *end)
{
    return Find(p, end, L'<');
}

const wchar_t *FindTagEnd(const wchar_t *p, const wchar_t *end)
{
    // Most tags have double quotes only: then a ">" with an even number of them before it is the end.
    unsigned odd = 0; // 1 when the block starts in quotes
    for (; p < end; p += kBlock) {
        const Block block(p);
        if (block.Equal(L'\'') != 0)
            return FindTagEndAmongQuotes(p, end, odd != 0 ? L'"' : L'\0');
        const unsigned doubles = block.Equal(L'"');
        for (unsigned closes = block.Equal(L'>'); closes != 0; closes &= closes - 1) {
            const int at = std::countr_zero(closes);
            if (Parity(doubles & ((1U << at) - 1)) == odd)
                return std::min(p + at, end);
        }
        odd ^= Parity(doubles);
    }
    return end;
}

Token ScanToken(std::wstring_view text, std::size_t offset)
{
    return Scan(text, offset).Run();
}

std::wstring FaultText(const Token &token)
{
    const std::wstring place = L" at offset " + std::to_wstring(token.start);
    if (token.isUnterminated)
        return token.what + place + L" unterminated";
    return std::wstring(L"Incorrect ") + token.what + place;
}

AttributeScan::AttributeScan(std::wstring_view tag, std::size_t nameEnd, bool isEmptyTag)
    : m_tag(tag), m_at(nameEnd), m_end(tag.size() - (isEmptyTag ? 2 : 1))
{
}

bool AttributeScan::Next(Attribute &attribute)
{
    std::size_t at = m_at;
    const auto skipWhiteSpace = [&] {
        while (at < m_end && IsWhiteSpace(m_tag[at]))
            ++at;
    };
    skipWhiteSpace();
    if (at >= m_end || m_tag[at] == L'>' || m_tag[at] == L'/' || m_tag[at] == L'?')
        return false;
    Attribute found;
    found.nameStart = at;
    while (at < m_end && !IsWhiteSpace(m_tag[at]) && m_tag[at] != L'=' && m_tag[at] != L'>' && !IsQuote(m_tag[at]))
        ++at;
    found.nameEnd = found.valueStart = found.valueEnd = m_at = at;
    skipWhiteSpace();
    if (at < m_end && m_tag[at] == L'=') {
        found.hasEqualSign = true;
        found.valueStart = found.valueEnd = m_at = ++at;
        skipWhiteSpace();
    }
    // Without "=" only a quoted text is a value; another word is the next attribute.
    if (at < m_end && m_tag[at] != L'>' && (found.hasEqualSign || IsQuote(m_tag[at]))) {
        found.valueStart = at;
        found.isQuoted = IsQuote(m_tag[at]);
        if (found.isQuoted) {
            const std::size_t close = m_tag.find(m_tag[at], at + 1);
            at = close < m_end ? close + 1 : m_end;
        } else {
            while (at < m_end && !IsWhiteSpace(m_tag[at]) && m_tag[at] != L'>')
                ++at;
        }
        found.valueEnd = m_at = at;
    }
    attribute = found;
    return true;
}

} // namespace MarkupScan
