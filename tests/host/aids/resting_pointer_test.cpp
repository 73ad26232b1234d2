// The region around a point without drawing it, and the outline under the resting pointer.
#include "contracts/EditorAids.h"
#include "host/drawing/ChangeLog.h"
#include "host/drawing/Journal.h"
#include "host/editor/LineworkCache.h"
#include "host/editor/MainWindow.h"
#include "host/editor/PointMonitors.h"
#include "host/editor/RestingPointer.h"
#include "host/editor/Viewport.h"
#include "tests/host/editor/EditorFixture.h"
#include "tests/host/editor/QtFixture.h"

#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

namespace velmor {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

const ads_name kNoSet = {0, 0};

/// A square of 100 with one of 10 in it, and a round one beside them.
class Aids : public test::EditorFixture {
protected:
    Aids()
    {
        rectangle(0, 0, 100, 100);
        rectangle(40, 40, 50, 50);
        drawing().append(
            std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{200, 50, 1}, {300, 50, 1}}, true));
    }
    PointMonitors &monitors() { return drawing().component<PointMonitors>(); }
    std::vector<ZEMCRing> rings;
};

TEST_F(Aids, ATraceGivesTheRingsAndDrawsNothing)
{
    const std::size_t before = entityCount();
    const std::size_t steps = drawing().component<ChangeLog>().undoCount();
    ASSERT_TRUE(acedTraceBoundary({10, 10}, true, kNoSet, rings));
    ASSERT_THAT(rings, SizeIs(2));
    EXPECT_EQ(rings[0], (ZEMCRing{{0, 0, 0}, {100, 0, 0}, {100, 100, 0}, {0, 100, 0}}));
    EXPECT_THAT(rings[1], SizeIs(4));
    ASSERT_TRUE(acedTraceBoundary({10, 10}, false, kNoSet, rings));
    EXPECT_THAT(rings, SizeIs(1));
    EXPECT_EQ(entityCount(), before);
    EXPECT_EQ(drawing().component<ChangeLog>().undoCount(), steps);
}

TEST_F(Aids, ATraceWithoutARegionGivesNoRings)
{
    rings.resize(3);
    EXPECT_FALSE(acedTraceBoundary({1000, 10}, true, kNoSet, rings));
    EXPECT_THAT(rings, IsEmpty());
    EXPECT_FALSE(acedTraceBoundary({std::nan(""), 10}, true, kNoSet, rings));
}

TEST_F(Aids, ASetBoundsATraceUnlessItIsEmpty)
{
    ads_name set;
    ASSERT_EQ(acedSSAdd(nullptr, nullptr, set), RTNORM);
    EXPECT_TRUE(acedTraceBoundary({45, 45}, false, set, rings));
    EXPECT_EQ(rings[0][0], (AcDbPolyline::Vertex{40, 40, 0})); // everything visible
    ads_name entity;
    acdbGetAdsName(entity, idOf(*drawing().modelSpace().entities()[0]));
    ASSERT_EQ(acedSSAdd(entity, set, set), RTNORM);
    EXPECT_TRUE(acedTraceBoundary({45, 45}, true, set, rings));
    EXPECT_THAT(rings, SizeIs(1));
    EXPECT_EQ(rings[0][0], (AcDbPolyline::Vertex{0, 0, 0}));
}

TEST_F(Aids, TheGapToleranceHoldsForTracesToo)
{
    line(400, 0, 410, 0);
    line(410, 0, 410, 10);
    line(410, 10, 400, 10);
    line(400, 10, 400, 0.5);
    EXPECT_FALSE(acedTraceBoundary({405, 5}, false, kNoSet, rings));
    ASSERT_TRUE(session.setVariable(L"HPGAPTOL", 1.0));
    EXPECT_TRUE(acedTraceBoundary({405, 5}, false, kNoSet, rings));
}

TEST_F(Aids, AMonitorsOutlineIsShownUntilThePointerLeavesIt)
{
    const CZEMCPointMonitor monitor([](const AcGePoint3d &point, std::vector<ZEMCRing> &found) {
        return acedTraceBoundary(point, true, kNoSet, found);
    });
    monitors().rest({10, 10});
    ASSERT_THAT(monitors().outline(), SizeIs(2));
    EXPECT_THAT(monitors().outline()[0], SizeIs(4));
    EXPECT_EQ(monitors().asked(), 1);
    EXPECT_FALSE(monitors().moveTo({90, 90}));
    monitors().rest({45, 45}); // within what is shown, and yet another region
    ASSERT_THAT(monitors().outline(), SizeIs(1));
    EXPECT_EQ(monitors().outline()[0][0], (AcGePoint2d{40, 40}));
    EXPECT_TRUE(monitors().moveTo({90, 90}));
    monitors().rest({90, 90});
    EXPECT_THAT(monitors().outline(), SizeIs(2));
    EXPECT_TRUE(monitors().moveTo({150, 90}));
    EXPECT_THAT(monitors().outline(), IsEmpty());
    monitors().rest({150, 90});
    EXPECT_THAT(monitors().outline(), IsEmpty());
    monitors().rest({250, 60}); // arcs come in straight sides
    ASSERT_THAT(monitors().outline(), SizeIs(1));
    EXPECT_GT(monitors().outline()[0].size(), 60u);
    for (const AcGePoint2d &point : monitors().outline()[0])
        EXPECT_NEAR(std::hypot(point.x - 250.0, point.y - 50.0), 50.0, 1e-9);
}

