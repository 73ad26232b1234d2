// What the overview shows in the drawing: checked rows, and the selected one.
#include "tests/overview/overview_fixture.h"

#include "overview/OverviewTexts.h"

#include <QTest>

#include <stdexcept>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class OverviewHighlight : public COverviewTest {
protected:
    OverviewHighlight() { makeNetwork(); }
    static void record()
    {
        velmor::Journal::instance().clear();
        velmor::Journal::instance().setRecording(true);
    }
    /// GUIDs of areas that were marked or unmarked since.
    static std::vector<std::string> firsts(const std::string &operation)
    {
        std::vector<std::string> found;
        for (const std::string &call : calls(operation))
            found.push_back(call.substr(0, call.find(' ')));
        return found;
    }
    std::string idOf(const wchar_t *section)
    {
        record();
        network().sectionByName(section)->DrawTemporary(1, 0);
        const std::string id = firsts("CEntity::DrawTemporary").front();
        acedRedraw(nullptr, 4);
        return id;
    }
};

} // namespace

TEST_F(OverviewHighlight, ACheckedSectionIsDrawnAndItsAreasAreMarked)
{
    const std::string s2 = idOf(L"S2");
    run([&](CNetworkOverviewDlg &dialog) {
        record();
        clickPart(dialog, item(dialog, {L"Outfall O1", L"S2"}), kHitCheck);
        EXPECT_THAT(firsts("CEntity::DrawTemporary"), ElementsAre(s2));
        EXPECT_THAT(firsts("CCatchmentArea::Mark"), ElementsAre("{A}"));
        record();
        clickPart(dialog, item(dialog, {L"Outfall O1", L"S2"}), kHitCheck);
        EXPECT_THAT(calls("acedRedraw"), SizeIs(1));
        EXPECT_THAT(firsts("CCatchmentArea::UnMark"), ElementsAre("{A}"));
        EXPECT_THAT(firsts("CEntity::DrawTemporary"), IsEmpty());
    });
}

TEST_F(OverviewHighlight, AnAreaStaysMarkedAsLongAsOneOfItsRowsIsChecked)
{
    run([&](CNetworkOverviewDlg &dialog) {
        for (const wchar_t *section : {L"S1", L"S2"})
            clickPart(dialog, item(dialog, {L"Outfall O1", section}), kHitCheck);
        record();
        clickPart(dialog, item(dialog, {L"Outfall O1", L"S1"}), kHitCheck);
        EXPECT_THAT(firsts("CCatchmentArea::UnMark"), IsEmpty());
        EXPECT_THAT(firsts("CEntity::DrawTemporary"), ElementsAre(idOf(L"S2"))) << "the other one is drawn anew";
    });
}

TEST_F(OverviewHighlight, TheBoxOfAnAreaMarksItAndNeverDrawsItsSection)
{
    run([&](CNetworkOverviewDlg &dialog) {
        const std::vector<std::wstring> section = {L"Outfall O1", L"S3"}, area = {L"Outfall O1", L"S3", L"C"};
        tree(dialog).Expand(item(dialog, section), kExpand);
        record();
        clickPart(dialog, item(dialog, area), kHitCheck);
        EXPECT_THAT(firsts("CCatchmentArea::Mark"), ElementsAre("{C}"));
        EXPECT_THAT(firsts("CEntity::DrawTemporary"), IsEmpty());
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, section)), kCheckMixed) << "some of it";
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, {L"Outfall O1"})), kCheckMixed);
        record();
        clickPart(dialog, item(dialog, section), kHitCheck);
        EXPECT_THAT(firsts("CEntity::DrawTemporary"), SizeIs(1));
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, section)), kCheckOn);
    });
}

