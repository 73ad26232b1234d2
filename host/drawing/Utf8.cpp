#include "host/drawing/Utf8.h"

#include <cstdint>

namespace velmor {

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool isCharacter(std::uint32_t value)
{
    return value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
}

} // namespace

std::string toUtf8(std::wstring_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t c : text) {
        std::uint32_t value = static_cast<std::uint32_t>(c);
        if (!isCharacter(value))
            value = kReplacement;
        const auto tail = [&](int shift) { bytes.push_back(static_cast<char>(0x80 | ((value >> shift) & 0x3F))); };
        if (value < 0x80) {
            bytes.push_back(static_cast<char>(value));
        } else if (value < 0x800) {
            bytes.push_back(static_cast<char>(0xC0 | (value >> 6)));
            tail(0);
        } else if (value < 0x10000) {
            bytes.push_back(static_cast<char>(0xE0 | (value >> 12)));
            tail(6);
            tail(0);
        } else {
            bytes.push_back(static_cast<char>(0xF0 | (value >> 18)));
            tail(12);
            tail(6);
            tail(0);
        }
    }
    return bytes;
}

std::wstring fromUtf8(std::string_view bytes)
{
    std::wstring text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const auto lead = static_cast<unsigned char>(bytes[i]);
        const std::size_t more = lead < 0x80 ? 0 : lead < 0xC2 ? 4 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        std::uint32_t value = more == 0 ? lead : lead & (0x3Fu >> more);
        bool good = more < 4 && lead < 0xF5 && bytes.size() - i > more;
        for (std::size_t k = 1; good && k <= more; ++k) {
            const auto next = static_cast<unsigned char>(bytes[i + k]);
            good = (next & 0xC0) == 0x80;
            value = value << 6 | (next & 0x3Fu);
        }
        const bool tooLong = (more == 2 && value < 0x800) || (more == 3 && value < 0x10000);
        good = good && !tooLong && isCharacter(value);
        text.push_back(static_cast<wchar_t>(good ? value : kReplacement));
        i += good ? more + 1 : 1;
    }
    return text;
}

} // namespace velmor
