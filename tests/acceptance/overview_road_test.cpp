// The road of the overview: the example town's areas are defined with the script that is shipped, both real modules
// are loaded, the overview is worked through its widgets, and the saved drawing is read back.
#include "tests/acceptance/DefinedTown.h"

#include "contracts/HostDialog.h"
#include "controls/treelist/TreeListCtrl.h"
#include "host/drawing/Drawing.h"
#include "host/editor/CommandStack.h"
#include "host/editor/ModuleLoader.h"
#include "host/editor/Session.h"
#include "host/network/Network.h"
#include "host/services/Services.h"
#include "host/services/Text.h"
#include "host/sewage/CatchmentStore.h"
#include "tests/dialogs/DialogProgram.h"

#include <gmock/gmock.h>

#include <QLabel>
#include <QTest>
#include <QTreeWidget>

#include <map>
#include <set>

namespace velmor {
namespace {

namespace fs = std::filesystem;

using test::number;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

enum Column { Name, Length, From, To, Type, Hectares, Share, Drains, Coefficient, Note };

class OverviewRoad : public test::DefinedTown {
protected:
    std::string town() const { return (*s_town / "out/town.dxf").string(); }
    std::string left() const { return (folder / "left.dxf").string(); }

    /// Opens the town in a session with both modules, works the overview, and what comes after it.
    template <class Work>
    void run(
        Work work, const std::function<void(Session &)> &after = [](Session &) {})
    {
        dialogApplication();
        Services::instance().start({.language = "en"});
        Session session;
        session.setMessageSink({});
        LoadResult loaded = Drawing::load(town());
        ASSERT_TRUE(loaded.drawing) << loaded.message;
        session.setDrawing(std::move(loaded.drawing), town());
        for (const char *module : {VELMOR_MODULE_FILE, VELMOR_OVERVIEW_FILE})
            ASSERT_EQ(session.modules().loadModule(module), std::nullopt);
        int opened = 0;
        session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
            ++opened;
            settle();
            auto *list = dialog.findChild<CTreeListCtrl *>();
            ASSERT_NE(list, nullptr) << "the class of the first module";
            work(session, dialog, *list);
        });
        EXPECT_TRUE(session.commands().run(L"zemsewage_overview"));
        EXPECT_EQ(opened, 1);
        session.setDialogDriver(nullptr);
        EXPECT_THAT(session.alerts(), IsEmpty());
        EXPECT_EQ(session.documentLocks(), 0);
        after(session);
        EXPECT_TRUE(session.drawing()->save(left()));
    }
    static void settle()
    {
        QApplication::processEvents();
        QCoreApplication::sendPostedEvents();
    }
    static void click(CAdUiBaseDialog &dialog, int control)
    {
        QTest::mouseClick(dialog.Control<QAbstractButton>(control), Qt::LeftButton);
        settle();
    }
    static void visit(const CTreeListItem *parent, const std::function<void(const CTreeListItem &)> &work)
    {
        for (const CTreeListItem *at = parent->FirstChild(); at; at = at->Next()) {
            work(*at);
            visit(at, work);
        }
    }
    /// The first row of that name, whose ancestors are opened.
    static CTreeListItem *rowNamed(CTreeListCtrl &list, const std::wstring &name)
    {
        const CTreeListItem *found = nullptr;
        visit(list.GetRootItem(), [&](const CTreeListItem &at) { found = !found && at.Text(0) == name ? &at : found; });
        if (!found) {
            ADD_FAILURE() << utf8(name);
            return nullptr;
        }
        for (CTreeListItem *above = list.GetParentItem(found); above; above = list.GetParentItem(above))
            list.Expand(above, kExpand);
        return const_cast<CTreeListItem *>(found);
    }
    static void rename(CTreeListCtrl &list, const std::wstring &from, const QString &to)
    {
        CTreeListItem *row = rowNamed(list, from);
        list.EnsureVisible(row, Name);
        settle();
        QRect text;
        ASSERT_TRUE(list.GetItemRect(row, Name, text, true));
        QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, text.topLeft() + QPoint(4, 6));
        settle();
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        QTest::keyClicks(QApplication::focusWidget(), to);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        settle();
    }
};

