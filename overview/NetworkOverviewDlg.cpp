// Start-up and closing of the overview, and where its control's notices go.
#include "overview/NetworkOverviewDlg.h"

#include "contracts/EditorAids.h"
#include "overview/OverviewTexts.h"
#include "ui_overview.h"

#include <QEvent>
#include <QScreen>
#include <QShortcut>

#include <array>

using namespace OverviewMessage;
using ZEMGis::Notification::CNotificationFramework;
using ZEMGis::Notification::SetActiveCommand;

namespace {

constexpr std::uint32_t kTreeStyle = StyleTree | StyleTreeLines | StyleTreeRootLines | StyleTreeButtons | StyleCheck |
                                     StyleImage | StyleHeader | StyleHorzGrid | StyleVertGrid | StyleFullRowSelect |
                                     StyleShowSelectionAlways | StyleSelectColumn | StyleHeaderDrag | StyleHeaderDrop;

/// Where a person left the dialog, for as long as the module is loaded.
struct CLeftPlace {
    QPoint m_corner;
    QSize m_size;
    QList<int> m_panes;
    std::vector<int> m_widths, m_order; ///< of the columns
    QString m_strLook;                  ///< letters and language that these are for; empty: it was not shown yet
    bool m_bZoom = true;
};
CLeftPlace &LeftPlace()
{
    static CLeftPlace place;
    return place;
}

/// Differs where the same widths would not do.
QString LookOf(const QWidget &dialog)
{
    return dialog.font().toString() + Msg(kColumnType) + Msg(kTypeCatchment);
}

/// least also where there is no room.
int Within(int value, int least, int greatest)
{
    return std::max(least, std::min(value, greatest));
}

} // namespace

CNetworkOverviewDlg::CNetworkOverviewDlg(QWidget *parent)
    : CAdUiBaseDialog(parent), m_ui(std::make_unique<Ui::OverviewForm>())
{
    m_ui->setupUi(this);
    m_ui->treeNetwork->Create(kTreeStyle, QRect(), m_ui->splitter, kTreeNetwork);
    m_tree = std::make_unique<COverviewTree>(*m_ui->treeNetwork);
    m_ui->treeNetwork->SetOwner(this);
    m_ui->treeNetwork->viewport()->installEventFilter(this);
    ConnectControls();
}

CNetworkOverviewDlg::~CNetworkOverviewDlg()
{
    m_ui->treeNetwork->SetOwner(nullptr);
    // Left by an exception: the drawing is given back as it was.
    acedAtEnd(windowTitle().toStdWString().c_str(), [this] {
        if (!m_bEnded)
            ClearHighlight();
    });
}

void CNetworkOverviewDlg::ConnectControls()
{
    const auto handle = [this](QAbstractButton *button, auto handler) {
        connect(button, &QAbstractButton::clicked, this, [this, handler] { RunHandler(handler); });
    };
    handle(m_ui->btnExpand, [this] { ExpandAll(true); });
    handle(m_ui->btnCollapse, [this] { ExpandAll(false); });
    handle(m_ui->btnCheckAll, [this] { CheckAll(true); });
    handle(m_ui->btnCheckNone, [this] { CheckAll(false); });
    handle(m_ui->btnCheckRow, [this] { OnBtnCheckRow(); });
    handle(m_ui->checkZoom, [this] {
        m_pZoomed = nullptr;
        ZoomToSelected();
    });
    handle(m_ui->btnHide, [this] { OnBtnHide(); });
    const auto lead = [this](const QTreeWidgetItem *item) { RunHandler([this, item] { OnFinding(item); }); };
    connect(m_ui->treeFindings, &QTreeWidget::itemClicked, this, lead);
    connect(m_ui->treeFindings, &QTreeWidget::itemActivated, this, lead);
    auto *key = new QShortcut(QKeySequence(Qt::Key_Insert), this);
    connect(key, &QShortcut::activated, m_ui->btnCheckRow, &QAbstractButton::click);
}

