#include "host/editor/CommandStack.h"
#include "host/editor/QuestionCommand.h"
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

Command::Next undo(Session &session, const std::wstring &what)
{
    if (const auto next = askWithDrawing(session); next != Command::Next::Ask)
        return next;
    auto &history = session.drawing()->component<UndoHistory>();
    const auto steps = stepsOf(what);
    if (steps)
        return tellDone(session, "ui.undo.done", "ui.undo.none", history.undo(*steps));
    static const std::vector<std::wstring> words{L"Mark", L"Back", L"All"};
    const std::wstring *word = matchKeyword(words, what);
    if (!word) {
        session.alert(uiMessage("ui.undo.what", {what}));
        return Command::Next::BadInput;
    }
    if (*word == L"All")
        return tellDone(session, "ui.undo.done", "ui.undo.none", history.undo(kAll));
    if (*word == L"Mark") {
        history.setMark();
        session.status(uiText("ui.undo.marked"));
        return Command::Next::Commit;
    }
    if (!history.hasMark()) {
        session.alert(uiText("ui.undo.noMark"));
        return Command::Next::BadInput;
    }
    return tellDone(session, "ui.undo.done", "ui.undo.none", history.undoToMark());
}

Command::Next redo(Session &session, const std::wstring &what)
{
    if (const auto next = askWithDrawing(session); next != Command::Next::Ask)
        return next;
    auto steps = stepsOf(what);
    if (!steps && matchKeyword({L"All"}, what))
        steps = kAll;
    if (!steps) {
        session.alert(uiMessage("ui.redo.what", {what}));
        return Command::Next::BadInput;
    }
    return tellDone(session, "ui.redo.done", "ui.redo.none", session.drawing()->component<UndoHistory>().redo(*steps));
}

} // namespace

void addUndoCommands(CommandStack &stack)
{
    using Answers = QuestionCommand::Answers;
    const auto add = [&stack](const wchar_t *name, std::vector<Question> questions, QuestionCommand::Work work) {
        stack.addHostCommand(name, 0, [questions = std::move(questions), work = std::move(work)] {
            return std::make_unique<QuestionCommand>(questions, work);
        });
    };
    add(L"UNDO", {{.message = "ui.prompt.undo", .optional = true}},
        [](Session &session, const Answers &answers) { return undo(session, answers[0]); });
    add(L"U", {}, [](Session &session, const Answers &) { return undo(session, {}); });
    add(L"REDO", {{.message = "ui.prompt.redo", .optional = true}},
        [](Session &session, const Answers &answers) { return redo(session, answers[0]); });
}

} // namespace velmor
