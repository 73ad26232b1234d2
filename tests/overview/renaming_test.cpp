// Names edited in place: of areas, sections and nodes; each edit one step; what is refused and why.
#include "tests/overview/overview_fixture.h"

#include "host/drawing/ObjectAccess.h"
#include "host/editor/CommandStack.h"
#include "overview/OverviewTexts.h"

#include <QTest>

#include <stdexcept>

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr int kMessage = CNetworkOverviewDlg::kTextMessage;

class OverviewNames : public COverviewTest {
protected:
    OverviewNames() { makeNetwork(); }
    /// One step more than before; undone, the drawing is as it was.
    void expectOneStep(const Drive &change)
    {
        std::string before, after;
        run([&](CNetworkOverviewDlg &dialog) {
            dialog.RunHandler([&] { drawing().setDictionaryEntry("TEST", "FIRST", {{1, std::wstring(L"step")}}); });
            const std::size_t steps = log().undoCount();
            before = drawing().write();
            change(dialog);
            EXPECT_EQ(log().undoCount(), steps + 1);
            after = drawing().write();
            EXPECT_NE(before, after);
        });
        EXPECT_EQ(session.commands().start(L"U"), velmor::RunStatus::Done);
        EXPECT_EQ(drawing().write(), before);
        EXPECT_EQ(session.commands().start(L"REDO"), velmor::RunStatus::Done);
        EXPECT_EQ(drawing().write(), after);
    }
};

/// Fails once, when the entity's data is about to change.
class CFailsOnce final : public velmor::DrawingObserver {
public:
    CFailsOnce(velmor::Drawing &drawing, AcDbObjectId entity)
        : m_drawing(drawing), m_pEntity(velmor::ObjectAccess::object(entity))
    {
        m_drawing.addObserver(*this);
    }
    ~CFailsOnce() override { m_drawing.removeObserver(*this); }

private:
    void dataChanging(AcDbObject &object, const std::string &) override
    {
        if (&object != m_pEntity)
            return;
        m_pEntity = nullptr;
        throw std::runtime_error("the disk is gone");
    }
    velmor::Drawing &m_drawing;
    const AcDbObject *m_pEntity;
};

} // namespace

TEST_F(OverviewNames, AnAreaIsRenamedInAllItsRowsByOneStep)
{
    expectOneStep([&](CNetworkOverviewDlg &dialog) {
        tree(dialog).Expand(item(dialog, {L"Outfall O1", L"S1"}), kExpand);
        rename(dialog, item(dialog, {L"Outfall O1", L"S1", L"A"}), kNameColumn, "  North side ");
        EXPECT_TRUE(areaNamed(L"North side"));
        EXPECT_FALSE(areaNamed(L"A"));
        EXPECT_THAT(rows(dialog, {kNameColumn}), testing::Not(Contains(HasSubstr("    A"))));
        EXPECT_EQ(std::ranges::count(rows(dialog, {kNameColumn}), "    North side"), 2);
        EXPECT_EQ(tree(dialog).GetState(kControlEditing), 0u);
    });
}

TEST_F(OverviewNames, ASectionIsRenamedByOneStep)
{
    expectOneStep([&](CNetworkOverviewDlg &dialog) {
        rename(dialog, item(dialog, {L"Outfall O1", L"S2"}), kNameColumn, "Main 2");
        ASSERT_TRUE(network().sectionByName(L"Main 2"));
        EXPECT_EQ(network().sectionByName(L"Main 2")->GetGuid(), L"{S2}");
        EXPECT_THAT(rows(dialog, {kNameColumn}), Contains("  Main 2"));
    });
}

TEST_F(OverviewNames, ANodeIsRenamedWhereverItStandsByOneStep)
{
    expectOneStep([&](CNetworkOverviewDlg &dialog) {
        rename(dialog, item(dialog, {L"Outfall O1", L"S2"}), kToColumn, "K7");
        ASSERT_TRUE(network().nodeByName(L"K7"));
        EXPECT_THAT(rows(dialog, {kNameColumn, kFromColumn, kToColumn}),
                    testing::IsSupersetOf({"  S1|K7|O1", "  Branch at K7: T1", "    T1|M4|K7", "  S2|M2|K7"}));
    });
}

TEST_F(OverviewNames, TheOutfallsTitleFollowsTheNameOfItsNode)
{
    run([&](CNetworkOverviewDlg &dialog) {
        rename(dialog, item(dialog, {L"Outfall O1", L"S1"}), kToColumn, "Creek");
        EXPECT_EQ(rows(dialog, {kNameColumn}).front(), "Outfall Creek");
    });
}

