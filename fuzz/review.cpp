// The review dialog under a person who does anything at all: keys, clicks, edits, ticks, buttons with prepared answers,
// notices of the list. After each doing the lists, the tree and the fields say what the store holds, and in the end
// undo leads back to the drawing as it was, byte for byte.
#include "review/DlgEditCatchmentArea.h"

#include "catalog/NumberText.h"
#include "controls/WideText.h"
#include "controls/XListCtrl.h"
#include "fuzz/Require.h"
#include "host/drawing/ChangeLog.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Entities.h"
#include "host/drawing/Transient.h"
#include "host/editor/Session.h"
#include "host/network/NetworkData.h"
#include "host/services/Services.h"
#include "review/ReviewControls.h"
#include "tests/controls/EditOps.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <filesystem>
#include <set>

namespace {

using edit_ops::Bytes;
using namespace ZEMGis;
using AreaPtr = boost::shared_ptr<Sewage::CCatchmentArea>;

unsigned long long g_events = 0;

constexpr int kSections = 8;
constexpr double kPitch = 20.0;
constexpr unsigned kPaintedDoing = 16;   ///< painting takes most of the time: the window is painted after each 16th
constexpr std::size_t kMostBytes = 1024; ///< some 300 doings, so that no input takes long under the sanitizers

Sewage::CatchmentAreas StoredAreas()
{
    Sewage::CatchmentAreas areas;
    Sewage::CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(areas, Sewage::kTypeAll);
    return areas;
}

// --- The drawing ------------------------------------------------------------------------------------------------

void AddNode(velmor::Drawing &drawing, const std::wstring &name)
{
    auto point = std::make_unique<velmor::PointEntity>(AcGePoint3d());
    velmor::PointEntity &node = *point;
    drawing.append(std::move(point));
    drawing.setData(node, velmor::kNodeKey, velmor::itemsOf(velmor::NodeData{L"{" + name + L"}", name}));
}

void AddSection(velmor::Drawing &drawing, int number)
{
    const double x = number * kPitch;
    auto line = std::make_unique<AcDbLine>(AcGePoint3d(x, 5), AcGePoint3d(x + 8, 5));
    AcDbLine &section = *line;
    drawing.append(std::move(line));
    velmor::SectionData data;
    data.name = L"D" + std::to_wstring(number);
    data.guid = L"{" + data.name + L"}";
    data.startNode = L"{MH" + std::to_wstring(number) + L"}";
    data.endNode = L"{MH" + std::to_wstring(number + 1) + L"}";
    drawing.setData(section, velmor::kSectionKey, velmor::itemsOf(data));
}

boost::shared_ptr<Data::CProperties> Bag(const wchar_t *guid, double coefficient, double population)
{
    auto bag = boost::make_shared<Data::CProperties>();
    const auto add = [&](const wchar_t *tag, const Data::CDataBox &value) {
        auto property = boost::make_shared<Data::CProperty>();
        property->SetTag(tag);
        property->SetValue(value);
        bag->AddProperty(property);
    };
    add(L"CA_GUID", guid);
    add(L"CA_COEFF", coefficient);
    add(L"CA_POPULATION", population);
    return bag;
}

/// Some areas of any type with some sections; now and then one without a polygon.
void AddAreas(Bytes &bytes)
{
    using Utility::CTransform;
    auto *manager = Sewage::CCatchmentAreaManager::Instance();
    const auto section = [](unsigned number) {
        const std::wstring guid = L"{D" + std::to_wstring(number) + L"}";
        return Topology::CTopologyMultiStorage::Instance()->GetTopology()->GetSectionByGuid(guid.c_str());
    };
    const unsigned count = bytes.Below(7);
    for (unsigned i = 0; i < count; ++i) {
        const std::wstring name = L"A" + std::to_wstring(i);
        const auto bag = Bag((L"{" + name + L"}").c_str(), bytes.Below(5) / 4.0, bytes.Below(3) * 100.0);
        const int type = static_cast<int>(bytes.Below(8));
        if (bytes.Below(6) == 0) {
            manager->SetHiddenCA(section(bytes.Below(kSections)), 500.0, type, bag);
            continue;
        }
        const double x = i * kPitch;
        const AcGePoint3dArray ring{{x, 0}, {x + 10, 0}, {x + 10, 10}, {x, 10}};
        const AreaPtr area =
            manager->CreateCA(CTransform::PolygonText(CTransform::AcadPoly2GeosPoly(ring)), name, type, bag);
        Sewage::SectionShares shares;
        for (unsigned left = bytes.Below(4); left > 0; --left)
            shares.emplace_back(section(bytes.Below(kSections)), bytes.Below(5) / 4.0);
        manager->AssignCA(shares, area);
    }
}

std::unique_ptr<velmor::Drawing> MakeDrawing()
{
    auto drawing = velmor::Drawing::createNew();
    for (const wchar_t *name : {L"MH0", L"MH1", L"MH2", L"Well", L"MH12a3"})
        AddNode(*drawing, name);
    for (int i = 0; i < kSections; ++i)
        AddSection(*drawing, i);
    return drawing;
}

// --- The dialog -------------------------------------------------------------------------------------------------

class CDialog : public CDlgEditCatchmentArea {
public:
    explicit CDialog(velmor::Session &session) : m_session(session) {}

