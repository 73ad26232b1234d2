#include "controls/Mnemonics.h"

#include <cwctype>
#include <map>
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

/// Places of letters that could be marked, the first letters of words first; each letter once.
std::vector<std::size_t> candidates(const std::wstring &caption)
{
    std::vector<std::size_t> places;
    std::set<wchar_t> seen;
    for (const bool wordStarts : {true, false}) {
        for (std::size_t i = 0; i < caption.size(); ++i) {
            const bool wordStart = i == 0 || !std::iswalnum(static_cast<std::wint_t>(caption[i - 1]));
            if (isPlainLetter(caption[i]) && wordStart == wordStarts && seen.insert(folded(caption[i])).second)
                places.push_back(i);
        }
    }
    return places;
}

/// Gives letters to captions; a caption may move to another of its letters so that a later one gets any at all.
class CLetterChoice {
public:
    CLetterChoice(std::span<const std::wstring> captions, const std::set<wchar_t> &reserved)
        : m_captions(captions), m_reserved(reserved), m_place(captions.size(), std::wstring::npos)
    {
    }
    void Choose(std::size_t caption)
    {
        m_asked.clear();
        TryToPlace(caption);
    }
    std::size_t PlaceOf(std::size_t caption) const { return m_place[caption]; }

private:
    bool TryToPlace(std::size_t caption)
    {
        const std::vector<std::size_t> places = candidates(m_captions[caption]);
        // A free letter goes before one that another caption would have to give up.
        for (const std::size_t place : places) {
            if (const wchar_t letter = LetterAt(caption, place);
                !m_reserved.contains(letter) && !m_owner.contains(letter))
                return Take(caption, place);
        }
        for (const std::size_t place : places) {
            const wchar_t letter = LetterAt(caption, place);
            if (m_owner.contains(letter) && m_asked.insert(letter).second && TryToPlace(m_owner[letter]))
                return Take(caption, place);
        }
        return false;
    }
    bool Take(std::size_t caption, std::size_t place)
    {
        m_owner[LetterAt(caption, place)] = caption;
        m_place[caption] = place;
        return true;
    }
    wchar_t LetterAt(std::size_t caption, std::size_t place) const { return folded(m_captions[caption][place]); }

    std::span<const std::wstring> m_captions;
    const std::set<wchar_t> &m_reserved;
    std::vector<std::size_t> m_place;
    std::map<wchar_t, std::size_t> m_owner;
    std::set<wchar_t> m_asked;
};

} // namespace

std::vector<std::wstring> WithMnemonics(std::span<const std::wstring> captions)
{
    std::set<wchar_t> reserved;
    for (const std::wstring &caption : captions) {
        if (const std::size_t mark = ownMark(caption); mark != std::wstring::npos)
            reserved.insert(folded(caption[mark + 1]));
    }
    CLetterChoice choice(captions, reserved);
    std::vector<std::wstring> marked(captions.begin(), captions.end());
    for (std::size_t i = 0; i < captions.size(); ++i) {
        if (ownMark(captions[i]) == std::wstring::npos)
            choice.Choose(i);
    }
    for (std::size_t i = 0; i < captions.size(); ++i) {
        if (const std::size_t place = choice.PlaceOf(i); place != std::wstring::npos)
            marked[i].insert(place, 1, L'&');
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
