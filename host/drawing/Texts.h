// What the drawing says to a person: texts that stand in the message files, in whatever language runs.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

namespace velmor {

/// Gives the text of a name in UTF-8, with %1, %2, ... replaced by the parts in turn.
using TextSource = std::string (*)(std::string_view name, std::initializer_list<std::string_view> parts);

/// Where texts come from; the services name themselves when they are linked in. Null: nowhere.
void setTextSource(TextSource source);

/// A text by name. Without a source it is the name with the parts behind it, which still tells what and where.
std::string drawingText(std::string_view name, std::initializer_list<std::string_view> parts = {});

} // namespace velmor
