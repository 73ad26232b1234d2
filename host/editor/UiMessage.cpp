#include "host/editor/UiMessage.h"

#include "host/services/Messages.h"

namespace velmor {

std::wstring uiMessage(std::string_view name, std::initializer_list<std::wstring_view> parts)
{
    const std::wstring form = uiText(name);
    std::wstring text;
    for (std::size_t i = 0; i < form.size(); ++i) {
        const std::size_t part =
            form[i] == L'%' && i + 1 < form.size() ? static_cast<std::size_t>(form[i + 1] - L'1') : parts.size();
        if (part < parts.size()) {
            text += parts.begin()[part];
            ++i;
        } else {
            text += form[i];
        }
    }
    return text;
}

} // namespace velmor
