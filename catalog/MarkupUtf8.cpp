// Conversion between UTF-8 and wide text. Plain characters are moved in blocks, all others go through the library.
#include "catalog/MarkupFile.h"

#include <boost/locale/utf.hpp>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace MarkupFile {

namespace {

using Utf8 = boost::locale::utf::utf_traits<char>;

constexpr wchar_t kByteEscape = 0xDC00;
constexpr boost::locale::utf::code_point kReplacement = 0xFFFD;
constexpr std::size_t kBlock = 16;

bool IsPlainBlock(const char *p)
{
    std::uint64_t low = 0, high = 0;
    std::memcpy(&low, p, sizeof low);
    std::memcpy(&high, p + sizeof low, sizeof high);
    return ((low | high) & 0x8080808080808080U) == 0;
}

bool IsPlainBlock(const wchar_t *p)
{
    std::uint32_t all = 0;
    for (std::size_t i = 0; i < kBlock; ++i)
        all |= static_cast<std::uint32_t>(p[i]);
    return all < 0x80;
}

} // namespace

wchar_t *Widen(std::string_view bytes, bool isLast, wchar_t *pTo, std::size_t &used)
{
    const char *p = bytes.data(), *const end = p + bytes.size();
    while (p != end) {
        while (static_cast<std::size_t>(end - p) >= kBlock && IsPlainBlock(p)) {
            for (std::size_t i = 0; i < kBlock; ++i)
                pTo[i] = static_cast<wchar_t>(static_cast<unsigned char>(p[i]));
            p += kBlock;
            pTo += kBlock;
        }
        // To the end of the block that holds another character, so that the test of blocks is not repeated for each.
        const char *const stop = p + std::min(kBlock, static_cast<std::size_t>(end - p));
        while (p < stop) {
            if (static_cast<unsigned char>(*p) < 0x80) {
                *pTo++ = static_cast<wchar_t>(*p++);
                continue;
            }
            const char *next = p;
            const boost::locale::utf::code_point c = Utf8::decode(next, end);
            if (c == boost::locale::utf::incomplete && !isLast) {
                used = static_cast<std::size_t>(p - bytes.data());
                return pTo;
            }
            if (boost::locale::utf::is_valid_codepoint(c)) {
                *pTo++ = static_cast<wchar_t>(c);
                p = next;
            } else {
                *pTo++ = static_cast<wchar_t>(kByteEscape + static_cast<unsigned char>(*p++));
            }
        }
    }
    used = bytes.size();
    return pTo;
}

char *Narrow(std::wstring_view text, char *pTo)
{
    const wchar_t *p = text.data(), *const end = p + text.size();
    while (p != end) {
        while (static_cast<std::size_t>(end - p) >= kBlock && IsPlainBlock(p)) {
            for (std::size_t i = 0; i < kBlock; ++i)
                pTo[i] = static_cast<char>(p[i]);
            p += kBlock;
            pTo += kBlock;
        }
        const wchar_t *const stop = p + std::min(kBlock, static_cast<std::size_t>(end - p));
        for (; p < stop; ++p) {
            const auto c = static_cast<boost::locale::utf::code_point>(*p);
            if (c < 0x80)
                *pTo++ = static_cast<char>(c);
            else if (c >= kByteEscape + 0x80 && c <= kByteEscape + 0xFF)
                *pTo++ = static_cast<char>(c - kByteEscape);
            else
                pTo = Utf8::encode(boost::locale::utf::is_valid_codepoint(c) ? c : kReplacement, pTo);
        }
    }
    return pTo;
}

} // namespace MarkupFile
