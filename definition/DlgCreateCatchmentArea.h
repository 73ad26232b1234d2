// The dialog of the command zemsewage_create: the user selects sections of the network, and catchment areas are
// defined for them and saved.
//
// The dialog keeps no area of its own. Its state is the set-up of one run plus what the boundary being defined needs;
// areas live with the catchment store, settings in the drawing's dictionaries. One class, its source files by topic:
// start-up and closing, settings, navigation with the enabling of controls, manual definition, automatic definition,
// saving with the names of areas, coefficients, preview.
#pragma once

#include "catalog/ATV118FlowTable.h"
#include "catalog/ZEMTerrainTypeCatalog.h"
#include "contracts/CatchmentArea.h"
#include "contracts/HostDialog.h"
#include "controls/MyToolTipCtrl.h"
#include "definition/AreaNaming.h"
#include "definition/CentreGrid.h"
#include "definition/EnablingTable.h"
#include "dialogs/CatchItemData.h"
#include "dialogs/DefaultButtonDialog.h"
#include "dialogs/DialogControls.h"
#include "dialogs/EntitySet.h"

#include <QString>

#include <memory>
#include <set>
#include <span>
#include <string>
#include <vector>

class QItemSelection;
class CXColorStatic;
class QLineEdit;
namespace AMSEdit {
class CAMSNumericEdit;
}
namespace Ui {
class DefinitionForm;
}

class CDlgCreateCatchmentArea : public CAdUiBaseDialog {
    Q_OBJECT
public:
    /// Payload of an entry of the terrain combo.
    struct CItemData {
        double m_coefficient = 0.0;
    };

    explicit CDlgCreateCatchmentArea(QWidget *parent = nullptr);
    ~CDlgCreateCatchmentArea() override;

    /// Takes the selection button's notice.
    std::intptr_t OnWindowMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) override;

protected:
    using SectionPtr = boost::shared_ptr<ZEMGis::Topology::CSection>;
    using AreaPtr = boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea>;

    bool OnInitDialog() override;
    void OnCancel() override;
    void OnHandlerFailed() override;
    void showEvent(QShowEvent *event) override;

    /// Of the last definition; null and empty before.
    AcDbObjectId LastBoundary() const { return m_lastBoundary; }
    const AcDbObjectIdArray &LastIslands() const { return m_lastIslands; }
    /// The block of labels, and its attributes that take values.
    const AcDbObjectId &LabelBlock() const { return m_labelBlockId; }
    const CStringArray &LabelAttributes() const { return m_labelAttributes; }
    /// Appends a row to the list of boundaries. text names the row, areaSquareMetres is shown in hectares.
    void AddBoundaryRow(boost::shared_ptr<CCatchItemData> item, const std::wstring &text, double areaSquareMetres);

    AcDbObjectIdArray m_tempBoundaries; ///< polylines of definitions, to erase at the next pick or at the end

