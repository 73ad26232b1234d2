#include "dialogs/TerrainTypeSimpleDlg.h"

#include "catalog/NumberText.h"
#include "controls/MyToolTipCtrl.h"
#include "controls/WideText.h"
#include "dialogs/DialogTexts.h"
#include "ui_terrain_types.h"

#include <QHeaderView>
#include <QSignalBlocker>

#include <algorithm>
#include <array>

using ZEMGis::Utility::CZEMBitmapButton;

namespace {

enum : int {
    kListTerrains = 210,
    kEditFlow = 215,
    kBtnRemove = 250,
    kBtnAdd = 253,
    kEditName = 255,
    kLabelFlow = 324,
    kLabelName = 342,
};
enum : unsigned {
    kTerrainWord = 1990,
    kFlowWord = 1991,
    kTitle = 2024,
    kOkText = 60,
    kCancelText = 67,
    kAddOrChange = 60051,
    kRemove = 60052,
};

constexpr auto kTexts = std::to_array<CMessageRow>({
    {kLabelName, kTitle},
    {kLabelFlow, kFlowWord},
    {CAdUiBaseDialog::kOk, kOkText},
    {CAdUiBaseDialog::kCancel, kCancelText},
});
constexpr auto kAccessibleNames = std::to_array<CMessageRow>({
    {kEditName, kTitle},
    {kEditFlow, kFlowWord},
    {kListTerrains, kTerrainWord},
    {kBtnAdd, kAddOrChange},
    {kBtnRemove, kRemove},
});
constexpr auto kMarked = std::to_array<int>({kLabelName, kLabelFlow});

constexpr int kNameColumn = 0, kFlowColumn = 1;
constexpr int kDecimalsAtStart = 4;
constexpr int kDecimalsAfterChange = 2;

} // namespace

CTerrainTypeSimpleDlg::CTerrainTypeSimpleDlg(QWidget *parent)
    : CDefaultButtonDialog(parent), m_ui(std::make_unique<Ui::TerrainTypeForm>()),
      m_toolTip(std::make_unique<CMyToolTipCtrl>())
{
    m_ui->setupUi(this);
    connect(m_ui->btnAdd, &QPushButton::clicked, this, [this] { RunHandler([this] { OnBtnAddOrChange(); }); });
    connect(m_ui->btnRemove, &QPushButton::clicked, this, [this] { RunHandler([this] { OnBtnRemove(); }); });
    connect(m_ui->listTerrains, &QTreeWidget::itemSelectionChanged, this,
            [this] { RunHandler([this] { OnListChanged(); }); });
}

CTerrainTypeSimpleDlg::~CTerrainTypeSimpleDlg() = default;

bool CTerrainTypeSimpleDlg::OnInitDialog()
{
    CAdUiBaseDialog::OnInitDialog();
    SetUpList();
    SetTexts();
    SetUpFlowEdit();
    m_catalog.Load(); // without a file the drawing's list is there all the same
    FillList(kDecimalsAtStart);
    return true;
}

void CTerrainTypeSimpleDlg::SetUpList()
{
    constexpr int kNameWidth = 89, kFlowWidth = 122;
    QTreeWidget &list = *m_ui->listTerrains;
    list.setHeaderLabels({ToQString(Msg(kTerrainWord)), ToQString(Msg(kFlowWord))});
    list.headerItem()->setTextAlignment(kFlowColumn, Qt::AlignRight | Qt::AlignVCenter);
    // These widths, or more where a font, a language or a name needs it.
    QHeaderView &header = *list.header();
    header.setStretchLastSection(false);
    header.setMinimumSectionSize(kNameWidth);
    header.setSectionResizeMode(kNameColumn, QHeaderView::Stretch);
    header.resizeSection(kFlowColumn, std::max(kFlowWidth, header.sectionSizeHint(kFlowColumn)));
}

