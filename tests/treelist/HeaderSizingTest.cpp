// Sizing the columns of a tree list with the mouse.
#include "tests/treelist/HeaderFixture.h"

#include "controls/treelist/TreeListEditors.h"

using testing::ElementsAre;

using HeaderSizing = HeaderTest;

TEST_F(HeaderSizing, AColumnFollowsTheMouseWhileItsDividerIsDragged)
{
    Press(At(kName));
    MoveTo(At(kName + 30));
    EXPECT_EQ(Width(0), kName + 30);
    MoveTo(At(kName - 20));
    EXPECT_EQ(Width(0), kName - 20);
    Release(At(kName - 15));
    EXPECT_EQ(Width(0), kName - 15);
    EXPECT_EQ(Width(1), kLength);

    Hover(At(kName + 40));
    EXPECT_EQ(Width(0), kName - 15);
}

TEST_F(HeaderSizing, ADividerReachesSomePixelsToBothSides)
{
    std::vector<int> left, right;
    for (int x = kName - 10; x < kName + 10; ++x) {
        Hover(At(x));
        if (header->cursor().shape() == Qt::SplitHCursor)
            (x < kName ? left : right).push_back(x);
    }
    EXPECT_THAT(left, ElementsAre(kName - 5, kName - 4, kName - 3, kName - 2, kName - 1));
    EXPECT_THAT(right, ElementsAre(kName, kName + 1, kName + 2, kName + 3, kName + 4));
}

TEST_F(HeaderSizing, TheWidthChangesByTheWayOfTheMouseWhereverTheDividerWasGrabbed)
{
    for (const int grabbed : {kName - 4, kName + 3}) {
        Press(At(grabbed));
        MoveTo(At(grabbed + 10));
        Release(At(grabbed + 10));
        EXPECT_EQ(Width(0), kName + 10) << grabbed;
        list->SetColumnWidth(0, kName);
    }
}

TEST_F(HeaderSizing, AClickOnADividerChangesNothingNotEvenAWidthBeyondItsLimits)
{
    const int narrow = list->InsertColumn(L"Narrow", kColumnDefaultFormat, 30, -1, 50, 90);
    const int edge = header->GetColumnRect(narrow).right() + 1;
    Click(edge);
    EXPECT_EQ(Width(narrow), 30);
}

TEST_F(HeaderSizing, AWidthStaysWithinTheLimitsOfItsColumn)
{
    const int column = list->InsertColumn(L"Limited", kColumnDefaultFormat, 70, -1, 50, 90);
    const int edge = header->GetColumnRect(column).right() + 1;
    Press(At(edge));
    MoveTo(At(edge + 200));
    EXPECT_EQ(Width(column), 90);
    MoveTo(At(edge - 200));
    EXPECT_EQ(Width(column), 50);
    MoveTo(At(edge + 5));
    EXPECT_EQ(Width(column), 75);
    Release(At(edge + 5));
}

TEST_F(HeaderSizing, AColumnWithoutLimitsClosesAtNoWidthAndOpensFromTheRightHalfOfItsDivider)
{
    Press(At(kName + kLength));
    MoveTo(At(5));
    Release(At(5));
    EXPECT_EQ(Width(1), 0);
    EXPECT_TRUE(header->GetColumnRect(1).isEmpty());

    Press(At(kName - 1)); // the left half is the column's before it
    MoveTo(At(kName + 9));
    Release(At(kName + 9));
    EXPECT_EQ(Width(0), kName + 10);
    EXPECT_EQ(Width(1), 0);

    Press(At(kName + 10));
    MoveTo(At(kName + 50));
    Release(At(kName + 50));
    EXPECT_EQ(Width(0), kName + 10);
    EXPECT_EQ(Width(1), 40);
}

TEST_F(HeaderSizing, OfSeveralClosedColumnsTheLastOpensFirst)
{
    list->SetColumnWidth(1, 0);
    list->SetColumnWidth(2, 0);
    Press(At(kName + 1));
    MoveTo(At(kName + 31));
    Release(At(kName + 31));
    EXPECT_EQ(Width(1), 0);
    EXPECT_EQ(Width(2), 30);
}

