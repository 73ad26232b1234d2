#include "host/drawing/dxf/Tags.h"

namespace velmor::dxf {

bool TagCursor::nextSlowly(Tag &tag, const char *&start)
{
    const auto lineEndOf = [this](const char *p) {
        const char *end = findLineEnd(p);
        return end ? end : m_end;
    };
    const auto withoutReturn = [](const char *first, const char *end) {
        return end != first && end[-1] == '\r' ? end - 1 : end;
    };
    while (m_next < m_end) {
        const char *line = m_next;
        const char *lineEnd = lineEndOf(line);
        Tag number{line, static_cast<std::uint32_t>(withoutReturn(line, lineEnd) - line), 0};
        std::string_view digits = number.name();
        if (digits.starts_with('+'))
            digits.remove_prefix(1);
        std::int32_t code = 0;
        const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), code);
        const bool isCode = !digits.empty() && parsed.ec == std::errc() &&
                            parsed.ptr == digits.data() + digits.size() && code > -10000 && code < 100000;
        m_next = lineEnd == m_end ? m_end : lineEnd + 1;
        if (!isCode) {
            if (m_badLines.size() < kMaxBadLines)
                m_badLines.push_back({line, false});
            continue;
        }
        if (lineEnd == m_end) {
            m_badLines.push_back({line, true});
            continue;
        }
        start = line;
        tag.code = code;
        tag.value = m_next;
        const char *valueEnd = lineEndOf(m_next);
        tag.length = static_cast<std::uint32_t>(withoutReturn(m_next, valueEnd) - m_next);
        m_next = valueEnd == m_end ? m_end : valueEnd + 1;
        return true;
    }
    start = m_end;
    return false;
}

ValueKind valueKindOf(int code)
{
    const auto in = [code](int low, int high) { return code >= low && code <= high; };
    if (in(10, 59) || in(110, 149) || in(210, 239) || in(460, 469) || in(1010, 1059))
        return ValueKind::Real;
    if (in(60, 79) || in(90, 99) || in(160, 179) || in(270, 299) || in(370, 389) || in(400, 409) || in(420, 429) ||
        in(440, 459) || in(1060, 1079))
        return ValueKind::Integer;
    if (in(310, 319) || code == 1004)
        return ValueKind::Binary;
    if (code == 5 || code == 105 || in(320, 369) || in(390, 399) || in(480, 489) || code == 1005)
        return ValueKind::Handle;
    return ValueKind::Text;
}

} // namespace velmor::dxf
