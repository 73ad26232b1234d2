// The tree list through the toolkit's accessibility interface, as a screen reader walks it.
#include "tests/treelist/AccessFixture.h"

#include "controls/treelist/TreeListAccessibleParts.h"

#include <array>
#include <memory>
#include <utility>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;

std::vector<std::string> namesOfColumn(QAccessibleTableInterface &rows, int place)
{
    std::vector<std::string> names;
    for (int row = 0; row < rows.rowCount(); ++row)
        names.push_back(nameOf(rows.cellAt(row, place)));
    return names;
}

} // namespace

TEST_F(TreeListAccess, TheListIsATreeAndATableOfItsShownRowsAndColumns)
{
    CreateTree();
    list->setAccessibleName(QStringLiteral("Network"));
    ASSERT_THAT(Table(), NotNull());
    EXPECT_EQ(Table()->role(), QAccessible::Tree);
    EXPECT_EQ(Table()->text(QAccessible::Name), QStringLiteral("Network"));
    ASSERT_THAT(Rows(), NotNull());
    EXPECT_EQ(Rows()->rowCount(), 7) << "the row of the collapsed branch is none";
    EXPECT_EQ(Rows()->columnCount(), 3);
    EXPECT_THAT(namesOfColumn(*Rows(), 0),
                ElementsAre("Outfall 1", "Pipe 1-2", "Area A", "Area B", "Pipe 2-3", "Area C", "Outfall 2"));
    EXPECT_THAT(namesOfColumn(*Rows(), 1), ElementsAre("", "42.50", "0.25", "1.75", "17.00", "3.10", ""));
    EXPECT_THAT(Cell(7, 0), IsNull());
    EXPECT_THAT(Cell(-1, 0), IsNull());
    EXPECT_THAT(Cell(0, 3), IsNull());
    EXPECT_THAT(Cell(0, -1), IsNull());
}

TEST_F(TreeListAccess, ChildrenAreTheHeadersAndThenTheCellsRowByRowAndAreFoundAgain)
{
    CreateTree();
    ASSERT_EQ(Table()->childCount(), (7 + 1) * 3);
    EXPECT_EQ(nameOf(Table()->child(0)), "Name");
    EXPECT_EQ(nameOf(Table()->child(2)), "Kind");
    EXPECT_EQ(Table()->child(2)->role(), QAccessible::ColumnHeader);
    EXPECT_EQ(nameOf(Table()->child(3)), "Outfall 1");
    EXPECT_EQ(nameOf(Table()->child(3 + 3 + 1)), "42.50");
    EXPECT_THAT(Table()->child(24), IsNull());
    EXPECT_THAT(Table()->child(-1), IsNull());
    for (int index = 0; index < Table()->childCount(); ++index) {
        QAccessibleInterface *child = Table()->child(index);
        ASSERT_THAT(child, NotNull()) << index;
        EXPECT_EQ(Table()->indexOfChild(child), index);
        EXPECT_EQ(child->parent(), Table()) << index;
        EXPECT_EQ(child->childCount(), 0) << index;
    }
}

TEST_F(TreeListAccess, WithoutTheHeaderThereAreNoHeaderCells)
{
    CreateTree(kTreeStyle & ~std::uint32_t{StyleHeader});
    EXPECT_EQ(Table()->childCount(), 7 * 3);
    EXPECT_EQ(nameOf(Table()->child(0)), "Outfall 1");
    EXPECT_EQ(Table()->indexOfChild(Cell(1, 2)), 5);
    EXPECT_THAT(Cell(0, 0)->tableCellInterface()->columnHeaderCells(), IsEmpty());
}

TEST_F(TreeListAccess, ACellKnowsItsRowItsPlaceAndItsHeader)
{
    CreateTree();
    QAccessibleTableCellInterface *cell = Cell(4, 1)->tableCellInterface();
    ASSERT_THAT(cell, NotNull());
    EXPECT_EQ(cell->rowIndex(), 4);
    EXPECT_EQ(cell->columnIndex(), 1);
    EXPECT_EQ(cell->rowExtent(), 1);
    EXPECT_EQ(cell->columnExtent(), 1);
    EXPECT_EQ(cell->table(), Table());
    ASSERT_EQ(cell->columnHeaderCells().size(), 1);
    EXPECT_EQ(nameOf(cell->columnHeaderCells().front()), "Length");
    EXPECT_EQ(Rows()->columnDescription(1), QStringLiteral("Length"));
    EXPECT_EQ(Cell(4, 1)->role(), QAccessible::TreeItem);
}

