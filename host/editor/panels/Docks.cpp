#include "host/editor/panels/Docks.h"

#include "host/editor/Captions.h"
#include "host/editor/Theme.h"
#include "host/editor/panels/Panel.h"
#include "host/services/Services.h"

#include <QAction>
#include <QActionGroup>
#include <QDockWidget>
#include <QEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTabBar>

namespace velmor {

namespace {

constexpr int kLaterMilliseconds = 80;
constexpr char kLayoutSetting[] = "WINDOW_LAYOUT";
constexpr int kLayoutVersion = 1;

} // namespace

Docks::Docks(QMainWindow &window, QMenu &viewMenu, Session &session)
    : QObject(&window), m_window(window), m_session(session)
{
    m_later.setSingleShot(true);
    connect(&m_later, &QTimer::timeout, this, [this] { bringUpToDate(); });
    viewMenu.addSeparator();
    QDockWidget *formerRight = nullptr, *formerBottom = nullptr;
    for (const PanelSpec &spec : panelSpecs()) {
        auto *dock = new QDockWidget(&window);
        dock->setObjectName(QLatin1String("dock.") + QLatin1String(spec.name));
        Panel *panel = spec.make(session);
        dock->setWidget(panel);
        QAction *action = dock->toggleViewAction();
        action->setShortcut(QKeySequence(QString::fromLatin1(spec.key)));
        viewMenu.addAction(action);
        keepCaptioned(dock, [dock, action, title = spec.title] {
            const QString caption = uiString(title);
            QString plain = caption;
            dock->setWindowTitle(plain.remove(QLatin1Char('&')));
            action->setText(caption); // the dock's title came without its mnemonic
        });
        QDockWidget *&former = spec.onTheRight ? formerRight : formerBottom;
        window.addDockWidget(spec.onTheRight ? Qt::RightDockWidgetArea : Qt::BottomDockWidgetArea, dock);
        if (former)
            window.tabifyDockWidget(former, dock);
        former = dock;
        dock->setVisible(spec.shown);
        connect(dock, &QDockWidget::visibilityChanged, panel, [panel](bool visible) {
            if (visible)
                panel->bringUpToDate();
        });
        m_docks.push_back({dock, panel});
    }
    // The first of those that share a place lies on top.
    for (auto dock = m_docks.rbegin(); dock != m_docks.rend(); ++dock)
        if (!dock->widget->isHidden())
            dock->widget->raise();
    addAppearance(viewMenu);
    window.installEventFilter(this);
}

Docks::~Docks()
{
    if (m_drawing)
        m_drawing->removeObserver(*this);
}

void Docks::addAppearance(QMenu &viewMenu)
{
    struct Choice {
        const char *text;
        std::wstring command;
    };
    const auto addMenu = [&](const char *title, const std::vector<Choice> &choices, auto isCurrent) {
        QMenu *menu = viewMenu.addMenu(QString());
        keepCaptioned(menu, [menu, title] { menu->setTitle(uiString(title)); });
        auto *group = new QActionGroup(menu);
        std::vector<QAction *> actions;
        for (const Choice &choice : choices) {
            QAction *action = group->addAction(QString());
            action->setCheckable(true);
            menu->addAction(action);
            keepCaptioned(action, [action, text = choice.text] { action->setText(uiString(text)); });
            connect(action, &QAction::triggered, this,
                    [this, command = choice.command] { startCommand(m_session, command); });
            actions.push_back(action);
        }
        connect(menu, &QMenu::aboutToShow, this, [actions, isCurrent] {
            for (std::size_t i = 0; i < actions.size(); ++i)
                actions[i]->setChecked(isCurrent(i));
        });
    };
    viewMenu.addSeparator();
    addMenu("ui.view.language", {{"ui.view.language.en", L"LANGUAGE EN"}, {"ui.view.language.hr", L"LANGUAGE HR"}},
            [](std::size_t i) { return Services::instance().messages().language() == (i == 0 ? "en" : "hr"); });
    addMenu("ui.view.theme",
            {{"ui.view.theme.system", L"THEME SYSTEM"},
             {"ui.view.theme.light", L"THEME LIGHT"},
             {"ui.view.theme.dark", L"THEME DARK"}},
            [](std::size_t i) { return themeOfSettings() == static_cast<Theme>(i); });
}

bool Docks::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::LanguageChange:
    case QEvent::Show:
        settleMnemonics(*m_window.menuBar());
        [[fallthrough]];
    case QEvent::ChildPolished:
    case QEvent::LayoutRequest:
        for (QTabBar *tabs : m_window.findChildren<QTabBar *>(Qt::FindDirectChildrenOnly))
            tabs->setAccessibleName(uiString("ui.panels.tabs"));
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void Docks::showDrawing(Drawing *drawing)
{
    if (m_drawing)
        m_drawing->removeObserver(*this);
    m_drawing = drawing;
    if (m_drawing)
        m_drawing->addObserver(*this);
    for (const Dock &dock : m_docks)
        dock.panel->setDrawing(drawing);
    bringUpToDate();
}

void Docks::noteChange()
{
    if (m_noted)
        return;
    m_noted = true;
    m_later.start(kLaterMilliseconds);
}

void Docks::bringUpToDate()
{
    m_noted = false;
    m_later.stop();
    for (const Dock &dock : m_docks)
        if (dock.panel->isVisible())
            dock.panel->bringUpToDate();
}

void Docks::restoreLayout()
{
    if (const auto kept = Services::instance().settings().value(kLayoutSetting))
        if (const auto *text = std::get_if<std::wstring>(&*kept))
            m_window.restoreState(QByteArray::fromBase64(QString::fromStdWString(*text).toLatin1()), kLayoutVersion);
}

void Docks::keepLayout() const
{
    Services::instance().set(kLayoutSetting,
                             QString::fromLatin1(m_window.saveState(kLayoutVersion).toBase64()).toStdWString());
}

} // namespace velmor
