// A host for the extended list alone: its dialogs answer what they are told to, and its modal dialog runs handlers at
// once.
#pragma once

#include <functional>
#include <string>

struct ListHost {
    std::function<bool(int &color)> color;
    std::function<bool(std::wstring &pattern)> pattern;
};

ListHost &listHost();