TEST_F(TreeListAccess, ColumnsComeInTheOrderInWhichTheyAreShownAndHiddenOnesNotAtAll)
{
    CreateTree();
    list->SetColumnOrderArray({2, 0, 1});
    EXPECT_EQ(nameOf(Cell(1, 0)), "section");
    EXPECT_EQ(nameOf(Cell(1, 1)), "Pipe 1-2");
    EXPECT_EQ(nameOf(Table()->child(0)), "Kind");
    EXPECT_EQ(Cell(1, 1)->tableCellInterface()->columnIndex(), 1);
    EXPECT_EQ(Table()->indexOfChild(Cell(1, 1)), 3 + 3 + 1);
    list->SetColumnFormat(2, kColumnHidden, 0);
    ASSERT_EQ(Rows()->columnCount(), 2);
    EXPECT_EQ(nameOf(Cell(1, 0)), "Pipe 1-2");
}

TEST_F(TreeListAccess, TheFirstColumnSaysItsLevelAndItsLock)
{
    CreateTree(kTreeStyle | StyleLock);
    EXPECT_EQ(Cell(0, 0)->text(QAccessible::Description), QStringLiteral("Level 1"));
    EXPECT_EQ(Cell(2, 0)->text(QAccessible::Description), QStringLiteral("Level 3"));
    EXPECT_EQ(Cell(2, 1)->text(QAccessible::Description), QString());
    list->SetItemLock(areaA, true);
    EXPECT_EQ(Cell(2, 0)->text(QAccessible::Description), QStringLiteral("Level 3, Locked"));
    EXPECT_EQ(Cell(1, 0)->text(QAccessible::Description), QStringLiteral("Level 2, Partly locked"));
}

TEST_F(TreeListAccess, ARowIsControlledByTheRowThatItStandsBeneath)
{
    CreateTree();
    const auto above = [this](int row, int place) {
        const auto relations = Cell(row, place)->relations(QAccessible::Controller);
        return relations.isEmpty() ? nullptr : relations.front().first;
    };
    EXPECT_EQ(above(1, 0), Cell(0, 0));
    EXPECT_EQ(above(3, 2), Cell(1, 0));
    EXPECT_THAT(above(0, 0), IsNull());
    EXPECT_THAT(above(6, 0), IsNull());
    ASSERT_EQ(Cell(1, 0)->relations(QAccessible::AllRelations).size(), 1);
    EXPECT_EQ(Cell(1, 0)->relations(QAccessible::AllRelations).front().second, QAccessible::Controller);
    EXPECT_THAT(Cell(1, 0)->relations(QAccessible::Label), IsEmpty());
}

TEST_F(TreeListAccess, ExpandableRowsSayWhetherTheyAreExpanded)
{
    CreateTree();
    const auto expansion = [this](int row, int place) {
        const QAccessible::State state = Cell(row, place)->state();
        return std::array<bool, 3>{bool(state.expandable), bool(state.expanded), bool(state.collapsed)};
    };
    EXPECT_THAT(expansion(0, 0), ElementsAre(true, true, false));
    EXPECT_THAT(expansion(6, 0), ElementsAre(true, false, true));
    EXPECT_THAT(expansion(2, 0), ElementsAre(false, false, false)) << "a row without children";
    EXPECT_THAT(expansion(0, 1), ElementsAre(false, false, false)) << "another column";
    list->Expand(pipe12, kCollapse);
    EXPECT_EQ(Rows()->rowCount(), 5);
    EXPECT_THAT(expansion(1, 0), ElementsAre(true, false, true));
    EXPECT_EQ(nameOf(Cell(2, 0)), "Pipe 2-3");
}

