// The program's window: the drawing, a command line, a menu.
#pragma once

#include "host/editor/CommandTable.h"
#include "host/editor/Person.h"
#include "host/editor/ProgressMeter.h"
#include "host/editor/Prompts.h"
#include "host/editor/Session.h"
#include "host/editor/ViewControl.h"

#include <QMainWindow>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

class QAction;
class QEventLoop;
class QLabel;
class QMenu;
class QTimer;
class QToolBar;

namespace velmor {

class CommandLine;
class Docks;
class Viewport;

/// What a file gave for a window.
struct OpenedFile {
    std::unique_ptr<Drawing> drawing; ///< null: the file can't be opened, and the message says why
    std::filesystem::path path;       ///< the drawing's own file; empty for an imported network
    std::vector<std::wstring> notes;  ///< what was found on the way, line by line
    bool damaged = false;
    bool cancelled = false; ///< by the user, who need not be told
    std::string message;
};
/// Reads a drawing, or imports a network file (its name ends in .inp) into a new one. Over a window, when one is given,
/// its progress is shown and it can be cancelled.
OpenedFile readForWindow(const std::filesystem::path &file, QWidget *beside = nullptr);

/// One session's window. It answers the session's prompts by clicks in the drawing and by typed text.
class MainWindow final : public QMainWindow,
                         public SessionView,
                         public ViewControl,
                         public PromptSource,
                         public Person,
                         public ProgressOwner {
    Q_OBJECT
public:
    explicit MainWindow(Session &session);
    ~MainWindow() override;

    Session &session() { return m_session; }
    Viewport &viewport() { return *m_viewport; }
    CommandLine &commandLine() { return *m_commandLine; }

    /// Starts a command as a menu does: a command that asks something is ended first, unless this one may start inside
    /// of it.
    void startCommand(const QString &line);

    /// Opens a drawing, or imports a network file into a new one. False when it failed; the message was shown.
    bool openFile(const std::filesystem::path &file);
    /// The same for what was read of a file.
    bool showFile(OpenedFile opened);

    Docks &docks() const { return *m_docks; }

    // SessionView
    void showDrawing(Drawing *drawing) override;
    void redraw() override;
    void zoomTo(const Extents &extents) override;
    void showAlert(const std::wstring &text) override;
    void showStatus(const std::wstring &text) override;
    // ViewControl
    const ViewTransform &shownView() const override;
    void showEverything() override;
    void zoomBy(double factor) override;
    void centreOn(const AcGePoint3d &point) override;
    bool showPrevious() override;
    double scaleDenominator() const override;
    void openPlotDialog() override;
    // ProgressOwner
    ProgressMeter &progressMeter() override { return *m_progress; }
    // PromptSource
    std::optional<Answer> ask(const Prompt &prompt) override;
    // Person
    bool agreesTo(const std::wstring &question, const std::wstring &action) override;
    bool givesUpDrawing() override;

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    /// Menus and tool bar from the table of commands, in the language of now.
    void buildMenus();
    QAction *addItem(QMenu &menu, const CommandRow &row, const MenuItem &item);
    void retranslate();
    void refreshStatusBar();
    /// The submenu of files that were open lately, filled each time it opens.
    void addRecentMenu(QMenu &fileMenu);
    void fillRecentMenu();
    void noteRecent(const std::filesystem::path &file);
    /// What undo and redo would take, in their menu items.
    void refreshUndo();
    void showPrompt();
    void trigger(const MenuItem &item, const CommandRow &row);
    /// Does it when no command runs: at once, or after those that run have been ended. Refused while a dialog is open.
    void whenIdle(std::function<void()> work);
    void chooseAndOpen();
    void chooseAndImport();
    void chooseAndExport();
    bool save();
    bool chooseAndSave();
    bool saveTo(const std::filesystem::path &file);
    /// Nothing runs, and unsaved changes were asked about; false to stay.
    bool maySetAside();
    void say(const std::wstring &text);
    void runCommand(const QString &line);
    void runWaiting();
    std::wstring withDirection(const std::wstring &text) const;
    void takeText(const QString &text);
    void giveAnswer(Answer answer);
    void refreshTitle();
    void showFailure(const std::string &message);

    Session &m_session;
    Viewport *m_viewport;
    CommandLine *m_commandLine;
    QLabel *m_coordinates, *m_scale, *m_layer;
    QTimer *m_nextLook; ///< whether the commands that run have ended
    ProgressMeter *m_progress;
    QToolBar *m_toolBar = nullptr;
    QMenu *m_recent = nullptr;
    std::shared_ptr<void> m_undoWatch; ///< of the shown drawing's history
    Docks *m_docks = nullptr;
    Prompt *m_prompt = nullptr; ///< the prompt that waits for an answer
    QEventLoop *m_promptLoop = nullptr;
    std::optional<Answer> m_answer;
    std::wstring m_lastSaid;         ///< on the command line, for the session
    std::wstring m_lastCommand;      ///< what an empty Enter runs again
    std::function<void()> m_waiting; ///< what starts when the commands that run have been ended
    AcGePoint3d m_pointer;           ///< in the drawing
};

/// Runs the window on an opened file (or without a drawing: on an empty one) until it is closed; the program's exit
/// code.
int runWindow(Session &session, OpenedFile opened);

} // namespace velmor