TEST_F(OverviewHighlight, UncheckingAnAreaLeavesItsSectionHighlighted)
{
    run([&](CNetworkOverviewDlg &dialog) {
        const std::vector<std::wstring> section = {L"Outfall O1", L"S3"}, area = {L"Outfall O1", L"S3", L"C"};
        tree(dialog).Expand(item(dialog, section), kExpand);
        clickPart(dialog, item(dialog, section), kHitCheck);
        record();
        clickPart(dialog, item(dialog, area), kHitCheck);
        EXPECT_THAT(firsts("CCatchmentArea::UnMark"), ElementsAre("{C}"));
        EXPECT_THAT(calls("acedRedraw"), IsEmpty());
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, section)), kCheckMixed);
        clickPart(dialog, item(dialog, section), kHitCheck); // all of it
        clickPart(dialog, item(dialog, section), kHitCheck); // nothing of it
        EXPECT_THAT(calls("acedRedraw"), SizeIs(1));
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, section)), kCheckOff);
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, {L"Outfall O1"})), kCheckOff);
    });
}

TEST_F(OverviewHighlight, TheKeyboardOnAnAreaDoesNotDrawItsSectionEither)
{
    run([&](CNetworkOverviewDlg &dialog) {
        tree(dialog).Expand(item(dialog, {L"Outfall O1", L"S3"}), kExpand);
        tree(dialog).SelectItem(item(dialog, {L"Outfall O1", L"S3", L"C"}), kLengthColumn);
        record();
        QTest::keyClick(&tree(dialog), Qt::Key_Insert);
        settle();
        EXPECT_THAT(firsts("CCatchmentArea::Mark"), ElementsAre("{C}"));
        EXPECT_THAT(firsts("CEntity::DrawTemporary"), IsEmpty());
        record();
        click(dialog, CNetworkOverviewDlg::kBtnCheckAll);
        EXPECT_THAT(firsts("CEntity::DrawTemporary"), SizeIs(4));
    });
}

TEST_F(OverviewHighlight, ABranchHighlightsAllThatDrainsToItAndItsParentIsMixed)
{
    const std::string t1 = idOf(L"T1");
    run([&](CNetworkOverviewDlg &dialog) {
        record();
        clickPart(dialog, item(dialog, {L"Outfall O1", L"Branch at M1: T1"}), kHitCheck);
        EXPECT_THAT(firsts("CEntity::DrawTemporary"), ElementsAre(t1));
        EXPECT_THAT(firsts("CCatchmentArea::Mark"), ElementsAre("{B}"));
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, {L"Outfall O1"})), kCheckMixed);
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, {L"Outfall O1", L"Branch at M1: T1", L"T1", L"B"})), kCheckOn);
    });
}

TEST_F(OverviewHighlight, AllAndNothingAreOneClickEach)
{
    run([&](CNetworkOverviewDlg &dialog) {
        record();
        click(dialog, CNetworkOverviewDlg::kBtnCheckAll);
        EXPECT_THAT(firsts("CEntity::DrawTemporary"), SizeIs(4));
        EXPECT_THAT(firsts("CCatchmentArea::Mark"), ElementsAre("{A}", "{B}", "{C}"));
        record();
        click(dialog, CNetworkOverviewDlg::kBtnCheckNone);
        EXPECT_THAT(calls("acedRedraw"), SizeIs(1));
        EXPECT_THAT(firsts("CCatchmentArea::UnMark"), ElementsAre("{A}", "{B}", "{C}"));
    });
}

TEST_F(OverviewHighlight, TheKeyboardChecksTheRowInFocus)
{
    const std::string s3 = idOf(L"S3");
    run([&](CNetworkOverviewDlg &dialog) {
        tree(dialog).SelectItem(item(dialog, {L"Outfall O1", L"S3"}), kLengthColumn);
        record();
        QTest::keyClick(&tree(dialog), Qt::Key_Insert);
        settle();
        EXPECT_THAT(firsts("CEntity::DrawTemporary"), ElementsAre(s3));
        record();
        click(dialog, CNetworkOverviewDlg::kBtnCheckRow);
        EXPECT_THAT(firsts("CCatchmentArea::UnMark"), ElementsAre("{C}"));
    });
}

