// The program's own texts with values filled in.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace velmor {

/// The text of that name in the program's language, with %1, %2, ... replaced by the parts in turn.
std::wstring uiMessage(std::string_view name, std::initializer_list<std::wstring_view> parts);

} // namespace velmor
