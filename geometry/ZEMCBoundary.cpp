// The dialogue with the host's boundary command and the search for what it made.
#include "geometry/ZEMCBoundary.h"

#include "contracts/CoreServices.h"
#include "geometry/EntityWalk.h"
#include "geometry/Trace.h"

#include <boost/container/flat_set.hpp>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

constexpr char kCreateBoundary[] = "CZEMCBoundary::CreateBoundary";
constexpr char kFindNewPoly[] = "CZEMCBoundary::FindNewPoly";

/// Every polyline that stood in the drawing when it was last looked at. Flat and sorted: ids mostly come in rising
/// order, and a comparison over a whole drawing runs through contiguous memory.
using IdSet = boost::container::flat_set<AcDbObjectId>;
IdSet &KnownPolylineIds()
{
    static IdSet ids;
    return ids;
}

/// Calls visit(id) for each polyline of each block of the working drawing: an entity of exactly one of the two classes.
/// False when the block table or an iterator could not be had, which ends the walk.
template <class Visit>
bool WalkPolylines(Visit visit)
{
    return WalkEntityIds(AcDbPolyline::desc(), AcDb2dPolyline::desc(), visit);
}

/// Sorts ids that come in a few rising runs, as a walk gives them; far quicker than a sort that has to find that out.
void SortRuns(IdSet::sequence_type &ids)
{
    std::vector<std::size_t> starts = {0};
    for (std::size_t i = 1; i < ids.size(); ++i) {
        if (ids[i] < ids[i - 1])
            starts.push_back(i);
    }
    if (starts.size() == 1)
        return;
    // What was read lies in blocks of memory that are whole runs, so one copy puts nearly all ids in their order.
    std::vector<std::pair<std::size_t, std::size_t>> runs;
    for (std::size_t run = 0; run < starts.size(); ++run)
        runs.emplace_back(starts[run], run + 1 < starts.size() ? starts[run + 1] : ids.size());
    std::sort(runs.begin(), runs.end(), [&ids](const auto &a, const auto &b) { return ids[a.first] < ids[b.first]; });
    IdSet::sequence_type ordered;
    ordered.reserve(ids.capacity());
    starts.clear();
    for (const auto &[begin, end] : runs) {
        starts.push_back(ordered.size());
        ordered.insert(ordered.end(), ids.data() + begin, ids.data() + end);
    }
    ids.swap(ordered);
    // The others are merged, neighbour with neighbour.
    while (starts.size() > 1) {
        std::vector<std::size_t> merged;
        for (std::size_t run = 0; run < starts.size(); run += 2) {
            merged.push_back(starts[run]);
            if (run + 1 == starts.size())
                break;
            const std::size_t middle = starts[run + 1], end = run + 2 < starts.size() ? starts[run + 2] : ids.size();
            if (ids[middle] < ids[middle - 1])
                std::inplace_merge(ids.data() + starts[run], ids.data() + middle, ids.data() + end);
        }
        starts.swap(merged);
    }
}

bool IsEmpty(const ads_name selection)
{
    std::int32_t length = 0;
    return acedSSLength(selection, &length) != RTNORM || length < 1;
}

/// Hands the head, one node for each point and the final Enter to the host, and frees them.
void RunOverPoints(resbuf *head, const AcGePoint3dArray &points)
{
    if (!head)
        return;
    resbuf *last = head;
    while (last->rbnext)
        last = last->rbnext;
    for (const AcGePoint3d &point : points) {
        resbuf *node = acutNewRb(RT3DPOINT);
        node->resval.rpoint[0] = point.x;
        node->resval.rpoint[1] = point.y;
        node->resval.rpoint[2] = point.z;
        last->rbnext = node;
        last = node;
    }
    last->rbnext = acutBuildList(RTSTR, L"", RTNONE);
    acedCmd(head);
    acutRelRb(head);
}

/// The first of the largest areas; -1 when no area is above 0.
template <class TraceArea>
int FindLargest(const AcDbObjectIdArray &ids, TraceArea traceArea)
{
    int best = -1;
    double bestArea = 0.0;
    for (int i = 0; i < static_cast<int>(ids.size()); ++i) {
        double area = 0.0;
        CZEMCBoundary::GetArea(area, ids[i]); // a failure leaves 0.0, which never wins
        traceArea(area);
        if (area > bestArea) {
            best = i;
            bestArea = area;
        }
    }
    return best;
}

void TraceOk(int line, const char *function, bool ok)
{
    if (CLogEngine::GetLoggingOnOff())
        TraceFormat(TraceRecord(__FILE__, line, function), "ok = '%d'", ok);
}

/// Moves entry best to boundary and the others, in their order, to the end of others.
void TakeLargest(AcDbObjectIdArray &found, int best, AcDbObjectId &boundary, AcDbObjectIdArray &others)
{
    boundary = found[best];
    found.erase(found.begin() + best);
    others.insert(others.end(), found.begin(), found.end());
}

} // namespace

