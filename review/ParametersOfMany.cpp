#include "review/ParametersOfMany.h"

#include "contracts/CatchmentArea.h"

#include <cmath>

namespace {

constexpr double kSame = 0.001;
/// Between kMixed, which stays, and kNone, which doesn't.
constexpr double kStays = -1.5;

void TakeIn(double &shown, double value)
{
    if (shown > 0.0 && std::fabs(shown - value) > kSame)
        shown = CParametersOfMany::kMixed;
    else if (shown > kStays)
        shown = value;
}

} // namespace

void CParametersOfMany::Add(int typeMask, double area, double coefficient, double population)
{
    ++m_nCount;
    m_area += area;
    if ((typeMask & ZEMGis::Sewage::kTypeCatchment) != 0)
        TakeIn(m_coefficient, coefficient);
    if ((typeMask & ZEMGis::Sewage::kTypeHouse) != 0)
        TakeIn(m_population, population);
}
