// A test that waits for a dialog which nobody ends fails, and goes on.
#include "tests/host/window/Watchdog.h"

#include <gtest/gtest-spi.h>

#include <QDialog>
#include <QMenu>

namespace velmor::test {
namespace {

/// Runs wait under a watchdog that looks every few milliseconds.
template <class Wait>
void watched(Wait wait)
{
    Watchdog watchdog(20);
    watchdog.OnTestStart(*testing::UnitTest::GetInstance()->current_test_info());
    wait();
    watchdog.OnTestEnd(*testing::UnitTest::GetInstance()->current_test_info());
}

TEST(WatchdogTest, ADialogThatNobodyEndsIsClosedAndNamed)
{
    EXPECT_NONFATAL_FAILURE(watched([] {
                                QDialog dialog;
                                dialog.setWindowTitle(QStringLiteral("Nobody"));
                                dialog.exec();
                            }),
                            "QDialog 'Nobody'");
}

TEST(WatchdogTest, AMenuThatNobodyLeavesIsClosed)
{
    EXPECT_NONFATAL_FAILURE(watched([] {
                                QMenu menu;
                                menu.addAction(QStringLiteral("One"));
                                menu.exec(QPoint(10, 10));
                            }),
                            "QMenu");
}

} // namespace
} // namespace velmor::test
