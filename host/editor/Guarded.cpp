#include "host/editor/Guarded.h"

#include "host/drawing/ChangeLog.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <new>
#include <utility>

namespace velmor {

namespace {

/// A run of the change log of the drawing that is open now; a drawing that takes its place meanwhile has none.
class Run {
public:
    Run(Session &session, const std::wstring &name, Kept kept)
        : m_session(session), m_drawing(session.drawing()), m_number(session.drawingNumber()), m_kept(kept)
    {
        if (m_drawing)
            m_drawing->component<ChangeLog>().begin(name);
    }
    /// Only where neither keep nor takeBack came to its end.
    ~Run()
    {
        try {
            takeBack();
        } catch (...) { // told already, or followed by what is told
        }
    }
    Run(const Run &) = delete;
    Run &operator=(const Run &) = delete;

    /// Both end the run of the log even when they throw: what follows and observes it is told last.
    void keep()
    {
        if (!stands())
            return;
        auto &log = std::exchange(m_drawing, nullptr)->component<ChangeLog>();
        m_kept == Kept::ForGood ? log.keepForGood() : log.keep();
    }
    void takeBack()
    {
        if (stands())
            std::exchange(m_drawing, nullptr)->component<ChangeLog>().takeBack();
    }

private:
    bool stands() const { return m_drawing && m_session.drawingNumber() == m_number; }

    Session &m_session;
    Drawing *m_drawing;
    std::size_t m_number;
    Kept m_kept;
};

} // namespace

std::wstring reasonOfException()
{
    try {
        throw;
    } catch (const std::bad_alloc &) {
        return uiText("ui.work.memory");
    } catch (const std::exception &error) {
        return wide(error.what());
    } catch (...) {
        return uiText("ui.work.unknown");
    }
}
bool runGuarded(Session &session, const std::wstring &name, const std::function<void()> &work, Kept kept)
{
    Run run(session, name, kept);
    std::wstring reason;
    try {
        work();
        run.keep();
        return true;
    } catch (...) {
        reason = reasonOfException();
    }
    try {
        run.takeBack();
    } catch (...) { // an observer's; what the work itself failed of is what is told
    }
    session.alertFailure(uiMessage("ui.work.failed", {name, reason}));
    return false;
}

} // namespace velmor
