#include "host/editor/LayerNames.h"

#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"

namespace velmor {

bool readLayerNames(Session &session, const std::wstring &text, std::vector<std::wstring> &names)
{
    const Drawing &drawing = *session.drawing();
    const auto add = [&](std::wstring_view name) {
        const auto index = drawing.findLayer(name);
        if (index)
            names.push_back(drawing.layer(*index).name);
        return index.has_value();
    };
    if (add(text))
        return true;
    std::wstring_view rest = text;
    while (!rest.empty()) {
        const std::size_t comma = std::min(rest.find(L','), rest.size());
        const std::wstring_view name = rest.substr(0, comma);
        if (!add(name)) {
            session.alert(uiMessage("ui.layer.unknown", {name}));
            return false;
        }
        rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
    return true;
}

LayerNaming renameLayerEverywhere(Drawing &drawing, std::size_t index, const std::wstring &name)
{
    const std::wstring former = drawing.layer(index).name;
    const LayerNaming result = renameLayer(drawing, index, name);
    if (result != LayerNaming::Fine)
        return result;
    auto bounding = drawing.dictionaryEntry(kSettingsDictionary, kLayersKey);
    bool isListed = false;
    if (bounding)
        for (DataItem &item : *bounding)
            if (auto *listed = std::get_if<std::wstring>(&item.value); listed && sameName(*listed, former)) {
                *listed = name;
                isListed = true;
            }
    if (isListed && former != name)
        drawing.setDictionaryEntry(kSettingsDictionary, kLayersKey, *bounding);
    return result;
}

const char *refusalOf(LayerNaming naming)
{
    switch (naming) {
    case LayerNaming::Fine:
        break;
    case LayerNaming::Zero:
        return "ui.layers.zero";
    case LayerNaming::BadName:
        return "ui.layer.badName";
    case LayerNaming::Taken:
        return "ui.layers.taken";
    }
    return nullptr;
}

} // namespace velmor
