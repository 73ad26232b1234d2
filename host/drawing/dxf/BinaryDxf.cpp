#include "host/drawing/dxf/BinaryDxf.h"

#include "host/drawing/Texts.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <optional>

namespace velmor {

namespace {

using namespace std::string_view_literals;
constexpr auto kSentinel = "AutoCAD Binary DXF\r\n\x1a\0"sv;

constexpr std::size_t kBytesBetweenTold = 1 << 18;

enum class ValueKind { Text, Real, Int16, Int32, Int64, Switch, Chunk, Unknown };

struct CodeRange {
    int first, last;
    ValueKind kind;
};

// Sizes by group code; a code in no range has no known size.
constexpr CodeRange kRanges[] = {
    {0, 9, ValueKind::Text},        {10, 59, ValueKind::Real},      {60, 79, ValueKind::Int16},
    {90, 99, ValueKind::Int32},     {100, 109, ValueKind::Text},    {110, 149, ValueKind::Real},
    {160, 169, ValueKind::Int64},   {170, 179, ValueKind::Int16},   {210, 239, ValueKind::Real},
    {270, 289, ValueKind::Int16},   {290, 299, ValueKind::Switch},  {300, 309, ValueKind::Text},
    {310, 319, ValueKind::Chunk},   {320, 369, ValueKind::Text},    {370, 389, ValueKind::Int16},
    {390, 399, ValueKind::Text},    {400, 409, ValueKind::Int16},   {410, 419, ValueKind::Text},
    {420, 429, ValueKind::Int32},   {430, 439, ValueKind::Text},    {440, 459, ValueKind::Int32},
    {460, 469, ValueKind::Real},    {470, 481, ValueKind::Text},    {999, 1003, ValueKind::Text},
    {1004, 1004, ValueKind::Chunk}, {1005, 1009, ValueKind::Text},  {1010, 1059, ValueKind::Real},
    {1060, 1070, ValueKind::Int16}, {1071, 1071, ValueKind::Int32},
};

ValueKind kindOfCode(int code)
{
    for (const CodeRange &range : kRanges)
        if (code >= range.first && code <= range.last)
            return range.kind;
    return ValueKind::Unknown;
}

class Converter {
public:
    Converter(std::string_view bytes, const std::function<bool(double)> &progress)
        : m_bytes(bytes), m_progress(progress)
    {
    }
    BinaryDxfText run();

private:
    bool longCodes() const;
    std::optional<int> takeCode();
    bool takeValue(int code);
    bool takeText();
    bool takeReal();
    bool takeChunk();
    template <class Int>
    bool takeInteger();
    template <class T>
    std::optional<T> take();
    void writeCode(int code);
    template <class... Format>
    void writeNumber(Format... value);

    std::string_view m_bytes;
    const std::function<bool(double)> &m_progress;
    std::size_t m_at = kSentinel.size();
    bool m_longCodes = false;
    BinaryDxfText m_result;
};

// The first group is "0 SECTION" or a comment: with long codes its second byte is a high byte, 0 or 3; with short ones
// it is a letter, or the first byte is the mark of a long code.
bool Converter::longCodes() const
{
    if (m_bytes.size() < m_at + 2)
        return true;
    const auto second = static_cast<unsigned char>(m_bytes[m_at + 1]);
    return static_cast<unsigned char>(m_bytes[m_at]) != 0xFF && second <= 3;
}

template <class T>
std::optional<T> Converter::take()
{
    if (m_bytes.size() - m_at < sizeof(T))
        return std::nullopt;
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i)
        bits |= static_cast<std::uint64_t>(static_cast<unsigned char>(m_bytes[m_at + i])) << (8 * i);
    m_at += sizeof(T);
    if constexpr (std::is_floating_point_v<T>) {
        T value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    } else {
        return static_cast<T>(bits);
    }
}

std::optional<int> Converter::takeCode()
{
    if (m_longCodes)
        return take<std::int16_t>();
    const auto code = take<std::uint8_t>();
    if (code && *code == 255)
        return take<std::int16_t>();
    return code;
}

void Converter::writeCode(int code)
{
    char digits[8];
    const auto end = std::to_chars(digits, digits + sizeof digits, code).ptr;
    for (auto width = end - digits; width < 3; ++width)
        m_result.text.push_back(' ');
    m_result.text.append(digits, end);
    m_result.text.push_back('\n');
}

template <class... Format>
void Converter::writeNumber(Format... value)
{
    char digits[40];
    const auto end = std::to_chars(digits, digits + sizeof digits, value...).ptr;
    m_result.text.append(digits, end);
}

bool Converter::takeText()
{
    const auto end = m_bytes.find('\0', m_at);
    if (end == std::string_view::npos)
        return false;
    for (const char c : m_bytes.substr(m_at, end - m_at)) {
        if (c == '\n' || c == '\r') { // would end the line; the escape reads back as the same character
            m_result.text.push_back('^');
            m_result.text.push_back(static_cast<char>(c + '@'));
        } else {
            m_result.text.push_back(c);
        }
    }
    m_at = end + 1;
    return true;
}

bool Converter::takeReal()
{
    const auto value = take<double>();
    if (!value)
        return false;
    if (!std::isfinite(*value)) {
        m_result.findings.push_back({Severity::Damage, m_at - sizeof(double), drawingText("dxf.binary.noNumber")});
        m_result.text += "0.0";
        return true;
    }
    const auto from = m_result.text.size();
    writeNumber(*value);
    if (m_result.text.find_first_of(".e", from) == std::string::npos)
        m_result.text += ".0";
    return true;
}

bool Converter::takeChunk()
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    const auto length = take<std::uint8_t>();
    if (!length || m_bytes.size() - m_at < *length)
        return false;
    for (const char c : m_bytes.substr(m_at, *length)) {
        m_result.text.push_back(kDigits[static_cast<unsigned char>(c) >> 4]);
        m_result.text.push_back(kDigits[static_cast<unsigned char>(c) & 15]);
    }
    m_at += *length;
    return true;
}

