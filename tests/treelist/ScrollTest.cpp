// Scroll bars, their need of each other, scrolling by pixels that stand already, and EnsureVisible.
#include "tests/treelist/TreeFixture.h"

#include "controls/treelist/TreeListHeaderCtrl.h"

class TreeListScroll : public TreeListTest {
protected:
    /// Keeps what the viewport is asked to paint.
    class PaintWatch : public QObject {
    public:
        explicit PaintWatch(QWidget *watched) { watched->installEventFilter(this); }
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::Paint)
                painted |= static_cast<QPaintEvent *>(event)->region();
            return false;
        }
        QRegion painted;
    };

    /// Client of width x height, bars not counted, without header and with frames of one pixel.
    void ShowSized(int width, int height)
    {
        list->resize(width + 2, height + 2);
        Show();
    }
    int Extent() const { return list->verticalScrollBar()->sizeHint().width(); }
    QScrollBar &Rows() const { return *list->verticalScrollBar(); }
    QScrollBar &Pixels() const { return *list->horizontalScrollBar(); }
};

// --- Pages and ranges ---

TEST_F(TreeListScroll, APageIsTheClientHeightOverTheItemHeightLessOne)
{
    CreateEmpty(StyleTree);
    for (const auto &[height, rows] :
         {std::pair{200, 9}, {199, 8}, {219, 9}, {220, 10}, {40, 1}, {39, 0}, {20, 0}, {19, 0}, {5, 0}}) {
        ShowSized(340, height);
        EXPECT_EQ(list->GetCountPerPage(), rows) << height;
    }
}

TEST_F(TreeListScroll, TheVerticalRangeIsTheShownCountAndItsPageTheRowsOfAPage)
{
    CreateEmpty(StyleTree);
    AddRows(100);
    ShowSized(340 + Extent(), 200);
    EXPECT_EQ(Rows().minimum(), 0);
    EXPECT_EQ(Rows().pageStep(), 9);
    EXPECT_EQ(Rows().maximum(), 91);
    EXPECT_EQ(Rows().singleStep(), 1);
    EXPECT_TRUE(Rows().isVisible());
}

TEST_F(TreeListScroll, CollapsedRowsDoNotCount)
{
    CreateTree(StyleTree | StyleTreeButtons);
    ShowSized(400, 80);
    EXPECT_EQ(list->GetVisibleCount(), 7);
    EXPECT_EQ(Rows().maximum(), 4);
    list->Expand(pipe12, kCollapse);
    list->GetTopIndex();
    EXPECT_EQ(Rows().maximum(), 2);
}

TEST_F(TreeListScroll, TheHorizontalRangeIsTheTotalWidth)
{
    CreateEmpty(StyleTree);
    ShowSized(200, 100);
    EXPECT_EQ(Pixels().pageStep(), 200);
    EXPECT_EQ(Pixels().maximum(), 130);
    EXPECT_TRUE(Pixels().isVisible());
    list->SetColumnWidth(2, 91);
    EXPECT_EQ(list->GetClient().width(), 200);
    EXPECT_EQ(Pixels().maximum(), 131);
}

TEST_F(TreeListScroll, NoBarIsShownWhereAllFits)
{
    CreateEmpty(StyleTree);
    AddRows(9);
    ShowSized(330, 200); // exactly
    EXPECT_FALSE(Rows().isVisible());
    EXPECT_FALSE(Pixels().isVisible());
    EXPECT_EQ(Rows().maximum(), 0);
    EXPECT_EQ(Pixels().maximum(), 0);
    EXPECT_EQ(list->GetClient(), QRect(0, 0, 330, 200));
}

TEST_F(TreeListScroll, OneRowMoreThanAPageNeedsTheBar)
{
    CreateEmpty(StyleTree);
    AddRows(10); // all of them have room, but a page is one row less
    ShowSized(340 + Extent(), 200);
    EXPECT_TRUE(Rows().isVisible());
    EXPECT_EQ(Rows().maximum(), 1);
}

TEST_F(TreeListScroll, AVerticalBarThatTakesTheWidthNeedsAHorizontalOne)
{
    CreateEmpty(StyleTree);
    AddRows(30);
    ShowSized(330 + Extent() - 1, 200);
    EXPECT_TRUE(Rows().isVisible());
    EXPECT_TRUE(Pixels().isVisible());
    EXPECT_EQ(Pixels().maximum(), 1);
    EXPECT_EQ(list->GetClient().size(), QSize(329, 200 - Extent()));
    ShowSized(330 + Extent(), 200);
    EXPECT_FALSE(Pixels().isVisible());
}

