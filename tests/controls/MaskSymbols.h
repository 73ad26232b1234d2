// The symbols of masks that tests and fuzz targets fill in: "#" is a digit, "L" a letter, which becomes a capital.
#pragma once

#include "controls/rules/MaskedBehavior.h"

#include <vector>

namespace mask_symbols {

inline int IsDigit(wchar_t character)
{
    return character >= L'0' && character <= L'9';
}

inline int IsLetter(wchar_t character)
{
    return (character >= L'a' && character <= L'z') || (character >= L'A' && character <= L'Z');
}

inline wchar_t ToUpper(wchar_t character)
{
    return character >= L'a' && character <= L'z' ? static_cast<wchar_t>(character - L'a' + L'A') : character;
}

inline const std::vector<AMSEdit::Symbol> kDigits = {AMSEdit::Symbol(L'#', IsDigit)};
inline const std::vector<AMSEdit::Symbol> kDigitsAndLetters = {AMSEdit::Symbol(L'#', IsDigit),
                                                               AMSEdit::Symbol(L'L', IsLetter, ToUpper)};

} // namespace mask_symbols
