#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/editor/UndoHistory.h"
#include "host/services/Messages.h"

#include <algorithm>
#include <limits>

namespace velmor {

namespace {

constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

/// A number of steps, nothing for a text that is none. More digits than anybody has steps mean all.
std::optional<std::size_t> stepsOf(const std::wstring &text)
{
    if (text.empty())
        return 1;
    if (!std::ranges::all_of(text, [](wchar_t c) { return c >= L'0' && c <= L'9'; }))
        return std::nullopt;
    return text.size() > 9 ? kAll : static_cast<std::size_t>(std::stoul(text));
}

Command::Next tellDone(Session &session, const char *some, const char *none, std::size_t steps)
{
    session.status(steps == 0 ? uiText(none) : uiMessage(some, {std::to_wstring(steps)}));
    if (steps != 0 && session.view())
        session.view()->redraw();
    return Command::Next::Commit;
}

Command::Next undoSteps(Session &session, std::size_t steps)
{
    return tellDone(session, "ui.undo.done", "ui.undo.none", session.drawing()->component<UndoHistory>().undo(steps));
}

Command::Next undo(Asker &asker)
{
    Session &session = asker.session();
    const Reply reply = asker.name(
        {.message = "ui.prompt.undo", .words = {L"Mark", L"Back", L"All"}, .standard = L"1", .optional = true});
    auto &history = asker.drawing().component<UndoHistory>();
    if (reply.is(L"All"))
        return undoSteps(session, kAll);
    if (reply.is(L"Mark")) {
        history.setMark();
        session.status(uiText("ui.undo.marked"));
        return Command::Next::Commit;
    }
    if (reply.is(L"Back") && !history.hasMark()) {
        session.alert(uiText("ui.undo.noMark"));
        return Command::Next::BadInput;
    }
    if (reply.is(L"Back"))
        return tellDone(session, "ui.undo.done", "ui.undo.none", history.undoToMark());
    const auto steps = stepsOf(reply.text);
    if (!steps) {
        session.alert(uiMessage("ui.undo.what", {reply.text}));
        return Command::Next::BadInput;
    }
    return undoSteps(session, *steps);
}

Command::Next redo(Asker &asker)
{
    Session &session = asker.session();
    const Reply reply =
        asker.name({.message = "ui.prompt.redo", .words = {L"All"}, .standard = L"1", .optional = true});
    const auto steps = reply.is(L"All") ? std::optional(kAll) : stepsOf(reply.text);
    if (!steps) {
        session.alert(uiMessage("ui.redo.what", {reply.text}));
        return Command::Next::BadInput;
    }
    return tellDone(session, "ui.redo.done", "ui.redo.none", asker.drawing().component<UndoHistory>().redo(*steps));
}

} // namespace

void addUndoCommands(CommandStack &stack)
{
    stack.addWork(L"UNDO", 0, undo);
    stack.addWork(L"U", 0, [](Asker &asker) { return undoSteps(asker.session(), 1); });
    stack.addWork(L"REDO", 0, redo);
}

} // namespace velmor
