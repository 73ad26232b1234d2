#include "definition/Mnemonics.h"

#include <cwctype>
#include <set>

namespace {

bool isPlainLetter(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

wchar_t folded(wchar_t c)
{
    return static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(c)));
}

/// Where the caption's own mark stands, or npos.
std::size_t ownMark(const std::wstring &caption)
{
    for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
        if (caption[i] != L'&')
            continue;
        if (caption[i + 1] != L'&')
            return i;
        ++i;
    }
    return std::wstring::npos;
}

/// The place of the letter to mark, or npos.
std::size_t freeLetter(const std::wstring &caption, const std::set<wchar_t> &taken, bool wordStartsOnly)
{
    for (std::size_t i = 0; i < caption.size(); ++i) {
        const bool wordStart = i == 0 || !std::iswalnum(static_cast<std::wint_t>(caption[i - 1]));
        if (isPlainLetter(caption[i]) && !taken.contains(folded(caption[i])) && (wordStart || !wordStartsOnly))
            return i;
    }
    return std::wstring::npos;
}

} // namespace

std::vector<std::wstring> WithMnemonics(std::span<const std::wstring> captions)
{
    std::vector<std::wstring> marked(captions.begin(), captions.end());
    std::set<wchar_t> taken;
    for (const std::wstring &caption : marked) {
        if (const std::size_t mark = ownMark(caption); mark != std::wstring::npos)
            taken.insert(folded(caption[mark + 1]));
    }
    for (std::wstring &caption : marked) {
        if (ownMark(caption) != std::wstring::npos)
            continue;
        std::size_t place = freeLetter(caption, taken, true);
        if (place == std::wstring::npos)
            place = freeLetter(caption, taken, false);
        if (place == std::wstring::npos)
            continue;
        taken.insert(folded(caption[place]));
        caption.insert(place, 1, L'&');
    }
    return marked;
}

std::wstring WithoutMnemonic(const std::wstring &caption)
{
    std::wstring plain;
    for (std::size_t i = 0; i < caption.size(); ++i) {
        if (caption[i] == L'&' && i + 1 < caption.size())
            ++i;
        plain += caption[i];
    }
    return plain;
}
