// Conversion between UTF-8 and wide text. Plain characters are moved in blocks, all others go through the library.
#include "catalog/MarkupFile.h"

#include <boost/locale/utf.hpp>

#include <algorithm>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace MarkupFile {

namespace {

using Utf8 = boost::locale::utf::utf_traits<char>;

constexpr wchar_t kByteEscape = 0xDC00;
constexpr boost::locale::utf::code_point kReplacement = 0xFFFD;
constexpr std::size_t kBlock = 16;

#if defined(__SSE2__)

/// Moves a block if it holds only characters below 128.
bool WidenPlain(const char *p, wchar_t *pTo)
{
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p)), zero = _mm_setzero_si128();
    if (_mm_movemask_epi8(bytes) != 0)
        return false;
    const __m128i low = _mm_unpacklo_epi8(bytes, zero), high = _mm_unpackhi_epi8(bytes, zero);
    auto *pParts = reinterpret_cast<__m128i *>(pTo);
    _mm_storeu_si128(pParts, _mm_unpacklo_epi16(low, zero));
    _mm_storeu_si128(pParts + 1, _mm_unpackhi_epi16(low, zero));
    _mm_storeu_si128(pParts + 2, _mm_unpacklo_epi16(high, zero));
    _mm_storeu_si128(pParts + 3, _mm_unpackhi_epi16(high, zero));
    return true;
}

bool NarrowPlain(const wchar_t *p, char *pTo)
{
    __m128i parts[4];
    for (int i = 0; i < 4; ++i)
        parts[i] = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p) + i);
    const __m128i all = _mm_or_si128(_mm_or_si128(parts[0], parts[1]), _mm_or_si128(parts[2], parts[3]));
    const __m128i beyond = _mm_and_si128(all, _mm_set1_epi32(~0x7F));
    if (_mm_movemask_epi8(_mm_cmpeq_epi32(beyond, _mm_setzero_si128())) != 0xFFFF)
        return false;
    const __m128i bytes = _mm_packus_epi16(_mm_packs_epi32(parts[0], parts[1]), _mm_packs_epi32(parts[2], parts[3]));
    _mm_storeu_si128(reinterpret_cast<__m128i *>(pTo), bytes);
    return true;
}

#else

bool WidenPlain(const char *p, wchar_t *pTo)
{
    unsigned all = 0;
    for (std::size_t i = 0; i < kBlock; ++i)
        all |= static_cast<unsigned char>(p[i]);
    for (std::size_t i = 0; all < 0x80 && i < kBlock; ++i)
        pTo[i] = static_cast<wchar_t>(p[i]);
    return all < 0x80;
}

bool NarrowPlain(const wchar_t *p, char *pTo)
{
    std::uint32_t all = 0;
    for (std::size_t i = 0; i < kBlock; ++i)
        all |= static_cast<std::uint32_t>(p[i]);
    for (std::size_t i = 0; all < 0x80 && i < kBlock; ++i)
        pTo[i] = static_cast<char>(p[i]);
    return all < 0x80;
}

#endif

} // namespace

wchar_t *Widen(std::string_view bytes, bool isLast, wchar_t *pTo, std::size_t &used)
{
    const char *p = bytes.data(), *const end = p + bytes.size();
    while (p != end) {
        while (static_cast<std::size_t>(end - p) >= kBlock && WidenPlain(p, pTo)) {
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
        while (static_cast<std::size_t>(end - p) >= kBlock && NarrowPlain(p, pTo)) {
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
