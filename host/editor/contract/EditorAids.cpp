// Progress of long work, Escape, regions without drawing, outlines under the resting pointer.
#include "contracts/EditorAids.h"

#include "host/drawing/ChangeLog.h"
#include "host/drawing/Journal.h"
#include "host/drawing/ObjectAccess.h"
#include "host/editor/BoundaryCommand.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Guarded.h"
#include "host/editor/LineworkCache.h"
#include "host/editor/PointMonitors.h"
#include "host/editor/ProgressMeter.h"
#include "host/editor/RegionMisses.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"

#include <cmath>
#include <exception>

using velmor::journal;
using velmor::PointMonitors;
using velmor::RegionMisses;
using velmor::Session;

namespace {

/// What fails in here ends here: these calls stand in destructors, also while a work that failed unwinds.
template <class Work, class Result>
Result quietly(Result fallback, Work work)
{
    try {
        return work();
    } catch (...) {
        return fallback;
    }
}

} // namespace

int acedSetStatusBarProgressMeter(const wchar_t *label, int from, int to)
{
    return quietly(RTERROR, [&] {
        journal("acedSetStatusBarProgressMeter", label, from, to);
        Session *session = Session::currentOrNull();
        if (!session || !label || !*label || from >= to)
            return RTERROR;
        if (session->drawing())
            session->drawing()->component<RegionMisses>().begin();
        if (velmor::ProgressMeter *meter = velmor::progressMeterOf(session))
            meter->begin(label, from, to);
        return RTNORM;
    });
}

int acedSetStatusBarProgressMeterPos(int position)
{
    return quietly(RTERROR, [&] {
        if (velmor::ProgressMeter *meter = velmor::progressMeterOf(Session::currentOrNull()))
            meter->setPosition(position);
        return RTNORM;
    });
}

void acedRestoreStatusBar()
{
    quietly(0, [&] {
        journal("acedRestoreStatusBar");
        return 0;
    });
    Session *session = Session::currentOrNull();
    quietly(0, [&] {
        if (velmor::ProgressMeter *meter = velmor::progressMeterOf(session))
            meter->end();
        return 0;
    });
    quietly(0, [&] {
        if (!session || !session->drawing())
            return 0;
        auto &misses = session->drawing()->component<RegionMisses>();
        const std::wstring summary = misses.summary();
        misses.end();
        if (!summary.empty())
            session->status(summary);
        return 0;
    });
}

int acedUsrBrk()
{
    return quietly(0, [] {
        velmor::ProgressMeter *meter = velmor::progressMeterOf(Session::currentOrNull());
        return meter && meter->isBreakAsked() ? 1 : 0;
    });
}

int acedSetAid(const AcDbObjectId &id)
{
    return quietly(RTERROR, [&] {
        journal("acedSetAid", id);
        const CZEMCEntityPtr entity(id, AcDb::kForRead);
        velmor::Drawing *drawing = entity.isOpen() ? velmor::ObjectAccess::drawing(*entity.get()) : nullptr;
        if (!drawing)
            return RTERROR;
        return drawing->component<velmor::ChangeLog>().noteAid(*entity.get()) ? RTNORM : RTERROR;
    });
}

void acedAtEnd(const wchar_t *name, const std::function<void()> &work) noexcept
{
    quietly(0, [&] {
        try {
            work();
        } catch (...) {
            Session *session = Session::currentOrNull();
            if (session && std::uncaught_exceptions() == 0)
                session->alertFailure(
                    velmor::uiMessage("ui.work.failed", {name ? name : L"", velmor::reasonOfException()}));
        }
        return 0;
    });
}

bool acedTraceBoundary(const AcGePoint3d &seed, bool detectIslands, const ads_name selection,
                       std::vector<ZEMCRing> &rings)
{
    rings.clear();
    journal("acedTraceBoundary", seed, detectIslands ? 1 : 0);
    Session *session = Session::currentOrNull();
    if (!session || !session->drawing() || !std::isfinite(seed.x) || !std::isfinite(seed.y))
        return false;
    const bool found = quietly(false, [&] {
        auto &cache = session->drawing()->component<velmor::LineworkCache>();
        const velmor::SelectionSet *set = selection ? session->selectionSets().find(selection) : nullptr;
        const bool isBounded = set && !set->members().empty();
        auto &monitors = session->drawing()->component<PointMonitors>();
        const std::size_t entities =
            isBounded ? set->members().size() : session->drawing()->modelSpace().entities().size();
        if (monitors.isAsking() && entities > PointMonitors::kMostGathered &&
            !(isBounded ? cache.hasSet(*set) : cache.hasVisible())) {
            monitors.giveUp();
            return false;
        }
        const velmor::boundary::Region region =
            (isBounded ? cache.ofSet(*set) : cache.visible())
                .regionAt({seed.x, seed.y}, {.islands = detectIslands, .gapTolerance = velmor::gapTolerance(*session)});
        if (!region)
            return false;
        const auto add = [&rings](const velmor::boundary::Ring &ring) {
            rings.emplace_back();
            for (const velmor::boundary::RingVertex &vertex : ring)
                rings.back().push_back({vertex.x, vertex.y, vertex.bulge});
        };
        add(region.outer);
        for (const velmor::boundary::Ring &island : region.islands)
            add(island);
        return true;
    });
    if (!found)
        rings.clear();
    return found;
}

struct CZEMCPointMonitor::Private {
    std::size_t drawing = 0; ///< the session's number of it
    int number = 0;
};

CZEMCPointMonitor::CZEMCPointMonitor(Outline outline) : d(std::make_unique<Private>())
{
    Session *session = Session::currentOrNull();
    if (!session || !session->drawing())
        return;
    d->drawing = session->drawingNumber();
    d->number =
        session->drawing()->component<PointMonitors>().add(std::move(outline), session->commands().running().size());
}

CZEMCPointMonitor::~CZEMCPointMonitor()
{
    const Session *session = Session::currentOrNull();
    if (d->number != 0 && session && session->drawing() && session->drawingNumber() == d->drawing)
        session->drawing()->component<PointMonitors>().remove(d->number);
}
