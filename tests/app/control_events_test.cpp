#include "host/editor/ControlEvents.h"
#include "tests/app/ScriptDialog.h"
#include "tests/host/editor/EditorFixture.h"
#include "tests/host/editor/QtFixture.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

using testing::HasSubstr;
using testing::Optional;

class ControlEventsTest : public test::EditorFixture {
protected:
    ControlEventsTest() { test::application(); }
    /// Works the dialog while it is shown.
    template <class Work>
    void shown(Work work)
    {
        test::ScriptDialog dialog;
        session.setDialogDriver([&](CAdUiBaseDialog &) {
            ControlEvents events(dialog);
            work(dialog, events);
        });
        dialog.DoModal();
        session.setDialogDriver({});
    }
};

TEST_F(ControlEventsTest, AClickRunsTheHandler)
{
    shown([](test::ScriptDialog &dialog, ControlEvents &events) {
        EXPECT_EQ(events.click(10), std::nullopt);
        EXPECT_EQ(events.click(10), std::nullopt);
        EXPECT_EQ(dialog.clicks, 2);
        EXPECT_EQ(events.expectText(11, L"2"), std::nullopt);
        EXPECT_THAT(events.expectText(11, L"3"), Optional(HasSubstr(L"shows \"2\"")));
    });
}

TEST_F(ControlEventsTest, AControlThatIsDisabledHiddenAbsentOrOfAnotherKindIsRefused)
{
    shown([](test::ScriptDialog &, ControlEvents &events) {
        EXPECT_THAT(events.click(18), Optional(HasSubstr(L"disabled")));
        EXPECT_THAT(events.click(19), Optional(HasSubstr(L"hidden")));
        EXPECT_THAT(events.click(999), Optional(HasSubstr(L"no control 999")));
        EXPECT_THAT(events.click(11), Optional(HasSubstr(L"is no button")));
        EXPECT_THAT(events.check(10, true), Optional(HasSubstr(L"is no check box")));
        EXPECT_THAT(events.type(16, L"x"), Optional(HasSubstr(L"read-only")));
        EXPECT_THAT(events.choose(15, 0), Optional(HasSubstr(L"is no combo box")));
        EXPECT_THAT(events.selectRows(15, {0}), Optional(HasSubstr(L"is no list")));
    });
}

TEST_F(ControlEventsTest, ACheckBoxIsClickedOnlyWhenItStandsOtherwise)
{
    shown([](test::ScriptDialog &dialog, ControlEvents &events) {
        EXPECT_EQ(events.check(12, false), std::nullopt);
        EXPECT_EQ(dialog.checkClicks, 0);
        EXPECT_EQ(events.check(12, true), std::nullopt);
        EXPECT_EQ(dialog.checkClicks, 1);
        EXPECT_EQ(events.expectChecked(12, true), std::nullopt);
        EXPECT_NE(events.expectChecked(12, false), std::nullopt);
    });
}

TEST_F(ControlEventsTest, AComboBoxWithNumbersIsChosenByThemAndAnotherByIndex)
{
    shown([](test::ScriptDialog &dialog, ControlEvents &events) {
        EXPECT_EQ(events.choose(13, 10), std::nullopt);
        EXPECT_EQ(dialog.numbers->currentIndex(), 1);
        EXPECT_EQ(events.choose(13, 10), std::nullopt); // again: a person's choice is told again
        EXPECT_THAT(dialog.activated, testing::ElementsAre(1, 1));
        EXPECT_THAT(events.choose(13, 1), Optional(HasSubstr(L"no item with the value 1")));
        EXPECT_EQ(events.choose(14, 1), std::nullopt);
        EXPECT_EQ(events.expectText(14, L"high"), std::nullopt);
        EXPECT_THAT(events.choose(14, 2), Optional(HasSubstr(L"no item 2")));
        EXPECT_EQ(events.chooseText(13, L"by section"), std::nullopt);
        EXPECT_EQ(dialog.numbers->currentIndex(), 0);
        EXPECT_NE(events.chooseText(13, L"By section"), std::nullopt);
    });
}

TEST_F(ControlEventsTest, TypingReplacesTheTextAndLeavesTheEdit)
{
    shown([](test::ScriptDialog &dialog, ControlEvents &events) {
        dialog.edit->setText(QStringLiteral("old"));
        EXPECT_EQ(events.type(15, L"2.5 ha"), std::nullopt);
        EXPECT_EQ(events.expectText(15, L"2.5 ha"), std::nullopt);
        EXPECT_EQ(dialog.edits, 1);
        EXPECT_EQ(events.type(15, L""), std::nullopt);
        EXPECT_EQ(dialog.edit->text(), QString());
    });
}

TEST_F(ControlEventsTest, RowsAreSelectedAndNoOthers)
{
    shown([](test::ScriptDialog &dialog, ControlEvents &events) {
        EXPECT_EQ(events.selectRows(17, {0, 2}), std::nullopt);
        EXPECT_EQ(dialog.table->selectionModel()->selectedRows().size(), 2);
        EXPECT_EQ(events.selectRows(17, {1}), std::nullopt);
        ASSERT_EQ(dialog.table->selectionModel()->selectedRows().size(), 1);
        EXPECT_EQ(dialog.table->selectionModel()->selectedRows()[0].row(), 1);
        EXPECT_THAT(events.selectRows(17, {3}), Optional(HasSubstr(L"no row 3")));
        EXPECT_EQ(dialog.table->selectionModel()->selectedRows().size(), 1);
        EXPECT_EQ(events.expectRows(17, 3), std::nullopt);
        EXPECT_NE(events.expectRows(17, 2), std::nullopt);
        EXPECT_EQ(events.expectCell(17, 2, 1, L"r2"), std::nullopt);
        EXPECT_NE(events.expectCell(17, 2, 1, L"r1"), std::nullopt);
        EXPECT_NE(events.expectCell(17, 9, 1, L"r1"), std::nullopt);
    });
}

