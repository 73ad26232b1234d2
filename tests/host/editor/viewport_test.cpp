// The view as a person works it, through the widget.
#include "host/editor/Viewport.h"
#include "tests/host/editor/ViewShapes.h"

#include <QAction>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <cmath>

namespace velmor {
namespace {

using test::kPi;
using testing::ElementsAre;
using testing::IsEmpty;

class View : public testing::Test, protected test::ViewShapes {
protected:
    View()
    {
        viewport.resize(800, 600);
        viewport.setStyle(PaintStyle::light());
    }
    /// Shows the world from (0, 0) to (80, 60), ten pixels a unit.
    void show()
    {
        viewport.setDrawing(drawing.get());
        viewport.show();
        viewport.grab();
        viewport.showExtents({0, 0, 80, 60});
        zoomTo(10.0, 40.0, 30.0);
        viewport.grab();
    }
    void zoomTo(double pixelsPerUnit, double x, double y)
    {
        const double width = 800.0 / pixelsPerUnit, height = 600.0 / pixelsPerUnit;
        const double room = 1.0 - 2.0 * 0.04; // what showing extents leaves as a margin
        viewport.showExtents(
            {x - 0.5 * room * width, y - 0.5 * room * height, x + 0.5 * room * width, y + 0.5 * room * height});
        EXPECT_NEAR(viewport.view().pixelsPerUnit, pixelsPerUnit, 1e-9 * pixelsPerUnit);
    }
    QPoint pixel(double x, double y) const { return viewport.view().toView(x, y).toPoint(); }
    /// Colour at a pixel of the view, in a picture of it.
    static QRgb colorAt(const QImage &image, const QPointF &p)
    {
        return image.pixel((p * image.devicePixelRatio()).toPoint());
    }
    void click(double x, double y, Qt::KeyboardModifiers keys = {})
    {
        QTest::mouseMove(&viewport, pixel(x, y));
        QTest::mouseClick(&viewport, Qt::LeftButton, keys, pixel(x, y));
    }
    void drag(double x1, double y1, double x2, double y2, Qt::KeyboardModifiers keys = {})
    {
        QTest::mousePress(&viewport, Qt::LeftButton, keys, pixel(x1, y1));
        move(x2, y2);
        QTest::mouseRelease(&viewport, Qt::LeftButton, keys, pixel(x2, y2));
    }
    void move(double x, double y)
    {
        const QPointF p = pixel(x, y);
        QMouseEvent event(QEvent::MouseMove, p, viewport.mapToGlobal(p), Qt::NoButton, Qt::NoButton, {});
        QCoreApplication::sendEvent(&viewport, &event);
    }
    void wheel(const QPointF &at, int notches)
    {
        QWheelEvent event(at, viewport.mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&viewport, &event);
    }
    std::vector<AcDbObjectId> selection()
    {
        const auto &members = drawing->component<Selection>().members();
        return {members.begin(), members.end()};
    }
    void ask(PromptKind kind, std::optional<AcGePoint3d> base = {})
    {
        const Prompt prompt{.kind = kind, .base = base};
        viewport.setPrompt(&prompt);
    }
    void setDrafting(const Drafting &settings)
    {
        viewport.setDraftingSource([settings] { return settings; }, {});
    }

