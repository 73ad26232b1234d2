// A tree list of the first module, of whose class the host knows nothing, worked through what it tells screen readers.
#include "host/editor/ControlEvents.h"
#include "tests/host/editor/EditorFixture.h"
#include "tests/host/editor/QtFixture.h"

#include "controls/treelist/TreeListCtrl.h"

#include <gmock/gmock.h>

#include <QVBoxLayout>

#include <algorithm>
#include <functional>
#include <vector>

namespace velmor {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;

constexpr int kTree = 30;

/// Outfall 1 with Pipe 1 (Area A, Area B) and Pipe 2 (Area B), which is open; Outfall 2 with Pipe 3 (Area C), closed.
/// The name and the kind are not edited, the length is.
class TreeDialog : public CAdUiBaseDialog, public CTreeListOwner {
public:
    explicit TreeDialog(std::uint32_t style)
    {
        tree = new CTreeListCtrl(this);
        tree->Create(style, QRect(), this, kTree);
        (new QVBoxLayout(this))->addWidget(tree);
        resize(500, 400);
        tree->SetColumnText(0, L"Name");
        tree->InsertColumn(L"Length", kColumnRight, 80);
        tree->InsertColumn(L"Kind", kColumnLeft, 80);
        tree->SetColumnModify(1, kEditorEdit);
        outfall1 = Add(L"Outfall 1", TreeListRoot());
        CTreeListItem *pipe1 = Add(L"Pipe 1", outfall1);
        areaA = Add(L"Area A", pipe1);
        firstB = Add(L"Area B", pipe1);
        CTreeListItem *pipe2 = Add(L"Pipe 2", outfall1);
        secondB = Add(L"Area B", pipe2);
        outfall2 = Add(L"Outfall 2", TreeListRoot());
        areaC = Add(L"Area C", Add(L"Pipe 3", outfall2));
        tree->SetItemText(areaA, 1, L"0.5");
        for (CTreeListItem *item : {outfall1, pipe1, pipe2})
            tree->Expand(item, kExpand);
        tree->SetOwner(this);
    }
    ~TreeDialog() override { tree->SetOwner(nullptr); }
    CTreeListItem *Add(const wchar_t *name, CTreeListItem *parent)
    {
        CTreeListItem *item = tree->InsertItem(name, parent, TreeListLast());
        tree->SetItemState(item, kItemShowsCheck, 0);
        return item;
    }
    std::int64_t OnTreeListNotify(const TreeListNotice &notice) override
    {
        told.push_back(notice.code);
        if (notice.code == onCode) {
            onCode = 0; // the work may be told of, too
            work();
        }
        return notice.code == vetoed ? -1 : 0;
    }

