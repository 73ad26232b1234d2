// The tip with the whole text of a cell that cuts it.
#include "tests/treelist/TreeFixture.h"

#include "controls/treelist/TreeListTipCtrl.h"

#include <QScreen>

class TreeListTip : public TreeListTest {
protected:
    static constexpr wchar_t kLong[] = L"A name that is much too long for its column";

    TreeListTip() { window.move(100, 100); }
    CTreeListTipCtrl &Tip() const { return *list->GetTip(); }
    QRect TextOnScreen(CTreeListItem *item, int column) const
    {
        QRect text;
        list->GetItemRect(item, column, text, true);
        return {list->viewport()->mapToGlobal(text.topLeft()), text.size()};
    }
};

TEST_F(TreeListTip, ACellThatCutsItsTextShowsItWhole)
{
    CreateTree();
    list->SetItemText(pipe12, 0, kLong);
    EXPECT_FALSE(Tip().isVisible());
    Move(PlaceOf(pipe12));
    ASSERT_TRUE(Tip().isVisible());
    EXPECT_EQ(Tip().GetText().toStdWString(), kLong);
    EXPECT_GT(Tip().width(), list->GetColumnWidth(0));
}

TEST_F(TreeListTip, ATextThatFitsNeedsNoTip)
{
    CreateTree();
    Move(PlaceOf(pipe12));
    EXPECT_FALSE(Tip().isVisible());
}

TEST_F(TreeListTip, ATextOnePixelTooWideIsCutAndOneThatJustFitsIsNot)
{
    CreateTree(StyleHeader);
    list->SetItemText(pipe12, 1, L"abcdefghij"); // 60 pixels in the pinned font
    ASSERT_EQ(list->fontMetrics().horizontalAdvance(QStringLiteral("abcdefghij")), 60);
    list->SetColumnWidth(1, 62);
    Move(PlaceOf(pipe12, kHitText, 1));
    EXPECT_FALSE(Tip().isVisible());
    list->SetColumnWidth(1, 61);
    Move(PlaceOf(pipe12, kHitText, 1));
    EXPECT_TRUE(Tip().isVisible());
}

TEST_F(TreeListTip, AnAutomaticWidthCutsNothing)
{
    CreateTree(kTreeStyle | StyleCheck);
    list->SetItemText(areaA, 0, kLong);
    list->SetColumnWidth(0, -1);
    Move(PlaceOf(areaA));
    EXPECT_FALSE(Tip().isVisible());
}

TEST_F(TreeListTip, ItGoesWithThePointer)
{
    CreateTree();
    list->SetItemText(pipe12, 0, kLong);
    list->SetItemText(areaB, 0, L"Another name that is much too long for it");
    Move(PlaceOf(pipe12));
    Move(PlaceOf(areaB));
    ASSERT_TRUE(Tip().isVisible());
    EXPECT_EQ(Tip().GetText(), QStringLiteral("Another name that is much too long for it"));
    Move(PlaceOf(areaA));
    EXPECT_FALSE(Tip().isVisible());
    Move(PlaceOf(areaB));
    EXPECT_TRUE(Tip().isVisible());
    Move({20, 280});
    EXPECT_FALSE(Tip().isVisible());
    Move(PlaceOf(areaB));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(list->viewport(), &leave);
    EXPECT_FALSE(Tip().isVisible());
}

TEST_F(TreeListTip, ItComesOverAllOfTheCell)
{
    CreateTree();
    list->SetItemText(pipe12, 0, kLong);
    Move({3, RowOf(pipe12).center().y()}); // the indent
    EXPECT_TRUE(Tip().isVisible());
}

TEST_F(TreeListTip, WithoutTheFocusThereIsNone)
{
    CreateTree();
    list->SetItemText(pipe12, 0, kLong);
    other->setFocus();
    Move(PlaceOf(pipe12));
    EXPECT_FALSE(Tip().isVisible());
}

TEST_F(TreeListTip, AFocusThatLeavesTakesItAway)
{
    CreateTree();
    list->SetItemText(pipe12, 0, kLong);
    Move(PlaceOf(pipe12));
    ASSERT_TRUE(Tip().isVisible());
    other->setFocus();
    EXPECT_FALSE(Tip().isVisible());
}

