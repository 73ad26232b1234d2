// Automatic definition: the closed region around each section's middle becomes a catchment area at once.
#include "definition/DlgCreateCatchmentArea.h"

#include "contracts/EditorAids.h"
#include "controls/WideText.h"
#include "definition/CentreGrid.h"
#include "definition/DefinitionMessages.h"
#include "definition/ReadableColour.h"
#include "geometry/ZEMCBoundary.h"
#include "ui_definition.h"

using namespace ZEMGis::Topology;
using ZEMGis::Sewage::CCatchmentAreaManager;

namespace {

constexpr double kRightAngle = 90.0; ///< passed as it stands; with a distance of 0 it has no effect

void append(AcDbObjectIdArray &list, const AcDbObjectIdArray &more)
{
    list.insert(list.end(), more.begin(), more.end());
}

/// The host's progress meter for as long as it lives.
class CProgress {
public:
    CProgress(unsigned label, std::size_t count)
    {
        acedSetStatusBarProgressMeter(Msg(label).c_str(), 0, static_cast<int>(count));
    }
    ~CProgress() { acedRestoreStatusBar(); }
    CProgress(const CProgress &) = delete;
    CProgress &operator=(const CProgress &) = delete;
    /// So many are done. False when the person wants no more.
    static bool GoOn(std::size_t done)
    {
        acedSetStatusBarProgressMeterPos(static_cast<int>(done));
        return acedUsrBrk() == 0;
    }
};

AcGePoint3d polar(const AcGePoint3d &from, double angle, double distance)
{
    const ads_point start = {from.x, from.y, from.z};
    ads_point end = {0.0, 0.0, 0.0};
    acutPolar(start, angle, distance, end);
    return {end[0], end[1], end[2]};
}

} // namespace

struct CDlgCreateCatchmentArea::AutoSearch {
    CCentreGrid m_knownCentres; ///< of the areas that stood before the run
    CCentreGrid m_foundCentres;
    AcDbObjectIdArray m_boundaries;
    std::vector<AcDbObjectIdArray> m_islands; ///< one list for each boundary
};

void CDlgCreateCatchmentArea::OnBtnAuto()
{
    RefreshMembers();
    m_ui->editNumber->clear();
    if (!m_sections.empty()) {
        AutoSearch search;
        search.m_knownCentres = m_centers;
        int count = 0;
        // A run that is stopped while it searches saves nothing: what it would save hangs on all that it finds.
        const bool finished = SearchBoundaries(search) && WriteFoundBoundaries(search, count);
        std::wstring status = FormatCount(Msg(MessageId::kAutoCount), count);
        if (!finished)
            status += L" - " + Msg(MessageId::kAutoStopped);
        SetStatus(status, kColourResult);
    }
    RefreshDrawingDisplay();
}

bool CDlgCreateCatchmentArea::SearchBoundaries(AutoSearch &search)
{
    const CProgress progress(MessageId::kAutoSearching, m_sections.size());
    std::size_t done = 0;
    for (const SectionPtr &section : m_sections) {
        if (!CProgress::GoOn(done++))
            return false;
        if (!section)
            continue;
        AcGePoint3d point;
        SectionMiddle(point, section, kRightAngle, 0.0);
        if (m_bSearchSubCatchments)
            SearchWithIslands(point, search);
        else
            SearchWithoutIslands(point, search);
    }
    return true;
}

// The two searches are required to test for doubles differently: with islands a region is one if its centre equals that
// of another found in this run, without islands already if it lies within a thousandth of it.

void CDlgCreateCatchmentArea::SearchWithIslands(const AcGePoint3d &point, AutoSearch &search)
{
    AcDbObjectId boundary;
    AcDbObjectIdArray islands;
    if (!CZEMCBoundary::CreateBoundary(point, boundary, islands, m_layerSelection.Name()))
        return;
    AddTempBoundary(boundary);
    for (const AcDbObjectId &island : islands)
        AddTempBoundary(island);
    AcGePoint3d centre;
    if (!CZEMCBoundary::GetCentroid(centre, boundary))
        return;
    if (search.m_knownCentres.Holds(centre) || search.m_foundCentres.Holds(centre)) {
        append(m_tempBoundaries, islands);
        EraseEntity(boundary);
        return;
    }
    search.m_foundCentres.Add(centre);
    search.m_boundaries.push_back(boundary);
    search.m_islands.push_back(std::move(islands));
}

