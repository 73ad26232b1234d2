// Widgets need an application object; the platform comes from the environment (offscreen).
#include "tests/host/editor/QtFixture.h"

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    velmor::test::application();
    return RUN_ALL_TESTS();
}