void CTerrainTypeSimpleDlg::SetTexts()
{
    setWindowTitle(ToQString(Msg(kTitle)));
    SetCaptions(*this, kTexts, kMarked);
    SetAccessibleNames(*this, kAccessibleNames);
    m_toolTip->AddWindowTool(m_ui->btnAdd, Msg(kAddOrChange));
    m_toolTip->AddWindowTool(m_ui->btnRemove, Msg(kRemove));
    constexpr unsigned kIconType = 1, kNoFlags = 0;
    constexpr int kImage = 18;
    m_ui->btnAdd->SetButtonIcon(L"ADD_ENTRY", kIconType, kImage, kImage, kNoFlags);
    m_ui->btnRemove->SetButtonIcon(L"REMOVE_ENTRY", kIconType, kImage, kImage, kNoFlags);
}

void CTerrainTypeSimpleDlg::SetUpFlowEdit()
{
    constexpr int kWholeDigits = 4, kDecimals = 4;
    m_ui->editFlow->SetMaxWholeDigits(kWholeDigits);
    m_ui->editFlow->SetMaxDecimalPlaces(kDecimals);
    m_ui->editFlow->SetSeparators(L'.', L',');
    m_ui->editFlow->AllowNegative(false);
}

void CTerrainTypeSimpleDlg::FillList(int decimals)
{
    CStringArray names;
    AcArray<double> flows;
    m_catalog.GetTerrains(names, flows);
    const QSignalBlocker silent(m_ui->listTerrains); // only the user's own change of the selection is an event
    m_ui->listTerrains->clear();
    for (std::size_t i = 0; i < names.size(); ++i) {
        auto *row = new QTreeWidgetItem(m_ui->listTerrains);
        row->setText(kNameColumn, ToQString(names[i]));
        row->setToolTip(kNameColumn, PlainTip(names[i]));
        row->setText(kFlowColumn, ToQString(FixedDecimals(flows[i], decimals)));
        row->setTextAlignment(kFlowColumn, Qt::AlignRight | Qt::AlignVCenter);
    }
}

void CTerrainTypeSimpleDlg::UpdateData(bool fromControls)
{
    if (fromControls)
        m_strName = ToWide(m_ui->editName->text());
    else
        m_ui->editName->setText(ToQString(m_strName));
}

void CTerrainTypeSimpleDlg::OnBtnAddOrChange()
{
    UpdateData(true);
    const double flow = m_ui->editFlow->GetDouble();
    if (m_strName.empty() || !m_catalog.SetTerrain(m_strName, flow))
        return;
    FillList(kDecimalsAfterChange);
}

void CTerrainTypeSimpleDlg::OnBtnRemove()
{
    QTreeWidget &list = *m_ui->listTerrains;
    for (QTreeWidgetItem *row : list.selectedItems()) {
        if (!m_catalog.RemoveTerrain(ToWide(row->text(kNameColumn))))
            continue;
        const QSignalBlocker silent(list);
        const int place = list.indexOfTopLevelItem(row);
        // Else the list would select the row that takes the place.
        list.setCurrentItem(nullptr);
        delete list.takeTopLevelItem(place);
        if (QTreeWidgetItem *next = list.topLevelItem(std::min(place, list.topLevelItemCount() - 1)))
            list.setCurrentItem(next, kNameColumn, QItemSelectionModel::NoUpdate);
    }
}

void CTerrainTypeSimpleDlg::OnListChanged()
{
    for (const QTreeWidgetItem *row : m_ui->listTerrains->selectedItems()) {
        m_strName = ToWide(row->text(kNameColumn));
        m_ui->editFlow->SetDouble(ReadDouble(ToWide(row->text(kFlowColumn))).value, true);
    }
    UpdateData(false);
}

void CTerrainTypeSimpleDlg::OnOK()
{
    m_catalog.SaveToDrawing();
    m_catalog.SaveToFile();
    EndDialog(kOk);
}
