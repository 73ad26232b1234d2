#include "catalog/NameCoding.h"

#include <cstdint>

namespace {

/// What the byte of the first group says: how many groups there are, and what is taken off the byte.
struct GroupForm {
    std::uint32_t first, last;
    std::uint32_t base;
    std::size_t groups;
};
constexpr GroupForm kForms[] = {
    {0, 126, 0, 1}, {192, 223, 192, 2}, {224, 239, 224, 3}, {240, 247, 240, 4}, {248, 251, 248, 5}, {252, 253, 252, 6},
};

/// Null for a byte that leads no groups.
const GroupForm *FormOf(std::uint32_t byte)
{
    for (const GroupForm &form : kForms)
        if (byte >= form.first && byte <= form.last)
            return &form;
    return nullptr;
}

/// Only digits and capital letters count; anything else is 0.
std::uint32_t HexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return static_cast<std::uint32_t>(c - '0');
    if (c >= 'A' && c <= 'F')
        return static_cast<std::uint32_t>(c - 'A' + 10);
    return 0;
}

std::uint32_t HexByte(std::string_view text, std::size_t at)
{
    return HexDigit(text[at]) * 16 + HexDigit(text[at + 1]);
}

void AppendGroup(std::wstring &text, unsigned byte)
{
    constexpr wchar_t digits[] = L"0123456789ABCDEF";
    text += L'=';
    text += digits[byte >> 4 & 15];
    text += digits[byte & 15];
}

} // namespace

std::wstring EncodeName(std::wstring_view name, const CAnsiCodePage &page)
{
    std::wstring text;
    for (const char c : page.ToBytes(name)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte == '=') {
            AppendGroup(text, byte);
        } else if (byte < 128) {
            text += static_cast<wchar_t>(byte);
        } else {
            const unsigned widened = 0xFF00u | byte;
            AppendGroup(text, (widened >> 12) + 224);
            AppendGroup(text, (widened >> 6 & 63) + 128);
            AppendGroup(text, (widened & 63) + 128);
        }
    }
    return text;
}

std::wstring DecodeName(std::wstring_view text, const CAnsiCodePage &page)
{
    const std::string coded = page.ToBytes(text);
    std::string name;
    for (std::size_t at = 0; at < coded.size();) {
        if (coded[at] != '=') {
            name.push_back(coded[at++]);
            continue;
        }
        if (coded.size() - at < 3)
            break;
        const std::uint32_t lead = HexByte(coded, at + 1);
        const GroupForm *pForm = FormOf(lead);
        if (!pForm) { // only the "=" is lost
            ++at;
            continue;
        }
        if (coded.size() - at < 3 * pForm->groups)
            break;
        std::uint32_t value = lead - pForm->base;
        for (std::size_t group = 1; group < pForm->groups; ++group) // wraps; the low byte is what counts
            value = value * 64 + HexByte(coded, at + 3 * group + 1) - 128;
        name.push_back(static_cast<char>(value & 0xFF));
        at += 3 * pForm->groups;
    }
    return page.ToWide(name);
}
