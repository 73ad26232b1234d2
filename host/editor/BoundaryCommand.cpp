#include "host/editor/BoundaryCommand.h"

#include "host/editor/CommandStack.h"
#include "host/editor/EntityPick.h"
#include "host/editor/HostCommands.h"
#include "host/editor/LeakMarks.h"
#include "host/editor/RegionMisses.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"

#include <fmt/xchar.h>

#include <algorithm>
#include <cmath>

namespace velmor {

namespace {

using boundary::Region;

const std::vector<std::wstring> kPointWords{L"Advanced", L"Boundary", L"Islands", L"Objects"};
const std::vector<std::wstring> kOptionWords{L"Boundary", L"Islands", L"Objects"};
const std::vector<std::wstring> kSetWords{L"New", L"Everything"};
const std::vector<std::wstring> kYesNo{L"Yes", L"No"};
const std::vector<std::wstring> kObjectWords{L"Polyline", L"Region"};

std::unique_ptr<AcDbEntity> polylineOf(const boundary::Ring &ring)
{
    std::vector<AcDbPolyline::Vertex> vertices;
    vertices.reserve(ring.size());
    for (const auto &vertex : ring)
        vertices.push_back({vertex.x, vertex.y, vertex.bulge});
    return std::make_unique<AcDbPolyline>(std::move(vertices), true);
}

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

Command::Next BoundaryCommand::start(Session &session)
{
    return askWithDrawing(session);
}

Prompt BoundaryCommand::prompt() const
{
    switch (m_state) {
    case State::Point:
        if (m_form == Form::OnePoint)
            return {.kind = PromptKind::Point, .text = uiText("ui.prompt.boundary.only")};
        return {.kind = PromptKind::Point, .text = uiText("ui.prompt.boundary.point"), .keywords = kPointWords};
    case State::Advanced:
        return {.kind = PromptKind::Keyword, .text = uiText("ui.prompt.boundary.advanced"), .keywords = kOptionWords};
    case State::BoundarySet:
        return {.kind = PromptKind::Keyword, .text = uiText("ui.prompt.boundary.set"), .keywords = kSetWords};
    case State::Selecting:
        return {.kind = PromptKind::Selection, .text = uiText("ui.prompt.objects"), .keywords = {kAllWord}};
    case State::Islands:
        return {.kind = PromptKind::Keyword, .text = uiText("ui.prompt.boundary.islands"), .keywords = kYesNo};
    case State::RayCasting:
        return {.kind = PromptKind::Keyword, .text = uiText("ui.prompt.boundary.ray"), .keywords = {L"Nearest"}};
    case State::ObjectType:
        return {.kind = PromptKind::Keyword, .text = uiText("ui.prompt.boundary.type"), .keywords = kObjectWords};
    }
    return {};
}

Command::Next BoundaryCommand::take(Session &session, const Answer &answer)
{
    if (m_state == State::Point)
        return takePoint(session, answer);
    if (m_state == State::Selecting)
        return takeSelection(session, answer);
    return takeOption(answer);
}

Command::Next BoundaryCommand::takePoint(Session &session, const Answer &answer)
{
    if (answer.isEnter())
        return finish(session);
    if (const auto point = answer.point()) {
        const Next next = search(session, *point);
        return next == Next::Ask && m_form == Form::OnePoint ? finish(session) : next;
    }
    const std::wstring *word =
        answer.text() && m_form == Form::Prompts ? matchKeyword(kPointWords, *answer.text()) : nullptr;
    if (!word)
        return Next::Refused;
    m_state = State::Advanced;
    return *word == kPointWords.front() ? Next::Ask : takeOption(answer);
}

Command::Next BoundaryCommand::takeOption(const Answer &answer)
{
    if (answer.isEnter()) { // keeps what stands
        m_state = m_state == State::Advanced ? State::Point : State::Advanced;
        return Next::Ask;
    }
    const Prompt asked = prompt();
    const std::wstring *word = answer.text() ? matchKeyword(asked.keywords, *answer.text()) : nullptr;
    if (!word)
        return Next::Refused;
    switch (m_state) {
    case State::Advanced:
        m_state = *word == L"Boundary" ? State::BoundarySet : *word == L"Islands" ? State::Islands : State::ObjectType;
        break;
    case State::BoundarySet:
        m_everything = *word == L"Everything";
        m_setId = 0;
        m_selected.clear();
        m_state = m_everything ? State::Advanced : State::Selecting;
        break;
    case State::Islands:
        m_islands = *word == L"Yes";
        m_state = m_islands ? State::Advanced : State::RayCasting;
        break;
    case State::ObjectType:
        m_regions = *word == L"Region";
        m_state = State::Advanced;
        break;
    default:
        m_state = State::Advanced;
        break;
    }
    return Next::Ask;
}

Command::Next BoundaryCommand::takeSelection(Session &session, const Answer &answer)
{
    if (answer.isEnter()) {
        m_state = State::Advanced;
        return Next::Ask;
    }
    // A set that stands alone is taken by its number, however many members it has.
    const auto *set = std::get_if<Answer::Set>(&answer.value);
    if (set && m_setId == 0 && m_selected.empty() && session.selectionSets().find(set->id)) {
        m_setId = set->id;
        return Next::Ask;
    }
    const auto ids = selectedEntities(session, answer);
    if (!ids)
        return Next::Refused;
    m_selected.insert(m_selected.end(), ids->begin(), ids->end());
    if (m_setId != 0) { // a second selection after a whole set: one list of both
        if (const SelectionSet *first = session.selectionSets().find(m_setId))
            m_selected.insert(m_selected.begin(), first->members().begin(), first->members().end());
        m_setId = 0;
    }
    return Next::Ask;
}

boundary::Linework &BoundaryCommand::linework(Session &session)
{
    auto &cache = session.drawing()->component<LineworkCache>();
    if (m_everything)
        return cache.visible();
    const SelectionSet *set = m_setId ? session.selectionSets().find(m_setId) : nullptr;
    return set ? cache.ofSet(*set) : cache.ofEntities(m_selected);
}

Command::Next BoundaryCommand::search(Session &session, const AcGePoint3d &point)
{
    if (!std::isfinite(point.x) || !std::isfinite(point.y))
        return Next::Refused;
    clearLeakMarks(session);
    Region region =
        linework(session).regionAt({point.x, point.y}, {.islands = m_islands, .gapTolerance = gapTolerance(session)});
    session.drawing()->component<RegionMisses>().note({point.x, point.y}, region);
    if (!region) {
        session.status(describe(region));
        markLeaks(session, region, {point.x, point.y});
    } else if (std::ranges::none_of(m_found, [&](const Region &known) { return known.outer == region.outer; })) {
        m_found.push_back(std::move(region));
    }
    return Next::Ask;
}

Command::Next BoundaryCommand::finish(Session &session)
{
    if (m_found.empty())
        return Next::Commit;
    if (m_regions) {
        session.status(uiText("ui.boundary.regions"));
        return Next::Commit;
    }
    std::size_t made = 0;
    for (const Region &region : m_found) {
        session.drawing()->append(polylineOf(region.outer));
        for (const boundary::Ring &island : region.islands)
            session.drawing()->append(polylineOf(island));
        made += 1 + region.islands.size();
    }
    session.status(uiMessage("ui.boundary.made", {std::to_wstring(made)}));
    return Next::Commit;
}

void addBoundaryCommands(CommandStack &stack)
{
    stack.addHostCommand(L"-BOUNDARY", 0,
                         [] { return std::make_unique<BoundaryCommand>(BoundaryCommand::Form::Prompts); });
    stack.addHostCommand(L"BOUNDARY", 0,
                         [] { return std::make_unique<BoundaryCommand>(BoundaryCommand::Form::OnePoint); });
}

} // namespace velmor
