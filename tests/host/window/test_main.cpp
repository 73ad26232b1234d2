// Widgets need an application object; the platform comes from the environment (offscreen).
#include "host/editor/Application.h"
#include "host/services/Services.h"
#include "tests/host/window/Watchdog.h"

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    velmor::Application application(argc, argv);
    velmor::Services::instance().start({.language = "en"});
    velmor::test::Watchdog::install();
    return RUN_ALL_TESTS();
}
