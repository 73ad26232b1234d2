#include "host/editor/Drafting.h"

#include <cmath>
#include <numbers>

namespace velmor {

namespace {

int whole(const Session &session, const wchar_t *name, int otherwise)
{
    const auto value = session.variable(name);
    const int *number = value ? std::get_if<int>(&*value) : nullptr;
    return number ? *number : otherwise;
}

} // namespace

Drafting draftingOf(const Session &session)
{
    Drafting drafting;
    drafting.snaps = whole(session, L"OSMODE", 0);
    drafting.ortho = whole(session, L"ORTHOMODE", 0) != 0;
    const int automatic = whole(session, L"AUTOSNAP", kAutoSnapMarker | kAutoSnapTip);
    drafting.polar = (automatic & kAutoSnapPolar) != 0;
    drafting.markers = (automatic & kAutoSnapMarker) != 0;
    drafting.tips = (automatic & kAutoSnapTip) != 0;
    if (const auto value = session.variable(L"POLARANG"))
        if (const double *step = std::get_if<double>(&*value))
            drafting.polarStep = *step;
    drafting.aperture = whole(session, L"APERTURE", drafting.aperture);
    drafting.pickBox = whole(session, L"PICKBOX", drafting.pickBox);
    return drafting;
}

void setDrafting(Session &session, const Drafting &drafting)
{
    const Drafting now = draftingOf(session);
    const auto write = [&](const wchar_t *name, const VariableValue &value, bool differs) {
        if (differs)
            session.setVariable(name, value);
    };
    const int automatic = (drafting.markers ? kAutoSnapMarker : 0) | (drafting.tips ? kAutoSnapTip : 0) |
                          (drafting.polar ? kAutoSnapPolar : 0);
    write(L"OSMODE", drafting.snaps, drafting.snaps != now.snaps);
    write(L"ORTHOMODE", drafting.ortho ? 1 : 0, drafting.ortho != now.ortho);
    write(L"AUTOSNAP", automatic,
          drafting.markers != now.markers || drafting.tips != now.tips || drafting.polar != now.polar);
    write(L"POLARANG", drafting.polarStep, drafting.polarStep != now.polarStep);
    write(L"APERTURE", drafting.aperture, drafting.aperture != now.aperture);
    write(L"PICKBOX", drafting.pickBox, drafting.pickBox != now.pickBox);
}

AcGePoint3d guidedPoint(const AcGePoint3d &point, const std::optional<AcGePoint3d> &base, const Drafting &drafting,
                        double reach)
{
    if (!base)
        return point;
    const double dx = point.x - base->x, dy = point.y - base->y;
    if (drafting.ortho)
        return std::abs(dx) >= std::abs(dy) ? AcGePoint3d{point.x, base->y, point.z}
                                            : AcGePoint3d{base->x, point.y, point.z};
    if (!drafting.polar || (dx == 0.0 && dy == 0.0))
        return point;
    const double step = drafting.polarStep * std::numbers::pi / 180.0;
    const double turns = std::round(std::atan2(dy, dx) / step);
    const double angle = turns * step;
    // Directions along the axes without the rounding of sine and cosine.
    const double degrees = turns * drafting.polarStep;
    const double quarter = std::fmod(degrees, 90.0) == 0.0 ? std::round(degrees / 90.0) : 0.5;
    double c = std::cos(angle), s = std::sin(angle);
    if (quarter != 0.5) {
        c = std::round(c);
        s = std::round(s);
    }
    const double along = dx * c + dy * s, away = std::abs(dx * s - dy * c);
    if (along <= 0.0 || away > reach)
        return point;
    return {base->x + along * c, base->y + along * s, point.z};
}

} // namespace velmor
