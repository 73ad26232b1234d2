// Columns of a tree list that are dragged to another place.
#include "tests/treelist/HeaderFixture.h"

using testing::ElementsAre;

using HeaderDrag = HeaderTest;

TEST_F(HeaderDrag, AColumnGoesBeforeTheColumnWhoseLeftHalfItIsDroppedOn)
{
    DragColumn(kName + kLength + 20, At(30));
    EXPECT_THAT(Order(), ElementsAre(2, 0, 1));
    EXPECT_EQ(header->GetColumnRect(2).left(), 0);
    EXPECT_EQ(header->GetColumnRect(0).left(), kKind);
    EXPECT_THAT(clicked, ElementsAre());
}

TEST_F(HeaderDrag, AColumnGoesBehindTheColumnWhoseRightHalfItIsDroppedOn)
{
    DragColumn(30, At(kName + kLength - 10));
    EXPECT_THAT(Order(), ElementsAre(1, 0, 2));
}

TEST_F(HeaderDrag, BesideTheLastColumnIsTheEnd)
{
    DragColumn(30, At(kName + kLength + kKind + 40));
    EXPECT_THAT(Order(), ElementsAre(1, 2, 0));
}

TEST_F(HeaderDrag, ADropAtItsOwnPlaceChangesNothing)
{
    DragColumn(kName + 20, At(kName + 60));
    EXPECT_THAT(Order(), ElementsAre(0, 1, 2));
    DragColumn(kName + 20, At(kName - 20));
    EXPECT_THAT(Order(), ElementsAre(0, 1, 2));
    DragColumn(kName + 20, At(kName + kLength + 10));
    EXPECT_THAT(Order(), ElementsAre(0, 1, 2));
}

TEST_F(HeaderDrag, HiddenColumnsAreSkipped)
{
    list->SetColumnFormat(1, kColumnHidden, 0);
    Settle();
    DragColumn(kName + 20, At(30));
    EXPECT_THAT(Order(), ElementsAre(2, 0));
}

TEST_F(HeaderDrag, WithinTheThresholdNoWindowOpensAndTheReleaseIsAPlainClick)
{
    MakeSortable(1);
    Press(At(kName + 30));
    MoveTo(At(kName + 30 + QApplication::startDragDistance() - 1));
    EXPECT_EQ(header->GetDragWnd(), nullptr);
    EXPECT_EQ(header->GetDropWnd(), nullptr);
    Release(At(kName + 30 + QApplication::startDragDistance() - 1));
    EXPECT_THAT(clicked, ElementsAre(1));
    EXPECT_THAT(Order(), ElementsAre(0, 1, 2));
}

TEST_F(HeaderDrag, ThePictureOfTheColumnFollowsThePointerAndTheMarkStandsAtTheNewPlace)
{
    Press(At(kName + 30));
    MoveTo(At(kName + 60));
    ASSERT_NE(header->GetDragWnd(), nullptr);
    EXPECT_TRUE(header->GetDragWnd()->isVisible());
    EXPECT_EQ(header->GetDragWnd()->size(), QSize(kLength, header->height()));
    EXPECT_EQ(header->mapFromGlobal(header->GetDragWnd()->pos()).x(), kName + 30);

    MoveTo(At(10));
    EXPECT_EQ(header->mapFromGlobal(header->GetDragWnd()->pos()).x(), 10 - 30);
    EXPECT_EQ(header->mapFromGlobal(header->GetDropWnd()->GetEdge()), QPoint(0, 0));
    MoveTo(At(kName + kLength + kKind - 5));
    EXPECT_EQ(header->mapFromGlobal(header->GetDropWnd()->GetEdge()), QPoint(kName + kLength + kKind, 0));
    EXPECT_TRUE(header->GetDropWnd()->isVisible());
    EXPECT_EQ(header->GetDropWnd()->height(), header->height());

    Release(At(kName + kLength + kKind - 5));
    EXPECT_EQ(header->GetDragWnd(), nullptr);
    EXPECT_EQ(header->GetDropWnd(), nullptr);
    EXPECT_THAT(Order(), ElementsAre(0, 2, 1));
}

