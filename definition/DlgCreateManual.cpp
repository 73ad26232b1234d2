// Manual definition: a boundary by a point inside it, by an existing polyline, or corner by corner.
//
// Each way ends the same: a temporary closed polyline, its preview hatch, and rows of the list that the save works
// from. The ways differ in what they clear before, test and refresh, and are required to.
#include "definition/DlgCreateCatchmentArea.h"

#include "contracts/EditorAids.h"
#include "controls/WideText.h"
#include "definition/DefinitionConstants.h"
#include "definition/DefinitionMessages.h"
#include "geometry/ZEMCBoundary.h"
#include "ui_definition.h"

#include <boost/make_shared.hpp>

using namespace ControlId;
using ZEMGis::Sewage::CCatchmentAreaManager;
using ZEMGis::Topology::kUnknownValue;

namespace {

void alertNoBoundary()
{
    acedAlert(Msg(MessageId::kNoBoundary).c_str());
}

AcGePoint3d toPoint(const ads_point point)
{
    return {point[0], point[1], point[2]};
}

/// Asks for a point, with a rubber band from base unless it is null.
bool getPoint(const AcGePoint3d *base, unsigned prompt, AcGePoint3d &point)
{
    ads_point from = {0.0, 0.0, 0.0}, picked = {0.0, 0.0, 0.0};
    if (base) {
        from[0] = base->x;
        from[1] = base->y;
        from[2] = base->z;
    }
    if (acedGetPoint(base ? from : nullptr, Msg(prompt).c_str(), picked) != RTNORM)
        return false;
    point = toPoint(picked);
    return true;
}

/// Square drawing units; -1e6 when it can't be had.
double areaOf(AcDbObjectId boundary)
{
    double area = kUnknownValue;
    CZEMCBoundary::GetArea(area, boundary);
    return area;
}

/// Object snaps are off for its life, so that a point is taken as it was clicked.
class CSnapsOff {
public:
    CSnapsOff() : m_bRead(acedGetVar(L"OSMODE", &m_old) == RTNORM)
    {
        resbuf off;
        off.restype = RTSHORT;
        off.resval.rint = 0;
        if (acedSetVar(L"OSMODE", &off) != RTNORM)
            Restore();
    }
    ~CSnapsOff()
    {
        if (!m_bLeft)
            acedAtEnd(L"OSMODE", [this] { Restore(); });
    }
    CSnapsOff(const CSnapsOff &) = delete;
    CSnapsOff &operator=(const CSnapsOff &) = delete;
    /// They stay off for good.
    void Leave() { m_bLeft = true; }

private:
    void Restore()
    {
        if (m_bRead)
            acedSetVar(L"OSMODE", &m_old);
    }
    resbuf m_old;
    bool m_bRead;
    bool m_bLeft = false;
};

} // namespace

void CDlgCreateCatchmentArea::OnBtnPickPoint()
{
    BeginEditorCommand();
    RefreshMembers();
    EraseTempHatches();
    CCatchmentAreaManager::Instance()->UnMarkAllCatchments(ZEMGis::Sewage::kTypeAll);
    ForgetDefinition();
    CSnapsOff snaps;
    ShowDefinedAreas();
    AcGePoint3d point;
    const auto askForPoint = [&] {
        // What a click would take is shown while the pointer rests.
        const CZEMCPointMonitor preview([this](const AcGePoint3d &at, std::vector<ZEMCRing> &rings) {
            return acedTraceBoundary(at, m_bSearchSubCatchments != 0, m_layerSelection.Name(), rings);
        });
        return getPoint(nullptr, MessageId::kPointPrompt, point);
    };
    if (askForPoint() && !DefineAroundPoint(point)) {
        snaps.Leave(); // this way out is required to leave them off, and the display as it is
        CompleteEditorCommand(1);
        return;
    }
    CompleteEditorCommand(1);
    RefreshDrawingDisplay();
}

