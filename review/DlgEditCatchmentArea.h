// The dialog of the command zemsewage_edit: one tree of all catchment areas with their sections, a filter by type, the
// shares of the sections, parameters, and what erases, renames, labels and hatches areas.
//
// The dialog keeps no area of its own: it reads them from the catchment store, holds shared pointers to them, and each
// change goes to the store at once. Commands work on the checked areas when there are any, else on the area in focus.
// One class, its source files by topic: start-up and closing, settings, controls, lists, tree, selection, pick,
// highlight, labels, parameters, shares and types, erasing, naming, small handlers.
#pragma once

#include "contracts/CatchmentArea.h"
#include "contracts/HostDialog.h"
#include "controls/MyToolTipCtrl.h"
#include "dialogs/CatchItemData.h"
#include "dialogs/DefaultButtonDialog.h"
#include "review/CatchmentTree.h"
#include "review/CheckedAreas.h"

#include <array>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace Ui {
class ReviewForm;
}

class CDlgEditCatchmentArea : public CAdUiBaseDialog {
    Q_OBJECT
public:
    /// Posted when a tick of the tree may have changed: wParam the tree's control number, lParam the item's address,
    /// which is only handed on.
    static constexpr unsigned kTreeCheckMessage = 0x478;

    explicit CDlgEditCatchmentArea(QWidget *parent = nullptr);
    ~CDlgEditCatchmentArea() override;

    std::intptr_t OnWindowMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) override;

protected:
    using SectionPtr = boost::shared_ptr<ZEMGis::Topology::CSection>;
    using AreaPtr = boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea>;
    using CatchmentAreas = ZEMGis::Sewage::CatchmentAreas;
    using CGuids = std::unordered_set<std::wstring>;

    bool OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;
    void OnHandlerFailed() override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

    // What tests look at
    const AreaPtr &CurrentArea() const { return m_currentArea; }
    const CCheckedAreas &CheckedAreas() const { return m_checkedAreas; }
    const CGuids &CheckedGuids() const { return m_checkedGuids; }
    const AcDbObjectIdArray &HighlightIds() const { return m_highlightIds; }
    const AcDbObjectId &LabelBlock() const { return m_labelBlockId; }
    const CStringArray &LabelAttributes() const { return m_labelAttributes; }
    const std::wstring &LabelBlockPath() const { return m_labelBlockPath; }
    const std::wstring &LabelBlockName() const { return m_labelBlockName; }
    int DecimalPlaces() const { return m_decimalPlaces; }

