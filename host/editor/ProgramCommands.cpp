// Commands about the program itself: HELP, ABOUT, QUIT.
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/CommandTable.h"
#include "host/editor/HostCommands.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"

#include <QCoreApplication>

#include <algorithm>

namespace velmor {

namespace {

using Next = Command::Next;

void tell(Session &session, const CommandRow &row)
{
    std::wstring aliases;
    for (const std::wstring &alias : row.aliasList())
        aliases += (aliases.empty() ? L"" : L", ") + alias;
    std::wstring names = row.localName();
    if (names != row.wideName())
        aliases = row.wideName() + (aliases.empty() ? L"" : L", ") + aliases;
    session.status(uiMessage("ui.help.row", {names, aliases, row.help()}));
}

void tellWhole(Session &session, const CommandRow &row)
{
    tell(session, row);
    std::wstring options = row.options();
    for (std::size_t end = 0; !options.empty(); options.erase(0, end == std::wstring::npos ? end : end + 1)) {
        end = options.find(L'\n');
        session.status(L"    " + options.substr(0, end));
    }
}

Next help(Asker &asker)
{
    Session &session = asker.session();
    const auto &running = session.commands().running();
    // Inside another command it tells about that one.
    const CommandRow *around = running.size() > 1 ? commandRow(running[running.size() - 2]) : nullptr;
    if (around && !asker.hasAnswers()) {
        tellWhole(session, *around);
        return Next::Commit;
    }
    const Reply reply = asker.name({.message = "ui.prompt.help", .completion = Completion::Commands, .optional = true});
    if (!reply.isEnter()) {
        const CommandEntry *entry = session.commands().find(reply.text);
        const CommandRow *row = entry ? commandRow(entry->globalName) : commandRowOfWord(reply.text);
        if (!row) {
            session.alert(uiMessage("ui.help.unknown", {reply.text}));
            return Next::BadInput;
        }
        tellWhole(session, *row);
        return Next::Commit;
    }
    std::vector<const CommandRow *> rows;
    for (const CommandRow &row : commandTable())
        if (!row.ofModule || session.commands().find(L"_" + row.wideName()))
            rows.push_back(&row);
    std::ranges::sort(rows, {}, &CommandRow::localName);
    for (const CommandRow *row : rows)
        tell(session, *row);
    return Next::Commit;
}

Next about(Asker &asker)
{
    asker.session().alert(uiMessage("ui.help.about.text", {QCoreApplication::applicationVersion().toStdWString()}));
    return Next::Commit;
}

/// A window asks about unsaved changes when it closes; without one it is asked here.
Next quit(Asker &asker)
{
    Session &session = asker.session();
    if (!session.view() && session.drawing() && session.drawing()->isModified()) {
        const Reply reply =
            asker.word({.message = "ui.prompt.unsaved", .words = {L"Yes", L"No"}, .standard = uiText("ui.word.No")});
        if (!reply.is(L"Yes")) {
            session.alert(uiText("ui.drawing.kept"));
            return Next::BadInput;
        }
    }
    session.commands().askToQuit();
    return Next::Commit;
}

} // namespace

void addProgramCommands(CommandStack &stack)
{
    stack.addWork(L"HELP", CommandEntry::kTransparent, help, false);
    stack.addWork(L"ABOUT", CommandEntry::kTransparent, about, false);
    stack.addWork(L"QUIT", 0, quit, false);
}

} // namespace velmor