    void Drive(Bytes &bytes)
    {
        for (unsigned doing = 1; !bytes.AtEnd() && isVisible(); ++doing) {
            ++g_events;
            setUpdatesEnabled(doing % kPaintedDoing == 0);
            Do(bytes);
            m_session.answers().clear();
            QApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            if (isVisible())
                Check();
        }
    }

private:
    CCatchmentTree &Tree() { return *Control<CCatchmentTree>(ReviewControl::kTreeAreas); }
    CXListCtrl &List() { return *Control<CXListCtrl>(ReviewControl::kListSections); }

    // Doings

    static void Press(QWidget &widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                      const QString &text = {})
    {
        const QPointer<QWidget> alive(&widget);
        QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
        QApplication::sendEvent(&widget, &press);
        if (!alive)
            return;
        QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
        QApplication::sendEvent(&widget, &release);
    }
    static void Mouse(QAbstractItemView &view, const QPoint &point, QEvent::Type kind, Qt::MouseButton button)
    {
        QWidget *viewport = view.viewport();
        const Qt::MouseButtons held = kind == QEvent::MouseButtonRelease ? Qt::NoButton : button;
        QMouseEvent event(kind, QPointF(point), viewport->mapToGlobal(QPointF(point)), button, held, Qt::NoModifier);
        QApplication::sendEvent(viewport, &event);
    }
    static void Click(QAbstractItemView &view, const QPoint &point, Bytes &bytes)
    {
        const Qt::MouseButton button = bytes.Below(12) == 0 ? Qt::RightButton : Qt::LeftButton;
        const bool twice = bytes.Below(6) == 0;
        Mouse(view, point, QEvent::MouseButtonPress, button);
        Mouse(view, point, QEvent::MouseButtonRelease, button);
        if (!twice)
            return;
        Mouse(view, point, QEvent::MouseButtonDblClick, button);
        Mouse(view, point, QEvent::MouseButtonRelease, button);
    }
    void TypeInto(QLineEdit &edit, const std::wstring &text)
    {
        const QPointer<QLineEdit> alive(&edit);
        for (const wchar_t c : text) {
            if (alive)
                Press(edit, 0, Qt::NoModifier, QString::fromWCharArray(&c, 1));
        }
    }
    /// What the next prompt or question gets.
    void PrepareAnswer(Bytes &bytes)
    {
        auto &answers = m_session.answers();
        for (unsigned left = bytes.Below(4); left > 0; --left) {
            switch (bytes.Below(6)) {
            case 0:
            case 1:
                answers.push({std::wstring(L"Yes")});
                break;
            case 2:
                answers.push({std::wstring(L"No")});
                break;
            case 3:
                answers.push({velmor::Answer::Enter{}});
                break;
            case 4:
                answers.push({velmor::Answer::Escape{}});
                break;
            default:
                answers.push({AcGePoint3d(bytes.Below(8) * kPitch + 5.0, 5.0)});
                break;
            }
        }
    }
    void Do(Bytes &bytes)
    {
        const unsigned choice = bytes.Below(64);
        if (choice == 63)
            End(bytes);
        else
            DoInside(choice % 14, bytes);
    }
    /// In the midst of whatever is open: an editor, what is posted.
    void End(Bytes &bytes)
    {
        switch (bytes.Below(3)) {
        case 0:
            Control<QAbstractButton>(ReviewControl::kBtnOk)->click();
            break;
        case 1:
            Press(*this, Qt::Key_Escape);
            break;
        default:
            close();
            break;
        }
    }
    void DoInside(unsigned choice, Bytes &bytes)
    {
        switch (choice) {
        case 0:
        case 1:
            TreeKey(bytes);
            break;
        case 2:
        case 3:
            TreeClick(bytes);
            break;
        case 4:
            TreeName(bytes);
            break;
        case 5:
            ListKey(bytes);
            break;
        case 6:
            ListClick(bytes);
            break;
        case 7:
        case 8:
            ListShare(bytes);
            break;
        case 9:
            Field(bytes);
            break;
        case 10:
            Notice(bytes);
            break;
        default:
            Button(bytes);
            break;
        }
    }
    void TreeKey(Bytes &bytes)
    {
        static constexpr int kKeys[] = {Qt::Key_Down,     Qt::Key_Up,   Qt::Key_Left,  Qt::Key_Right,
                                        Qt::Key_Home,     Qt::Key_End,  Qt::Key_Space, Qt::Key_PageDown,
                                        Qt::Key_Delete,   Qt::Key_F2,   Qt::Key_A,     Qt::Key_D,
                                        Qt::Key_Asterisk, Qt::Key_Plus, Qt::Key_Minus, Qt::Key_Tab};
        const int key = kKeys[bytes.Below(std::size(kKeys))];
        const bool isLetter = key >= Qt::Key_A && key <= Qt::Key_Z;
        Press(Tree(), key, Qt::NoModifier, isLetter ? QString(QChar(key)) : QString());
    }
    void TreeClick(Bytes &bytes)
    {
        CCatchmentTree &tree = Tree();
        if (bytes.Below(8) == 0) { // anywhere
            Click(tree, {static_cast<int>(bytes.Next()), static_cast<int>(bytes.Next())}, bytes);
            return;
        }
        if (tree.topLevelItemCount() == 0)
            return;
        CCatchmentTreeItem *item = tree.AreaItem(static_cast<int>(bytes.Next()) % tree.topLevelItemCount());
        if (item->childCount() > 0 && bytes.Below(3) == 0) {
            item->setExpanded(true);
            item = static_cast<CCatchmentTreeItem *>(item->child(static_cast<int>(bytes.Next()) % item->childCount()));
        }
        tree.scrollToItem(item);
        const QRect place = tree.visualItemRect(item);
        // The check box stands at the left end of the item, the text behind it, the expander before it.
        static constexpr int kPlaces[] = {8, 8, 40, 40, -8};
        Click(tree, {place.left() + kPlaces[bytes.Below(std::size(kPlaces))], place.center().y()}, bytes);
    }
    void TreeName(Bytes &bytes)
    {
        CCatchmentTree &tree = Tree();
        Press(tree, Qt::Key_F2);
        auto *edit = tree.viewport()->findChild<QLineEdit *>();
        if (!edit)
            return;
        TypeInto(*edit, edit_ops::TextOf(bytes, 4));
        static constexpr int kEnds[] = {Qt::Key_Return, Qt::Key_Return, Qt::Key_Escape, Qt::Key_Tab};
        if (const unsigned end = bytes.Below(5); end < std::size(kEnds)) // else it stays open
            Press(*edit, kEnds[end]);
    }
    void ListKey(Bytes &bytes)
    {
        static constexpr int kKeys[] = {Qt::Key_Down, Qt::Key_Up,     Qt::Key_Left,   Qt::Key_Right,
                                        Qt::Key_F2,   Qt::Key_Space,  Qt::Key_Return, Qt::Key_Home,
                                        Qt::Key_End,  Qt::Key_Delete, Qt::Key_F4,     Qt::Key_Tab};
        Press(List(), kKeys[bytes.Below(std::size(kKeys))]);
    }
    void ListClick(Bytes &bytes)
    {
        CXListCtrl &list = List();
        QRect cell;
        const int row = static_cast<int>(bytes.Below(5)), column = static_cast<int>(bytes.Below(2));
        if (list.GetSubItemRect(row, column, CXListCtrl::kBounds, cell))
            Click(list, cell.center(), bytes);
        else
            Click(list, {static_cast<int>(bytes.Next()), static_cast<int>(bytes.Next())}, bytes);
    }
    void ListShare(Bytes &bytes)
    {
        CXListCtrl &list = List();
        if (!list.EditCell(static_cast<int>(bytes.Below(4)), 1))
            return;
        if (QLineEdit *edit = list.GetEditBox())
            TypeInto(*edit, edit_ops::TextOf(bytes, 5));
        switch (bytes.Below(5)) {
        case 0:
            list.AbandonEditing();
            break;
        case 1:
            if (QLineEdit *edit = list.GetEditBox())
                Press(*edit, Qt::Key_Escape);
            break;
        case 2:
            break; // stays open
        case 3:
            if (QLineEdit *edit = list.GetEditBox())
                Press(*edit, Qt::Key_Return);
            break;
        default:
            list.CommitEditing();
            break;
        }
    }
    void Field(Bytes &bytes)
    {
        static constexpr int kFields[] = {ReviewControl::kEditCoefficient, ReviewControl::kEditDensity,
                                          ReviewControl::kEditScale, ReviewControl::kEditZoom};
        auto *edit = Control<QLineEdit>(kFields[bytes.Below(std::size(kFields))]);
        if (!edit->isEnabled())
            return;
        edit->selectAll();
        TypeInto(*edit, edit_ops::TextOf(bytes, 5));
    }
    /// Notices with rows that are none, and texts that no editor lets through.
    void Notice(Bytes &bytes)
    {
        if (bytes.Below(3) == 0) {
            RunHandler([&] { OnWindowMessage(kTreeCheckMessage, ReviewControl::kTreeAreas, 0); });
            return;
        }
        const int row = static_cast<int>(bytes.Below(6)) - 1;
        List().SetItemText(row, 1, edit_ops::TextOf(bytes, 6));
        RunHandler([&] { OnWindowMessage(CXListCtrl::DataChangedMessage(), static_cast<std::uintptr_t>(row), 1); });
    }
    void Button(Bytes &bytes)
    {
        using namespace ReviewControl;
        static constexpr int kButtons[] = {
            kBtnHide,        kBtnInfo,     kCheckCatchment, kCheckHouse,   kCheckIndustry,  kBtnExpand,
            kBtnCollapse,    kBtnCheckAll, kBtnUncheckAll,  kBtnWriteData, kRadioCatchment, kRadioHouse,
            kRadioIndustry,  kRadioAll,    kBtnPick,        kBtnErase,     kBtnLabel,       kBtnPattern,
            kBtnEraseLabels, kBtnRename,   kCheckZoom,      kBtnSettings,  kBtnDefineLabel};
        const int control = kButtons[bytes.Below(std::size(kButtons))];
        PrepareAnswer(bytes);
        Control<QAbstractButton>(control)->click();
        if (control == kBtnPick) // its checks may go beyond the tree until the selection is applied
            RunHandler([&] { OnWindowMessage(kTreeCheckMessage, kTreeAreas, 0); });
    }

