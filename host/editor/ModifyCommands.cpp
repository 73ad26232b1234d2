// ERASE, MOVE, COPY, SELECT, PURGE.
#include "host/drawing/Moving.h"
#include "host/drawing/Uses.h"
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/Selection.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"

#include <algorithm>
#include <map>

namespace velmor {

namespace {

using Next = Command::Next;

AcDbEntity *entityOf(const AcDbObjectId &id)
{
    AcDbEntity *entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk)
        return nullptr;
    entity->close();
    return entity;
}

/// Those of the objects that a command may change; what stands on locked layers is left out, and told.
std::vector<AcDbEntity *> changeable(Asker &asker, const AcDbObjectIdArray &ids)
{
    std::vector<AcDbEntity *> entities;
    std::size_t locked = 0;
    for (const AcDbObjectId &id : ids) {
        AcDbEntity *entity = entityOf(id);
        if (entity && asker.drawing().layer(layerIndexOf(*entity)).locked)
            ++locked;
        else if (entity)
            entities.push_back(entity);
    }
    if (locked > 0)
        asker.session().status(uiMessage("ui.objects.locked", {std::to_wstring(locked)}));
    return entities;
}

/// Those of them whose points are known; the others are told by their kinds.
std::vector<AcDbEntity *> movable(Asker &asker, std::vector<AcDbEntity *> entities)
{
    std::map<std::string, std::size_t> others;
    std::erase_if(entities, [&](const AcDbEntity *entity) {
        if (canMove(*entity))
            return false;
        ++others[typeNameOf(*entity)];
        return true;
    });
    for (const auto &[kind, count] : others)
        asker.session().status(
            uiMessage("ui.objects.unmoved", {std::wstring(kind.begin(), kind.end()), std::to_wstring(count)}));
    return entities;
}

Next nothing(Asker &asker)
{
    asker.session().status(uiText("ui.objects.none"));
    return Next::Commit;
}

Next eraseObjects(Asker &asker)
{
    const auto entities = changeable(asker, asker.objects());
    for (AcDbEntity *entity : entities)
        asker.drawing().erase(*entity);
    asker.session().status(uiMessage("ui.erase.done", {std::to_wstring(entities.size())}));
    return Next::Commit;
}

/// From a base point to a second one, or for a bare Enter by the first point's own coordinates.
AcGeVector3d askStep(Asker &asker, const AcGePoint3d &base)
{
    const Reply to = asker.point({.message = "ui.prompt.move.to", .base = base, .enter = true});
    return to.isEnter() ? base - AcGePoint3d() : to.point - base;
}

Next moveObjects(Asker &asker)
{
    const auto entities = movable(asker, changeable(asker, asker.objects()));
    if (entities.empty())
        return nothing(asker);
    const AcGeVector3d step = askStep(asker, asker.onlyPoint("ui.prompt.move.from"));
    for (AcDbEntity *entity : entities)
        moveEntity(asker.drawing(), *entity, step);
    asker.session().status(uiMessage("ui.move.done", {std::to_wstring(entities.size())}));
    return Next::Commit;
}

/// A copy for each second point till Enter; an Escape keeps those that stand.
Next copyObjects(Asker &asker)
{
    std::vector<AcDbEntity *> chosen; // on locked layers too: nothing of theirs changes
    for (const AcDbObjectId &id : asker.objects())
        if (AcDbEntity *entity = entityOf(id))
            chosen.push_back(entity);
    const auto entities = movable(asker, std::move(chosen));
    if (entities.empty())
        return nothing(asker);
    const AcGePoint3d base = asker.onlyPoint("ui.prompt.move.from");
    std::vector<std::vector<AcDbEntity *>> copies;
    const auto copy = [&](const AcGeVector3d &step) {
        auto &made = copies.emplace_back();
        for (const AcDbEntity *entity : entities)
            if (AcDbEntity *one = copyEntity(asker.drawing(), *entity, step))
                made.push_back(one);
        if (SessionView *view = asker.session().view())
            view->redraw();
    };
    const auto done = [&] {
        std::size_t count = 0; // not everything can be copied
        for (const auto &made : copies)
            count += made.size();
        asker.session().status(uiMessage("ui.copy.done", {std::to_wstring(count)}));
        return Next::Commit;
    };
    try {
        for (;;) {
            const bool isFirst = copies.empty();
            const Reply to =
                asker.point({.message = isFirst ? "ui.prompt.move.to" : "ui.prompt.copy.next",
                             .words = isFirst ? std::vector<std::wstring>() : std::vector<std::wstring>{L"Undo"},
                             .base = base,
                             .enter = true,
                             .optional = !isFirst && !asker.session().view()});
            if (to.isEnter()) {
                if (isFirst)
                    copy(base - AcGePoint3d());
                return done();
            }
            if (to.is(L"Undo")) {
                for (AcDbEntity *entity : copies.back())
                    asker.drawing().erase(*entity);
                copies.pop_back();
            } else {
                copy(to.point - base);
            }
        }
    } catch (const Cancelled &) {
        if (copies.empty())
            throw;
        return done();
    }
}

Next selectObjects(Asker &asker)
{
    auto &selection = asker.drawing().component<Selection>();
    selection.clear();
    selection.set(asker.objects());
    return Next::Commit;
}

Next purge(Asker &asker)
{
    const Reply what = asker.word(
        {.message = "ui.prompt.purge", .words = {L"All", L"Blocks", L"Layers"}, .standard = uiText("ui.word.All")});
    const Purged gone = purgeUnused(asker.drawing(), !what.is(L"Layers"), !what.is(L"Blocks"));
    for (const std::wstring &name : gone.blocks)
        asker.session().status(uiMessage("ui.purge.block", {name}));
    for (const std::wstring &name : gone.layers)
        asker.session().status(uiMessage("ui.purge.layer", {name}));
    asker.session().status(
        uiMessage("ui.purge.done", {std::to_wstring(gone.blocks.size()), std::to_wstring(gone.layers.size())}));
    return Next::Commit;
}

} // namespace

void addModifyCommands(CommandStack &stack)
{
    stack.addWork(L"ERASE", 0, eraseObjects);
    stack.addWork(L"MOVE", 0, moveObjects);
    stack.addWork(L"COPY", 0, copyObjects);
    stack.addWork(L"SELECT", 0, selectObjects);
    stack.addWork(L"PURGE", 0, purge);
}

} // namespace velmor