TEST_F(TreeListTip, WithAButtonDownThereIsNone)
{
    CreateTree();
    list->SetItemText(pipe12, 0, kLong);
    Move(PlaceOf(pipe12), Qt::RightButton);
    EXPECT_FALSE(Tip().isVisible());
    Move(PlaceOf(pipe12));
    ASSERT_TRUE(Tip().isVisible());
    Press(PlaceOf(pipe12));
    EXPECT_FALSE(Tip().isVisible());
}

TEST_F(TreeListTip, AWheelAndAScrolledViewTakeItAway)
{
    CreateTree();
    list->resize(400, 90);
    Settle();
    list->SetItemText(pipe12, 0, kLong);
    Move(PlaceOf(pipe12));
    ASSERT_TRUE(Tip().isVisible());
    Wheel(1);
    EXPECT_FALSE(Tip().isVisible()) << "at once, although nothing moves";
    Move(PlaceOf(pipe12));
    ASSERT_TRUE(Tip().isVisible());
    list->verticalScrollBar()->setValue(1);
    EXPECT_FALSE(Tip().isVisible());
}

TEST_F(TreeListTip, AnItemOrATextThatGoesTakesItAway)
{
    CreateTree();
    list->SetItemText(areaA, 0, kLong);
    Move(PlaceOf(areaA));
    ASSERT_TRUE(Tip().isVisible());
    list->SetItemText(areaA, 0, L"short");
    EXPECT_FALSE(Tip().isVisible());
    list->SetItemText(areaA, 0, kLong);
    Move(PlaceOf(areaA));
    ASSERT_TRUE(Tip().isVisible());
    list->DeleteItem(areaA);
    EXPECT_FALSE(Tip().isVisible());
}

TEST_F(TreeListTip, ItStandsOverTheTextByTheAlignmentOfTheColumn)
{
    CreateTree();
    for (int column = 0; column < 3; ++column)
        list->SetItemText(pipe12, column, kLong);

    Move(PlaceOf(pipe12));
    EXPECT_TRUE(Tip().GetAlignment() & Qt::AlignLeft);
    QRect text = TextOnScreen(pipe12, 0);
    EXPECT_EQ(Tip().geometry().left(), text.left() - 3);
    EXPECT_EQ(Tip().geometry().top(), text.top());

    Move(PlaceOf(pipe12, kHitText, 1));
    EXPECT_TRUE(Tip().GetAlignment() & Qt::AlignRight);
    text = TextOnScreen(pipe12, 1);
    EXPECT_EQ(Tip().geometry().right(), text.right() + 3);

    Move(PlaceOf(pipe12, kHitText, 2));
    EXPECT_TRUE(Tip().GetAlignment() & Qt::AlignHCenter);
    text = TextOnScreen(pipe12, 2);
    EXPECT_NEAR(Tip().geometry().center().x(), text.center().x(), 1);
}

TEST_F(TreeListTip, ItsWordsStandWhereThoseOfTheCellStand)
{
    CreateTree(StyleHeader);
    list->SetColumnWidth(0, 100);
    list->SetItemText(pipe12, 0, L"llllllllllllllllllllll");
    Move(PlaceOf(pipe12));
    ASSERT_TRUE(Tip().isVisible());
    const auto firstInk = [](const QImage &image, int from) {
        const QRgb ground = image.pixel(from, image.height() / 2);
        for (int x = from; x < image.width(); ++x) {
            for (int y = 2; y < image.height() - 2; ++y) {
                if (image.pixel(x, y) != ground)
                    return x;
            }
        }
        return -1;
    };
    const QImage tip = Tip().grab().toImage();
    const QImage row = Picture().copy(RowOf(pipe12).adjusted(2, 0, 0, 0));
    EXPECT_EQ(firstInk(tip, 2) - 3, firstInk(row, 0));
}

TEST_F(TreeListTip, ATextLongerThanTheScreenIsWrapped)
{
    CreateTree();
    const QRect screen = list->screen()->availableGeometry();
    std::wstring words;
    for (int word = 0; word < screen.width() / 15; ++word)
        words += L"word ";
    list->SetItemText(pipe12, 0, words);
    Move(PlaceOf(pipe12));
    ASSERT_TRUE(Tip().isVisible());
    EXPECT_TRUE(screen.contains(Tip().geometry()));
    EXPECT_GT(Tip().height(), 2 * list->fontMetrics().height());
}

