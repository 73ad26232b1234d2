// The groups ("tags") of an ASCII DXF text: a line with a whole number, the code, and a line with a value.
#pragma once

#include "host/drawing/dxf/Numbers.h"

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace velmor::dxf {

/// A code and where its value stands. The value has no line end; blanks are kept.
struct Tag {
    const char *value = nullptr;
    std::uint32_t length = 0;
    std::int32_t code = 0;
    std::string_view text() const { return {value, length}; }
    /// Without blanks around, for names and numbers.
    std::string_view name() const
    {
        std::string_view t = text();
        while (!t.empty() && (t.front() == ' ' || t.front() == '\t'))
            t.remove_prefix(1);
        while (!t.empty() && (t.back() == ' ' || t.back() == '\t'))
            t.remove_suffix(1);
        return t;
    }
    bool real(double &number) const { return parseReal(value, value + length, number); }
    int integer(int otherwise = 0) const
    {
        const auto number = parseInteger(text());
        return number && *number >= INT32_MIN && *number <= INT32_MAX ? static_cast<int>(*number) : otherwise;
    }
};

/// What kind of value stands under a code.
enum class ValueKind { Text, Real, Integer, Handle, Binary };
ValueKind valueKindOf(int code);

/// Steps through the tags of a text that ends with a zero byte (which a std::string's does).
class TagCursor {
public:
    /// A line that should hold a code and does not; it is passed over.
    struct BadLine {
        const char *where;
        bool atEnd; ///< the text ends after a code, before its value
    };

    TagCursor() = default;
    TagCursor(const char *first, const char *last) : m_next(first), m_end(last) {}

    /// Where the next tag's code line starts.
    const char *position() const { return m_next; }
    const char *end() const { return m_end; }
    /// Lines passed over since the last call of clearBadLines.
    const std::vector<BadLine> &badLines() const { return m_badLines; }
    void clearBadLines() { m_badLines.clear(); }

    /// The next tag; start becomes the place of its code line. False at the end of the text.
    bool next(Tag &tag, const char *&start)
    {
        const char *p = m_next;
        start = p;
        while (*p == ' ')
            ++p;
        unsigned digit = static_cast<unsigned char>(*p) - unsigned{'0'};
        if (digit > 9) [[unlikely]]
            return nextSlowly(tag, start);
        std::int32_t code = static_cast<std::int32_t>(digit);
        const char *first = p;
        while ((digit = static_cast<unsigned char>(*++p) - unsigned{'0'}) <= 9)
            code = static_cast<std::int32_t>(static_cast<std::uint32_t>(code) * 10u + digit);
        if (p - first > 5) [[unlikely]]
            return nextSlowly(tag, start);
        if (*p == '\r')
            ++p;
        if (*p != '\n' || p >= m_end) [[unlikely]]
            return nextSlowly(tag, start);
        ++p;
        const char *lineEnd = findLineEnd(p);
        if (!lineEnd) [[unlikely]]
            return nextSlowly(tag, start);
        tag.code = code;
        tag.value = p;
        m_next = lineEnd + 1;
        lineEnd -= lineEnd != p && lineEnd[-1] == '\r';
        tag.length = static_cast<std::uint32_t>(lineEnd - p);
        return true;
    }

private:
    const char *findLineEnd(const char *p) const
    {
#if defined(__SSE2__)
        // Most values are shorter than 16 bytes.
        if (m_end - p >= 16) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
            const int mask = _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n')));
            if (mask != 0)
                return p + __builtin_ctz(static_cast<unsigned>(mask));
            p += 16;
        }
#endif
        return static_cast<const char *>(std::memchr(p, '\n', static_cast<std::size_t>(m_end - p)));
    }
    bool nextSlowly(Tag &tag, const char *&start);
    static constexpr std::size_t kMaxBadLines = 1000;

    const char *m_next = nullptr, *m_end = nullptr;
    std::vector<BadLine> m_badLines;
};

} // namespace velmor::dxf
