// UTF-8 files in and out of wide text.
//
// Paths are wide text and go to the system as UTF-8. Nothing throws but std::bad_alloc.
#pragma once

#include "catalog/MarkupText.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace MarkupFile {

struct Result {
    bool isGood = false;
    std::size_t bytes = 0; ///< of the file
    std::wstring message;  ///< one line when it is not good: the system's, or that the file is too long
};

/// Reads a file whole into text. Bytes that are not UTF-8 become 0xDC00 + byte each. At most CMarkupText::kLongest
/// bytes; a longer file is refused before anything is read.
Result Read(std::wstring_view path, CMarkupText &text);

/// Writes text under the path; at every moment the name holds the old file or the new one, as a whole. A new file is
/// written beside the old one, synced and renamed over it; it has the old one's permissions. Symbolic links are
/// followed. Where no file can be made in the folder, the old file is written in place, once there is surely room for
/// it; devices and pipes are written in place, too.
Result Write(std::wstring_view path, std::wstring_view text);

/// The system's text for an error number.
std::wstring SystemText(int error);

/// UTF-8 to wide text, at most one character for each byte; returns the end of what was written. Where isLast is false
/// the bytes of an unfinished character at the end are left: used tells how many bytes were taken.
wchar_t *Widen(std::string_view bytes, bool isLast, wchar_t *pTo, std::size_t &used);
/// Wide text to UTF-8: 0xDC80 to 0xDCFF become the byte they stand for, what is no character U+FFFD. The place needs
/// room for 4 bytes a character; returns the end of what was written.
char *Narrow(std::wstring_view text, char *pTo);

} // namespace MarkupFile
