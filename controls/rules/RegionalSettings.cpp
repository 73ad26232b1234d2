#include "controls/rules/RegionalSettings.h"

#include "controls/rules/NumberText.h"

namespace AMSEdit {

wchar_t QueryCharacter(const IRegionalSettings &settings, RegionalQuery query, wchar_t otherwise)
{
    const auto answer = settings.Query(query);
    return answer && !answer->empty() ? answer->front() : otherwise;
}

int QueryNumber(const IRegionalSettings &settings, RegionalQuery query, int otherwise)
{
    const auto answer = settings.Query(query);
    return answer ? WholeNumberOf(*answer) : otherwise;
}

} // namespace AMSEdit
