#include "catalog/MarkupScan.h"

#include <array>

namespace MarkupScan {

namespace {

struct Entity {
    std::wstring_view name;
    wchar_t character;
};
constexpr std::array<Entity, 5> kEntities = {
    {{L"lt;", L'<'}, {L"amp;", L'&'}, {L"gt;", L'>'}, {L"apos;", L'\''}, {L"quot;", L'"'}}};

/// Value of a digit of that base, or -1.
int DigitValue(wchar_t c, unsigned base)
{
    if (c >= L'0' && c <= L'9')
        return c - L'0';
    if (base == 16 && c >= L'a' && c <= L'f')
        return c - L'a' + 10;
    if (base == 16 && c >= L'A' && c <= L'F')
        return c - L'A' + 10;
    return -1;
}

struct Reference {
    std::size_t length = 0; ///< characters from behind the "&#" to behind the ";"; 0 when it is none
    wchar_t character = L'\0';
};

/// rest: what follows "&#".
Reference ReadNumber(std::wstring_view rest)
{
    constexpr std::size_t kLongest = 7;
    const unsigned base = !rest.empty() && rest[0] == L'x' ? 16 : 10;
    const std::size_t first = base == 16 ? 1 : 0;
    std::uint32_t number = 0;
    for (std::size_t i = first; i < rest.size() && i < kLongest; ++i) {
        if (rest[i] == L';') {
            const bool isCharacter = number <= 0x10FFFF && (number < 0xD800 || number > 0xDFFF);
            return i > first && isCharacter ? Reference{i + 1, static_cast<wchar_t>(number)} : Reference{};
        }
        const int digit = DigitValue(rest[i], base);
        if (digit < 0)
            break;
        number = number * base + static_cast<unsigned>(digit);
    }
    return {};
}

} // namespace

std::wstring Escape(std::wstring_view text, bool isAttribute)
{
    std::wstring escaped;
    escaped.reserve(text.size() + text.size() / 8);
    for (const wchar_t c : text) {
        switch (c) {
        case L'<':
            escaped += L"&lt;";
            break;
        case L'&':
            escaped += L"&amp;";
            break;
        case L'>':
            escaped += L"&gt;";
            break;
        case L'\'':
            escaped += isAttribute ? L"&apos;" : L"'";
            break;
        case L'"':
            escaped += isAttribute ? L"&quot;" : L"\"";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

std::wstring Unescape(std::wstring_view text)
{
    std::wstring plain;
    plain.reserve(text.size());
    std::size_t at = 0;
    for (;;) {
        const std::size_t mark = text.find(L'&', at);
        plain += text.substr(at, mark - at);
        if (mark == text.npos)
            return plain;
        at = mark + 1;
        const std::wstring_view rest = text.substr(at);
        wchar_t character = L'&';
        if (rest.starts_with(L'#')) {
            if (const Reference reference = ReadNumber(rest.substr(1)); reference.length > 0) {
                character = reference.character;
                at += 1 + reference.length;
            }
        } else {
            for (const Entity &entity : kEntities) {
                if (rest.starts_with(entity.name)) {
                    character = entity.character;
                    at += entity.name.size();
                    break;
                }
            }
        }
        plain += character;
    }
}

} // namespace MarkupScan
