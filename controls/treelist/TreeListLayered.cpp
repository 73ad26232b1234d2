#include "controls/treelist/TreeListLayered.h"

#include <QApplication>
#include <QLibrary>
#include <QWindow>

#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

std::optional<bool> g_assumed;

#if QT_CONFIG(xcb)

/// Heads of two answers of the X server; a number at byte 8 of each is what was asked for.
struct Answer {
    std::uint8_t kind, filling;
    std::uint16_t sequence;
    std::uint32_t length;
    std::uint32_t value;
};
struct Cookie {
    unsigned sequence;
};
using AskAtom = Cookie (*)(void *connection, std::uint8_t onlyIfExists, std::uint16_t length, const char *name);
using AskOwner = Cookie (*)(void *connection, std::uint32_t atom);
using TakeAnswer = Answer *(*)(void *connection, Cookie cookie, void **error);

/// The number in an answer; 0 when there is none.
std::uint32_t valueOf(Answer *answer)
{
    const std::uint32_t value = answer != nullptr ? answer->value : 0;
    std::free(answer);
    return value;
}

/// An X server blends windows while a compositing manager runs, who owns a selection of a fixed name. The client
/// library is asked for at run time: a machine without it has no X windows either.
bool blendsOnX(void *connection)
{
    QLibrary library(QStringLiteral("xcb"), 1);
    const auto askAtom = reinterpret_cast<AskAtom>(library.resolve("xcb_intern_atom"));
    const auto takeAtom = reinterpret_cast<TakeAnswer>(library.resolve("xcb_intern_atom_reply"));
    const auto askOwner = reinterpret_cast<AskOwner>(library.resolve("xcb_get_selection_owner"));
    const auto takeOwner = reinterpret_cast<TakeAnswer>(library.resolve("xcb_get_selection_owner_reply"));
    if (connection == nullptr || !askAtom || !takeAtom || !askOwner || !takeOwner)
        return false;
    constexpr std::string_view kManager = "_NET_WM_CM_S0";
    const std::uint32_t atom = valueOf(takeAtom(
        connection, askAtom(connection, 1, static_cast<std::uint16_t>(kManager.size()), kManager.data()), nullptr));
    return atom != 0 && valueOf(takeOwner(connection, askOwner(connection, atom), nullptr)) != 0;
}

#endif

/// The window of this process at a point, those left out that take no input.
QWidget *windowUnder(const QPoint &onScreen)
{
    const QWindow *found = QGuiApplication::topLevelAt(onScreen);
    if (found != nullptr && found->flags().testFlag(Qt::WindowTransparentForInput)) {
        // Not every platform looks through such a window.
        found = nullptr;
        const QWindowList windows = QGuiApplication::topLevelWindows();
        for (auto window = windows.crbegin(); window != windows.crend() && found == nullptr; ++window) {
            if ((*window)->isVisible() && !(*window)->flags().testFlag(Qt::WindowTransparentForInput) &&
                (*window)->geometry().contains(onScreen))
                found = *window;
        }
    }
    if (found == nullptr)
        return nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->windowHandle() == found)
            return widget;
    }
    return nullptr;
}

} // namespace

CTreeListLayeredWnd::CTreeListLayeredWnd(QWidget *parent, const char *windowClass)
    : QWidget(parent, Qt::ToolTip | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint |
                          Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus),
      m_bLayered(IsAvailable())
{
    setObjectName(QLatin1String(windowClass));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_TranslucentBackground, m_bLayered);
    setFocusPolicy(Qt::NoFocus);
}

bool CTreeListLayeredWnd::IsAvailable()
{
    if (g_assumed)
        return *g_assumed;
#if QT_CONFIG(xcb)
    if (const auto *x = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        return blendsOnX(x->connection());
#endif
    return true;
}

void CTreeListLayeredWnd::Assume(std::optional<bool> available)
{
    g_assumed = available;
}

void CTreeListLayeredWnd::ShowAt(const QPoint &topLeft)
{
    move(topLeft);
    if (!isVisible())
        show();
}

QWidget *WidgetUnderDrag(const QPoint &onScreen)
{
    QWidget *const window = windowUnder(onScreen);
    if (window == nullptr)
        return nullptr;
    QWidget *const child = window->childAt(window->mapFromGlobal(onScreen));
    return child != nullptr ? child : window;
}
