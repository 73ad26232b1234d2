#include "dialogs/FileTitle.h"

std::wstring FileTitle(const std::wstring &path)
{
    const std::size_t slash = path.find_last_of(L"/\\");
    const std::wstring name = slash == std::wstring::npos ? path : path.substr(slash + 1);
    const std::size_t dot = name.rfind(L'.');
    return dot == std::wstring::npos || dot == 0 ? name : name.substr(0, dot);
}