bool CZEMCBoundary::CreateBoundary(const AcGePoint3d &picked, AcDbObjectId &boundary, AcDbObjectIdArray &others,
                                   const ads_name selection)
{
    CTraceFrame frame(__FILE__, __LINE__, kCreateBoundary);
    RememberPolylines();
    const ads_point point = {picked.x, picked.y, picked.z};
    if (IsEmpty(selection)) {
        acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, L"_Y", RTSTR, L"", RT3DPOINT, point, RTSTR,
                    L"", RTNONE);
    } else {
        acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_B", RTSTR, L"_N", RTPICKS, selection, RTSTR, L"",
                    RTSTR, L"_I", RTSTR, L"_Y", RTSTR, L"", RT3DPOINT, point, RTSTR, L"", RTNONE);
    }

    AcDbObjectIdArray found;
    FindNewPoly(found);
    if (CLogEngine::GetLoggingOnOff())
        TraceFormat(TraceRecord(__FILE__, __LINE__, kCreateBoundary), "Broj novih polylinija:%d",
                    static_cast<int>(found.size()));
    const int best = FindLargest(found, [](double area) {
        if (CLogEngine::GetLoggingOnOff())
            TraceFormat(TraceRecord(__FILE__, __LINE__, kCreateBoundary), "povTemp = '%g'", area);
    });
    if (best < 0)
        return false;
    TakeLargest(found, best, boundary, others);
    TraceOk(__LINE__, kCreateBoundary, true);
    return true;
}

bool CZEMCBoundary::CreateBoundary(const AcGePoint3d &picked, AcDbObjectId &boundary, const ads_name selection)
{
    CTraceFrame frame(__FILE__, __LINE__, kCreateBoundary);
    ZEMGis::Utility::CDocLock lock;
    RememberPolylines();
    const ads_point point = {picked.x, picked.y, picked.z};
    if (IsEmpty(selection)) {
        acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, L"_N", RTSTR, L"", RTSTR, L"", RT3DPOINT,
                    point, RTSTR, L"", RTNONE);
    } else {
        acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_B", RTSTR, L"_N", RTPICKS, selection, RTSTR, L"",
                    RTSTR, L"_I", RTSTR, L"_N", RTSTR, L"", RTSTR, L"", RT3DPOINT, point, RTSTR, L"", RTNONE);
    }

    AcDbObjectIdArray found;
    FindNewPoly(found);
    if (found.empty())
        return false;
    boundary = found[0];
    return true;
}

bool CZEMCBoundary::CreateBoundary(const AcGePoint3dArray &points, AcDbObjectId &boundary, AcDbObjectIdArray &others,
                                   const ads_name selection)
{
    CTraceFrame frame(__FILE__, __LINE__, kCreateBoundary);
    RememberPolylines();
    resbuf *head = IsEmpty(selection) ? acutBuildList(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, L"_Y",
                                                      RTSTR, L"", RTSTR, L"_O", RTSTR, L"_P", RTSTR, L"", RTNONE)
                                      : acutBuildList(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, L"_Y",
                                                      RTSTR, L"_B", RTSTR, L"_N", RTPICKS, selection, RTSTR, L"", RTSTR,
                                                      L"_O", RTSTR, L"_P", RTSTR, L"", RTNONE);
    RunOverPoints(head, points);

    AcDbObjectIdArray found;
    FindNewPoly(found);
    const int best = FindLargest(found, [](double) {});
    if (best < 0)
        return false;
    TakeLargest(found, best, boundary, others);
    TraceOk(__LINE__, kCreateBoundary, true);
    return true;
}

bool CZEMCBoundary::CreateBoundary(const AcGePoint3dArray &points, AcDbObjectId & /*boundary*/,
                                   const ads_name selection)
{
    CTraceFrame frame(__FILE__, __LINE__, kCreateBoundary);
    RememberPolylines();
    resbuf *head = IsEmpty(selection) ? acutBuildList(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, L"_N",
                                                      RTSTR, L"", RTSTR, L"_O", RTSTR, L"_R", RTSTR, L"", RTNONE)
                                      : acutBuildList(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, L"_N",
                                                      RTSTR, L"", RTSTR, L"_B", RTSTR, L"_N", RTPICKS, selection, RTSTR,
                                                      L"", RTSTR, L"_O", RTSTR, L"_R", RTSTR, L"", RTNONE);
    RunOverPoints(head, points);

    AcDbObjectIdArray found;
    FindNewPoly(found);
    bool ok = false;
    for (std::size_t i = 0; i + 1 < found.size(); ++i) {
        AcDbEntity *first = nullptr, *second = nullptr;
        const bool firstOpen = acdbOpenAcDbEntity(first, found[i], AcDb::kForWrite) == Acad::eOk;
        const bool secondOpen = acdbOpenAcDbEntity(second, found[i + 1], AcDb::kForWrite) == Acad::eOk;
        if (firstOpen && secondOpen) {
            first->booleanOper(0, second);
            ok = true;
        }
        if (secondOpen)
            second->close();
        if (firstOpen)
            first->close();
    }
    return ok;
}

void CZEMCBoundary::RememberPolylines()
{
    IdSet::sequence_type ids = KnownPolylineIds().extract_sequence(); // its memory serves again
    ids.clear();
    WalkPolylines([&ids](AcDbObjectId id) { ids.push_back(id); });
    SortRuns(ids);
    KnownPolylineIds().adopt_sequence(boost::container::ordered_unique_range, std::move(ids));
}

bool CZEMCBoundary::FindNewPoly(AcDbObjectIdArray &newIds)
{
    newIds.clear();
    IdSet &known = KnownPolylineIds();
    bool ok = false;
    auto next = known.cbegin(); // in a drawing whose ids rise along the walk, the set is passed through once
    const bool complete = WalkPolylines([&](AcDbObjectId id) {
        ok = true;
        if (next == known.cend() || !(*next == id))
            next = known.lower_bound(id);
        if (next != known.cend() && *next == id)
            ++next;
        else
            newIds.push_back(id);
    });
    AcDbObjectIdArray sorted = newIds;
    std::sort(sorted.begin(), sorted.end());
    known.insert(boost::container::ordered_unique_range, sorted.begin(), sorted.end());
    if (!complete)
        return false;
    TraceOk(__LINE__, kFindNewPoly, ok);
    return ok;
}