TEST_F(OverviewNames, ABranchsTitleFollowsTheNameOfItsFirstSection)
{
    run([&](CNetworkOverviewDlg &dialog) {
        CTreeListItem *branch = item(dialog, {L"Outfall O1", L"Branch at M1: T1"});
        tree(dialog).Expand(branch, kExpand);
        rename(dialog, branch->FirstChild(), kNameColumn, "Side");
        EXPECT_EQ(tree(dialog).GetItemText(branch), L"Branch at M1: Side");
        rename(dialog, item(dialog, {L"Outfall O1", L"S1"}), kNameColumn, "Main");
        EXPECT_EQ(tree(dialog).GetItemText(item(dialog, {L"Outfall O1"})), L"Outfall O1");
    });
}

TEST_F(OverviewNames, SeveralNamesOfARowAreOneStep)
{
    expectOneStep([&](CNetworkOverviewDlg &dialog) {
        CTreeListItem *row = item(dialog, {L"Outfall O1", L"S3"});
        rename(dialog, row, kNameColumn, "X3", Qt::Key_Tab);
        EXPECT_EQ(tree(dialog).GetModifyColumn(), kFromColumn) << "Tab goes to the next name";
        QTest::keyClicks(QApplication::focusWidget(), "Y3");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        settle();
        EXPECT_TRUE(network().sectionByName(L"X3"));
        EXPECT_TRUE(network().nodeByName(L"Y3"));
    });
}

TEST_F(OverviewNames, AnUnchangedNameIsNoStepAndEscapeGivesAnEditUp)
{
    run([&](CNetworkOverviewDlg &dialog) {
        const std::string before = drawing().write();
        const std::size_t steps = log().undoCount();
        rename(dialog, item(dialog, {L"Outfall O1", L"S2"}), kNameColumn, "S2");
        rename(dialog, item(dialog, {L"Outfall O1", L"S3"}), kNameColumn, "given up", Qt::Key_Escape);
        EXPECT_TRUE(dialog.isVisible()) << "Escape ended the edit alone";
        EXPECT_EQ(tree(dialog).GetItemText(item(dialog, {L"Outfall O1", L"S3"})), L"S3");
        EXPECT_EQ(log().undoCount(), steps);
        EXPECT_EQ(drawing().write(), before);
    });
}

TEST_F(OverviewNames, ADoubledNameIsRefusedWithAWordAndTheRowStaysAsItWas)
{
    run([&](CNetworkOverviewDlg &dialog) {
        click(dialog, CNetworkOverviewDlg::kBtnExpand);
        const std::string before = drawing().write();
        struct Case {
            std::vector<std::wstring> way;
            int column;
            const char *name, *message;
        };
        const std::vector<Case> cases = {
            {{L"Outfall O1", L"S1", L"A"}, kNameColumn, "C", "Another area has the name C already."},
            {{L"Outfall O1", L"S2"}, kNameColumn, "T1", "Another section has the name T1 already."},
            {{L"Outfall O1", L"S2"}, kFromColumn, "O1", "Another node has the name O1 already."},
            {{L"Outfall O1", L"S2"}, kNameColumn, "", "A name can't be empty."},
            {{L"Outfall O1", L"S2"}, kNameColumn, "   ", "A name can't be empty."}};
        for (const Case &one : cases) {
            CTreeListItem *row = item(dialog, one.way);
            const std::wstring present = tree(dialog).GetItemText(row, one.column);
            rename(dialog, row, one.column, one.name);
            EXPECT_EQ(text(dialog, kMessage).toStdString(), one.message);
            EXPECT_TRUE(dialog.Control<QLabel>(kMessage)->font().bold());
            tree(dialog).CancelModify();
            EXPECT_EQ(tree(dialog).GetItemText(row, one.column), present);
            EXPECT_EQ(drawing().write(), before);
        }
        rename(dialog, item(dialog, {L"Outfall O1", L"S2"}), kNameColumn, "S9");
        EXPECT_FALSE(dialog.Control<QLabel>(kMessage)->font().bold()) << "what was wrong is past";
    });
}

