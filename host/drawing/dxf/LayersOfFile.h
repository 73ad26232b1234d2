// Which layer a name in a drawing's file means, now that layers may have been renamed since it was read.
#pragma once

#include "host/drawing/DrawingData.h"

namespace velmor::dxf {

class LayersOfFile {
public:
    /// The drawing must outlive it and rename no layer meanwhile.
    explicit LayersOfFile(const Drawing::Private &drawing);

    /// Whether the file has the layer under another name.
    bool isRenamed(std::size_t layer) const;
    bool isAnyRenamed() const { return m_isAnyRenamed; }
    /// The layer that a text of the file names; nothing for a name that none has.
    std::optional<std::size_t> find(std::string_view name) const;
    /// What a text of the file that names a renamed layer has to become; nothing for any other text.
    std::optional<std::string> newNameOf(std::string_view name) const;

private:
    const Drawing::Private &d;
    std::unordered_map<std::wstring, std::size_t> m_byName; ///< those that the file has, by folded name
    bool m_isAnyRenamed = false;
};

} // namespace velmor::dxf
