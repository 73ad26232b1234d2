// Ends what hangs: a test of windows that waits in a dialog's loop fails instead of standing still.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <memory>

namespace velmor::test {

/// Fails a test that is still running after the time, and closes the dialogs, menus and windows it waits in, one each
/// time. Counts only while the toolkit's events are handled, which is where such a test hangs.
class Watchdog final : public testing::EmptyTestEventListener {
public:
    explicit Watchdog(int milliseconds = 240'000) : m_milliseconds(milliseconds) {}

    /// For all tests of the program; after the application was made.
    static void install() { testing::UnitTest::GetInstance()->listeners().Append(new Watchdog); }

    void OnTestStart(const testing::TestInfo &) override
    {
        m_timer = std::make_unique<QTimer>();
        QObject::connect(m_timer.get(), &QTimer::timeout, [] { endWaiting(); });
        m_timer->start(m_milliseconds);
    }
    void OnTestEnd(const testing::TestInfo &) override { m_timer.reset(); }

private:
    static void endWaiting()
    {
        QWidget *waiting = QApplication::activePopupWidget();
        if (!waiting)
            waiting = QApplication::activeModalWidget();
        if (!waiting)
            waiting = QApplication::activeWindow();
        ADD_FAILURE() << "still waiting in "
                      << (waiting ? waiting->metaObject()->className() : "a loop without a window") << " '"
                      << (waiting ? waiting->windowTitle().toStdString() : std::string()) << "'";
        if (waiting)
            waiting->close();
    }

    int m_milliseconds;
    std::unique_ptr<QTimer> m_timer;
};

} // namespace velmor::test