TEST_F(OverviewNames, NamesOfBranchesAndWhatIsNoNameTakeNoEditor)
{
    run([&](CNetworkOverviewDlg &dialog) {
        for (const int column : {kNameColumn, kLengthColumn, kFromColumn, kNoteColumn})
            EXPECT_EQ(tree(dialog).GetControl(item(dialog, {L"Outfall O1"}), column), kEditorStatic) << column;
        for (const int column : {kLengthColumn, kTypeColumn, kHectaresColumn, kShareColumn, kNoteColumn})
            EXPECT_EQ(tree(dialog).GetControl(item(dialog, {L"Outfall O1", L"S1"}), column), kEditorStatic) << column;
        for (const int column : {kFromColumn, kToColumn})
            EXPECT_EQ(tree(dialog).GetControl(item(dialog, {L"Outfall O1", L"S1", L"A"}), column), kEditorStatic);
    });
}

TEST_F(OverviewNames, ARenamingThatFailsIsTakenBackAndToldAndTheNextOneGoesWell)
{
    run([&](CNetworkOverviewDlg &dialog) {
        const std::string before = drawing().write();
        {
            CFailsOnce failure(drawing(), network().sectionByName(L"S2")->GetObjectId());
            rename(dialog, item(dialog, {L"Outfall O1", L"S2"}), kNameColumn, "X2");
        }
        EXPECT_EQ(drawing().write(), before);
        ASSERT_THAT(session.alerts(), testing::SizeIs(1));
        EXPECT_THAT(session.alerts().front(), HasSubstr(L"the disk is gone"));
        EXPECT_THAT(rows(dialog, {kNameColumn}), Contains("  S2"));
        rename(dialog, item(dialog, {L"Outfall O1", L"S2"}), kNameColumn, "X2");
        EXPECT_TRUE(network().sectionByName(L"X2"));
    });
}

TEST_F(OverviewNames, ANameThatWasGivenUpIsFreeAndOneThatWasTakenIsNot)
{
    run([&](CNetworkOverviewDlg &dialog) {
        rename(dialog, item(dialog, {L"Outfall O1", L"S2"}), kNameColumn, "X2");
        rename(dialog, item(dialog, {L"Outfall O1", L"S3"}), kNameColumn, "X2");
        EXPECT_EQ(text(dialog, kMessage), "Another section has the name X2 already.");
        tree(dialog).CancelModify();
        rename(dialog, item(dialog, {L"Outfall O1", L"S3"}), kNameColumn, "S2");
        EXPECT_EQ(network().sectionByName(L"S2")->GetGuid(), L"{S3}");
    });
}

TEST_F(OverviewNames, WhenTheSecondNameOfARowFailsTheFirstIsTakenBackWhereverItIsShown)
{
    run([&](CNetworkOverviewDlg &dialog) {
        const std::string before = drawing().write();
        const auto shown = rows(dialog, {kNameColumn, kFromColumn, kToColumn});
        rename(dialog, item(dialog, {L"Outfall O1", L"S2"}), kFromColumn, "K2", Qt::Key_Tab);
        ASSERT_EQ(tree(dialog).GetModifyColumn(), kToColumn);
        {
            CFailsOnce failure(drawing(), network().nodeByName(L"M1")->GetObjectId());
            QTest::keyClicks(QApplication::focusWidget(), "K1");
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
            settle();
        }
        EXPECT_EQ(session.alerts().size(), 1u);
        EXPECT_EQ(drawing().write(), before);
        EXPECT_EQ(rows(dialog, {kNameColumn, kFromColumn, kToColumn}), shown);
        rename(dialog, item(dialog, {L"Outfall O1", L"S3"}), kFromColumn, "K2");
        EXPECT_EQ(network().nodeByName(L"K2")->GetGuid(), L"{M3}") << "the name was given back";
    });
}

TEST_F(OverviewNames, TwoNamesOfARowThatAreOneAreRefusedBeforeAnythingIsWritten)
{
    run([&](CNetworkOverviewDlg &dialog) {
        const std::string before = drawing().write();
        const std::size_t steps = log().undoCount();
        const auto shown = rows(dialog, {kNameColumn, kFromColumn, kToColumn});
        rename(dialog, item(dialog, {L"Outfall O1", L"S2"}), kFromColumn, "Z", Qt::Key_Tab);
        QTest::keyClicks(QApplication::focusWidget(), "Z");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        settle();
        EXPECT_EQ(text(dialog, kMessage), "Another node has the name Z already.");
        EXPECT_EQ(drawing().write(), before);
        EXPECT_EQ(log().undoCount(), steps);
        EXPECT_EQ(rows(dialog, {kNameColumn, kFromColumn, kToColumn}), shown);
        rename(dialog, item(dialog, {L"Outfall O1", L"S2"}), kFromColumn, "Z");
        EXPECT_TRUE(network().nodeByName(L"Z")) << "the name is free";
    });
}

