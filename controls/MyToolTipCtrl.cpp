#include "controls/MyToolTipCtrl.h"

#include "controls/WideText.h"

#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>
#include <QWidget>

#include <algorithm>

QString PlainTip(const std::wstring &text)
{
    const QString tip = ToQString(text);
    return Qt::mightBeRichText(tip) ? Qt::convertFromPlainText(tip, Qt::WhiteSpaceNormal) : tip;
}

CMyToolTipCtrl::~CMyToolTipCtrl()
{
    for (const WindowTool &tool : m_windowTools) {
        if (tool.window && tool.window->toolTip() == tool.text)
            tool.window->setToolTip(tool.before);
    }
}

bool CMyToolTipCtrl::AddWindowTool(QWidget *window, const std::wstring &text)
{
    if (!window)
        return false;
    const QString tip = PlainTip(text);
    const auto found =
        std::ranges::find_if(m_windowTools, [window](const WindowTool &tool) { return tool.window == window; });
    if (found != m_windowTools.end())
        found->text = tip;
    else
        m_windowTools.push_back({window, window->toolTip(), tip});
    window->setToolTip(tip);
    return true;
}

bool CMyToolTipCtrl::AddRectTool(QWidget *window, const std::wstring &text, const QRect &rect, unsigned id)
{
    if (!window)
        return false;
    const RectTool tool{window, PlainTip(text), rect, id};
    const auto found = std::ranges::find_if(
        m_rectTools, [&](const RectTool &other) { return other.window == window && other.id == id; });
    if (found != m_rectTools.end())
        *found = tool;
    else
        m_rectTools.push_back(tool);
    window->installEventFilter(this);
    return true;
}

bool CMyToolTipCtrl::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QObject::eventFilter(watched, event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const auto tool = std::ranges::find_if(m_rectTools, [&](const RectTool &candidate) {
        return candidate.window == watched && candidate.rect.contains(help->pos());
    });
    if (tool == m_rectTools.end())
        return QObject::eventFilter(watched, event);
    QToolTip::showText(help->globalPos(), tool->text, tool->window, tool->rect);
    return true;
}
