#include "tests/overview/overview_fixture.h"

#include "host/drawing/Entities.h"
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/network/NetworkData.h"
#include "host/services/Services.h"
#include "host/services/Text.h"
#include "tests/dialogs/DialogProgram.h"

#include <QKeyEvent>
#include <QStyleFactory>
#include <QTest>

#include <cstdlib>

namespace fs = std::filesystem;
using namespace ZEMGis;

namespace {

std::wstring guidOf(const std::wstring &name)
{
    return name.empty() ? std::wstring() : L"{" + name + L"}";
}

boost::shared_ptr<Data::CProperty> propertyOf(const wchar_t *tag, const Data::CDataBox &value)
{
    boost::shared_ptr<Data::CProperty> property(new Data::CProperty);
    property->SetTag(tag);
    property->SetValue(value);
    return property;
}

} // namespace

COverviewTest::COverviewTest() : folder(newDialogFolder("velmor_overview_"))
{
    dialogApplication();
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const char *source = std::getenv("VELMOR_SOURCE_DIR");
    velmor::Services::instance().start({.language = "en"},
                                       velmor::Paths({fs::path(source ? source : ".") / "resources"}, folder));
    session.setMessageSink([](velmor::MessageKind, const std::wstring &) {});
    session.setDrawing(velmor::Drawing::createNew());
}

COverviewTest::~COverviewTest()
{
    velmor::Journal::instance().setRecording(false);
    velmor::Journal::instance().clear();
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

void COverviewTest::addNode(const std::wstring &name, double x, double y)
{
    auto point = std::make_unique<velmor::PointEntity>(AcGePoint3d(x, y));
    AcDbEntity &entity = *point;
    drawing().append(std::move(point));
    drawing().setData(entity, velmor::kNodeKey, velmor::itemsOf(velmor::NodeData{guidOf(name), name}));
}

void COverviewTest::addSection(const std::wstring &name, const std::wstring &from, const std::wstring &to, double y)
{
    const double x = 10.0 * static_cast<double>(network().sections().size());
    auto line = std::make_unique<AcDbLine>(AcGePoint3d(x + 10, y), AcGePoint3d(x, y));
    AcDbEntity &entity = *line;
    drawing().append(std::move(line));
    velmor::SectionData data;
    data.guid = guidOf(name);
    data.name = name;
    data.startNode = guidOf(from);
    data.endNode = guidOf(to);
    drawing().setData(entity, velmor::kSectionKey, velmor::itemsOf(data));
}

COverviewTest::AreaPtr COverviewTest::addArea(const std::wstring &name, double x, const Shares &shares, int mask,
                                              double coefficient)
{
    boost::shared_ptr<Data::CProperties> bag(new Data::CProperties);
    bag->AddProperty(propertyOf(L"CA_GUID", guidOf(name)));
    bag->AddProperty(propertyOf(L"CA_COEFF", coefficient));
    const AcGePoint3dArray ring{{x, 20}, {x + 10, 20}, {x + 10, 30}, {x, 30}};
    auto *manager = Sewage::CCatchmentAreaManager::Instance();
    AreaPtr area = manager->CreateCA(Utility::CTransform::PolygonText(Utility::CTransform::AcadPoly2GeosPoly(ring)),
                                     name, mask, bag);
    Sewage::SectionShares pairs;
    for (const auto &[section, share] : shares)
        pairs.emplace_back(network().sectionByName(section), share);
    if (!pairs.empty())
        manager->AssignCA(pairs, area);
    return area;
}

void COverviewTest::makeNetwork()
{
    for (const wchar_t *node : {L"O1", L"M1", L"M2", L"M3", L"M4"})
        addNode(node, 0, 0);
    addSection(L"S1", L"M1", L"O1");
    addSection(L"S2", L"M2", L"M1");
    addSection(L"S3", L"M3", L"M2");
    addSection(L"T1", L"M4", L"M1", 5);
    addArea(L"A", 0, {{L"S1", 0.25}, {L"S2", 0.75}}, 3, 0.5);
    addArea(L"B", 20, {{L"T1", 1.0}}, 4, 1.0);
    addArea(L"C", 40, {{L"S3", 0.9}}, 2, 0.25);
    log().begin();
    log().keep();
    log().forget();
}

COverviewTest::AreaPtr COverviewTest::areaNamed(const std::wstring &name)
{
    Sewage::CatchmentAreas all;
    Sewage::CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(all, Sewage::kTypeAll);
    for (const AreaPtr &area : all) {
        if (area->GetName() == name)
            return area;
    }
    return {};
}

void COverviewTest::run(const Drive &drive)
{
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        auto *overview = dynamic_cast<CNetworkOverviewDlg *>(&dialog);
        ASSERT_NE(overview, nullptr);
        settle();
        drive(*overview);
    });
    session.commands().addWork(
        L"OVERVIEW", 0,
        [](velmor::Asker &) {
            CNetworkOverviewDlg dialog;
            dialog.DoModal();
            return velmor::Command::Next::Commit;
        },
        false);
    EXPECT_EQ(session.commands().start(L"OVERVIEW"), velmor::RunStatus::Done);
    session.setDialogDriver(nullptr);
}

