// Start-up and closing of the review dialog.
#include "review/DlgEditCatchmentArea.h"

#include "controls/WideText.h"
#include "controls/XListCtrl.h"
#include "dialogs/DialogControls.h"
#include "dialogs/FileTitle.h"
#include "review/ReviewColours.h"
#include "review/ReviewControls.h"
#include "review/ReviewMessages.h"
#include "ui_review.h"

#include <QHeaderView>
#include <QScreen>
#include <QScrollBar>

using namespace ReviewControl;
using ZEMGis::CModuleConfiguration;
using ZEMGis::Sewage::CCatchmentAreaManager;
using ZEMGis::Utility::CUtility;
using ZEMGis::Utility::CZEMBitmapButton;

namespace {

constexpr const wchar_t *kFirstPattern = L"ANSI31";

constexpr auto kTexts = std::to_array<CMessageRow>({
    {kGroupAreas, ReviewMessage::kGroupAreas},
    {kRadioCatchment, ReviewMessage::kTypeCatchment},
    {kRadioHouse, ReviewMessage::kTypeHouse},
    {kRadioIndustry, ReviewMessage::kTypeIndustry},
    {kRadioAll, ReviewMessage::kTypeAll},
    {kGroupType, ReviewMessage::kGroupType},
    {kCheckCatchment, ReviewMessage::kTypeCatchment},
    {kCheckHouse, ReviewMessage::kTypeHouse},
    {kCheckIndustry, ReviewMessage::kTypeIndustry},
    {kLabelArea, ReviewMessage::kAreaWord},
    {kLabelCoefficient, ReviewMessage::kCoefficientWord},
    {kLabelDensity, ReviewMessage::kDensityWord},
    {kBtnWriteData, ReviewMessage::kSaveData},
    {kGroupEdit, ReviewMessage::kGroupEdit},
    {kBtnErase, ReviewMessage::kErase},
    {kBtnRename, ReviewMessage::kRename},
    {kGroupLabels, ReviewMessage::kGroupLabels},
    {kBtnLabel, ReviewMessage::kLabel},
    {kBtnEraseLabels, ReviewMessage::kEraseLabels},
    {kBtnDefineLabel, ReviewMessage::kDefineLabel},
    {kGroupHatch, ReviewMessage::kGroupHatch},
    {kLabelPattern, ReviewMessage::kPattern},
    {kLabelScale, ReviewMessage::kScale},
    {kBtnHatch, ReviewMessage::kHatch},
    {kBtnClearHatch, ReviewMessage::kClearHatch},
    {kBtnInfo, ReviewMessage::kInfoWord},
    {kBtnSettings, ReviewMessage::kSettings},
    {kBtnHelp, ReviewMessage::kHelp},
    {kBtnHide, ReviewMessage::kHide},
    {kBtnOk, ReviewMessage::kOkText},
});

constexpr auto kTips = std::to_array<CMessageRow>({
    {kBtnExpand, ReviewMessage::kExpand},
    {kBtnCollapse, ReviewMessage::kCollapse},
    {kBtnCheckAll, ReviewMessage::kCheckAll},
    {kBtnUncheckAll, ReviewMessage::kUncheckAll},
    {kBtnRename, ReviewMessage::kRenameTip},
    {kBtnPick, ReviewMessage::kPick},
    {kCheckZoom, ReviewMessage::kZoomTip},
    {kEditZoom, ReviewMessage::kZoomFactorTip},
    {kBtnWriteData, ReviewMessage::kWriteTip},
    {kCheckCatchment, ReviewMessage::kTypeTip},
    {kCheckHouse, ReviewMessage::kTypeTip},
    {kCheckIndustry, ReviewMessage::kTypeTip},
    {kBtnErase, ReviewMessage::kEraseTip},
    {kBtnLabel, ReviewMessage::kLabelTip},
    {kBtnEraseLabels, ReviewMessage::kEraseLabelsTip},
    {kBtnPattern, ReviewMessage::kPatternTip},
    {kEditScale, ReviewMessage::kScaleTip},
    {kBtnInfo, ReviewMessage::kInfoTip},
    {kBtnHide, ReviewMessage::kHideTip},
});

/// Names for those who hear the dialog.
constexpr auto kAccessibleNames = std::to_array<CMessageRow>({
    {kEditCountCatchment, ReviewMessage::kCountCatchment},
    {kEditCountHouse, ReviewMessage::kCountHouse},
    {kEditCountIndustry, ReviewMessage::kCountIndustry},
    {kEditCountAll, ReviewMessage::kCountAll},
    {kBtnExpand, ReviewMessage::kExpand},
    {kBtnCollapse, ReviewMessage::kCollapse},
    {kBtnCheckAll, ReviewMessage::kCheckAll},
    {kBtnUncheckAll, ReviewMessage::kUncheckAll},
    {kBtnPick, ReviewMessage::kPick},
    {kTreeAreas, ReviewMessage::kTreeName},
    {kEditZoom, ReviewMessage::kZoomFactor},
    {kEditArea, ReviewMessage::kAreaWord},
    {kEditCoefficient, ReviewMessage::kCoefficientWord},
    {kEditDensity, ReviewMessage::kDensityWord},
    {kListSections, ReviewMessage::kListName},
    {kComboLabel, ReviewMessage::kLabelType},
    {kEditPattern, ReviewMessage::kPattern},
    {kBtnPattern, ReviewMessage::kPatternTip},
    {kEditScale, ReviewMessage::kScale},
});

/// Who gets a keyboard letter, in the order in which they choose: what is used most comes first.
constexpr auto kMnemonicOrder = std::to_array<int>({
    kBtnWriteData, kBtnErase,         kBtnRename,    kBtnLabel,       kRadioCatchment, kRadioHouse,    kRadioIndustry,
    kRadioAll,     kLabelCoefficient, kLabelDensity, kCheckCatchment, kCheckHouse,     kCheckIndustry, kBtnEraseLabels,
    kLabelPattern, kLabelScale,       kBtnHide,      kBtnInfo,        kCheckZoom,      kGroupAreas,    kGroupLabels,
});

constexpr int kTreeImage = 24, kCheckImage = 16, kButtonImage = 18, kInfoImage = 16;

constexpr auto kTreeImages = std::to_array<CImageRow>({
    {kBtnExpand, L"IDI_EXPAND", kTreeImage},
    {kBtnCollapse, L"IDI_COLLAPSE", kTreeImage},
    {kBtnCheckAll, L"IDI_SELALL", kCheckImage},
    {kBtnUncheckAll, L"IDI_UNSELALL", kCheckImage},
});
constexpr auto kImages = std::to_array<CImageRow>({
    {kBtnPick, L"PICK_AREAS", kButtonImage},
    {kBtnWriteData, L"SAVE", kButtonImage},
    {kBtnInfo, L"INFO_SECTIONS", kInfoImage},
});

constexpr auto kNumericFields = std::to_array<CNumericField>({
    {kEditCoefficient, 4, 4, false},
    {kEditDensity, 8, 4, false},
    {kEditZoom, 4, 4, false},
    {kEditScale, 4, 4, false},
});
/// They only show.
constexpr auto kCountFields = std::to_array<CNumericField>({
    {kEditCountCatchment, 9, 4, false},
    {kEditCountHouse, 9, 4, false},
    {kEditCountIndustry, 9, 4, false},
    {kEditCountAll, 9, 4, false},
});

/// Where a person left the dialog, for as long as the program runs.
struct CLeftPlace {
    QPoint m_corner;
    QSize m_size;
    int m_nTree = 0;
    QSize m_wanted; ///< the size that its letters and texts asked for; empty: it was not shown yet
};
CLeftPlace &LeftPlace()
{
    static CLeftPlace place;
    return place;
}
/// Pixels of the dialog that stay within reach.
constexpr int kLeastInView = 80;

/// least also where there is no room.
int Within(int value, int least, int greatest)
{
    return std::max(least, std::min(value, greatest));
}

} // namespace

