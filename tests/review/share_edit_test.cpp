// Shares edited in the section list.
#include "tests/controls/ListClicks.h"
#include "tests/review/editing_fixture.h"

#include <QTest>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ShareEdit : public EditingTest {
protected:
    ShareEdit()
    {
        addSection(L"D1", {0, 0}, {10, 0});
        addSection(L"D2", {20, 0}, {30, 0});
        m_area = addArea(L"A", 3, 0, 0.5, 100, {{L"D1", 0.25}, {L"D2", 0.75}});
    }
    /// Types into the share of a row, and ends as if the focus had left.
    static void typeShare(CReviewUnderTest &dialog, int row, const QString &text)
    {
        ASSERT_TRUE(dialog.list()->EditCell(row, 1));
        dialog.list()->GetEditBox()->setText(text);
        EXPECT_TRUE(dialog.list()->CommitEditing());
    }
    /// The notice for a text that came into the cell past the editor's own rule.
    static void notice(CReviewUnderTest &dialog, int row, const wchar_t *text)
    {
        dialog.list()->SetItemText(row, 1, text);
        dialog.RunHandler([&] {
            EXPECT_EQ(dialog.OnWindowMessage(CXListCtrl::DataChangedMessage(), static_cast<std::uintptr_t>(row), 1), 0);
        });
    }
    std::string shareCall(const wchar_t *section, const char *share)
    {
        return "CCatchmentArea::SetConnectedSectionShare(" + guid(m_area) + ", " +
               velmor::journalText(network().sectionByName(section)->GetHandleText()) + ", " + share + ", 1)";
    }
    AreaPtr m_area;
};

TEST_F(ShareEdit, ATypedShareIsStoredAsAFractionAndTheListIsFilledAnew)
{
    run([&](CReviewUnderTest &dialog) {
        ASSERT_THAT(rows(dialog), ElementsAre("D1 25.0000", "D2 75.0000"));
        EXPECT_THAT(recorded([&] { typeShare(dialog, 0, "40"); }), ElementsAre(shareCall(L"D1", "0.4")));
        EXPECT_THAT(shares(m_area), ElementsAre("D1 0.4", "D2 0.75")) << "the others are left as they are";
        EXPECT_THAT(rows(dialog), ElementsAre("D1 40.0000", "D2 75.0000"));
    });
}

TEST_F(ShareEdit, TheListsOwnRuleCutsTypedSharesToThreeDecimals)
{
    run([&](CReviewUnderTest &dialog) {
        typeShare(dialog, 0, "12.34567");
        EXPECT_THAT(rows(dialog), testing::Contains("D1 12.3450"));
        typeShare(dialog, 1, "0");
        EXPECT_THAT(shares(m_area), testing::Contains("D2 0.75")) << "below the least number of a cell";
    });
}

TEST_F(ShareEdit, TwelveCommaFiveIsTakenAsTwelvePointFive)
{
    run([&](CReviewUnderTest &dialog) {
        notice(dialog, 1, L"12,5");
        EXPECT_THAT(shares(m_area), ElementsAre("D1 0.25", "D2 0.125"));
        EXPECT_THAT(rows(dialog), ElementsAre("D1 25.0000", "D2 12.5000"));
    });
}

/// A person with a decimal comma must not store 15 % for 1,5.
TEST_F(ShareEdit, ACommaThatIsTypedIsADecimalPoint)
{
    run([&](CReviewUnderTest &dialog) {
        for (const auto &[typed, stored] :
             {std::pair("12,5", "D1 0.125"), std::pair("1,5", "D1 0.015"), std::pair("1.5", "D1 0.015")}) {
            list_clicks::clickCell(*dialog.list(), 0, 1);
            ASSERT_TRUE(dialog.list()->IsEditing());
            QTest::keyClicks(dialog.list()->GetEditBox(), typed);
            QTest::keyClick(dialog.list()->GetEditBox(), Qt::Key_Return);
            EXPECT_THAT(shares(m_area), testing::Contains(stored)) << typed;
        }
        EXPECT_THAT(rows(dialog), testing::Contains("D1 1.5000"));
    });
}

TEST_F(ShareEdit, BlanksAtTheEndDontCount)
{
    run([&](CReviewUnderTest &dialog) {
        notice(dialog, 0, L"30  ");
        EXPECT_THAT(shares(m_area), ElementsAre("D1 0.3", "D2 0.75"));
    });
}

