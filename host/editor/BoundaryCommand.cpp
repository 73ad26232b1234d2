#include "host/editor/BoundaryCommand.h"

#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/EntityPick.h"
#include "host/editor/HostCommands.h"
#include "host/editor/LeakMarks.h"
#include "host/editor/LineworkCache.h"
#include "host/editor/RegionMisses.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <fmt/xchar.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace velmor {

namespace {

using boundary::Region;

using Next = Command::Next;

const std::vector<std::wstring> kOptions{L"Boundary", L"Islands", L"Objects"};

std::unique_ptr<AcDbEntity> polylineOf(const boundary::Ring &ring)
{
    std::vector<AcDbPolyline::Vertex> vertices;
    vertices.reserve(ring.size());
    for (const auto &vertex : ring)
        vertices.push_back({vertex.x, vertex.y, vertex.bulge});
    return std::make_unique<AcDbPolyline>(std::move(vertices), true);
}

class BoundaryWork {
public:
    explicit BoundaryWork(Asker &asker) : m_asker(asker), m_session(asker.session()) {}

    /// One point with its islands, and done.
    Next onePoint()
    {
        const Reply reply = m_asker.point({.message = "ui.prompt.boundary.only", .enter = true});
        if (!reply.isEnter())
            search(reply.point);
        return finish();
    }

    Next allPrompts()
    {
        for (;;) {
            const Reply reply = m_asker.point(
                {.message = "ui.prompt.boundary.point", .words = {L"Advanced"}, .enter = true, .silent = kOptions});
            if (reply.isEnter())
                return finish();
            if (reply.kind == Reply::Kind::Point)
                search(reply.point);
            else
                askOptions(reply.is(L"Advanced") ? std::wstring() : reply.word);
        }
    }

private:
    /// Options till Enter; the first may have been told already.
    void askOptions(std::wstring option)
    {
        for (;; option.clear()) {
            if (option.empty()) {
                const Reply reply =
                    m_asker.word({.message = "ui.prompt.boundary.advanced", .words = kOptions, .enter = true});
                if (reply.isEnter())
                    return;
                option = reply.word;
            }
            if (option == L"Boundary")
                askBoundarySet();
            else if (option == L"Islands")
                askIslands();
            else
                askType();
        }
    }

    /// One of two words; Enter keeps what stands.
    bool askEither(const char *message, const wchar_t *first, const wchar_t *second, bool isFirst)
    {
        const Reply reply = m_asker.word({.message = message,
                                          .words = {first, second},
                                          .standard = uiText("ui.word." + utf8(isFirst ? first : second))});
        return reply.isEnter() ? isFirst : reply.is(first);
    }

    void askBoundarySet()
    {
        const Reply reply =
            m_asker.word({.message = "ui.prompt.boundary.set", .words = {L"New", L"Everything"}, .enter = true});
        if (reply.isEnter())
            return;
        m_everything = reply.is(L"Everything");
        m_setId = 0;
        m_selected = SelectionSet(0);
        if (!m_everything)
            select();
    }

    void select()
    {
        while (const auto answer = m_asker.selection()) {
            // A set that stands alone is taken by its number, however many members it has.
            const auto *set = std::get_if<Answer::Set>(&answer->value);
            if (set && m_setId == 0 && m_selected.members().empty()) {
                m_setId = set->id;
                continue;
            }
            if (const auto *first = m_session.selectionSets().find(std::exchange(m_setId, 0)))
                for (const AcDbObjectId &id : first->members())
                    m_selected.add(id);
            if (const auto *removed = std::get_if<Answer::Removed>(&answer->value))
                m_selected.remove(removed->ids);
            else
                for (const AcDbObjectId &id : selectedEntities(m_session, *answer).value_or(AcDbObjectIdArray()))
                    m_selected.add(id);
        }
    }

    void askIslands()
    {
        m_islands = askEither("ui.prompt.boundary.islands", L"Yes", L"No", m_islands);
        if (!m_islands) // a question of old, and no more than that
            m_asker.word(
                {.message = "ui.prompt.boundary.ray", .words = {L"Nearest"}, .standard = uiText("ui.word.Nearest")});
    }

    void askType() { m_regions = !askEither("ui.prompt.boundary.type", L"Polyline", L"Region", !m_regions); }

    boundary::Linework &linework()
    {
        auto &cache = m_asker.drawing().component<LineworkCache>();
        if (m_everything)
            return cache.visible();
        const SelectionSet *set = m_setId ? m_session.selectionSets().find(m_setId) : nullptr;
        return set ? cache.ofSet(*set) : cache.ofEntities(m_selected.members());
    }

    void search(const AcGePoint3d &point)
    {
        clearLeakMarks(m_session);
        Region region =
            linework().regionAt({point.x, point.y}, {.islands = m_islands, .gapTolerance = gapTolerance(m_session)});
        m_asker.drawing().component<RegionMisses>().note({point.x, point.y}, region);
        if (!region) {
            m_session.status(describe(region));
            markLeaks(m_session, region, {point.x, point.y});
        } else if (std::ranges::none_of(m_found, [&](const Region &known) { return known.outer == region.outer; })) {
            m_found.push_back(std::move(region));
        }
    }

    Next finish()
    {
        if (m_found.empty())
            return Next::Commit;
        if (m_regions) {
            m_session.status(uiText("ui.boundary.regions"));
            return Next::Commit;
        }
        std::size_t made = 0;
        for (const Region &region : m_found) {
            m_asker.drawing().append(polylineOf(region.outer));
            for (const boundary::Ring &island : region.islands)
                m_asker.drawing().append(polylineOf(island));
            made += 1 + region.islands.size();
        }
        m_session.status(uiMessage("ui.boundary.made", {std::to_wstring(made)}));
        return Next::Commit;
    }

    Asker &m_asker;
    Session &m_session;
    bool m_islands = true;
    bool m_regions = false;
    bool m_everything = true;   ///< no boundary set of its own
    std::int64_t m_setId = 0;   ///< the set that was picked, when it is a single one
    SelectionSet m_selected{0}; ///< what was picked otherwise
    std::vector<Region> m_found;
};

} // namespace

double gapTolerance(const Session &session)
{
    const auto value = session.variable(L"HPGAPTOL");
    const auto *number = value ? std::get_if<double>(&*value) : nullptr;
    return number ? *number : 0.0;
}

std::wstring describe(const Region &region)
{
    switch (region.status) {
    case boundary::Status::Found:
        return uiText("ui.boundary.found");
    case boundary::Status::OnEdge:
        return uiText("ui.boundary.onEdge");
    case boundary::Status::NotEnclosed:
        return uiText("ui.boundary.notEnclosed");
    case boundary::Status::Open:
        break;
    }
    if (region.gaps.empty())
        return uiText("ui.boundary.open");
    const auto &gap = region.gaps.front();
    return uiMessage("ui.boundary.gap",
                     {fmt::format(L"{:.10g},{:.10g}", gap.from.x, gap.from.y), fmt::format(L"{:.6g}", gap.width)});
}

void addBoundaryCommands(CommandStack &stack)
{
    stack.addWork(L"-BOUNDARY", 0, [](Asker &asker) { return BoundaryWork(asker).allPrompts(); });
    stack.addWork(L"BOUNDARY", 0, [](Asker &asker) { return BoundaryWork(asker).onePoint(); });
}

} // namespace velmor
