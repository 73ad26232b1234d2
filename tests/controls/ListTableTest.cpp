// The extended list as a table: rows, columns, selection, header, filling, and a dialog as its parent.
#include "tests/controls/ListFixture.h"

#include "contracts/HostDialog.h"

#include <QAccessible>

#include <new>

using list_clicks::cellOf;
using list_clicks::clickCell;
using list_clicks::pressKey;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Keeps the notices that reach a dialog.
class NotedDialog : public CAdUiBaseDialog {
public:
    std::intptr_t OnWindowMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) override
    {
        messages.push_back({message, wParam, lParam});
        return 0;
    }
    struct Message {
        unsigned message;
        std::uintptr_t wParam;
        std::intptr_t lParam;
    };
    std::vector<Message> messages;
};

/// Counts paints of a viewport and what they cover.
class PaintedRegion : public QObject {
public:
    explicit PaintedRegion(QWidget &viewport) { viewport.installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            region += static_cast<QPaintEvent *>(event)->region();
        return false;
    }
    QRegion region;
};

} // namespace

class ListTable : public ListWidgetTest {};

TEST_F(ListTable, RowsTextsAndDataComeBackAsTheyWereSet)
{
    Fill({L"a", L"b"});

    EXPECT_EQ(list->InsertItem(1, L"between"), 1);
    EXPECT_EQ(list->InsertItem(-1, L"x"), -1);
    EXPECT_EQ(list->InsertItem(4, L"x"), -1);
    EXPECT_TRUE(list->SetItemText(1, 2, L"\u0160aht"));
    EXPECT_TRUE(list->SetItemData(2, 0xFFFFFFFFFFFFFFFFU));
    EXPECT_EQ(list->GetItemCount(), 3);
    EXPECT_EQ(Text(1, 0), L"between");
    EXPECT_EQ(Text(1, 2), L"\u0160aht");
    EXPECT_EQ(list->GetItemData(2), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_TRUE(list->DeleteItem(0));
    EXPECT_EQ(list->GetItemData(1), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_TRUE(list->DeleteAllItems());
    EXPECT_EQ(list->GetItemCount(), 0);
    EXPECT_EQ(list->model()->columnCount(), 3);
}

TEST_F(ListTable, ColumnsKeepTheirWidthsWhenTheListIsEmptied)
{
    Fill({L"a"});
    list->DeleteAllItems();
    list->InsertItem(0, L"b");

    EXPECT_EQ(list->GetColumnWidth(0), 120);
    EXPECT_EQ(list->GetColumnWidth(1), 100);
}

TEST_F(ListTable, AColumnSizedToItsHeaderShowsAllOfIt)
{
    list->InsertColumn(0, L"A header of some length");
    const int needed = list->fontMetrics().horizontalAdvance(QStringLiteral("A header of some length"));

    EXPECT_GT(list->GetColumnWidth(0), needed);
    EXPECT_LT(list->GetColumnWidth(0), needed + 40);
    list->SetHeaderCheckedState(0, 0);
    const int before = list->GetColumnWidth(0);
    EXPECT_TRUE(list->SetColumnWidth(0, CXListCtrl::kSizedToHeader));
    EXPECT_GT(list->GetColumnWidth(0), before + 6);
    EXPECT_FALSE(list->SetColumnWidth(1, 20));
}

TEST_F(ListTable, NoHeaderIsCutInAColumnSizedToIt)
{
    // Fractions of pixels differ from text to text: the sections' ends are looked at for an ellipsis by width alone.
    for (const wchar_t *header : {L"On", L"Share [%]", L"Sections", L"W", L"ijl|"}) {
        CXListCtrl one;
        one.InsertColumn(0, header);
        const QString text = QString::fromWCharArray(header);
        const int room = one.GetColumnWidth(0) - 14;
        EXPECT_EQ(one.GetHeader().fontMetrics().elidedText(text, Qt::ElideRight, room), text);
    }
}

TEST_F(ListTable, AColumnSizedToItsTextsCutsNone)
{
    Fill({L"a", L"A rather long name of a section"});
    list->SetColumnWidth(0, CXListCtrl::kSizedToTexts);

    QFont bold = list->font();
    bold.setBold(true);
    EXPECT_GT(list->GetColumnWidth(0),
              QFontMetrics(bold).horizontalAdvance(QStringLiteral("A rather long name of a section")));
}

TEST_F(ListTable, TheSelectedRowIsOneAndNoneAtTheStart)
{
    Fill({L"a", L"b", L"c"});
    EXPECT_EQ(list->GetCurSel(), -1);
    EXPECT_TRUE(list->SetCurSel(2));
    EXPECT_EQ(list->GetCurSel(), 2);
    EXPECT_EQ(list->currentIndex().row(), 2);
    EXPECT_TRUE(list->SetCurSel(1));
    EXPECT_EQ(list->GetCurSel(), 1);
    EXPECT_FALSE(list->SetCurSel(3));
    EXPECT_FALSE(list->SetCurSel(-1));
    EXPECT_EQ(list->GetCurSel(), 1);
}

TEST_F(ListTable, TheFirstOfSeveralSelectedRowsCounts)
{
    Fill({L"a", L"b", L"c"});
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->SetCurSel(2);
    list->SetCurSel(1);

    EXPECT_EQ(list->GetCurSel(), 1);
    EXPECT_TRUE(list->selectionModel()->isRowSelected(2));
}

TEST_F(ListTable, DeletingTheSelectedRowSelectsNoOther)
{
    Fill({L"a", L"b", L"c"});
    list->SetCurSel(1);
    list->DeleteItem(1);

    EXPECT_EQ(list->GetCurSel(), -1);
}

TEST_F(ListTable, TheRectangleOfTheFirstColumnEndsWhereTheSecondBegins)
{
    Fill({L"a"});
    Show();
    QRect first, second;

    EXPECT_TRUE(list->GetSubItemRect(0, 0, CXListCtrl::kBounds, first));
    EXPECT_TRUE(list->GetSubItemRect(0, 1, CXListCtrl::kBounds, second));
    EXPECT_EQ(first.right() + 1, second.left());
    EXPECT_EQ(first.width(), 120);
    EXPECT_FALSE(list->GetSubItemRect(1, 0, CXListCtrl::kBounds, first));
    EXPECT_FALSE(list->GetSubItemRect(0, 3, CXListCtrl::kBounds, first));
    EXPECT_FALSE(list->UpdateSubItem(0, 3));
    EXPECT_TRUE(list->UpdateSubItem(0, 2));
}

TEST_F(ListTable, ASetterPaintsOneCellOnly)
{
    Fill({L"a", L"b", L"c"});
    Show();
    PaintedRegion painted(*list->viewport());

    list->SetItemText(1, 1, L"new");
    QApplication::processEvents();
    EXPECT_EQ(painted.region.boundingRect(), cellOf(*list, 1, 1));
}

TEST_F(ListTable, TheExtendedStyleBringsGridLines)
{
    EXPECT_FALSE(list->showGrid());
    list->SetExtendedStyle(33);
    EXPECT_TRUE(list->showGrid());
    list->SetExtendedStyle(32);
    EXPECT_FALSE(list->showGrid());
}

TEST_F(ListTable, ARowWithoutRecordsTakesNoClick)
{
    Fill({L"a"});
    list->AddEditColumn(1);
    list->SetRecordMaker([](std::size_t) -> std::vector<CellRecord> { throw std::bad_alloc(); });
    EXPECT_EQ(list->InsertItem(1, L"poor"), -1);
    EXPECT_EQ(list->GetItemCount(), 2);
    Show();
    list->SetCurSel(0);

    clickCell(*list, 1, 1);
    EXPECT_EQ(list->GetCurSel(), 0);
    EXPECT_FALSE(list->IsEditing());
    EXPECT_EQ(list->GetCurrentRow(), -1);
    EXPECT_FALSE(list->EditCell(1, 1));
}

TEST_F(ListTable, ADisabledRowTakesNoClickAndNoKey)
{
    Fill({L"a", L"b"});
    list->AddEditColumn(1);
    list->SetCheckbox(1, 2, 0, false);
    list->SetEnabled(1, false);
    Show();
    list->SetCurSel(0);

    clickCell(*list, 1, 1);
    clickCell(*list, 1, 2);
    EXPECT_EQ(list->GetCurSel(), 0);
    EXPECT_EQ(list->GetCheckbox(1, 2), 0);
    EXPECT_FALSE(list->IsEditing());
    list->setCurrentIndex(list->model()->index(1, 2));
    pressKey(*list, Qt::Key_Space);
    EXPECT_EQ(list->GetCheckbox(1, 2), 0);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListTable, AClickRemembersItsCell)
{
    Fill({L"a", L"b"});
    Show();

    clickCell(*list, 1, 2);
    EXPECT_EQ(list->GetCurrentRow(), 1);
    EXPECT_EQ(list->GetCurrentColumn(), 2);
    EXPECT_EQ(list->GetCurSel(), 1);
    list_clicks::clickAt(*list, QPoint(10, list->viewport()->height() - 5));
    EXPECT_EQ(list->GetCurrentRow(), -1);
}

TEST_F(ListTable, AListInADialogRunsItsMessageAndEmitsNothing)
{
    NotedDialog dialog;
    auto *inside = new QWidget(&dialog);
    auto *own = new CXListCtrl(inside);
    own->InsertColumn(0, L"Name", 100);
    own->InsertItem(0, L"a");
    own->InsertItem(1, L"b");
    own->SetCheckbox(1, 0, 0, false);
    int emitted = 0;
    QObject::connect(own, &CXListCtrl::CellChanged, own, [&] { ++emitted; });
    own->resize(200, 200);
    dialog.show();

    clickCell(*own, 1, 0);
    ASSERT_EQ(dialog.messages.size(), 1U);
    EXPECT_EQ(dialog.messages[0].message, CXListCtrl::DataChangedMessage());
    EXPECT_EQ(dialog.messages[0].wParam, 1U);
    EXPECT_EQ(dialog.messages[0].lParam, 0);
    EXPECT_EQ(emitted, 0);
}

TEST_F(ListTable, AThousandRowsPaintNothingWhileTheyAreFilledIn)
{
    Fill({});
    Show();
    PaintedRegion painted(*list->viewport());
    for (int row = 0; row < 1000; ++row) {
        list->InsertItem(row, L"row");
        list->SetItemText(row, 1, L"1.0");
    }
    EXPECT_TRUE(painted.region.isEmpty());
    EXPECT_EQ(list->GetItemCount(), 1000);
}

TEST_F(ListTable, TheTextsAndChecksAreThereForThoseWhoReadThemAloud)
{
    Fill({L"a"});
    list->SetItemText(0, 1, L"12.5");
    list->SetCheckbox(0, 2, 1, false);
    list->AddEditColumn(1);
    QAccessibleInterface *table = QAccessible::queryAccessibleInterface(list);
    ASSERT_NE(table, nullptr);
    ASSERT_NE(table->tableInterface(), nullptr);

    EXPECT_EQ(table->tableInterface()->rowCount(), 1);
    EXPECT_EQ(table->tableInterface()->cellAt(0, 1)->text(QAccessible::Name), QStringLiteral("12.5"));
    EXPECT_TRUE(table->tableInterface()->cellAt(0, 2)->state().checkable);
    EXPECT_TRUE(table->tableInterface()->cellAt(0, 2)->state().checked);
    EXPECT_EQ(table->tableInterface()->columnDescription(1), QStringLiteral("Value"));
}

TEST_F(ListTable, TabLeavesTheList)
{
    Fill({L"a"});
    Show();
    list->setFocus();
    pressKey(*list, Qt::Key_Tab, QStringLiteral("\t"));

    EXPECT_EQ(QApplication::focusWidget(), other);
}
