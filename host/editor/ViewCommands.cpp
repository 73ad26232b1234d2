// ZOOM and PAN.
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/Painter.h"
#include "host/editor/ViewControl.h"
#include "host/services/Messages.h"

#include <algorithm>

namespace velmor {

namespace {

using Next = Command::Next;

Extents between(const AcGePoint3d &a, const AcGePoint3d &b)
{
    Extents window;
    window.add(a.x, a.y);
    window.add(b.x, b.y);
    return window;
}

Next show(Asker &asker, const Extents &extents)
{
    if (extents.isEmpty())
        asker.session().status(uiText("ui.zoom.empty"));
    else
        asker.session().view()->zoomTo(extents);
    return Next::Commit;
}

Next zoomWindow(Asker &asker, const AcGePoint3d &corner)
{
    return show(asker, between(corner, asker.corner("ui.prompt.corner", corner)));
}

/// "1:500" is a scale of the screen, "2x" a factor over what is shown.
Next zoomScale(Asker &asker, ViewControl &view)
{
    for (;;) {
        const Reply reply = asker.name({.message = "ui.prompt.scale.view"});
        const bool relative = reply.text.ends_with(L'x') || reply.text.ends_with(L'X');
        const auto value = parseReal(relative ? reply.text.substr(0, reply.text.size() - 1) : reply.text);
        constexpr double kSmallest = 1e-12, kLargest = 1e12;
        const double factor = !value ? 0.0 : relative ? *value : *value * view.scaleDenominator();
        if (factor > kSmallest && factor < kLargest) {
            view.zoomBy(factor);
            return Next::Commit;
        }
        asker.refuse(uiText("ui.zoom.scale"));
    }
}

Next zoom(Asker &asker)
{
    ViewControl *view = viewControl(asker.session());
    const Reply reply =
        asker.point({.message = "ui.prompt.zoom",
                     .words = {L"All", L"Extents", L"Window", L"Previous", L"Scale", L"Object", L"In", L"OUt"},
                     .corner = true});
    if (!view) {
        asker.session().status(uiText("ui.zoom.none"));
        return Next::Commit;
    }
    if (reply.kind == Reply::Kind::Point)
        return zoomWindow(asker, reply.point);
    if (reply.is(L"Window"))
        return zoomWindow(asker, asker.corner("ui.prompt.corner.first"));
    if (reply.is(L"Previous")) {
        if (!view->showPrevious())
            asker.session().status(uiText("ui.zoom.first"));
        return Next::Commit;
    }
    if (reply.is(L"Scale"))
        return zoomScale(asker, *view);
    if (reply.is(L"In") || reply.is(L"OUt")) {
        view->zoomBy(reply.is(L"In") ? 2.0 : 0.5);
        return Next::Commit;
    }
    if (reply.is(L"Object")) {
        Extents extents;
        for (const AcDbObjectId &id : asker.objects())
            if (AcDbEntity *entity = nullptr; acdbOpenAcDbEntity(entity, id, AcDb::kForRead) == Acad::eOk) {
                extents.add(extentsOf(*entity));
                entity->close();
            }
        return show(asker, extents);
    }
    if (visibleExtents(asker.drawing()).isEmpty())
        asker.session().status(uiText("ui.zoom.empty"));
    view->showEverything();
    return Next::Commit;
}

Next pan(Asker &asker)
{
    const AcGePoint3d from = asker.point({.message = "ui.prompt.pan.from", .free = true}).point;
    const AcGePoint3d to = asker.point({.message = "ui.prompt.pan.to", .base = from, .free = true}).point;
    ViewControl *view = viewControl(asker.session());
    if (!view) {
        asker.session().status(uiText("ui.zoom.none"));
        return Next::Commit;
    }
    const ViewTransform &shown = view->shownView();
    view->centreOn({shown.centerX + from.x - to.x, shown.centerY + from.y - to.y});
    return Next::Commit;
}

} // namespace

void addViewCommands(CommandStack &stack)
{
    stack.addWork(L"ZOOM", CommandEntry::kTransparent, zoom);
    stack.addWork(L"PAN", CommandEntry::kTransparent, pan);
}

} // namespace velmor