TEST_F(TreeListScroll, AHorizontalBarThatTakesTheHeightNeedsAVerticalOne)
{
    CreateEmpty(StyleTree);
    AddRows(9);
    ShowSized(329, 200); // nine rows are a page, until the bar takes one
    EXPECT_TRUE(Pixels().isVisible());
    EXPECT_TRUE(Rows().isVisible());
    EXPECT_EQ(list->GetClient().size(), QSize(329 - Extent(), 200 - Extent()));
    ShowSized(330, 200);
    EXPECT_FALSE(Pixels().isVisible());
    EXPECT_FALSE(Rows().isVisible());
}

TEST_F(TreeListScroll, TheClientIsTheViewportWhateverBarsThereAre)
{
    CreateEmpty(kTreeStyle);
    AddRows(12);
    Show();
    for (int width = 300; width < 380; width += 7) {
        for (int height = 150; height < 320; height += 9) {
            list->resize(width, height);
            Settle();
            EXPECT_EQ(list->GetClient().size(), list->viewport()->size()) << width << " x " << height;
            EXPECT_EQ(Rows().isVisible(), Rows().maximum() > 0);
            EXPECT_EQ(Pixels().isVisible(), Pixels().maximum() > 0);
        }
    }
}

TEST_F(TreeListScroll, BarsAreRightBeforeTheFirstShow)
{
    CreateEmpty(kTreeStyle);
    AddRows(100);
    list->resize(200, 200);
    const QRect hidden = list->GetClient();
    const int rows = list->GetCountPerPage(), last = Rows().maximum();
    list->EnsureVisible(list->GetFirstShowItem(60), 0);
    EXPECT_EQ(list->GetTopIndex(), 60 - rows);
    Show();
    EXPECT_EQ(list->GetClient(), hidden);
    EXPECT_EQ(Rows().maximum(), last);
    EXPECT_EQ(list->GetTopIndex(), 60 - rows);
}

TEST_F(TreeListScroll, FewerRowsPullTheViewBack)
{
    CreateEmpty(StyleTree);
    AddRows(100);
    ShowSized(400, 200);
    Rows().setValue(91);
    EXPECT_EQ(list->GetTopIndex(), 91);
    while (list->GetVisibleCount() > 20)
        list->DeleteItem(list->GetFirstShowItem(5));
    EXPECT_EQ(list->GetTopIndex(), 11);
    list->DeleteAllItems();
    EXPECT_EQ(list->GetTopIndex(), 0);
    EXPECT_EQ(Rows().maximum(), 0);
}

TEST_F(TreeListScroll, LayoutIsDoneOnceForManyChangesAndBeforeItsOutcomeIsAsked)
{
    CreateEmpty(StyleTree);
    ShowSized(400, 200);
    int changes = 0;
    QObject::connect(&Rows(), &QScrollBar::rangeChanged, list, [&] { ++changes; });
    AddRows(1000);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(list->GetVertScroll(), 0);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(Rows().maximum(), 991);
    Settle();
    EXPECT_EQ(changes, 1);
}

TEST_F(TreeListScroll, TheHeaderStandsAboveTheClientAndGoesWithItsStyle)
{
    CreateEmpty(StyleTree | StyleHeader);
    AddRows(100);
    Show();
    const QRect client = list->viewport()->geometry();
    const QRect header = list->GetHeader()->geometry();
    EXPECT_TRUE(list->GetHeader()->isVisible());
    EXPECT_GT(header.height(), 8);
    EXPECT_EQ(header.bottom() + 1, client.top());
    EXPECT_EQ(header.left(), client.left());
    EXPECT_EQ(header.width(), client.width());
    list->SetStyle(StyleTree);
    Settle();
    EXPECT_FALSE(list->GetHeader()->isVisible());
    EXPECT_EQ(list->viewport()->geometry().top(), header.top());
    list->SetStyle(StyleTree | StyleHeader);
    Settle();
    EXPECT_EQ(list->viewport()->geometry(), client);
}

// --- Steps ---

TEST_F(TreeListScroll, AStepPaintsOnlyTheRowsThatComeIn)
{
    CreateEmpty(StyleTree | StyleAlternate);
    AddRows(1000);
    ShowSized(330 + Extent(), 200);
    PaintWatch watch(list->viewport());
    Rows().setValue(1);
    Settle();
    EXPECT_EQ(watch.painted, QRegion(0, 180, 330, 20));
    watch.painted = QRegion();
    Rows().setValue(0);
    Settle();
    EXPECT_EQ(watch.painted, QRegion(0, 0, 330, 20));
    watch.painted = QRegion();
    Rows().setValue(9);
    Settle();
    EXPECT_EQ(watch.painted, QRegion(0, 20, 330, 180));
}

TEST_F(TreeListScroll, AStepSidewaysPaintsOnlyTheStripThatComesIn)
{
    CreateEmpty(StyleTree);
    AddRows(5);
    ShowSized(200, 200);
    PaintWatch watch(list->viewport());
    Pixels().setValue(16);
    Settle();
    EXPECT_EQ(watch.painted, QRegion(184, 0, 16, list->GetClient().height()));
}