TEST_F(OverviewRoad, EverySectionOfTheTownStandsOnceAndTheSumsAreThoseOfTheTableOfAreas)
{
    const auto areas = areasOf(town());
    double net = 0.0;
    for (const auto &area : areas)
        net += number(area.at("net_area_ha"));
    run([&](Session &session, CAdUiBaseDialog &, CTreeListCtrl &list) {
        std::multiset<std::wstring> sections;
        double length = 0.0, ofAreas = 0.0;
        std::map<std::string, double> shares;
        visit(list.GetRootItem(), [&](const CTreeListItem &row) {
            if (!row.Text(To).empty()) {
                sections.insert(row.Text(Name));
                length += std::stod(row.Text(Length));
            } else if (!row.Text(Share).empty()) {
                shares[utf8(row.Text(Name))] += std::stod(row.Text(Share));
                ofAreas += std::stod(row.Text(Drains));
            }
        });
        const auto &network = session.drawing()->component<Network>();
        std::multiset<std::wstring> expected;
        double whole = 0.0;
        for (const auto &section : network.sections()) {
            expected.insert(section->GetName());
            whole += section->GetLength2D();
        }
        EXPECT_EQ(sections, expected);
        EXPECT_NEAR(length, whole, 0.005 * static_cast<double>(expected.size()));
        EXPECT_THAT(shares, SizeIs(areas.size()));
        for (const auto &[area, percent] : shares)
            EXPECT_NEAR(percent, 100.0, 0.0005) << area;
        EXPECT_NEAR(ofAreas, net, 0.00005 * 200);

        const CTreeListItem *outfall = list.GetRootItem()->FirstChild();
        ASSERT_NE(outfall, nullptr);
        EXPECT_EQ(outfall->Next(), nullptr) << "the town drains to one outfall";
        EXPECT_NEAR(std::stod(outfall->Text(Drains)), net, 0.00006);
        EXPECT_NEAR(std::stod(outfall->Text(Length)), whole, 0.006);
        EXPECT_EQ(outfall->Text(Coefficient), L"0.6000");
    });
}

TEST_F(OverviewRoad, ItTellsThatTheSharesAreWholeAndLeadsToTheTwoSectionsThatDrainNothing)
{
    run([](Session &, CAdUiBaseDialog &dialog, CTreeListCtrl &list) {
        EXPECT_EQ(dialog.Control<QLabel>(103)->text(), "The shares of each area add up to 100 %: 66 areas.");
        EXPECT_EQ(dialog.Control<QLabel>(104)->text(), "Sections that drain nothing: 2 of 70.");
        auto *findings = dialog.Control<QTreeWidget>(102);
        ASSERT_EQ(findings->topLevelItemCount(), 1);
        const QTreeWidgetItem *group = findings->topLevelItem(0);
        ASSERT_EQ(group->childCount(), 2);
        for (int i = 0; i < 2; ++i) {
            QTest::mouseClick(findings->viewport(), Qt::LeftButton, Qt::NoModifier,
                              findings->visualItemRect(group->child(i)).center());
            settle();
            ASSERT_NE(list.GetSelectedItem(), nullptr);
            EXPECT_EQ(QString::fromStdWString(list.GetItemText(list.GetSelectedItem())), group->child(i)->text(0));
            EXPECT_EQ(list.GetItemText(list.GetSelectedItem(), Note), L"no area");
        }
    });
}

TEST_F(OverviewRoad, HighlightingEverythingLeavesNothingInTheDrawing)
{
    run([](Session &session, CAdUiBaseDialog &dialog, CTreeListCtrl &list) {
        const std::string before = session.drawing()->write();
        for (const int control : {110, 112})
            click(dialog, control);
        visit(list.GetRootItem(), [&](const CTreeListItem &row) { EXPECT_EQ(list.GetCheck(&row), kCheckOn); });
        EXPECT_EQ(session.drawing()->write(), before);
    });
    EXPECT_EQ(areasOf(left()), areasOf(town()));
}

