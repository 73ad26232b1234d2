// The tokens of a markup text.
//
// A scan needs CMarkupText::kPadding readable characters behind the text, since it looks at blocks of 16. Offsets and
// lengths are of the text given. Nothing throws but the fault text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace MarkupScan {

inline bool IsWhiteSpace(wchar_t c)
{
    return c == L' ' || c == L'\t' || c == L'\n' || c == L'\r';
}
inline bool IsQuote(wchar_t c)
{
    return c == L'"' || c == L'\'';
}
/// A letter, "_", ":" or any character from "a" upward in code.
inline bool IsNameStart(wchar_t c)
{
    return static_cast<std::uint32_t>(c) >= L'a' || (c >= L'A' && c <= L'Z') || c == L'_' || c == L':';
}
/// A tag's name runs up to white space, "/" or ">".
inline bool IsNameEnd(wchar_t c)
{
    return static_cast<std::uint32_t>(c) <= L'>' && (c == L'>' || c == L'/' || IsWhiteSpace(c));
}

enum class TokenKind {
    End, ///< of the text
    StartTag,
    EndTag,
    Text,
    WhiteSpace,
    CData,
    ProcessingInstruction,
    Comment,
    DocumentType,
    Error,
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::uint32_t start = 0, length = 0;
    std::uint32_t nameStart = 0, nameLength = 0; ///< of tags, processing instructions, document types
    bool isEmptyTag = false;
    bool isUnterminated = false;   ///< an error since the text ended
    const wchar_t *what = nullptr; ///< of an error: first field of its message
    std::uint32_t End() const { return start + length; }
};

/// The token at the offset. It always moves on: only at the end of the text its length is 0.
Token ScanToken(std::wstring_view text, std::size_t offset);
/// "Incorrect ... at offset N" or "... at offset N unterminated", N being where the token starts.
std::wstring FaultText(const Token &token);

/// First "<" from p on, or end.
const wchar_t *FindMarkup(const wchar_t *p, const wchar_t *end);
/// First ">" from p on that stands in no quotes, or end.
const wchar_t *FindTagEnd(const wchar_t *p, const wchar_t *end);
/// For a start tag whose name ends at nameEnd and whose ">" stands at close: "/" stands right before the ">", and the
/// character before that is absent, white space or a quote.
inline bool IsEmptyTagEnd(const wchar_t *nameEnd, const wchar_t *close)
{
    if (close == nameEnd || close[-1] != L'/')
        return false;
    return close - 1 == nameEnd || IsWhiteSpace(close[-2]) || IsQuote(close[-2]);
}

/// An attribute of a start tag; offsets in the tag.
struct Attribute {
    std::size_t nameStart = 0, nameEnd = 0;
    std::size_t valueStart = 0, valueEnd = 0; ///< with the quotes, if any; empty where it would stand when absent
    bool hasEqualSign = false;
    bool isQuoted = false;
};

/// Walks the attributes of a start tag (or a declaration), which are words with an optional "=" and a value.
class AttributeScan {
public:
    /// tag: the whole tag; it is scanned from the end of its name to before its "/>" or ">".
    AttributeScan(std::wstring_view tag, std::size_t nameEnd, bool isEmptyTag);
    /// False at the end, and then the attribute is unchanged.
    bool Next(Attribute &attribute);

private:
    std::wstring_view m_tag;
    std::size_t m_at, m_end;
};

/// "<", "&" and ">" as entities; for attribute values both quotes, too.
std::wstring Escape(std::wstring_view text, bool isAttribute);
/// "&#" with digits, "&#x" with hexadecimal digits, where the ";" stands within the 7 characters behind the "&#", and
/// the five names. Any other "&" stands for itself, and so does a number that is no character (a half of a pair, or
/// beyond 0x10FFFF).
std::wstring Unescape(std::wstring_view text);

} // namespace MarkupScan
