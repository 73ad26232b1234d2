#include "host/services/Text.h"

#include <algorithm>
#include <cstdint>

namespace velmor {

namespace {

constexpr std::uint32_t kNoCharacter = 0xFFFFFFFF;

/// Reads one character at the front of text; length becomes the number of bytes taken (1 for a bad byte).
std::uint32_t readCharacter(std::string_view text, std::size_t &length)
{
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    length = 1;
    const std::uint8_t first = byte(0);
    if (first < 0x80)
        return first;
    std::size_t count = 0;
    std::uint32_t value = 0, smallest = 0;
    if ((first & 0xE0) == 0xC0) {
        count = 2, value = first & 0x1Fu, smallest = 0x80;
    } else if ((first & 0xF0) == 0xE0) {
        count = 3, value = first & 0x0Fu, smallest = 0x800;
    } else if ((first & 0xF8) == 0xF0) {
        count = 4, value = first & 0x07u, smallest = 0x10000;
    } else {
        return kNoCharacter;
    }
    if (text.size() < count)
        return kNoCharacter;
    for (std::size_t i = 1; i < count; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return kNoCharacter;
        value = value << 6 | (byte(i) & 0x3Fu);
    }
    if (value < smallest || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
        return kNoCharacter;
    length = count;
    return value;
}

} // namespace

std::wstring wide(std::string_view utf8Text)
{
    std::wstring text;
    text.reserve(utf8Text.size());
    for (std::size_t i = 0, length = 0; i < utf8Text.size(); i += length) {
        const std::uint32_t value = readCharacter(utf8Text.substr(i), length);
        text.push_back(static_cast<wchar_t>(value == kNoCharacter ? 0xFFFD : value));
    }
    return text;
}

std::string utf8(std::wstring_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    const auto put = [&](std::uint32_t value) { bytes.push_back(static_cast<char>(value)); };
    for (const wchar_t c : text) {
        auto value = static_cast<std::uint32_t>(c);
        if (value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
            value = 0xFFFD;
        if (value < 0x80) {
            put(value);
            continue;
        }
        const int tails = value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;
        constexpr std::uint32_t kLead[] = {0, 0xC0, 0xE0, 0xF0};
        put(kLead[tails] | value >> (6 * tails));
        for (int tail = tails - 1; tail >= 0; --tail)
            put(0x80 | (value >> (6 * tail) & 0x3F));
    }
    return bytes;
}

bool isUtf8(std::string_view text)
{
    for (std::size_t i = 0, length = 0; i < text.size(); i += length)
        if (readCharacter(text.substr(i), length) == kNoCharacter)
            return false;
    return true;
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r";
    const auto first = text.find_first_not_of(kBlanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool equalNoCase(std::string_view a, std::string_view b)
{
    const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; };
    return std::ranges::equal(a, b, [&](char x, char y) { return upper(x) == upper(y); });
}

} // namespace velmor
