#include "host/editor/PointMonitors.h"

#include "host/drawing/ChangeLog.h"
#include "host/drawing/Journal.h"
#include "host/editor/LineworkCache.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmor {

namespace {

std::vector<AcGePoint2d> inStraightSides(const ZEMCRing &ring)
{
    constexpr double kStep = std::numbers::pi / 36.0;
    std::vector<AcGePoint2d> points;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const auto &a = ring[i], &b = ring[(i + 1) % ring.size()];
        points.push_back({a.x, a.y});
        if (a.bulge == 0.0)
            continue;
        const double sweep = 4.0 * std::atan(a.bulge), t = (1.0 - a.bulge * a.bulge) / (4.0 * a.bulge);
        const double cx = (a.x + b.x) / 2.0 - (b.y - a.y) * t, cy = (a.y + b.y) / 2.0 + (b.x - a.x) * t;
        const int parts = std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / kStep)));
        for (int part = 1; part < parts; ++part) {
            const double angle = sweep * part / parts, c = std::cos(angle), s = std::sin(angle);
            points.push_back({cx + (a.x - cx) * c - (a.y - cy) * s, cy + (a.x - cx) * s + (a.y - cy) * c});
        }
    }
    return points;
}

bool isInside(const std::vector<AcGePoint2d> &ring, const AcGePoint3d &point)
{
    bool inside = false;
    for (std::size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        const AcGePoint2d &a = ring[i], &b = ring[j];
        if ((a.y > point.y) != (b.y > point.y) && point.x < (b.x - a.x) * (point.y - a.y) / (b.y - a.y) + a.x)
            inside = !inside;
    }
    return inside;
}

} // namespace

int PointMonitors::add(CZEMCPointMonitor::Outline outline, std::size_t commands)
{
    m_entries.push_back({++m_last, std::move(outline), commands});
    return m_last;
}

void PointMonitors::remove(int number)
{
    std::erase_if(m_entries, [&](const Entry &entry) { return entry.number == number; });
    clear();
}

bool PointMonitors::isWaiting() const
{
    return !m_entries.empty() && !m_entries.back().isOff;
}

void PointMonitors::rest(const AcGePoint3d &point)
{
    if (!isWaiting())
        return;
    clear(); // also within it another region may lie
    const auto &cache = m_drawing.component<LineworkCache>();
    const std::size_t builds = cache.builds();
    const Entry entry = m_entries.back(); // a copy: the monitor may end others
    const auto switchOff = [&] {
        for (Entry &known : m_entries)
            known.isOff = known.isOff || known.number == entry.number;
    };
    m_gaveUp = false;
    std::vector<ZEMCRing> rings;
    bool isSlow = false;
    const auto timed = [&] {
        rings.clear();
        const auto start = std::chrono::steady_clock::now();
        const bool found = ask(entry.outline, point, rings);
        isSlow = std::chrono::steady_clock::now() - start > m_budget;
        return found;
    };
    bool found = timed();
    // Linework is gathered once and serves the pick too: that is no trace's time.
    if (isSlow && cache.builds() != builds)
        found = timed();
    if (isSlow || m_gaveUp)
        return switchOff();
    if (!found || rings.empty() || rings.front().size() < 2)
        return;
    for (const ZEMCRing &ring : rings)
        m_outline.push_back(inStraightSides(ring));
}

bool PointMonitors::ask(const CZEMCPointMonitor::Outline &outline, const AcGePoint3d &point,
                        std::vector<ZEMCRing> &rings)
{
    ++m_asked;
    const JournalPause pause;
    struct Run { // whatever the monitor changes is taken back
        Run(ChangeLog &log, bool &asking) : m_log(log), m_asking(asking)
        {
            m_log.begin();
            m_asking = true;
        }
        ~Run()
        {
            m_asking = false;
            try {
                m_log.takeBack();
            } catch (...) { // an observer's; the next step tells it again
            }
        }
        ChangeLog &m_log;
        bool &m_asking;
    } const run(m_drawing.component<ChangeLog>(), m_isAsking);
    try {
        return outline && outline(point, rings);
    } catch (...) { // a preview that fails is no preview
        return false;
    }
}

bool PointMonitors::moveTo(const AcGePoint3d &point)
{
    if (m_outline.empty() || isInside(m_outline.front(), point))
        return false;
    clear();
    return true;
}

} // namespace velmor
