#include "host/editor/ProgressMeter.h"

#include "host/editor/Captions.h"
#include "host/editor/Session.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>

#include <algorithm>

namespace velmor {

ProgressMeter::ProgressMeter(QWidget *parent)
    : QWidget(parent), m_label(new QLabel(this)), m_bar(new QProgressBar(this))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(4, 0, 4, 0);
    row->addWidget(m_label);
    row->addWidget(m_bar, 1);
    m_label->setTextFormat(Qt::PlainText);
    m_bar->setMinimumWidth(fontMetrics().horizontalAdvance(QLatin1Char('0')) * 20);
    m_bar->setTextVisible(true);
    m_bar->setFocusPolicy(Qt::NoFocus);
    hide();
}

void ProgressMeter::begin(const std::wstring &label, int from, int to)
{
    const QString text = QString::fromStdWString(label);
    m_label->setText(text + QStringLiteral("  ") + uiString("ui.progress.escape"));
    m_bar->setAccessibleName(text);
    m_from = m_position = from;
    m_to = to;
    m_bar->setRange(from, to);
    m_bar->setValue(from);
    m_active = true;
    m_break = false;
    m_sinceLook.start();
    show();
}

void ProgressMeter::setPosition(int position)
{
    m_position = std::clamp(position, m_from, m_to);
}

void ProgressMeter::end()
{
    m_active = false;
    hide();
}

bool ProgressMeter::isBreakAsked()
{
    if (m_active && !m_break && !m_looking && m_sinceLook.elapsed() >= m_interval.count())
        look();
    return m_active && m_break;
}

void ProgressMeter::look()
{
    struct Look { // ends also when what an event set off throws
        explicit Look(ProgressMeter &owner) : meter(owner)
        {
            meter.m_looking = true;
            QCoreApplication::instance()->installEventFilter(&meter);
        }
        ~Look()
        {
            QCoreApplication::instance()->removeEventFilter(&meter);
            meter.m_looking = false;
            meter.m_sinceLook.start();
        }
        ProgressMeter &meter;
    } const here(*this);
    m_bar->setValue(m_position);
    QCoreApplication::processEvents();
}

bool ProgressMeter::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
        m_break = m_break || static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
        return true;
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::NonClientAreaMouseButtonPress:
    case QEvent::NonClientAreaMouseButtonRelease:
    case QEvent::NonClientAreaMouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::InputMethod:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Timer: // a timer that comes again, or once more
        return true;
    case QEvent::Close:
        event->ignore();
        return true;
    default:
        return false;
    }
}

ProgressMeter *progressMeterOf(const Session *session)
{
    auto *owner = session ? dynamic_cast<ProgressOwner *>(session->view()) : nullptr;
    return owner ? &owner->progressMeter() : nullptr;
}

bool isLookingForBreak(const Session *session)
{
    const ProgressMeter *meter = progressMeterOf(session);
    return meter && meter->isLooking();
}

} // namespace velmor