TEST_F(TreeListAccess, CheckBoxesAreOnOffOrMixed)
{
    CreateTree(kTreeStyle | StyleCheck);
    const auto check = [this](int row, int place) {
        const QAccessible::State state = Cell(row, place)->state();
        return std::array<bool, 3>{bool(state.checkable), bool(state.checked), bool(state.checkStateMixed)};
    };
    EXPECT_THAT(check(2, 0), ElementsAre(true, false, false));
    EXPECT_THAT(check(2, 1), ElementsAre(false, false, false));
    list->SetItemCheck(areaA, true);
    EXPECT_THAT(check(2, 0), ElementsAre(true, true, false));
    EXPECT_THAT(check(1, 0), ElementsAre(true, false, true)) << "one of two areas";
    list->SetItemState(areaB, 0, kItemShowsCheck);
    EXPECT_THAT(check(3, 0), ElementsAre(false, false, false)) << "shows no check box";
    list->SetStyle(kTreeStyle);
    EXPECT_THAT(check(2, 0), ElementsAre(false, false, false)) << "the list shows none";
}

TEST_F(TreeListAccess, CellsWithAnEditorAreEditableUnlessTheListIsReadOnly)
{
    CreateTree();
    EXPECT_FALSE(Cell(1, 0)->state().editable);
    EXPECT_TRUE(Cell(1, 0)->state().readOnly);
    EXPECT_TRUE(Cell(1, 1)->state().editable);
    EXPECT_FALSE(Cell(1, 1)->state().readOnly);
    list->SetItemModify(pipe12, 1, kEditorStatic);
    EXPECT_FALSE(Cell(1, 1)->state().editable);
    EXPECT_TRUE(Cell(2, 1)->state().editable);
    list->SetStyle(kTreeStyle | StyleReadOnly);
    EXPECT_FALSE(Cell(2, 1)->state().editable);
    EXPECT_TRUE(Table()->state().readOnly);
}

TEST_F(TreeListAccess, SelectionAndFocusAreStates)
{
    CreateTree();
    list->SelectItem(pipe12, 1);
    ASSERT_TRUE(list->hasFocus());
    EXPECT_TRUE(Cell(1, 0)->state().selected);
    EXPECT_TRUE(Cell(1, 0)->state().selectable);
    EXPECT_FALSE(Cell(2, 0)->state().selected);
    EXPECT_TRUE(Cell(1, 1)->state().focused);
    EXPECT_FALSE(Cell(1, 0)->state().focused) << "the keys act on another column";
    EXPECT_EQ(Table()->focusChild(), Cell(1, 1));
    EXPECT_TRUE(Cell(1, 2)->tableCellInterface()->isSelected());
    EXPECT_FALSE(Table()->state().multiSelectable);
    other->setFocus();
    EXPECT_FALSE(Cell(1, 1)->state().focused);
    EXPECT_TRUE(Cell(1, 1)->state().active);
    EXPECT_THAT(Table()->focusChild(), IsNull());
}

TEST_F(TreeListAccess, RowsAreSelectedAndUnselectedThroughTheInterface)
{
    CreateTree(kTreeStyle | StyleMultiSelect);
    EXPECT_TRUE(Table()->state().multiSelectable);
    EXPECT_TRUE(Rows()->selectRow(4));
    EXPECT_TRUE(Rows()->selectRow(2));
    EXPECT_EQ(list->GetSelectedCount(), 2);
    EXPECT_THAT(Rows()->selectedRows(), ElementsAre(2, 4));
    EXPECT_EQ(Rows()->selectedCellCount(), 6);
    ASSERT_EQ(Rows()->selectedCells().size(), 6);
    EXPECT_EQ(nameOf(Rows()->selectedCells().at(3)), "Pipe 2-3");
    EXPECT_TRUE(Rows()->isRowSelected(4));
    EXPECT_TRUE(Rows()->selectRow(4)) << "stays selected";
    EXPECT_EQ(list->GetSelectedCount(), 2);
    EXPECT_TRUE(Rows()->unselectRow(2)) << "the newest";
    EXPECT_TRUE(Rows()->unselectRow(4));
    EXPECT_EQ(list->GetSelectedCount(), 0);
    EXPECT_FALSE(Rows()->selectRow(7));
    owner.answers[NotifySelChanging] = {-1};
    EXPECT_FALSE(Rows()->selectRow(1)) << "the owner refuses";
    EXPECT_EQ(list->GetSelectedCount(), 0);
}

