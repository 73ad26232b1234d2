#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/LayerNames.h"
#include "host/editor/Session.h"
#include "host/services/Messages.h"

namespace velmor {

namespace {

/// Where those that define areas keep their layers in the drawing.
constexpr char kSettingsDictionary[] = "ZEMX_LSD2";
constexpr char kLayersKey[] = "ZEMX_CATCH_DEFINE_LAYERS";

/// Takes names till Enter.
class BoundaryLayersCommand final : public Command {
public:
    Next start(Session &session) override { return askWithDrawing(session); }

    Prompt prompt() const override
    {
        return {.kind = PromptKind::Text, .text = uiText("ui.prompt.layers"), .optional = !m_layers.empty()};
    }

    Next take(Session &session, const Answer &answer) override
    {
        if (answer.isEnter()) {
            if (m_layers.empty())
                return Next::Refused;
            session.drawing()->setDictionaryEntry(kSettingsDictionary, kLayersKey, m_layers);
            return Next::Commit;
        }
        if (!answer.text())
            return Next::Refused;
        std::vector<std::wstring> names;
        if (!readLayerNames(session, *answer.text(), names))
            return Next::BadInput;
        for (const std::wstring &name : names)
            m_layers.push_back({1, name});
        return Next::Ask;
    }

private:
    DataItems m_layers;
};

} // namespace

void addLayerCommands(CommandStack &stack)
{
    stack.addHostCommand(L"BOUNDARY-LAYERS", 0, [] { return std::make_unique<BoundaryLayersCommand>(); });
}

} // namespace velmor