void CNetworkOverviewDlg::SetTexts()
{
    setWindowTitle(Msg(kTitle));
    m_ui->treeNetwork->setAccessibleName(Msg(kNetworkName));
    m_ui->treeFindings->setAccessibleName(Msg(kFindingsName));
    struct CCaption {
        QAbstractButton *m_pButton;
        unsigned m_nText, m_nTip;
    };
    const auto captions = std::to_array<CCaption>({
        {m_ui->btnExpand, kExpandAll, kExpandTip},
        {m_ui->btnCollapse, kCollapseAll, kCollapseTip},
        {m_ui->btnCheckAll, kCheckAll, kCheckAllTip},
        {m_ui->btnCheckNone, kCheckNone, kCheckNoneTip},
        {m_ui->btnCheckRow, kCheckRow, kCheckRowTip},
        {m_ui->checkZoom, kZoom, kZoomTip},
        {m_ui->btnHide, kHide, 0},
        {m_ui->btnClose, kCloseText, 0},
    });
    for (const auto &[button, text, tip] : captions) {
        button->setText(Msg(text));
        if (tip)
            button->setToolTip(Msg(tip));
    }
}

bool CNetworkOverviewDlg::OnInitDialog()
{
    CAdUiBaseDialog::OnInitDialog();
    SetTexts();
    m_ui->checkZoom->setChecked(LeftPlace().m_bZoom);
    m_tree->InsertColumns();
    Reload();
    const CLeftPlace &left = LeftPlace();
    if (left.m_strLook == LookOf(*this)) {
        for (int column = 0; column < kOverviewColumns; ++column)
            m_ui->treeNetwork->SetColumnWidth(column, left.m_widths[static_cast<std::size_t>(column)]);
        m_ui->treeNetwork->SetColumnOrderArray(left.m_order);
    } else {
        m_tree->FitColumns();
    }
    ShowMessage(Msg(m_tree->Network().m_sections.empty() ? kNoNetwork : kHint), false);
    m_ui->treeNetwork->setFocus();
    return true;
}

void CNetworkOverviewDlg::Reload()
{
    const COverviewTree::CView view = m_tree->View();
    m_bFilling = true;
    ++m_nFillings;
    m_ui->treeNetwork->setUpdatesEnabled(false);
    m_pZoomed = nullptr;
    m_tree->Fill(ReadNetwork());
    m_tree->Restore(view);
    m_ui->treeNetwork->setUpdatesEnabled(true);
    m_bFilling = false;
    ReadNames();
    ShowFindings();
}

std::int64_t CNetworkOverviewDlg::OnTreeListNotify(const TreeListNotice &notice)
{
    if (m_bFilling || m_bEnded)
        return 0;
    switch (notice.code) {
    case NotifyColumnChanging:
        return OnColumnChanging(notice.item, notice.column);
    case NotifyRowChanging:
        return OnRowChanging(notice.item);
    case NotifyCheck:
        OnCheck(notice.item);
        PostChecks();
        return 0;
    case NotifySelChanged:
        ZoomToSelected();
        return 0;
    default:
        return 0;
    }
}

void CNetworkOverviewDlg::ExpandAll(bool expand)
{
    CTreeListCtrl &tree = *m_ui->treeNetwork;
    if (tree.FinishModify() == 0 && tree.GetState(kControlEditing) != 0)
        return;
    m_bFilling = true;
    tree.setUpdatesEnabled(false);
    for (const COverviewRow &row : m_tree->Rows()) {
        if (row.m_kind != EOverviewRow::Area)
            tree.Expand(row.m_pItem, expand ? kExpand : kCollapse);
    }
    // A selected row that a collapsed one hides would be nowhere: the one that hides it takes its place.
    CTreeListItem *selected = tree.GetSelectedItem();
    while (selected && tree.GetParentItem(selected) && tree.GetShowIndex(selected) < 0)
        selected = tree.GetParentItem(selected);
    if (selected && selected != tree.GetSelectedItem())
        tree.SelectItem(selected, kNameColumn, true);
    tree.setUpdatesEnabled(true);
    m_bFilling = false;
    if (selected)
        tree.EnsureVisible(selected, kNameColumn);
}

void CNetworkOverviewDlg::OnBtnHide()
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_HIDE");
    BeginEditorCommand();
    std::wstring answer;
    acedGetString(0, Msg(kWaitForKey).toStdWString().c_str(), answer);
    CompleteEditorCommand(1);
    m_pZoomed = nullptr; // the person may have moved the drawing
}

void CNetworkOverviewDlg::OnCancel()
{
    CTreeListCtrl &tree = *m_ui->treeNetwork;
    if (tree.GetState(kControlEditing) != 0 && tree.FinishModify() == 0)
        return;      // refused; the message says why
    m_bEnded = true; // whatever comes of the rest
    KeepPlace();
    ClearHighlight();
    EndDialog(kCancel);
}