TEST_F(HeaderSizing, TheMiddleOfANarrowColumnIsNoDivider)
{
    list->SetColumnWidth(1, 8);
    EXPECT_EQ(header->GetDividerAt(kName + 4), -1);
    EXPECT_EQ(header->GetDividerAt(kName), 0);
    EXPECT_EQ(header->GetDividerAt(kName + 7), 1);
}

TEST_F(HeaderSizing, AHiddenColumnHasNoDividerAndNoPlace)
{
    list->SetColumnFormat(1, kColumnHidden, 0);
    Settle();
    EXPECT_TRUE(header->GetColumnRect(1).isNull());
    EXPECT_EQ(header->GetColumnRect(2).left(), kName);
    EXPECT_EQ(header->GetDividerAt(kName + kLength), -1);
    EXPECT_EQ(header->GetDividerAt(kName + kKind), 2);
}

TEST_F(HeaderSizing, EscapeTakesTheWidthBackWhoeverHasTheFocus)
{
    list->setFocus();
    Press(At(kName));
    MoveTo(At(kName + 50));
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(list, &escape);
    EXPECT_EQ(Width(0), kName);

    MoveTo(At(kName + 80)); // the button still is down
    EXPECT_EQ(Width(0), kName);
    Release(At(kName + 80));
    EXPECT_EQ(Width(0), kName);
}

TEST_F(HeaderSizing, EscapeIsTheOthersAgainOnceTheMouseIsUp)
{
    Press(At(kName));
    Release(At(kName));
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    escape.ignore();
    QApplication::sendEvent(&window, &escape);
    EXPECT_FALSE(escape.isAccepted());
}

TEST_F(HeaderSizing, ALostCaptureTakesTheWidthBack)
{
    const std::vector<std::function<void()>> losses = {
        [this] { header->OnCancelMode(); },
        [this] { Hover(At(kName + 20)); }, // let go where nobody told us
        [this] { Send(QEvent::MouseButtonPress, At(kName), Qt::RightButton, Qt::LeftButton | Qt::RightButton); },
        [this] { list->setEnabled(false); },
        [this] { header->hide(); },
        [this] {
            QEvent away(QEvent::WindowDeactivate);
            QApplication::sendEvent(&window, &away);
        },
    };
    for (std::size_t loss = 0; loss < losses.size(); ++loss) {
        Press(At(kName));
        MoveTo(At(kName + 50));
        ASSERT_EQ(Width(0), kName + 50) << loss;
        losses[loss]();
        EXPECT_EQ(Width(0), kName) << loss;
        MoveTo(At(kName + 70));
        EXPECT_EQ(Width(0), kName) << loss;
        Release(At(kName + 70));
        list->setEnabled(true);
        header->show();
    }
}

TEST_F(HeaderSizing, ADoubleClickOnADividerFitsTheColumnSoThatNothingIsCut)
{
    CTreeListItem *top = list->InsertItem(L"A section with a long name");
    CTreeListItem *below = list->InsertItem(L"Another section with a long name", top);
    list->Expand(top, kExpand);
    list->SetItemText(below, 1, L"1234.5");
    list->SetColumnWidth(0, 20);
    DoubleClick(20);
    DoubleClick(header->GetColumnRect(1).right() + 1);
    Settle();

    const QFontMetrics metrics = list->fontMetrics();
    for (CTreeListItem *item : {top, below}) {
        for (const int column : {0, 1}) {
            QRect text;
            ASSERT_TRUE(list->GetItemRect(item, column, text, true));
            EXPECT_GE(text.width(), metrics.horizontalAdvance(QString::fromStdWString(item->Text(column))));
        }
    }
    EXPECT_GE(Width(1), metrics.horizontalAdvance(QStringLiteral("Length")) + 4);
    EXPECT_LT(Width(1), kLength + 20);
    EXPECT_EQ(Width(2), kKind);
}