    Viewport viewport;
};

// --- Zoom and pan

TEST_F(View, EverythingIsShownByHomeAndByADoubleClickOfTheMiddleButton)
{
    line(100, 200, 300, 260);
    show();
    QTest::keyClick(&viewport, Qt::Key_Home);
    viewport.grab();
    EXPECT_NEAR(viewport.view().centerX, 200, 1e-9);
    EXPECT_NEAR(viewport.view().centerY, 230, 1e-9);
    zoomTo(10.0, 40.0, 30.0);
    QTest::mouseDClick(&viewport, Qt::MiddleButton, {}, {400, 300});
    viewport.grab();
    EXPECT_NEAR(viewport.view().centerX, 200, 1e-9);
}

TEST_F(View, PreviousGoesBackViewByViewAndARowOfWheelTurnsIsOne)
{
    line(0, 0, 80, 60);
    show();
    const ViewTransform first = viewport.view();
    for (int i = 0; i < 5; ++i)
        wheel({200, 150}, 1);
    const ViewTransform second = viewport.view();
    viewport.zoomBy(0.5);
    QTest::keyClick(&viewport, Qt::Key_Right);
    QTest::keyClick(&viewport, Qt::Key_Right);
    const auto isAt = [&](const ViewTransform &view) {
        return viewport.view().centerX == view.centerX && viewport.view().centerY == view.centerY &&
               viewport.view().pixelsPerUnit == view.pixelsPerUnit;
    };
    EXPECT_TRUE(viewport.zoomPrevious()); // both moves
    EXPECT_EQ(viewport.view().pixelsPerUnit, second.pixelsPerUnit * 0.5);
    EXPECT_TRUE(viewport.zoomPrevious());
    EXPECT_TRUE(isAt(second));
    QTest::keyClick(&viewport, Qt::Key_Backspace);
    EXPECT_TRUE(isAt(first));
    while (viewport.zoomPrevious()) {
    }
    EXPECT_FALSE(viewport.zoomPrevious());
}

TEST_F(View, ZoomingInAndOutKeepsTheMiddleAndTheWheelThePointersPlace)
{
    line(0, 0, 80, 60);
    show();
    viewport.zoomBy(2.0);
    EXPECT_NEAR(viewport.view().pixelsPerUnit, 20.0, 1e-9);
    EXPECT_NEAR(viewport.view().centerX, 40.0, 1e-9);
    viewport.zoomBy(0.25);
    EXPECT_NEAR(viewport.view().pixelsPerUnit, 5.0, 1e-9);
    EXPECT_NEAR(viewport.view().centerY, 30.0, 1e-9);
    const QPointF pointer(123, 456);
    const AcGePoint3d before = viewport.view().toWorld(pointer);
    wheel(pointer, 2);
    wheel(pointer, -5);
    EXPECT_LT(viewport.view().pixelsPerUnit, 5.0);
    EXPECT_NEAR(viewport.view().toWorld(pointer).x, before.x, 1e-9);
    EXPECT_NEAR(viewport.view().toWorld(pointer).y, before.y, 1e-9);
}

TEST_F(View, TheMiddleButtonAndSpaceWithTheLeftOneDragTheDrawing)
{
    line(0, 0, 80, 60);
    show();
    const double x = viewport.view().centerX, y = viewport.view().centerY;
    QTest::mousePress(&viewport, Qt::MiddleButton, {}, {300, 300});
    QTest::mouseMove(&viewport, {350, 280});
    QTest::mouseRelease(&viewport, Qt::MiddleButton, {}, {350, 280});
    EXPECT_NEAR(viewport.view().centerX, x - 5.0, 1e-9);
    EXPECT_NEAR(viewport.view().centerY, y - 2.0, 1e-9);
    QSignalSpy entered(&viewport, &Viewport::entered);
    QTest::keyPress(&viewport, Qt::Key_Space);
    QTest::mousePress(&viewport, Qt::LeftButton, {}, {300, 300});
    QTest::mouseMove(&viewport, {250, 320});
    QTest::mouseRelease(&viewport, Qt::LeftButton, {}, {250, 320});
    QTest::keyRelease(&viewport, Qt::Key_Space);
    EXPECT_NEAR(viewport.view().centerX, x, 1e-9);
    EXPECT_NEAR(viewport.view().centerY, y, 1e-9);
    EXPECT_EQ(entered.count(), 0);
    EXPECT_THAT(selection(), IsEmpty());
    QTest::keyClick(&viewport, Qt::Key_Space); // alone it is Enter
    EXPECT_EQ(entered.count(), 1);
}

TEST_F(View, PanningPaintsNoFullPictureAgain)
{
    for (int i = 0; i < 200; ++i)
        line(i % 20 * 4, i / 20 * 6, i % 20 * 4 + 3, i / 20 * 6 + 5);
    show();
    const std::size_t before = viewport.paintCounts().full;
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Right, Qt::Key_Down}) {
        QTest::keyClick(&viewport, key);
        viewport.grab();
    }
    QTest::mousePress(&viewport, Qt::MiddleButton, {}, {300, 300});
    for (int i = 1; i < 20; ++i) {
        QTest::mouseMove(&viewport, {300 + 3 * i, 300 - 2 * i});
        viewport.grab();
    }
    QTest::mouseRelease(&viewport, Qt::MiddleButton, {}, {357, 262});
    EXPECT_EQ(viewport.paintCounts().full, before);
    EXPECT_GE(viewport.paintCounts().strips, 20u);
}

