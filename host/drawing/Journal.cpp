#include "host/drawing/Journal.h"

#include "contracts/DrawingHost.h"
#include "host/drawing/Utf8.h"

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
    return toUtf8(text);
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
