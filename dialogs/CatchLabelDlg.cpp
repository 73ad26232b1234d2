#include "dialogs/CatchLabelDlg.h"

#include "controls/MyToolTipCtrl.h"
#include "controls/WideText.h"
#include "dialogs/BlockFileTitle.h"
#include "dialogs/DialogTexts.h"
#include "dialogs/ListColumns.h"
#include "ui_catch_label.h"

#include <QPainter>

#include <array>

using ZEMGis::CModuleConfiguration;
using ZEMGis::Utility::CUtility;

namespace {

enum : int {
    kListValues = 210,
    kBtnBrowse = 250,
    kPreview = 287,
    kGroupContents = 338,
    kLabelBlock = 341,
};
enum : unsigned {
    kOkText = 60,
    kCancelText = 67,
    kAttributeWord = 282,
    kValueWord = 464,
    kTitle = 2013,
    kContents = 2016,
    kBlockWord = 2023,
    kBrowseTip = 60060,
    kPreviewName = 60061,
    kNoPicture = 60062,
};

constexpr auto kTexts = std::to_array<CMessageRow>({
    {kGroupContents, kContents},
    {kLabelBlock, kBlockWord},
    {CAdUiBaseDialog::kOk, kOkText},
    {CAdUiBaseDialog::kCancel, kCancelText},
});
constexpr auto kAccessibleNames = std::to_array<CMessageRow>({
    {kListValues, kContents},
    {kBtnBrowse, kBrowseTip},
    {kPreview, kPreviewName},
});
constexpr auto kMarked = std::to_array<int>({kLabelBlock, kGroupContents});

/// The values that a label can carry, a row each.
constexpr auto kRows = std::to_array<unsigned>({4557, 1989, 1991, 3894});
constexpr int kRowCount = static_cast<int>(kRows.size());
constexpr int kValueColumn = 0, kAttributeColumn = 1;

constexpr wchar_t kDictionary[] = L"ZEMX_SEWAGE_CATCHMENT";
constexpr wchar_t kKey[] = L"LABEL_BLOCK";

/// The block that is taken without any other; for a folder with its separator.
std::wstring DefaultBlock(const std::wstring &folder)
{
    return folder + L"CatchLabel.dwg";
}

struct ReleaseChain {
    void operator()(resbuf *chain) const { acutRelRb(chain); }
};

} // namespace

CCatchLabelDlg::CCatchLabelDlg(QWidget *parent)
    : CDefaultButtonDialog(parent), m_ui(std::make_unique<Ui::CatchLabelForm>()),
      m_toolTip(std::make_unique<CMyToolTipCtrl>())
{
    m_ui->setupUi(this);
    m_ui->picturePreview->installEventFilter(this);
    connect(m_ui->btnBrowse, &QPushButton::clicked, this, [this] { RunHandler([this] { OnBtnBrowse(); }); });
}

CCatchLabelDlg::~CCatchLabelDlg() = default;

bool CCatchLabelDlg::OnInitDialog()
{
    CDefaultButtonDialog::OnInitDialog();
    SetUpList();
    SetTexts();
    m_ui->editBlock->setText(ToQString(m_strBlockName));
    CZEMCDictionaryPtr(AcDb::kForRead).dctRead(kDictionary, kKey, m_strBlockPath, false);
    if (m_strBlockPath.empty()) {
        const std::wstring folder = CModuleConfiguration::Instance()->GetPath(L"Symbol");
        if (folder.empty())
            return true;
        m_strBlockPath = DefaultBlock(folder);
    }
    TakeBlockFile();
    return true;
}

void CCatchLabelDlg::SetUpList()
{
    constexpr unsigned kFullRowAndGrid = 33;
    constexpr int kValueWidth = 170, kAttributeWidth = 115;
    CXListCtrl &list = *m_ui->listValues;
    list.SetExtendedStyle(kFullRowAndGrid);
    list.DeleteAllItems();
    if (list.GetColumnCount() == 0) {
        list.InsertColumn(kValueColumn, Msg(kValueWord), kValueWidth);
        list.InsertColumn(kAttributeColumn, Msg(kAttributeWord), kAttributeWidth);
    }
    for (int row = 0; row < kRowCount; ++row) {
        list.InsertItem(row, Msg(kRows[static_cast<std::size_t>(row)]));
        list.SetCheckbox(row, kValueColumn, 0, false);
    }
    FitColumn(list, kValueColumn, kValueWidth);
    FitColumn(list, kAttributeColumn, kAttributeWidth);
    ShowAllColumns(list);
}

