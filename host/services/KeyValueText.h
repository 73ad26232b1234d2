// Text files of the form "KEY = value", one a line, that a user may edit: messages, settings, catalogues.
//
// UTF-8, with or without a byte order mark, any line ends. A line that begins with # (after blanks) is a comment, one
// in brackets begins a section. Blanks around key and value don't count. In a value "\n" ends a line, "\t" is a tab,
// "\s" a blank that counts, "\\" a backslash.
#pragma once

#include "host/drawing/Drawing.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmor {

struct KeyValueLine {
    std::size_t line = 0; ///< from 1
    std::string section;  ///< empty before the first section
    std::string key, value;
};

struct KeyValueText {
    std::vector<KeyValueLine> lines;
    std::vector<Finding> findings; ///< lines that were passed over, each with its number
};

/// Never fails: what can't be read is a finding.
KeyValueText parseKeyValues(std::string_view text);
/// A value as it stands in a file, such that parsing gives it back.
std::string escapedValue(std::string_view value);

/// A finding with the file it was made in.
struct FileFinding {
    std::filesystem::path file;
    Finding finding;
    /// "settings.cfg:12: text"; without a line "settings.cfg: text".
    std::string message() const;
};

} // namespace velmor
