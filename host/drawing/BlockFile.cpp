#include "host/drawing/BlockFile.h"

#include "host/drawing/DwgConverter.h"
#include "host/drawing/Findings.h"
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
    bool isClosed = false;
    for (const fs::path &candidate : candidates) {
        auto file = readWholeFile(candidate);
        if (file && !isClosedFormat(file.bytes))
            return BlockFile{candidate, std::move(file.bytes)};
        isClosed = isClosed || (file && candidate == path);
    }
    if (isClosed) {
        std::string message;
        if (auto bytes = convertedDwg(path, message))
            return BlockFile{path, *std::move(bytes)};
        notice(message);
    }
    return std::nullopt;
}

} // namespace velmor