private:
    // Start-up and closing
    void ConnectControls();
    /// The handlers that change areas.
    void ConnectEditing();
    /// Connects a control's signal to a handler, which then runs as one.
    template <class Sender, class Signal, class Handler>
    void Handle(Sender *control, Signal signal, Handler handler)
    {
        connect(control, signal, this, [this, handler] { RunHandler([this, handler] { (this->*handler)(); }); });
    }
    void SetTexts();
    void SetToolTips();
    void SetUpSectionList();
    void SetUpNumericEdits();
    void LoadImages();
    void ReadDecimalPlaces();
    void ReadConfiguration();
    void LoadLabelBlock();
    void FitToScreen();
    /// Of the screen on which the program's window stands.
    QRect RoomBeside() const;

    // Settings
    void RestoreSettings();
    void SaveSettings();

    // Members and controls
    void RefreshMembers();
    void ShowMembers();
    ZEMGis::Data::CCatalogItem *SelectedLabelItem() const;
    /// The checked areas if there are any, else the one in focus if there is one; a null area is left in.
    std::vector<AreaPtr> Targets() const;

    // Areas, tree and section list
    void LoadAreas();
    void UpdateCounts();
    /// The bits of the filter.
    int FilterMask() const;
    const CatchmentAreas &FilteredAreas() const;
    void FillTree();
    /// FillTree while the tree's selection is not listened to.
    void RefillTree();
    /// Gives the item its payload and its sections; it may stand in the tree already.
    static void CompleteItem(CCatchmentTreeItem &item, const AreaPtr &area, CCatchItemData &payload);
    void FillSectionList();
    /// The first one whose payload has that GUID; null when there is none.
    CCatchmentTreeItem *FindTreeItem(const std::wstring &guid) const;

    // Selection
    void OnTreeSelectionChanged();
    void OnTreeClick(CCatchmentTreeItem *item, bool onCheckBox);
    void OnTreeSpace();
    /// The message comes once for each change, however many ways told of it.
    void PostTreeCheck(CCatchmentTreeItem *item);
    void ApplyTreeSelection();
    void CollectCheckedAreas();
    void ShowSelection();
    void SetAllChecks(int state);
    void OnBtnCheckAll();
    void OnBtnUncheckAll();
    void OnBtnExpand();
    void OnBtnCollapse();
    void OnFilter();

    // Pick in the drawing
    void OnBtnPick();
    void TogglePicked(const AreaPtr &area, const std::wstring &guid);
    void ApplyChecksToTree();

    // Highlight, pattern, labels
    void SetHighlight(int on);
    /// How areas are marked now.
    struct CMarkLook {
        int m_nColour;
        double m_scale;
        std::wstring m_strPattern;
    };
    CMarkLook MarkLook() const;
    static void MarkArea(const AreaPtr &area, const CMarkLook &look);
    void OnBtnPattern();
    void OnBtnLabel();
    void OnBtnEraseLabels();
    void OnBtnDefineLabel();

    // Parameters
    void ShowParameters();
    void ClearParameters();
    void ShowParametersOfOne();
    void ShowParametersOfMany();
    void EnableParameters(bool coefficient, bool density);
    void OnBtnWriteData();
    void WriteParameters(const AreaPtr &area);
    /// A change of the scale: the preview follows it.
    void OnScaleChanged();

    // Shares and types
    void OnShareChanged(int row);
    void OnCheckCatch();
    void OnCheckHouse();
    void OnCheckIndustry();
    void KeepOneType(int bit);
    void ApplyTypes();
    void UpdateTypeLists(const AreaPtr &area);
    void WriteShare(const std::wstring &sectionGuid, double percent);
    struct CTypeList {
        int m_nBit;
        CatchmentAreas *m_pAreas;
    };
    std::array<CTypeList, 3> TypeLists();

    // Erasing
    void OnBtnErase();
    void OnDeleteKey();
    bool AgreesToErase() const;
    void EraseCheckedAreas();
    void EraseCurrentArea();
    void RefreshAfterErase();
    void RemoveFromLists(const AreaPtr &area);

    // Naming
    void OnBtnRename();
    /// The editor of a name ended with a text; only areas have one.
    void OnTreeNameEdited(CCatchmentTreeItem *item, const QString &text);

    // Small handlers
    void OnBtnSettings();
    void OnBtnHide();
    void OnBtnInfo();

    std::unique_ptr<Ui::ReviewForm> m_ui;

    // Values bound to controls
    int m_comboMode = 3;
    int m_checkZoom = 0;
    int m_typeCatch = 0;
    int m_typeHouse = 0;
    int m_typeIndustry = 0;

    CatchmentAreas m_allAreas;
    CatchmentAreas m_catchAreas;
    CatchmentAreas m_houseAreas;
    CatchmentAreas m_industryAreas;
    std::shared_ptr<CAreaOrder> m_order = std::make_shared<CAreaOrder>(); ///< of m_allAreas as it was loaded
    CCheckedAreas m_checkedAreas{CInAreaOrder{m_order}};
    CGuids m_checkedGuids;
    AreaPtr m_currentArea;
    AcDbObjectIdArray m_highlightIds; ///< entities that are highlighted now
    int m_treeRefilling = 1;          ///< while it is not 0 the tree's selection change is ignored
    int m_decimalPlaces = 4;          ///< stored only
    std::wstring m_labelBlockPath;
    std::wstring m_labelBlockName;
    CStringArray m_labelAttributes;
    AcDbObjectId m_labelBlockId;

    std::vector<boost::shared_ptr<CCatchItemData>> m_itemPayloads; ///< keep those of the tree's items alive
    int m_fillings = 0;                                            ///< of the tree so far
    bool m_bTreeCheckPosted = false;
    bool m_bEnded = false; ///< what is still posted comes too late
    bool m_bShownBefore = false;
    QSize m_wantedSize; ///< what letters and texts ask for
    CMyToolTipCtrl m_toolTip;
    std::unique_ptr<CFocusedDefault> m_focusedDefault;
    /// Built and attached to nothing: the tree has no icons.
    std::array<std::vector<void *>, 2> m_imageLists;
    /// Belongs to the family's dialogs; this one connects it to no control.
    std::unique_ptr<ZEMGis::Selection::CSelectionButton> m_selectionButton;
    ZEMGis::Utility::CDocLock m_docLock;
};
