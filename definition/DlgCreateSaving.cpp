// Saving: what stands in the definition panel becomes catchment areas, with names that are free.
#include "definition/DlgCreateCatchmentArea.h"

#include "controls/WideText.h"
#include "definition/DefinitionConstants.h"
#include "definition/DefinitionMessages.h"
#include "definition/ReadableColour.h"
#include "definition/SectionShares.h"
#include "geometry/Trace.h"
#include "geometry/ZEMCBoundary.h"
#include "ui_definition.h"

#include <boost/make_shared.hpp>

using namespace ZEMGis::Data;
using namespace ZEMGis::Topology;
using ZEMGis::Notification::CNotificationFramework;
using ZEMGis::Notification::SetActiveCommand;
using ZEMGis::Sewage::CCatchmentAreaManager;
using ZEMGis::Utility::CTransform;
using ZEMGis::Utility::CUtility;

namespace {

constexpr const char *kTraceWrite = "CDlgCreateCatchmentArea::WriteSlivData";

void addProperty(CProperties &bag, const wchar_t *tag, const CDataBox &value)
{
    auto property = boost::make_shared<CProperty>();
    property->SetTag(tag);
    property->SetValue(value);
    bag.AddProperty(std::move(property));
}

bool isEmpty(const QLineEdit *edit)
{
    return edit->text().isEmpty();
}

void alert(unsigned message)
{
    acedAlert(Msg(message).c_str());
}

void traceMarker(int line)
{
    if (CLogEngine::GetLoggingOnOff() != 0)
        TraceText(TraceRecord(__FILE__, line, kTraceWrite), "Marker");
}

/// Attaches data to an entity; one that can't be opened is passed over.
void writeData(AcDbObjectId id, const wchar_t *key, const CDataBox &value)
{
    CZEMCEntityPtr entity(id, AcDb::kForWrite);
    if (entity.isOpen())
        CDataRW::Write(key, entity, value, nullptr);
}

std::wstring handleText(AcDbObjectId id)
{
    wchar_t buffer[17] = L"";
    id.handle().getIntoAsciiBuffer(buffer);
    return buffer;
}

template <class Wrapper>
bool readVertices(AcDbObjectId id, AcGePoint3dArray &points)
{
    const Wrapper polyline(id, AcDb::kForRead);
    return polyline.isOpen() && polyline.getVertexPoints(points);
}

} // namespace

void CDlgCreateCatchmentArea::OnBtnSaveMain()
{
    const CTraceFrame frame(__FILE__, __LINE__, "CDlgCreateCatchmentArea::OnBtnSaveMain");
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_SAVE");
    const CZEMCDocLock lock;
    const int mask = GetTypeMask();
    const bool catchmentIncomplete = m_bCatchmentType && (isEmpty(m_ui->editCoefficient) || isEmpty(m_ui->editSlope));
    const bool houseIncomplete = m_bHouseType && isEmpty(m_ui->editDensity);
    if (catchmentIncomplete || houseIncomplete) {
        alert(MessageId::kParameterEmpty);
        return;
    }
    SetStatus({}, kColourResult);
    switch (Method()) {
    case kMethodCurrentSection:
    case kMethodAllSections:
        SaveSelectedRows();
        break;
    case kMethodTypedArea:
        if (!SaveWithoutPolygon(mask))
            return;
        break;
    case kMethodAutomatic:
        break; // saves by itself
    }
    ShowSectionAreas();
    RefreshDrawingDisplay();
}

void CDlgCreateCatchmentArea::SaveSelectedRows()
{
    for (const CCatchItemData *item : SelectedRows()) {
        if (item->m_bIsland)
            SaveIslandRow(*item);
        else
            SaveMainRow(*item);
    }
}

// The two kinds of rows are required to take their label from different places: an island's comes from the label block,
// a main area's from the catalogue item of the dialog. So a main area is labelled anew by its own form when one of its
// islands was saved.

void CDlgCreateCatchmentArea::SaveIslandRow(const CCatchItemData &item)
{
    const AreaPtr area = WriteSlivData(item.m_id, &item.m_islands, 1, nullptr);
    if (!area)
        return;
    CCatchmentAreaManager *manager = CCatchmentAreaManager::Instance();
    if (m_bWriteLabel)
        manager->WriteCatchmentLabel(area, m_labelBlockId, m_labelAttributes);
    SetStatus(Msg(MessageId::kSaved), kColourResult);
    ShowCurrentSection();
    CDataBox mainGuid;
    area->GetPropertyData(L"CA_MAIN_AREA", mainGuid);
    if (!mainGuid.IsNotNull())
        return;
    if (const AreaPtr main = manager->GetCatchmentAreaByGuid(mainGuid))
        manager->WriteCatchmentLabel(main, LabelItem());
}