TEST_F(TreeListAccess, AVetoKeepsTheNewestSelectedRow)
{
    CreateTree(kTreeStyle | StyleMultiSelect);
    ASSERT_TRUE(Rows()->selectRow(2));
    owner.answers[NotifySelChanging] = {-2};
    EXPECT_FALSE(Rows()->unselectRow(2));
    EXPECT_TRUE(Rows()->isRowSelected(2));
}

TEST_F(TreeListAccess, ASelectedRowInACollapsedBranchIsNoSelectedRow)
{
    CreateTree(kTreeStyle | StyleMultiSelect);
    list->Select(areaA);
    list->Select(pipe98);
    list->Select(outfall2);
    EXPECT_THAT(Rows()->selectedRows(), ElementsAre(2, 6));
    list->Expand(pipe12, kCollapse);
    EXPECT_THAT(Rows()->selectedRows(), ElementsAre(4));
}

TEST_F(TreeListAccess, CellsStandOnTheScreenWhereTheyArePainted)
{
    CreateTree();
    QRect cell;
    ASSERT_TRUE(list->GetItemRect(areaB, 1, cell, false));
    const QPoint corner = list->viewport()->mapToGlobal(cell.topLeft());
    EXPECT_EQ(Cell(3, 1)->rect(), QRect(corner, cell.size()));
    const QPoint inside = corner + QPoint(cell.width() / 2, cell.height() / 2);
    EXPECT_EQ(Table()->childAt(inside.x(), inside.y()), Cell(3, 1));
    const QRect header = Table()->child(1)->rect();
    EXPECT_EQ(header.left(), corner.x());
    EXPECT_EQ(header.width(), 80);
    EXPECT_GT(header.height(), 10);
    EXPECT_EQ(Table()->childAt(header.center().x(), header.center().y()), Table()->child(1));
    const QPoint below = list->viewport()->mapToGlobal(QPoint(5, 7 * 20 + 5));
    EXPECT_THAT(Table()->childAt(below.x(), below.y()), IsNull());
    EXPECT_THAT(Table()->childAt(corner.x() + 2000, corner.y()), IsNull());
}

TEST_F(TreeListAccess, RowsThatAreScrolledAwayAreOffTheScreen)
{
    CreateEmpty();
    AddRows(100);
    Show();
    EXPECT_FALSE(Cell(0, 0)->state().offscreen);
    EXPECT_TRUE(Cell(99, 0)->state().offscreen);
    EXPECT_TRUE(Cell(99, 0)->state().invisible);
    list->EnsureVisible(list->GetLastVisibleItem(), 0);
    EXPECT_TRUE(Cell(0, 0)->state().offscreen);
    EXPECT_FALSE(Cell(99, 0)->state().offscreen);
}

TEST_F(TreeListAccess, ActionsDoWhatAPersonDoes)
{
    CreateTree(kTreeStyle | StyleCheck | StyleLock);
    const auto actions = [this](int row, int place) { return Cell(row, place)->actionInterface(); };
    EXPECT_THAT(actions(6, 0)->actionNames(),
                ElementsAre(QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::toggleAction(),
                            tree_list_actions::Lock(), tree_list_actions::Expand()));
    EXPECT_THAT(actions(2, 1)->actionNames(),
                ElementsAre(QAccessibleActionInterface::pressAction(), tree_list_actions::Edit()));
    actions(6, 0)->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(list->GetCheck(outfall2), kCheckOn);
    EXPECT_EQ(owner.CountOf(NotifyCheck), 1);
    actions(6, 0)->doAction(tree_list_actions::Lock());
    EXPECT_EQ(list->GetLock(outfall2), kCheckOn);
    actions(6, 0)->doAction(tree_list_actions::Expand());
    EXPECT_EQ(Rows()->rowCount(), 8);
    EXPECT_THAT(actions(6, 0)->actionNames(), Contains(tree_list_actions::Collapse()));
    actions(6, 0)->doAction(tree_list_actions::Collapse());
    EXPECT_EQ(Rows()->rowCount(), 7);
    actions(2, 2)->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(list->GetSelectedItem(), areaA);
    EXPECT_EQ(list->GetSelectColumn(), 2);
    actions(2, 1)->doAction(tree_list_actions::Edit());
    EXPECT_EQ(list->GetModifyItem(), areaA);
    EXPECT_EQ(list->GetModifyColumn(), 1);
    list->CancelModify();
    for (const QString &name : actions(6, 0)->actionNames())
        EXPECT_FALSE(actions(6, 0)->localizedActionName(name).isEmpty()) << name.toStdString();
    EXPECT_EQ(actions(2, 1)->keyBindingsForAction(tree_list_actions::Edit()), QStringList(QStringLiteral("Return")));
}

