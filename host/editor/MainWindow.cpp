#include "host/editor/MainWindow.h"

#include "host/drawing/Findings.h"
#include "host/editor/Captions.h"
#include "host/editor/CommandLine.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Guarded.h"
#include "host/editor/Theme.h"
#include "host/editor/UiMessage.h"
#include "host/editor/Viewport.h"
#include "host/editor/panels/Docks.h"
#include "host/network/Network.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QVBoxLayout>

namespace velmor {

namespace {

QString ui(std::string_view name)
{
    return QString::fromStdWString(uiText(name));
}

std::filesystem::path toPath(const QString &text)
{
    return std::filesystem::path(text.toStdString());
}

QString drawingFilter()
{
    return ui("ui.filter.drawing");
}

} // namespace

MainWindow::MainWindow(Session &session)
    : m_session(session), m_viewport(new Viewport(this)), m_commandLine(new CommandLine(this)),
      m_coordinates(new QLabel(this))
{
    auto *middle = new QWidget(this);
    auto *column = new QVBoxLayout(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_viewport, 1);
    column->addWidget(m_commandLine);
    setCentralWidget(middle);
    followLanguage();
    keepCaptioned(this, [this] {
        m_viewport->setAccessibleName(ui("ui.viewport"));
        if (m_prompt == nullptr) // a command's prompt stays in the language in which it asked
            m_commandLine->setPrompt(ui("ui.command.idle"));
        refreshTitle();
    });
    m_coordinates->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0000000.0000, 0000000.0000")));
    statusBar()->addPermanentWidget(m_coordinates);
    buildMenus();

    connect(m_commandLine, &CommandLine::entered, this, &MainWindow::takeText);
    connect(m_commandLine, &CommandLine::cancelled, this, [this] { giveAnswer({Answer::Escape{}}); });
    connect(m_viewport, &Viewport::cancelled, this, [this] { giveAnswer({Answer::Escape{}}); });
    connect(m_viewport, &Viewport::entered, this, [this] { giveAnswer({Answer::Enter{}}); });
    connect(m_viewport, &Viewport::clicked, this, [this](double x, double y) { giveAnswer({AcGePoint3d(x, y)}); });
    connect(m_viewport, &Viewport::entityPicked, this, [this](AcDbObjectId id, double x, double y) {
        giveAnswer({Answer::Pick{id, AcGePoint3d(x, y)}});
    });
    connect(m_viewport, &Viewport::selected, this, [this](const AcDbObjectIdArray &ids, bool removing) {
        if (!removing)
            giveAnswer({ids});
    });
    m_viewport->setDraftingSource([this] { return draftingOf(m_session); },
                                  [this](const Drafting &drafting) { setDrafting(m_session, drafting); });
    connect(m_viewport, &Viewport::pointerMoved, this, [this](double x, double y) {
        m_coordinates->setText(QStringLiteral("%1, %2").arg(x, 0, 'f', 4).arg(y, 0, 'f', 4));
        if (m_prompt != nullptr && m_prompt->tip)
            m_viewport->setToolTip(QString::fromStdWString(m_prompt->tip({x, y})));
    });

    m_session.setView(this);
    m_session.setPromptSource(this);
    m_viewport->setStyle(palette().color(QPalette::Base).lightnessF() < 0.5 ? PaintStyle::dark() : PaintStyle::light());
    showDrawing(m_session.drawing());
    resize(1200, 820);
    m_commandLine->focusInput();
}

MainWindow::~MainWindow()
{
    m_session.setView(nullptr);
    m_session.setPromptSource(nullptr);
}

void MainWindow::buildMenus()
{
    struct Row {
        const char *text;
        QKeySequence key;
        std::function<void()> action;
    };
    const auto fill = [this](const char *title, const std::vector<Row> &rows) {
        QMenu *menu = menuBar()->addMenu(QString());
        keepCaptioned(menu, [menu, title] { menu->setTitle(ui(title)); });
        for (const Row &row : rows) {
            if (row.text == nullptr) {
                menu->addSeparator();
                continue;
            }
            QAction *action = menu->addAction(QString());
            keepCaptioned(action, [action, text = row.text] { action->setText(ui(text)); });
            connect(action, &QAction::triggered, this, [this, action, work = row.action] {
                const std::wstring name = action->text().remove(QLatin1Char('&')).toStdWString();
                runGuarded(m_session, name, work);
            });
            action->setShortcut(row.key);
        }
        return menu;
    };
    const Row separator{nullptr, {}, {}};
    fill("ui.menu.file",
         {{"ui.file.open", QKeySequence::Open, [this] { chooseAndOpen(); }},
          {"ui.file.import", QKeySequence(Qt::CTRL | Qt::Key_I), [this] { chooseAndImport(); }},
          separator,
          {"ui.file.save", QKeySequence::Save, [this] { save(); }},
          {"ui.file.saveas", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), [this] { chooseAndSave(); }},
          separator,
          {"ui.file.quit", QKeySequence(Qt::CTRL | Qt::Key_Q), [this] { close(); }}});
    QMenu *view =
        fill("ui.menu.view",
             {{"ui.view.extents", QKeySequence(Qt::CTRL | Qt::Key_0), [this] { m_viewport->showEverything(); }},
              {"ui.view.in", QKeySequence::ZoomIn, [this] { m_viewport->zoomBy(1.5); }},
              {"ui.view.out", QKeySequence::ZoomOut, [this] { m_viewport->zoomBy(1.0 / 1.5); }}});
    fill(
        "ui.menu.catchments",
        {{"ui.catchments.define", QKeySequence(Qt::Key_F5), [this] { runCommand(QStringLiteral("zemsewage_create")); }},
         {"ui.catchments.review", QKeySequence(Qt::Key_F6), [this] { runCommand(QStringLiteral("zemsewage_edit")); }}});
    m_docks = new Docks(*this, *view, m_session);
    fill("ui.menu.help", {{"ui.help.about", QKeySequence(Qt::Key_F1), [this] {
                               QMessageBox::about(this, QStringLiteral("Velmor"),
                                                  ui("ui.help.about.text").arg(QApplication::applicationVersion()));
                           }}});
}

