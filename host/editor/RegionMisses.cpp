#include "host/editor/RegionMisses.h"

#include "host/editor/UiMessage.h"
#include "host/network/Network.h"

#include <fmt/xchar.h>

#include <algorithm>
#include <cmath>

namespace velmor {

namespace {

/// As many places of a kind are named.
constexpr std::size_t kNamed = 5;
constexpr double kSamePlace = 1e-4;

} // namespace

void RegionMisses::begin()
{
    m_misses.clear();
    m_searches = 0;
    m_isNoting = true;
}

void RegionMisses::end()
{
    begin();
    m_isNoting = false;
}

void RegionMisses::note(boundary::Point point, const boundary::Region &region)
{
    if (!m_isNoting)
        return;
    ++m_searches;
    if (region)
        return;
    double narrowest = -1.0;
    for (const boundary::Gap &gap : region.gaps)
        narrowest = narrowest < 0.0 ? gap.width : std::min(narrowest, gap.width);
    m_misses.push_back({point, region.status, narrowest});
}

std::wstring RegionMisses::placeName(boundary::Point point)
{
    for (const auto &section : m_drawing.component<Network>().sections()) {
        const AcGePoint3d a = section->GetStartPoint(), b = section->GetEndPoint();
        AcGePoint3d middle((a.x + b.x) / 2.0, (a.y + b.y) / 2.0);
        if (section->GetType() == ZEMGis::Topology::kSectionArc) {
            if (const CZEMCArcPtr arc(section->GetObjectId(), AcDb::kForRead); arc.isOpen())
                middle = arc.getPointOnArc();
        }
        if (std::abs(middle.x - point.x) < kSamePlace && std::abs(middle.y - point.y) < kSamePlace)
            return section->GetName();
    }
    return fmt::format(L"{:.10g},{:.10g}", point.x, point.y);
}

std::wstring RegionMisses::summary()
{
    if (m_misses.empty())
        return {};
    std::wstring text =
        uiMessage("ui.misses.sum", {std::to_wstring(m_misses.size()), std::to_wstring(m_searches)}) + L": ";
    const std::pair<boundary::Status, const char *> kinds[] = {{boundary::Status::Open, "ui.misses.open"},
                                                               {boundary::Status::NotEnclosed, "ui.misses.nothing"},
                                                               {boundary::Status::OnEdge, "ui.misses.onEdge"}};
    bool first = true;
    for (const auto &[status, message] : kinds) {
        std::size_t count = 0;
        double narrowest = -1.0;
        std::wstring names;
        for (const Miss &miss : m_misses) {
            if (miss.status != status)
                continue;
            if (count++ < kNamed)
                names += (names.empty() ? L"" : L", ") + placeName(miss.point);
            if (miss.narrowestGap >= 0.0)
                narrowest = narrowest < 0.0 ? miss.narrowestGap : std::min(narrowest, miss.narrowestGap);
        }
        if (count == 0)
            continue;
        if (count > kNamed)
            names += L", ...";
        text += first ? L"" : L"; ";
        text += uiMessage(message, {std::to_wstring(count), names});
        if (narrowest >= 0.0)
            text += uiMessage("ui.misses.gap", {fmt::format(L"{:.6g}", narrowest)});
        first = false;
    }
    return text;
}

} // namespace velmor
