// Widgets need an application object; the platform comes from the environment (offscreen).
#include "host/services/Services.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    velmor::Services::instance().start({.language = "en"});
    return RUN_ALL_TESTS();
}