TEST_F(Aids, AMonitorsEndTakesItsOutline)
{
    {
        const CZEMCPointMonitor monitor([](const AcGePoint3d &point, std::vector<ZEMCRing> &found) {
            return acedTraceBoundary(point, true, kNoSet, found);
        });
        EXPECT_TRUE(monitors().isWaiting());
        monitors().rest({10, 10});
    }
    EXPECT_FALSE(monitors().isWaiting());
    EXPECT_THAT(monitors().outline(), IsEmpty());
    monitors().rest({10, 10});
    EXPECT_THAT(monitors().outline(), IsEmpty());
}

TEST_F(Aids, AMonitorThatTookTooLongIsAskedNoMore)
{
    acedTraceBoundary({10, 10}, true, kNoSet, rings); // the linework is gathered
    monitors().setBudget(std::chrono::nanoseconds(0));
    const auto trace = [](const AcGePoint3d &point, std::vector<ZEMCRing> &found) {
        return acedTraceBoundary(point, true, kNoSet, found);
    };
    {
        const CZEMCPointMonitor monitor(trace);
        monitors().rest({10, 10});
        EXPECT_EQ(monitors().asked(), 1);
        EXPECT_THAT(monitors().outline(), IsEmpty());
        EXPECT_FALSE(monitors().isWaiting());
        monitors().rest({20, 10});
        EXPECT_EQ(monitors().asked(), 1);
    }
    const CZEMCPointMonitor next(trace); // of the next prompt
    EXPECT_TRUE(monitors().isWaiting());
}

TEST_F(Aids, GatheringTheLineworkIsNoTracesTime)
{
    monitors().setBudget(std::chrono::nanoseconds(0));
    const CZEMCPointMonitor monitor([](const AcGePoint3d &point, std::vector<ZEMCRing> &found) {
        return acedTraceBoundary(point, true, kNoSet, found);
    });
    monitors().rest({10, 10});
    EXPECT_EQ(monitors().asked(), 2); // once more, now that the linework is there
    EXPECT_EQ(drawing().component<LineworkCache>().builds(), 1u);
}

TEST_F(Aids, InAGreatDrawingTheOutlineWaitsForWhatBoundsToBeGathered)
{
    for (std::size_t i = 0; i <= PointMonitors::kMostGathered; ++i)
        line(5000, 0, 5001, 0);
    ads_name set = {0, 0};
    const auto trace = [&](const AcGePoint3d &point, std::vector<ZEMCRing> &found) {
        return acedTraceBoundary(point, true, set, found);
    };
    {
        const CZEMCPointMonitor monitor(trace); // everything visible
        monitors().rest({10, 10});
        EXPECT_THAT(monitors().outline(), IsEmpty());
        EXPECT_FALSE(monitors().isWaiting());
        EXPECT_EQ(drawing().component<LineworkCache>().builds(), 0u);
    }
    ads_name entity; // few boundaries beside all that
    acdbGetAdsName(entity, idOf(*drawing().modelSpace().entities()[0]));
    ASSERT_EQ(acedSSAdd(entity, nullptr, set), RTNORM);
    {
        const CZEMCPointMonitor monitor(trace);
        monitors().rest({10, 10});
        EXPECT_THAT(monitors().outline(), SizeIs(1));
    }
    const ads_name all = {0, 0};
    EXPECT_TRUE(acedTraceBoundary({10, 10}, false, all, rings)); // the click gathers
    set[0] = set[1] = 0;
    const CZEMCPointMonitor monitor(trace);
    monitors().rest({10, 10});
    EXPECT_THAT(monitors().outline(), SizeIs(2));
}