TEST_F(OverviewNames, ARefusedRowKeepsTheDialogOpenWithItsMessageWhenItIsClosed)
{
    run([&](CNetworkOverviewDlg &dialog) {
        rename(dialog, item(dialog, {L"Outfall O1", L"S2"}), kFromColumn, "Z", Qt::Key_Tab);
        QTest::keyClicks(QApplication::focusWidget(), "Z");
        dialog.close();
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(text(dialog, kMessage), "Another node has the name Z already.");
    });
}

TEST_F(OverviewNames, ASectionFromANodeToItselfRenamesItFromEitherCell)
{
    addNode(L"R", 0, 50);
    addSection(L"Ring", L"R", L"R");
    run([&](CNetworkOverviewDlg &dialog) {
        rename(dialog, item(dialog, {L"Ring at R", L"Ring"}), kToColumn, "Q");
        EXPECT_TRUE(network().nodeByName(L"Q"));
        rename(dialog, item(dialog, {L"Ring at Q", L"Ring"}), kFromColumn, "P");
        EXPECT_THAT(rows(dialog, {kNameColumn, kFromColumn, kToColumn}), Contains("  Ring|P|P"));
    });
}

TEST_F(OverviewNames, AColumnThatNobodyTouchedIsNeitherJudgedNorWritten)
{
    addSection(L" S1", L"M4", L"O1"); // a blank in front, and another one has the rest of it
    run([&](CNetworkOverviewDlg &dialog) {
        CTreeListItem *row = item(dialog, {L"Outfall O1", L"Branch at O1:  S1", L" S1"});
        tree(dialog).Expand(tree(dialog).GetParentItem(row), kExpand);
        rename(dialog, row, kFromColumn, "K4");
        EXPECT_TRUE(network().nodeByName(L"K4"));
        EXPECT_TRUE(network().sectionByName(L" S1"));
    });
}

TEST_F(OverviewNames, WhatStandsOnALockedLayerIsNotRenamed)
{
    velmor::Layer locked = drawing().layer(0);
    locked.locked = true;
    drawing().setLayer(0, locked);
    run([&](CNetworkOverviewDlg &dialog) {
        const std::string before = drawing().write();
        rename(dialog, item(dialog, {L"Outfall O1", L"S2"}), kNameColumn, "X2");
        EXPECT_EQ(text(dialog, kMessage), "S2 can't be renamed here; the name stays.");
        EXPECT_THAT(rows(dialog, {kNameColumn}), Contains("  S2"));
        EXPECT_EQ(drawing().write(), before);
    });
}

TEST_F(OverviewNames, AfterAFailureRowsAreOpenCheckedAndSelectedAsBefore)
{
    run([&](CNetworkOverviewDlg &dialog) {
        click(dialog, CNetworkOverviewDlg::kBtnExpand);
        clickPart(dialog, item(dialog, {L"Outfall O1", L"S3"}), kHitCheck);
        const int shown = tree(dialog).GetVisibleCount();
        {
            CFailsOnce failure(drawing(), network().sectionByName(L"S2")->GetObjectId());
            rename(dialog, item(dialog, {L"Outfall O1", L"S2"}), kNameColumn, "X2");
        }
        EXPECT_EQ(tree(dialog).GetVisibleCount(), shown);
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, {L"Outfall O1", L"S3"})), kCheckOn);
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, {L"Outfall O1", L"S3", L"C"})), kCheckOn);
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, {L"Outfall O1"})), kCheckMixed);
        EXPECT_EQ(tree(dialog).GetSelectedItem(), item(dialog, {L"Outfall O1", L"S2"}));
    });
}

TEST_F(OverviewNames, ClosingTakesTheNameThatIsBeingTypedOrStaysOpenWhenItIsRefused)
{
    run([&](CNetworkOverviewDlg &dialog) {
        clickPart(dialog, item(dialog, {L"Outfall O1", L"S2"}), kHitText);
        QTest::keyClicks(QApplication::focusWidget(), "T1");
        dialog.close();
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(text(dialog, kMessage), "Another section has the name T1 already.");
        QTest::keyClicks(QApplication::focusWidget(), "Z");
        dialog.close();
        EXPECT_FALSE(dialog.isVisible());
    });
    EXPECT_TRUE(network().sectionByName(L"T1Z"));
}
