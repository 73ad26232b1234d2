// The one QApplication of a test program.
#pragma once

#include <QApplication>

namespace velmor::test {

inline QApplication &application()
{
    static int argc = 1;
    static char name[] = "test";
    static char *argv[] = {name, nullptr};
    static QApplication app(argc, argv);
    return app;
}

} // namespace velmor::test