void CDlgCreateCatchmentArea::SaveMainRow(const CCatchItemData &item)
{
    const AreaPtr area = WriteSlivData(item.m_id, &item.m_islands, 0, nullptr);
    if (!area || !m_bWriteLabel)
        return;
    CCatchmentAreaManager::Instance()->WriteCatchmentLabel(area, LabelItem());
    SetStatus(Msg(MessageId::kSaved), kColourResult);
    ShowCurrentSection();
}

bool CDlgCreateCatchmentArea::SaveWithoutPolygon(int mask)
{
    using namespace ZEMGis::Sewage;
    auto bag = boost::make_shared<CProperties>();
    addProperty(*bag, L"CA_GUID", CUtility::CreateGUID());
    addProperty(*bag, L"CA_TYPE_ISLAND", 0);
    if ((mask & (kTypeCatchment | kTypeHouse)) != 0)
        addProperty(*bag, L"CA_POPULATION", GetNumber(m_ui->editDensity));
    const auto refuse = [] {
        alert(MessageId::kParameterEmpty);
        return false;
    };
    if (m_bCatchmentType) {
        if (isEmpty(m_ui->editCoefficient) || isEmpty(m_ui->editArea))
            return refuse();
        addProperty(*bag, L"CA_COEFF", GetNumber(m_ui->editCoefficient));
        addProperty(*bag, L"CA_SLOPE", GetNumber(m_ui->editSlope));
    }
    if (m_bHouseType && (isEmpty(m_ui->editArea) || isEmpty(m_ui->editDensity)))
        return refuse();
    if (m_bIndustrialType && isEmpty(m_ui->editArea))
        return refuse();
    if (const SectionPtr section = CurrentSection()) {
        CCatchmentAreaManager::Instance()->SetHiddenCA(section, GetNumber(m_ui->editArea) * kSquareMetresPerHectare,
                                                       mask, bag);
    }
    return true;
}

CDlgCreateCatchmentArea::AreaPtr CDlgCreateCatchmentArea::WriteSlivData(AcDbObjectId boundaryId,
                                                                        const AcDbObjectIdArray *islandIds,
                                                                        int isIsland,
                                                                        const CStringArray *sectionHandles)
{
    const CTraceFrame frame(__FILE__, __LINE__, kTraceWrite);
    RefreshMembers();
    const std::wstring name = ToWide(m_ui->editName->text());
    if (!isIsland)
        m_lastMainName = name;
    if (IsNameUsed(name)) {
        alert(MessageId::kNameTaken);
        return {};
    }
    const int mask = GetTypeMask();
    AcGePoint3d centre;
    CZEMCBoundary::GetCentroid(centre, boundaryId);
    if (IsDuplicateCentre(boundaryId, true))
        return {};

    traceMarker(__LINE__);
    const std::wstring guid = CUtility::CreateGUID();
    auto bag = boost::make_shared<CProperties>();
    addProperty(*bag, L"CA_GUID", guid);
    addProperty(*bag, L"CA_POPULATION", GetNumber(m_ui->editDensity));
    addProperty(*bag, L"CA_COEFF", GetNumber(m_ui->editCoefficient));
    addProperty(*bag, L"CA_SLOPE", GetNumber(m_ui->editSlope));
    addProperty(*bag, L"CA_TYPE_ISLAND", isIsland ? 1 : 0);
    if (isIsland) {
        TieIslandToMainArea(boundaryId, guid, *bag);
    } else {
        for (const AcDbObjectId &island : *islandIds)
            writeData(island, L"SLIV_MAIN_AREA", guid);
    }

    AcGePoint3dArray points;
    GetBoundaryVertices(boundaryId, points);
    const std::wstring polygonText = CTransform::PolygonText(CTransform::AcadPoly2GeosPoly(points));
    traceMarker(__LINE__);
    const AreaPtr ptrCA = CCatchmentAreaManager::Instance()->CreateCA(polygonText, name, mask, bag);
    if (CLogEngine::GetLoggingOnOff() != 0) {
        TraceVerify(TraceRecord(__FILE__, __LINE__, kTraceWrite), ptrCA.get() != nullptr, "ptrCA.get()!=0");
    }
    if (!ptrCA)
        return {};

    ptrCA->SetName(name);
    m_usedNames.insert(name);
    m_centers.Add(centre);
    m_ui->editName->setText(ToQString(MakeAreaName(isIsland ? m_lastMainName : name)));
    if (!isIsland && !islandIds->empty())
        ListIslandsOnMainArea(ptrCA, *islandIds);
    AssignSections(ptrCA, sectionHandles);
    return ptrCA;
}