OpenedFile readForWindow(const std::filesystem::path &file)
{
    OpenedFile opened;
    const auto note = [&](const std::vector<std::string> &lines) {
        for (const std::string &line : lines)
            opened.notes.push_back(wide(line));
    };
    const std::string name = file.filename().string();
    if (file.extension() == ".inp" || file.extension() == ".INP") {
        auto drawing = Drawing::createNew();
        const NetworkImportResult imported = importInp(*drawing, file, {.withPolygons = true});
        if (!imported) {
            opened.message = imported.message;
            return opened;
        }
        note(findingLines(name, imported.findings));
        opened.notes.push_back(
            uiMessage("ui.import.done", {std::to_wstring(imported.sections), std::to_wstring(imported.nodes),
                                         std::to_wstring(imported.polygons)}));
        if (imported.convertedFromFeet)
            opened.notes.push_back(uiText("ui.import.feet"));
        opened.drawing = std::move(drawing);
        return opened;
    }
    LoadResult loaded = Drawing::load(file);
    opened.message = loaded.message;
    opened.path = file;
    opened.damaged = loaded.report.damaged();
    std::erase_if(loaded.report.findings, [](const Finding &f) { return f.severity != Severity::Damage; });
    note(findingLines(name, loaded.report.findings));
    opened.drawing = std::move(loaded.drawing);
    return opened;
}

bool MainWindow::openFile(const std::filesystem::path &file)
{
    return showFile(readForWindow(file));
}

bool MainWindow::showFile(OpenedFile opened)
{
    if (!opened.drawing) {
        showFailure(opened.message);
        return false;
    }
    for (const std::wstring &note : opened.notes)
        m_commandLine->say(QString::fromStdWString(note));
    m_session.setDrawing(std::move(opened.drawing), opened.path);
    if (opened.damaged)
        showAlert(uiText("ui.open.damaged"));
    return true;
}

void MainWindow::showDrawing(Drawing *drawing)
{
    m_viewport->setDrawing(drawing);
    m_docks->showDrawing(drawing);
    refreshTitle();
}

void MainWindow::redraw()
{
    m_viewport->update();
    m_docks->bringUpToDate();
    refreshTitle();
    // A handler that ends with a refresh expects the screen to show its result at once.
    m_viewport->repaint();
}

void MainWindow::zoomTo(const Extents &extents)
{
    m_viewport->showExtents(extents);
}

void MainWindow::showAlert(const std::wstring &text)
{
    say(text);
    QWidget *owner = QApplication::activeModalWidget();
    QMessageBox::warning(owner != nullptr ? owner : this, QStringLiteral("Velmor"), QString::fromStdWString(text));
}

void MainWindow::showStatus(const std::wstring &text)
{
    say(text); // where all of several lines stay
    statusBar()->showMessage(QString::fromStdWString(text));
}

void MainWindow::say(const std::wstring &text)
{
    m_lastSaid = text;
    m_commandLine->say(QString::fromStdWString(text));
}

std::optional<Answer> MainWindow::ask(const Prompt &prompt)
{
    const Prompt *outer = m_prompt;
    QEventLoop *outerLoop = m_promptLoop;
    QEventLoop loop;
    m_prompt = &prompt;
    m_promptLoop = &loop;
    m_answer.reset();
    m_commandLine->setPrompt(QString::fromStdWString(prompt.text));
    m_viewport->setPrompt(&prompt);
    m_commandLine->focusInput();
    loop.exec();
    m_prompt = outer;
    m_promptLoop = outerLoop;
    m_viewport->setPrompt(outer);
    m_viewport->setToolTip({});
    m_commandLine->setPrompt(outer != nullptr ? QString::fromStdWString(outer->text) : ui("ui.command.idle"));
    return std::exchange(m_answer, std::nullopt);
}

