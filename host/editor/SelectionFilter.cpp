#include "host/editor/SelectionFilter.h"

#include "host/drawing/DrawingData.h"
#include "host/services/Text.h"

#include <algorithm>
#include <cwctype>

namespace velmor {

namespace {

constexpr int kDeepest = 32; ///< operators inside one another

bool fitsOne(std::wstring_view text, std::wstring_view pattern)
{
    // Where to go on when a "*" has to take one more character.
    std::size_t t = 0, p = 0, starText = 0, starPattern = std::wstring_view::npos;
    while (true) {
        if (p < pattern.size() && pattern[p] == L'*') {
            starPattern = ++p;
            starText = t;
            continue;
        }
        bool fits = false;
        std::size_t taken = 1;
        if (t < text.size() && p < pattern.size()) {
            const wchar_t c = text[t];
            if (pattern[p] == L'`' && p + 1 < pattern.size()) {
                fits = pattern[p + 1] == c;
                taken = 2;
            } else {
                fits = pattern[p] == L'?' || (pattern[p] == L'#' && std::iswdigit(static_cast<wint_t>(c))) ||
                       (pattern[p] == L'@' && std::iswalpha(static_cast<wint_t>(c))) || pattern[p] == c;
            }
        } else if (t == text.size() && p == pattern.size()) {
            return true;
        }
        if (fits) {
            ++t;
            p += taken;
        } else if (starPattern != std::wstring_view::npos && starText < text.size()) {
            t = ++starText;
            p = starPattern;
        } else {
            return false;
        }
    }
}

} // namespace

bool fitsPattern(std::wstring_view text, std::wstring_view pattern)
{
    const std::wstring folded = foldedName(text), all = foldedName(pattern);
    std::size_t from = 0;
    for (std::size_t at = 0; at <= all.size(); ++at) {
        if (at < all.size() && all[at] == L'`') {
            ++at;
            continue;
        }
        if (at < all.size() && all[at] != L',')
            continue;
        std::wstring_view one = std::wstring_view(all).substr(from, at - from);
        const bool isNot = one.starts_with(L'~');
        if (fitsOne(folded, isNot ? one.substr(1) : one) != isNot)
            return true;
        from = at + 1;
    }
    return false;
}

bool SelectionFilter::parseList(const resbuf *&item, std::wstring_view end, int depth, std::vector<Condition> &parts)
{
    while (item) {
        const resbuf &value = *item;
        item = item->rbnext;
        Condition condition;
        const bool isText = value.restype != 62;
        if (isText && !value.resval.rstring)
            return false;
        switch (value.restype) {
        case -4: {
            const std::wstring word = foldedName(value.resval.rstring);
            if (!end.empty() && word == end)
                return true;
            condition.kind = word == L"<OR" ? Kind::Or : word == L"<NOT" ? Kind::Not : Kind::And;
            if ((word != L"<OR" && word != L"<NOT" && word != L"<AND") || depth == kDeepest ||
                !parseList(item, word.substr(1) + L'>', depth + 1, condition.parts) || condition.parts.empty())
                return false;
            break;
        }
        case 0:
            condition.kind = Kind::Type;
            break;
        case 2:
            condition.kind = Kind::Block;
            break;
        case 8:
            condition.kind = Kind::Layer;
            break;
        case 62:
            condition.kind = Kind::Colour;
            condition.number = value.resval.rint;
            break;
        default:
            return false;
        }
        if (isText)
            condition.text = value.resval.rstring;
        parts.push_back(std::move(condition));
    }
    return end.empty();
}

std::optional<SelectionFilter> SelectionFilter::parse(const resbuf *chain)
{
    SelectionFilter filter;
    if (!parseList(chain, {}, 0, filter.m_all.parts))
        return std::nullopt;
    return filter;
}

bool SelectionFilter::accepts(const Condition &condition, const Drawing &drawing, const AcDbEntity &entity)
{
    const auto holds = [&](const Condition &part) { return accepts(part, drawing, entity); };
    switch (condition.kind) {
    case Kind::And:
        return std::ranges::all_of(condition.parts, holds);
    case Kind::Or:
        return std::ranges::any_of(condition.parts, holds);
    case Kind::Not:
        return !std::ranges::all_of(condition.parts, holds);
    case Kind::Type:
        return fitsPattern(wide(typeNameOf(entity)), condition.text);
    case Kind::Block: {
        if (kindOf(entity) != EntityKind::BlockReference)
            return false;
        const auto *block = ObjectAccess::object(static_cast<const AcDbBlockReference &>(entity).blockTableRecord());
        return block && fitsPattern(static_cast<const BlockRecord *>(block)->name(), condition.text);
    }
    case Kind::Layer:
        return fitsPattern(drawing.layer(layerIndexOf(entity)).name, condition.text);
    case Kind::Colour:
        return entity.colorIndex() == condition.number;
    }
    return false;
}

bool SelectionFilter::accepts(const Drawing &drawing, const AcDbObjectId &id) const
{
    if (m_all.parts.empty())
        return true;
    const AcDbObject *object = ObjectAccess::object(id);
    return object && object->isKindOf(AcDbEntity::desc()) &&
           accepts(m_all, drawing, static_cast<const AcDbEntity &>(*object));
}

} // namespace velmor