void CNetworkOverviewDlg::OnHandlerFailed()
{
    Reload();
    if (std::exchange(m_bHighlighting, false))
        SetAllChecks(false); // it would fail again
    else
        PostChecks();
    ClearHighlight();
}

void CNetworkOverviewDlg::showEvent(QShowEvent *event)
{
    if (!m_bShownBefore) {
        m_bShownBefore = true;
        FitToScreen();
    }
    CAdUiBaseDialog::showEvent(event);
}

void CNetworkOverviewDlg::changeEvent(QEvent *event)
{
    CAdUiBaseDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_tree && m_bTrouble)
        ShowMessage(m_ui->textMessage->text(), true);
}

bool CNetworkOverviewDlg::event(QEvent *event)
{
    const bool isDone = CAdUiBaseDialog::event(event);
    switch (event->type()) {
    case QEvent::StyleChange:
    case QEvent::PaletteChange:
    case QEvent::FontChange:
    case QEvent::ThemeChange:
    case QEvent::ScreenChangeInternal: // the only word of another scale
        if (m_bShownBefore)
            ShowGlance();
        break;
    default:
        break;
    }
    return isDone;
}

void CNetworkOverviewDlg::FitToScreen()
{
    constexpr int kWidthInLetters = 150, kHeightInLines = 40, kLeastInView = 80;
    constexpr double kOfScreen = 0.95;
    const CLeftPlace &left = LeftPlace();
    const QWidget *window = QApplication::activeWindow();
    const QRect room = (window ? window : this)->screen()->availableGeometry();
    const int letter = fontMetrics().averageCharWidth();
    const bool known = left.m_strLook == LookOf(*this);
    QSize size(kWidthInLetters * letter, kHeightInLines * fontMetrics().lineSpacing());
    if (known)
        size = left.m_size;
    resize(size.expandedTo(minimumSizeHint()).boundedTo(room.size() * kOfScreen));
    m_ui->splitter->setStretchFactor(0, 1);
    m_ui->splitter->setStretchFactor(1, 0);
    if (known)
        m_ui->splitter->setSizes(left.m_panes);
    else
        m_ui->splitter->setSizes({3 * height() / 4, height() / 4});
    // At the right of the window at first, since a click shows its row in the drawing beside it; then where it was.
    if (known && room.adjusted(0, 0, -kLeastInView, -kLeastInView).contains(left.m_corner))
        move(left.m_corner);
    else if (window && window != this)
        move(Within(window->frameGeometry().right() - width(), room.left(), room.right() - width()),
             Within(window->geometry().center().y() - height() / 2, room.top(), room.bottom() - height()));
}

bool CNetworkOverviewDlg::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize && watched == m_ui->treeNetwork->viewport())
        FillWidth();
    return CAdUiBaseDialog::eventFilter(watched, event);
}

void CNetworkOverviewDlg::FillWidth()
{
    CTreeListCtrl &tree = *m_ui->treeNetwork;
    if (tree.GetColumnCount() < kOverviewColumns)
        return;
    const int width = tree.GetColumnWidth(kNameColumn);
    if (m_nSpare > 0 && width != m_nFilledWidth) {
        m_bNamesByHand = true; // and stays so
        m_nSpare = 0;
    }
    if (m_bNamesByHand)
        return;
    const int spare = tree.viewport()->width() - (tree.GetTotalWidth() - m_nSpare);
    const int given = std::exchange(m_nSpare, std::max(spare, 0));
    if (given != m_nSpare)
        tree.SetColumnWidth(kNameColumn, width + m_nSpare - given);
    m_nFilledWidth = tree.GetColumnWidth(kNameColumn);
}

void CNetworkOverviewDlg::KeepPlace()
{
    CLeftPlace &left = LeftPlace();
    const CTreeListCtrl &tree = *m_ui->treeNetwork;
    left.m_corner = frameGeometry().topLeft();
    left.m_size = size();
    left.m_panes = m_ui->splitter->sizes();
    left.m_widths.clear();
    for (int column = 0; column < kOverviewColumns; ++column)
        left.m_widths.push_back(tree.GetColumnWidth(column));
    if (tree.GetColumnWidth(kNameColumn) == m_nFilledWidth)
        left.m_widths[kNameColumn] -= m_nSpare;
    left.m_order = tree.GetColumnOrderArray();
    left.m_strLook = LookOf(*this);
    left.m_bZoom = m_ui->checkZoom->isChecked();
}