void MainWindow::giveAnswer(Answer answer)
{
    if (m_promptLoop == nullptr || m_answer)
        return;
    m_answer = std::move(answer);
    m_promptLoop->quit();
}

void MainWindow::takeText(const QString &text)
{
    if (m_prompt == nullptr)
        return text.isEmpty() ? void() : runCommand(text);
    if (text.isEmpty())
        giveAnswer({Answer::Enter{}});
    else
        giveAnswer({text.toStdWString()});
}

void MainWindow::runCommand(const QString &line)
{
    std::wstring reason;
    m_lastSaid.clear();
    // An alert or a status line may have said it already.
    if (!m_session.commands().run(line.toStdWString(), &reason) && !reason.empty() && reason != m_lastSaid)
        m_commandLine->say(QString::fromStdWString(reason));
    m_docks->bringUpToDate();
    m_viewport->update(); // the drawing may have changed without a word to the view
    refreshTitle();
}

void MainWindow::chooseAndOpen()
{
    if (!maySetAside())
        return;
    const QString file = QFileDialog::getOpenFileName(this, ui("ui.file.open.title"), {}, drawingFilter());
    if (!file.isEmpty())
        openFile(toPath(file));
}

void MainWindow::chooseAndImport()
{
    if (!maySetAside())
        return;
    const QString file = QFileDialog::getOpenFileName(this, ui("ui.file.import.title"), {}, ui("ui.filter.network"));
    if (!file.isEmpty())
        openFile(toPath(file));
}

bool MainWindow::save()
{
    return m_session.path().empty() ? chooseAndSave() : saveTo(m_session.path());
}

bool MainWindow::chooseAndSave()
{
    QString file = QFileDialog::getSaveFileName(this, ui("ui.file.saveas.title"), {}, drawingFilter());
    if (file.isEmpty())
        return false;
    if (!file.endsWith(QStringLiteral(".dxf"), Qt::CaseInsensitive))
        file += QStringLiteral(".dxf");
    return saveTo(toPath(file));
}

bool MainWindow::saveTo(const std::filesystem::path &file)
{
    Drawing *drawing = m_session.drawing();
    if (drawing == nullptr)
        return false;
    SaveResult saved = drawing->save(file);
    if (saved.status == FileStatus::Refused) {
        const auto answer = QMessageBox::question(this, QStringLiteral("Velmor"), ui("ui.save.damaged"));
        if (answer != QMessageBox::Yes)
            return false;
        saved = drawing->save(file, {.overwriteDamaged = true});
    }
    if (!saved) {
        showFailure(saved.message);
        return false;
    }
    m_session.setPath(file);
    statusBar()->showMessage(ui("ui.save.done").arg(QString::fromStdString(file.string())));
    refreshTitle();
    return true;
}

bool MainWindow::maySetAside()
{
    if (m_promptLoop != nullptr || m_session.commands().isRunning())
        return false;
    if (m_session.drawing() == nullptr || !m_session.drawing()->isModified())
        return true;
    const auto answer = QMessageBox::question(this, QStringLiteral("Velmor"), ui("ui.close.unsaved"),
                                              QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    if (answer == QMessageBox::Save)
        return save();
    return answer == QMessageBox::Discard;
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    giveAnswer({Answer::Escape{}});
    event->setAccepted(maySetAside());
}

void MainWindow::keyPressEvent(QKeyEvent *event)
{
    // Letters typed over the drawing belong to the command line.
    const QString text = event->text();
    if (!text.isEmpty() && text[0].isPrint())
        m_commandLine->type(text);
    else
        QMainWindow::keyPressEvent(event);
}

void MainWindow::refreshTitle()
{
    const Drawing *drawing = m_session.drawing();
    const QString name = m_session.path().empty() ? ui("ui.title.untitled")
                                                  : QString::fromStdString(m_session.path().filename().string());
    setWindowTitle(name + QStringLiteral("[*] - Velmor"));
    setWindowModified(drawing != nullptr && drawing->isModified());
}

void MainWindow::showFailure(const std::string &message)
{
    const QString text = QString::fromStdString(message);
    m_commandLine->say(text);
    QMessageBox::critical(this, QStringLiteral("Velmor"), text);
}

int runWindow(Session &session, OpenedFile opened)
{
    if (session.drawing() == nullptr)
        session.setDrawing(Drawing::createNew());
    applyTheme(themeOfSettings());
    MainWindow window(session);
    window.docks().restoreLayout();
    window.show();
    if (opened.drawing)
        window.showFile(std::move(opened));
    const int code = QApplication::exec();
    window.docks().keepLayout();
    return code;
}

} // namespace velmor
