// Where exceptions end: commands, handlers of dialogs and actions of the window all run through here.
#pragma once

#include <functional>
#include <string>

namespace velmor {

class Session;

/// What a finished work becomes.
enum class Kept {
    WithOuterWork, ///< a part of the work around it, which may still take it back; a step when there is none
    ForGood        ///< a step of its own, say a handler in a dialog that a command runs: only undo takes it back
};

/// Runs a piece of work that changes the session's drawing. False when it threw: then its changes are taken back (see
/// ChangeLog), and one alert says what failed and why. Works nest; only the innermost one that threw is taken back.
/// name is how the user knows the work, also when it can be undone: a command, a dialog's title.
bool runGuarded(Session &session, const std::wstring &name, const std::function<void()> &work,
                Kept kept = Kept::WithOuterWork);

/// One line about the exception that is being handled, for the user.
std::wstring reasonOfException();

} // namespace velmor