    CTreeListCtrl *tree = nullptr;
    CTreeListItem *outfall1 = nullptr, *outfall2 = nullptr;
    CTreeListItem *areaA = nullptr, *firstB = nullptr, *secondB = nullptr, *areaC = nullptr;
    std::vector<int> told;
    int vetoed = 0, onCode = 0;
    std::function<void()> work;
};

class TableEventsTest : public test::EditorFixture {
protected:
    static constexpr std::uint32_t kStyle = StyleTree | StyleTreeButtons | StyleHeader | StyleCheck;
    TableEventsTest() { test::application(); }
    /// Works the dialog while it is shown.
    template <class Work>
    void shown(Work work, std::uint32_t style = kStyle)
    {
        TreeDialog dialog(style);
        session.setDialogDriver([&](CAdUiBaseDialog &) {
            ControlEvents events(dialog);
            work(dialog, events);
        });
        dialog.DoModal();
        session.setDialogDriver({});
    }
};

TEST_F(TableEventsTest, AnItemIsPressedByItsTextOnAnyLevelThatIsShown)
{
    shown([](TreeDialog &dialog, ControlEvents &events) {
        EXPECT_EQ(events.expectItem(kTree, L""), std::nullopt) << "nothing is selected yet";
        EXPECT_EQ(events.clickItem(kTree, {L"Area B"}), std::nullopt);
        EXPECT_EQ(dialog.tree->GetSelectedItem(), dialog.firstB) << "the first one alike";
        EXPECT_EQ(events.expectItem(kTree, L"Area B"), std::nullopt);
        EXPECT_THAT(events.expectItem(kTree, L"Pipe 1"), Optional(HasSubstr(L"\"Area B\", not \"Pipe 1\"")));
        EXPECT_THAT(events.clickItem(kTree, {L"Area C"}), Optional(HasSubstr(L"no item \"Area C\"")))
            << "it stands in a closed branch";
        EXPECT_THAT(events.clickItem(kTree, {L"area b"}), Optional(HasSubstr(L"\"area b\"")));
        EXPECT_EQ(dialog.tree->GetSelectedItem(), dialog.firstB);
    });
}

TEST_F(TableEventsTest, APathLeadsToARowRightBeneathAndOpensWhatIsClosedOnTheWay)
{
    shown([](TreeDialog &dialog, ControlEvents &events) {
        EXPECT_EQ(events.clickItem(kTree, {L"Pipe 2", L"Area B"}), std::nullopt);
        EXPECT_EQ(dialog.tree->GetSelectedItem(), dialog.secondB);
        EXPECT_THAT(events.clickItem(kTree, {L"Pipe 2", L"Area A"}), Optional(HasSubstr(L"no item \"Area A\"")))
            << "it stands beneath another pipe";
        EXPECT_THAT(events.clickItem(kTree, {L"Outfall 1", L"Area A"}), Optional(HasSubstr(L"no item \"Area A\"")))
            << "it stands two levels beneath";
        EXPECT_EQ(events.expectRows(kTree, 7), std::nullopt);
        EXPECT_EQ(events.clickItem(kTree, {L"Outfall 2", L"Pipe 3", L"Area C"}), std::nullopt);
        EXPECT_EQ(dialog.tree->GetSelectedItem(), dialog.areaC);
        EXPECT_EQ(events.expectRows(kTree, 9), std::nullopt);
        EXPECT_THAT(events.clickItem(kTree, {L"Outfall 3", L"Pipe 3"}), Optional(HasSubstr(L"\"Pipe 3\"")));
    });
}

TEST_F(TableEventsTest, AnItemIsTickedOnlyWhenItStandsOtherwiseAndInBetweenIsNeither)
{
    shown([](TreeDialog &dialog, ControlEvents &events) {
        EXPECT_EQ(events.tickItem(kTree, {L"Area A"}, false), std::nullopt);
        EXPECT_THAT(dialog.told, IsEmpty());
        EXPECT_EQ(events.tickItem(kTree, {L"Pipe 1", L"Area B"}, true), std::nullopt);
        EXPECT_EQ(events.tickItem(kTree, {L"Pipe 1", L"Area B"}, true), std::nullopt);
        EXPECT_EQ(std::ranges::count(dialog.told, NotifyCheck), 1);
        EXPECT_EQ(dialog.tree->GetCheck(dialog.firstB), kCheckOn);
        EXPECT_EQ(events.expectTick(kTree, {L"Area B"}, true), std::nullopt);
        EXPECT_THAT(events.expectTick(kTree, {L"Area B"}, false), Optional(HasSubstr(L"is checked")));
        EXPECT_THAT(events.expectTick(kTree, {L"Area A"}, true), Optional(HasSubstr(L"not checked")));
        EXPECT_THAT(events.expectTick(kTree, {L"Pipe 1"}, true), Optional(HasSubstr(L"partly checked")));
        EXPECT_THAT(events.expectTick(kTree, {L"Pipe 1"}, false), Optional(HasSubstr(L"partly checked")));
        EXPECT_EQ(events.tickItem(kTree, {L"Pipe 1"}, false), std::nullopt);
        EXPECT_EQ(dialog.tree->GetCheck(dialog.firstB), kCheckOff);
        EXPECT_EQ(events.tickItem(kTree, {L"Outfall 2", L"Pipe 3"}, true), std::nullopt);
        EXPECT_EQ(dialog.tree->GetCheck(dialog.areaC), kCheckOn);
    });
}

TEST_F(TableEventsTest, ATickThatTheOwnerRefusesOrThatHasNoBoxIsOneLine)
{
    shown([](TreeDialog &dialog, ControlEvents &events) {
        dialog.vetoed = NotifyCheck;
        EXPECT_THAT(events.tickItem(kTree, {L"Area A"}, true), Optional(HasSubstr(L"\"Area A\" is not checked")));
        dialog.tree->SetItemState(dialog.areaA, 0, kItemShowsCheck);
        EXPECT_THAT(events.tickItem(kTree, {L"Area A"}, true), Optional(HasSubstr(L"no check box")));
        EXPECT_THAT(events.expectTick(kTree, {L"Area A"}, true), Optional(HasSubstr(L"no check box")));
    });
}

TEST_F(TableEventsTest, RowsAreSelectedAndNoOthers)
{
    shown(
        [](TreeDialog &dialog, ControlEvents &events) {
            EXPECT_EQ(events.selectRows(kTree, {2, 4}), std::nullopt);
            EXPECT_EQ(events.selectRows(kTree, {1, 4}), std::nullopt);
            EXPECT_EQ(dialog.tree->GetSelectedCount(), 2);
            EXPECT_FALSE(dialog.areaA->Has(kItemSelected));
            EXPECT_THAT(events.selectRows(kTree, {7}), Optional(HasSubstr(L"no row 7")));
            EXPECT_EQ(dialog.tree->GetSelectedCount(), 2);
            EXPECT_EQ(events.selectRows(kTree, {}), std::nullopt);
            EXPECT_EQ(dialog.tree->GetSelectedCount(), 0);
        },
        kStyle | StyleMultiSelect);
    shown([](TreeDialog &dialog, ControlEvents &events) {
        EXPECT_EQ(events.selectRows(kTree, {2}), std::nullopt);
        EXPECT_EQ(dialog.tree->GetSelectedItem(), dialog.areaA);
        EXPECT_THAT(events.selectRows(kTree, {2, 3}), Optional(HasSubstr(L"did not select row 2"))) << "one at a time";
    });
}

TEST_F(TableEventsTest, ACellIsLookedAtAndEditedAndAVetoLeavesIt)
{
    shown([](TreeDialog &dialog, ControlEvents &events) {
        EXPECT_EQ(events.expectCell(kTree, 2, 0, L"Area A"), std::nullopt);
        EXPECT_EQ(events.expectCell(kTree, 2, 1, L"0.5"), std::nullopt);
        EXPECT_THAT(events.expectCell(kTree, 2, 1, L"0.6"), Optional(HasSubstr(L"shows \"0.5\" there, not \"0.6\"")));
        EXPECT_THAT(events.expectCell(kTree, 7, 0, L"x"), Optional(HasSubstr(L"no such cell")));
        EXPECT_THAT(events.expectCell(kTree, 0, 3, L"x"), Optional(HasSubstr(L"no such cell")));
        EXPECT_EQ(events.editCell(kTree, 2, 1, L"12,5"), std::nullopt);
        EXPECT_EQ(dialog.tree->GetItemText(dialog.areaA, 1), L"12,5");
        EXPECT_EQ(std::ranges::count(dialog.told, NotifyRowChanging), 1);
        dialog.vetoed = NotifyColumnChanging;
        EXPECT_EQ(events.editCell(kTree, 2, 1, L"13"), std::nullopt);
        EXPECT_EQ(events.expectCell(kTree, 2, 1, L"12,5"), std::nullopt);
        EXPECT_THAT(events.editCell(kTree, 2, 0, L"x"), Optional(HasSubstr(L"nothing can be edited there")));
        EXPECT_THAT(events.editCell(kTree, -1, 1, L"x"), Optional(HasSubstr(L"no such cell")));
        EXPECT_EQ(events.expectRows(kTree, 7), std::nullopt);
        EXPECT_THAT(events.expectRows(kTree, 8), Optional(HasSubstr(L"7 rows, not 8")));
    });
}

TEST_F(TableEventsTest, KeysGoToIt)
{
    shown([](TreeDialog &, ControlEvents &events) {
        EXPECT_EQ(events.clickItem(kTree, {L"Pipe 1"}), std::nullopt);
        EXPECT_EQ(events.pressKey(kTree, L"down"), std::nullopt);
        EXPECT_EQ(events.expectItem(kTree, L"Area A"), std::nullopt);
        EXPECT_EQ(events.pressKey(kTree, L"up"), std::nullopt);
        EXPECT_EQ(events.pressKey(kTree, L"space"), std::nullopt);
        EXPECT_EQ(events.expectRows(kTree, 5), std::nullopt) << "it closes the branch";
    });
}

TEST_F(TableEventsTest, OneThatIsDisabledOrHiddenIsLookedAtButNotWorked)
{
    shown([](TreeDialog &dialog, ControlEvents &events) {
        dialog.tree->setEnabled(false);
        EXPECT_THAT(events.clickItem(kTree, {L"Pipe 1"}), Optional(HasSubstr(L"disabled")));
        EXPECT_THAT(events.tickItem(kTree, {L"Pipe 1"}, true), Optional(HasSubstr(L"disabled")));
        EXPECT_THAT(events.editCell(kTree, 2, 1, L"1"), Optional(HasSubstr(L"disabled")));
        EXPECT_EQ(events.expectCell(kTree, 2, 1, L"0.5"), std::nullopt);
        dialog.tree->setEnabled(true);
        dialog.tree->hide();
        EXPECT_THAT(events.selectRows(kTree, {0}), Optional(HasSubstr(L"hidden")));
        EXPECT_EQ(dialog.tree->GetSelectedItem(), nullptr);
    });
}

TEST_F(TableEventsTest, AnOwnerThatEmptiesItOnTheWayDoesNoHarm)
{
    for (const int code : {NotifySelChanging, NotifySelChanged, NotifyCheck, NotifyExpanding, NotifyColumnChanging}) {
        shown([&](TreeDialog &dialog, ControlEvents &events) {
            dialog.onCode = code;
            dialog.work = [&] { dialog.tree->DeleteAllItems(); };
            (void)events.tickItem(kTree, {L"Area A"}, true);
            (void)events.clickItem(kTree, {L"Outfall 2", L"Pipe 3"});
            (void)events.editCell(kTree, 2, 1, L"7");
            (void)events.selectRows(kTree, {0, 1});
            EXPECT_EQ(events.expectRows(kTree, 0), std::nullopt) << code;
        });
    }
}

} // namespace
} // namespace velmor