TEST_F(Aids, WhatAMonitorDoesToTheDrawingIsTakenBack)
{
    auto &log = drawing().component<ChangeLog>();
    log.begin(L"outer");
    const std::string text = drawing().write();
    const CZEMCPointMonitor monitor([&](const AcGePoint3d &, std::vector<ZEMCRing> &found) {
        CZEMCDraw::line({0, 0}, {1, 1}, nullptr);
        drawing().ensureLayer(L"LEFT");
        found.push_back({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}});
        return true;
    });
    Journal::instance().setRecording(true);
    monitors().rest({10, 10});
    Journal::instance().setRecording(false);
    EXPECT_THAT(Journal::instance().entries(), IsEmpty());
    EXPECT_THAT(monitors().outline(), SizeIs(1));
    EXPECT_EQ(drawing().write(), text);
    log.keep();
    EXPECT_EQ(drawing().write(), text);
}

TEST_F(Aids, AMonitorThatThrowsShowsNothing)
{
    const CZEMCPointMonitor monitor(
        [](const AcGePoint3d &, std::vector<ZEMCRing> &) -> bool { throw std::runtime_error("broken"); });
    monitors().rest({10, 10});
    EXPECT_THAT(monitors().outline(), IsEmpty());
    EXPECT_TRUE(monitors().isWaiting());
}

TEST_F(Aids, AMonitorOutlivesItsDrawing)
{
    const CZEMCPointMonitor monitor([](const AcGePoint3d &, std::vector<ZEMCRing> &) { return true; });
    session.setDrawing(Drawing::createNew());
    EXPECT_FALSE(monitors().isWaiting());
}

class Resting : private test::QtReady, public Aids {
protected:
    Resting() : window(session)
    {
        window.show();
        QTest::qWait(0);
        view = &window.viewport();
        timer = view->findChild<RestingPointer *>()->findChild<QTimer *>();
    }
    void moveTo(double x, double y)
    {
        const QPointF at = view->view().toView(x, y);
        QMouseEvent move(QEvent::MouseMove, at, view->mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view, &move);
    }
    /// As if the pointer had stood still for a while.
    void rest()
    {
        if (timer->isActive())
            QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection, QGenericReturnArgument());
    }
    MainWindow window;
    Viewport *view = nullptr;
    QTimer *timer = nullptr;
};

TEST_F(Resting, TheOutlineShowsWhileAPointIsAskedForAndGoesWithThePrompt)
{
    const std::size_t before = entityCount();
    moveTo(10, 10);
    EXPECT_FALSE(timer->isActive()); // nobody asks
    {
        const CZEMCPointMonitor monitor([](const AcGePoint3d &point, std::vector<ZEMCRing> &found) {
            return acedTraceBoundary(point, true, kNoSet, found);
        });
        moveTo(11, 10);
        EXPECT_FALSE(timer->isActive()); // no point is asked for
        QTimer::singleShot(0, [&] {
            moveTo(12, 10);
            EXPECT_THAT(monitors().outline(), IsEmpty()); // it has only just come there
            const QImage plain = view->grab().toImage();
            EXPECT_TRUE(timer->isActive());
            rest();
            EXPECT_THAT(monitors().outline(), SizeIs(2));
            EXPECT_NE(view->grab().toImage(), plain);
            moveTo(150, 10);
            EXPECT_THAT(monitors().outline(), IsEmpty());
            moveTo(20, 20);
            rest();
            EXPECT_THAT(monitors().outline(), SizeIs(2));
            QTest::keyClick(view, Qt::Key_Escape);
        });
        ads_point point{};
        EXPECT_EQ(acedGetPoint(nullptr, L"Point:", point), RTCAN);
    }
    EXPECT_THAT(monitors().outline(), IsEmpty());
    EXPECT_EQ(entityCount(), before);
}

TEST_F(Resting, TheCornersOfACommandInsideThePromptAreNotAskedFor)
{
    bool inside = true, outside = false;
    session.commands().addWork(L"INSIDE", CommandEntry::kTransparent, [&](Asker &) {
        QTimer::singleShot(0, [&] {
            moveTo(12, 10);
            inside = timer->isActive();
            QTest::keyClick(view, Qt::Key_Escape);
        });
        ads_point corner{};
        EXPECT_EQ(acedGetPoint(nullptr, L"Corner:", corner), RTCAN);
        return Command::Next::Commit;
    });
    const CZEMCPointMonitor monitor([](const AcGePoint3d &, std::vector<ZEMCRing> &) { return false; });
    QTimer::singleShot(0, [&] {
        EXPECT_EQ(session.commands().start(L"INSIDE"), RunStatus::Done);
        moveTo(13, 10);
        outside = timer->isActive();
        QTest::keyClick(view, Qt::Key_Escape);
    });
    ads_point point{};
    EXPECT_EQ(acedGetPoint(nullptr, L"Point:", point), RTCAN);
    EXPECT_FALSE(inside);
    EXPECT_TRUE(outside);
}

} // namespace
} // namespace velmor
