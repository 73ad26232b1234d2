// Owners of a row in edit who do more than answer: they end, begin, delete and fill anew from inside of the notices.
#include "tests/controls/EditedTree.h"

#include <algorithm>
#include <functional>
#include <random>
#include <stdexcept>
#include <utility>

using testing::ElementsAre;

// --- Owners who do more than answer ----------------------------------------------------------------------------------

class TreeListEditingNotices : public TreeListEditing, public testing::WithParamInterface<int> {
protected:
    /// Runs once, inside the notice of the parameter.
    void InNotice(std::function<void()> what)
    {
        tree.onNotice = [this, what = std::move(what), done = false](int code, CTreeListItem *, int) mutable {
            if (code != GetParam() || std::exchange(done, true))
                return;
            what();
        };
    }
    void BeginWithText()
    {
        Begin(tree.a, 1);
        tree.Type(L"new");
    }
};

INSTANTIATE_TEST_SUITE_P(OfTheEnd, TreeListEditingNotices,
                         testing::Values(NotifyEndControl, NotifyColumnChanging, NotifyRowChanging, NotifyEndEdit));

TEST_P(TreeListEditingNotices, AnEndInProgressAnswersOneAndTellsNothingTwice)
{
    BeginWithText();
    InNotice([this] {
        EXPECT_EQ(tree.FinishModify(), 1);
        EXPECT_EQ(tree.UpdateModify(), 1);
        EXPECT_EQ(tree.UpdateModifyColumn(), 1);
        EXPECT_EQ(tree.UpdateModifyColumns(), 1);
        EXPECT_EQ(tree.BeginModify(tree.b, 1), 0);
        EXPECT_EQ(tree.BeginModify(tree.a, 2), 0);
    });
    EXPECT_EQ(tree.FinishModify(), 1);
    ExpectNothingInEdit();
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"new");
    EXPECT_THAT(tree.journal, ElementsAre("end control a 1", "column a 1", "row a 1", "end a 0"));
}

TEST_P(TreeListEditingNotices, ACancelFromInsideEndsTheEditOnce)
{
    BeginWithText();
    InNotice([this] { tree.CancelModify(); });
    const int finished = tree.FinishModify();
    ExpectNothingInEdit();
    EXPECT_EQ(std::count_if(tree.journal.begin(), tree.journal.end(),
                            [](const std::string &each) { return each.rfind("end a", 0) == 0; }),
              1);
    const bool tooLate = GetParam() == NotifyEndEdit;
    EXPECT_EQ(finished, tooLate);
    EXPECT_EQ(tree.GetItemText(tree.a, 1), tooLate ? L"new" : L"a1");
    EXPECT_EQ(tree.journal.back(), tooLate ? "end a 0" : "end a -1");
}

TEST_P(TreeListEditingNotices, ARowThatANoticeDeletesEndsItsEdit)
{
    for (const bool moving : {false, true}) {
        EditedTree other;
        const auto act = [&](int code, CTreeListItem *, int) {
            if (code == GetParam())
                other.DeleteItem(std::exchange(other.a, nullptr));
        };
        ASSERT_EQ(other.BeginModify(other.a, 1), 1);
        other.Type(L"new");
        other.onNotice = act;
        if (moving)
            other.BeginModify(other.a, 2);
        else
            other.FinishModify();
        EXPECT_FALSE(other.shown && !other.InEdit());
        if (!other.a) {
            EXPECT_FALSE(other.InEdit());
            EXPECT_EQ(other.GetModifyItem(), nullptr);
            EXPECT_EQ(other.GetCount(), 1);
        }
        EXPECT_THAT(other.journal, testing::Not(testing::Contains("destroyed in edit")));
        other.onNotice = nullptr;
        EXPECT_EQ(other.BeginModify(other.b, 0), 1); // and a new one can begin
    }
}

TEST_P(TreeListEditingNotices, AListThatANoticeFillsAnewIsWithoutAnEdit)
{
    BeginWithText();
    InNotice([this] {
        tree.DeleteAllItems();
        tree.a = tree.AddRow(L'a', TreeListRoot());
    });
    tree.FinishModify();
    ExpectNothingInEdit();
    EXPECT_EQ(tree.GetCount(), 1);
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"a1");
}