TEST_F(HeaderSizing, AFittedColumnStaysWithinItsLimits)
{
    const int column = list->InsertColumn(L"i", kColumnDefaultFormat, 70, -1, 50, 90);
    list->InsertItem(L"x");
    DoubleClick(header->GetColumnRect(column).right() + 1);
    EXPECT_EQ(Width(column), 50);

    list->SetColumnText(column, L"A header that is far wider than the column may ever become");
    DoubleClick(header->GetColumnRect(column).right() + 1);
    EXPECT_EQ(Width(column), 90);
}

TEST_F(HeaderSizing, TheHeaderScrollsWithTheRows)
{
    list->SetColumnWidth(2, 500);
    Settle();
    list->horizontalScrollBar()->setValue(40);
    Settle();
    EXPECT_EQ(header->GetColumnRect(1).left(), kName - 40);

    Press(At(kName - 40));
    MoveTo(At(kName - 30));
    Release(At(kName - 30));
    EXPECT_EQ(Width(0), kName + 10);
}

TEST_F(HeaderSizing, AListThatScrollsWhileItsLastColumnGetsNarrowerKeepsTheMouseWay)
{
    list->SetColumnWidth(2, 500);
    Settle();
    list->horizontalScrollBar()->setValue(list->horizontalScrollBar()->maximum());
    Settle();
    const int edge = header->GetColumnRect(2).right() + 1;
    Press(At(edge));
    for (int step = 1; step <= 10; ++step) {
        MoveTo(At(edge - step));
        Settle();
    }
    EXPECT_EQ(Width(2), 490);
    Release(At(edge - 10));
}

TEST_F(HeaderSizing, AColumnThatIsDeletedWhileItIsSizedEndsTheSizing)
{
    Press(At(kName + kLength));
    MoveTo(At(kName + kLength + 10));
    list->DeleteColumn(1);
    MoveTo(At(kName + kLength + 30));
    Release(At(kName + kLength + 30));
    EXPECT_EQ(Width(0), kName);
    EXPECT_EQ(Width(1), kKind);
}

TEST_F(HeaderSizing, APressEndsTheEditOfARow)
{
    CTreeListItem *item = list->InsertItem(L"P 1");
    ASSERT_EQ(list->BeginModify(item, 1), 1);
    list->GetEdit()->setText(QStringLiteral("12.5"));
    Press(At(kName));
    EXPECT_EQ(list->GetState(kControlEditing), 0u);
    EXPECT_EQ(item->Text(1), L"12.5");
    MoveTo(At(kName + 10));
    Release(At(kName + 10));
    EXPECT_EQ(Width(0), kName + 10);
}

TEST_F(HeaderSizing, APressDoesNothingWhereTheOwnerKeepsTheRowInEdit)
{
    CTreeListItem *item = list->InsertItem(L"P 1");
    ASSERT_EQ(list->BeginModify(item, 1), 1);
    list->GetEdit()->setText(QStringLiteral("wrong"));
    owner.answers[NotifyColumnChanging] = {-1};
    Press(At(kName));
    EXPECT_NE(list->GetState(kControlEditing), 0u);
    MoveTo(At(kName + 10));
    Release(At(kName + 10));
    DoubleClick(kName);
    EXPECT_EQ(Width(0), kName);
    list->CancelModify();
}

TEST_F(HeaderSizing, WithoutItsStyleTheHeaderIsGoneAndTheRowsTakeItsPlace)
{
    const int top = list->viewport()->y();
    EXPECT_TRUE(header->isVisible());
    EXPECT_EQ(header->geometry().bottom() + 1, top);
    list->SetStyle(kStyle & ~StyleHeader);
    Settle();
    EXPECT_FALSE(header->isVisible());
    EXPECT_EQ(list->viewport()->y(), top - header->GetHeight());
    EXPECT_EQ(header->GetStyle() & (kHeaderShown | kHeaderColumnDrag | kHeaderColumnDrop), 0u);

    list->SetStyle(kStyle);
    Settle();
    EXPECT_EQ(header->GetStyle(), kHeaderShown | kHeaderColumnDrag | kHeaderColumnDrop | kHeaderSort);
    EXPECT_EQ(list->viewport()->y(), top);
}
