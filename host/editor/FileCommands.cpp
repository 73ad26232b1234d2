#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/Loading.h"
#include "host/editor/QuestionCommand.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/editor/UndoHistory.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <algorithm>
#include <filesystem>

namespace velmor {

namespace {

std::filesystem::path pathFromText(const std::wstring &text)
{
    return {utf8(text)};
}

/// Puts the question about unsaved changes behind the command's own ones.
CommandFactory replacingDrawing(std::vector<Question> questions, QuestionCommand::Work work)
{
    return [questions = std::move(questions), work = std::move(work)]() -> std::unique_ptr<Command> {
        const Drawing *drawing = Session::current().drawing();
        if (!drawing || !drawing->isModified())
            return std::make_unique<QuestionCommand>(questions, work);
        auto asked = questions;
        asked.push_back({.message = "ui.prompt.unsaved", .keywords = {L"Yes", L"No"}});
        return std::make_unique<QuestionCommand>(asked, [work](Session &session, QuestionCommand::Answers answers) {
            if (answers.back() != L"Yes") {
                session.alert(uiText("ui.drawing.kept"));
                return Command::Next::BadInput;
            }
            answers.pop_back();
            return work(session, answers);
        });
    };
}

Command::Next newDrawing(Session &session)
{
    session.setDrawing(Drawing::createNew());
    return Command::Next::Commit;
}

Command::Next openDrawing(Session &session, const std::wstring &file)
{
    const auto path = pathFromText(file);
    LoadResult loaded = loadShown(session, path);
    if (loaded.status == FileStatus::Cancelled) {
        session.status(wide(loaded.message));
        return Command::Next::Revert;
    }
    if (!loaded.drawing) {
        session.alert(wide(loaded.message));
        return Command::Next::BadInput;
    }
    std::wstring note = uiMessage("ui.drawing.opened", {file});
    if (loaded.report.damaged()) {
        const auto worst = std::ranges::find(loaded.report.findings, Severity::Damage, &Finding::severity);
        const std::wstring place =
            worst->line ? uiMessage("ui.line", {std::to_wstring(worst->line)}) + L": " : std::wstring();
        note = uiMessage("ui.drawing.damaged", {file, place + wide(worst->text)});
    }
    session.setDrawing(std::move(loaded.drawing), path);
    session.status(note);
    return Command::Next::Commit;
}

Command::Next saveDrawing(Session &session, const std::wstring &file, bool overwriteDamaged)
{
    if (const auto next = askWithDrawing(session); next != Command::Next::Ask)
        return next;
    const auto path = file.empty() ? session.path() : pathFromText(file);
    if (path.empty()) {
        session.alert(uiText("ui.drawing.nofile"));
        return Command::Next::BadInput;
    }
    const SaveResult saved = session.drawing()->save(path, {.overwriteDamaged = overwriteDamaged});
    if (!saved) {
        session.alert(wide(saved.message));
        return Command::Next::Revert;
    }
    session.setPath(path);
    session.status(uiMessage("ui.save.done", {wide(path.string())}));
    return Command::Next::Commit;
}

} // namespace

void addFileCommands(CommandStack &stack)
{
    using Answers = QuestionCommand::Answers;
    const auto add = [&stack](const wchar_t *name, std::vector<Question> questions, QuestionCommand::Work work) {
        stack.addHostCommand(name, 0, [questions = std::move(questions), work = std::move(work)] {
            return std::make_unique<QuestionCommand>(questions, work);
        });
    };
    stack.addHostCommand(L"NEW", 0,
                         replacingDrawing({}, [](Session &session, const Answers &) { return newDrawing(session); }));
    stack.addHostCommand(
        L"OPEN", 0,
        replacingDrawing({{.message = "ui.prompt.open", .completion = Completion::Drawings}},
                         [](Session &session, const Answers &answers) { return openDrawing(session, answers[0]); }));
    add(L"SAVE",
        {{.message = "ui.prompt.save", .optional = true, .completion = Completion::Drawings},
         optionalWord(L"OVERWRITE-DAMAGED")},
        [](Session &session, const Answers &answers) { return saveDrawing(session, answers[0], !answers[1].empty()); });
    add(L"SAVEAS",
        {{.message = "ui.prompt.saveas", .completion = Completion::Drawings}, optionalWord(L"OVERWRITE-DAMAGED")},
        [](Session &session, const Answers &answers) { return saveDrawing(session, answers[0], !answers[1].empty()); });
}

void addHostCommands(CommandStack &stack)
{
    addFileCommands(stack);
    addNetworkCommands(stack);
    addLayerCommands(stack);
    addBoundaryCommands(stack);
    addAppearanceCommands(stack);
    addUndoCommands(stack);
    addViewCommands(stack);
    addProgramCommands(stack);
    addDrawCommands(stack);
    addModifyCommands(stack);
    addInquiryCommands(stack);
    addHatchCommands(stack);
    addInsertCommands(stack);
    addVariableCommands(stack);
    addPlotCommands(stack);
}

} // namespace velmor