TEST_P(TreeListEditingNotices, AColumnThatANoticeDeletesIsAskedForNoMore)
{
    BeginWithText();
    InNotice([this] { tree.DeleteColumn(1); });
    tree.FinishModify();
    ExpectNothingInEdit();
    EXPECT_EQ(tree.GetColumnCount(), 3);
    EXPECT_EQ(tree.GetItemText(tree.a, 0), L"a0");
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"a2");
}

TEST_P(TreeListEditingNotices, AnEarlierColumnThatANoticeDeletesMovesTheEdit)
{
    BeginWithText();
    InNotice([this] { tree.DeleteColumn(0); });
    EXPECT_EQ(tree.FinishModify(), 1);
    ExpectNothingInEdit();
    EXPECT_EQ(tree.GetItemText(tree.a, 0), L"new");
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"a2");
}

TEST_P(TreeListEditingNotices, AnOwnerWhoThrowsLeavesNoEndInProgress)
{
    BeginWithText();
    InNotice([] { throw std::runtime_error("disk full"); });
    EXPECT_THROW(tree.FinishModify(), std::runtime_error);
    EXPECT_FALSE(tree.Ending());
    if (GetParam() == NotifyEndEdit)
        ExpectNothingInEdit();
    else
        EXPECT_EQ(tree.CancelModify(), 1);
    ExpectNothingInEdit();
}

// --- Owners of any kind ----------------------------------------------------------------------------------------------

TEST(TreeListEditingStorm, EveryBegunEditEndsOnceWhateverTheOwnerDoes)
{
    int begun = 0, ended = 0;
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const auto draw = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
        EditedTree tree;
        const auto anyItem = [&]() -> CTreeListItem * {
            return tree.GetVisibleCount() ? tree.GetFirstShowItem(draw(tree.GetVisibleCount())) : nullptr;
        };
        CTreeListItem *inEdit = nullptr; // of whom no end was told yet
        const auto act = [&] {
            if (tree.GetCount() < 3)
                tree.AddRow(L'c', TreeListRoot());
            switch (draw(16)) {
            case 0:
                if (CTreeListItem *item = anyItem())
                    tree.DeleteItem(item);
                break;
            case 1:
                tree.AddRow(static_cast<wchar_t>(L'd' + draw(20)), draw(2) && anyItem() ? anyItem() : TreeListRoot());
                break;
            case 2:
                if (tree.GetColumnCount() > 1)
                    tree.DeleteColumn(draw(tree.GetColumnCount()));
                break;
            case 3:
                tree.InsertColumn(L"new");
                break;
            case 4:
                tree.CancelModify();
                break;
            case 5:
                tree.UpdateModify();
                break;
            case 6:
                tree.UpdateModifyColumn();
                break;
            case 7:
                tree.Expand(anyItem(), draw(4));
                break;
            case 8:
                tree.FinishModify();
                break;
            case 9:
                tree.Type(std::wstring(1, static_cast<wchar_t>(L'A' + draw(26))));
                break;
            case 10:
                tree.SelectItem(anyItem(), draw(3));
                break;
            default:
                tree.BeginModify(anyItem(), draw(tree.GetColumnCount() + 1));
                break;
            }
        };
        int depth = 0;
        tree.onNotice = [&](int code, CTreeListItem *item, int) {
            if (code == NotifyEndEdit) {
                EXPECT_EQ(item, inEdit);
                inEdit = nullptr;
                ++ended;
            } else if (code == NotifyBeginControl && !inEdit) {
                inEdit = item;
                ++begun;
            }
            tree.answers[code] = draw(4) ? 0 : -1;
            if (depth < 3 && draw(3) == 0) {
                ++depth;
                act();
                --depth;
            }
        };
        for (int step = 0; step < 60; ++step) {
            act();
            ASSERT_FALSE(tree.Ending());
            ASSERT_EQ(tree.InEdit(), tree.GetModifyItem() != nullptr);
            ASSERT_EQ(tree.GetModifyItem(), inEdit);
            ASSERT_EQ(tree.begun && !tree.InEdit(), false);
        }
        tree.CancelModify();
        ASSERT_EQ(inEdit, nullptr);
    }
    EXPECT_EQ(begun, ended);
    EXPECT_GT(begun, 10000); // else the draws were useless
}
