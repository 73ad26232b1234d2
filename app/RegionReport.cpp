#include "app/RegionReport.h"

#include "host/services/Messages.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <utility>

namespace velmor {

namespace {

using boundary::Region;
using boundary::Ring;
using boundary::Status;

std::string ringJson(const Ring &ring)
{
    std::string text = "[";
    for (const auto &vertex : ring)
        text += fmt::format("{}[{}, {}, {}]", text.size() > 1 ? ", " : "", vertex.x, vertex.y, vertex.bulge);
    return text + "]";
}

const char *reasonOf(Status status)
{
    switch (status) {
    case Status::Found:
        break;
    case Status::OnEdge:
        return "on_edge";
    case Status::NotEnclosed:
        return "not_enclosed";
    case Status::Open:
        return "open";
    }
    return "";
}

std::string foundJson(const Region &region)
{
    std::string text = fmt::format(", \"area\": {}, \"boundary\": {}, \"islands\": [", signedArea(region.outer),
                                   ringJson(region.outer));
    bool first = true;
    for (const Ring &island : region.islands)
        text += fmt::format("{}{{\"area\": {}, \"boundary\": {}}}", std::exchange(first, false) ? "" : ", ",
                            signedArea(island), ringJson(island));
    return text + "]";
}

std::string missedJson(const Region &region)
{
    std::string text = fmt::format(", \"reason\": \"{}\", \"gaps\": [", reasonOf(region.status));
    bool first = true;
    for (const auto &gap : region.gaps)
        text +=
            fmt::format("{}{{\"from\": [{}, {}], \"to\": [{}, {}], \"width\": {}}}",
                        std::exchange(first, false) ? "" : ", ", gap.from.x, gap.from.y, gap.to.x, gap.to.y, gap.width);
    return text + "]";
}

} // namespace

std::string regionsJson(std::span<const RegionAnswer> answers)
{
    std::string text = "[";
    for (const RegionAnswer &answer : answers)
        text +=
            fmt::format("{}\n  {{\"point\": [{}, {}], \"found\": {}{}, \"milliseconds\": {:.6f}}}",
                        text.size() > 1 ? "," : "", answer.point.x, answer.point.y, answer.region ? "true" : "false",
                        answer.region ? foundJson(answer.region) : missedJson(answer.region), answer.milliseconds);
    return text + "\n]\n";
}

std::string regionsText(std::span<const RegionAnswer> answers)
{
    std::string text = fmt::format("{:>16} {:>16} {:>18} {:>9} {:>8}\n", "x", "y", uiLine("cli.region.area"),
                                   uiLine("cli.region.vertices"), uiLine("cli.region.islands"));
    for (const RegionAnswer &answer : answers) {
        text += fmt::format("{:>16.4f} {:>16.4f} ", answer.point.x, answer.point.y);
        if (answer.region) {
            text += fmt::format("{:>18.4f} {:>9} {:>8}\n", signedArea(answer.region.outer), answer.region.outer.size(),
                                answer.region.islands.size());
            continue;
        }
        switch (answer.region.status) {
        case Status::Found:
            break;
        case Status::OnEdge:
            text += uiLine("ui.boundary.onEdge");
            break;
        case Status::NotEnclosed:
            text += uiLine("ui.boundary.notEnclosed");
            break;
        case Status::Open:
            text += uiLine("ui.boundary.open");
            break;
        }
        if (!answer.region.gaps.empty()) {
            const auto &gap = answer.region.gaps.front();
            text += ' ' + uiLine("cli.region.gap", {fmt::format("{:.6g}", gap.width),
                                                    fmt::format("{:.10g},{:.10g}", gap.from.x, gap.from.y)});
        }
        text += '\n';
    }
    return text;
}

bool readPoints(std::string_view text, std::vector<boundary::Point> &points, std::size_t &wrongLine)
{
    wrongLine = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        ++wrongLine;
        line = line.substr(0, std::min(line.find('#'), line.size()));
        double values[2];
        int count = 0;
        const char *at = line.data(), *last = at + line.size();
        const auto skip = [&](std::string_view what) {
            while (at != last && what.find(*at) != std::string_view::npos)
                ++at;
        };
        for (skip(" \t\r"); at != last; skip(count == 1 ? " \t\r,;" : " \t\r")) {
            if (count == 2)
                return false;
            const auto [next, error] = std::from_chars(at, last, values[count]);
            if (error != std::errc() || !std::isfinite(values[count]))
                return false;
            ++count;
            at = next;
        }
        if (count == 1)
            return false;
        if (count == 2)
            points.push_back({values[0], values[1]});
    }
    return true;
}

} // namespace velmor