TEST_F(TreeListAccess, ADisabledListOffersNoActions)
{
    CreateTree(kTreeStyle | StyleCheck);
    QAccessibleActionInterface *actions = Cell(0, 0)->actionInterface();
    list->setEnabled(false);
    EXPECT_TRUE(Cell(0, 0)->state().disabled);
    EXPECT_FALSE(Cell(0, 0)->state().selectable);
    EXPECT_THAT(actions->actionNames(), IsEmpty());
    actions->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(list->GetCheck(outfall1), kCheckOff);
}

TEST_F(TreeListAccess, AnActionIsRefusedByTheOwnerAsAClickIs)
{
    CreateTree(kTreeStyle | StyleCheck);
    owner.answers[NotifyCheck] = {-1};
    Cell(0, 0)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(list->GetCheck(outfall1), kCheckOff);
    owner.answers[NotifyExpanding] = {-1};
    Cell(6, 0)->actionInterface()->doAction(tree_list_actions::Expand());
    EXPECT_EQ(Rows()->rowCount(), 7);
}

TEST_F(TreeListAccess, ATextIsEnteredWithAllNoticesOfAnEdit)
{
    CreateTree();
    Cell(1, 1)->setText(QAccessible::Value, QStringLiteral("43.75"));
    EXPECT_EQ(list->GetItemText(pipe12, 1), L"43.75");
    EXPECT_THAT(owner.Codes(), ElementsAre(NotifyBeginControl, NotifyEndControl, NotifyColumnChanging,
                                           NotifyRowChanging, NotifyEndEdit));
    EXPECT_FALSE(list->GetState(kControlEditing));
    Cell(1, 2)->setText(QAccessible::Value, QStringLiteral("x"));
    EXPECT_EQ(list->GetItemText(pipe12, 2), L"section") << "no editor there";
    owner.answers[NotifyColumnChanging] = {-1};
    Cell(1, 1)->setText(QAccessible::Value, QStringLiteral("1"));
    EXPECT_EQ(list->GetItemText(pipe12, 1), L"43.75");
    EXPECT_FALSE(list->GetState(kControlEditing)) << "the editor is left open for nobody";
}

TEST_F(TreeListAccess, ATextOfAListIsEnteredOnlyWhenTheListHasIt)
{
    CreateTree();
    list->SetColumnModify(2, kEditorCombo);
    owner.onNotice = [this](const TreeListNotice &notice) {
        if (notice.code == NotifyBeginControl) {
            list->GetCombo()->AddString(L"section");
            list->GetCombo()->AddString(L"drain");
        }
    };
    Cell(1, 2)->setText(QAccessible::Value, QStringLiteral("drain"));
    EXPECT_EQ(list->GetItemText(pipe12, 2), L"drain");
    owner.told.clear();
    Cell(1, 2)->setText(QAccessible::Value, QStringLiteral("pond"));
    EXPECT_EQ(list->GetItemText(pipe12, 2), L"drain");
    EXPECT_EQ(owner.told.back(), (JournalOwner::Told{NotifyEndEdit, L"Pipe 1-2", -1})) << "cancelled";
    EXPECT_FALSE(list->GetState(kControlEditing));
}

