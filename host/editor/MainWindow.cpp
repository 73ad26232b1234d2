#include "host/editor/MainWindow.h"

#include "host/editor/Asker.h"
#include "host/editor/Captions.h"
#include "host/editor/CommandLine.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Completions.h"
#include "host/editor/PlotDialog.h"
#include "host/editor/PointerTip.h"
#include "host/editor/RestingPointer.h"
#include "host/editor/SwitchButton.h"
#include "host/editor/Theme.h"
#include "host/editor/UiMessage.h"
#include "host/editor/UndoHistory.h"
#include "host/editor/Viewport.h"
#include "host/editor/Words.h"
#include "host/editor/panels/Docks.h"
#include "host/services/Messages.h"
#include "host/services/Services.h"
#include "host/services/Text.h"

#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>
#include <fmt/xchar.h>

#include <cmath>

namespace velmor {

namespace {

constexpr int kBetweenTexts = 6; ///< pixels beside each text of the status bar

QString ui(std::string_view name)
{
    return QString::fromStdWString(uiText(name));
}

/// A file in the user's folder; empty when there is no such folder.
std::filesystem::path userFile(const char *name)
{
    const auto &folder = Services::instance().paths().userFolder();
    return folder.empty() ? folder : folder / name;
}

/// A command's line as a person reads it: without the marks of words that hold in every language.
QString shownLine(const QString &line)
{
    QStringList words = line.split(QLatin1Char(' '));
    for (QString &word : words)
        if (word.startsWith(QLatin1Char('_')))
            word.remove(0, 1);
    return words.join(QLatin1Char(' '));
}

} // namespace

MainWindow::MainWindow(Session &session)
    : m_session(session), m_viewport(new Viewport(this)), m_commandLine(new CommandLine(this, userFile("history.txt"))),
      m_coordinates(new QLabel(this)), m_scale(new QLabel(this)), m_layer(new QLabel(this)),
      m_nextLook(new QTimer(this)), m_progress(new ProgressMeter(this))
{
    auto *middle = new QWidget(this);
    auto *column = new QVBoxLayout(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_viewport, 1);
    column->addWidget(m_commandLine);
    setCentralWidget(middle);
    followLanguage();
    m_coordinates->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0000000.0000, 0000000.0000")));
    statusBar()->addPermanentWidget(m_progress);
    new RestingPointer(m_session, *m_viewport); // belongs to the view
    for (QAction *action : m_viewport->draftActions()) {
        if (!action->isCheckable())
            continue;
        statusBar()->addPermanentWidget(new SwitchButton(*action, this));
    }
    for (QLabel *label : {m_layer, m_scale, m_coordinates}) {
        label->setContentsMargins(kBetweenTexts, 0, kBetweenTexts, 0);
        statusBar()->addPermanentWidget(label);
    }
    m_toolBar = addToolBar(QString());
    m_toolBar->setObjectName(QStringLiteral("tools"));
    m_toolBar->setIconSize({24, 24});
    setAcceptDrops(true);
    buildMenus();
    keepCaptioned(this, [this] { retranslate(); });
    m_nextLook->setSingleShot(true);
    connect(m_nextLook, &QTimer::timeout, this, &MainWindow::runWaiting);

    connect(m_commandLine, &CommandLine::entered, this, &MainWindow::takeText);
    connect(m_commandLine, &CommandLine::cancelled, this, [this] {
        if (!m_viewport->escape())
            giveAnswer({Answer::Escape{}});
    });
    connect(m_commandLine, &CommandLine::keyForView, m_viewport, &Viewport::takeKey);
    connect(m_commandLine, &CommandLine::spaceLost, this, [this] {
        if (!m_viewport->hasFocus())
            m_viewport->dropSpace();
    });
    connect(m_viewport, &Viewport::cancelled, this, [this] { giveAnswer({Answer::Escape{}}); });
    connect(m_viewport, &Viewport::entered, this, [this] { takeText({}); });
    connect(m_viewport, &Viewport::clicked, this, [this](double x, double y) { giveAnswer({AcGePoint3d(x, y)}); });
    connect(m_viewport, &Viewport::entityPicked, this, [this](AcDbObjectId id, double x, double y) {
        giveAnswer({Answer::Pick{id, AcGePoint3d(x, y)}});
    });
    connect(m_viewport, &Viewport::selected, this, [this](const AcDbObjectIdArray &ids, bool removing) {
        giveAnswer(removing ? Answer{Answer::Removed{ids}} : Answer{ids});
    });
    m_viewport->setDraftingSource([this] { return draftingOf(m_session); },
                                  [this](const Drafting &drafting) { setDrafting(m_session, drafting); });
    connect(m_viewport, &Viewport::viewChanged, this, &MainWindow::refreshStatusBar);
    connect(m_viewport, &Viewport::pointerMoved, this, [this](double x, double y) {
        m_pointer = {x, y};
        m_coordinates->setText(QStringLiteral("%1, %2").arg(x, 0, 'f', 4).arg(y, 0, 'f', 4));
        if (m_prompt != nullptr && m_prompt->tip)
            showPointerTip(*m_viewport, m_viewport->view().toView(x, y).toPoint(),
                           QString::fromStdWString(m_prompt->tip({x, y})));
        refreshStatusBar();
    });
    m_commandLine->setCompletions([this](const QString &typed) {
        QStringList list;
        for (const std::wstring &text : completionsOf(m_session, m_prompt, typed.toStdWString()))
            list.append(QString::fromStdWString(text));
        return list;
    });

    m_session.setView(this);
    m_session.setPromptSource(this);
    m_viewport->setStyle(palette().color(QPalette::Base).lightnessF() < 0.5 ? PaintStyle::dark() : PaintStyle::light());
    showDrawing(m_session.drawing());
    resize(QSize(1200, 820).boundedTo(screen()->availableSize()));
    m_commandLine->focusInput();
}

MainWindow::~MainWindow()
{
    m_session.setView(nullptr);
    m_session.setPromptSource(nullptr);
}

void MainWindow::showDrawing(Drawing *drawing)
{
    m_undoWatch.reset();
    m_viewport->setDrawing(drawing);
    m_docks->showDrawing(drawing);
    if (drawing != nullptr)
        m_undoWatch = drawing->component<UndoHistory>().onChange([this] { refreshUndo(); });
    refreshUndo();
    noteRecent(m_session.path());
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

const ViewTransform &MainWindow::shownView() const
{
    return m_viewport->view();
}

void MainWindow::showEverything()
{
    m_viewport->showEverything();
}

void MainWindow::zoomBy(double factor)
{
    m_viewport->zoomBy(factor);
}

void MainWindow::centreOn(const AcGePoint3d &point)
{
    const ViewTransform &view = m_viewport->view();
    m_viewport->panBy(
        QPointF((view.centerX - point.x) * view.pixelsPerUnit, (point.y - view.centerY) * view.pixelsPerUnit));
}

double MainWindow::scaleDenominator() const
{
    return m_viewport->scaleDenominator();
}

void MainWindow::openPlotDialog()
{
    if (m_session.drawing() == nullptr)
        return;
    PlotDialog(m_session, m_viewport->view().visible(), this).exec();
}

bool MainWindow::showPrevious()
{
    return m_viewport->zoomPrevious();
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
    if (m_waiting)
        return std::nullopt;
    // An exception that leaves the loop must not leave pointers into this frame behind.
    struct Outer {
        MainWindow &window;
        Prompt *prompt;
        QEventLoop *loop;
        ~Outer()
        {
            window.m_prompt = prompt;
            window.m_promptLoop = loop;
        }
    };
    QEventLoop loop;
    Prompt shown = prompt; // its texts follow the language
    {
        const Outer outer{*this, m_prompt, m_promptLoop};
        m_prompt = &shown;
        m_promptLoop = &loop;
        m_answer.reset();
        showPrompt();
        m_commandLine->focusInput();
        loop.exec();
    }
    hidePointerTip(*m_viewport);
    auto answer = std::exchange(m_answer, std::nullopt);
    showPrompt();
    return answer;
}

/// The prompt that waits, or that none does.
void MainWindow::showPrompt()
{
    m_viewport->setPrompt(m_prompt);
    if (m_prompt == nullptr) {
        m_commandLine->setPrompt(ui("ui.command.idle"));
        return;
    }
    if (m_prompt->again) { // the language may have changed since it was asked, also while another prompt was shown
        Prompt now = m_prompt->again();
        m_prompt->text = std::move(now.text);
        m_prompt->localKeywords = std::move(now.localKeywords);
    }
    const auto kind = m_prompt->kind;
    std::vector<CommandLine::Option> options;
    for (std::size_t i = 0; i + m_prompt->silent < m_prompt->keywords.size(); ++i) {
        const auto &local = m_prompt->localKeywords;
        options.push_back({QString::fromStdWString(i < local.size() ? local[i] : m_prompt->keywords[i]),
                           QLatin1Char('_') + QString::fromStdWString(m_prompt->keywords[i])});
    }
    m_commandLine->setPrompt(QString::fromStdWString(m_prompt->text), options, kind == PromptKind::Text);
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
    // The last answer is still on its way to who asked: this one is for the next question.
    if (m_promptLoop != nullptr && m_answer) {
        QTimer::singleShot(0, this, [this, text] { takeText(text); });
        return;
    }
    if (m_prompt == nullptr) {
        if (!text.isEmpty())
            runCommand(text);
        else if (!m_lastCommand.empty())
            runCommand(QString::fromStdWString(m_lastCommand));
        return;
    }
    if (text.isEmpty())
        return giveAnswer({Answer::Enter{}});
    std::wstring answer = text.toStdWString();
    if (text.startsWith(QLatin1Char('\''))) {
        const auto *entry = m_session.commands().find(answer.substr(0, answer.find(L' ')));
        if (entry && entry->mayStartInside())
            return runCommand(text);
        if (entry && m_prompt->kind != PromptKind::Text)
            return say(uiMessage("ui.run.notTransparent", {entry->globalName}));
    }
    // Quoted as in a script: the marks go, a doubled one is one.
    std::wstring why;
    if (const auto words = splitWords(answer, why); words && words->size() == 1 && words->front().quoted)
        answer = words->front().text;
    giveAnswer({withDirection(globalAnswer(*m_prompt, answer))});
}

/// A distance alone means the point at that distance in the direction of the pointer.
std::wstring MainWindow::withDirection(const std::wstring &text) const
{
    const auto distance = parseReal(text);
    if (m_prompt->kind != PromptKind::Point || !m_prompt->base || !distance ||
        matchKeyword(m_prompt->keywords, text) != nullptr)
        return text;
    const AcGePoint3d &base = *m_prompt->base;
    double dx = m_pointer.x - base.x, dy = m_pointer.y - base.y;
    const double length = std::hypot(dx, dy);
    if (length == 0.0)
        dx = 1.0;
    const double factor = *distance / (length == 0.0 ? 1.0 : length);
    return fmt::format(L"{},{},{}", base.x + dx * factor, base.y + dy * factor, base.z);
}

void MainWindow::runCommand(const QString &line)
{
    std::wstring reason, why;
    m_lastSaid.clear();
    const auto words = splitWords(line.toStdWString(), why);
    if (words && !words->empty()) {
        const auto *entry = m_session.commands().find(words->front().text);
        if (entry && m_prompt == nullptr)
            m_lastCommand = entry->globalName.starts_with(L'_') ? entry->globalName : L"_" + entry->globalName;
    }
    const std::filesystem::path before = m_session.path();
    // An alert or a status line may have said it already.
    if (!m_session.commands().run(line.toStdWString(), &reason) && !reason.empty() && reason != m_lastSaid)
        m_commandLine->say(QString::fromStdWString(reason));
    if (m_session.path() != before) // saved to another file, say
        noteRecent(m_session.path());
    m_docks->bringUpToDate();
    m_viewport->update(); // the drawing may have changed without a word to the view
    refreshTitle();
    refreshStatusBar();
    if (m_session.commands().isQuitAsked()) {
        m_session.commands().askToQuit(false);
        QMetaObject::invokeMethod(this, &MainWindow::close, Qt::QueuedConnection);
    }
    runWaiting();
}

/// Whoever started the commands that run (the command line, a panel, a menu, a module): they are ended one prompt after
/// another, and what waits comes when the last one has ended.
void MainWindow::runWaiting()
{
    if (!m_waiting)
        return;
    if (m_promptLoop == nullptr && !m_session.commands().isRunning())
        return std::exchange(m_waiting, nullptr)();
    giveAnswer({Answer::Escape{}}); // nothing when none of them asks at the moment
    constexpr std::chrono::milliseconds kUntilNextLook{10};
    m_nextLook->start(kUntilNextLook);
}

void MainWindow::whenIdle(std::function<void()> work)
{
    if (m_session.documentLocks() > 0)
        return showStatus(uiText("ui.run.locked"));
    m_waiting = std::move(work);
    runWaiting();
}

void MainWindow::startCommand(const QString &line)
{
    std::wstring why;
    const auto words = splitWords(line.toStdWString(), why);
    const auto *entry = words && !words->empty() ? m_session.commands().find(words->front().text) : nullptr;
    if (entry && entry->isTransparent())
        return runCommand(line);
    whenIdle([this, line] {
        m_commandLine->say(ui("ui.command.idle") + QLatin1Char(' ') + shownLine(line));
        runCommand(line);
    });
}

void MainWindow::keyPressEvent(QKeyEvent *event)
{
    // What is typed over the drawing belongs to the command line.
    const QString text = event->text();
    const bool isEdit = event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Return ||
                        event->key() == Qt::Key_Enter || event->key() == Qt::Key_Escape;
    if (isEdit || (!text.isEmpty() && text[0].isPrint()))
        m_commandLine->type(*event);
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

} // namespace velmor
