#include "review/NodeNames.h"

#include "catalog/NumberText.h"
#include "contracts/NetworkTopology.h"

#include <map>

std::wstring FirstDigitRun(const std::wstring &name)
{
    constexpr const wchar_t *kDigits = L"0123456789";
    const std::size_t from = name.find_first_of(kDigits);
    if (from == std::wstring::npos)
        return {};
    return name.substr(from, name.find_first_not_of(kDigits, from) - from);
}

std::wstring NameFromNodes(const ZEMGis::Selection::CSelectionSet &sections)
{
    std::map<int, std::wstring> names;
    for (const auto &section : sections.m_sections) {
        if (!section)
            continue;
        for (const auto &node : {section->GetStartingNode(), section->GetEndingNode()}) {
            const std::wstring name = node ? node->GetName() : std::wstring();
            if (const std::wstring number = FirstDigitRun(name); !number.empty())
                names[ReadInt(number)] = name;
        }
    }
    return names.empty() ? std::wstring() : names.begin()->second;
}
