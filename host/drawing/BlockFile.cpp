#include "host/drawing/BlockFile.h"

#include "host/drawing/DwgConverter.h"
#include "host/drawing/Findings.h"
#include "host/drawing/dxf/AtomicFile.h"

#include <algorithm>
#include <vector>

namespace velmor {

namespace fs = std::filesystem;

namespace {

/// What may be read in a file's place, by what stands beside it.
std::vector<fs::path> standInsOf(const fs::path &path)
{
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    std::vector<fs::path> candidates;
    if (extension == ".dwg")
        for (const char *other : {".dxf", ".DXF"})
            candidates.push_back(fs::path(path).replace_extension(other));
    return candidates;
}

} // namespace

std::optional<fs::path> standInOf(const fs::path &path)
{
    std::error_code error;
    if (fs::is_regular_file(path, error))
        return std::nullopt;
    for (const fs::path &candidate : standInsOf(path))
        if (fs::is_regular_file(candidate, error))
            return candidate;
    return std::nullopt;
}

std::optional<BlockFile> readBlockFile(const fs::path &path)
{
    std::vector<fs::path> candidates = standInsOf(path);
    candidates.insert(candidates.begin(), path);
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
