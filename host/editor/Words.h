// Words of command lines and scripts.
#pragma once

#include <algorithm>
#include <cwctype>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// Equal, upper and lower case alike.
inline bool sameText(std::wstring_view a, std::wstring_view b)
{
    return std::ranges::equal(a, b, [](wchar_t x, wchar_t y) { return std::towlower(x) == std::towlower(y); });
}

/// One word of a command line or of a script.
struct Word {
    std::wstring text;
    bool quoted = false;
    bool operator==(const Word &) const = default;
};
/// Words stand between blanks, or between quotation marks (a doubled mark stands for itself); "#" at the start of a
/// word begins a comment. Nothing, with a reason, for a quotation mark that is not closed.
std::optional<std::vector<Word>> splitWords(std::wstring_view line, std::wstring &reason);

} // namespace velmor
