// The dialog of the command zemsewage_overview: the network branch by branch from the outfalls upstream, with areas and
// sums; what is checked is highlighted in the drawing, what is selected is zoomed to, names are edited in place; and
// what is wrong with shares, sections and the network's shape.
//
// The dialog reads the network when it opens. Only names are changed, each row's edit as one handler. One class, its
// sources by topic: start-up and closing, editing, highlighting, findings.
#pragma once

#include "contracts/HostDialog.h"
#include "overview/OverviewTree.h"
#include "overview/forest/NameRules.h"

#include <memory>
#include <optional>
#include <unordered_set>
#include <vector>

class QTreeWidgetItem;
namespace Ui {
class OverviewForm;
}

class CNetworkOverviewDlg : public CAdUiBaseDialog, private CTreeListOwner {
    Q_OBJECT
public:
    /// Numbers of its controls.
    enum EControl : int {
        kTreeNetwork = 101,
        kTreeFindings = 102,
        kTextShares = 103,
        kTextDrains = 104,
        kTextMessage = 105,
        kBtnExpand = 110,
        kBtnCollapse = 111,
        kBtnCheckAll = 112,
        kBtnCheckNone = 113,
        kBtnCheckRow = 114,
        kCheckZoom = 115,
        kBtnHide = 3,
        kBtnClose = kCancel,
    };

    explicit CNetworkOverviewDlg(QWidget *parent = nullptr);
    ~CNetworkOverviewDlg() override;

protected:
    bool OnInitDialog() override;
    void OnCancel() override;
    void OnHandlerFailed() override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using CGuids = std::unordered_set<std::wstring>;

    // Start-up and closing: NetworkOverviewDlg.cpp
    void ConnectControls();
    void SetTexts();
    /// Reads the network anew; what was open, checked and selected is so again.
    void Reload();
    void FitToScreen();
    void KeepPlace();
    /// Width that no column takes goes to the names, and comes back from them.
    void FillWidth();
    std::int64_t OnTreeListNotify(const TreeListNotice &notice) override;
    void OnBtnHide();
    void ExpandAll(bool expand);

    // Names: NetworkOverviewNames.cpp
    /// What a cell names.
    struct CNamed {
        enum EKind { Area, Section, Node } m_kind;
        int m_nIndex;
    };
    std::optional<CNamed> NamedBy(const CTreeListItem *item, int column) const;
    ZEMGis::Topology::CEntity &EntityOf(const CNamed &named) const;
    CNameList &NamesOf(const CNamed &named);
    void ReadNames();
    /// 0, or -1 with a message that says what is wrong with the typed name.
    int OnColumnChanging(const CTreeListItem *item, int column);
    /// Writes the names of the row; -1 with a message for one that the host refuses.
    int OnRowChanging(CTreeListItem *item);
    struct CRenaming {
        CNamed m_named;
        std::wstring m_strPresent, m_strName;
    };
    /// False when the host refuses it.
    bool Write(const CNamed &named, const std::wstring &name);
    /// Shows the entity's name in all its rows.
    void ShowName(const CNamed &named);
    QString TroubleText(ENameTrouble trouble, const CNamed &named, const std::wstring &name) const;
    /// Shown below the tree until the next one; what is wrong stands out.
    void ShowMessage(const QString &text, bool isTrouble);

    // Highlighting: NetworkOverviewHighlight.cpp
    /// A box is about to change over.
    void OnCheck(const CTreeListItem *item);
    /// Once for each change, when the control has done it.
    void PostChecks();
    void ApplyChecks();
    void ClearHighlight();
    void CheckAll(bool check);
    void SetAllChecks(bool check);
    void OnBtnCheckRow();
    void ZoomToSelected();

    // Findings: NetworkOverviewFindings.cpp
    /// The two lines, with signs as the desktop draws them now.
    void ShowGlance();
    void ShowFindings();
    QTreeWidgetItem *AddGroup(unsigned title, std::size_t count);
    /// What a finding is about, and how its text is made.
    enum EFinding { ShareOfArea, AreaName, SectionName, NodeName, BranchName };
    void AddFinding(QTreeWidgetItem &group, EFinding kind, int index, int row);
    QString FindingText(EFinding kind, int index) const;
    /// Writes the names anew; the list stays as the person has it.
    void ShowFindingNames();
    void OnFinding(const QTreeWidgetItem *finding);
    void LeadTo(int row);

    std::unique_ptr<Ui::OverviewForm> m_ui;
    std::unique_ptr<COverviewTree> m_tree;
    CNameList m_areaNames, m_sectionNames, m_nodeNames;
    CGuids m_markedAreas;                     ///< that are marked in the drawing
    std::vector<int> m_drawnSections;         ///< that are drawn over the drawing, by number
    const CTreeListItem *m_pZoomed = nullptr; ///< only compared
    bool m_bFilling = false;                  ///< notices of the control mean nothing
    bool m_bChecksPosted = false;
    bool m_bHighlighting = false; ///< ApplyChecks works, or failed
    bool m_bShownBefore = false;
    int m_nSpare = 0;            ///< what the names have beyond their own width
    int m_nFilledWidth = -1;     ///< of the names, as FillWidth left it
    bool m_bNamesByHand = false; ///< a person chose the width of the names
    int m_nFillings = 0;         ///< of the tree so far
    bool m_bEnded = false;
    bool m_bTrouble = false; ///< the message says what is wrong
    ZEMGis::Utility::CDocLock m_docLock;
};