TEST_F(View, TheScaleCountsTheDrawingsUnits)
{
    show(); // 10 pixels a metre, 96 pixels an inch
    const double metres = viewport.scaleDenominator();
    EXPECT_NEAR(metres, viewport.logicalDpiX() / 0.0254 / 10.0, 1e-9);
    drawing->setHeaderVariable("$INSUNITS", 70, "2");
    EXPECT_NEAR(viewport.scaleDenominator(), 0.3048 * metres, 1e-9);
}

// --- Selecting

TEST_F(View, AClickTakesTheEntityAndShiftTakesItOut)
{
    AcDbEntity &a = line(10, 10, 30, 10), &b = line(10, 20, 30, 20);
    show();
    click(20, 10);
    click(20, 20.3);
    EXPECT_THAT(selection(), ElementsAre(idOf(a), idOf(b)));
    click(25, 10, Qt::ShiftModifier);
    EXPECT_THAT(selection(), ElementsAre(idOf(b)));
    QTest::keyClick(&viewport, Qt::Key_Escape);
    EXPECT_THAT(selection(), IsEmpty());
}

TEST_F(View, FromLeftToRightOnlyWhatIsInsideFromRightToLeftAlsoWhatIsCrossed)
{
    AcDbEntity &inside = line(20, 20, 30, 25), &crossed = line(35, 5, 35, 50);
    show();
    drag(15, 30, 40, 15);
    EXPECT_THAT(selection(), ElementsAre(idOf(inside)));
    QTest::keyClick(&viewport, Qt::Key_Escape);
    drag(40, 15, 15, 30);
    EXPECT_THAT(selection(), ElementsAre(idOf(inside), idOf(crossed)));
    drag(33, 40, 38, 45, Qt::ShiftModifier);
    EXPECT_EQ(selection().size(), 2u); // not inside
    drag(38, 40, 33, 45, Qt::ShiftModifier);
    EXPECT_THAT(selection(), ElementsAre(idOf(inside)));
}

TEST_F(View, TwoClicksIntoTheOpenAreAWindowWithAPreview)
{
    AcDbEntity &inside = line(20, 20, 30, 25);
    show();
    click(15, 15);
    EXPECT_THAT(viewport.preview(), IsEmpty());
    move(40, 30);
    EXPECT_THAT(viewport.preview(), ElementsAre(idOf(inside)));
    EXPECT_THAT(selection(), IsEmpty());
    move(25, 30);
    EXPECT_THAT(viewport.preview(), IsEmpty());
    click(40, 30);
    EXPECT_THAT(selection(), ElementsAre(idOf(inside)));
    EXPECT_THAT(viewport.preview(), IsEmpty());
}

TEST_F(View, TheFirstCornerOfAWindowStaysInTheDrawingWhenTheViewMoves)
{
    AcDbEntity &inside = line(20, 20, 30, 25);
    show();
    click(15, 15);
    wheel({400, 300}, -3);
    QTest::keyClick(&viewport, Qt::Key_Left);
    move(40, 30);
    EXPECT_THAT(viewport.preview(), ElementsAre(idOf(inside)));
    click(40, 30);
    EXPECT_THAT(selection(), ElementsAre(idOf(inside)));
}

