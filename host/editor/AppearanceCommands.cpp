// LANGUAGE and THEME: how the program's windows read and look.
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/QuestionCommand.h"
#include "host/editor/Session.h"
#include "host/editor/Theme.h"
#include "host/editor/UiMessage.h"
#include "host/editor/Words.h"
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

Command::Next takeLanguage(Session &session, const QuestionCommand::Answers &answers)
{
    if (answers[0].empty()) // Enter: it stays
        return Command::Next::Commit;
    const std::string language = sameText(answers[0], L"hr") ? "hr" : "en";
    const SaveResult saved = Services::instance().setLanguage(language);
    session.status(uiText("ui.language.chosen"));
    return kept(session, saved);
}

Command::Next takeTheme(Session &session, const QuestionCommand::Answers &answers)
{
    if (answers[0].empty())
        return Command::Next::Commit;
    const Theme theme = themeNamed(answers[0]);
    if (qobject_cast<QApplication *>(QCoreApplication::instance()))
        applyTheme(theme);
    const SaveResult saved = Services::instance().set("THEME", std::wstring(nameOf(theme)));
    session.status(uiText(std::string("ui.theme.chosen.") + utf8(nameOf(theme))));
    return kept(session, saved);
}

} // namespace

void addAppearanceCommands(CommandStack &stack)
{
    stack.addHostCommand(L"LANGUAGE", 0, [] {
        return std::make_unique<QuestionCommand>(
            std::vector<Question>{{.message = "ui.prompt.language", .keywords = {L"EN", L"HR"}}}, takeLanguage);
    });
    stack.addHostCommand(L"THEME", 0, [] {
        return std::make_unique<QuestionCommand>(
            std::vector<Question>{{.message = "ui.prompt.theme", .keywords = {L"System", L"Light", L"Dark"}}},
            takeTheme);
    });
}

} // namespace velmor
