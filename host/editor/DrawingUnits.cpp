#include "host/editor/DrawingUnits.h"

#include <array>
#include <charconv>

namespace velmor {

namespace {

int numberIn(const Drawing &drawing)
{
    const auto text = drawing.headerVariable("$INSUNITS");
    const std::size_t first = text ? text->find_first_not_of(' ') : std::string::npos;
    int number = 0;
    if (first != std::string::npos)
        std::from_chars(text->data() + first, text->data() + text->size(), number);
    return number;
}

} // namespace

DrawingUnit unitOf(const Drawing &drawing)
{
    switch (const auto unit = static_cast<DrawingUnit>(numberIn(drawing))) {
    case DrawingUnit::Inches:
    case DrawingUnit::Feet:
    case DrawingUnit::Millimetres:
    case DrawingUnit::Centimetres:
    case DrawingUnit::Metres:
    case DrawingUnit::Kilometres:
        return unit;
    default:
        return DrawingUnit::None;
    }
}

void setUnit(Drawing &drawing, DrawingUnit unit)
{
    drawing.setHeaderVariable("$INSUNITS", 70, std::to_string(static_cast<int>(unit)));
}

double metresPerUnit(const Drawing &drawing)
{
    static constexpr std::array kMetres{1.0,     0.0254, 0.3048, 1609.344, 0.001, 0.01, 1.0,  1000.0, 2.54e-8,
                                        2.54e-5, 0.9144, 1e-10,  1e-9,     1e-6,  0.1,  10.0, 100.0};
    const int unit = numberIn(drawing);
    return unit > 0 && unit < static_cast<int>(kMetres.size()) ? kMetres[static_cast<std::size_t>(unit)] : 1.0;
}

} // namespace velmor
