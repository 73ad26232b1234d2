#include "dialogs/DlgCatchmentSections.h"

#include "catalog/NumberText.h"
#include "controls/WideText.h"
#include "dialogs/DialogTexts.h"
#include "dialogs/ListColumns.h"
#include "ui_catch_sections.h"

#include <QApplication>
#include <QKeyEvent>

#include <array>

using ZEMGis::Sewage::CCatchmentAreaManager;
using ZEMGis::Topology::CSection;
using ZEMGis::Topology::CTopologyMultiStorage;

namespace {

enum : int { kListSections = 103, kLabelArea = 105 };
enum : unsigned { kOkText = 60, kTitle = 1221, kAreaWord = 1989, kSectionWord = 3098, kShareWord = 4434 };

constexpr auto kTexts = std::to_array<CMessageRow>({{kLabelArea, kAreaWord}, {CAdUiBaseDialog::kOk, kOkText}});
constexpr auto kAccessibleNames = std::to_array<CMessageRow>({{kListSections, kTitle}});
constexpr auto kMarked = std::to_array<int>({kLabelArea});

constexpr int kNameColumn = 0, kShareColumn = 1;
constexpr double kPercent = 100.0;

} // namespace

CDlgCatchmentSections::CDlgCatchmentSections(QWidget *parent)
    : CAdUiBaseDialog(parent), m_ui(std::make_unique<Ui::CatchSectionsForm>())
{
    m_ui->setupUi(this);
    qApp->installEventFilter(this); // sees keys before whoever has the focus
}

CDlgCatchmentSections::~CDlgCatchmentSections() = default;

bool CDlgCatchmentSections::OnInitDialog()
{
    CAdUiBaseDialog::OnInitDialog();
    SetTexts();
    SetUpList();
    if (m_area) {
        m_ui->editArea->setText(ToQString(FourDecimals(m_area->GetArea())));
        FillSectionList();
        // So that F2 edits the first share.
        m_ui->listSections->setCurrentIndex(m_ui->listSections->model()->index(0, kShareColumn));
        m_ui->listSections->setFocus();
    }
    for (const int column : {kNameColumn, kShareColumn})
        FitColumn(*m_ui->listSections, column, m_ui->listSections->GetColumnWidth(column));
    ShowAllColumns(*m_ui->listSections);
    return true;
}

void CDlgCatchmentSections::SetTexts()
{
    setWindowTitle(ToQString(Msg(kTitle)));
    SetCaptions(*this, kTexts, kMarked);
    SetAccessibleNames(*this, kAccessibleNames);
}

void CDlgCatchmentSections::SetUpList()
{
    constexpr unsigned kFullRowAndGrid = 33;
    constexpr int kNameWidth = 100;
    CXListCtrl &list = *m_ui->listSections;
    list.SetExtendedStyle(kFullRowAndGrid);
    if (list.GetColumnCount() > 0)
        return;
    list.InsertColumn(kNameColumn, Msg(kSectionWord), kNameWidth);
    list.InsertColumn(kShareColumn, Msg(kShareWord) + L" [%]", CXListCtrl::kSizedToHeader);
    list.AddEditColumn(kShareColumn);
}

void CDlgCatchmentSections::FillSectionList()
{
    constexpr int kDecimals = 4;
    CXListCtrl &list = *m_ui->listSections;
    list.DeleteAllItems();
    if (!m_area)
        return;
    m_area->GetConnectedSections(m_sections);
    for (const auto &[section, share] : m_sections) {
        const int row = list.InsertItem(list.GetItemCount(), section->GetName());
        list.SetItemData(row, reinterpret_cast<std::uintptr_t>(section.get()));
        list.SetItemText(row, kShareColumn, FixedDecimals(share * kPercent, kDecimals));
        list.SetCellNumeric(row, kShareColumn);
    }
}

std::intptr_t CDlgCatchmentSections::OnShareChanged(int row)
{
    CXListCtrl &list = *m_ui->listSections;
    if (const auto *section = reinterpret_cast<const CSection *>(list.GetItemData(row))) {
        const double percent = ParseNumber(list.GetItemText(row, kShareColumn));
        if (percent >= 0.0 && percent <= kPercent) {
            const std::wstring guid = section->GetGuid();
            const auto stored = CTopologyMultiStorage::Instance()->GetTopology()->GetSectionByGuid(guid.c_str());
            m_area->SetConnectedSectionShare(stored, percent / kPercent, 1);
        }
    }
    const QModelIndex place = list.currentIndex();
    FillSectionList();
    list.setCurrentIndex(list.model()->index(place.row(), place.column())); // so that the keys go on from there
    return 0;
}

std::intptr_t CDlgCatchmentSections::OnWindowMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam)
{
    if (message == kKeepFocusMessage)
        return 1;
    if (message == CXListCtrl::DataChangedMessage()) {
        constexpr std::uintptr_t kLowWord = 0xFFFF;
        return OnShareChanged(static_cast<int>(wParam & kLowWord));
    }
    return CAdUiBaseDialog::OnWindowMessage(message, wParam, lParam);
}

void CDlgCatchmentSections::OnHandlerFailed()
{
    if (!m_area)
        return;
    // What was taken back is in the store's area.
    if (const auto area = CCatchmentAreaManager::Instance()->GetCatchmentAreaByGuid(m_area->GetGuid()))
        m_area = area;
    FillSectionList();
}

bool CDlgCatchmentSections::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        auto *target = qobject_cast<QWidget *>(watched);
        if (target && (target == this || isAncestorOf(target)))
            return TakeKey(*target, static_cast<QKeyEvent &>(*event));
    }
    return CAdUiBaseDialog::eventFilter(watched, event);
}

bool CDlgCatchmentSections::TakeKey(QWidget &target, QKeyEvent &event)
{
    CXListCtrl &list = *m_ui->listSections;
    const bool isEnter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    const bool isEscape = event.key() == Qt::Key_Escape;
    // Past all who watch the target and not on to its parents, unlike an event that is sent.
    const auto deliver = [&target](QKeyEvent &key) { static_cast<QObject &>(target).event(&key); };
    if (list.IsEditing()) {
        if (!isEnter && !isEscape && !event.modifiers().testFlag(Qt::ControlModifier))
            return false;
        deliver(event);
        if (isEnter && list.IsEditing())
            list.CommitEditing();
        else if (isEscape && list.IsEditing())
            list.AbandonEditing();
        event.accept(); // else the toolkit offers it to the target's parents
        return true;
    }
    if (!isEnter)
        return false;
    QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t"));
    deliver(tab);
    event.accept();
    return true;
}
