// Prompts that a person answers by pointing in the window.
#include "host/editor/MainWindow.h"
#include "host/editor/Viewport.h"

#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace velmor {
namespace {

class Pointing : public testing::Test {
protected:
    Pointing()
    {
        session.setMessageSink({});
        session.setDrawing(Drawing::createNew());
        window = std::make_unique<MainWindow>(session);
        viewport = window->findChild<Viewport *>();
    }
    void show()
    {
        window->show();
        QTest::qWait(0);
        viewport->grab();
    }
    /// A move of the pointer that may lie beyond the screen, which is small when one pixel counts as more.
    void moveTo(double x, double y)
    {
        const QPointF at = viewport->view().toView(x, y).toPoint();
        QMouseEvent move(QEvent::MouseMove, at, viewport->mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &move);
    }
    static void meanwhile(std::function<void()> action) { QTimer::singleShot(0, std::move(action)); }
    AcDbEntity &line(double x1, double y1, double x2, double y2)
    {
        session.drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(x1, y1), AcGePoint3d(x2, y2)));
        return *session.drawing()->modelSpace().entities().back();
    }

    Session session;
    std::unique_ptr<MainWindow> window;
    Viewport *viewport = nullptr;
};

TEST_F(Pointing, AClickGivesThePointOfItsPixelInAZoomedAndPannedView)
{
    line(5'657'000, 4'853'000, 5'657'800, 4'853'600);
    show();
    viewport->zoomBy(7.3);
    QTest::keyClick(viewport, Qt::Key_Right);
    QTest::keyClick(viewport, Qt::Key_Up);
    for (const QPoint &at : {QPoint(123, 45), QPoint(viewport->width() - 7, viewport->height() - 3)}) {
        meanwhile([&] { QTest::mouseClick(viewport, Qt::LeftButton, {}, at); });
        ads_point point{};
        ASSERT_EQ(acedGetPoint(nullptr, L"Point:", point), RTNORM);
        const AcGePoint3d expected = viewport->view().toWorld(at);
        const Extents visible = viewport->view().visible();
        const double size = visible.maxX - visible.minX;
        EXPECT_NEAR(point[0], expected.x, 1e-9 * size);
        EXPECT_NEAR(point[1], expected.y, 1e-9 * size);
        EXPECT_NEAR(point[0], visible.minX + at.x() * size / viewport->width(), 1e-9 * size + 1e-9 * 5.7e6 * 1e-6);
    }
}

TEST_F(Pointing, OfTwoEntitiesTwoPixelsApartTheOneUnderThePointerIsPickedAtBothZooms)
{
    for (const double pixelsPerUnit : {4.0, 400.0}) {
        session.setDrawing(Drawing::createNew());
        const double apart = 2.0 / pixelsPerUnit, size = 300.0 / pixelsPerUnit;
        AcDbEntity &lower = line(0, 0, size, 0), &upper = line(0, apart, size, apart);
        show();
        viewport->showExtents({0, -0.5 * size, size, 0.5 * size});
        viewport->zoomBy(pixelsPerUnit / viewport->view().pixelsPerUnit);
        ASSERT_NEAR(viewport->view().pixelsPerUnit, pixelsPerUnit, 1e-9 * pixelsPerUnit);
        for (AcDbEntity *expected : {&lower, &upper}) {
            const double y = static_cast<AcDbLine *>(expected)->startPoint().y;
            QPointF at = viewport->view().toView(0.5 * size, y);
            at.ry() += expected == &lower ? 0.5 : -0.5; // a whole pixel on its side
            meanwhile([&] { QTest::mouseClick(viewport, Qt::LeftButton, {}, at.toPoint()); });
            ads_name entity{};
            ads_point point{};
            ASSERT_EQ(acedEntSel(L"Entity:", entity, point), RTNORM);
            AcDbObjectId id;
            ASSERT_EQ(acdbGetObjectId(id, entity), Acad::eOk);
            EXPECT_EQ(id, idOf(*expected)) << pixelsPerUnit;
        }
    }
}

