// How a catchment area's name is proposed. No widgets, no drawing.
#pragma once

#include "dialogs/FileTitle.h"

#include <set>
#include <string>

/// The fixed pieces of an area's name: prefix, base, suffix, delimiter and counter follow one another.
struct CAreaNameParts {
    std::wstring m_strPrefix;
    std::wstring m_strSuffix;
    std::wstring m_strDelimiter = L"_";
};

/// The first name of base with counters 1, 2, 3 ... that is not in usedNames (compared exactly, case counts).
/// A first proposal therefore always carries a counter.
std::wstring NextFreeAreaName(const CAreaNameParts &parts, const std::wstring &base,
                              const std::set<std::wstring> &usedNames);

/// The smallest whole number not below from that is not in used.
int SmallestFreeNumber(const std::set<int> &used, int from = 1);

/// Puts a number in place of the first "%d" of a message and "%" in place of each "%%". Every other placeholder comes
/// back as it is, so that a text edited by the user can't do harm.
std::wstring FormatCount(const std::wstring &message, int count);
