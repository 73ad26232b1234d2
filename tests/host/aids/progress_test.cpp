// The progress meter, Escape, and that nothing starts while a long work looks for it.
#include "contracts/EditorAids.h"
#include "contracts/HostDialog.h"
#include "host/editor/MainWindow.h"
#include "host/editor/ProgressMeter.h"
#include "host/editor/RegionMisses.h"
#include "tests/host/editor/EditorFixture.h"
#include "tests/host/editor/QtFixture.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QProgressBar>
#include <QTest>

#include <gmock/gmock.h>

namespace velmor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

void post(QObject *object, QEvent::Type type, int key)
{
    QCoreApplication::postEvent(object, new QKeyEvent(type, key, Qt::NoModifier));
}

class Progress : private test::QtReady, public test::EditorFixture {
protected:
    Progress() : window(session)
    {
        window.show();
        window.progressMeter().setInterval(std::chrono::milliseconds(0));
    }
    MainWindow window;
};

TEST_F(Progress, TheMeterShowsItsLabelAndPositionAndGoesAgain)
{
    EXPECT_EQ(acedSetStatusBarProgressMeter(L"Work", 0, 10), RTNORM);
    ProgressMeter &meter = window.progressMeter();
    EXPECT_TRUE(meter.isVisible());
    auto *bar = meter.findChild<QProgressBar *>();
    EXPECT_EQ(bar->accessibleName(), QStringLiteral("Work"));
    EXPECT_EQ(acedSetStatusBarProgressMeterPos(4), RTNORM);
    EXPECT_EQ(acedUsrBrk(), 0);
    EXPECT_EQ(bar->value(), 4);
    acedSetStatusBarProgressMeterPos(40); // beyond its end
    EXPECT_EQ(acedUsrBrk(), 0);
    EXPECT_EQ(bar->value(), 10);
    acedRestoreStatusBar();
    EXPECT_FALSE(meter.isVisible());
}

TEST_F(Progress, AMeterWithoutALabelOrARangeIsRefused)
{
    EXPECT_EQ(acedSetStatusBarProgressMeter(nullptr, 0, 10), RTERROR);
    EXPECT_EQ(acedSetStatusBarProgressMeter(L"", 0, 10), RTERROR);
    EXPECT_EQ(acedSetStatusBarProgressMeter(L"Work", 5, 5), RTERROR);
    EXPECT_FALSE(window.progressMeter().isVisible());
}

TEST_F(Progress, AMeterThatCannotBeHadStopsNoWork)
{
    struct Broken final : SessionView, ProgressOwner {
        void showDrawing(Drawing *) override {}
        void redraw() override {}
        void zoomTo(const Extents &) override {}
        void showAlert(const std::wstring &) override {}
        void showStatus(const std::wstring &) override {}
        ProgressMeter &progressMeter() override { throw std::runtime_error("no status bar"); }
    } broken;
    SessionView *shown = session.view();
    session.setView(&broken);
    EXPECT_EQ(acedSetStatusBarProgressMeter(L"Work", 0, 10), RTERROR);
    EXPECT_EQ(acedSetStatusBarProgressMeterPos(4), RTERROR);
    EXPECT_EQ(acedUsrBrk(), 0);
    EXPECT_NO_THROW(acedRestoreStatusBar());
    session.setView(shown);
}

TEST_F(Progress, EscapeIsNotedUntilTheNextMeter)
{
    acedSetStatusBarProgressMeter(L"Work", 0, 10);
    EXPECT_EQ(acedUsrBrk(), 0);
    post(&window, QEvent::KeyPress, Qt::Key_A);
    EXPECT_EQ(acedUsrBrk(), 0);
    post(&window, QEvent::KeyPress, Qt::Key_Escape);
    EXPECT_NE(acedUsrBrk(), 0);
    EXPECT_NE(acedUsrBrk(), 0);
    acedRestoreStatusBar();
    EXPECT_EQ(acedUsrBrk(), 0);
    acedSetStatusBarProgressMeter(L"Work", 0, 10);
    EXPECT_EQ(acedUsrBrk(), 0);
    acedRestoreStatusBar();
}

