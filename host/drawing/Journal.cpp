#include "host/drawing/Journal.h"

#include "contracts/DrawingHost.h"

#include <charconv>

namespace velmor {

Journal &Journal::instance()
{
    static Journal journal;
    return journal;
}

void Journal::setRecording(bool on)
{
    if (on)
        m_entries.clear();
    m_recording = on;
}

std::string journalText(std::string_view text)
{
    return std::string(text);
}

std::string journalText(std::wstring_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t c : text) {
        const auto value = static_cast<std::uint32_t>(c);
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
            bytes.push_back(static_cast<char>(0xF0 | ((value >> 18) & 7)));
            tail(12);
            tail(6);
            tail(0);
        }
    }
    return bytes;
}

std::string journalText(const wchar_t *text)
{
    return text ? journalText(std::wstring_view(text)) : std::string("null");
}

std::string journalText(double value)
{
    char digits[40];
    return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

std::string journalText(const AcGePoint3d &point)
{
    return journalText(point.x) + "," + journalText(point.y) + "," + journalText(point.z);
}

std::string journalText(const AcDbObjectId &id)
{
    wchar_t digits[17];
    return id.isNull() || !id.handle().getIntoAsciiBuffer(digits) ? "0" : journalText(std::wstring_view(digits));
}

} // namespace velmor
