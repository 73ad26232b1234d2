#include "host/drawing/Texts.h"

namespace velmor {

namespace {

TextSource &textSource()
{
    static TextSource source = nullptr;
    return source;
}

} // namespace

void setTextSource(TextSource source)
{
    textSource() = source;
}

std::string drawingText(std::string_view name, std::initializer_list<std::string_view> parts)
{
    if (textSource())
        return textSource()(name, parts);
    std::string text(name);
    for (const std::string_view part : parts)
        text.append(" ").append(part);
    return text;
}

} // namespace velmor