CDlgEditCatchmentArea::CDlgEditCatchmentArea(QWidget *parent)
    : CAdUiBaseDialog(parent), m_ui(std::make_unique<Ui::ReviewForm>()),
      m_selectionButton(std::make_unique<ZEMGis::Selection::CSelectionButton>())
{
    m_ui->setupUi(this);
    m_focusedDefault = std::make_unique<CFocusedDefault>(*this);
    ConnectControls();
    ConnectEditing();
}

CDlgEditCatchmentArea::~CDlgEditCatchmentArea() = default;

void CDlgEditCatchmentArea::ConnectControls()
{
    using Dialog = CDlgEditCatchmentArea;
    const auto click = [this](QAbstractButton *button, auto handler) {
        Handle(button, &QAbstractButton::clicked, handler);
    };
    for (QAbstractButton *radio : {m_ui->radioCatchment, m_ui->radioHouse, m_ui->radioIndustry, m_ui->radioAll})
        click(radio, &Dialog::OnFilter);
    click(m_ui->btnExpand, &Dialog::OnBtnExpand);
    click(m_ui->btnCollapse, &Dialog::OnBtnCollapse);
    click(m_ui->btnCheckAll, &Dialog::OnBtnCheckAll);
    click(m_ui->btnUncheckAll, &Dialog::OnBtnUncheckAll);
    click(m_ui->btnPick, &Dialog::OnBtnPick);
    click(m_ui->btnPattern, &Dialog::OnBtnPattern);
    click(m_ui->btnLabel, &Dialog::OnBtnLabel);
    click(m_ui->btnDefineLabel, &Dialog::OnBtnDefineLabel);
    click(m_ui->btnEraseLabels, &Dialog::OnBtnEraseLabels);
    CCatchmentTree *tree = m_ui->treeAreas;
    Handle(tree, &QTreeWidget::itemSelectionChanged, &Dialog::OnTreeSelectionChanged);
    Handle(tree, &CCatchmentTree::SpacePressed, &Dialog::OnTreeSpace);
    connect(tree, &CCatchmentTree::Clicked, this, [this](CCatchmentTreeItem *item, bool onCheckBox) {
        RunHandler([=, this] { OnTreeClick(item, onCheckBox); });
    });
    connect(tree, &CCatchmentTree::Ticked, this, [this](CCatchmentTreeItem *item) { PostTreeCheck(item); });
}