void CCatchLabelDlg::SetTexts()
{
    setWindowTitle(ToQString(Msg(kTitle)));
    SetCaptions(*this, kTexts, kMarked);
    SetAccessibleNames(*this, kAccessibleNames);
    m_toolTip->AddWindowTool(m_ui->btnBrowse, Msg(kBrowseTip));
    constexpr unsigned kIconType = 1, kNoFlags = 0;
    constexpr int kImage = 18;
    m_ui->btnBrowse->SetButtonIcon(L"CMD_OPEN", kIconType, kImage, kImage, kNoFlags);
}

void CCatchLabelDlg::TakeBlockFile()
{
    CXListCtrl &list = *m_ui->listValues;
    m_attributes.clear();
    for (int row = 0; row < kRowCount; ++row) {
        list.SetCheckbox(row, kValueColumn, 0, false);
        list.SetComboBox(row, kAttributeColumn, true, &m_attributes, 0, 0);
        list.SetItemText(row, kAttributeColumn, std::wstring());
    }
    m_strBlockName = TitleOfBlockFile(m_strBlockPath);
    m_ui->editBlock->setText(ToQString(m_strBlockName));
    m_blockId = CZEMCDraw::insertBlockDefinition(m_strBlockName.c_str(), m_strBlockPath.c_str());
    m_bBlockInserted = true;
    CUtility::GetAttributesFromBlockDef(m_blockId, m_attributes);
    const int count = static_cast<int>(m_attributes.size());
    for (int row = 0; row < kRowCount; ++row)
        list.SetComboBox(row, kAttributeColumn, true, &m_attributes, count, row);
    for (int row = 0; row < count; ++row) // beyond the list nothing happens
        list.SetCheckbox(row, kValueColumn, 1, false);
}

void CCatchLabelDlg::OnBtnBrowse()
{
    constexpr int kFlags = 64;
    const std::wstring start = DefaultBlock(CModuleConfiguration::Instance()->GetPath(L"Symbol"));
    const std::unique_ptr<resbuf, ReleaseChain> chosen(acutNewRb(RTSTR));
    if (acedGetFileD(L"Blok", start.c_str(), L"dwg", kFlags, chosen.get()) != RTNORM)
        return;
    m_strBlockPath = chosen->resval.rstring;
    TakeBlockFile();
    update();
    m_ui->picturePreview->update();
}

bool CCatchLabelDlg::PaintPreview()
{
    constexpr std::uint32_t kGroundOfDrawings = 0;
    QLabel &field = *m_ui->picturePreview;
    if (acdbDisplayPreviewFromDwg(m_strBlockPath.c_str(), &field, kGroundOfDrawings))
        return true;
    if (m_strBlockPath.empty())
        return false;
    QPainter painter(&field);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(field.rect(), Qt::AlignCenter | Qt::TextWordWrap, ToQString(Msg(kNoPicture)));
    return true;
}

bool CCatchLabelDlg::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_ui->picturePreview && event->type() == QEvent::Paint && PaintPreview())
        return true;
    return CDefaultButtonDialog::eventFilter(watched, event);
}

void CCatchLabelDlg::OnOK()
{
    constexpr int kCodeText = 1;
    CZEMCDictionaryPtr dictionary(AcDb::kForRead);
    dictionary.upgradeOpen();
    dictionary.dctWrite(kDictionary, kKey, m_strBlockPath, false, true, kCodeText);
    const CXListCtrl &list = *m_ui->listValues;
    m_attributes.assign(kRowCount, std::wstring());
    for (int row = 0; row < kRowCount; ++row) {
        if (list.GetCheckbox(row, kValueColumn) == 1)
            m_attributes[static_cast<std::size_t>(row)] = list.GetItemText(row, kAttributeColumn);
    }
    EndDialog(kOk);
}
