// Pattern files: whatever the bytes, reading ends, what was read writes and reads back the same, and its lines can be
// evaluated.
#include "host/drawing/HatchPattern.h"
#include "host/drawing/PatternFile.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmor;
    const PatternFile file = readPatterns({reinterpret_cast<const char *>(data), size});
    const std::vector<std::vector<AcDbPolyline::Vertex>> rings{{{0, 0, 0}, {10, 0, 0.5}, {10, 8, 0}, {0, 8, 0}},
                                                               {{3, 3, 0}, {5, 3, 0}, {4, 6, 0}}};
    for (const Pattern &pattern : file.patterns) {
        const PatternFile again = readPatterns(patternText(pattern));
        if (again.patterns.size() != 1 || again.patterns[0].families != pattern.families)
            std::abort();
        for (const PatternLine &line : patternLines(rings, hatchFamilies(pattern, 0.3, 2.0)))
            if (line.x1 != line.x1 || line.y2 != line.y2)
                std::abort();
    }
    return 0;
}
