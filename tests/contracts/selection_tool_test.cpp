// The selection button with a person at the window: its menu, picks while the dialogs are hidden, and what arrives.
#include "tests/contracts/WindowFixture.h"

#include "contracts/HostDialog.h"
#include "host/drawing/Transient.h"
#include "host/editor/SectionChoice.h"
#include "host/network/Network.h"
#include "host/network/NetworkPaths.h"

namespace velmor::test {
namespace {

using testing::ElementsAre;
using ZEMGis::Selection::CSelectionButton;
using ZEMGis::Selection::CSelectionSet;

// Eleven sections: a main N0 to N6 along y = 10, a branch B0, B1 down into N2, a loop N4, L, N5 beside S5, and one
// apart.
constexpr char kElevenSections[] = R"([OPTIONS]
FLOW_UNITS CMS
[JUNCTIONS]
N0 10
N1 10
N2 10
N3 10
N4 10
N5 10
B0 10
B1 10
L 10
X0 10
X1 10
[OUTFALLS]
N6 8 FREE
[CONDUITS]
S1 N0 N1 20 0.01
S2 N1 N2 20 0.01
S3 N2 N3 20 0.01
S4 N3 N4 20 0.01
S5 N4 N5 10 0.01
S6 N5 N6 10 0.01
T1 B0 B1 20 0.01
T2 B1 N2 20 0.01
L1 N4 L 30 0.01
L2 L N5 30 0.01
X X0 X1 10 0.01
[COORDINATES]
N0 0 10
N1 20 10
N2 40 10
N3 60 10
N4 80 10
N5 90 10
N6 100 10
B0 40 50
B1 40 30
L 85 40
X0 0 90
X1 10 90
)";

class Owner : public CAdUiBaseDialog {
public:
    std::vector<unsigned> messages;
    std::function<void()> onMessage;
    std::intptr_t OnWindowMessage(unsigned message, std::uintptr_t, std::intptr_t) override
    {
        messages.push_back(message);
        if (onMessage)
            onMessage();
        return 0;
    }
};

class SelectionToolContract : public WindowFixture {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(importInpText(drawing(), kElevenSections, "net.inp"));
        stray = line(0, 60, 20, 60); // no section
        showWindow();
        button = new CSelectionButton(&dialog);
        button->setParentDialog(&dialog, true);
        button->SetButtonTopologyType(1);
        button->SetHideDisabledMenuOptions(1);
        button->SetSelectionType(0x1EEA001);
    }
    /// Runs the dialog: clicks the button, lets the steps do their work, and ends when they are through.
    void run()
    {
        first([this] { return dialog.isVisible(); }, [this] { button->click(); });
        then([this] { return dialog.isVisible() && QApplication::activePopupWidget() == nullptr && !isPrompting(); },
             [this] { dialog.EndDialog(CAdUiBaseDialog::kOk); });
        dialog.DoModal();
    }
    std::vector<std::wstring> selected()
    {
        const std::unique_ptr<CSelectionSet> set(button->GetSelection());
        std::vector<std::wstring> names;
        for (const auto &section : set->m_sections)
            names.push_back(section->GetName());
        return names;
    }
    std::vector<std::wstring> namesOf(const std::vector<Network::SectionPtr> &sections)
    {
        std::vector<std::wstring> names;
        for (const auto &section : sections)
            names.push_back(section->GetName());
        return names;
    }
    Network &network() { return drawing().component<Network>(); }
    std::wstring guidOf(const wchar_t *node) { return network().nodeByName(node)->GetGuid(); }

    AcDbObjectId stray;
    Owner dialog;
    CSelectionButton *button = nullptr;
};

TEST_F(SelectionToolContract, ThreeByWindowAndOneByClickArriveInTheOrderOfPicking)
{
    bool hidden = false;
    chooseInMenu(QStringLiteral("By pick"));
    atPrompt([&] {
        hidden = !dialog.isVisible();
        drag(-5, 15, 65, 5); // left to right: S1, S2 and S3 lie inside
    });
    atPrompt([this] { click(5, 90); });
    atPrompt([this] { click(50, 10); }); // S3 again
    atPrompt([this] { click(10, 60); }); // no section
    atPrompt([this] { key(Qt::Key_Return); });
    run();
    EXPECT_TRUE(hidden);
    EXPECT_THAT(selected(), ElementsAre(L"S1", L"S2", L"S3", L"X"));
    EXPECT_THAT(dialog.messages, ElementsAre(0x762u));
    EXPECT_TRUE(drawing().component<TransientGraphics>().highlighted().empty()) << "only while it is selected";
}

TEST_F(SelectionToolContract, ShiftTakesASectionOutAgain)
{
    chooseInMenu(QStringLiteral("By pick"));
    atPrompt([this] { drag(-5, 15, 65, 5); });
    atPrompt([this] { QTest::mouseClick(viewport, Qt::LeftButton, Qt::ShiftModifier, pixelOf(30, 10)); });
    atPrompt([this] { key(Qt::Key_Return); });
    run();
    EXPECT_THAT(selected(), ElementsAre(L"S1", L"S3"));
}

TEST_F(SelectionToolContract, WhatIsSelectedShowsWhileMoreIsPicked)
{
    QImage before, after;
    chooseInMenu(QStringLiteral("By pick"));
    atPrompt([&] {
        before = shot();
        click(5, 90);
    });
    atPrompt([&] {
        after = shot();
        key(Qt::Key_Return);
    });
    run();
    EXPECT_GT(differences(before, after), 10);
}

