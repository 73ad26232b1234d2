// Points, arcs, argument chains and colours of the contract.
#include "contracts/DrawingHost.h"
#include "host/drawing/contract/ChainKinds.h"

#include <algorithm>
#include <cstdarg>
#include <cwchar>
#include <limits>
#include <memory>
#include <numbers>
#include <utility>

// --- Plane geometry
// ------------------------------------------------------------------------------------------------------

AcGeCircArc2d::AcGeCircArc2d(AcGePoint2d start, AcGePoint2d end, double bulge)
{
    const double dx = end.x - start.x, dy = end.y - start.y;
    const double chord = std::hypot(dx, dy);
    m_center = {(start.x + end.x) / 2.0, (start.y + end.y) / 2.0};
    if (bulge == 0.0) { // a straight segment, as an arc of a circle without end
        m_radius = std::numeric_limits<double>::infinity();
        m_length = chord;
        return;
    }
    // With the bulge as tangent of a quarter of the included angle, the centre lies on the chord's normal.
    const double along = (1.0 - bulge * bulge) / (4.0 * bulge);
    m_center.x -= along * dy;
    m_center.y += along * dx;
    m_radius = std::abs(0.25 * chord * (bulge + 1.0 / bulge));
    m_length = std::abs(4.0 * std::atan(bulge)) * m_radius;
}

double acutAngle(const ads_point from, const ads_point to)
{
    constexpr double kFullTurn = 2.0 * std::numbers::pi;
    const double angle = std::atan2(to[1] - from[1], to[0] - from[0]);
    const double turned = angle < 0.0 ? angle + kFullTurn : angle;
    return turned < kFullTurn ? turned : 0.0; // a tiny negative angle rounds up to the full turn
}

void acutPolar(const ads_point from, double angle, double distance, ads_point result)
{
    const double x = from[0] + distance * std::cos(angle), y = from[1] + distance * std::sin(angle);
    result[2] = from[2];
    result[0] = x;
    result[1] = y;
}

// --- Argument chains
// -----------------------------------------------------------------------------------------------------

namespace velmor {

ChainKind chainKindOf(int type)
{
    switch (type) {
    case RTNONE:
        return ChainKind::None;
    case RTREAL:
        return ChainKind::Real;
    case RTPOINT:
    case RT3DPOINT:
        return ChainKind::Point;
    case RTSHORT:
        return ChainKind::Short;
    case RTLONG:
        return ChainKind::Long;
    case RTSTR:
        return ChainKind::Text;
    case RTENAME:
    case RTPICKS:
        return ChainKind::Name;
    default:
        break;
    }
    const auto within = [type](int first, int last) { return type >= first && type <= last; };
    if (within(1, 9) || within(100, 102) || within(300, 309) || within(320, 369) || within(390, 399) ||
        within(410, 419) || within(430, 439) || within(470, 479) || within(1000, 1003) || within(1005, 1009))
        return ChainKind::Text;
    if (within(10, 18) || within(110, 112) || within(210, 210) || within(1010, 1013))
        return ChainKind::Point;
    if (within(38, 59) || within(140, 149) || within(460, 469) || within(1040, 1042))
        return ChainKind::Real;
    if (within(60, 79) || within(170, 179) || within(270, 299) || within(370, 389) || within(400, 409) ||
        within(1070, 1070))
        return ChainKind::Short;
    if (within(90, 99) || within(420, 429) || within(440, 459) || within(1071, 1071))
        return ChainKind::Long;
    return ChainKind::Unknown;
}

wchar_t *newChainText(const wchar_t *text)
{
    const std::size_t size = std::wcslen(text) + 1;
    auto copy = std::make_unique<wchar_t[]>(size);
    std::copy_n(text, size, copy.get());
    return copy.release();
}

} // namespace velmor

using velmor::ChainKind;
using velmor::chainKindOf;

