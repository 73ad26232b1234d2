// Keyboard letters for captions. Captions come from a file that a user can edit, in any language, so the letters are
// chosen when a dialog starts. No widgets.
#pragma once

#include <span>
#include <string>
#include <vector>

/// The captions with "&" before the letter that reaches each of them together with Alt: a free first letter of a word,
/// else any free letter; no two alike, letters without diacritics only. Earlier captions choose first, and move to
/// another of their letters only where a later one would get none. A caption that has its own mark keeps it, one for
/// which no letter is left comes back as it is.
std::vector<std::wstring> WithMnemonics(std::span<const std::wstring> captions);

/// The caption without its mark; "&&" is an ampersand.
std::wstring WithoutMnemonic(const std::wstring &caption);
