// Which sections of the network a text means.
#pragma once

#include "host/drawing/Drawing.h"
#include "host/editor/Prompts.h"
#include "host/editor/Words.h"

#include <optional>
#include <span>
#include <vector>

namespace velmor {

class Session;

/// The forms that sectionsByWords takes, for a prompt.
inline constexpr wchar_t kSectionForms[] =
    L"all / name NAME ... / handle HANDLE ... / upstream NAME / downstream NAME / path NODE NODE";

/// Whether these are words of one of the forms, right or wrong, and no answer to a question for objects ("all" may be
/// either; it is the form when it stands alone).
bool isSectionForm(std::span<const Word> words);

/// Sections in the order named (for "all" as in the drawing, for "upstream" nearest first), each once. Nothing, with
/// a reason in one line, for words that mean no section.
std::optional<std::vector<AcDbObjectId>> sectionsByWords(Drawing &drawing, std::span<const Word> words,
                                                         std::wstring &reason);

/// Asks for sections till Enter: words as above, entities and points. Nothing when it was cancelled.
std::optional<std::vector<AcDbObjectId>> askForSections(Session &session);

} // namespace velmor