TEST_F(HeaderDrag, TheWindowsAreSeenThroughWhereTheDesktopBlendsAndPlainElsewhere)
{
    for (const bool blends : {true, false}) {
        CTreeListLayeredWnd::Assume(blends);
        Press(At(kName + 30));
        MoveTo(At(10));
        const CTLHDragWnd &picture = *header->GetDragWnd();
        const CTLHDropWnd &mark = *header->GetDropWnd();
        EXPECT_TRUE(picture.isWindow() && mark.isWindow());
        EXPECT_TRUE(picture.windowFlags() & Qt::WindowTransparentForInput);
        EXPECT_EQ(picture.objectName(), QStringLiteral("Morvane.TLHDragWnd"));
        EXPECT_EQ(mark.objectName(), QStringLiteral("Morvane.TLHDropWnd"));
        EXPECT_EQ(picture.IsLayered(), blends);
        EXPECT_EQ(mark.mask().isEmpty(), blends);
        const QImage seen = header->GetDragWnd()->grab().toImage();
        const QImage flat = seen.convertToFormat(QImage::Format_RGB32);
        EXPECT_EQ(qAlpha(seen.pixel(3, 3)) == 0xFF, !blends);
        int darkest = 0xFF; // of the text
        for (int y = 2; y < seen.height() - 2; ++y) {
            for (int x = 2; x < seen.width() - 2; ++x)
                darkest = std::min(darkest, qGray(flat.pixel(x, y)));
        }
        if (!blends) {
            EXPECT_EQ(darkest, 0) << "a plain window is the picture itself";
        }
        header->OnCancelMode();
        Release(At(10));
    }
    CTreeListLayeredWnd::Assume(std::nullopt);
}

TEST_F(HeaderDrag, WithoutTheStyleOfDraggingNoColumnIsPickedUp)
{
    list->SetStyle(kStyle & ~StyleHeaderDrag);
    Press(At(kName + 30));
    MoveTo(At(10));
    EXPECT_EQ(header->GetDragWnd(), nullptr);
    Release(At(10));
    EXPECT_THAT(Order(), ElementsAre(0, 1, 2));
}

