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

/// First base of a fixture whose members are widgets.
struct QtReady {
    QtReady() { application(); }
};

} // namespace velmor::test