TEST_F(View, EscapeDropsAWindowAndKeepsTheSelection)
{
    AcDbEntity &a = line(10, 10, 30, 10);
    line(20, 20, 30, 25);
    show();
    click(20, 10);
    click(15, 15);
    move(40, 30);
    QSignalSpy cancelled(&viewport, &Viewport::cancelled);
    QTest::keyClick(&viewport, Qt::Key_Escape);
    EXPECT_EQ(cancelled.count(), 0);
    EXPECT_THAT(selection(), ElementsAre(idOf(a)));
}

TEST_F(View, BothKindsOfWindowsHaveColoursOfTheirOwn)
{
    show();
    const auto colorOfBox = [&](double fromX, double toX) {
        click(fromX, 20);
        move(toX, 40);
        const QImage image = viewport.grab().toImage();
        const QRgb inside = colorAt(image, pixel(0.5 * (fromX + toX), 30));
        QTest::keyClick(&viewport, Qt::Key_Escape);
        return inside;
    };
    const QRgb window = colorOfBox(20, 50), crossing = colorOfBox(50, 20);
    const QRgb ground = colorAt(viewport.grab().toImage(), pixel(35, 30));
    EXPECT_NE(window, ground);
    EXPECT_NE(crossing, ground);
    EXPECT_NE(window, crossing);
}

TEST_F(View, OneMoreClickAndShiftSpaceTakeTheNextOfSeveral)
{
    AcDbEntity &below = line(10, 10, 30, 10), &above = line(10, 10, 30, 10), &top = line(10, 10, 30, 10);
    show();
    click(20, 10);
    EXPECT_THAT(selection(), ElementsAre(idOf(top)));
    click(20, 10);
    EXPECT_THAT(selection(), ElementsAre(idOf(above)));
    click(20, 10);
    EXPECT_THAT(selection(), ElementsAre(idOf(below)));
    click(20, 10);
    EXPECT_THAT(selection(), ElementsAre(idOf(top)));
    QTest::keyClick(&viewport, Qt::Key_Escape);
    move(40, 40);
    move(25, 10);
    EXPECT_EQ(viewport.hovered(), &top);
    viewport.draftActions()[3]->trigger();
    EXPECT_EQ(viewport.hovered(), &above);
    EXPECT_EQ(viewport.draftActions()[3]->shortcut(), QKeySequence(Qt::SHIFT | Qt::Key_Space));
    click(25, 10);
    EXPECT_THAT(selection(), ElementsAre(idOf(above)));
}

TEST_F(View, TwoPixelsFartherTheNeighbourIsMeant)
{
    AcDbEntity &lower = line(10, 10, 30, 10), &upper = line(10, 10.2, 30, 10.2);
    show();
    move(20, 10.0);
    EXPECT_EQ(viewport.hovered(), &lower);
    move(20, 10.2);
    EXPECT_EQ(viewport.hovered(), &upper);
    click(20, 10.2);
    EXPECT_THAT(selection(), ElementsAre(idOf(upper)));
}

TEST_F(View, WhatALayerHidesMeanwhileIsNotTaken)
{
    AcDbEntity &entity = line(10, 10, 30, 10);
    show();
    move(20, 10);
    EXPECT_EQ(viewport.hovered(), &entity);
    hide(entity);
    EXPECT_EQ(viewport.hovered(), nullptr);
    click(20, 10);
    EXPECT_THAT(selection(), IsEmpty());
}