TEST_F(TreeListScroll, ScrolledPicturesAreThePicturesOfAWholePaint)
{
    CreateTree(kTreeStyle | StyleAlternate | StyleHorzGrid | StyleVertGrid | StyleCheck | StyleFullRowSelect);
    list->SelectItem(areaA);
    list->resize(220, 110);
    Settle();
    // What the window shows: a grab of the widget would paint anew.
    const auto shown = [this] {
        const QRect client(list->viewport()->mapTo(&window, QPoint()), list->viewport()->size());
        const QImage all = window.screen()->grabWindow(window.winId()).toImage();
        const qreal ratio = all.devicePixelRatio();
        return all.copy(QRectF(client.topLeft() * ratio, QSizeF(client.size()) * ratio).toAlignedRect());
    };
    std::vector<QImage> pictures;
    for (const auto &[row, pixel] : {std::pair{1, 0}, {2, 5}, {0, 40}, {3, 41}, {2, 0}, {1, 80}}) {
        Rows().setValue(row);
        Pixels().setValue(pixel);
        Settle();
        const QImage stepped = shown();
        list->viewport()->update();
        Settle();
        EXPECT_EQ(stepped, shown());
        pictures.push_back(stepped);
    }
    EXPECT_NE(pictures.front(), pictures[1]);
}

TEST_F(TreeListScroll, ABackgroundPictureStandsStillWhileRowsMove)
{
    CreateEmpty(StyleTree | StyleBkBitmap);
    AddRows(1000);
    ShowSized(330 + Extent(), 200);
    PaintWatch watch(list->viewport());
    Rows().setValue(1);
    Settle();
    EXPECT_EQ(watch.painted, QRegion(0, 0, 330, 200)) << "so all of it is painted";
}

TEST_F(TreeListScroll, AWheelNotchIsAPageAndIsReportedAsHandled)
{
    CreateEmpty(StyleTree);
    AddRows(1000);
    ShowSized(400, 200);
    const auto turn = [this](int angle) {
        QWheelEvent event(QPointF(5, 5), list->viewport()->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, angle),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        event.ignore();
        QApplication::sendEvent(list->viewport(), &event);
        EXPECT_TRUE(event.isAccepted());
    };
    turn(-120);
    EXPECT_EQ(list->GetVertScroll(), 0) << "the step is posted";
    Settle();
    EXPECT_EQ(list->GetVertScroll(), 9);
    turn(-120);
    turn(-120);
    Settle();
    EXPECT_EQ(list->GetVertScroll(), 27);
    turn(120);
    Settle();
    EXPECT_EQ(list->GetVertScroll(), 18);
    turn(120);
    turn(120);
    turn(120);
    Settle();
    EXPECT_EQ(list->GetVertScroll(), 0);
}

TEST_F(TreeListScroll, PartsOfAWheelNotchAddUp)
{
    CreateEmpty(StyleTree);
    AddRows(1000);
    ShowSized(400, 200);
    for (int part = 0; part < 3; ++part) {
        QWheelEvent event(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, -40), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        EXPECT_EQ(list->GetVertScroll(), 0);
        QApplication::sendEvent(list->viewport(), &event);
        Settle();
    }
    EXPECT_EQ(list->GetVertScroll(), 9);
}

