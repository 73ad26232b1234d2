// Who is asked for an outline when the pointer rests while a point is asked for, and the outline that is shown.
//
// One for each drawing (drawing.component<PointMonitors>()). The window tells it where the pointer rests or moves, and
// paints the outline. Nothing of it is part of the drawing: what a monitor does to the drawing is taken back, and no
// undo step is made.
#pragma once

#include "contracts/EditorAids.h"
#include "host/drawing/Drawing.h"

#include <chrono>
#include <vector>

namespace velmor {

class PointMonitors {
public:
    explicit PointMonitors(Drawing &drawing) : m_drawing(drawing) {}

    /// A monitor that takes longer for one answer is asked no more.
    static constexpr std::chrono::milliseconds kBudget{20};
    void setBudget(std::chrono::nanoseconds budget) { m_budget = budget; }

    /// Returns the monitor's number.
    /// commands: how many commands run, of which the one that asks for the point is the innermost.
    int add(CZEMCPointMonitor::Outline outline, std::size_t commands = 0);
    void remove(int number); ///< the outline goes with it
    /// Some monitor may be asked. With another number of commands the point is asked for by one that runs inside.
    bool isWaiting() const;
    std::size_t commands() const { return m_entries.empty() ? 0 : m_entries.back().commands; }

    /// The pointer rests there: asks the monitor that came last.
    void rest(const AcGePoint3d &point);
    /// The pointer is there: an outline that it has left is dropped. True when there was one.
    bool moveTo(const AcGePoint3d &point);
    void clear() { m_outline.clear(); }

    /// Rings in straight sides, the outer one first and counter-clockwise or not as it came.
    const std::vector<std::vector<AcGePoint2d>> &outline() const { return m_outline; }
    /// A monitor is being asked now: linework of more entities than this is then not gathered, but left to the click.
    bool isAsking() const { return m_isAsking; }
    static constexpr std::size_t kMostGathered = 200'000;
    /// By what is asked in a monitor: it would take too long, so that monitor is asked no more.
    void giveUp() { m_gaveUp = true; }
    /// How often a monitor was asked; for tests.
    int asked() const { return m_asked; }

private:
    struct Entry {
        int number;
        CZEMCPointMonitor::Outline outline;
        std::size_t commands = 0;
        bool isOff = false;
    };
    bool ask(const CZEMCPointMonitor::Outline &outline, const AcGePoint3d &point, std::vector<ZEMCRing> &rings);

    Drawing &m_drawing;
    std::vector<Entry> m_entries;
    std::vector<std::vector<AcGePoint2d>> m_outline;
    std::chrono::nanoseconds m_budget = kBudget;
    int m_last = 0, m_asked = 0;
    bool m_isAsking = false, m_gaveUp = false;
};

} // namespace velmor
