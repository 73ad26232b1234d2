#include "dialogs/CatchLayerDlg.h"

#include "controls/MyToolTipCtrl.h"
#include "controls/WideText.h"
#include "dialogs/DialogTexts.h"
#include "geometry/EntityWalk.h"
#include "ui_catch_layers.h"

#include <QSignalBlocker>

#include <array>
#include <set>

namespace {

enum : int { kBtnPick = 209, kListLayers = 210, kCheckSelectedOnly = 328, kGroupLayers = 338 };
enum : unsigned { kTitle = 1983, kSelectedOnly = 2022, kOkText = 60, kCancelText = 67, kPickLayers = 60050 };

constexpr auto kTexts = std::to_array<CMessageRow>({
    {kGroupLayers, kTitle},
    {kCheckSelectedOnly, kSelectedOnly},
    {CAdUiBaseDialog::kOk, kOkText},
    {CAdUiBaseDialog::kCancel, kCancelText},
});
constexpr auto kAccessibleNames = std::to_array<CMessageRow>({{kListLayers, kTitle}, {kBtnPick, kPickLayers}});
constexpr auto kMarked = std::to_array<int>({kGroupLayers, kCheckSelectedOnly});

} // namespace

CCatchLayerDlg::CCatchLayerDlg(QWidget *parent)
    : CDefaultButtonDialog(parent), m_ui(std::make_unique<Ui::CatchLayerForm>()),
      m_toolTip(std::make_unique<CMyToolTipCtrl>())
{
    m_ui->setupUi(this);
    connect(m_ui->listLayers, &QListWidget::itemSelectionChanged, this,
            [this] { RunHandler([this] { ApplySelection(); }); });
    connect(m_ui->btnPick, &QPushButton::clicked, this, [this] { RunHandler([this] { OnBtnPick(); }); });
    connect(m_ui->checkSelectedOnly, &QCheckBox::clicked, this,
            [this] { RunHandler([this] { OnCheckSelectedOnly(); }); });
}

CCatchLayerDlg::~CCatchLayerDlg() = default;

bool CCatchLayerDlg::OnInitDialog()
{
    CAdUiBaseDialog::OnInitDialog();
    SetTexts();
    FillLayerList();
    return true;
}

void CCatchLayerDlg::SetTexts()
{
    setWindowTitle(ToQString(Msg(kTitle)));
    SetCaptions(*this, kTexts, kMarked);
    SetAccessibleNames(*this, kAccessibleNames);
    m_toolTip->AddWindowTool(m_ui->btnPick, Msg(kPickLayers));
    constexpr unsigned kIconType = 1, kNoFlags = 0;
    constexpr int kImage = 18;
    m_ui->btnPick->SetButtonIcon(L"PICK_LAYERS", kIconType, kImage, kImage, kNoFlags);
}

void CCatchLayerDlg::FillLayerList()
{
    CStringArray names;
    CZEMCLayerTablePtr().allLayerNames(names);
    ShowEntries(names);
    SelectEntries(m_chosenLayers);
    ApplySelection();
}

void CCatchLayerDlg::ShowEntries(const CStringArray &names)
{
    const QSignalBlocker silent(m_ui->listLayers); // only the user's own change of the selection is an event
    m_ui->listLayers->clear();
    for (const std::wstring &name : names)
        m_ui->listLayers->addItem(ToQString(name));
}

void CCatchLayerDlg::SelectEntries(const CStringArray &names)
{
    const QSignalBlocker silent(m_ui->listLayers);
    QListWidget &list = *m_ui->listLayers;
    list.clearSelection();
    const std::set<std::wstring> wanted(names.begin(), names.end());
    std::size_t found = 0;
    for (int row = 0; row < list.count(); ++row) {
        if (wanted.contains(ToWide(list.item(row)->text()))) {
            list.item(row)->setSelected(true);
            ++found;
        }
    }
    if (found < wanted.size()) // an entry that is not there stands for all of them
        list.selectAll();
}

void CCatchLayerDlg::ApplySelection()
{
    m_selectedLayers.clear();
    m_chosenLayers.clear();
    m_selectionSet.Renew(); // nobody but the dialog has the old one yet
    for (int row = 0; row < m_ui->listLayers->count(); ++row) {
        if (const QListWidgetItem *entry = m_ui->listLayers->item(row); entry->isSelected())
            m_selectedLayers.push_back(ToWide(entry->text()));
    }
    m_chosenLayers = m_selectedLayers;
    m_entityIds.clear();
    if (m_selectedLayers.empty())
        return; // the walk would take nothing
    const std::set<std::wstring> layers(m_selectedLayers.begin(), m_selectedLayers.end());
    WalkEntities([&](const AcDbEntity &entity) {
        if (!layers.contains(entity.layer()))
            return;
        m_entityIds.push_back(entity.objectId());
        m_selectionSet.Add(entity);
    });
}

void CCatchLayerDlg::OnBtnPick()
{
    m_selectedLayers.clear();
    BeginEditorCommand();
    ads_name picked = {0, 0};
    if (acedSSGet(nullptr, nullptr, nullptr, nullptr, picked) == RTNORM) {
        std::int32_t count = 0;
        acedSSLength(picked, &count);
        for (std::int32_t i = 0; i < count; ++i) {
            ads_name name = {0, 0};
            AcDbObjectId id;
            if (acedSSName(picked, i, name) != RTNORM || acdbGetObjectId(id, name) != Acad::eOk)
                continue;
            if (const CZEMCEntityPtr entity(id, AcDb::kForRead); entity.isOpen())
                m_selectedLayers.push_back(entity->layer());
        }
        acedSSFree(picked);
    }
    CompleteEditorCommand(1);
    SelectEntries(m_selectedLayers);
    ApplySelection();
}

void CCatchLayerDlg::OnCheckSelectedOnly()
{
    m_bShowSelectedOnly = m_ui->checkSelectedOnly->isChecked();
    if (m_bShowSelectedOnly) {
        ShowEntries(m_selectedLayers);
        SelectEntries(m_selectedLayers);
    } else {
        FillLayerList();
        SelectEntries(m_selectedLayers);
    }
}

void CCatchLayerDlg::OnOK()
{
    m_chosenLayers.clear();
    for (int row = 0; row < m_ui->listLayers->count(); ++row) {
        if (const QListWidgetItem *entry = m_ui->listLayers->item(row); entry->isSelected())
            m_chosenLayers.push_back(ToWide(entry->text()));
    }
    EndDialog(kOk);
}

void CCatchLayerDlg::OnCancel()
{
    m_selectionSet.Free();
    EndDialog(kCancel);
}
