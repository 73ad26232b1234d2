#include "host/drawing/dxf/LayersOfFile.h"

namespace velmor::dxf {

namespace {

/// The name that a text of the file says, as the reader takes it.
std::wstring foldedNameIn(const FileText &file, std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    return foldedName(file.codec.decode(text.substr(std::min(first, text.size()))));
}

} // namespace

LayersOfFile::LayersOfFile(const Drawing::Private &drawing) : d(drawing)
{
    for (std::size_t i = 0; i < d.file.layers.size(); ++i) {
        if (d.file.layers[i].name.empty())
            continue;
        m_byName.emplace(foldedName(d.file.layers[i].name), i);
        m_isAnyRenamed = m_isAnyRenamed || isRenamed(i);
    }
}

bool LayersOfFile::isRenamed(std::size_t layer) const
{
    const std::wstring &name = d.file.layers[layer].name;
    return !name.empty() && name != d.layers[layer].name;
}

std::optional<std::size_t> LayersOfFile::find(std::string_view name) const
{
    const std::wstring folded = foldedNameIn(d.file, name);
    if (const auto known = m_byName.find(folded); known != m_byName.end())
        return known->second;
    const auto made = d.layerByName.find(folded);
    return made == d.layerByName.end() ? std::nullopt : std::optional(made->second);
}

std::optional<std::string> LayersOfFile::newNameOf(std::string_view name) const
{
    const auto known = m_byName.find(foldedNameIn(d.file, name));
    if (known == m_byName.end() || !isRenamed(known->second))
        return std::nullopt;
    return d.file.codec.encode(d.layers[known->second].name);
}

} // namespace velmor::dxf