bool CDlgEditCatchmentArea::OnInitDialog()
{
    CAdUiBaseDialog::OnInitDialog();
    ShowMembers(); // the start values, which the next handler would read back otherwise
    SetTexts();
    SetUpSectionList();
    SetUpNumericEdits();
    LoadButtonImages(*this, kTreeImages);
    ReadDecimalPlaces();
    ReadConfiguration();
    LoadImages();
    SetToolTips();
    CCatchmentAreaManager::Instance()->RefreshExistingCatchments();
    FillLabelCatalog(*m_ui->comboLabel);
    LoadLabelBlock();
    RestoreSettings();
    LoadAreas();
    FillTree();
    m_treeRefilling = 0;
    m_ui->treeAreas->setFocus();
    return true;
}

void CDlgEditCatchmentArea::SetTexts()
{
    setWindowTitle(ToQString(Msg(ReviewMessage::kDialogTitle)));
    SetCaptions(*this, kTexts, kMnemonicOrder);
    SetAccessibleNames(*this, kAccessibleNames);
    SetColouredText(m_ui->textParameters, Msg(ReviewMessage::kParametersOfOne), kColourOfOne);
}

void CDlgEditCatchmentArea::SetToolTips()
{
    AddToolTips(m_toolTip, *this, kTips);
}

void CDlgEditCatchmentArea::SetUpSectionList()
{
    constexpr unsigned kGridLinesAndFullRows = 33;
    constexpr int kSectionWidth = 100;
    CXListCtrl &list = *m_ui->listSections;
    list.SetExtendedStyle(kGridLinesAndFullRows);
    list.InsertColumn(0, Msg(ReviewMessage::kSectionWord), kSectionWidth);
    list.InsertColumn(1, Msg(ReviewMessage::kShareWord) + L" [%]", CXListCtrl::kSizedToHeader, kFormatRight);
    list.AddEditColumn(1);
    // These widths, or more where there is room for it and where a share needs it.
    constexpr int kCellMargins = 20;
    const int share = list.fontMetrics().horizontalAdvance(QStringLiteral("100.0000")) + kCellMargins;
    if (list.GetColumnWidth(1) < share)
        list.SetColumnWidth(1, share);
    list.horizontalHeader()->setMinimumSectionSize(std::min(kSectionWidth, share));
    list.horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
}

void CDlgEditCatchmentArea::SetUpNumericEdits()
{
    constexpr double kLeastCoefficient = 0.0, kGreatestCoefficient = 1.0;
    SetUpNumericFields(*this, kNumericFields);
    SetUpNumericFields(*this, kCountFields);
    m_ui->editCoefficient->SetRange(kLeastCoefficient, kGreatestCoefficient); // told, and not enforced
}

void CDlgEditCatchmentArea::ReadConfiguration()
{
    constexpr double kFirstScale = 1.0, kFirstZoom = 2.0;
    SetNumber(m_ui->editScale, kFirstScale);
    SetNumber(m_ui->editZoom, kFirstZoom);
    double zoom = 0.0;
    if (CModuleConfiguration::Instance()->GetGSValueDouble(L"DEFAULT_ZOOM", zoom) != 0)
        SetNumber(m_ui->editZoom, zoom);
    m_ui->editPattern->setText(ToQString(kFirstPattern));
}

void CDlgEditCatchmentArea::LoadImages()
{
    constexpr unsigned kIconType = 1, kListFlags = 32;
    constexpr int kListSize = 16;
    LoadButtonImages(*this, kImages);
    for (std::vector<void *> &images : m_imageLists) {
        for (const wchar_t *name : {L"CATCHMENT_RAIN", L"CATCHMENT_HOME", L"CATCHMENT_IND"})
            images.push_back(
                CModuleConfiguration::Instance()->LoadImageW(name, kIconType, kListSize, kListSize, kListFlags));
    }
}