resbuf *acutNewRb(int kind)
{
    auto *item = new resbuf;
    item->restype = static_cast<short>(kind);
    return item;
}

int acutRelRb(resbuf *chain)
{
    if (!chain)
        return RTERROR;
    while (chain) {
        if (chainKindOf(chain->restype) == ChainKind::Text)
            delete[] chain->resval.rstring;
        delete std::exchange(chain, chain->rbnext);
    }
    return RTNORM;
}

resbuf *acutBuildList(int kind, ...)
{
    resbuf *head = nullptr, **next = &head;
    std::va_list values;
    va_start(values, kind);
    for (int type = kind; type != 0 && type != RTNONE; type = va_arg(values, int)) {
        const ChainKind holds = chainKindOf(type);
        if (holds == ChainKind::Unknown) { // the size of its value is not known, so neither is what follows
            acutRelRb(head);
            head = nullptr;
            break;
        }
        resbuf *item = acutNewRb(type);
        *next = item;
        next = &item->rbnext;
        switch (holds) {
        case ChainKind::Text: {
            const wchar_t *text = va_arg(values, const wchar_t *);
            item->resval.rstring = velmor::newChainText(text ? text : L"");
            break;
        }
        case ChainKind::Real:
            item->resval.rreal = va_arg(values, double);
            break;
        case ChainKind::Short:
            item->resval.rint = static_cast<short>(va_arg(values, int));
            break;
        case ChainKind::Long:
            item->resval.rlong = va_arg(values, std::int32_t);
            break;
        case ChainKind::Point: {
            const double *point = va_arg(values, const double *);
            const std::size_t count = type == RTPOINT ? 2 : 3; // a plane point has no third coordinate to read
            std::copy_n(point, count, item->resval.rpoint);
            break;
        }
        case ChainKind::Name:
            std::copy_n(va_arg(values, const std::int64_t *), 2, item->resval.rlname);
            break;
        case ChainKind::None:
        case ChainKind::Unknown:
            break;
        }
    }
    va_end(values);
    return head;
}

void acutDelBuffer(wchar_t *&text)
{
    delete[] text;
    text = nullptr;
}

// --- Colours
// -------------------------------------------------------------------------------------------------------------

std::uint32_t acedGetRGB(int colorIndex)
{
    const auto packed = [](double red, double green, double blue) {
        return static_cast<std::uint32_t>(red) | static_cast<std::uint32_t>(green) << 8 |
               static_cast<std::uint32_t>(blue) << 16;
    };
    constexpr std::uint32_t kNamed[] = {0xFFFFFF, 0x0000FF, 0x00FFFF, 0x00FF00, 0xFFFF00,
                                        0xFF0000, 0xFF00FF, 0xFFFFFF, 0x808080, 0xC0C0C0};
    if (colorIndex <= 0 || colorIndex > 255) // by block, by layer, none: shown as white
        return kNamed[7];
    if (colorIndex < 10)
        return kNamed[colorIndex];
    if (colorIndex >= 250) { // six greys in equal steps, from dark to white
        const double grey = 51.0 + (colorIndex - 250) * 40.8;
        return packed(grey, grey, grey);
    }
    // 24 hues from red on, 15 degrees apart; in each, five brightnesses, full and half saturated in turn.
    constexpr double kBrightness[] = {1.0, 0.65, 0.5, 0.3, 0.15};
    const double hue = (colorIndex / 10 - 1) * 0.25; // in sixths of the colour circle
    const double value = 255.0 * kBrightness[colorIndex % 10 / 2];
    const double saturation = colorIndex % 2 ? 0.5 : 1.0;
    const auto channel = [&](double centre) {
        const double away = std::abs(std::remainder(hue - centre, 6.0));
        const double share = std::clamp(2.0 - away, 0.0, 1.0);
        return value * (1.0 - saturation * (1.0 - share));
    };
    return packed(channel(0.0), channel(2.0), channel(4.0));
}