TEST_F(View, CornersOfWindowsAreAsTheyAreClickedAndSpanARectangle)
{
    line(50, 40, 60, 45);
    show();
    Drafting settings;
    settings.ortho = true;
    settings.snaps = kSnapEnd;
    setDrafting(settings);
    const Prompt corner{.kind = PromptKind::Point, .base = AcGePoint3d(20, 20), .corner = true};
    viewport.setPrompt(&corner);
    QSignalSpy clicked(&viewport, &Viewport::clicked);
    const QImage before = viewport.grab().toImage();
    move(50.2, 40.1);
    int different = 0; // along the upper side, which is dashed
    const QImage banded = viewport.grab().toImage();
    for (double x = 22; x < 48; x += 0.1)
        different += colorAt(banded, pixel(x, 40.1)) != colorAt(before, pixel(x, 40.1));
    EXPECT_GT(different, 100);
    click(50.2, 40.1);
    EXPECT_NEAR(clicked.last()[0].toDouble(), 50.2, 1e-9);
    EXPECT_NEAR(clicked.last()[1].toDouble(), 40.1, 1e-9);
}

TEST_F(View, ThePointerLightsUpWhatAClickWouldTake)
{
    AcDbEntity &entity = line(10, 10, 30, 10);
    show();
    const QImage before = viewport.grab().toImage();
    move(20, 10.2);
    EXPECT_EQ(viewport.hovered(), &entity);
    EXPECT_NE(colorAt(viewport.grab().toImage(), pixel(12, 10)), colorAt(before, pixel(12, 10)));
    move(20, 15);
    EXPECT_EQ(viewport.hovered(), nullptr);
    EXPECT_EQ(colorAt(viewport.grab().toImage(), pixel(12, 10)), colorAt(before, pixel(12, 10)));
}

TEST_F(View, ASelectionPromptGetsTheEntitiesAndTheStandingSelectionStays)
{
    AcDbEntity &inside = line(20, 20, 30, 25);
    line(35, 5, 35, 50);
    show();
    ask(PromptKind::Selection);
    std::vector<std::pair<std::vector<AcDbObjectId>, bool>> told;
    QObject::connect(&viewport, &Viewport::selected, &viewport, [&](const AcDbObjectIdArray &ids, bool removing) {
        told.push_back({{ids.begin(), ids.end()}, removing});
    });
    drag(15, 30, 40, 15);
    click(25, 22.5, Qt::ShiftModifier);
    ASSERT_EQ(told.size(), 2u);
    EXPECT_THAT(told[0].first, ElementsAre(idOf(inside)));
    EXPECT_FALSE(told[0].second);
    EXPECT_TRUE(told[1].second);
    EXPECT_THAT(selection(), IsEmpty());
}

TEST_F(View, WhatWasGivenToARowOfSelectionPromptsIsShownUntilTheRowEnds)
{
    AcDbEntity &a = line(10, 10, 30, 10), &b = line(10, 20, 30, 20);
    show();
    const QImage plain = viewport.grab().toImage();
    ask(PromptKind::Selection);
    click(20, 10);
    viewport.setPrompt(nullptr); // between two prompts of one command
    ask(PromptKind::Selection);
    QCoreApplication::processEvents();
    click(20, 20);
    EXPECT_THAT(viewport.gathered(), ElementsAre(&a, &b));
    move(60, 50);
    EXPECT_NE(colorAt(viewport.grab().toImage(), pixel(15, 10)), colorAt(plain, pixel(15, 10)));
    click(20, 10, Qt::ShiftModifier);
    EXPECT_THAT(viewport.gathered(), ElementsAre(&b));
    viewport.setPrompt(nullptr);
    QTest::qWait(0);
    EXPECT_THAT(viewport.gathered(), IsEmpty());
    move(60, 50);
    EXPECT_EQ(colorAt(viewport.grab().toImage(), pixel(15, 10)), colorAt(plain, pixel(15, 10)));
}

TEST_F(View, SelectingNeverPaintsTheBaseAnew)
{
    line(10, 10, 30, 10);
    show();
    const auto before = viewport.paintCounts();
    move(20, 10);
    viewport.grab();
    click(20, 10);
    viewport.grab();
    click(40, 40);
    move(5, 5);
    viewport.grab();
    click(5, 5);
    viewport.grab();
    EXPECT_EQ(viewport.paintCounts().full, before.full);
    EXPECT_EQ(viewport.paintCounts().patches, before.patches);
}

