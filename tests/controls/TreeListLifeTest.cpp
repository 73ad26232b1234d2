// A tree list whose memory ends, and one that goes within its own notices.
#include "tests/controls/TreeListJournal.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <new>

namespace {

bool noMemory = false; // for everything but the items, which have their own

/// Goes within the notice of a code, and leaves nothing readable behind.
class GoingList : public TreeListJournal {
public:
    std::int64_t Notify(int code, CTreeListItem *, int) override
    {
        if (code == goesAt)
            delete this;
        return 0;
    }
    static void operator delete(void *block, std::size_t bytes)
    {
        auto *byte = static_cast<volatile unsigned char *>(block);
        for (std::size_t each = 0; each < bytes; ++each)
            byte[each] = 0xDD;
        ::operator delete(block);
    }
    int goesAt = 0;
};

/// With a row of its own and one below.
class TreeListGoes : public testing::TestWithParam<int> {
protected:
    TreeListGoes() : list(new GoingList)
    {
        item = list->InsertItem(L"a");
        list->InsertItem(L"b", item);
        list->goesAt = GetParam();
    }
    GoingList *list;
    CTreeListItem *item;
};

/// With so many rows, all selected; the last one is the newest.
class TreeListFull : public testing::TestWithParam<int> {
protected:
    TreeListFull()
    {
        list.SetStyle(StyleMultiSelect);
        for (int each = 0; each < GetParam(); ++each) {
            items.push_back(list.InsertItem(L"row"));
            list.SelectItem(items.back(), 0, false);
        }
        other = list.InsertItem(L"other");
        list.changes.reserve(1000);
        list.notes.reserve(1000);
        list.steps.reserve(1000);
        list.ensured.reserve(1000);
        list.changes.clear();
        list.notes.clear();
    }
    ~TreeListFull() override { noMemory = false; }
    void ExpectNothingChanged()
    {
        EXPECT_EQ(list.GetSelectedCount(), GetParam());
        EXPECT_EQ(list.GetSelectedItem(), items.back());
        EXPECT_EQ(list.GetFocusItem(), items.back());
        for (CTreeListItem *item : items)
            EXPECT_TRUE(item->Has(kItemSelected));
        EXPECT_FALSE(other->Has(kItemSelected));
    }

    TreeListJournal list;
    std::vector<CTreeListItem *> items;
    CTreeListItem *other = nullptr;
};

} // namespace

void *operator new(std::size_t bytes)
{
    void *block = noMemory ? nullptr : std::malloc(bytes > 0 ? bytes : 1);
    if (!block)
        throw std::bad_alloc();
    return block;
}

void *operator new(std::size_t bytes, const std::nothrow_t &) noexcept
{
    return noMemory ? nullptr : std::malloc(bytes > 0 ? bytes : 1);
}

void operator delete(void *block) noexcept
{
    std::free(block);
}

void operator delete(void *block, std::size_t) noexcept
{
    std::free(block);
}

// --- A list that goes ------------------------------------------------------------------------------------------------

using TreeListGoesSelecting = TreeListGoes;
TEST_P(TreeListGoesSelecting, ItsOperationAnswersNothingAndTouchesItNoMore)
{
    EXPECT_EQ(list->SelectItem(item, 0), 0);
}
INSTANTIATE_TEST_SUITE_P(Notices, TreeListGoesSelecting, testing::Values(NotifySelChanging, NotifySelChanged));

using TreeListGoesExpanding = TreeListGoes;
TEST_P(TreeListGoesExpanding, ItsOperationAnswersNothingAndTouchesItNoMore)
{
    EXPECT_EQ(list->Expand(item, kExpand), 0);
}
INSTANTIATE_TEST_SUITE_P(Notices, TreeListGoesExpanding, testing::Values(NotifyExpanding, NotifyExpanded));

using TreeListGoesMarking = TreeListGoes;
TEST_P(TreeListGoesMarking, ItsOperationAnswersNothingAndTouchesItNoMore)
{
    EXPECT_EQ(GetParam() == NotifyCheck ? list->SetItemCheck(item, true) : list->SetItemLock(item, true), 0);
}
INSTANTIATE_TEST_SUITE_P(Notices, TreeListGoesMarking, testing::Values(NotifyCheck, NotifyLock));

TEST(TreeListGuard, HoldsNothingOnceItsListIsGone)
{
    auto list = std::make_unique<TreeListJournal>();
    const CTreeListItemGuard outer(*list, list->InsertItem(L"a"));
    const CTreeListItemGuard inner(*list, nullptr);
    EXPECT_TRUE(outer.IsModelAlive());
    list.reset();
    EXPECT_EQ(outer.Get(), nullptr);
    EXPECT_FALSE(outer.IsModelAlive());
    EXPECT_FALSE(inner.IsModelAlive());
}

// --- No memory -------------------------------------------------------------------------------------------------------

TEST_P(TreeListFull, ARowThatCannotBecomeTheNewestStaysSelected)
{
    noMemory = true;
    const int done = list.ActiveItem(items.front(), 0);
    noMemory = false;
    EXPECT_EQ(list.GetSelectedCount(), GetParam());
    for (CTreeListItem *item : items)
        EXPECT_TRUE(item->Has(kItemSelected));
    EXPECT_EQ(list.GetSelectedItem(), done ? items.front() : items.back());
}

TEST_P(TreeListFull, ARowThatCannotBeSelectedLeavesTheOthersSelected)
{
    for (const bool clear : {true, false}) {
        list.answer = [](int, CTreeListItem *, int) {
            noMemory = true;
            return 0;
        };
        const int done = list.SelectItem(other, 0, clear);
        noMemory = false;
        if (done) {
            EXPECT_EQ(list.GetSelectedItem(), other);
            return;
        }
        ExpectNothingChanged();
        noMemory = true;
        EXPECT_EQ(list.Select(other), 0);
        noMemory = false;
        ExpectNothingChanged();
    }
}
// Whatever room the list keeps beyond what it needs, it ends at some of these.
INSTANTIATE_TEST_SUITE_P(Counts, TreeListFull, testing::Range(2, 34));
