// Menus, tool bar, panels and status bar of the window, and where they were when it was closed last.
#include "host/editor/Captions.h"
#include "host/editor/CommandLine.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Guarded.h"
#include "host/editor/MainWindow.h"
#include "host/editor/UiMessage.h"
#include "host/editor/UndoHistory.h"
#include "host/editor/Viewport.h"
#include "host/editor/panels/Docks.h"
#include "host/services/Icons.h"
#include "host/services/Messages.h"
#include "host/services/RecentFiles.h"
#include "host/services/Text.h"

#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

#include <algorithm>
#include <cmath>
#include <map>

namespace velmor {

namespace {

QString ui(std::string_view name)
{
    return QString::fromStdWString(uiText(name));
}

QIcon iconOf(const MenuItem &item)
{
    const IconFile *icon =
        item.icon ? findIcon(std::wstring(item.icon, item.icon + std::string_view(item.icon).size())) : nullptr;
    return icon ? QIcon(QString::fromStdString(icon->path.string())) : QIcon();
}

/// "&Open…" without the mark of the mnemonic.
QString plain(QString text)
{
    return text.remove(QLatin1Char('&'));
}

} // namespace

QAction *MainWindow::addItem(QMenu &menu, const CommandRow &row, const MenuItem &item)
{
    if (item.separatorBefore && !menu.isEmpty())
        menu.addSeparator();
    QAction *action = menu.addAction(iconOf(item), QString());
    action->setObjectName(QString::fromUtf8(item.line ? item.line : row.name));
    if (item.key) {
        // Several keys of one item stand behind bars.
        QList<QKeySequence> keys;
        for (const QString &key : QString::fromUtf8(item.key).split(QLatin1Char('|')))
            keys.append(QKeySequence(key));
        action->setShortcuts(keys);
    }
    keepCaptioned(action, [action, &row, &item] {
        action->setText(ui(item.text));
        action->setStatusTip(QString::fromStdWString(row.help()));
        const QString key = action->shortcut().toString(QKeySequence::NativeText);
        action->setToolTip(plain(action->text()) + (key.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(key)));
    });
    connect(action, &QAction::triggered, this,
            [this, &row, &item] { runGuarded(m_session, row.localName(), [&] { trigger(item, row); }); });
    if (item.toolBar)
        m_toolBar->addAction(action);
    return action;
}

void MainWindow::buildMenus()
{
    std::map<MenuPlace, QMenu *> menus;
    const auto table = commandTable();
    for (int i = 0; i < kMenuPlaces; ++i) {
        const auto place = static_cast<MenuPlace>(i);
        const bool isUsed = std::ranges::any_of(table, [&](const CommandRow &row) {
            return std::ranges::any_of(row.items, [&](const MenuItem &item) { return item.place == place; });
        });
        if (!isUsed)
            continue;
        QMenu *menu = menuBar()->addMenu(QString());
        keepCaptioned(menu, [menu, place] { menu->setTitle(ui(menuTitle(place))); });
        menus[place] = menu;
    }
    std::optional<MenuPlace> last;
    for (const CommandRow &row : table) {
        for (const MenuItem &item : row.items) {
            if (item.toolBar && last && item.place != *last)
                m_toolBar->addSeparator();
            if (item.toolBar)
                last = item.place;
            addItem(*menus.at(item.place), row, item);
        }
    }
    addRecentMenu(*menus.at(MenuPlace::File));
    QMenu &view = *menus.at(MenuPlace::View);
    view.addSeparator();
    QAction *transcript = view.addAction(QString());
    keepCaptioned(transcript, [transcript] { transcript->setText(ui("ui.item.transcript")); });
    transcript->setShortcut(Qt::Key_F2);
    connect(transcript, &QAction::triggered, m_commandLine, &CommandLine::toggleTranscript);
    view.addSeparator();
    view.addActions(m_viewport->draftActions());
    m_docks = new Docks(*this, view, m_session);
}

void MainWindow::addRecentMenu(QMenu &fileMenu)
{
    m_recent = new QMenu(&fileMenu);
    keepCaptioned(m_recent, [this] { m_recent->setTitle(ui("ui.menu.recent")); });
    const auto *save = fileMenu.findChild<QAction *>(QStringLiteral("SAVE"));
    fileMenu.insertMenu(const_cast<QAction *>(save), m_recent);
    connect(m_recent, &QMenu::aboutToShow, this, &MainWindow::fillRecentMenu);
    fillRecentMenu();
}

void MainWindow::fillRecentMenu()
{
    m_recent->clear();
    const RecentFiles recent = RecentFiles::ofUser();
    const auto files = recent.list();
    for (std::size_t i = 0; i < files.size(); ++i) {
        const QString name = QString::fromStdString(files[i].string());
        QString text = name;
        text.replace(QLatin1Char('&'), QStringLiteral("&&"));
        QAction *action = m_recent->addAction(i < 9 ? QStringLiteral("&%1  %2").arg(i + 1).arg(text) : text);
        action->setProperty("content", true);
        connect(action, &QAction::triggered, this, [this, file = files[i]] {
            whenIdle([this, file] {
                if (maySetAside())
                    openFile(file);
            });
        });
    }
    m_recent->setEnabled(!files.empty());
}

void MainWindow::noteRecent(const std::filesystem::path &file)
{
    if (!file.empty())
        if (const SaveResult kept = RecentFiles::ofUser().add(file); !kept)
            showStatus(wide(kept.message));
    fillRecentMenu();
}

void MainWindow::refreshUndo()
{
    Drawing *drawing = m_session.drawing();
    const auto show = [this](const char *item, const char *text, bool possible, const std::wstring &name) {
        auto *action = menuBar()->findChild<QAction *>(QString::fromUtf8(item));
        if (action == nullptr)
            return;
        action->setEnabled(possible);
        action->setText(name.empty() ? ui(text) : ui(text) + QLatin1Char(' ') + QString::fromStdWString(name));
    };
    const auto *history = drawing != nullptr ? &drawing->component<UndoHistory>() : nullptr;
    show("U", "ui.item.undo", history != nullptr && history->canUndo(),
         history != nullptr ? history->undoName() : std::wstring());
    show("REDO 1", "ui.item.redo", history != nullptr && history->canRedo(),
         history != nullptr ? history->redoName() : std::wstring());
}

void MainWindow::retranslate()
{
    m_viewport->setAccessibleName(ui("ui.viewport"));
    m_toolBar->setWindowTitle(ui("ui.toolbar"));
    m_layer->setToolTip(ui("ui.status.layer"));
    m_scale->setToolTip(ui("ui.status.scale"));
    m_coordinates->setToolTip(ui("ui.status.coordinates"));
    showPrompt();
    refreshTitle();
    refreshStatusBar();
    refreshUndo();
}

void MainWindow::refreshStatusBar()
{
    const Drawing *drawing = m_session.drawing();
    m_layer->setText(
        drawing ? ui("ui.status.layer.is").arg(QString::fromStdWString(drawing->layer(drawing->currentLayer()).name))
                : QString());
    m_scale->setText(m_viewport->scaleText());
}

void MainWindow::trigger(const MenuItem &item, const CommandRow &row)
{
    const std::string_view name = row.name;
    if (item.file == FileChoice::OpenDrawing)
        return whenIdle([this] { chooseAndOpen(); });
    if (item.file == FileChoice::OpenNetwork)
        return whenIdle([this] { chooseAndImport(); });
    if (item.file == FileChoice::SaveDrawing)
        return whenIdle([this] { chooseAndSave(); });
    if (item.file == FileChoice::SavePdf)
        return whenIdle([this] { chooseAndExport(); });
    if (name == "SAVE")
        return whenIdle([this] { save(); });
    if (name == "QUIT") {
        close();
        return;
    }
    if (name == "NEW")
        return whenIdle([this] {
            if (maySetAside())
                m_session.setDrawing(Drawing::createNew());
        });
    startCommand(item.line ? QLatin1Char('_') + QString::fromUtf8(item.line)
                           : (row.ofModule ? QString() : QStringLiteral("_")) + QString::fromUtf8(row.name));
}

} // namespace velmor