// --- Points

TEST_F(View, ASnapTakesTheEndAFewPixelsAwayAndWithoutOneTheClickIsAsItIs)
{
    line(10, 10, 30, 10);
    show();
    ask(PromptKind::Point);
    QSignalSpy clicked(&viewport, &Viewport::clicked);
    click(30.3, 10); // 3 pixels from the end
    Drafting settings;
    settings.snaps = kSnapEnd;
    setDrafting(settings);
    click(30.3, 10);
    settings.snaps = kSnapEnd | kSnapSuppressed;
    setDrafting(settings);
    click(30.3, 10);
    ASSERT_EQ(clicked.count(), 3);
    EXPECT_NEAR(clicked[0][0].toDouble(), 30.3, 1e-9);
    EXPECT_EQ(clicked[1][0].toDouble(), 30.0);
    EXPECT_EQ(clicked[1][1].toDouble(), 10.0);
    EXPECT_NEAR(clicked[2][0].toDouble(), 30.3, 1e-9);
}

TEST_F(View, TheMarkerIsShownWhileThePointerMoves)
{
    line(10, 10, 30, 10);
    show();
    Drafting settings;
    settings.snaps = kSnapEnd | kSnapMiddle;
    setDrafting(settings);
    ask(PromptKind::Point);
    move(50, 50);
    EXPECT_FALSE(viewport.snapPoint());
    const QImage before = viewport.grab().toImage();
    move(29.6, 10.2);
    ASSERT_TRUE(viewport.snapPoint());
    EXPECT_EQ(viewport.snapPoint()->kind, kSnapEnd);
    const QImage marked = viewport.grab().toImage();
    EXPECT_NE(colorAt(marked, pixel(30, 10) + QPoint(5, 0)), colorAt(before, pixel(30, 10) + QPoint(5, 0)));
    move(20.1, 10);
    EXPECT_EQ(viewport.snapPoint()->kind, kSnapMiddle);
    viewport.setPrompt(nullptr);
    EXPECT_FALSE(viewport.snapPoint());
}

TEST_F(View, EverySnapHasAMarkerOfItsOwn)
{
    line(10, 50, 30, 50);  // end, middle, perpendicular, nearest
    circle(50, 50, 5);     // centre, quadrant
    point(10, 30);         // node
    text(30, 30, 2, L"t"); // insertion
    line(50, 25, 60, 35);
    line(50, 35, 60, 25); // intersection
    show();
    std::vector<QImage> pictures;
    for (const auto &[kind, x, y] : {std::tuple{kSnapEnd, 10, 50},
                                     {kSnapMiddle, 20, 50},
                                     {kSnapCenter, 50, 50},
                                     {kSnapNode, 10, 30},
                                     {kSnapQuadrant, 55, 50},
                                     {kSnapIntersection, 55, 30},
                                     {kSnapInsertion, 30, 30},
                                     {kSnapPerpendicular, 15, 50},
                                     {kSnapNearest, 25, 50}}) {
        Drafting settings;
        settings.tips = false;
        setDrafting(settings);
        ask(PromptKind::Point);
        move(x, y);
        const QImage plain = viewport.grab().toImage();
        settings.snaps = kind;
        setDrafting(settings);
        // Without the rubber band, so that only the marker differs; for the perpendicular the base is the foot.
        if (kind == kSnapPerpendicular)
            ask(PromptKind::Point, AcGePoint3d(x, y));
        move(x, y);
        ASSERT_TRUE(viewport.snapPoint()) << kind;
        ASSERT_EQ(viewport.snapPoint()->kind, kind);
        const QImage marked = viewport.grab().toImage();
        QImage marker(17, 17, QImage::Format_Mono);
        marker.fill(0);
        for (int dy = -8; dy <= 8; ++dy)
            for (int dx = -8; dx <= 8; ++dx) {
                const QPoint p = pixel(x, y) + QPoint(dx, dy);
                marker.setPixel(dx + 8, dy + 8, colorAt(marked, p) != colorAt(plain, p));
            }
        for (const QImage &other : pictures)
            EXPECT_NE(marker, other) << kind;
        pictures.push_back(marker);
    }
}