TEST_F(OverviewHighlight, HighlightingIsNoChangeOfTheDrawing)
{
    const std::string before = drawing().write();
    run([&](CNetworkOverviewDlg &dialog) {
        const std::size_t steps = log().undoCount();
        click(dialog, CNetworkOverviewDlg::kBtnCheckAll);
        tree(dialog).SelectItem(item(dialog, {L"Outfall O1", L"S3"}), kLengthColumn);
        EXPECT_EQ(log().undoCount(), steps);
        EXPECT_EQ(drawing().write(), before);
    });
    EXPECT_EQ(drawing().write(), before);
}

TEST_F(OverviewHighlight, ClosingTakesTheHighlightAway)
{
    run([&](CNetworkOverviewDlg &dialog) {
        click(dialog, CNetworkOverviewDlg::kBtnCheckAll);
        record();
    });
    EXPECT_THAT(calls("acedRedraw"), SizeIs(1));
    EXPECT_THAT(firsts("CCatchmentArea::UnMark"), ElementsAre("{A}", "{B}", "{C}"));
}

TEST_F(OverviewHighlight, ADialogThatAnExceptionLeavesTakesItAwayToo)
{
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        auto &overview = dynamic_cast<CNetworkOverviewDlg &>(dialog);
        click(overview, CNetworkOverviewDlg::kBtnCheckAll);
        record();
        throw std::runtime_error("out of it");
    });
    try {
        CNetworkOverviewDlg dialog;
        dialog.DoModal();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error &) {
    }
    session.setDialogDriver(nullptr);
    EXPECT_THAT(firsts("CCatchmentArea::UnMark"), ElementsAre("{A}", "{B}", "{C}"));
}

namespace {

/// A view that can't be drawn while it is told so.
class CBlindView final : public velmor::SessionView {
public:
    void showDrawing(velmor::Drawing *) override {}
    void redraw() override
    {
        if (m_bFails)
            throw std::runtime_error("nothing to draw on");
    }
    void zoomTo(const velmor::Extents &) override {}
    void showAlert(const std::wstring &) override {}
    void showStatus(const std::wstring &) override {}
    bool m_bFails = false;
};

} // namespace

TEST_F(OverviewHighlight, OneThatFailsIsToldOnceAndNothingIsCheckedAfterIt)
{
    CBlindView view;
    session.setView(&view);
    run([&](CNetworkOverviewDlg &dialog) {
        view.m_bFails = true;
        clickPart(dialog, item(dialog, {L"Outfall O1", L"S2"}), kHitCheck);
        view.m_bFails = false;
        const std::size_t told = session.failures();
        EXPECT_GE(told, 1u);
        settle();
        EXPECT_EQ(session.failures(), told);
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, {L"Outfall O1", L"S2"})), kCheckOff);
        record();
        clickPart(dialog, item(dialog, {L"Outfall O1", L"S2"}), kHitCheck);
        EXPECT_THAT(firsts("CCatchmentArea::Mark"), ElementsAre("{A}"));
    });
    session.setView(nullptr);
}

TEST_F(OverviewHighlight, AClickOnARowZoomsToItUnlessThatIsSwitchedOff)
{
    run([&](CNetworkOverviewDlg &dialog) {
        record();
        clickPart(dialog, item(dialog, {L"Outfall O1", L"S2"}), kHitText, kLengthColumn);
        ASSERT_THAT(calls("CZEMCEdit::zoom"), SizeIs(1));
        const std::string ofSection = calls("CZEMCEdit::zoom").front();
        record();
        clickPart(dialog, item(dialog, {L"Outfall O1"}), kHitText);
        ASSERT_THAT(calls("CZEMCEdit::zoom"), SizeIs(1));
        EXPECT_NE(calls("CZEMCEdit::zoom").front(), ofSection);
        record();
        click(dialog, CNetworkOverviewDlg::kCheckZoom);
        clickPart(dialog, item(dialog, {L"Outfall O1", L"S3"}), kHitText, kLengthColumn);
        EXPECT_THAT(calls("CZEMCEdit::zoom"), IsEmpty());
        click(dialog, CNetworkOverviewDlg::kCheckZoom);
        EXPECT_THAT(calls("CZEMCEdit::zoom"), SizeIs(1)) << "switched on again it shows the selected row";
    });
}
