#include "host/drawing/Findings.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/LayerNames.h"
#include "host/editor/QuestionCommand.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/network/Network.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <filesystem>

namespace velmor {

namespace {

void tell(Session &session, const std::string &file, const std::vector<Finding> &findings)
{
    for (const std::string &line : findingLines(file, findings))
        session.status(wide(line));
}

Command::Next importNetwork(Session &session, const std::wstring &file, bool withPolygons)
{
    const std::string name = utf8(file);
    auto made = session.drawing() ? nullptr : Drawing::createNew();
    Drawing &target = made ? *made : *session.drawing();
    const auto result = importInp(target, name, {.withPolygons = withPolygons});
    if (!result) {
        session.alert(wide(result.message));
        return Command::Next::BadInput;
    }
    if (made)
        session.setDrawing(std::move(made));
    tell(session, name, result.findings);
    std::wstring note = uiMessage("ui.import.done", {std::to_wstring(result.sections), std::to_wstring(result.nodes),
                                                     std::to_wstring(result.polygons)});
    if (result.convertedFromFeet)
        note += L" " + uiText("ui.import.feet");
    session.status(note);
    return Command::Next::Commit;
}

/// Layers of the linework, then, behind a keyword, those of the texts that name nodes.
class SectionsCommand final : public Command {
public:
    Next start(Session &session) override { return askWithDrawing(session); }

    Prompt prompt() const override
    {
        switch (m_step) {
        case Step::Sections:
            return {.kind = PromptKind::Text, .text = uiText("ui.prompt.sectionLayers")};
        case Step::Keyword:
            return {.kind = PromptKind::Keyword, .text = kNames, .keywords = {kNames}, .optional = true};
        case Step::Names:
            break;
        }
        return {.kind = PromptKind::Text, .text = uiText("ui.prompt.nameLayers")};
    }

    Next take(Session &session, const Answer &answer) override
    {
        if (m_step == Step::Keyword && answer.isEnter())
            return make(session);
        if (answer.isEnter() || !answer.text())
            return Next::Refused;
        if (m_step == Step::Keyword) {
            if (!matchKeyword({kNames}, *answer.text())) {
                session.alert(uiMessage("ui.keyword.unknown", {*answer.text(), kNames}));
                return Next::BadInput; // asked again it would take the end of the line for a yes
            }
            m_step = Step::Names;
            return Next::Ask;
        }
        const bool sections = m_step == Step::Sections;
        if (!readLayerNames(session, *answer.text(), sections ? m_options.sectionLayers : m_options.nameLayers))
            return Next::BadInput;
        if (!sections)
            return make(session);
        m_step = Step::Keyword;
        return Next::Ask;
    }

private:
    static constexpr wchar_t kNames[] = L"NAMES";
    enum class Step { Sections, Keyword, Names };

    Next make(Session &session) const
    {
        const auto result = importLayers(*session.drawing(), m_options);
        if (!result) {
            session.alert(wide(result.message));
            return Next::BadInput;
        }
        tell(session, {}, result.findings);
        session.status(uiMessage("ui.network.made", {std::to_wstring(result.sections), std::to_wstring(result.nodes)}));
        return Next::Commit;
    }

    Step m_step = Step::Sections;
    LayerImportOptions m_options;
};

} // namespace

void addNetworkCommands(CommandStack &stack)
{
    stack.addHostCommand(L"IMPORT", 0, [] {
        return std::make_unique<QuestionCommand>(
            std::vector<Question>{{.message = "ui.prompt.import", .completion = Completion::Networks},
                                  optionalWord(L"WITH-POLYGONS")},
            [](Session &session, const QuestionCommand::Answers &answers) {
                return importNetwork(session, answers[0], !answers[1].empty());
            });
    });
    stack.addHostCommand(L"SECTIONS", 0, [] { return std::make_unique<SectionsCommand>(); });
}

} // namespace velmor
