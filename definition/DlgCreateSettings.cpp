// Settings of the definition dialog: the program's configuration, and what the drawing keeps in its dictionaries.
#include "definition/DlgCreateCatchmentArea.h"

#include "definition/DefinitionMessages.h"
#include "dialogs/DrawingSettings.h"
#include "geometry/EntityWalk.h"
#include "ui_definition.h"

using ZEMGis::CModuleConfiguration;
using ZEMGis::Utility::CUtility;

namespace {

constexpr const wchar_t *kKeyLayers = L"ZEMX_CATCH_DEFINE_LAYERS";
constexpr const wchar_t *kKeyCatchment = L"ZEMX_CATCH_DEFINE_m_bCatchmentType";
constexpr const wchar_t *kKeyHouse = L"ZEMX_CATCH_DEFINE_m_bHouseType";
constexpr const wchar_t *kKeyIndustrial = L"ZEMX_CATCH_DEFINE_m_bIndustrialType";
constexpr const wchar_t *kKeyPopulation = L"ZEMX_CATCH_DEFINE_POPULATION";
constexpr const wchar_t *kKeySlope = L"ZEMX_CATCH_DEFINE_SLOPE";
constexpr const wchar_t *kKeyBlockPath = L"ZEMX_CATCH_DEFINE_m_strBlockPath";
constexpr const wchar_t *kKeyBlockName = L"ZEMX_CATCH_DEFINE_m_strBlockName";

/// The texts of a chain, whether its items are marked as host texts or by a text's group code.
CStringArray textsOf(const resbuf *chain)
{
    CStringArray texts;
    for (; chain; chain = chain->rbnext) {
        if ((chain->restype == RTSTR || chain->restype == kCodeText) && chain->resval.rstring)
            texts.emplace_back(chain->resval.rstring);
    }
    return texts;
}

/// A chain of text items; the caller frees it.
resbuf *chainOf(const CStringArray &texts)
{
    resbuf *first = nullptr;
    resbuf **end = &first;
    for (const std::wstring &text : texts) {
        *end = acutBuildList(RTSTR, text.c_str(), RTNONE);
        if (!*end)
            break;
        (*end)->restype = kCodeText;
        end = &(*end)->rbnext;
    }
    return first;
}

} // namespace

void CDlgCreateCatchmentArea::ReadConfiguration()
{
    const CModuleConfiguration &configuration = *CModuleConfiguration::Instance();
    configuration.GetGSValueDouble(L"CATCH_HATCH_SCALE", m_hatchScale);
    configuration.GetGSValueInt(L"CATCH_HATCH_COLOR_DEFINED", m_colorDefined);
    m_ui->swatchDefined->SetBackgroundColor(acedGetRGB(m_colorDefined), false);
    configuration.GetGSValueInt(L"CATCH_HATCH_COLOR_TEMP", m_colorTemp);
    m_ui->swatchCurrent->SetBackgroundColor(acedGetRGB(m_colorTemp), false);
    configuration.GetGSValueString(L"CATCH_NAME_PREFIX", m_nameParts.m_strPrefix);
    configuration.GetGSValueString(L"CATCH_NAME_SUFIX", m_nameParts.m_strSuffix);
    configuration.GetGSValueString(L"CATCH_COUNTER_DELIMITER", m_nameParts.m_strDelimiter);
}

void CDlgCreateCatchmentArea::RestoreSettings()
{
    RefreshMembers();
    RestoreLayers();
    BuildLayerSelection();
    RestoreType();

    const CZEMCDictionaryPtr dictionary(AcDb::kForRead);
    double value = 0.0;
    if (dictionary.dctRead(kSettingsDictionary, kKeyPopulation, value, false))
        SetNumber(m_ui->editDensity, value);
    if (dictionary.dctRead(kSettingsDictionary, kKeySlope, value, false))
        SetNumber(m_ui->editSlope, value);
    RestoreLabelBlock();
}

void CDlgCreateCatchmentArea::RestoreLayers()
{
    resbuf *chain = nullptr;
    if (!CZEMCDictionaryPtr(AcDb::kForRead).dctRead(kSettingsDictionary, kKeyLayers, chain, false))
        return;
    m_boundaryLayers = textsOf(chain);
    acutRelRb(chain);
}

