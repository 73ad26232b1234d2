#include "host/editor/Application.h"

#include "host/editor/Guarded.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"

#include <QEvent>
#include <QTimer>

#include <cerrno>
#include <cstdio>

namespace velmor {

namespace {

/// Events that come without the person's doing, or with each move of the pointer.
bool comesByItself(QEvent::Type type)
{
    switch (type) {
    case QEvent::Paint:
    case QEvent::UpdateRequest:
    case QEvent::LayoutRequest:
    case QEvent::Resize:
    case QEvent::Timer:
    case QEvent::MouseMove:
    case QEvent::HoverMove:
    case QEvent::ToolTip:
    case QEvent::DragMove:
        return true;
    default:
        return false;
    }
}

} // namespace

bool Application::notify(QObject *receiver, QEvent *event)
{
    const QEvent::Type type = event->type();
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        // A window goes by an event that stands accepted from the beginning.
        if (type == QEvent::Close)
            event->ignore();
        try {
            failed(*event, reasonOfException());
        } catch (...) { // not even the words for it could be made
            errno = ENOMEM;
            std::perror("velmor");
        }
    }
    return false;
}

void Application::failed(const QEvent &event, const std::wstring &reason)
{
    if (comesByItself(event.type()) && !m_toldUnasked.insert(reason).second)
        return;
    m_waiting.insert(reason);
    // A box in the middle of a paint would paint again.
    if (!m_isTelling)
        QTimer::singleShot(0, this, [this] { tell(); });
}

void Application::tell()
{
    if (m_isTelling)
        return;
    struct Telling {
        explicit Telling(bool &flag) : m_flag(flag) { m_flag = true; }
        ~Telling() { m_flag = false; }
        bool &m_flag;
    } const telling(m_isTelling);
    while (!m_waiting.empty()) {
        const std::wstring reason = *m_waiting.begin();
        m_waiting.erase(m_waiting.begin());
        const std::wstring text = uiMessage("ui.work.event", {reason});
        if (Session *session = Session::currentOrNull())
            session->alertFailure(text);
    }
}

} // namespace velmor
