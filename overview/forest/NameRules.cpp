#include "overview/forest/NameRules.h"

#include <algorithm>

std::wstring TrimmedName(const std::wstring &typed)
{
    constexpr const wchar_t *kBlanks = L" \t\u00a0";
    const std::size_t first = typed.find_first_not_of(kBlanks);
    if (first == std::wstring::npos)
        return {};
    return typed.substr(first, typed.find_last_not_of(kBlanks) - first + 1);
}

void CNameList::Add(const std::wstring &name)
{
    if (!name.empty())
        ++m_uses[name];
}

void CNameList::Rename(const std::wstring &from, const std::wstring &to)
{
    if (const auto found = m_uses.find(from); found != m_uses.end() && --found->second == 0)
        m_uses.erase(found);
    Add(to);
}

ENameTrouble CNameList::Check(const std::wstring &present, const std::wstring &wanted) const
{
    if (wanted == present)
        return ENameTrouble::None;
    if (wanted.empty())
        return ENameTrouble::Empty;
    const auto isControl = [](wchar_t c) { return c < L' ' || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029; };
    if (std::ranges::any_of(wanted, isControl))
        return ENameTrouble::ControlCharacter;
    if (wanted.size() > kLongestName)
        return ENameTrouble::TooLong;
    return m_uses.contains(wanted) ? ENameTrouble::Doubled : ENameTrouble::None;
}
