// What the review dialog leaves of itself in the drawing's history: what only shows is no step.
#include "tests/review/review_fixture.h"

#include "host/drawing/ChangeLog.h"
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class HistoryOfTheReview : public ReviewDialogTest {
protected:
    HistoryOfTheReview()
    {
        addSection(L"D1", {0, 5}, {10, 5});
        addArea(L"A1", 1, 0, 0.5, 100, {{L"D1", 1.0}});
        addArea(L"A2", 2, 20);
        log().begin(); // what was drawn so far is no step
        log().keep();
        log().forget();
    }
    velmor::ChangeLog &log() { return drawing().component<velmor::ChangeLog>(); }
    /// The dialog as a person has it: a command opens it.
    void runCommand(const Drive &drive)
    {
        m_session.commands().addWork(L"REVIEW", 0, [&](velmor::Asker &) {
            run(drive);
            return velmor::Command::Next::Commit;
        });
        EXPECT_EQ(m_session.commands().start(L"REVIEW"), velmor::RunStatus::Done);
    }
};

TEST_F(HistoryOfTheReview, SelectionsTicksMarksAndPicksAreNoSteps)
{
    runCommand([&](CReviewUnderTest &dialog) {
        const auto before = log().undoCount();
        dialog.select(L"A2");
        dialog.tick(L"A1");
        dialog.click(124);
        dialog.click(125);
        dialog.click(129);
        dialog.click(134);
        dialog.type(352, "3");
        dialog.click(253);
        dialog.click(114);
        dialog.click(115);
        pickAt(25, 5);
        endPicking();
        dialog.click(209);
        EXPECT_EQ(log().undoCount(), before);
    });
}

TEST_F(HistoryOfTheReview, LabelsOfManyAreasAreOneStep)
{
    const auto count = [&] {
        int standing = 0;
        for (AcDbEntity *entity : drawing().modelSpace().entities())
            standing += !entity->isErased();
        return standing;
    };
    const int before = count();
    runCommand([&](CReviewUnderTest &dialog) {
        dialog.click(124);
        dialog.click(252); // with what the start of the dialog wrote
        const auto steps = log().undoCount();
        EXPECT_EQ(steps, 1u);
        const int labelled = count();
        EXPECT_GE(labelled, before + 2);
        dialog.click(255);
        EXPECT_EQ(log().undoCount(), steps + 1);
        EXPECT_EQ(count(), before);
        dialog.click(252);
        EXPECT_EQ(log().undoCount(), steps + 2);
        EXPECT_EQ(count(), labelled);
    });
    EXPECT_TRUE(log().undo()); // the labels of both areas go at once
    EXPECT_EQ(count(), before);
    while (log().undo()) {
    }
    EXPECT_EQ(count(), before);
}

TEST_F(HistoryOfTheReview, AHandlerThatFailsIsTakenBackAndTheDialogIsInStepAgain)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"A2");
        dialog.select(L"A2");
        dialog.RunHandler([&] {
            areaNamed(L"A2")->SetName(L"other");
            dialog.press(Qt::Key_Delete);
            throw std::runtime_error("out of it");
        });
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"A1", L"A2"));
        EXPECT_EQ(dialog.text(123), "2");
        for (const CReviewUnderTest::AreaPtr &area : dialog.CheckedAreas())
            EXPECT_EQ(area, areaNamed(area->GetName()));
        EXPECT_EQ(dialog.CurrentArea(), areaNamed(dialog.currentName()));
    });
}

TEST_F(HistoryOfTheReview, WhenWhatHearsOfTheFirstItemFailsTheTreeIsFilledOnce)
{
    addArea(L"A3", 2, 40);
    run([&](CReviewUnderTest &dialog) {
        bool armed = true;
        QObject::connect(dialog.Control<QLineEdit>(109), &QLineEdit::textChanged, &dialog, [&] {
            if (std::exchange(armed, false))
                throw std::runtime_error("out of it");
        });
        dialog.press(Qt::Key_Delete); // the tree's event runs inside of it
        EXPECT_FALSE(armed);
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"A2", L"A3"));
        EXPECT_EQ(dialog.currentName(), dialog.selectedName());
        dialog.select(L"A3"); // it still hears
        EXPECT_EQ(dialog.currentName(), L"A3");
    });
    EXPECT_EQ(alerts().size(), 1u);
}

} // namespace