CTreeListCtrl &COverviewTest::tree(CNetworkOverviewDlg &dialog)
{
    return *dialog.findChild<CTreeListCtrl *>();
}

QTreeWidget &COverviewTest::findings(CNetworkOverviewDlg &dialog)
{
    return *dialog.Control<QTreeWidget>(CNetworkOverviewDlg::kTreeFindings);
}

QString COverviewTest::text(CNetworkOverviewDlg &dialog, int control)
{
    if (const auto *label = dialog.Control<QLabel>(control))
        return label->text();
    const auto *button = dialog.Control<QAbstractButton>(control);
    return button ? button->text() : QString();
}

void COverviewTest::click(CNetworkOverviewDlg &dialog, int control)
{
    auto *button = dialog.Control<QAbstractButton>(control);
    ASSERT_NE(button, nullptr) << control;
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(8, button->height() / 2));
    settle();
}

CTreeListItem *COverviewTest::item(CNetworkOverviewDlg &dialog, const std::vector<std::wstring> &way)
{
    CTreeListCtrl &list = tree(dialog);
    CTreeListItem *found = nullptr;
    for (const std::wstring &name : way) {
        found = list.GetChildItem(found);
        while (found && list.GetItemText(found) != name)
            found = list.GetNextSiblingItem(found);
        if (!found) {
            ADD_FAILURE() << "no row " << velmor::utf8(name);
            return nullptr;
        }
    }
    return found;
}

std::vector<std::string> COverviewTest::rows(CNetworkOverviewDlg &dialog, const std::vector<int> &columns)
{
    std::vector<std::string> found;
    const CTreeListCtrl &list = tree(dialog);
    const std::function<void(const CTreeListItem *)> walk = [&](const CTreeListItem *parent) {
        for (const CTreeListItem *at = parent->FirstChild(); at; at = at->Next()) {
            std::string line(2 * static_cast<std::size_t>(at->Level() - 1), ' ');
            for (const int column : columns)
                line += (column == columns.front() ? "" : "|") + velmor::utf8(at->Text(column));
            while (line.ends_with('|'))
                line.pop_back();
            found.push_back(line);
            walk(at);
        }
    };
    walk(list.GetRootItem());
    return found;
}

void COverviewTest::clickPart(CNetworkOverviewDlg &dialog, CTreeListItem *item, int part, int column)
{
    CTreeListCtrl &list = tree(dialog);
    ASSERT_NE(item, nullptr);
    list.EnsureVisible(item, column);
    settle();
    for (int y = list.GetItemHeight() / 2; y < list.viewport()->height(); y += list.GetItemHeight()) {
        for (int x = 0; x < list.viewport()->width(); x += 2) {
            int flag = 0, hit = -1;
            if (list.HitTest({x, y}, &flag, &hit) != item || flag != part || hit != column)
                continue;
            QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, {x + 2, y});
            settle();
            return;
        }
    }
    ADD_FAILURE() << "the part is not in view";
}

void COverviewTest::settle()
{
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents();
}

void COverviewTest::rename(CNetworkOverviewDlg &dialog, CTreeListItem *item, int column, const QString &name,
                           Qt::Key end)
{
    clickPart(dialog, item, kHitText, column);
    ASSERT_NE(tree(dialog).GetState(kControlEditing), 0u) << "a click opens the editor";
    QWidget *editor = QApplication::focusWidget();
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, name);
    if (name.isEmpty())
        QTest::keyClick(editor, Qt::Key_Delete);
    QTest::keyClick(editor, end);
    settle();
}

std::vector<std::string> COverviewTest::findingsOf(CNetworkOverviewDlg &dialog)
{
    std::vector<std::string> found;
    const QTreeWidget &list = findings(dialog);
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        const QTreeWidgetItem *group = list.topLevelItem(i);
        QStringList texts;
        for (int child = 0; child < group->childCount(); ++child)
            texts.append(group->child(child)->text(0));
        found.push_back((group->text(0) + QStringLiteral(": ") + texts.join(QStringLiteral(", "))).toStdString());
    }
    return found;
}

QTreeWidgetItem *COverviewTest::finding(CNetworkOverviewDlg &dialog, const QString &text)
{
    const auto found = findings(dialog).findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
    EXPECT_FALSE(found.isEmpty()) << text.toStdString();
    return found.isEmpty() ? nullptr : found.front();
}

void COverviewTest::clickFinding(CNetworkOverviewDlg &dialog, const QString &text)
{
    QTreeWidget &list = findings(dialog);
    QTreeWidgetItem *found = finding(dialog, text);
    ASSERT_NE(found, nullptr);
    list.scrollToItem(found);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, list.visualItemRect(found).center());
    settle();
}

std::vector<std::string> COverviewTest::calls(const std::string &operation)
{
    std::vector<std::string> found;
    for (const velmor::JournalEntry &entry : velmor::Journal::instance().entries()) {
        if (entry.operation != operation)
            continue;
        std::string line;
        for (const std::string &argument : entry.arguments)
            line += (line.empty() ? "" : " ") + argument;
        found.push_back(line);
    }
    return found;
}