void CDlgCreateCatchmentArea::RestoreType()
{
    const CZEMCDictionaryPtr dictionary(AcDb::kForRead);
    dictionary.dctRead(kSettingsDictionary, kKeyCatchment, m_bCatchmentType, false);
    dictionary.dctRead(kSettingsDictionary, kKeyHouse, m_bHouseType, false);
    dictionary.dctRead(kSettingsDictionary, kKeyIndustrial, m_bIndustrialType, false);
    ShowMembers();
    if (m_bCatchmentType)
        OnCheckCatch();
    else if (m_bHouseType)
        OnCheckHouse();
    else if (m_bIndustrialType)
        OnCheckIndustrial();
}

void CDlgCreateCatchmentArea::RestoreLabelBlock()
{
    const CZEMCDictionaryPtr dictionary(AcDb::kForRead);
    const bool pathRead = dictionary.dctRead(kSettingsDictionary, kKeyBlockPath, m_strBlockPath, false);
    const bool nameRead = dictionary.dctRead(kSettingsDictionary, kKeyBlockName, m_strBlockName, false);
    if (!pathRead || !nameRead) {
        LoadDefaultLabelBlock();
        return;
    }
    if (!m_strBlockPath.empty() && !m_strBlockName.empty())
        InsertLabelBlock();
    m_bWriteLabel = m_bLabelBlockReady;
    ShowMembers();
}

void CDlgCreateCatchmentArea::LoadDefaultLabelBlock()
{
    std::wstring path;
    CZEMCDictionaryPtr(AcDb::kForRead).dctRead(L"ZEMX_SEWAGE_CATCHMENT", L"LABEL_BLOCK", path, false);
    if (path.empty()) {
        const std::wstring folder = CModuleConfiguration::Instance()->GetPath(L"Symbol");
        if (!folder.empty())
            path = folder + L"CatchLabel.dwg";
    }
    if (!path.empty()) {
        m_strBlockPath = path;
        m_strBlockName = FileTitle(path);
        InsertLabelBlock();
    }
    m_bWriteLabel = m_bLabelBlockReady;
    ShowMembers();
}

void CDlgCreateCatchmentArea::InsertLabelBlock()
{
    m_labelBlockId = CZEMCDraw::insertBlockDefinition(m_strBlockName.c_str(), m_strBlockPath.c_str());
    CUtility::GetAttributesFromBlockDef(m_labelBlockId, m_labelAttributes);
    m_bLabelBlockReady = true;
}

void CDlgCreateCatchmentArea::SaveSettings()
{
    CZEMCDictionaryPtr dictionary(AcDb::kForRead);
    dictionary.upgradeOpen();
    RefreshMembers();
    if (!m_boundaryLayers.empty()) {
        resbuf *chain = chainOf(m_boundaryLayers);
        dictionary.dctWrite(kSettingsDictionary, kKeyLayers, chain, false, true);
        acutRelRb(chain);
    }
    dictionary.dctWrite(kSettingsDictionary, kKeyPopulation, GetNumber(m_ui->editDensity), false, true, kCodeDouble);
    dictionary.dctWrite(kSettingsDictionary, kKeySlope, GetNumber(m_ui->editSlope), false, true, kCodeDouble);
    dictionary.dctWrite(kSettingsDictionary, kKeyBlockPath, m_strBlockPath, false, true, kCodeText);
    dictionary.dctWrite(kSettingsDictionary, kKeyBlockName, m_strBlockName, false, true, kCodeText);
    dictionary.dctWrite(kSettingsDictionary, kKeyCatchment, m_bCatchmentType, false, true, kCodeInt);
    dictionary.dctWrite(kSettingsDictionary, kKeyHouse, m_bHouseType, false, true, kCodeInt);
    dictionary.dctWrite(kSettingsDictionary, kKeyIndustrial, m_bIndustrialType, false, true, kCodeInt);
}

void CDlgCreateCatchmentArea::BuildLayerSelection()
{
    m_layerSelection.Renew();
    if (m_boundaryLayers.empty())
        return;
    const std::set<std::wstring> layers(m_boundaryLayers.begin(), m_boundaryLayers.end());
    WalkEntities([&](const AcDbEntity &entity) {
        if (layers.contains(entity.layer()))
            m_layerSelection.Add(entity);
    });
}