private:
    // Start-up and closing
    void ConnectControls();
    void SetTexts();
    void SetToolTips();
    void SetUpNumericEdits();
    void FillCombos();
    void LoadImages();
    void SetUpSelectionButton();
    void LoadTerrainTypes();
    void LoadExistingAreas();
    void SetUpList();
    void ShowLayerSummary();
    void FitToScreen();

    // Settings
    void ReadConfiguration();
    void RestoreSettings();
    void SaveSettings();
    void RestoreLayers();
    void RestoreType();
    void RestoreLabelBlock();
    void LoadDefaultLabelBlock();
    void InsertLabelBlock();
    void BuildLayerSelection();

    // Members and controls
    void RefreshMembers();
    void ShowMembers();
    int GetTypeMask();
    enmDefinitionMethod Method() const;
    void EnableControls(const CControlSet &controls, bool enabled);
    void SetStatus(const std::wstring &text, std::uint32_t colour);

    // Selection, navigation, methods and types
    std::intptr_t OnSelectionDone();
    void ReadSelection();
    void RefreshNavigation();
    void ShowCurrentSection();
    void HighlightCurrentSection();
    void HighlightAllSections();
    void ShowSectionAreas();
    void ShowDefinedAreas();
    void MarkSectionAreas(const SectionPtr &section);
    void OnBtnPrevious();
    void OnBtnNext();
    void MoveToSection(int step);
    void OnBtnZoom();
    void OnCheckZoom();
    void OnMethodChanged();
    void EnableForMethod(enmDefinitionMethod method);
    void OnTypeChanged();
    void RunTypeSteps(std::span<const EnablingTable::TypeStep> steps, bool typedArea);
    void KeepOneType(int bit);
    void OnCheckCatch();
    void OnCheckHouse();
    void OnCheckIndustrial();
    SectionPtr CurrentSection() const;

    // Coefficients
    void OnCoeffSourceChanged();
    void OnTerrainChanged();
    double ComputeAtvCoefficient();
    void AddTerrainTypes(CZEMTerrainTypeCatalog &catalog);
    void SelectFirstTerrain();

    // Manual definition
    void OnBtnPickPoint();
    void OnBtnPickEntity();
    void OnBtnDrawArea();
    /// Both are false when the new boundary's centre is a known one, which the user was told.
    bool DefineAroundPoint(const AcGePoint3d &point);
    bool DefineByEntity(const ads_name picked);
    /// Square drawing units of the polyline; -1e6 when they can't be had.
    double DefineByPolyline(AcDbObjectId polyline);
    /// What stood defined and was not saved goes.
    void ForgetDefinition();
    /// One row for the boundary and one for each island, in the order of areas (square drawing units), which begins
    /// with the boundary's; then the first row is chosen.
    void AddDefinitionRows(AcDbObjectId boundary, const AcDbObjectIdArray &islands, const std::vector<double> &areas);

    // Boundaries of the definition and their preview
    /// A row's notice: the bits of its state before and after.
    struct CListNotification {
        int m_nRow = 0;
        unsigned m_nOldState = 0;
        unsigned m_nNewState = 0;
        bool m_bMoreFollow = false; ///< of the same choice, so what this one draws would not be seen
    };
    std::vector<CCatchItemData *> SelectedRows() const;
    /// Takes a change of the chosen rows apart into a notice for each row.
    void OnSelectionChanged(const QItemSelection &selected, const QItemSelection &deselected);
    std::intptr_t OnListChanged(const CListNotification &notification);
    static void ClearMarkedText(AMSEdit::CAMSNumericEdit *edit);
    void CreatePreviewHatch(AcDbObjectId &outId, AcDbObjectId boundaryId, const AcDbObjectIdArray &islandIds,
                            int colour, double angleDegrees);
    bool IsDuplicateCentre(AcDbObjectId boundaryId, bool showAlert) const;
    void DeleteRows();
    void AddTempBoundary(AcDbObjectId boundary);
    void EraseTempBoundaries();
    void EraseTempHatches();
    void EraseEntities(AcDbObjectIdArray &ids);
    void EraseEntity(AcDbObjectId id);

    // Automatic definition
    struct AutoSearch; ///< what one search found
    void OnBtnAuto();
    /// Both answer false when the person stopped them.
    bool SearchBoundaries(AutoSearch &search);
    void SearchWithIslands(const AcGePoint3d &point, AutoSearch &search);
    void SearchWithoutIslands(const AcGePoint3d &point, AutoSearch &search);
    bool WriteFoundBoundaries(const AutoSearch &search, int &count);
    static void SectionMiddle(AcGePoint3d &outPoint, const SectionPtr &section, double angle, double distance);
    bool WriteAutoSliv(AcDbObjectId boundaryId, const AcDbObjectIdArray &islandIds, const CStringArray &sectionHandles);

    // Saving
    void OnBtnSaveMain();
    void SaveSelectedRows();
    void SaveMainRow(const CCatchItemData &item);
    void SaveIslandRow(const CCatchItemData &item);
    bool SaveWithoutPolygon(int mask);
    AreaPtr WriteSlivData(AcDbObjectId boundaryId, const AcDbObjectIdArray *islandIds, int isIsland,
                          const CStringArray *sectionHandles);
    static void TieIslandToMainArea(AcDbObjectId boundaryId, const std::wstring &guid, ZEMGis::Data::CProperties &bag);
    static void ListIslandsOnMainArea(const AreaPtr &area, const AcDbObjectIdArray &islandIds);
    void AssignSections(const AreaPtr &area, const CStringArray *sectionHandles);
    std::wstring MakeAreaName(const std::wstring &base) const;
    bool IsNameUsed(const std::wstring &name) const;
    ZEMGis::Data::CCatalogItem *LabelItem() const;
    static void GetBoundaryVertices(AcDbObjectId id, AcGePoint3dArray &points);

    // Small handlers
    void OnBtnLayers();
    void OnBtnTerrain();
    void OnBtnLabelBlock();
    void OnBtnSettings();
    void OnBtnHide();
    void OnBtnInfoSections();
    void OnBtnInfoAreas();

    std::unique_ptr<Ui::DefinitionForm> m_ui;
    std::unique_ptr<CFocusedDefault> m_focusedDefault;

    // Values bound to controls
    int m_bCatchmentType = 1;
    int m_bHouseType = 0;
    int m_bIndustrialType = 0;
    int m_bSearchSubCatchments = 0;
    int m_bWriteLabel = 0;
    int m_bZoom = 0;
    int m_nCoeffSource = kCoeffFromTerrain;
    int m_nRunoffIndex = 0;
    int m_nSlopeClass = 0;

    bool m_bInitializing = false; ///< suppresses ComputeAtvCoefficient
    bool m_bShownBefore = false;
    CZEMTerrainTypeCatalog m_terrainCatalog;
    CATV118FlowTable m_flowTable;
    CMyToolTipCtrl m_toolTip;           ///< tips of the controls
    std::vector<SectionPtr> m_sections; ///< of the last selection
    std::vector<boost::shared_ptr<ZEMGis::Topology::CEntity>> m_selectionExtra;
    int m_nCurrentSection = 0;
    std::set<int> m_selectedRows; ///< as far as the list has told
    AcDbObjectId m_lastBoundary;
    AcDbObjectIdArray m_lastIslands;
    AcDbObjectIdArray m_noIslandHatches;
    AcDbObjectIdArray m_tempHatches; ///< preview hatches to erase
    AcDbObjectIdArray m_erased;      ///< both, once they were
    CEntitySet m_layerSelection;     ///< entities on the boundary layers
    CStringArray m_boundaryLayers;
    std::vector<AreaPtr> m_allAreas;
    std::set<std::wstring> m_usedNames;
    CCentreGrid m_centers; ///< of all areas
    std::set<int> m_usedNumbers;
    std::wstring m_lastMainName;
    CStringArray m_labelAttributes;
    std::wstring m_strBlockPath;
    std::wstring m_strBlockName;
    AcDbObjectId m_labelBlockId;
    bool m_bLabelBlockReady = true;
    double m_hatchScale = 2.0;
    int m_colorDefined = 3;
    int m_colorTemp = 4;
    CAreaNameParts m_nameParts;                               ///< prefix, suffix and counter delimiter of the settings
    std::vector<boost::shared_ptr<CItemData>> m_terrainItems; ///< own the payloads of the terrain combo
    std::vector<boost::shared_ptr<CCatchItemData>> m_listItems;
    ZEMGis::Utility::CDocLock m_docLock;
};