void CDlgEditCatchmentArea::LoadLabelBlock()
{
    std::wstring path;
    CZEMCDictionaryPtr(AcDb::kForRead).dctRead(L"ZEMX_SEWAGE_CATCHMENT", L"LABEL_BLOCK", path, false);
    if (path.empty()) {
        const std::wstring folder = CModuleConfiguration::Instance()->GetPath(L"Symbol");
        if (folder.empty())
            return;
        path = folder + L"CatchLabel.dwg";
    }
    m_labelBlockPath = path;
    m_labelBlockName = FileTitle(path);
    m_labelBlockId = CZEMCDraw::insertBlockDefinition(m_labelBlockName.c_str(), m_labelBlockPath.c_str());
    CUtility::GetAttributesFromBlockDef(m_labelBlockId, m_labelAttributes);
}

void CDlgEditCatchmentArea::OnOK()
{
    SaveSettings();
    SetHighlight(0);
    m_bEnded = true;
    EndDialog(kOk);
}

void CDlgEditCatchmentArea::OnCancel()
{
    m_bEnded = true; // whatever comes of the rest
    SetHighlight(0);
    EndDialog(kCancel);
}

void CDlgEditCatchmentArea::OnHandlerFailed()
{
    // Areas that were erased and came back are other objects than before, so all of them are fetched anew.
    const CGuids checked = m_checkedGuids;
    const std::wstring current = m_currentArea ? m_currentArea->GetGuid() : std::wstring();
    m_currentArea.reset();
    LoadAreas();
    if (!current.empty())
        m_currentArea = CCatchmentAreaManager::Instance()->GetCatchmentAreaByGuid(current);
    RefillTree();
    m_checkedGuids = checked;
    ApplyChecksToTree();
    ApplyTreeSelection();
}

void CDlgEditCatchmentArea::showEvent(QShowEvent *event)
{
    if (!m_bShownBefore) {
        m_bShownBefore = true;
        FitToScreen();
    }
    CAdUiBaseDialog::showEvent(event);
}

void CDlgEditCatchmentArea::hideEvent(QHideEvent *event)
{
    if (m_bEnded)
        LeftPlace() = {frameGeometry().topLeft(), size(), m_ui->splitter->sizes().value(0), m_wantedSize};
    CAdUiBaseDialog::hideEvent(event);
}

void CDlgEditCatchmentArea::FitToScreen()
{
    // The panel scrolls where the screen is too small for it; else it is shown whole. What a person makes wider goes
    // to the tree.
    const CLeftPlace &left = LeftPlace();
    constexpr int kTreeWidthInLetters = 40;
    const QSize panel = m_ui->panel->sizeHint().expandedTo(m_ui->panel->minimumSizeHint());
    int tree = std::max(m_ui->paneAreas->sizeHint().width(), fontMetrics().averageCharWidth() * kTreeWidthInLetters);
    m_ui->scrollPanel->setMinimumWidth(panel.width() + m_ui->scrollPanel->verticalScrollBar()->sizeHint().width());
    m_ui->splitter->setStretchFactor(0, 1);
    m_ui->splitter->setStretchFactor(1, 0);
    const QSize around = sizeHint() - m_ui->splitter->sizeHint();
    const QSize content(tree + m_ui->splitter->handleWidth() + m_ui->scrollPanel->minimumWidth(), panel.height());
    const QRect room = RoomBeside();
    m_wantedSize = (content + around).expandedTo(minimumSizeHint()).boundedTo(room.size() * 0.95);
    QSize shown = m_wantedSize;
    if (left.m_wanted == m_wantedSize) { // letters and language are as they were
        shown = left.m_size.boundedTo(room.size());
        tree = left.m_nTree;
    }
    resize(shown);
    m_ui->splitter->setSizes({tree, shown.width() - around.width() - m_ui->splitter->handleWidth() - tree});
    // At the right of the window at first, where panels stand and not the areas that it is about; then where it was.
    if (!left.m_wanted.isEmpty() && room.adjusted(0, 0, -kLeastInView, -kLeastInView).contains(left.m_corner))
        move(left.m_corner);
    else if (const QWidget *window = QApplication::activeWindow(); window && window != this)
        move(Within(window->frameGeometry().right() - shown.width(), room.left(), room.right() - shown.width()),
             Within(window->geometry().center().y() - shown.height() / 2, room.top(), room.bottom() - shown.height()));
}

QRect CDlgEditCatchmentArea::RoomBeside() const
{
    const QWidget *window = QApplication::activeWindow();
    return (window ? window : this)->screen()->availableGeometry();
}