    // What holds

    void Check()
    {
        CheckCounts();
        CheckTree();
        CheckChecked();
        CheckRows();
    }
    int CountOf(int control) { return ReadInt(ToWide(Control<QLineEdit>(control)->text())); }
    void CheckCounts()
    {
        const Sewage::CatchmentAreas areas = StoredAreas();
        const auto count = [&](int bit) {
            return static_cast<int>(std::count_if(areas.begin(), areas.end(),
                                                  [bit](const AreaPtr &area) { return (area->GetType() & bit) != 0; }));
        };
        require(CountOf(ReviewControl::kEditCountCatchment) == count(1), "the count of catchments is the store's");
        require(CountOf(ReviewControl::kEditCountHouse) == count(2), "the count of houses is the store's");
        require(CountOf(ReviewControl::kEditCountIndustry) == count(4), "the count of industry is the store's");
        require(CountOf(ReviewControl::kEditCountAll) == static_cast<int>(areas.size()), "all are counted");
        for (const AreaPtr &area : areas) {
            Sewage::SectionShares shares;
            area->GetConnectedSections(shares);
            for (const auto &[section, share] : shares)
                require(share >= 0.0 && share <= 3.0, "a share is a fraction"); // of a section that came twice
        }
    }
    void CheckTree()
    {
        CCatchmentTree &tree = Tree();
        static constexpr int kRadios[][2] = {{ReviewControl::kRadioCatchment, ReviewControl::kEditCountCatchment},
                                             {ReviewControl::kRadioHouse, ReviewControl::kEditCountHouse},
                                             {ReviewControl::kRadioIndustry, ReviewControl::kEditCountIndustry},
                                             {ReviewControl::kRadioAll, ReviewControl::kEditCountAll}};
        for (const auto &[radio, count] : kRadios) {
            if (Control<QAbstractButton>(radio)->isChecked())
                require(tree.topLevelItemCount() == CountOf(count), "the tree shows what its filter counts");
        }
        std::set<std::wstring> guids;
        for (int row = 0; row < tree.topLevelItemCount(); ++row) {
            const CCatchItemData *payload = tree.AreaItem(row)->m_pPayload;
            require(payload != nullptr, "every area's item has its payload");
            const AreaPtr area = Sewage::CCatchmentAreaManager::Instance()->GetCatchmentAreaByGuid(payload->m_text);
            require(area != nullptr, "every item is an area of the store");
            Sewage::SectionShares shares;
            area->GetConnectedSections(shares);
            require(tree.AreaItem(row)->childCount() == static_cast<int>(shares.size()), "with its sections beneath");
            require(guids.insert(payload->m_text).second, "and stands there once");
        }
        require((tree.topLevelItemCount() > 0) == (tree.SelectedItem() != nullptr), "an item is selected");
        if (CurrentArea())
            require(guids.count(CurrentArea()->GetGuid()) == 1, "the area in focus stands in the tree");
    }
    void CheckChecked()
    {
        CCatchmentTree &tree = Tree();
        CGuids ticked;
        for (int row = 0; row < tree.topLevelItemCount(); ++row) {
            if (tree.AreaItem(row)->IsChecked())
                ticked.insert(tree.AreaItem(row)->m_pPayload->m_text);
        }
        require(CheckedGuids() == ticked, "the checked areas are those with a tick");
        require(CheckedAreas().size() == ticked.size(), "each of them once");
        for (const AreaPtr &area : CheckedAreas())
            require(area && ticked.count(area->GetGuid()) == 1, "and they are the store's");
    }
    void CheckRows()
    {
        CXListCtrl &list = List();
        Sewage::SectionShares shares;
        if (CurrentArea())
            CurrentArea()->GetConnectedSections(shares);
        require(list.GetItemCount() == static_cast<int>(shares.size()), "a row for each section of the area in focus");
        int row = 0;
        for (const auto &[section, share] : shares) {
            require(list.GetItemText(row, 0) == section->GetName(), "with its name");
            require(list.GetItemText(row, 1) == FourDecimals(share * 100.0), "and the share that the store holds");
            require(list.GetItemData(row) == reinterpret_cast<std::uint64_t>(section.get()), "for that section");
            ++row;
        }
    }

