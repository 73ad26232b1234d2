#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/Session.h"
#include "host/network/Network.h"
#include "host/services/Text.h"

#include <charconv>
#include <filesystem>

namespace velmor {

namespace {

std::filesystem::path pathFromText(const std::wstring &text)
{
    return {utf8(text)};
}

/// Asks a fixed list of questions and then does its work with the answers, all of them texts.
class QuestionCommand final : public Command {
public:
    using Answers = std::vector<std::wstring>;
    using Work = std::function<Next(Session &, const Answers &)>;
    /// The first question stands only while guard (may be empty) says so.
    QuestionCommand(std::vector<Prompt> prompts, Work work) : m_prompts(std::move(prompts)), m_work(std::move(work)) {}

    Next start(Session &session) override { return m_prompts.empty() ? m_work(session, {}) : Next::Ask; }
    Prompt prompt() const override { return m_prompts[m_answers.size()]; }
    Next take(Session &session, const Answer &answer) override
    {
        const Prompt &asked = m_prompts[m_answers.size()];
        std::wstring text = answer.text() ? *answer.text() : std::wstring();
        if (asked.kind == PromptKind::Keyword && !text.empty()) {
            const std::wstring *keyword = matchKeyword(asked.keywords, text);
            if (!keyword)
                return Next::Refused;
            text = *keyword;
        }
        if (text.empty() && !(answer.isEnter() && (asked.optional || asked.kind == PromptKind::Keyword)))
            return Next::Refused;
        m_answers.push_back(std::move(text));
        return m_answers.size() == m_prompts.size() ? m_work(session, m_answers) : Next::Ask;
    }

private:
    std::vector<Prompt> m_prompts;
    Work m_work;
    Answers m_answers;
};

Prompt textPrompt(std::wstring text)
{
    return {.kind = PromptKind::Text, .text = std::move(text)};
}

Prompt optionalWord(std::wstring keyword)
{
    return {.kind = PromptKind::Keyword, .text = keyword, .keywords = {keyword}, .optional = true};
}

/// Puts the question about unsaved changes behind the command's own ones.
CommandFactory replacingDrawing(std::vector<Prompt> prompts, QuestionCommand::Work work)
{
    return [prompts = std::move(prompts), work = std::move(work)]() -> std::unique_ptr<Command> {
        const Drawing *drawing = Session::current().drawing();
        if (!drawing || !drawing->isModified())
            return std::make_unique<QuestionCommand>(prompts, work);
        auto asked = prompts;
        asked.push_back({.kind = PromptKind::Keyword,
                         .text = L"The drawing has changes that were not saved. Drop them? [Yes/No] <No>:",
                         .keywords = {L"Yes", L"No"}});
        return std::make_unique<QuestionCommand>(asked, [work](Session &session, QuestionCommand::Answers answers) {
            if (answers.back() != L"Yes") {
                session.alert(L"Nothing was done: the drawing has changes that were not saved");
                return Command::Next::Revert;
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
    LoadResult loaded = Drawing::load(path);
    if (!loaded.drawing) {
        session.alert(wide(loaded.message));
        return Command::Next::BadInput;
    }
    std::wstring note = L"Opened " + file;
    if (loaded.report.damaged()) {
        const auto worst = std::ranges::find(loaded.report.findings, Severity::Damage, &Finding::severity);
        note += L", which is damaged: line " + std::to_wstring(worst->line) + L": " + wide(worst->text);
    }
    session.setDrawing(std::move(loaded.drawing), path);
    session.status(note);
    return Command::Next::Commit;
}

Command::Next saveDrawing(Session &session, const std::wstring &file, bool overwriteDamaged)
{
    if (!session.drawing()) {
        session.alert(L"There is no drawing to save");
        return Command::Next::Revert;
    }
    const auto path = file.empty() ? session.path() : pathFromText(file);
    if (path.empty()) {
        session.alert(L"The drawing has no file yet: name one");
        return Command::Next::Revert;
    }
    const SaveResult saved = session.drawing()->save(path, {.overwriteDamaged = overwriteDamaged});
    if (!saved) {
        session.alert(wide(saved.message));
        return Command::Next::Revert;
    }
    session.setPath(path);
    session.status(L"Saved " + path.wstring());
    return Command::Next::Commit;
}

Command::Next importNetwork(Session &session, const std::wstring &file, bool withPolygons)
{
    if (!session.drawing())
        session.setDrawing(Drawing::createNew());
    const auto result = importInp(*session.drawing(), pathFromText(file), {.withPolygons = withPolygons});
    if (!result) {
        session.alert(wide(result.message));
        return Command::Next::BadInput;
    }
    session.status(L"Imported " + std::to_wstring(result.sections) + L" sections, " + std::to_wstring(result.nodes) +
                   L" nodes, " + std::to_wstring(result.polygons) + L" polygons" +
                   (result.convertedFromFeet ? L"; feet were converted to metres" : L""));
    return Command::Next::Commit;
}

Command::Next makeLayerCurrent(Session &session, const std::wstring &name)
{
    if (!session.drawing()) {
        session.alert(L"There is no drawing");
        return Command::Next::Revert;
    }
    session.drawing()->setCurrentLayer(session.drawing()->ensureLayer(name));
    return Command::Next::Commit;
}

VariableValue valueFromText(const std::wstring &text)
{
    const std::string narrow = utf8(text);
    const char *end = narrow.data() + narrow.size();
    int whole = 0;
    if (const auto [last, error] = std::from_chars(narrow.data(), end, whole); error == std::errc() && last == end)
        return whole;
    double number = 0.0;
    if (const auto [last, error] = std::from_chars(narrow.data(), end, number); error == std::errc() && last == end)
        return number;
    return text;
}

Command::Next setHostVariable(Session &session, const std::wstring &name, const std::wstring &value)
{
    if (!session.variable(name)) {
        session.alert(L"There is no host variable " + name);
        return Command::Next::BadInput;
    }
    if (!session.setVariable(name, valueFromText(value))) {
        session.alert(L"The host variable " + name + L" does not take " + value);
        return Command::Next::BadInput;
    }
    return Command::Next::Commit;
}

} // namespace

void addFileCommands(CommandStack &stack)
{
    using Answers = QuestionCommand::Answers;
    const auto add = [&stack](const wchar_t *name, std::vector<Prompt> prompts, QuestionCommand::Work work) {
        stack.addHostCommand(name, 0, [prompts = std::move(prompts), work = std::move(work)] {
            return std::make_unique<QuestionCommand>(prompts, work);
        });
    };
    stack.addHostCommand(L"NEW", 0,
                         replacingDrawing({}, [](Session &session, const Answers &) { return newDrawing(session); }));
    stack.addHostCommand(L"OPEN", 0,
                         replacingDrawing({textPrompt(L"Drawing file:")}, [](Session &session, const Answers &answers) {
                             return openDrawing(session, answers[0]);
                         }));
    auto file = textPrompt(L"File, or Enter for the drawing's own:");
    file.optional = true;
    add(L"SAVE", {file, optionalWord(L"OVERWRITE-DAMAGED")},
        [](Session &session, const Answers &answers) { return saveDrawing(session, answers[0], !answers[1].empty()); });
    add(L"IMPORT", {textPrompt(L"Network file:"), optionalWord(L"WITH-POLYGONS")},
        [](Session &session, const Answers &answers) {
            return importNetwork(session, answers[0], !answers[1].empty());
        });
    add(L"LAYER", {textPrompt(L"Layer:")},
        [](Session &session, const Answers &answers) { return makeLayerCurrent(session, answers[0]); });
    add(L"SETVAR", {textPrompt(L"Variable:"), textPrompt(L"Value:")},
        [](Session &session, const Answers &answers) { return setHostVariable(session, answers[0], answers[1]); });
}

void addHostCommands(CommandStack &stack)
{
    addFileCommands(stack);
    addBoundaryCommands(stack);
}

} // namespace velmor
