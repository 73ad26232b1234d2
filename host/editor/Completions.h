// What a text that is being typed can become.
#pragma once

#include "host/editor/Session.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// Whole texts that begin with what is typed (upper and lower case alike), sorted, each once: without a prompt names of
/// commands in the user's language, their aliases and global names (behind the mark ' only those that may start inside
/// another command); with one its keywords, and names of what it asks for: layers, blocks, variables, patterns, files
/// and folders on the disk. Nothing for an empty text.
std::vector<std::wstring> completionsOf(Session &session, const Prompt *prompt, std::wstring_view typed);

/// The answer that a person means: a keyword in the user's language gives "_KEYWORD", all else is as it was typed.
std::wstring globalAnswer(const Prompt &prompt, const std::wstring &typed);

} // namespace velmor
