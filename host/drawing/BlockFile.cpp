#include "host/drawing/BlockFile.h"

#include "host/drawing/dxf/AtomicFile.h"

#include <algorithm>
#include <vector>

namespace velmor {

namespace fs = std::filesystem;

std::optional<BlockFile> readBlockFile(const fs::path &path)
{
    std::vector<fs::path> candidates{path};
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (extension == ".dwg")
        for (const char *other : {".dxf", ".DXF"})
            candidates.push_back(fs::path(path).replace_extension(other));
    for (const fs::path &candidate : candidates) {
        auto file = readWholeFile(candidate);
        const bool isClosedFormat = file.bytes.starts_with("AC1") || file.bytes.starts_with("MC0");
        if (file && !isClosedFormat)
            return BlockFile{candidate, std::move(file.bytes)};
    }
    return std::nullopt;
}

} // namespace velmor