bool CDlgCreateCatchmentArea::DefineAroundPoint(const AcGePoint3d &point)
{
    AcDbObjectId boundary;
    AcDbObjectIdArray islands;
    const bool found = m_bSearchSubCatchments
                           ? CZEMCBoundary::CreateBoundary(point, boundary, islands, m_layerSelection.Name())
                           : CZEMCBoundary::CreateBoundary(point, boundary, m_layerSelection.Name());
    if (!found) {
        alertNoBoundary();
        return true;
    }
    if (IsDuplicateCentre(boundary, true))
        return false;
    AcDbObjectId hatch;
    CreatePreviewHatch(hatch, boundary, islands, m_colorTemp, 0.0);
    m_lastBoundary = boundary;
    if (m_bSearchSubCatchments)
        m_lastIslands = islands;
    AddTempBoundary(boundary);
    for (const AcDbObjectId &island : islands)
        AddTempBoundary(island);

    std::vector<double> areas{areaOf(boundary)};
    for (const AcDbObjectId &island : islands) {
        areas.push_back(areaOf(island));
        if (areas.back() != kUnknownValue)
            areas.front() -= areas.back(); // the main row shows the net area
    }
    EnableControls({kBtnSave}, true);
    AddDefinitionRows(boundary, islands, areas);
    return true;
}

void CDlgCreateCatchmentArea::OnBtnPickEntity()
{
    BeginEditorCommand();
    RefreshMembers();
    ForgetDefinition();
    ShowDefinedAreas();
    ads_name picked = {0, 0};
    ads_point place = {0.0, 0.0, 0.0};
    if (acedEntSel(Msg(MessageId::kEntityPrompt).c_str(), picked, place) == RTNORM && !DefineByEntity(picked)) {
        CompleteEditorCommand(1);
        return;
    }
    CompleteEditorCommand(1);
    RefreshDrawingDisplay();
}

bool CDlgCreateCatchmentArea::DefineByEntity(const ads_name picked)
{
    AcDbObjectId entity, polyline;
    acdbGetObjectId(entity, picked);
    double area = kUnknownValue;
    if (!CZEMCBoundary::CopyToPolylineLW(entity, polyline)) {
        alertNoBoundary();
    } else if (IsDuplicateCentre(polyline, true)) {
        return false;
    } else {
        area = DefineByPolyline(polyline);
    }
    // Once more behind the choice of the row, and not rounded this time.
    SetNumber(m_ui->editArea, area == kUnknownValue ? 0.0 : area / kSquareMetresPerHectare);
    return true;
}

void CDlgCreateCatchmentArea::OnBtnDrawArea()
{
    ForgetDefinition();
    ShowDefinedAreas();
    BeginEditorCommand();
    AcGePoint3dArray points;
    AcDbObjectIdArray lines;
    AcGePoint3d point;
    if (getPoint(nullptr, MessageId::kFirstCorner, point)) {
        points.push_back(point);
        while (getPoint(&points.back(), MessageId::kNextCorner, point)) {
            lines.push_back(CZEMCDraw::line(points.back(), point, nullptr));
            acedSetAid(lines.back());
            points.push_back(point);
        }
    }
    if (points.size() > 2) {
        if (!(points.front() == points.back()))
            points.push_back(AcGePoint3d(points.back())); // changes nothing of the shape, which closes by its flag
        AcDbObjectId polyline;
        if (CZEMCBoundary::DrawPolygon(points, polyline))
            DefineByPolyline(polyline);
    }
    EraseEntities(lines);
    RefreshDrawingDisplay();
    CompleteEditorCommand(1);
}

double CDlgCreateCatchmentArea::DefineByPolyline(AcDbObjectId polyline)
{
    m_lastBoundary = polyline;
    AddTempBoundary(polyline);
    AcDbObjectId hatch;
    CreatePreviewHatch(hatch, polyline, {}, m_colorTemp, 0.0);
    const double area = areaOf(polyline);
    AddDefinitionRows(polyline, {}, {area});
    EnableControls({kBtnSave}, true);
    return area;
}

void CDlgCreateCatchmentArea::ForgetDefinition()
{
    EraseTempBoundaries();
    DeleteRows();
    m_ui->editNumber->clear();
    ClearMarkedText(m_ui->editArea);
}

void CDlgCreateCatchmentArea::AddDefinitionRows(AcDbObjectId boundary, const AcDbObjectIdArray &islands,
                                                const std::vector<double> &areas)
{
    for (std::size_t i = 0; i < areas.size(); ++i) {
        auto item = boost::make_shared<CCatchItemData>();
        const bool isIsland = i > 0;
        item->m_bIsland = isIsland;
        item->m_id = isIsland ? islands[i - 1] : boundary;
        if (!isIsland)
            item->m_islands = islands;
        // An island's payload is required to hold square metres, although its column shows hectares.
        item->m_area = isIsland ? areas[i] : areas[i] / kSquareMetresPerHectare;
        AddBoundaryRow(item, Msg(isIsland ? MessageId::kIslandRow : MessageId::kMainRow), areas[i]);
    }
    m_ui->listAreas->topLevelItem(0)->setSelected(true); // and so shows it
}
