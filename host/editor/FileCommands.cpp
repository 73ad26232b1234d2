#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/Loading.h"
#include "host/editor/Person.h"
#include "host/editor/Saving.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/editor/UndoHistory.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <algorithm>
#include <filesystem>

namespace velmor {

namespace {

constexpr const wchar_t *kOverDamaged = L"OVERWRITE-DAMAGED";
constexpr const wchar_t *kOverChanged = L"OVERWRITE-CHANGED";

std::filesystem::path pathFromText(const std::wstring &text)
{
    return {utf8(text)};
}

/// Asks about changes that were not saved. A person gets the question that closing the window asks too; where answers
/// are prepared, Yes drops the changes. Leaves the command when the person wants to stay.
bool mayReplaceDrawing(Asker &asker)
{
    Session &session = asker.session();
    if (!session.drawing() || !session.drawing()->isModified())
        return true;
    Person *person = asker.hasAnswers() ? nullptr : Person::of(session);
    if (person && !person->givesUpDrawing())
        throw Cancelled();
    if (person)
        return true;
    const Reply reply =
        asker.word({.message = "ui.prompt.unsaved", .words = {L"Yes", L"No"}, .standard = uiText("ui.word.No")});
    if (!reply.is(L"Yes"))
        session.alert(uiText("ui.drawing.kept"));
    return reply.is(L"Yes");
}

Command::Next newDrawing(Asker &asker)
{
    if (!mayReplaceDrawing(asker))
        return Command::Next::BadInput;
    asker.session().setDrawing(Drawing::createNew());
    return Command::Next::Commit;
}

Command::Next openDrawing(Asker &asker)
{
    Session &session = asker.session();
    const std::wstring file = asker.text({.message = "ui.prompt.open", .completion = Completion::Drawings}).text;
    if (!mayReplaceDrawing(asker))
        return Command::Next::BadInput;
    const auto path = pathFromText(file);
    LoadResult loaded = loadBeside(shownWindowOf(session), path);
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

/// The file is asked for, unless the drawing's own will do. What may be written over is told behind it in scripts; a
/// person is asked when it comes to that.
Command::Next saveDrawing(Asker &asker, const Ask &which)
{
    Session &session = asker.session();
    const bool isOwn = which.optional && !session.path().empty() && !asker.hasAnswers();
    const Reply file = isOwn ? Reply() : asker.text(which);
    SaveWords words{.overAny = false};
    for (int i = 0; i < 2 && asker.hasAnswers(); ++i) {
        const Reply over =
            asker.word({.message = "ui.prompt.save.over", .words = {kOverDamaged, kOverChanged}, .optional = true});
        words.overDamaged = words.overDamaged || over.is(kOverDamaged);
        words.overOthers = words.overOthers || over.is(kOverChanged);
    }
    const auto path = file.isEnter() ? session.path() : pathFromText(file.text);
    if (path.empty()) {
        session.alert(uiText("ui.drawing.nofile"));
        return Command::Next::BadInput;
    }
    const SaveOutcome saved = saveDrawingAs(session, path, words);
    if (!saved.isSaved) {
        saved.isUnwanted ? session.status(saved.message) : session.alert(saved.message);
        return Command::Next::Revert;
    }
    session.status(uiMessage("ui.save.done", {wide(path.string())}));
    return Command::Next::Commit;
}

} // namespace

void addFileCommands(CommandStack &stack)
{
    stack.addWork(L"NEW", 0, newDrawing, false);
    stack.addWork(L"OPEN", 0, openDrawing, false);
    stack.addWork(L"SAVE", 0, [](Asker &asker) {
        return saveDrawing(asker, {.message = "ui.prompt.save", .completion = Completion::Drawings, .optional = true});
    });
    stack.addWork(L"SAVEAS", 0, [](Asker &asker) {
        return saveDrawing(asker, {.message = "ui.prompt.saveas", .completion = Completion::Drawings});
    });
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
