// What is left of a run of the dialog when it ends well, ends badly, or is cut off.
#include "tests/definition/manual_fixture.h"

#include "host/editor/Recovery.h"

namespace fs = std::filesystem;
using namespace ZEMGis;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// The dialog as a person has it: a command opens it.
class RunOfTheDialog : public ManualDefinitionTest {
protected:
    RunOfTheDialog() { forgetSteps(); }
    void expectNoLitter()
    {
        EXPECT_THAT(loosePolylines(), IsEmpty());
        EXPECT_THAT(hatches(), IsEmpty());
        EXPECT_THAT(lines(), IsEmpty());
    }
};

TEST_F(RunOfTheDialog, APickAChoiceAndCornersThatAreNotSavedAreNoSteps)
{
    std::size_t before = 0;
    runCommand([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D4"});
        dialog.check(268, true);
        before = log().undoCount();
        pickPoint(dialog, 240, 20);
        dialog.selectRows({1});
        dialog.selectRows({0, 1});
        pickCorners(dialog, {{5000, 0}, {5100, 0}, {5100, 100}});
        EXPECT_THAT(loosePolylines(), SizeIs(1));
        EXPECT_EQ(log().undoCount(), before);
    });
    EXPECT_EQ(log().undoCount(), 1u) << "what start and end of the dialog write";
    expectNoLitter();
    while (log().undo())
        expectNoLitter();
    while (log().redo())
        expectNoLitter();
}

TEST_F(RunOfTheDialog, AnAutomaticRunIsOneStepAndItsOutlinesNeverComeBack)
{
    runCommand([&](CDialogUnderTest &dialog) {
        prepare(dialog, 2, {L"D1", L"D3", L"D4"});
        dialog.click(290);
        ASSERT_THAT(areas(), SizeIs(3));
        EXPECT_EQ(log().undoCount(), 1u) << "with what the start of the dialog wrote";
    });
    EXPECT_EQ(log().undoCount(), 1u) << "and with the settings";
    m_session.commands().start(L"U");
    EXPECT_THAT(areas(), IsEmpty());
    expectNoLitter();
    m_session.commands().start(L"REDO");
    EXPECT_THAT(areas(), SizeIs(3));
    expectNoLitter();
}

TEST_F(RunOfTheDialog, WhenTheProgramDiesInItTheSavedAreasComeBackAndNoOutline)
{
    const fs::path state = m_userFolder / "state", left = m_userFolder / "left";
    auto &recovery = velmor::Recovery::instance();
    recovery.enable(state, {});
    m_session.setDrawing(velmor::Drawing::read(drawing().write()).drawing);
    runCommand([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D4"});
        dialog.check(268, true);
        pickPoint(dialog, 240, 20);
        dialog.selectRows({0, 1});
        dialog.click(221);
        ASSERT_THAT(areas(), SizeIs(2));
        dialog.choose(257, 2);
        dialog.click(290); // draws outlines of its own
        ASSERT_THAT(areas(), SizeIs(2)) << "its centre is known";
        pickPoint(dialog, 50, 50);
        EXPECT_FALSE(loosePolylines().empty());
        fs::copy(state, left, fs::copy_options::recursive); // what the disk holds if it dies now
    });
    recovery.enable(left, {});
    const auto found = recovery.left();
    ASSERT_THAT(found, SizeIs(1));
    auto recovered = recovery.recover(found[0]);
    ASSERT_TRUE(recovered.drawing);
    EXPECT_TRUE(recovered.complete);
    m_session.setDrawing(std::move(recovered.drawing));
    EXPECT_THAT(areas(), SizeIs(2));
    expectNoLitter();
    recovery.disable();
}

TEST_F(RunOfTheDialog, AnObserverThatFailsOverItsEndIsToldAndLeavesNoLitter)
{
    struct Failing final : velmor::DrawingObserver {
        void entityErased(AcDbEntity &, bool) override { throw std::runtime_error("the view is gone"); }
    } failing;
    runCommand([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D4"});
        dialog.check(268, true);
        pickPoint(dialog, 240, 20);
        dialog.click(221);
        dialog.selectRows({});
        dialog.selectRows({0, 1});
        EXPECT_THAT(hatches(), SizeIs(2));
        drawing().addObserver(failing);
    });
    drawing().removeObserver(failing);
    EXPECT_FALSE(alerts().empty());
    EXPECT_THAT(alerts(), testing::Each(HasSubstr(L"the view is gone")));
    EXPECT_THAT(areas(), SizeIs(1));
    expectNoLitter();
    log().undo();
    EXPECT_THAT(areas(), IsEmpty());
    expectNoLitter();
}

} // namespace