TEST_F(SelectionToolContract, WindowsAreGivenByTheirCorners)
{
    chooseInMenu(QStringLiteral("By window"));
    atPrompt([this] { click(-5, 95); });
    atPrompt([this] { click(15, 85); });
    atPrompt([this] { click(45, 35); }); // from right to left: what it crosses, too
    atPrompt([this] { click(35, 25); });
    atPrompt([this] { key(Qt::Key_Return); });
    run();
    EXPECT_THAT(selected(), ElementsAre(L"X", L"T1", L"T2"));
}

TEST_F(SelectionToolContract, AllNeedsNoPick)
{
    chooseInMenu(QStringLiteral("All sections"));
    run();
    EXPECT_EQ(selected().size(), 11u);
    EXPECT_THAT(dialog.messages, ElementsAre(0x762u));
}

TEST_F(SelectionToolContract, BranchesFollowTheFlowFromAPickedSectionOrNode)
{
    chooseInMenu(QStringLiteral("Upstream branch"));
    atPrompt([this] { click(50, 10); });
    atPrompt([this] { key(Qt::Key_Return); });
    run();
    EXPECT_THAT(selected(), ElementsAre(L"S3", L"S2", L"T2", L"S1", L"T1"));
    chooseInMenu(QStringLiteral("Downstream branch"));
    atPrompt([this] { click(70, 10); });
    atPrompt([this] { key(Qt::Key_Return); });
    run();
    EXPECT_THAT(selected(), ElementsAre(L"S4", L"S5", L"L1", L"S6", L"L2"));
}

TEST_F(SelectionToolContract, APathTakesTheShortestWayBetweenTwoNodesInItsOrder)
{
    chooseInMenu(QStringLiteral("Path between two nodes"));
    atPrompt([this] { click(40, 48); }); // T1 near B0
    atPrompt([this] { click(99, 10); }); // S6 near N6
    atPrompt([this] { key(Qt::Key_Return); });
    run();
    EXPECT_THAT(selected(), ElementsAre(L"T1", L"T2", L"S3", L"S4", L"S5", L"S6"));
}

TEST_F(SelectionToolContract, AnEmptySelectionIsToldAndEscapeTellsTheOldOne)
{
    chooseInMenu(QStringLiteral("By pick"));
    atPrompt([this] { click(5, 90); });
    atPrompt([this] { key(Qt::Key_Return); });
    run();
    EXPECT_THAT(selected(), ElementsAre(L"X"));
    chooseInMenu(QStringLiteral("By pick"));
    atPrompt([this] { click(50, 10); });
    atPrompt([this] { key(Qt::Key_Escape); });
    run();
    EXPECT_THAT(selected(), ElementsAre(L"X")) << "Escape leaves what was selected before";
    chooseInMenu(QStringLiteral("By pick"));
    atPrompt([this] { key(Qt::Key_Return); });
    run();
    EXPECT_TRUE(selected().empty());
    EXPECT_THAT(dialog.messages, ElementsAre(0x762u, 0x762u, 0x762u));
}

TEST_F(SelectionToolContract, AMenuLeftWithoutAChoiceTellsNothing)
{
    then([] { return QApplication::activePopupWidget() != nullptr; },
         [] { QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape); });
    run();
    EXPECT_TRUE(dialog.messages.empty());
}

TEST_F(SelectionToolContract, WithoutNodesBranchesAndPathsAreNotOffered)
{
    for (AcDbEntity *entity : entities())
        if (kindOf(*entity) == EntityKind::Point)
            drawing().erase(*entity);
    EXPECT_FALSE(hasNodes(network()));
    QStringList texts;
    then([] { return QApplication::activePopupWidget() != nullptr; },
         [&] {
             for (const QAction *action : QApplication::activePopupWidget()->actions())
                 texts << action->text();
             QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
         });
    run();
    EXPECT_EQ(texts.size(), 3);
}

TEST_F(SelectionToolContract, WaysThroughTheNetwork)
{
    EXPECT_THAT(namesOf(pathBetween(network(), guidOf(L"N6"), guidOf(L"N4"))), ElementsAre(L"S6", L"S5"))
        << "against the flow, too, and not over the longer loop";
    EXPECT_TRUE(pathBetween(network(), guidOf(L"N0"), guidOf(L"X0")).empty());
    EXPECT_TRUE(pathBetween(network(), guidOf(L"N0"), guidOf(L"N0")).empty());
    EXPECT_TRUE(pathBetween(network(), L"none", guidOf(L"N0")).empty());
    EXPECT_THAT(namesOf(downstreamOfNode(network(), guidOf(L"B1"))),
                ElementsAre(L"T2", L"S3", L"S4", L"S5", L"L1", L"S6", L"L2"));
    std::wstring reason;
    const auto words = splitWords(L"path N0 N3", reason);
    EXPECT_EQ(sectionsByWords(drawing(), *words, reason)->size(), 3u);
    const auto down = splitWords(L"downstream S5", reason);
    EXPECT_EQ(sectionsByWords(drawing(), *down, reason)->size(), 2u);
}

} // namespace
} // namespace velmor::test
