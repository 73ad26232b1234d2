#include "host/services/Icons.h"

#include "host/services/Services.h"
#include "host/services/Text.h"

#include <map>

namespace velmor {

const IconFile *findIcon(const std::wstring &name)
{
    static std::map<std::wstring, IconFile> known;
    if (name.empty() || name.find_first_of(L"/\\") != std::wstring::npos)
        return nullptr;
    if (const auto found = known.find(name); found != known.end())
        return &found->second;
    for (const char *ending : {".svg", ".png"})
        if (auto path = Services::instance().paths().resource("icons/" + utf8(name) + ending); !path.empty())
            return &known.emplace(name, IconFile{std::move(path)}).first->second;
    return nullptr;
}

} // namespace velmor
