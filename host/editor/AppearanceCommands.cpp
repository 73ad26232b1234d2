// LANGUAGE and THEME: how the program's windows read and look.
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/Session.h"
#include "host/editor/Theme.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"
#include "host/services/Services.h"
#include "host/services/Text.h"

#include <QApplication>

namespace velmor {

namespace {

/// What was chosen holds at once, also when it can't be kept for the next start.
Command::Next kept(Session &session, const SaveResult &saved)
{
    if (!saved)
        session.status(wide(saved.message));
    return Command::Next::Commit;
}

Command::Next askLanguage(Asker &asker)
{
    const bool isCroatian = Services::instance().messages().language() == "hr";
    const Reply reply = asker.word({.message = "ui.prompt.language",
                                    .words = {L"EN", L"HR"},
                                    .standard = uiText(isCroatian ? "ui.word.HR" : "ui.word.EN")});
    if (reply.isEnter()) // it stays
        return Command::Next::Commit;
    const SaveResult saved = Services::instance().setLanguage(reply.is(L"HR") ? "hr" : "en");
    asker.session().status(uiText("ui.language.chosen"));
    return kept(asker.session(), saved);
}

Command::Next askTheme(Asker &asker)
{
    const std::vector<std::wstring> words{L"System", L"Light", L"Dark"}; // in the order of Theme
    const std::wstring &now = words[static_cast<std::size_t>(themeOfSettings())];
    const Reply reply =
        asker.word({.message = "ui.prompt.theme", .words = words, .standard = uiText("ui.word." + utf8(now))});
    if (reply.isEnter())
        return Command::Next::Commit;
    const Theme theme = themeNamed(reply.word);
    if (qobject_cast<QApplication *>(QCoreApplication::instance()))
        applyTheme(theme);
    const SaveResult saved = Services::instance().set("THEME", std::wstring(nameOf(theme)));
    asker.session().status(uiText(std::string("ui.theme.chosen.") + utf8(nameOf(theme))));
    return kept(asker.session(), saved);
}

} // namespace

void addAppearanceCommands(CommandStack &stack)
{
    stack.addWork(L"LANGUAGE", CommandEntry::kTransparent, askLanguage, false);
    stack.addWork(L"THEME", CommandEntry::kTransparent, askTheme, false);
}

} // namespace velmor
