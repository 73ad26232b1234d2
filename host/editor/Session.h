// One running host: the open drawing, the commands, where prompts go and what a person is shown.
//
// There is one session in a program (or in a test); the contracts' free functions work on Session::current().
#pragma once

#include "host/drawing/Drawing.h"
#include "host/editor/Prompts.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

class CAdUiBaseDialog;

namespace velmor {

class CommandStack;
class ModuleLoader;
class SelectionSets;

/// What a window does for the session; without one the session is headless.
class SessionView {
public:
    virtual ~SessionView() = default;
    /// The session has another drawing (null: none). The former one is freed when this returns, so nothing of it may
    /// be kept, nor may anything be shown before the new one is taken.
    virtual void showDrawing(Drawing *drawing) = 0;
    virtual void redraw() = 0;
    virtual void zoomTo(const Extents &extents) = 0;
    virtual void showAlert(const std::wstring &text) = 0;
    virtual void showStatus(const std::wstring &text) = 0;
};

/// Drives a modal dialog instead of a person: called once after the dialog is shown, it works the controls. When it
/// returns and the dialog is still open, the dialog is cancelled.
using DialogDriver = std::function<void(CAdUiBaseDialog &)>;

enum class MessageKind { Alert, Status };
using MessageSink = std::function<void(MessageKind, const std::wstring &)>;

using VariableValue = std::variant<int, double, std::wstring>;

class Session {
public:
    Session();
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;
    /// The one session; an assertion fails when there is none.
    static Session &current();
    static Session *currentOrNull();

    // Document
    Drawing *drawing() const;
    const std::filesystem::path &path() const;
    void setPath(std::filesystem::path path);
    /// Takes a drawing as the working one; the old one is closed, and selection sets over it are gone.
    void setDrawing(std::unique_ptr<Drawing> drawing, std::filesystem::path path = {});
    /// Grows with every setDrawing.
    std::size_t drawingNumber() const;

    CommandStack &commands();
    ModuleLoader &modules();
    SelectionSets &selectionSets();

    // Input
    AnswerQueue &answers();                     ///< asked first
    void setPromptSource(PromptSource *source); ///< asked when the queue is empty; null: every prompt is cancelled
    PromptSource *promptSource() const;
    Answer ask(const Prompt &prompt);

    /// Sections that the selection button gives next; without it the button asks by prompt.
    void setNextSelection(std::vector<AcDbObjectId> sectionIds);
    std::optional<std::vector<AcDbObjectId>> takeNextSelection();

    void setDialogDriver(DialogDriver driver);
    const DialogDriver &dialogDriver() const;

    // Output
    void setView(SessionView *view);
    SessionView *view() const;
    /// Shows an alert: in the view, or through the sink of a headless program.
    void alert(const std::wstring &text);
    /// The same for a piece of work that failed by an exception; they are counted.
    void alertFailure(const std::wstring &text);
    std::size_t failures() const;
    /// One line about what a command found or did. While code (not a person) runs a command it is only kept.
    void status(const std::wstring &text);
    const std::wstring &lastStatus() const;
    /// Alerts shown so far, oldest first; a test reads and clears them.
    std::vector<std::wstring> &alerts();
    /// Where a headless session's messages go; at first alerts go to the error output and the rest nowhere.
    void setMessageSink(MessageSink sink);

    // Host variables
    std::optional<VariableValue> variable(const std::wstring &name) const;
    /// False for an unknown name, a value of the wrong kind or out of range, and for a variable that is only read.
    bool setVariable(const std::wstring &name, const VariableValue &value);

    // Locks. A dialog holds the document while it is open; what it calls itself goes on, while a command that a
    // person starts beside it is refused.
    int documentLocks() const;
    void lockDocument();
    void unlockDocument();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace velmor
