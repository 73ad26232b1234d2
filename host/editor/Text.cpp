#include "host/editor/Text.h"

#include <cstdint>

namespace velmor {

namespace {
constexpr wchar_t kReplacement = L'\xFFFD';
}

std::wstring wideFromUtf8(std::string_view text)
{
    std::wstring wide;
    wide.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const int length = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
        std::uint32_t code = length <= 1 ? lead : lead & (0x7Fu >> length);
        int taken = 1;
        while (taken < length && i + taken < text.size() &&
               (static_cast<unsigned char>(text[i + taken]) & 0xC0) == 0x80)
            code = code << 6 | (static_cast<unsigned char>(text[i + taken++]) & 0x3Fu);
        constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
        const bool good = length > 0 && taken == length && code >= kSmallest[length] && code <= 0x10FFFF &&
                          (code < 0xD800 || code > 0xDFFF);
        wide.push_back(good ? static_cast<wchar_t>(code) : kReplacement);
        i += static_cast<std::size_t>(taken);
    }
    return wide;
}

std::string utf8FromWide(std::wstring_view text)
{
    std::string narrow;
    narrow.reserve(text.size());
    for (const wchar_t c : text) {
        auto code = static_cast<std::uint32_t>(c);
        if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
            code = static_cast<std::uint32_t>(kReplacement);
        if (code < 0x80) {
            narrow.push_back(static_cast<char>(code));
        } else if (code < 0x800) {
            narrow.push_back(static_cast<char>(0xC0 | code >> 6));
            narrow.push_back(static_cast<char>(0x80 | (code & 0x3F)));
        } else if (code < 0x10000) {
            narrow.push_back(static_cast<char>(0xE0 | code >> 12));
            narrow.push_back(static_cast<char>(0x80 | (code >> 6 & 0x3F)));
            narrow.push_back(static_cast<char>(0x80 | (code & 0x3F)));
        } else {
            narrow.push_back(static_cast<char>(0xF0 | code >> 18));
            narrow.push_back(static_cast<char>(0x80 | (code >> 12 & 0x3F)));
            narrow.push_back(static_cast<char>(0x80 | (code >> 6 & 0x3F)));
            narrow.push_back(static_cast<char>(0x80 | (code & 0x3F)));
        }
    }
    return narrow;
}

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
                    reason = L"a quotation mark is not closed";
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
                reason = L"a blank is missing behind a closing quotation mark";
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
