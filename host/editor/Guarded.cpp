#include "host/editor/Guarded.h"

#include "host/drawing/ChangeLog.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <new>

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
    ~Run()
    {
        if (!stands())
            return;
        auto &log = m_drawing->component<ChangeLog>();
        m_kept == Kept::ForGood ? log.keepForGood() : log.keep();
    }
    Run(const Run &) = delete;
    Run &operator=(const Run &) = delete;

    void takeBack()
    {
        if (stands())
            m_drawing->component<ChangeLog>().takeBack();
        m_drawing = nullptr;
    }

private:
    bool stands() const { return m_drawing && m_session.drawingNumber() == m_number; }

    Session &m_session;
    Drawing *m_drawing;
    std::size_t m_number;
    Kept m_kept;
};

} // namespace

bool runGuarded(Session &session, const std::wstring &name, const std::function<void()> &work, Kept kept)
{
    Run run(session, name, kept);
    std::wstring reason;
    try {
        work();
        return true;
    } catch (const std::bad_alloc &) {
        reason = uiText("ui.work.memory");
    } catch (const std::exception &error) {
        reason = wide(error.what());
    } catch (...) {
        reason = uiText("ui.work.unknown");
    }
    run.takeBack();
    session.alertFailure(uiMessage("ui.work.failed", {name, reason}));
    return false;
}

} // namespace velmor
