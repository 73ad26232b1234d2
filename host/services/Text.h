// Text between UTF-8 (files, messages to a terminal) and wide text (the contracts), and small helpers over both.
#pragma once

#include <string>
#include <string_view>

namespace velmor {

/// Never fails: a byte that is no part of a character becomes U+FFFD.
std::wstring wide(std::string_view utf8Text);
/// A value that is no character becomes U+FFFD.
std::string utf8(std::wstring_view text);
/// True for text in which every byte is part of a well-formed character.
bool isUtf8(std::string_view text);

/// Without blanks, tabs and carriage returns at both ends.
std::string_view trimmed(std::string_view text);
/// Equal but for the case of the letters A to Z.
bool equalNoCase(std::string_view a, std::string_view b);

} // namespace velmor