TEST_F(HeaderDrag, WithoutTheStyleOfDroppingEveryPlaceIsRefused)
{
    list->SetStyle(kStyle & ~StyleHeaderDrop);
    Press(At(kName + 30));
    MoveTo(At(10));
    ASSERT_NE(header->GetDragWnd(), nullptr);
    EXPECT_FALSE(header->GetDropWnd()->isVisible());
    EXPECT_NE(header->cursor().shape(), Qt::ArrowCursor);
    Release(At(10));
    EXPECT_THAT(Order(), ElementsAre(0, 1, 2));
    EXPECT_EQ(header->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(HeaderDrag, APlaceFarFromTheHeaderIsRefusedAndTheMarkHidden)
{
    Press(At(kName + 30));
    MoveTo(At(10));
    EXPECT_TRUE(header->GetDropWnd()->isVisible());
    const QPoint far(10, 4 * header->height());
    MoveTo(far);
    EXPECT_FALSE(header->GetDropWnd()->isVisible());
    EXPECT_NE(header->cursor().shape(), Qt::ArrowCursor);
    Release(far);
    EXPECT_THAT(Order(), ElementsAre(0, 1, 2));
}

TEST_F(HeaderDrag, AnotherControlTakesNoColumn)
{
    CTreeListCtrl neighbour(&window);
    neighbour.Create(kStyle, QRect(10, 320, 400, 200), &window, 2);
    neighbour.InsertColumn(L"One");
    neighbour.show();
    window.resize(440, 560);
    Settle();
    const QPoint over = header->mapFromGlobal(neighbour.GetHeader()->mapToGlobal(QPoint(5, 5)));
    DragColumn(kName + 30, over);
    EXPECT_THAT(Order(), ElementsAre(0, 1, 2));
    EXPECT_EQ(neighbour.GetColumnCount(), 2);
    EXPECT_THAT(neighbour.GetColumnOrderArray(), ElementsAre(0, 1));
}

TEST_F(HeaderDrag, EscapeAndALostCaptureEndItWithoutADrop)
{
    for (const bool escape : {true, false}) {
        Press(At(kName + 30));
        MoveTo(At(10));
        ASSERT_NE(header->GetDragWnd(), nullptr);
        if (escape) {
            QKeyEvent key(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            QApplication::sendEvent(list, &key);
        } else {
            header->OnCancelMode();
        }
        EXPECT_EQ(header->GetDragWnd(), nullptr);
        EXPECT_EQ(header->GetDropWnd(), nullptr);
        EXPECT_EQ(header->cursor().shape(), Qt::ArrowCursor);
        Release(At(10));
        EXPECT_THAT(Order(), ElementsAre(0, 1, 2));
        EXPECT_THAT(clicked, ElementsAre());
    }
}

TEST_F(HeaderDrag, AColumnThatIsHiddenMeanwhileGoesNowhere)
{
    Press(At(kName + 30));
    MoveTo(At(10));
    list->SetColumnFormat(1, kColumnHidden, 0);
    MoveTo(At(20));
    Release(At(20));
    EXPECT_THAT(Order(), ElementsAre(0, 2));
}

TEST_F(HeaderDrag, TheOrderIsTakenOfScrolledColumnsToo)
{
    list->SetColumnWidth(2, 600);
    Settle();
    list->horizontalScrollBar()->setValue(100);
    Settle();
    DragColumn(kName - 100 + 30, At(5));
    EXPECT_THAT(Order(), ElementsAre(0, 1, 2)) << "the left half of the first column is out of view";
    list->horizontalScrollBar()->setValue(0);
    Settle();
    DragColumn(kName + 30, At(5));
    EXPECT_THAT(Order(), ElementsAre(1, 0, 2));
}

TEST_F(HeaderDrag, AColumnThatIsHeldBesideTheHeaderScrollsTheControl)
{
    list->SetColumnWidth(2, 600);
    Settle();
    QScrollBar *bar = list->horizontalScrollBar();
    const QPoint right(header->width() + 5, header->height() / 2), left(-5, header->height() / 2);
    Press(At(30));
    MoveTo(At(60));
    EXPECT_FALSE(header->IsScrolling());
    MoveTo(right);
    EXPECT_TRUE(header->IsScrolling());
    header->OnScrollTimer();
    EXPECT_EQ(bar->value(), 16);
    header->OnScrollTimer();
    EXPECT_EQ(bar->value(), 32);
    bar->setValue(bar->maximum());
    header->OnScrollTimer();
    EXPECT_EQ(header->mapFromGlobal(header->GetDropWnd()->GetEdge()).x(), header->width()) << "behind the last";

    MoveTo(left);
    header->OnScrollTimer();
    EXPECT_EQ(bar->value(), bar->maximum() - 16);
    MoveTo(At(50));
    EXPECT_FALSE(header->IsScrolling());
    const int value = bar->value();
    header->OnScrollTimer();
    EXPECT_EQ(bar->value(), value);

    MoveTo(left);
    Release(left);
    EXPECT_FALSE(header->IsScrolling());
}

TEST_F(HeaderDrag, ARefusedPlaceBesideTheHeaderDoesNotScroll)
{
    list->SetStyle(kStyle & ~StyleHeaderDrop);
    list->SetColumnWidth(2, 600);
    Settle();
    Press(At(30));
    MoveTo(At(60));
    MoveTo(QPoint(header->width() + 5, 5));
    EXPECT_FALSE(header->IsScrolling());
    header->OnCancelMode();
}
