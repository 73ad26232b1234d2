#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"

namespace velmor {

namespace {

/// Where those that define areas keep their layers in the drawing.
constexpr char kSettingsDictionary[] = "ZEMX_LSD2";
constexpr char kLayersKey[] = "ZEMX_CATCH_DEFINE_LAYERS";

/// Takes names till Enter.
class BoundaryLayersCommand final : public Command {
public:
    Next start(Session &session) override
    {
        if (session.drawing())
            return Next::Ask;
        session.alert(uiText("ui.drawing.none"));
        return Next::Revert;
    }

    Prompt prompt() const override
    {
        return {.kind = PromptKind::Text, .text = uiText("ui.prompt.layers"), .optional = !m_layers.empty()};
    }

    Next take(Session &session, const Answer &answer) override
    {
        if (answer.isEnter()) {
            if (m_layers.empty())
                return Next::Revert;
            session.drawing()->setDictionaryEntry(kSettingsDictionary, kLayersKey, m_layers);
            return Next::Commit;
        }
        if (!answer.text())
            return Next::Refused;
        if (add(*session.drawing(), *answer.text())) // a name may hold a comma
            return Next::Ask;
        std::wstring_view names = *answer.text();
        while (!names.empty()) {
            const std::size_t comma = std::min(names.find(L','), names.size());
            const std::wstring_view name = names.substr(0, comma);
            if (!add(*session.drawing(), name)) {
                session.alert(uiMessage("ui.layer.unknown", {name}));
                return Next::BadInput;
            }
            names.remove_prefix(std::min(comma + 1, names.size()));
        }
        return Next::Ask;
    }

private:
    bool add(const Drawing &drawing, std::wstring_view name)
    {
        const auto index = drawing.findLayer(name);
        if (index)
            m_layers.push_back({1, drawing.layer(*index).name});
        return index.has_value();
    }

    DataItems m_layers;
};

} // namespace

void addLayerCommands(CommandStack &stack)
{
    stack.addHostCommand(L"BOUNDARY-LAYERS", 0, [] { return std::make_unique<BoundaryLayersCommand>(); });
}

} // namespace velmor
