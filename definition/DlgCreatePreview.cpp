// The boundaries of the definition at hand: rows of the list, preview hatches, temporary polylines.
#include "definition/DlgCreateCatchmentArea.h"

#include "contracts/EditorAids.h"
#include "controls/WideText.h"
#include "definition/DefinitionConstants.h"
#include "definition/DefinitionMessages.h"
#include "geometry/ZEMCBoundary.h"
#include "ui_definition.h"

#include <QItemSelection>

#include <cmath>

using ZEMGis::Sewage::CCatchmentAreaManager;
using ZEMGis::Topology::kUnknownValue;

namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr int kAreaPlaces = 4;
constexpr unsigned kRowSelected = 2; ///< bit of a row's state

/// Half away from zero at the given place, by way of one more place.
double rounded(double value, int places)
{
    // One product: in two steps the last bit differs, and the cut shows it.
    const double scaled = value * std::pow(10.0, places + 1);
    return std::trunc((scaled + (value < 0.0 ? -5.0 : 5.0)) / 10.0) / std::pow(10.0, places);
}

CCatchItemData *payloadOf(const QTreeWidgetItem *row)
{
    return static_cast<CCatchItemData *>(row->data(0, Qt::UserRole).value<void *>());
}

} // namespace

void CDlgCreateCatchmentArea::AddBoundaryRow(boost::shared_ptr<CCatchItemData> item, const std::wstring &text,
                                             double areaSquareMetres)
{
    auto *row = new QTreeWidgetItem(m_ui->listAreas);
    row->setText(0, ToQString(text));
    row->setText(1, QString::number(areaSquareMetres / kSquareMetresPerHectare, 'f', kAreaPlaces));
    row->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    row->setData(0, Qt::UserRole, QVariant::fromValue(static_cast<void *>(item.get())));
    m_listItems.push_back(std::move(item));
}

std::vector<CCatchItemData *> CDlgCreateCatchmentArea::SelectedRows() const
{
    std::vector<CCatchItemData *> payloads;
    for (const int row : m_selectedRows) {
        if (CCatchItemData *payload = payloadOf(m_ui->listAreas->topLevelItem(row)))
            payloads.push_back(payload);
    }
    return payloads;
}

void CDlgCreateCatchmentArea::OnSelectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    const auto rowsOf = [](const QItemSelection &selection) {
        std::set<int> rows;
        for (const QModelIndex &index : selection.indexes())
            rows.insert(index.row());
        return rows;
    };
    // Rows that are let go of come first, as when a row is clicked.
    for (const int row : rowsOf(deselected)) {
        m_selectedRows.erase(row);
        OnListChanged({.m_nRow = row, .m_nOldState = kRowSelected, .m_nNewState = 0});
    }
    const std::set<int> chosen = rowsOf(selected);
    for (const int row : chosen) {
        m_selectedRows.insert(row);
        OnListChanged(
            {.m_nRow = row, .m_nOldState = 0, .m_nNewState = kRowSelected, .m_bMoreFollow = row != *chosen.rbegin()});
    }
}

std::intptr_t CDlgCreateCatchmentArea::OnListChanged(const CListNotification &notification)
{
    const std::vector<CCatchItemData *> selected = SelectedRows();
    if (m_selectedRows.size() > 1)
        ClearMarkedText(m_ui->editArea);
    if ((notification.m_nOldState & kRowSelected) != 0 || (notification.m_nNewState & kRowSelected) == 0)
        return 0;
    EraseTempHatches();
    CCatchmentAreaManager::Instance()->UnMarkAllCatchments(ZEMGis::Sewage::kTypeAll);
    double angle = 0.0;
    for (const CCatchItemData *item : selected) {
        if (!notification.m_bMoreFollow) {
            AcDbObjectId hatch;
            CreatePreviewHatch(hatch, item->m_id, item->m_islands, m_colorTemp, angle);
            angle += kHatchAngleStep;
        }
        if (m_selectedRows.size() != 1)
            continue;
        if (item->m_area != kUnknownValue)
            SetNumber(m_ui->editArea, rounded(item->m_area, kAreaPlaces));
        if (item->m_coefficient != kUnknownValue)
            SetNumber(m_ui->editCoefficient, item->m_coefficient);
        if (item->m_slope != kUnknownValue)
            SetNumber(m_ui->editSlope, item->m_slope);
    }
    RefreshDrawingDisplay();
    return 0;
}

void CDlgCreateCatchmentArea::ClearMarkedText(AMSEdit::CAMSNumericEdit *edit)
{
    if (edit->hasSelectedText())
        edit->clearSelection(); // the clear command, by the box's own route
}

void CDlgCreateCatchmentArea::CreatePreviewHatch(AcDbObjectId &outId, AcDbObjectId boundaryId,
                                                 const AcDbObjectIdArray &islandIds, int colour, double angleDegrees)
{
    auto hatch = std::make_unique<AcDbHatch>();
    hatch->setNormal({0.0, 0.0, 1.0});
    hatch->setElevation(0.0);
    hatch->setPatternAngle(angleDegrees * kRadiansPerDegree);
    hatch->setPatternScale(m_hatchScale);
    hatch->setPattern(AcDbHatch::kPreDefined, kHatchPattern);
    hatch->setAssociative(false);
    hatch->setHatchStyle(AcDbHatch::kNormal);
    hatch->appendLoop(AcDbHatch::kExternal, {boundaryId});
    for (const AcDbObjectId &island : islandIds)
        hatch->appendLoop(AcDbHatch::kExternal, {island});
    hatch->evaluateHatch(false);
    hatch->setColorIndex(colour, true);
    if (CZEMCDraw::appendToModelSpace(hatch.get(), outId) == Acad::eOk)
        hatch.release()->close(); // the drawing owns it now
    acedSetAid(outId);
    // The id of a hatch that was not taken can't be opened, and erasing passes it over.
    if (islandIds.empty())
        m_noIslandHatches.push_back(outId);
    m_tempHatches.push_back(outId);
}

bool CDlgCreateCatchmentArea::IsDuplicateCentre(AcDbObjectId boundaryId, bool showAlert) const
{
    AcGePoint3d centre;
    CZEMCBoundary::GetCentroid(centre, boundaryId);
    if (!m_centers.HoldsNear(centre))
        return false;
    if (showAlert)
        acedAlert(Msg(MessageId::kCentreTaken).c_str());
    return true;
}

void CDlgCreateCatchmentArea::DeleteRows()
{
    // Rows that go are no rows that are let go of.
    const QSignalBlocker silence(m_ui->listAreas->selectionModel());
    m_ui->listAreas->clear();
    m_selectedRows.clear();
}

void CDlgCreateCatchmentArea::AddTempBoundary(AcDbObjectId boundary)
{
    m_tempBoundaries.push_back(boundary);
    acedSetAid(boundary);
}

void CDlgCreateCatchmentArea::EraseTempBoundaries()
{
    EraseEntities(m_tempBoundaries);
}

void CDlgCreateCatchmentArea::EraseTempHatches()
{
    EraseEntities(m_tempHatches);
}

void CDlgCreateCatchmentArea::EraseEntities(AcDbObjectIdArray &ids)
{
    for (const AcDbObjectId &id : ids)
        EraseEntity(id);
    ids.clear();
}

void CDlgCreateCatchmentArea::EraseEntity(AcDbObjectId id)
{
    if (const CZEMCEntityPtr entity(id, AcDb::kForWrite); entity.isOpen() && entity->erase(true) == Acad::eOk)
        m_erased.push_back(id);
}
