// The one QApplication of a test program.
#pragma once

#include <QApplication>

namespace velmor::test {

inline QApplication &application()
{
    static int argc = 1;
    static char name[] = "test";
    static char *argv[] = {name, nullptr};
    // Never destroyed: at the program's end its devices would outlive what the toolkit keeps of them.
    static auto *app = new QApplication(argc, argv);
    return *app;
}

/// First base of a fixture whose members are widgets.
struct QtReady {
    QtReady() { application(); }
};

} // namespace velmor::test
