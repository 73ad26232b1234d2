#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/LayerNames.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"

#include <algorithm>
#include <cmath>

namespace velmor {

namespace {

using Next = Command::Next;

/// Takes names till Enter.
Next chooseBoundaryLayers(Asker &asker)
{
    DataItems layers;
    for (;;) {
        const bool any = !layers.empty();
        const Reply reply = asker.text({.message = any ? "ui.prompt.layers.more" : "ui.prompt.layers",
                                        .completion = Completion::Layers,
                                        .enter = any,
                                        .optional = any});
        if (reply.isEnter())
            break;
        std::vector<std::wstring> names;
        if (!readLayerNames(asker.session(), reply.text, names))
            return Next::BadInput;
        for (const std::wstring &name : names)
            layers.push_back({1, name});
    }
    asker.drawing().setDictionaryEntry(kSettingsDictionary, kLayersKey, layers);
    return Next::Commit;
}

// --- LAYER
// -------------------------------------------------------------------------------------------------------------

const std::vector<std::wstring> kOptions{L"MAke", L"SEt",  L"NEw",    L"ON",     L"OFF",    L"FReeze",
                                         L"THaw", L"LOck", L"UNlock", L"COlour", L"REname", L"LIst"};

/// Names that one answer lists, with commas between; new ones are made up of characters that a layer's name may have.
bool readNewNames(Session &session, const std::wstring &text, std::vector<std::wstring> &names)
{
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t comma = std::min(text.find(L',', from), text.size());
        const std::wstring name = text.substr(from, comma - from);
        if (name.empty() || (!session.drawing()->findLayer(name) && !std::ranges::all_of(name, isNameCharacter))) {
            session.alert(uiMessage("ui.layer.badName", {name}));
            return false;
        }
        names.push_back(name);
        from = comma + 1;
    }
    return true;
}

Next makeCurrent(Session &session, const std::wstring &name, bool make)
{
    Drawing &drawing = *session.drawing();
    if (!drawing.findLayer(name) && !make) {
        session.alert(uiMessage("ui.layer.unknown", {name}));
        return Next::BadInput;
    }
    if (!drawing.findLayer(name) && !std::ranges::all_of(name, isNameCharacter)) {
        session.alert(uiMessage("ui.layer.badName", {name}));
        return Next::BadInput;
    }
    const std::size_t index = drawing.ensureLayer(name);
    if (drawing.layer(index).frozen) {
        session.alert(uiMessage("ui.layer.frozen", {drawing.layer(index).name}));
        return Next::BadInput;
    }
    drawing.setCurrentLayer(index);
    if (!drawing.layer(index).on)
        session.status(uiMessage("ui.layer.isOff", {drawing.layer(index).name}));
    return Next::Commit;
}

Next changeLayers(Asker &asker, const std::wstring &option, int color = 0)
{
    Session &session = asker.session();
    Drawing &drawing = asker.drawing();
    const Reply reply = asker.text({.message = "ui.prompt.layer.names", .completion = Completion::Layers});
    std::vector<std::wstring> names;
    if (!readLayerNames(session, reply.text, names))
        return Next::BadInput;
    for (const std::wstring &name : names) {
        const std::size_t index = *drawing.findLayer(name);
        Layer layer = drawing.layer(index);
        if (option == L"FReeze" && index == drawing.currentLayer()) {
            session.alert(uiMessage("ui.layer.current", {layer.name}));
            return Next::BadInput;
        }
        if (option == L"ON" || option == L"OFF")
            layer.on = option == L"ON";
        else if (option == L"FReeze" || option == L"THaw")
            layer.frozen = option == L"FReeze";
        else if (option == L"LOck" || option == L"UNlock")
            layer.locked = option == L"LOck";
        else
            layer.color = color;
        const Layer &old = drawing.layer(index);
        if (layer.on != old.on || layer.frozen != old.frozen || layer.locked != old.locked || layer.color != old.color)
            drawing.setLayer(index, layer);
        if (!layer.on && index == drawing.currentLayer())
            session.status(uiMessage("ui.layer.isOff", {layer.name}));
    }
    return Next::Commit;
}

int askColor(Asker &asker)
{
    for (;;) {
        const double value = asker.number({.message = "ui.prompt.colour"}).number;
        if (value >= 1.0 && value <= 255.0 && value == std::floor(value))
            return static_cast<int>(value);
        asker.refuse(uiText("ui.layer.colour"));
    }
}

void listLayers(Session &session)
{
    const Drawing &drawing = *session.drawing();
    for (std::size_t i = 0; i < drawing.layers().size(); ++i) {
        const Layer &layer = drawing.layer(i);
        if (layer.erased)
            continue;
        std::wstring states = uiText(layer.on ? "ui.layer.on" : "ui.layer.off");
        if (layer.frozen)
            states += L", " + uiText("ui.layer.isFrozen");
        if (layer.locked)
            states += L", " + uiText("ui.layer.isLocked");
        if (i == drawing.currentLayer())
            states += L", " + uiText("ui.layer.isCurrent");
        session.status(uiMessage("ui.layer.row", {layer.name, std::to_wstring(layer.color), states}));
    }
}

Next renameOne(Asker &asker)
{
    Session &session = asker.session();
    Drawing &drawing = asker.drawing();
    const std::wstring former =
        asker.text({.message = "ui.prompt.layer.former", .completion = Completion::Layers}).text;
    const auto index = drawing.findLayer(former);
    if (!index) {
        session.alert(uiMessage("ui.layer.unknown", {former}));
        return Next::BadInput;
    }
    for (;;) {
        const std::wstring name = asker.text({.message = "ui.prompt.layer.newName"}).text;
        const char *refusal = refusalOf(canRenameLayer(drawing, *index, name));
        if (!refusal) {
            renameLayerEverywhere(drawing, *index, name);
            return Next::Commit;
        }
        asker.refuse(uiMessage(refusal, {name}));
    }
}

/// A name makes that layer current; an option works on the layers that are named behind it.
Next workLayers(Asker &asker)
{
    Session &session = asker.session();
    const Reply reply =
        asker.name({.message = "ui.prompt.layer.name", .words = kOptions, .completion = Completion::Layers});
    if (reply.kind == Reply::Kind::Text)
        return makeCurrent(session, reply.text, true);
    // One word on a line is a layer's name, also when it could begin an option that asks for more.
    if (!reply.is(L"LIst") && asker.wasPrepared() && !asker.hasAnswers() && !reply.text.starts_with(L'_'))
        return makeCurrent(session, reply.text, true);
    if (reply.is(L"LIst")) {
        listLayers(session);
        return Next::Commit;
    }
    if (reply.is(L"MAke") || reply.is(L"SEt")) {
        const Reply name = asker.text({.message = "ui.prompt.layer.one", .completion = Completion::Layers});
        return makeCurrent(session, name.text, reply.is(L"MAke"));
    }
    if (reply.is(L"NEw")) {
        std::vector<std::wstring> names;
        if (!readNewNames(session, asker.text({.message = "ui.prompt.layer.names"}).text, names))
            return Next::BadInput;
        for (const std::wstring &name : names)
            asker.drawing().ensureLayer(name);
        return Next::Commit;
    }
    if (reply.is(L"REname"))
        return renameOne(asker);
    return changeLayers(asker, reply.word, reply.is(L"COlour") ? askColor(asker) : 0);
}

} // namespace

void addLayerCommands(CommandStack &stack)
{
    stack.addWork(L"BOUNDARY-LAYERS", 0, chooseBoundaryLayers);
    stack.addWork(L"LAYER", CommandEntry::kTransparentByMark, workLayers);
}

} // namespace velmor
