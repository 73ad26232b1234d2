// One running host: the open drawing, the commands, where prompts go and what a person is shown.
//
// There is one session in a program (or in a test); the contracts' free functions work on Session::current().
#pragma once

#include "host/drawing/Drawing.h"
#include "host/editor/Prompts.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class CAdUiBaseDialog;

namespace ZEMGis::Topology {
class CSection;
}

namespace velmor {

class CommandStack;
class SelectionSets;
class TemporaryGraphics;

/// What a window does for the session; without one the session is headless.
class SessionView {
public:
    virtual ~SessionView() = default;
    virtual void redraw() = 0;
    virtual void zoomTo(const Extents &extents) = 0;
    virtual void showAlert(const std::wstring &text) = 0;
    virtual void showStatus(const std::wstring &text) = 0;
};

/// Drives a modal dialog instead of a person: called once after the dialog is shown, it works the controls.
using DialogDriver = std::function<void(CAdUiBaseDialog &)>;

class Session {
public:
    Session();
    ~Session();
    /// The one session; an assertion fails when there is none.
    static Session &current();
    static Session *currentOrNull();

    // Document
    Drawing *drawing() const;
    const std::filesystem::path &path() const;
    /// Takes a drawing as the working one; the old one is closed.
    void setDrawing(std::unique_ptr<Drawing> drawing, std::filesystem::path path = {});

    CommandStack &commands();
    SelectionSets &selectionSets();
    TemporaryGraphics &temporaryGraphics();

    // Input
    AnswerQueue &answers(); ///< asked first
    void setPromptSource(PromptSource *source); ///< asked when the queue is empty; null: every prompt is cancelled
    Answer ask(const Prompt &prompt);

    /// Sections that the selection button gives next; without it the button asks by prompt.
    void setNextSelection(std::vector<AcDbObjectId> sectionIds);
    std::optional<std::vector<AcDbObjectId>> takeNextSelection();

    void setDialogDriver(DialogDriver driver);
    const DialogDriver &dialogDriver() const;

    // Output
    void setView(SessionView *view);
    SessionView *view() const;
    /// Alerts shown so far, oldest first; a test reads and clears them.
    std::vector<std::wstring> &alerts();

    // Host variables
    std::optional<std::variant<int, double, std::wstring>> variable(const std::wstring &name) const;
    bool setVariable(const std::wstring &name, const std::variant<int, double, std::wstring> &value);

    // Locks
    int documentLocks() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace velmor
