// Files of points: what is read is finite, and reads back the same however it is separated.
#include "app/RegionReport.h"
#include "fuzz/Require.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    std::vector<velmor::boundary::Point> points, again;
    std::size_t wrongLine = 0;
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    if (!velmor::readPoints(text, points, wrongLine)) {
        require(wrongLine >= 1 && wrongLine <= lines);
        return 0;
    }
    require(points.size() <= lines);
    std::string written;
    constexpr std::string_view kSeparators[] = {",", ";", " ", "\t", " , "};
    for (std::size_t i = 0; i < points.size(); ++i) {
        require(std::isfinite(points[i].x) && std::isfinite(points[i].y));
        char digits[40];
        written.append(digits, std::to_chars(digits, digits + sizeof digits, points[i].x).ptr);
        written += kSeparators[i % std::size(kSeparators)];
        written.append(digits, std::to_chars(digits, digits + sizeof digits, points[i].y).ptr);
        written += i % 2 ? "\r\n" : "  # place\n";
    }
    require(velmor::readPoints(written, again, wrongLine));
    require(again == points);
    return 0;
}
