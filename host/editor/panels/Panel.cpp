#include "host/editor/panels/Panel.h"

#include "host/editor/CommandStack.h"
#include "host/editor/Guarded.h"
#include "host/editor/Selection.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"

#include <algorithm>
#include <string_view>

namespace velmor {

namespace {

/// Around what is shown, as a part of its size; a place without a size is shown with this many units around it.
constexpr double kMargin = 0.25, kLeastMargin = 10.0;

std::vector<PanelSpec> &registeredPanels()
{
    static std::vector<PanelSpec> specs;
    return specs;
}

} // namespace

std::vector<PanelSpec> panelSpecs()
{
    std::vector<PanelSpec> specs = registeredPanels();
    std::ranges::sort(specs, {}, [](const PanelSpec &spec) { return std::string_view(spec.key); });
    return specs;
}

PanelRegistration::PanelRegistration(PanelSpec spec)
{
    registeredPanels().push_back(std::move(spec));
}

bool changeDrawing(Session &session, const std::wstring &name, const std::function<void(Drawing &)> &work)
{
    if (!session.drawing())
        return false;
    if (session.commands().isRunning()) {
        session.status(uiMessage("ui.run.running", {session.commands().running().back()}));
        return false;
    }
    if (session.documentLocks() > 0) {
        session.status(uiText("ui.run.locked"));
        return false;
    }
    const bool done = runGuarded(
        session, name, [&] { work(*session.drawing()); }, Kept::ForGood);
    if (session.view())
        session.view()->redraw();
    return done;
}

void selectAndShow(Session &session, const AcDbObjectIdArray &ids, Extents extents)
{
    if (!session.drawing())
        return;
    session.drawing()->component<Selection>().set(ids);
    if (extents.isEmpty() || !session.view())
        return;
    extents.grow(std::max(kLeastMargin, kMargin * std::max(extents.maxX - extents.minX, extents.maxY - extents.minY)));
    session.view()->zoomTo(extents);
}

void startCommand(Session &session, const std::wstring &line)
{
    std::wstring reason;
    if (!session.commands().run(line, &reason) && !reason.empty() && reason != session.lastStatus())
        session.status(reason);
    if (session.view())
        session.view()->redraw();
}

} // namespace velmor