template <class Int>
bool Converter::takeInteger()
{
    const auto value = take<Int>();
    if (value)
        writeNumber(static_cast<std::int64_t>(*value));
    return value.has_value();
}

bool Converter::takeValue(int code)
{
    switch (kindOfCode(code)) {
    case ValueKind::Text:
        return takeText();
    case ValueKind::Real:
        return takeReal();
    case ValueKind::Int16:
        return takeInteger<std::int16_t>();
    case ValueKind::Int32:
        return takeInteger<std::int32_t>();
    case ValueKind::Int64:
        return takeInteger<std::int64_t>();
    case ValueKind::Switch:
        return takeInteger<std::uint8_t>();
    case ValueKind::Chunk:
        return takeChunk();
    case ValueKind::Unknown:
        break;
    }
    return false;
}

BinaryDxfText Converter::run()
{
    m_longCodes = longCodes();
    // Ten bytes a group is near enough to spare most of the growing.
    m_result.text.reserve(m_bytes.size() * 2);
    m_result.offsets.reserve(m_bytes.size() / 10);
    std::size_t nextTold = 0;
    while (m_at < m_bytes.size()) {
        if (m_progress && m_at >= nextTold) {
            nextTold = m_at + kBytesBetweenTold;
            if (!m_progress(static_cast<double>(m_at) / static_cast<double>(m_bytes.size()))) {
                m_result.cancelled = true;
                return std::move(m_result);
            }
        }
        const std::size_t groupAt = m_at, textAt = m_result.text.size();
        const auto code = takeCode();
        if (code && kindOfCode(*code) == ValueKind::Unknown) {
            m_result.findings.push_back(
                {Severity::Damage, groupAt, drawingText("dxf.binary.noSize", {std::to_string(*code)})});
            return std::move(m_result);
        }
        if (code)
            writeCode(*code);
        if (!code || !takeValue(*code)) {
            m_result.text.resize(textAt);
            m_result.findings.push_back({Severity::Damage, groupAt, drawingText("dxf.binary.cut")});
            return std::move(m_result);
        }
        m_result.text.push_back('\n');
        m_result.offsets.push_back(groupAt);
        if (*code == 0 && std::string_view(m_result.text).substr(textAt) == "  0\nEOF\n")
            return std::move(m_result);
    }
    m_result.findings.push_back({Severity::Damage, m_bytes.size(), drawingText("dxf.noEndMark")});
    return std::move(m_result);
}

} // namespace

bool isBinaryDxf(std::string_view bytes)
{
    return bytes.starts_with(kSentinel);
}

std::size_t BinaryDxfText::offsetOfLine(std::size_t line) const
{
    if (line == 0 || offsets.empty())
        return 0;
    return offsets[std::min((line - 1) / 2, offsets.size() - 1)];
}

BinaryDxfText binaryToText(std::string_view bytes, const std::function<bool(double)> &progress)
{
    return Converter(bytes, progress).run();
}

} // namespace velmor