void CDlgCreateCatchmentArea::SearchWithoutIslands(const AcGePoint3d &point, AutoSearch &search)
{
    AcDbObjectId boundary;
    if (!CZEMCBoundary::CreateBoundary(point, boundary, m_layerSelection.Name()))
        return;
    AddTempBoundary(boundary);
    AcGePoint3d centre;
    if (!CZEMCBoundary::GetCentroid(centre, boundary))
        return;
    if (search.m_knownCentres.Holds(centre) || search.m_foundCentres.HoldsNear(centre)) {
        EraseEntity(boundary);
        return;
    }
    search.m_islands.emplace_back();
    search.m_foundCentres.Add(centre);
    search.m_boundaries.push_back(boundary);
}

bool CDlgCreateCatchmentArea::WriteFoundBoundaries(const AutoSearch &search, int &count)
{
    const CProgress progress(MessageId::kAutoSaving, search.m_boundaries.size());
    CStringArray handles;
    std::vector<std::pair<SectionPtr, CSectionPoint>> places; // the same for each boundary
    for (const SectionPtr &section : m_sections) {
        if (section)
            places.emplace_back(section, CSectionPoint(section->GetObjectId()));
    }
    for (std::size_t i = 0; i < search.m_boundaries.size(); ++i) {
        if (!CProgress::GoOn(i))
            return false;
        handles.clear();
        const CBoundaryRing ring(search.m_boundaries[i]);
        for (const auto &[section, place] : places) {
            if (CZEMCBoundary::IsSectionInside(ring, place))
                handles.push_back(section->GetHandleText());
        }
        if (WriteAutoSliv(search.m_boundaries[i], search.m_islands[i], handles))
            count += 1 + static_cast<int>(search.m_islands[i].size());
    }
    return true;
}

void CDlgCreateCatchmentArea::SectionMiddle(AcGePoint3d &outPoint, const SectionPtr &section, double angle,
                                            double distance)
{
    outPoint = AcGePoint3d();
    if (!section)
        return;
    AcGePoint3d middle;
    if (section->GetType() == kSectionStraight) {
        const AcGePoint3d start = section->GetStartPoint(), end = section->GetEndPoint();
        const ads_point from = {start.x, start.y, start.z}, to = {end.x, end.y, end.z};
        middle = polar(start, acutAngle(from, to), start.distanceTo(end) / 2.0);
    } else if (section->GetType() == kSectionArc) {
        if (const CZEMCArcPtr arc(section->GetObjectId(), AcDb::kForRead); arc.isOpen())
            middle = arc.getPointOnArc();
    }
    outPoint = polar(middle, angle, distance);
}

bool CDlgCreateCatchmentArea::WriteAutoSliv(AcDbObjectId boundaryId, const AcDbObjectIdArray &islandIds,
                                            const CStringArray &sectionHandles)
{
    if (!sectionHandles.empty()) {
        const SectionPtr first =
            CTopologyMultiStorage::Instance()->GetTopology()->GetSectionByHandle(sectionHandles.front().c_str());
        m_ui->editName->setText(ToQString(MakeAreaName(first ? first->GetName() : std::wstring())));
    }
    CCatchmentAreaManager *manager = CCatchmentAreaManager::Instance();
    const AreaPtr main = WriteSlivData(boundaryId, &islandIds, 0, &sectionHandles);
    if (main && m_bWriteLabel) {
        m_lastMainName = main->GetName();
        manager->WriteCatchmentLabel(main, LabelItem());
    }
    const AcDbObjectIdArray noIslands;
    for (const AcDbObjectId &island : islandIds) {
        const AreaPtr area = WriteSlivData(island, &noIslands, 1, &sectionHandles);
        if (area && m_bWriteLabel)
            manager->WriteCatchmentLabel(area, LabelItem());
    }
    return true;
}
