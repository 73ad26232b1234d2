#include "host/editor/Words.h"

#include "host/services/Messages.h"

#include <cwctype>

namespace velmor {

std::optional<std::vector<Word>> splitWords(std::wstring_view line, std::wstring &reason)
{
    std::vector<Word> words;
    for (std::size_t i = 0;;) {
        while (i < line.size() && std::iswspace(line[i]))
            ++i;
        if (i == line.size() || line[i] == L'#')
            return words;
        Word word;
        if (line[i] == L'"') {
            word.quoted = true;
            for (++i;; ++i) {
                if (i == line.size()) {
                    reason = uiText("words.quote");
                    return std::nullopt;
                }
                if (line[i] == L'"') {
                    if (i + 1 == line.size() || line[i + 1] != L'"')
                        break;
                    ++i; // doubled: the mark itself
                }
                word.text.push_back(line[i]);
            }
            ++i;
            if (i < line.size() && !std::iswspace(line[i])) {
                reason = uiText("words.blank");
                return std::nullopt;
            }
        } else {
            while (i < line.size() && !std::iswspace(line[i]))
                word.text.push_back(line[i++]);
        }
        words.push_back(std::move(word));
    }
}

} // namespace velmor
