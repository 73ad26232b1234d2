// The 8-bit code page in which the catalogues code names, both ways.
//
// The pages come from the system's converter. Names in a file were coded in the page of the machine that wrote them, so
// the page is a setting of the program.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <unordered_map>

/// One page: bytes below 128 are ASCII, the others letters of its own. Every byte has a character and gives itself
/// back: a byte that the page leaves free stands for the character of its number or, where the page has that one at
/// another place, for 0xDC00 plus the byte.
class CAnsiCodePage {
public:
    /// Setting with the page's number, a whole number; absent: kStandard.
    static constexpr wchar_t kSetting[] = L"ANSI_CODE_PAGE";
    static constexpr int kStandard = 1250; ///< central European

    /// The page of a number (1250 to 1258 are known everywhere). One that the system does not know, or that is no
    /// page over ASCII, gives the standard page. Stays valid to the program's end.
    static const CAnsiCodePage &Of(int nNumber);
    /// The page of the setting as it stands now.
    static const CAnsiCodePage &OfSetting();

    int GetNumber() const { return m_nNumber; }
    /// One byte a character; "?" for one that the page lacks. A character from 0xDC80 to 0xDCFF is what stands in a
    /// document for a byte that was no part of a character, and is that byte again.
    std::string ToBytes(std::wstring_view text) const;
    std::wstring ToWide(std::string_view bytes) const;

private:
    CAnsiCodePage() = default;
    bool Read(int nNumber);
    int m_nNumber = 0;
    std::array<wchar_t, 256> m_characters{};
    std::unordered_map<wchar_t, char> m_bytes;
};
