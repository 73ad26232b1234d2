#include "host/drawing/LayerRename.h"

#include "host/drawing/ChangeLog.h"
#include "host/drawing/DrawingData.h"

namespace velmor {

namespace {

constexpr std::size_t kLongestName = 255; ///< letters, of any name of a table in the file

} // namespace

void Drawing::Private::exchangeLayerName(std::size_t index, std::wstring &name)
{
    Layer &layer = layers[index];
    const auto known = layerByName.find(foldedName(layer.name));
    if (known != layerByName.end() && known->second == index)
        layerByName.erase(known);
    std::swap(layer.name, name);
    if (!layer.erased)
        layerByName.emplace(foldedName(layer.name), index);
}

bool sameName(std::wstring_view a, std::wstring_view b)
{
    return foldedName(a) == foldedName(b);
}

LayerNaming canRenameLayer(const Drawing &drawing, std::size_t index, std::wstring_view name)
{
    if (drawing.layer(index).name == L"0")
        return LayerNaming::Zero;
    if (name.empty() || name.size() > kLongestName || name.front() == L' ' || name.back() == L' ' ||
        !std::ranges::all_of(name, isNameCharacter))
        return LayerNaming::BadName;
    const auto holder = drawing.findLayer(name);
    return holder && *holder != index ? LayerNaming::Taken : LayerNaming::Fine;
}

LayerNaming renameLayer(Drawing &drawing, std::size_t index, const std::wstring &name)
{
    const LayerNaming can = canRenameLayer(drawing, index, name);
    if (can != LayerNaming::Fine || drawing.layer(index).name == name)
        return can;
    Drawing::Private &d = drawing.priv();
    if (d.log) {
        d.log->noteLayer(index);
        d.log->noteLayerName(index);
    }
    std::wstring other = name;
    d.exchangeLayerName(index, other);
    d.recordChanged(index);
    d.changed();
    return can;
}

} // namespace velmor
