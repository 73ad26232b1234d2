// What a module asks of its host for the person who waits or points: a progress meter with a way to stop, the region
// around a point without drawing it, an outline under the resting pointer, entities that are only drawn to help, and
// the end of what a work had set up.
//
// All calls belong on the main thread. Nothing throws, and none of it changes the drawing or makes an undo step. A host
// without a window takes the calls and shows nothing.
#pragma once

#include "contracts/DrawingHost.h"

#include <functional>
#include <memory>
#include <vector>

// --- Long work
// ------------------------------------------------------------------------------------------------

/// Shows a progress meter with a label in the host's status bar, from position from to position to; one at a time, a
/// second one takes the first one's place. RTNORM, or RTERROR without a label or when from is not below to.
ZEMX_CONTRACT int acedSetStatusBarProgressMeter(const wchar_t *label, int from, int to);
/// Moves the meter. It is cheap: the host shows it a few times a second.
ZEMX_CONTRACT int acedSetStatusBarProgressMeterPos(int position);
/// Takes the meter away. The host then tells, on its own status line, where traces since the meter was set found no
/// region and why.
ZEMX_CONTRACT void acedRestoreStatusBar();
/// Not 0 when the person has pressed Escape since the meter was set. The host looks for keys here and nowhere else
/// while a module works, so a long loop asks in every turn. Nothing else that the person does is taken meanwhile: no
/// command, no handler and no other dialog can start from here.
ZEMX_CONTRACT int acedUsrBrk();

// --- Regions without drawing
// ------------------------------------------------------------------------------------------------

/// A closed ring; the bulge of a vertex belongs to the side that starts there, the first vertex is not repeated.
using ZEMCRing = std::vector<AcDbPolyline::Vertex>;

/// The region around a point as the boundary command would draw it: its outer ring first, then its islands when they
/// are asked for. A selection set bounds it, or everything visible when its length is below 1. False (and rings empty)
/// when no region closes around the point.
ZEMX_CONTRACT bool acedTraceBoundary(const AcGePoint3d &seed, bool detectIslands, const ads_name selection,
                                     std::vector<ZEMCRing> &rings);

// --- Entities that are only drawn to help
// ------------------------------------------------------------------------------------------------

/// Tells the host that an entity is only an aid of the command that runs: an outline while it is defined, a preview. No
/// undo step, no file and no recovery knows of it. One that stays when the command ends is an entity like any other
/// from then on; when the command fails, the host erases it. RTERROR for an id that names no entity, and for an entity
/// that was not made by the handler (or command) that is at work.
ZEMX_CONTRACT int acedSetAid(const AcDbObjectId &entity);

// --- What a destructor has to do
// ------------------------------------------------------------------------------------------------

/// Does a piece of what a destructor has to do. What it throws ends it and nothing else: the person is told, under the
/// name that he knows the work by, unless a work that failed is just being left and is told of itself.
ZEMX_CONTRACT void acedAtEnd(const wchar_t *name, const std::function<void()> &work) noexcept;

// --- The resting pointer
// ------------------------------------------------------------------------------------------------

/// While one lives and a point is asked for, the host calls it each time when the pointer comes to rest, with the place
/// in the drawing, and shows the rings that it gives until the pointer leaves the first of them. False: nothing to
/// show. A call that takes longer than 20 ms is the last one of this monitor. What it does to the drawing is taken
/// back.
class ZEMX_CONTRACT CZEMCPointMonitor {
public:
    using Outline = std::function<bool(const AcGePoint3d &point, std::vector<ZEMCRing> &rings)>;
    explicit CZEMCPointMonitor(Outline outline);
    ~CZEMCPointMonitor();
    CZEMCPointMonitor(const CZEMCPointMonitor &) = delete;
    CZEMCPointMonitor &operator=(const CZEMCPointMonitor &) = delete;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
