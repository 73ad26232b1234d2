// acedSSGet: what a person selects, or what its arguments say.
#include "contracts/DrawingHost.h"
#include "host/drawing/Entities.h"
#include "host/drawing/Journal.h"
#include "host/drawing/Visibility.h"
#include "host/editor/Asker.h"
#include "host/editor/EntityPick.h"
#include "host/editor/Picking.h"
#include "host/editor/SelectionFilter.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/SelectionShapes.h"
#include "host/editor/Session.h"
#include "host/services/Messages.h"

#include <algorithm>
#include <map>

using velmor::Answer;
using velmor::Drawing;
using velmor::SelectedBy;
using velmor::SelectionFilter;
using velmor::SelectionSet;
using velmor::SelectionSets;
using velmor::Session;

namespace {

/// What the last call selected in a drawing.
struct LastSelection {
    explicit LastSelection(Drawing &) {}
    AcDbObjectIdArray ids;
};

std::optional<AcGePoint3d> pointAt(const void *place)
{
    const auto *values = static_cast<const double *>(place);
    return values ? std::optional(AcGePoint3d(values[0], values[1], values[2])) : std::nullopt;
}

std::vector<AcGePoint3d> pointsOf(const void *chain)
{
    std::vector<AcGePoint3d> points;
    for (const auto *item = static_cast<const resbuf *>(chain); item; item = item->rbnext)
        if (item->restype == RTPOINT || item->restype == RT3DPOINT)
            points.emplace_back(item->resval.rpoint[0], item->resval.rpoint[1]);
    return points;
}

AcDbObjectIdArray all(const Drawing &drawing, bool visibleOnly)
{
    AcDbObjectIdArray ids;
    for (AcDbEntity *entity : drawing.modelSpace().entities())
        if (visibleOnly ? velmor::isShown(drawing, *entity) : !entity->isErased())
            ids.push_back(velmor::idOf(*entity));
    return ids;
}

AcDbObjectIdArray lastVisible(const Drawing &drawing)
{
    const auto &entities = drawing.modelSpace().entities();
    const auto last =
        std::find_if(entities.rbegin(), entities.rend(), [&](const auto *e) { return velmor::isShown(drawing, *e); });
    return last == entities.rend() ? AcDbObjectIdArray() : AcDbObjectIdArray{velmor::idOf(**last)};
}

/// What the arguments select; nothing for arguments that make no sense.
std::optional<AcDbObjectIdArray> selected(Session &session, std::wstring_view mode, const void *first,
                                          const void *second)
{
    Drawing &drawing = *session.drawing();
    if (mode.starts_with(L'_'))
        mode.remove_prefix(1);
    if (mode.empty()) {
        const auto point = pointAt(first);
        const auto pick = point ? velmor::pickedEntity(session, {*point}) : std::nullopt;
        return pick ? AcDbObjectIdArray{pick->id} : AcDbObjectIdArray();
    }
    if (mode == L"X" || mode == L"A")
        return all(drawing, mode == L"A");
    if (mode == L"L")
        return lastVisible(drawing);
    if (mode == L"P")
        return drawing.component<LastSelection>().ids;
    if (mode == L"W" || mode == L"C") {
        const auto corner = pointAt(first), opposite = pointAt(second);
        if (!corner || !opposite)
            return std::nullopt;
        velmor::Extents window;
        window.add(corner->x, corner->y);
        window.add(opposite->x, opposite->y);
        return velmor::entitiesIn(drawing, window,
                                  mode == L"W" ? velmor::SelectBy::Window : velmor::SelectBy::Crossing);
    }
    static const std::map<std::wstring_view, SelectedBy> byPoints{
        {L"WP", SelectedBy::Inside}, {L"CP", SelectedBy::Crossing}, {L"F", SelectedBy::Fence}};
    const auto how = byPoints.find(mode);
    const auto points = pointsOf(first);
    if (how == byPoints.end() || points.size() < (how->second == SelectedBy::Fence ? 2u : 3u))
        return std::nullopt;
    return velmor::entitiesBy(how->second, drawing, points);
}

/// Asks till Enter; nothing after Escape.
std::optional<AcDbObjectIdArray> askForObjects(Session &session, const SelectionFilter &filter)
{
    SelectionSet chosen(0);
    for (;;) {
        const Answer answer = session.ask(velmor::promptOf(
            velmor::PromptKind::Selection, {.message = "ui.prompt.objects", .words = {velmor::kAllWord}}));
        if (answer.isEscape())
            return std::nullopt;
        if (answer.isEnter())
            return chosen.members();
        if (const auto *removed = std::get_if<Answer::Removed>(&answer.value)) {
            chosen.remove(removed->ids);
            continue;
        }
        const auto ids = velmor::selectedEntities(session, answer);
        if (!ids)
            session.status(velmor::uiText("ui.input.nothing"));
        for (const AcDbObjectId &id : ids.value_or(AcDbObjectIdArray()))
            if (filter.accepts(*session.drawing(), id))
                chosen.add(id);
    }
}

} // namespace

int acedSSGet(const wchar_t *mode, const void *first, const void *second, const resbuf *filter, ads_name set)
{
    Session *session = Session::currentOrNull();
    if (!session || !session->drawing() || !set)
        return RTERROR;
    const auto conditions = SelectionFilter::parse(filter);
    if (!conditions)
        return RTREJ;
    const bool isAsked = (!mode || !*mode) && !first;
    if (isAsked && !second && !filter)
        velmor::journal("acedSSGet");
    else
        velmor::journal("acedSSGet", mode ? std::wstring_view(mode) : std::wstring_view());
    const auto found = isAsked
                           ? askForObjects(*session, *conditions)
                           : selected(*session, mode ? std::wstring_view(mode) : std::wstring_view(), first, second);
    if (!found)
        return isAsked ? RTCAN : RTREJ;
    AcDbObjectIdArray ids;
    for (const AcDbObjectId &id : *found)
        if (!id.isErased() && conditions->accepts(*session->drawing(), id))
            ids.push_back(id);
    if (ids.empty())
        return RTERROR;
    SelectionSet &made = session->selectionSets().create();
    for (const AcDbObjectId &id : ids)
        made.add(id);
    session->drawing()->component<LastSelection>().ids = std::move(ids);
    SelectionSets::toName(made, set);
    return RTNORM;
}
