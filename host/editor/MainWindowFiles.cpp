// The window's files: opening, saving, closing, what is dropped on it, and its life from start to end.
#include "host/drawing/ChangeLog.h"
#include "host/drawing/Findings.h"
#include "host/drawing/StepRecorder.h"
#include "host/editor/Captions.h"
#include "host/editor/CommandLine.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Loading.h"
#include "host/editor/MainWindow.h"
#include "host/editor/RecoveryQuestion.h"
#include "host/editor/SaveFileDialog.h"
#include "host/editor/Saving.h"
#include "host/editor/Theme.h"
#include "host/editor/UiMessage.h"
#include "host/editor/panels/Docks.h"
#include "host/network/Network.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QStatusBar>

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

/// The drawing or network that is dragged, when it is one file of a kind that can be opened.
std::optional<std::filesystem::path> droppedFile(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    if (urls.size() != 1 || !urls.front().isLocalFile())
        return std::nullopt;
    const QString file = urls.front().toLocalFile();
    const bool isOurs = file.endsWith(QStringLiteral(".dxf"), Qt::CaseInsensitive) ||
                        file.endsWith(QStringLiteral(".inp"), Qt::CaseInsensitive);
    return isOurs ? std::optional(toPath(file)) : std::nullopt;
}

} // namespace

OpenedFile readForWindow(const std::filesystem::path &file, QWidget *beside)
{
    OpenedFile opened;
    const auto note = [&](const std::vector<std::string> &lines) {
        for (const std::string &line : lines)
            opened.notes.push_back(wide(line));
    };
    const std::string name = file.filename().string();
    if (file.extension() == ".inp" || file.extension() == ".INP") {
        auto drawing = Drawing::createNew();
        // The import is a step, so that it can be undone, and repeated after a crash.
        drawing->component<StepRecorder>();
        auto &log = drawing->component<ChangeLog>();
        log.begin(uiText("ui.import.step"));
        const NetworkImportResult imported = importBeside(beside, *drawing, file, {.withPolygons = true});
        log.keep();
        if (!imported) {
            opened.cancelled = imported.status == FileStatus::Cancelled;
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
    LoadResult loaded = loadBeside(beside, file);
    opened.cancelled = loaded.status == FileStatus::Cancelled;
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
    return showFile(readForWindow(file, shownWindowOf(m_session)));
}

bool MainWindow::showFile(OpenedFile opened)
{
    if (opened.cancelled) {
        showStatus(wide(opened.message));
        return false;
    }
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
    const QString file = QFileDialog::getOpenFileName(this, ui("ui.file.import.title"), {}, ui("ui.filter.network"));
    if (!file.isEmpty())
        startCommand(QStringLiteral("_IMPORT \"%1\" WITH-POLYGONS").arg(file));
}

void MainWindow::chooseAndExport()
{
    const QString file = askForSaveFile(this, ui("ui.plot.save.title"), ui("ui.filter.pdf"), QStringLiteral("pdf"));
    if (file.isEmpty())
        return;
    startCommand(QStringLiteral("_EXPORTPDF \"%1\" _REPLACE").arg(file));
}

bool MainWindow::save()
{
    return m_session.path().empty() ? chooseAndSave() : saveTo(m_session.path());
}

bool MainWindow::chooseAndSave()
{
    const QString file = askForSaveFile(this, ui("ui.file.saveas.title"), drawingFilter(), QStringLiteral("dxf"));
    return !file.isEmpty() && saveTo(toPath(file));
}

bool MainWindow::saveTo(const std::filesystem::path &file)
{
    if (m_session.drawing() == nullptr)
        return false;
    const SaveOutcome saved = saveDrawingAs(m_session, file);
    if (!saved.isSaved) {
        saved.isUnwanted ? showStatus(saved.message) : showFailure(utf8(saved.message));
        return false;
    }
    noteRecent(file);
    statusBar()->showMessage(ui("ui.save.done").arg(QString::fromStdString(file.string())));
    refreshTitle();
    return true;
}

bool MainWindow::agreesTo(const std::wstring &question, const std::wstring &action)
{
    QMessageBox box(QMessageBox::Question, QStringLiteral("Velmor"), QString::fromStdWString(question),
                    QMessageBox::Cancel, this);
    QPushButton *agree = box.addButton(QString::fromStdWString(action), QMessageBox::AcceptRole);
    box.setDefaultButton(QMessageBox::Cancel);
    box.exec();
    return box.clickedButton() == agree;
}

bool MainWindow::givesUpDrawing()
{
    if (m_session.drawing() == nullptr || !m_session.drawing()->isModified())
        return true;
    const auto answer = QMessageBox::question(this, QStringLiteral("Velmor"), ui("ui.close.unsaved"),
                                              QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    if (answer == QMessageBox::Save)
        return save();
    return answer == QMessageBox::Discard;
}

bool MainWindow::maySetAside()
{
    return m_promptLoop == nullptr && !m_session.commands().isRunning() && givesUpDrawing();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->ignore(); // what runs is ended first, and what fails lets the window stay
    if (m_promptLoop != nullptr || m_session.commands().isRunning())
        return whenIdle([this] { close(); });
    event->setAccepted(maySetAside());
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (droppedFile(*event->mimeData()))
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    const auto file = droppedFile(*event->mimeData());
    if (!file)
        return;
    event->acceptProposedAction();
    // The program that the file comes from waits until this returns, so questions come later.
    QMetaObject::invokeMethod(
        this,
        [this, file = *file] {
            whenIdle([this, file] {
                if (maySetAside())
                    openFile(file);
            });
        },
        Qt::QueuedConnection);
}

void MainWindow::showFailure(const std::string &message)
{
    const QString text = QString::fromStdString(message);
    m_commandLine->say(text);
    QMessageBox::critical(this, QStringLiteral("Velmor"), text);
}

int runWindow(Session &session, OpenedFile opened)
{
    enableRecoveryFor(session);
    if (session.drawing() == nullptr)
        session.setDrawing(Drawing::createNew());
    applyTheme(themeOfSettings());
    MainWindow window(session);
    window.docks().restoreLayout();
    window.show();
    startAutosaving(&window);
    if (opened.drawing)
        window.showFile(std::move(opened));
    askForLeftDrawings(session, &window, [&](const std::filesystem::path &file) { return window.openFile(file); });
    const int code = QApplication::exec();
    window.docks().keepLayout();
    return code;
}

} // namespace velmor
