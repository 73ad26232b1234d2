// What commands have in common: how they end, and how the words of their options are read.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmor {

struct Command {
    /// How a host command ended.
    enum class Next {
        Commit,   ///< done
        Revert,   ///< without doing anything: it failed
        BadInput, ///< without doing anything: what it was given (a file, a name) is of no use
    };
};

/// Which of the keywords a text means: by a leading part that holds at least the keyword's capitals, upper and lower
/// case alike, with or without the mark "_" of the language-neutral form. Null for none.
const std::wstring *matchKeyword(const std::vector<std::wstring> &keywords, std::wstring_view text);

} // namespace velmor