TEST_F(Progress, WithoutAMeterNoEventIsTaken)
{
    int taken = 0;
    QMetaObject::invokeMethod(
        &window, [&] { ++taken; }, Qt::QueuedConnection);
    EXPECT_EQ(acedUsrBrk(), 0);
    EXPECT_EQ(taken, 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(taken, 1);
}

TEST_F(Progress, NoCommandAndNoHandlerStartsWhileItLooks)
{
    session.commands().addWork(L"NOTHING", CommandEntry::kTransparent, [](Asker &) { return Command::Next::Commit; });
    CAdUiBaseDialog dialog;
    bool handled = false;
    RunStatus status = RunStatus::Done;
    QMetaObject::invokeMethod(
        &window,
        [&] {
            EXPECT_FALSE(dialog.RunHandler([&] { handled = true; }));
            status = session.commands().start(L"NOTHING");
        },
        Qt::QueuedConnection);
    acedSetStatusBarProgressMeter(L"Work", 0, 10);
    EXPECT_EQ(acedUsrBrk(), 0);
    acedRestoreStatusBar();
    EXPECT_FALSE(handled);
    EXPECT_EQ(status, RunStatus::Busy);
    EXPECT_TRUE(dialog.RunHandler([&] { handled = true; }));
    EXPECT_TRUE(handled);
    EXPECT_EQ(session.commands().start(L"NOTHING"), RunStatus::Done);
}

TEST_F(Progress, ClicksAndKeysOfTheMeantimeAreDropped)
{
    int clicks = 0;
    QPushButton button(&window);
    button.resize(40, 20);
    button.show();
    QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
    const auto pressAndRelease = [&] {
        const QPointF middle = button.rect().center();
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
            QCoreApplication::postEvent(&button, new QMouseEvent(type, middle, button.mapToGlobal(middle),
                                                                 Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
        post(&button, QEvent::KeyPress, Qt::Key_Space);
        post(&button, QEvent::KeyRelease, Qt::Key_Space);
    };
    acedSetStatusBarProgressMeter(L"Work", 0, 10);
    pressAndRelease();
    EXPECT_EQ(acedUsrBrk(), 0);
    acedRestoreStatusBar();
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 0);
    pressAndRelease(); // the same takes effect when nothing is at work
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 2);
}

TEST_F(Progress, AWindowCannotBeClosedWhileItLooks)
{
    struct Closed final : QWidget {
        void closeEvent(QCloseEvent *) override { ++times; }
        int times = 0;
    } other;
    acedSetStatusBarProgressMeter(L"Work", 0, 10);
    QCoreApplication::postEvent(&other, new QCloseEvent);
    EXPECT_EQ(acedUsrBrk(), 0);
    acedRestoreStatusBar();
    EXPECT_EQ(other.times, 0);
    QCoreApplication::postEvent(&other, new QCloseEvent);
    QCoreApplication::processEvents();
    EXPECT_EQ(other.times, 1);
}

/// A square of 10 with a section in it, a comb that is open by 0.5, and nothing elsewhere.
class Misses : public Progress {
protected:
    Misses()
    {
        rectangle(0, 0, 10, 10);
        line(100, 0, 110, 0);
        line(110, 0, 110, 10);
        line(110, 10, 100, 10);
        line(100, 10, 100, 0.5);
    }
    void search(double x, double y)
    {
        const ads_point point = {x, y, 0.0};
        acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, L"_Y", RTSTR, L"", RT3DPOINT, point, RTSTR,
                    L"", RTNONE);
    }
};

TEST_F(Misses, TheEndOfAWorkTellsWhereNoRegionWasFoundAndWhy)
{
    search(500, 500); // before the work: not counted
    acedSetStatusBarProgressMeter(L"Work", 0, 10);
    search(5, 5);
    search(105, 5);
    search(500, 500);
    search(600, 500);
    search(0, 5);
    acedRestoreStatusBar();
    const std::wstring told = session.lastStatus();
    const std::string text(told.begin(), told.end());
    EXPECT_EQ(text, "No closed region around 4 of 5 places: 1 in linework that is not closed (105,5), narrowest gap "
                    "0.5; 2 with nothing around (500,500, 600,500); 1 on the linework itself (0,5)");
}

TEST_F(Misses, AWorkThatFindsAllTellsNothing)
{
    session.status(L"before");
    acedSetStatusBarProgressMeter(L"Work", 0, 10);
    search(5, 5);
    session.status(L"before");
    acedRestoreStatusBar();
    EXPECT_EQ(session.lastStatus(), L"before");
    search(500, 500);
    EXPECT_TRUE(drawing().component<RegionMisses>().misses().empty()); // nobody works
}

} // namespace
} // namespace velmor
