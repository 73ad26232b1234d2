// A host command: a small object that is asked for its prompt and given one answer at a time.
//
// Commands know nothing of who answers (a person, a script, an argument list) and change the drawing only in the step
// that answers Commit, so that a run that ends any other way has changed nothing.
#pragma once

#include "host/editor/Prompts.h"

#include <functional>
#include <memory>

namespace velmor {

class Session;

class Command {
public:
    enum class Next {
        Ask,      ///< goes on; prompt() tells with what
        Refused,  ///< the answer was of no use and the same prompt stands
        Commit,   ///< done
        Revert,   ///< ended without doing anything: it failed
        BadInput, ///< ended without doing anything: what it was given (a file, a name) is of no use
    };
    virtual ~Command() = default;
    /// May finish at once.
    virtual Next start(Session &session) = 0;
    virtual Prompt prompt() const = 0;
    /// Never gets Escape: the runner ends the command then.
    virtual Next take(Session &session, const Answer &answer) = 0;
};

/// Ask when the session has a drawing; else an alert that says so, and BadInput.
Command::Next askWithDrawing(Session &session);

using CommandFactory = std::function<std::unique_ptr<Command>()>;

/// Which of the keywords a text means: by a leading part that holds at least the keyword's capitals, upper and lower
/// case alike, with or without the mark "_" of the language-neutral form. Null for none.
const std::wstring *matchKeyword(const std::vector<std::wstring> &keywords, std::wstring_view text);

} // namespace velmor