    velmor::Session &m_session;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static std::string folder = (std::filesystem::temp_directory_path() / "velmor_fuzz_XXXXXX").string();
    if (!mkdtemp(folder.data()))
        std::abort();
    setenv("VELMOR_CONFIG_DIR", (folder + "/config").c_str(), 1);
    std::atexit([] {
        std::filesystem::remove_all(folder);
        std::fprintf(stderr, "%llu doings\n", g_events);
    });
    setenv("CUPS_SERVER", "/none", 1); // no printer is looked for
    static int argc = 1;
    static char name[] = "fuzz_review";
    static char *argv[] = {name, nullptr};
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}); // no window is seen
    new QApplication(argc, argv);
    velmor::Services::instance().start({.language = "en"});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Bytes bytes(data, std::min(size, kMostBytes));
    velmor::Session session;
    session.setMessageSink({});
    session.setDrawing(MakeDrawing());
    velmor::Drawing &drawing = *session.drawing();
    AddAreas(bytes);
    auto &log = drawing.component<velmor::ChangeLog>();
    log.begin(); // what was drawn so far is no step
    log.keep();
    log.forget();
    const std::string before = drawing.write(); // gives the numbers that a file needs
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        if (auto *review = dynamic_cast<CDialog *>(&dialog))
            review->Drive(bytes);
        else if (auto *ok = dialog.Control<QAbstractButton>(CAdUiBaseDialog::kOk); ok && bytes.Below(2) == 0)
            ok->click(); // of a pattern, of settings, of a label; else it is cancelled
    });
    do {
        CDialog dialog(session);
        dialog.DoModal();
        QApplication::processEvents();
        require(drawing.component<velmor::TransientGraphics>().highlighted().empty(),
                "no highlight outlives the dialog");
    } while (!bytes.AtEnd());
    require(session.failures() == 0, "no handler failed");
    while (log.undo()) {
    }
    require(drawing.write() == before, "undo leads back to the start");
    return 0;
}