TEST_F(Pointing, TheVariableOsmodeSaysWhetherAClickSnaps)
{
    line(0, 0, 100, 0);
    line(0, 80, 1, 80);
    show();
    const QPoint at = viewport->view().toView(100, 0).toPoint() + QPoint(3, 0);
    const auto pick = [&] {
        meanwhile([&] { QTest::mouseClick(viewport, Qt::LeftButton, {}, at); });
        ads_point point{};
        EXPECT_EQ(acedGetPoint(nullptr, L"Point:", point), RTNORM);
        return AcGePoint3d(point[0], point[1]);
    };
    ASSERT_TRUE(session.setVariable(L"OSMODE", 1));
    EXPECT_EQ(pick().x, 100.0);
    ASSERT_TRUE(session.setVariable(L"OSMODE", 0));
    EXPECT_NEAR(pick().x, viewport->view().toWorld(at).x, 1e-9);
    EXPECT_GT(pick().x, 100.1);
}

TEST_F(Pointing, AWindowAnswersASelectionPrompt)
{
    AcDbEntity &inside = line(20, 20, 30, 25);
    line(0, 0, 100, 80);
    show();
    const auto pixel = [&](double x, double y) { return viewport->view().toView(x, y).toPoint(); };
    meanwhile([&] {
        QTest::mousePress(viewport, Qt::LeftButton, {}, pixel(18, 30));
        QTest::mouseMove(viewport, pixel(35, 19));
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, pixel(35, 19));
        meanwhile([&] { QTest::keyClick(viewport, Qt::Key_Return); });
    });
    ads_name set{};
    ASSERT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTNORM);
    std::int32_t count = 0;
    acedSSLength(set, &count);
    ASSERT_EQ(count, 1);
    ads_name member{};
    ASSERT_EQ(acedSSName(set, 0, member), RTNORM);
    AcDbObjectId id;
    ASSERT_EQ(acdbGetObjectId(id, member), Acad::eOk);
    EXPECT_EQ(id, idOf(inside));
    acedSSFree(set);
}

TEST_F(Pointing, EscapeInTheCommandLineLetsGoOfTheSelectionAndOfAWindow)
{
    AcDbEntity &entity = line(0, 0, 100, 80);
    show();
    auto *input = window->findChild<QLineEdit *>();
    auto &selection = session.drawing()->component<Selection>();
    const AcDbObjectId id[] = {idOf(entity)};
    selection.set(id);
    QTest::mouseClick(viewport, Qt::LeftButton, {}, viewport->view().toView(20, 60).toPoint());
    moveTo(90, 5);
    EXPECT_EQ(viewport->preview().size(), 0u);
    moveTo(10, 5);
    EXPECT_EQ(viewport->preview().size(), 1u);
    QTest::keyClick(input, Qt::Key_Escape);
    EXPECT_EQ(viewport->preview().size(), 0u);
    EXPECT_FALSE(selection.isEmpty());
    QTest::keyClick(input, Qt::Key_Escape);
    EXPECT_TRUE(selection.isEmpty());
}

TEST_F(Pointing, DraftingVariablesAreKeptWithinTheirLimits)
{
    EXPECT_TRUE(session.setVariable(L"ORTHOMODE", 1));
    EXPECT_FALSE(session.setVariable(L"ORTHOMODE", 2));
    EXPECT_TRUE(session.setVariable(L"POLARANG", 22.5));
    EXPECT_FALSE(session.setVariable(L"POLARANG", 0.0));
    EXPECT_FALSE(session.setVariable(L"APERTURE", 0));
    EXPECT_TRUE(session.setVariable(L"PICKBOX", 10));
    EXPECT_TRUE(session.setVariable(L"AUTOSNAP", 8));
    const Drafting settings = viewport->drafting();
    EXPECT_TRUE(settings.ortho);
    EXPECT_TRUE(settings.polar);
    EXPECT_FALSE(settings.markers);
    EXPECT_EQ(settings.polarStep, 22.5);
    EXPECT_EQ(settings.pickBox, 10);
}

} // namespace
} // namespace velmor