TEST_F(ControlEventsTest, ItemsAreClickedByTheirTextsOnLevelsFurtherDownToo)
{
    shown([](test::ScriptDialog &dialog, ControlEvents &events) {
        EXPECT_EQ(events.clickItem(23, {L"second"}), std::nullopt);
        EXPECT_EQ(dialog.tree->currentItem(), dialog.tree->topLevelItem(1));
        EXPECT_EQ(events.expectItem(23, L"second"), std::nullopt);
        EXPECT_THAT(events.expectItem(23, L"first"), Optional(HasSubstr(L"\"second\"")));
        EXPECT_EQ(events.clickItem(23, {L"first", L"inner"}), std::nullopt);
        EXPECT_EQ(dialog.tree->currentItem(), dialog.tree->topLevelItem(0)->child(0));
        auto *innermost = new QTreeWidgetItem(dialog.tree->topLevelItem(1)->child(0), {QStringLiteral("innermost")});
        EXPECT_EQ(events.clickItem(23, {L"second", L"inner", L"innermost"}), std::nullopt);
        EXPECT_EQ(dialog.tree->currentItem(), innermost);
        EXPECT_THAT(events.clickItem(23, {L"inner"}), Optional(HasSubstr(L"no item \"inner\"")));
        EXPECT_THAT(events.clickItem(10, {L"inner"}), Optional(HasSubstr(L"is no list")));
    });
}

TEST_F(ControlEventsTest, AnItemIsTickedOnlyWhenItStandsOtherwise)
{
    shown([](test::ScriptDialog &dialog, ControlEvents &events) {
        int changes = 0;
        QObject::connect(dialog.tree, &QTreeWidget::itemChanged, &dialog, [&] { ++changes; });
        EXPECT_EQ(events.tickItem(23, {L"second"}, false), std::nullopt);
        EXPECT_EQ(changes, 0);
        EXPECT_EQ(events.tickItem(23, {L"second"}, true), std::nullopt);
        EXPECT_EQ(events.tickItem(23, {L"second"}, true), std::nullopt);
        EXPECT_EQ(changes, 1);
        EXPECT_EQ(dialog.tree->topLevelItem(1)->checkState(0), Qt::Checked);
        EXPECT_EQ(dialog.tree->topLevelItem(0)->checkState(0), Qt::Unchecked);
        EXPECT_EQ(events.expectTick(23, {L"second"}, true), std::nullopt);
        EXPECT_THAT(events.expectTick(23, {L"first"}, true), Optional(HasSubstr(L"not checked")));
        EXPECT_THAT(events.expectTick(23, {L"third"}, true), Optional(HasSubstr(L"\"third\"")));
    });
}

TEST_F(ControlEventsTest, ACellIsEditedInPlace)
{
    shown([](test::ScriptDialog &dialog, ControlEvents &events) {
        EXPECT_EQ(events.editCell(17, 2, 1, L"12,5"), std::nullopt);
        EXPECT_EQ(dialog.table->item(2, 1)->text(), QStringLiteral("12,5"));
        EXPECT_EQ(events.editCell(23, 0, 0, L"renamed"), std::nullopt);
        EXPECT_EQ(dialog.tree->topLevelItem(0)->text(0), QStringLiteral("renamed"));
        EXPECT_EQ(events.clickItem(23, {L"second"}), std::nullopt);
        EXPECT_EQ(events.editCell(23, 1, 0, L"at once"), std::nullopt); // it is the current one already
        EXPECT_EQ(dialog.tree->topLevelItem(1)->text(0), QStringLiteral("at once"));
        EXPECT_THAT(events.editCell(17, 3, 1, L"x"), Optional(HasSubstr(L"no such cell")));
        dialog.table->setEditTriggers(QAbstractItemView::NoEditTriggers);
        EXPECT_THAT(events.editCell(17, 0, 1, L"x"), Optional(HasSubstr(L"edited")));
        EXPECT_EQ(dialog.table->item(0, 1)->text(), QStringLiteral("r0"));
    });
}

TEST_F(ControlEventsTest, KeysGoToTheControlByTheirNames)
{
    shown([](test::ScriptDialog &dialog, ControlEvents &events) {
        EXPECT_EQ(events.clickItem(23, {L"first"}), std::nullopt);
        EXPECT_EQ(events.pressKey(23, L"down"), std::nullopt);
        EXPECT_EQ(dialog.tree->currentItem(), dialog.tree->topLevelItem(1));
        EXPECT_EQ(events.pressKey(23, L"space"), std::nullopt);
        EXPECT_EQ(dialog.tree->topLevelItem(1)->checkState(0), Qt::Checked);
        EXPECT_THAT(events.pressKey(23, L"f13"), Optional(HasSubstr(L"\"f13\"")));
        EXPECT_THAT(events.pressKey(18, L"space"), Optional(HasSubstr(L"disabled")));
    });
}

TEST_F(ControlEventsTest, EnablingIsExpectedEitherWay)
{
    shown([](test::ScriptDialog &, ControlEvents &events) {
        EXPECT_EQ(events.expectEnabled(18, false), std::nullopt);
        EXPECT_NE(events.expectEnabled(18, true), std::nullopt);
        EXPECT_EQ(events.expectEnabled(10, true), std::nullopt);
    });
}

} // namespace
} // namespace velmor
