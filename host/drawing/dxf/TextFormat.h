// The codes inside of texts: "%%d" in single lines, "\P" and the like in paragraphs.
#pragma once

#include <string>
#include <string_view>

namespace velmor::dxf {

/// What a single line shows: "%%d" is a degree sign, "%%c" a diameter, "%%p" plus or minus, "%%nnn" a character by
/// number; "%%u" and "%%o" only change the look and go.
std::wstring plainLine(std::wstring_view text);
/// The way back; only percent signs that would read as codes change.
std::wstring codedLine(std::wstring_view text);

/// What a paragraph text shows, with "\n" between its lines; formatting is taken out.
std::wstring plainParagraphs(std::wstring_view text);
std::wstring codedParagraphs(std::wstring_view text);

} // namespace velmor::dxf