void CDlgCreateCatchmentArea::TieIslandToMainArea(AcDbObjectId boundaryId, const std::wstring &guid, CProperties &bag)
{
    // The save of the main area left its GUID on the island's polyline.
    std::wstring mainGuid;
    {
        CZEMCEntityPtr boundary(boundaryId, AcDb::kForWrite);
        if (boundary.isOpen()) {
            CDataBox box;
            CDataRW::Read(L"SLIV_MAIN_AREA", boundary, box, 0, nullptr);
            if (box.IsNotNull())
                mainGuid = static_cast<std::wstring>(box);
            addProperty(bag, L"CA_MAIN_AREA", mainGuid);
        }
    }
    const AreaPtr main = CCatchmentAreaManager::Instance()->GetCatchmentAreaByGuid(mainGuid);
    if (!main)
        return;
    CDataBox box;
    CStringArray islands;
    main->GetPropertyData(L"CA_ISLANDS", box);
    if (box.IsNotNull())
        box.GetArrayCopy(islands);
    islands.push_back(guid);
    main->SetPropertyData(L"CA_ISLANDS", islands);
    writeData(main->GetObjectId(), L"SLIV_ISLANDS", islands);
}

void CDlgCreateCatchmentArea::ListIslandsOnMainArea(const AreaPtr &area, const AcDbObjectIdArray &islandIds)
{
    CStringArray handles;
    for (const AcDbObjectId &island : islandIds)
        handles.push_back(handleText(island));
    writeData(area->GetObjectId(), L"SLIV_ISLANDS", handles);
}

void CDlgCreateCatchmentArea::AssignSections(const AreaPtr &area, const CStringArray *sectionHandles)
{
    std::vector<SectionPtr> sections;
    switch (Method()) {
    case kMethodCurrentSection: {
        ZEMGis::Sewage::SectionShares whole;
        if (const SectionPtr section = CurrentSection())
            whole.emplace_back(section, 1.0);
        CCatchmentAreaManager::Instance()->AssignCA(whole, area);
        return;
    }
    case kMethodAllSections:
        sections = m_sections;
        break;
    case kMethodAutomatic:
        if (sectionHandles) {
            for (const std::wstring &handle : *sectionHandles)
                sections.push_back(
                    CTopologyMultiStorage::Instance()->GetTopology()->GetSectionByHandle(handle.c_str()));
        }
        break;
    case kMethodTypedArea:
        break;
    }
    std::erase(sections, SectionPtr());
    CSectionShares shares;
    for (const SectionPtr &section : sections)
        shares.Add(section->GetName(), section->GetLength2D());
    ZEMGis::Sewage::SectionShares pairs;
    for (const SectionPtr &section : sections)
        pairs.emplace_back(section, shares.Of(section->GetName()));
    CCatchmentAreaManager::Instance()->AssignCA(pairs, area);
}

std::wstring CDlgCreateCatchmentArea::MakeAreaName(const std::wstring &base) const
{
    return NextFreeAreaName(m_nameParts, base, m_usedNames);
}

bool CDlgCreateCatchmentArea::IsNameUsed(const std::wstring &name) const
{
    return m_usedNames.contains(name);
}

CCatalogItem *CDlgCreateCatchmentArea::LabelItem() const
{
    return LabelItemOf(*m_ui->comboLabel);
}

void CDlgCreateCatchmentArea::GetBoundaryVertices(AcDbObjectId id, AcGePoint3dArray &points)
{
    if (!readVertices<CZEMCPolylineLWPtr>(id, points) && !readVertices<CZEMC2dPolylinePtr>(id, points))
        readVertices<CZEMC3dPolylinePtr>(id, points);
}
