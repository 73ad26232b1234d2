// Regional settings that a test pins; what it does not name has no answer.
#pragma once

#include "controls/rules/RegionalSettings.h"

#include <map>

class PinnedSettings : public AMSEdit::IRegionalSettings {
public:
    PinnedSettings(std::initializer_list<std::pair<const AMSEdit::RegionalQuery, std::wstring>> answers)
        : m_answers(answers)
    {
    }
    std::optional<std::wstring> Query(AMSEdit::RegionalQuery query) const override
    {
        const auto found = m_answers.find(query);
        return found == m_answers.end() ? std::nullopt : std::optional(found->second);
    }

private:
    std::map<AMSEdit::RegionalQuery, std::wstring> m_answers;
};
