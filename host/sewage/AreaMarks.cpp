#include "host/sewage/AreaMarks.h"

#include "contracts/CatchmentArea.h"

namespace velmor {

namespace {
/// Distance between the lines of the pattern at scale 1, which run at 45 degrees.
constexpr wchar_t kPattern[] = L"ANSI31";
constexpr double kPatternSpacing = 3.175;
} // namespace

int markAllAreas(int colour, double lineSpacing)
{
    using namespace ZEMGis::Sewage;
    CatchmentAreas areas;
    CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(areas, kTypeAll);
    int marked = 0;
    for (const auto &area : areas) {
        if (!area || area->IsHidden())
            continue;
        area->Mark(colour, lineSpacing / kPatternSpacing, 0.0, kPattern, 0);
        ++marked;
    }
    return marked;
}

} // namespace velmor
