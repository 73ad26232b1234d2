// Conditions on entities, given as a chain of group codes.
#pragma once

#include "host/drawing/Drawing.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velmor {

class SelectionFilter {
public:
    /// 0 kind ("LINE"), 2 block of a reference, 8 layer (texts with wild cards, upper and lower case alike), 62 colour
    /// index of the entity itself; -4 "<AND" "<OR" "<NOT" with their ends "AND>" "OR>" "NOT>". A null chain accepts
    /// everything; another code, a value of another type or an operator without its end gives nothing.
    static std::optional<SelectionFilter> parse(const resbuf *chain);
    bool accepts(const Drawing &drawing, const AcDbObjectId &id) const;

private:
    enum class Kind { And, Or, Not, Type, Block, Layer, Colour };
    struct Condition {
        Kind kind = Kind::And;
        std::wstring text;
        int number = 0;
        std::vector<Condition> parts;
    };
    static bool parseList(const resbuf *&item, std::wstring_view end, int depth, std::vector<Condition> &parts);
    static bool accepts(const Condition &condition, const Drawing &drawing, const AcDbEntity &entity);
    Condition m_all;
};

/// Whether a text fits a pattern: * any characters, ? any one, # a digit, @ a letter, ` takes the next one as it is, a
/// comma between alternatives, ~ in front of one for "not". Upper and lower case are alike.
bool fitsPattern(std::wstring_view text, std::wstring_view pattern);

} // namespace velmor
