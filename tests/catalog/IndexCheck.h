// Checks of a markup document's element records.
#pragma once

#include "catalog/Markup.h"

#include <string>

namespace markup_check {

/// Compares the records with those of a fresh parse of the same text: tree, places, tag lengths, levels, flags of each
/// element. Empty when they agree, else what differs.
std::string differenceToFreshParse(const CMarkup &document);

/// What must hold for damaged documents, too: elements start with "<", stand in order inside their parents and apart
/// from one another, and the links between them agree. Empty, or what is wrong.
std::string brokenRule(const CMarkup &document);

/// As UTF-8, for messages.
std::string narrow(std::wstring_view text);

} // namespace markup_check
