#include "host/drawing/Findings.h"
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/LayerNames.h"
#include "host/editor/Loading.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/network/Network.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <filesystem>

namespace velmor {

namespace {

using Next = Command::Next;
constexpr wchar_t kNames[] = L"NAMES";

void tell(Session &session, const std::string &file, const std::vector<Finding> &findings)
{
    for (const std::string &line : findingLines(file, findings))
        session.status(wide(line));
}

Next importNetwork(Asker &asker)
{
    Session &session = asker.session();
    const std::string name = utf8(asker.text({.message = "ui.prompt.import", .completion = Completion::Networks}).text);
    const Reply polygons = asker.word({.message = "ui.prompt.import.polygons",
                                       .words = {L"Yes", L"No"},
                                       .standard = uiText("ui.word.No"),
                                       .optional = true,
                                       .silent = {L"WITH-POLYGONS"}});
    const bool withPolygons = !polygons.isEnter() && !polygons.is(L"No");
    auto made = session.drawing() ? nullptr : Drawing::createNew();
    Drawing &target = made ? *made : *session.drawing();
    const auto result = importBeside(shownWindowOf(session), target, name, {.withPolygons = withPolygons});
    if (result.status == FileStatus::Cancelled) {
        session.status(wide(result.message));
        throw Cancelled();
    }
    if (!result) {
        session.alert(wide(result.message));
        return Next::BadInput;
    }
    if (made)
        session.setDrawing(std::move(made));
    tell(session, name, result.findings);
    std::wstring note = uiMessage("ui.import.done", {std::to_wstring(result.sections), std::to_wstring(result.nodes),
                                                     std::to_wstring(result.polygons)});
    if (result.convertedFromFeet)
        note += L" " + uiText("ui.import.feet");
    session.status(note);
    return Next::Commit;
}

/// Layers of the linework, then those of the texts that name nodes: in a script behind a keyword, while a person may
/// type them at once.
Next makeSections(Asker &asker)
{
    Session &session = asker.session();
    LayerImportOptions options;
    const Reply sections = asker.text({.message = "ui.prompt.sectionLayers", .completion = Completion::Layers});
    if (!readLayerNames(session, sections.text, options.sectionLayers))
        return Next::BadInput;
    Reply names = asker.text(
        {.message = "ui.prompt.nameLayers.or", .completion = Completion::Layers, .optional = true, .silent = {kNames}});
    if (names.kind == Reply::Kind::Text && asker.wasPrepared()) {
        session.alert(uiMessage("ui.keyword.unknown", {names.text, kNames}));
        return Next::BadInput;
    }
    if (names.is(kNames))
        names = asker.text({.message = "ui.prompt.nameLayers", .completion = Completion::Layers});
    if (!names.isEnter() && !readLayerNames(session, names.text, options.nameLayers))
        return Next::BadInput;
    const auto result = importLayers(asker.drawing(), options);
    if (!result) {
        session.alert(wide(result.message));
        return Next::BadInput;
    }
    tell(session, {}, result.findings);
    session.status(uiMessage("ui.network.made", {std::to_wstring(result.sections), std::to_wstring(result.nodes)}));
    return Next::Commit;
}

} // namespace

void addNetworkCommands(CommandStack &stack)
{
    stack.addWork(L"IMPORT", 0, importNetwork, false);
    stack.addWork(L"SECTIONS", 0, makeSections);
}

} // namespace velmor
