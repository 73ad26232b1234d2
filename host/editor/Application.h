// The application of a program with a window: what fails in a handler of an event ends that handler and nothing else.
#pragma once

#include <QApplication>

#include <set>
#include <string>

namespace velmor {

/// An exception that leaves the handler of an event (a key, a button, a file that is dropped, a timer, a paint) is told
/// as a failure of the session, and the program goes on; a window that was to close stays open. The message comes once
/// the handlers around have ended. What fails without anybody's doing, like a paint, would fail again and again: it is
/// told once for each reason.
class Application final : public QApplication {
public:
    Application(int &argc, char **argv) : QApplication(argc, argv) {}
    bool notify(QObject *receiver, QEvent *event) override;

private:
    void failed(const QEvent &event, const std::wstring &reason);
    void tell();

    std::set<std::wstring> m_waiting;     ///< to be told
    std::set<std::wstring> m_toldUnasked; ///< of what fails by itself
    bool m_isTelling = false;
};

} // namespace velmor