TEST_F(TreeListScroll, AWheelTurnedSidewaysScrollsTheColumns)
{
    CreateEmpty(StyleTree);
    AddRows(1000);
    ShowSized(150, 200);
    QWheelEvent event(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(-120, 0), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(list->viewport(), &event);
    EXPECT_TRUE(event.isAccepted());
    Settle();
    EXPECT_GT(list->GetHorzScroll(), 0);
    EXPECT_EQ(list->GetVertScroll(), 0);
}

TEST_F(TreeListScroll, AWheelEndsTheEditOfARow)
{
    CreateTree();
    ASSERT_EQ(list->BeginModify(pipe12, 1), 1);
    Wheel(-1);
    EXPECT_FALSE(list->GetState(kControlEditing));
    EXPECT_EQ(owner.CountOf(NotifyEndEdit), 1);
}

// --- EnsureVisible ---

TEST_F(TreeListScroll, ARowAboveIsScrolledToTheTop)
{
    CreateEmpty(StyleTree);
    AddRows(100);
    ShowSized(400, 200);
    Rows().setValue(50);
    EXPECT_EQ(list->EnsureVisible(list->GetFirstShowItem(49), 0), 1);
    EXPECT_EQ(list->GetTopIndex(), 49);
    list->EnsureVisible(list->GetFirstShowItem(0), 0);
    EXPECT_EQ(list->GetTopIndex(), 0);
}

TEST_F(TreeListScroll, ARowBelowIsScrolledToTheEndOfThePage)
{
    CreateEmpty(StyleTree);
    AddRows(100);
    ShowSized(400, 200);
    list->EnsureVisible(list->GetFirstShowItem(10), 0);
    EXPECT_EQ(list->GetTopIndex(), 1);
    QRect row;
    list->GetItemRect(list->GetFirstShowItem(10), row);
    EXPECT_EQ(row.bottom() + 1, 200) << "the last whole row";
    list->EnsureVisible(list->GetFirstShowItem(99), 0);
    EXPECT_EQ(list->GetTopIndex(), 90);
}

TEST_F(TreeListScroll, RowsOnThePageMoveNothing)
{
    CreateEmpty(StyleTree);
    AddRows(100);
    ShowSized(400, 200);
    Rows().setValue(30);
    for (int row = 30; row <= 39; ++row)
        list->EnsureVisible(list->GetFirstShowItem(row), 0);
    EXPECT_EQ(list->GetTopIndex(), 30);
}

TEST_F(TreeListScroll, AnItemThatIsNotShownMovesNothing)
{
    CreateTree();
    EXPECT_EQ(list->EnsureVisible(pipe98, 0), 0);
    EXPECT_EQ(list->EnsureVisible(nullptr, 0), 0);
    EXPECT_FALSE(outfall2->Has(kItemExpanded));
}

TEST_F(TreeListScroll, AColumnLeftOfTheViewIsScrolledToItsLeftEdge)
{
    CreateTree(StyleTree);
    ShowSized(150, 200);
    Pixels().setValue(180);
    list->EnsureVisible(pipe12, 1);
    EXPECT_EQ(list->GetHorzScroll(), 160);
}

TEST_F(TreeListScroll, OfTheFirstColumnTheIndentMayStayHidden)
{
    CreateTree(StyleTree);
    ShowSized(150, 300);
    Pixels().setValue(180);
    list->EnsureVisible(areaA, 0);
    EXPECT_EQ(list->GetHorzScroll(), 32);
    list->SetStyle(0);
    Pixels().setValue(180);
    list->EnsureVisible(areaA, 0);
    EXPECT_EQ(list->GetHorzScroll(), 0);
}

TEST_F(TreeListScroll, AColumnRightOfTheViewIsAlignedAtTheRight)
{
    CreateTree(StyleTree);
    ShowSized(150, 300);
    list->EnsureVisible(pipe12, 1);
    EXPECT_EQ(list->GetHorzScroll(), 240 - 150);
    list->EnsureVisible(pipe12, 2);
    EXPECT_EQ(list->GetHorzScroll(), 330 - 150);
}

TEST_F(TreeListScroll, AColumnWiderThanTheViewIsAlignedAtTheLeft)
{
    CreateTree(StyleTree);
    ShowSized(100, 300);
    list->SetColumnWidth(1, 120);
    list->EnsureVisible(pipe12, 1);
    EXPECT_EQ(list->GetHorzScroll(), 160);
}

TEST_F(TreeListScroll, ColumnsStandInTheirShownOrder)
{
    CreateTree(StyleTree);
    ShowSized(100, 300);
    list->SetColumnOrderArray({2, 1, 0});
    list->EnsureVisible(pipe12, 1);
    EXPECT_EQ(list->GetHorzScroll(), 70);
    list->EnsureVisible(pipe12, 2);
    EXPECT_EQ(list->GetHorzScroll(), 0);
}

TEST_F(TreeListScroll, AColumnThatIsNotShownMovesNothingSideways)
{
    CreateTree(StyleTree);
    ShowSized(100, 300);
    Pixels().setValue(77);
    for (const int column : {-1, 3, 100})
        EXPECT_EQ(list->EnsureVisible(pipe12, column), 1);
    EXPECT_EQ(list->GetHorzScroll(), 77);
}

// --- Heights ---

TEST_F(TreeListScroll, RowsAreAsHighAsTheFontAndFiveAndEven)
{
    ASSERT_NE(list->Create(kTreeStyle, QRect(0, 0, 400, 300), &window, 900), 0);
    for (const auto &[pixels, height] : {std::pair{8, 14}, {9, 14}, {10, 16}, {11, 16}, {20, 26}, {21, 26}}) {
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(pixels);
        list->setFont(font);
        EXPECT_EQ(list->GetItemHeight(), height) << pixels;
    }
    EXPECT_EQ(list->SetItemHeight(31), 26);
    EXPECT_EQ(list->GetItemHeight(), 32);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(8);
    list->setFont(font);
    EXPECT_EQ(list->GetItemHeight(), 32) << "a height that the owner gave stays";
}