TEST_F(TreeListAccess, TheOpenEditorIsTheLastChildAndHasTheFocus)
{
    CreateTree();
    const int cells = Table()->childCount();
    ASSERT_NE(list->BeginModify(areaA, 1), 0);
    ASSERT_EQ(Table()->childCount(), cells + 1);
    QAccessibleInterface *editor = Table()->child(cells);
    ASSERT_THAT(editor, NotNull());
    EXPECT_EQ(editor->object(), list->GetEdit());
    EXPECT_EQ(Table()->indexOfChild(editor), cells);
    EXPECT_EQ(Table()->focusChild(), editor);
    const QPoint middle = editor->rect().center();
    EXPECT_EQ(Table()->childAt(middle.x(), middle.y()), editor);
    list->CancelModify();
    EXPECT_EQ(Table()->childCount(), cells);
}

TEST_F(TreeListAccess, IdsStayWhileRowsMove)
{
    CreateTree();
    const QAccessible::Id id = QAccessible::uniqueId(Cell(4, 1)); // Pipe 2-3
    const QAccessible::Id header = QAccessible::uniqueId(Table()->child(1));
    list->Expand(pipe12, kCollapse);
    EXPECT_EQ(QAccessible::uniqueId(Cell(2, 1)), id);
    list->SetColumnOrderArray({1, 2, 0});
    EXPECT_EQ(QAccessible::uniqueId(Cell(2, 0)), id);
    EXPECT_EQ(QAccessible::uniqueId(Table()->child(0)), header);
    list->MoveAfterItem(pipe23, outfall1, TreeListFirst());
    EXPECT_EQ(QAccessible::uniqueId(Cell(1, 0)), id);
    Settle();
    EXPECT_EQ(QAccessible::accessibleInterface(id), Cell(1, 0));
}

TEST_F(TreeListAccess, ACellOfADeletedRowIsInvalidAtOnceAndGoneWhenTheEventLoopIsBack)
{
    CreateTree();
    QAccessibleInterface *cell = Cell(2, 1), *branch = Cell(1, 0), *stays = Cell(4, 0);
    const QAccessible::Id id = QAccessible::uniqueId(cell), stayingId = QAccessible::uniqueId(stays);
    list->DeleteItem(pipe12);
    EXPECT_FALSE(cell->isValid());
    EXPECT_FALSE(branch->isValid());
    EXPECT_TRUE(cell->state().invalid);
    EXPECT_EQ(cell->text(QAccessible::Name), QString());
    EXPECT_EQ(cell->rect(), QRect());
    EXPECT_EQ(cell->tableCellInterface()->rowIndex(), -1);
    EXPECT_THAT(cell->actionInterface()->actionNames(), IsEmpty());
    cell->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    cell->setText(QAccessible::Value, QStringLiteral("1"));
    EXPECT_THAT(cell->parent(), IsNull());
    EXPECT_THAT(cell->window(), IsNull());
    EXPECT_EQ(Table()->indexOfChild(cell), -1);
    EXPECT_TRUE(stays->isValid());
    EXPECT_EQ(QAccessible::accessibleInterface(id), cell);
    Settle();
    EXPECT_THAT(QAccessible::accessibleInterface(id), IsNull());
    EXPECT_EQ(QAccessible::accessibleInterface(stayingId), stays);
    EXPECT_EQ(nameOf(Cell(1, 0)), "Pipe 2-3");
}

TEST_F(TreeListAccess, ACellInACollapsedBranchIsInvalidUntilTheBranchIsOpen)
{
    CreateTree();
    QAccessibleInterface *cell = Cell(2, 1);
    list->Expand(pipe12, kCollapse);
    EXPECT_FALSE(cell->isValid());
    EXPECT_EQ(Table()->indexOfChild(cell), -1);
    list->Expand(pipe12, kExpand);
    EXPECT_TRUE(cell->isValid());
    EXPECT_EQ(Cell(2, 1), cell);
}

TEST_F(TreeListAccess, AnActionWhoseNoticeDeletesTheRowDoesNoHarm)
{
    CreateTree(kTreeStyle | StyleCheck);
    owner.onNotice = [this](const TreeListNotice &notice) {
        if (notice.code == NotifyCheck || notice.code == NotifyExpanding)
            list->DeleteAllItems();
    };
    QAccessibleInterface *cell = Cell(1, 0);
    cell->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(cell->isValid());
    EXPECT_EQ(Rows()->rowCount(), 0);
    EXPECT_EQ(Table()->childCount(), 3) << "the headers";
    Settle();
}

