#include "tests/host/window/Watchdog.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    velmor::test::Watchdog::install();
    return RUN_ALL_TESTS();
}
