#include "definition/AreaNaming.h"

std::wstring NextFreeAreaName(const CAreaNameParts &parts, const std::wstring &base,
                              const std::set<std::wstring> &usedNames)
{
    const std::wstring stem = parts.m_strPrefix + base + parts.m_strSuffix + parts.m_strDelimiter;
    for (int counter = 1;; ++counter) {
        std::wstring name = stem + std::to_wstring(counter);
        if (!usedNames.contains(name))
            return name;
    }
}

int SmallestFreeNumber(const std::set<int> &used, int from)
{
    auto it = used.lower_bound(from);
    int number = from;
    for (; it != used.end() && *it == number; ++it)
        ++number;
    return number;
}

std::wstring FormatCount(const std::wstring &message, int count)
{
    std::wstring text;
    bool placed = false;
    for (std::size_t i = 0; i < message.size(); ++i) {
        const wchar_t next = message[i] == L'%' && i + 1 < message.size() ? message[i + 1] : L'\0';
        if (next == L'%') {
            text += L'%';
            ++i;
        } else if (next == L'd' && !placed) {
            text += std::to_wstring(count);
            placed = true;
            ++i;
        } else {
            text += message[i];
        }
    }
    return text;
}