TEST_F(ShareEdit, ZeroAndAHundredAreTaken)
{
    run([&](CReviewUnderTest &dialog) {
        notice(dialog, 0, L"0");
        notice(dialog, 1, L"100");
        EXPECT_THAT(shares(m_area), ElementsAre("D1 0", "D2 1"));
    });
}

TEST_F(ShareEdit, ByKeysTheNextShareIsEnteredFromWhereTheLastOneWas)
{
    run([&](CReviewUnderTest &dialog) {
        CXListCtrl &list = *dialog.list();
        list.setFocus();
        const auto enter = [&](const char *text) {
            list_clicks::pressKey(list, Qt::Key_F2);
            ASSERT_TRUE(list.IsEditing());
            QTest::keyClicks(list.GetEditBox(), text);
            QTest::keyClick(list.GetEditBox(), Qt::Key_Return);
        };
        list.setCurrentIndex(list.model()->index(0, 1));
        enter("40");
        list_clicks::pressKey(list, Qt::Key_Down);
        enter("60");
        EXPECT_THAT(shares(m_area), ElementsAre("D1 0.4", "D2 0.6"));
    });
}

TEST_F(ShareEdit, ARejectedShareIsSilentlyReplacedByTheStoredOne)
{
    run([&](CReviewUnderTest &dialog) {
        for (const wchar_t *text : {L"100.5", L"-0.001", L"abc", L"12 %", L"", L"1e3", L"1.2.3"}) {
            EXPECT_THAT(recorded([&] { notice(dialog, 0, text); }), IsEmpty()) << velmor::journalText(text);
            EXPECT_THAT(shares(m_area), ElementsAre("D1 0.25", "D2 0.75")) << velmor::journalText(text);
            EXPECT_THAT(rows(dialog), ElementsAre("D1 25.0000", "D2 75.0000")) << velmor::journalText(text);
        }
        EXPECT_THAT(alerts(), IsEmpty());
    });
}

TEST_F(ShareEdit, ATypedShareAboveAHundredIsReplacedByTheStoredOne)
{
    run([&](CReviewUnderTest &dialog) {
        typeShare(dialog, 0, "100.5");
        EXPECT_THAT(shares(m_area), ElementsAre("D1 0.25", "D2 0.75"));
        EXPECT_THAT(rows(dialog), ElementsAre("D1 25.0000", "D2 75.0000"));
    });
}

TEST_F(ShareEdit, TypedLettersNeverReachTheStore)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(recorded([&] { typeShare(dialog, 0, "abc"); }), IsEmpty());
        EXPECT_THAT(rows(dialog), ElementsAre("D1 25.0000", "D2 75.0000"));
    });
}

TEST_F(ShareEdit, AnAbandonedEditChangesNothing)
{
    run([&](CReviewUnderTest &dialog) {
        ASSERT_TRUE(dialog.list()->EditCell(0, 1));
        dialog.list()->GetEditBox()->setText("40");
        dialog.list()->AbandonEditing();
        EXPECT_THAT(shares(m_area), ElementsAre("D1 0.25", "D2 0.75"));
    });
}

TEST_F(ShareEdit, TheSharesAreThoseOfTheAreaInFocusEvenWhenOthersAreChecked)
{
    const AreaPtr other = addArea(L"B", 1, 20, 0.5, 100, {{L"D1", 0.9}});
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"A");
        dialog.tick(L"B");
        dialog.select(L"A");
        typeShare(dialog, 0, "10");
        EXPECT_THAT(shares(m_area), ElementsAre("D1 0.1", "D2 0.75"));
        EXPECT_THAT(shares(other), ElementsAre("D1 0.9"));
    });
}

TEST_F(ShareEdit, ARowWithoutASectionOnlyFillsTheListAnew)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.list()->SetItemData(0, 0);
        EXPECT_THAT(recorded([&] { notice(dialog, 0, L"40"); }), IsEmpty());
        EXPECT_THAT(rows(dialog), ElementsAre("D1 25.0000", "D2 75.0000"));
        notice(dialog, 17, L"40"); // no such row
        EXPECT_THAT(rows(dialog), ElementsAre("D1 25.0000", "D2 75.0000"));
    });
}

} // namespace
