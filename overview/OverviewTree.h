// The rows of the overview: branches with their sections, areas beneath the sections, and what each row stands for.
#pragma once

#include "controls/treelist/TreeListCtrl.h"
#include "overview/OverviewNetwork.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

enum EOverviewColumn : int {
    kNameColumn,
    kLengthColumn,
    kFromColumn,
    kToColumn,
    kTypeColumn,
    kHectaresColumn, ///< net, of an area by itself
    kShareColumn,
    kDrainsColumn, ///< what drains to the row's section or branch
    kCoefficientColumn,
    kNoteColumn,
    kOverviewColumns,
};

enum class EOverviewRow {
    Branch,  ///< index of the forest's branch
    Section, ///< index of the section
    Area,    ///< index of the area
    Group,   ///< over areas without a section
};

struct COverviewRow {
    EOverviewRow m_kind = EOverviewRow::Group;
    int m_nIndex = -1;
    CTreeListItem *m_pItem = nullptr;
};

/// Fills a control that it is given and knows its rows from then on. An item's data is the number of its row.
class COverviewTree {
public:
    using RowAndColumn = std::pair<int, int>;

    explicit COverviewTree(CTreeListCtrl &control) : m_control(control) {}

    void InsertColumns();
    /// Columns as wide as their headers and the rows that are shown.
    void FitColumns();
    /// In place of all rows.
    void Fill(COverviewNetwork network);

    const COverviewNetwork &Network() const { return m_network; }
    const CNetworkForest &Forest() const { return m_forest; }
    const std::vector<COverviewRow> &Rows() const { return m_rows; }
    /// Which rows are open, checked and selected, by what they stand for: outlives a filling.
    struct CView {
        struct CState {
            bool m_bOpen = false, m_bChosen = false;
            int m_nCheck = kCheckOff;
        };
        std::unordered_map<std::wstring, CState> m_states;
        std::wstring m_strSelected;
    };
    CView View() const;
    void Restore(const CView &view);
    /// A section is chosen by its own box, or by the one of a branch above it; the boxes of its areas don't touch that.
    void Choose(const COverviewRow &row, bool choose);
    void ChooseAll(bool choose) { m_chosen.assign(m_chosen.size(), choose); }
    bool IsChosen(int section) const { return m_chosen[static_cast<std::size_t>(section)]; }
    /// The boxes of sections tell of themselves and of their areas, those above them of all that stands beneath: on for
    /// all of it, mixed for some. The boxes of areas are as they are.
    void ShowBoxes();
    /// Null for no item, and for one that is not of the last filling.
    const COverviewRow *RowOf(const CTreeListItem *item) const;
    /// Of a section.
    int RowOfSection(int section) const { return m_sectionRows[static_cast<std::size_t>(section)]; }
    int RowOfBranch(int branch) const { return m_branchRows[static_cast<std::size_t>(branch)]; }
    /// The first one of an area, which has one for each of its sections.
    int RowOfArea(int area) const;
    /// The node that a cell names; -1 for any other cell.
    int NodeOf(const COverviewRow &row, int column) const;
    /// Sections and areas of a row with all that stands beneath it; areas come as often as they have rows.
    void Collect(const COverviewRow &row, std::vector<int> &sections, std::vector<int> &areas) const;

    /// Writes the present names of an entity into all its rows.
    void ShowSectionName(int section);
    void ShowAreaName(int area);
    void ShowNodeName(int node);

private:
    CTreeListItem *Insert(EOverviewRow kind, int index, const std::wstring &text, CTreeListItem *parent, int image);
    void SetText(CTreeListItem *item, int column, const QString &text);
    void InsertBranch(int branch);
    void InsertSection(int section, CTreeListItem *parent);
    void InsertArea(int area, double share, CTreeListItem *parent);
    void InsertAreasWithoutSection();
    QString BranchTitle(int branch) const;
    QString SectionNote(int section) const;
    std::wstring KeyOf(const COverviewRow &row) const;

    CTreeListCtrl &m_control;
    COverviewNetwork m_network;
    CNetworkForest m_forest;
    std::vector<CNetworkSums> m_sectionSums, m_branchSums;
    std::vector<double> m_net;  ///< hectares of each area; below 0: not known
    std::vector<bool> m_idle;   ///< of each section: it drains nothing
    std::vector<bool> m_chosen; ///< of each section
    std::vector<COverviewRow> m_rows;
    std::vector<int> m_branchRows, m_sectionRows;
    /// Areas of each section with their shares.
    std::vector<std::vector<std::pair<int, double>>> m_areasOf;
    std::vector<std::vector<int>> m_areaRows;
    std::vector<std::vector<RowAndColumn>> m_nodeCells; ///< of each node: where its name stands
};