TEST_F(View, OrthoAndPolarTrackingGuideTheRubberBandAndTheResult)
{
    show();
    Drafting settings;
    settings.ortho = true;
    setDrafting(settings);
    ask(PromptKind::Point, AcGePoint3d(20, 20));
    QSignalSpy clicked(&viewport, &Viewport::clicked), moved(&viewport, &Viewport::pointerMoved);
    const QImage before = viewport.grab().toImage();
    move(50, 24);
    EXPECT_EQ(moved.last()[1].toDouble(), 20.0);
    int different = 0; // along the band, which is dashed
    const QImage banded = viewport.grab().toImage();
    for (double x = 22; x < 48; x += 0.1)
        different += colorAt(banded, pixel(x, 20)) != colorAt(before, pixel(x, 20));
    EXPECT_GT(different, 100);
    click(50, 24);
    EXPECT_EQ(clicked.last()[1].toDouble(), 20.0);
    EXPECT_NEAR(clicked.last()[0].toDouble(), 50.0, 1e-9);
    settings.ortho = false;
    settings.polar = true;
    settings.polarStep = 45.0;
    setDrafting(settings);
    click(40, 40.5);
    EXPECT_NEAR(clicked.last()[0].toDouble(), clicked.last()[1].toDouble(), 1e-9);
    click(40, 50);
    EXPECT_NEAR(clicked.last()[1].toDouble(), 50.0, 1e-9);
}

TEST_F(View, ASnapGoesBeforeOrtho)
{
    line(10, 10, 50, 24);
    show();
    Drafting settings;
    settings.ortho = true;
    settings.snaps = kSnapEnd;
    setDrafting(settings);
    ask(PromptKind::Point, AcGePoint3d(20, 20));
    QSignalSpy clicked(&viewport, &Viewport::clicked);
    click(50.2, 24.1);
    EXPECT_EQ(clicked.last()[0].toDouble(), 50.0);
    EXPECT_EQ(clicked.last()[1].toDouble(), 24.0);
}

TEST_F(View, KeysSwitchSnapsOrthoAndPolarTracking)
{
    show();
    const auto &actions = viewport.draftActions();
    EXPECT_EQ(actions[0]->shortcut(), QKeySequence(Qt::Key_F3));
    EXPECT_EQ(actions[1]->shortcut(), QKeySequence(Qt::Key_F8));
    EXPECT_EQ(actions[2]->shortcut(), QKeySequence(Qt::Key_F10));
    actions[1]->trigger();
    EXPECT_TRUE(viewport.drafting().ortho);
    actions[2]->trigger();
    EXPECT_TRUE(viewport.drafting().polar);
    EXPECT_FALSE(viewport.drafting().ortho);
    EXPECT_FALSE(actions[1]->isChecked());
    actions[0]->trigger();
    const int chosen = viewport.drafting().activeSnaps();
    EXPECT_NE(chosen, 0);
    actions[0]->trigger();
    EXPECT_EQ(viewport.drafting().activeSnaps(), 0);
    actions[0]->trigger();
    EXPECT_EQ(viewport.drafting().activeSnaps(), chosen);
}

TEST_F(View, NothingOfADrawingIsKeptWhenAnotherTakesItsPlace)
{
    line(10, 10, 30, 10);
    show();
    move(20, 10);
    click(20, 10);
    click(40, 40);
    move(5, 5);
    viewport.setDrawing(nullptr);
    drawing.reset();
    viewport.grab();
    move(20, 10);
    EXPECT_EQ(viewport.hovered(), nullptr);
    EXPECT_THAT(viewport.preview(), IsEmpty());
    click(20, 10);
}

} // namespace
} // namespace velmor