TEST_F(TreeListAccess, CellsOfARemovedColumnAreGone)
{
    CreateTree();
    QAccessibleInterface *cell = Cell(1, 1), *behind = Cell(1, 2), *header = Table()->child(1);
    list->DeleteColumn(1);
    EXPECT_FALSE(cell->isValid()) << "its number is another column's now";
    EXPECT_FALSE(behind->isValid());
    EXPECT_FALSE(header->isValid());
    EXPECT_EQ(Rows()->columnCount(), 2);
    EXPECT_EQ(nameOf(Cell(1, 1)), "section");
    EXPECT_EQ(nameOf(Table()->child(1)), "Kind");
    Settle();
}

TEST_F(TreeListAccess, NothingOfADeletedListIsKnown)
{
    CreateTree();
    auto second = std::make_unique<CTreeListCtrl>();
    ASSERT_NE(second->Create(kTreeStyle, QRect(0, 0, 200, 100), nullptr, 1), 0);
    second->InsertItem(L"Row");
    QAccessibleInterface *table = QAccessible::queryAccessibleInterface(second.get());
    const QAccessible::Id id = QAccessible::uniqueId(table->child(0));
    const QAccessible::Id tableId = QAccessible::uniqueId(table);
    second.reset();
    EXPECT_THAT(QAccessible::accessibleInterface(id), IsNull());
    EXPECT_THAT(QAccessible::accessibleInterface(tableId), IsNull());
    EXPECT_EQ(nameOf(Cell(0, 0)), "Outfall 1") << "the other list goes on";
}

TEST_F(TreeListAccess, AListThatIsMadeAfterTheLastOneWentIsKnownAgain)
{
    CreateTree();
    ASSERT_THAT(Rows(), NotNull());
    delete std::exchange(list, nullptr);
    list = new CTreeListCtrl(&window);
    ASSERT_THAT(Rows(), NotNull());
    EXPECT_EQ(Rows()->rowCount(), 0);
}

TEST_F(TreeListAccess, RowsCostNothingUntilTheyAreAskedFor)
{
    CreateEmpty();
    AddRows(2000);
    Show();
    const QAccessible::Id first = QAccessible::uniqueId(Cell(0, 0));
    const QAccessible::Id far = QAccessible::uniqueId(Cell(1999, 2));
    EXPECT_EQ(far, first + 1) << "ids are given to what was asked for and to nothing else";
    EXPECT_EQ(QAccessible::uniqueId(Cell(1999, 2)), far);
}

TEST_F(TreeListAccess, AHeaderSaysWhichWayItsColumnIsSortedAndIsPressedLikeAClick)
{
    CreateTree(kTreeStyle | StyleHeaderSort);
    list->SetColumnFormat(1, kColumnSorts | (kColumnSortBits & ~(kColumnSortBits - 1)), 0);
    list->SetColumnText(2, L"");
    std::vector<int> clicked;
    QObject::connect(list, &CTreeListCtrl::ColumnClicked, list, [&](int column) { clicked.push_back(column); });
    QAccessibleInterface *sorts = Table()->child(1), *plain = Table()->child(0);
    EXPECT_EQ(nameOf(Table()->child(2)), "Column 3") << "a column without a text";
    EXPECT_THAT(plain->actionInterface()->actionNames(), IsEmpty());
    plain->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_THAT(sorts->actionInterface()->actionNames(), ElementsAre(QAccessibleActionInterface::pressAction()));
    EXPECT_EQ(sorts->text(QAccessible::Description), QString());
    sorts->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(sorts->text(QAccessible::Description), QStringLiteral("Sorted ascending"));
    EXPECT_EQ(plain->text(QAccessible::Description), QString());
    sorts->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(sorts->text(QAccessible::Description), QStringLiteral("Sorted descending"));
    EXPECT_THAT(clicked, ElementsAre(1, 1));

    ASSERT_NE(list->BeginModify(areaA, 1), 0);
    list->GetEdit()->SetWindowText(L"9");
    owner.answers[NotifyColumnChanging] = {-1};
    sorts->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_THAT(clicked, ElementsAre(1, 1)) << "the owner keeps the row in edit";
    list->CancelModify();
}