TEST_F(OverviewRoad, NamesThatAreEditedStandInTheSavedDrawingAndUndoTakesThemBackOneByOne)
{
    const auto before = areasOf(town());
    run(
        [](Session &, CAdUiBaseDialog &, CTreeListCtrl &list) {
            rename(list, L"D3_1", QStringLiteral("School yard"));
            rename(list, L"D3", QStringLiteral("Main 3"));
        },
        [](Session &session) {
            const auto sectionIs = [&](const wchar_t *name) {
                return session.drawing()->component<Network>().sectionByName(name) != nullptr;
            };
            const auto areaIs = [&](const std::wstring &name) {
                const auto areas = session.drawing()->component<CatchmentStore>().areas();
                return std::ranges::any_of(areas, [&](const auto &area) { return area->GetName() == name; });
            };
            EXPECT_TRUE(sectionIs(L"Main 3") && areaIs(L"School yard"));
            EXPECT_TRUE(session.commands().run(L"U"));
            EXPECT_TRUE(sectionIs(L"D3") && areaIs(L"School yard"));
            EXPECT_TRUE(session.commands().run(L"U"));
            EXPECT_TRUE(sectionIs(L"D3") && areaIs(L"D3_1"));
            EXPECT_TRUE(session.commands().run(L"REDO 2"));
            EXPECT_TRUE(sectionIs(L"Main 3") && areaIs(L"School yard"));
        });
    const auto after = areasOf(left());
    ASSERT_EQ(after.size(), before.size());
    int renamed = 0;
    for (std::size_t i = 0; i < after.size(); ++i) {
        auto expected = before[i];
        renamed += expected["name"] == "D3_1";
        if (expected["name"] == "D3_1")
            expected["name"] = "School yard";
        if (std::string &sections = expected["sections"]; sections.starts_with("D3:"))
            sections = "Main 3" + sections.substr(2);
        EXPECT_EQ(after[i], expected);
    }
    EXPECT_EQ(renamed, 1);
}

TEST_F(OverviewRoad, AScriptOfTheProgramOpensItAndReadsItsTwoLines)
{
    test::writeFile(folder / "look.velmor", "open " + town() +
                                                "\nzemsewage_overview\n    click 110\n    click 112\n"
                                                "    print 103\n    print 104\n    close\n");
    const test::Outcome outcome =
        test::runProgram({"run", (folder / "look.velmor").string(), "--language", "en"}, folder.path());
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("The shares of each area add up to 100 %: 66 areas."));
    EXPECT_THAT(outcome.out, HasSubstr("Sections that drain nothing: 2 of 70."));
}

class MissingModules : public testing::Test {
protected:
    MissingModules()
    {
        fs::create_directory(folder / "modules");
        setenv("VELMOR_MODULE_DIR", (folder / "modules").c_str(), 1);
    }
    ~MissingModules() override { unsetenv("VELMOR_MODULE_DIR"); }
    test::Outcome run(const char *script)
    {
        test::writeFile(folder / "script.velmor", script);
        return test::runProgram({"run", (folder / "script.velmor").string(), "--language", "en"}, folder.path());
    }
    test::ScratchFolder folder;
};

TEST_F(MissingModules, WithoutTheSecondOneTheProgramSaysSoInOneLineAndHasTheCommandsOfTheFirst)
{
    fs::copy_file(VELMOR_MODULE_FILE, folder / "modules/zemxvelmor.so");
    const test::Outcome outcome = run("new\nzemsewage_edit\n    close\n");
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_TRUE(test::isOneLine(outcome.err)) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("the overview of the network is missing"));
    EXPECT_THAT(outcome.err, HasSubstr("zemxoverview.so"));
}

TEST_F(MissingModules, WithoutTheFirstOneOneLineSaysItAll)
{
    fs::copy_file(VELMOR_OVERVIEW_FILE, folder / "modules/zemxoverview.so");
    const test::Outcome outcome = run("new\n");
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_TRUE(test::isOneLine(outcome.err)) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("the catchment commands are missing"));
}

} // namespace
} // namespace velmor