TEST_F(TreeListTip, ItStaysOnTheScreen)
{
    CreateTree();
    list->SetItemText(pipe12, 2, kLong);
    const QRect screen = list->screen()->availableGeometry();
    window.move(screen.right() - 350, 100);
    Settle();
    Move(PlaceOf(pipe12, kHitText, 2));
    ASSERT_TRUE(Tip().isVisible());
    EXPECT_TRUE(screen.contains(Tip().geometry()));
    list->SetItemText(pipe12, 1, kLong); // at the right of its column, so the tip grows to the left
    window.move(screen.left() - 100, screen.bottom() - 45);
    Settle();
    Move(PlaceOf(pipe12, kHitText, 1));
    ASSERT_TRUE(Tip().isVisible());
    EXPECT_TRUE(screen.contains(Tip().geometry()));
    EXPECT_EQ(Tip().geometry().left(), screen.left());
}

TEST_F(TreeListTip, ItTakesNeitherMouseNorFocus)
{
    CreateTree();
    list->SetItemText(pipe12, 0, kLong);
    Move(PlaceOf(pipe12));
    EXPECT_TRUE(Tip().windowFlags() & Qt::WindowTransparentForInput);
    EXPECT_EQ(Tip().windowType(), Qt::ToolTip);
    EXPECT_TRUE(list->hasFocus());
    EXPECT_EQ(Tip().objectName(), QStringLiteral("Morvane.TreeListTipCtrl"));
}

TEST_F(TreeListTip, ADisabledOrHiddenControlHasNone)
{
    CreateTree();
    list->SetItemText(pipe12, 0, kLong);
    Move(PlaceOf(pipe12));
    ASSERT_TRUE(Tip().isVisible());
    list->hide();
    EXPECT_FALSE(Tip().isVisible());
    list->show();
    list->setFocus();
    Settle();
    Move(PlaceOf(pipe12));
    ASSERT_TRUE(Tip().isVisible());
    list->setEnabled(false);
    EXPECT_FALSE(Tip().isVisible());
}

TEST_F(TreeListTip, TheCellInEditShowsNoTip)
{
    CreateTree();
    list->SetItemText(pipe12, 1, kLong);
    const QPoint margin(list->GetColumnWidth(0) + 1, RowOf(pipe12).center().y()); // the editor leaves it free
    Move(margin);
    ASSERT_TRUE(Tip().isVisible());
    ASSERT_TRUE(list->BeginModify(pipe12, 1));
    EXPECT_FALSE(Tip().isVisible());
    Move(margin);
    EXPECT_FALSE(Tip().isVisible());
    list->FinishModify();
    Move(margin);
    EXPECT_TRUE(Tip().isVisible());
}

TEST_F(TreeListTip, ACellWithoutAnEditorShowsItInEditAsWell)
{
    CreateTree();
    list->SetItemText(pipe12, 0, kLong);
    ASSERT_TRUE(list->BeginModify(pipe12, 0));
    Move(PlaceOf(pipe12));
    EXPECT_TRUE(Tip().isVisible());
}

TEST_F(TreeListTip, AnotherCellsTipGoesWhenThePointerComesToTheEditor)
{
    CreateTree();
    list->SetItemText(pipe12, 0, kLong);
    list->SetColumnModify(2, kEditorCombo);
    const std::pair<int, QWidget *> editors[] = {{1, list->GetEdit()}, {2, list->GetCombo()->GetList()}};
    for (const auto &[column, editor] : editors) {
        ASSERT_TRUE(list->BeginModify(pipe23, column));
        Move(PlaceOf(pipe12));
        ASSERT_TRUE(Tip().isVisible());
        QEnterEvent enter(QPointF(3, 3), QPointF(3, 3), editor->mapToGlobal(QPointF(3, 3)));
        QApplication::sendEvent(editor, &enter);
        EXPECT_FALSE(Tip().isVisible());
    }
}
