#include "host/drawing/Findings.h"

#include "host/drawing/Texts.h"

#include <algorithm>

namespace velmor {

std::string findingLine(const std::string &file, const Finding &finding)
{
    const std::string number = std::to_string(finding.line);
    if (file.empty())
        return finding.line != 0 ? drawingText("file.lineText", {number, finding.text}) : finding.text;
    return file + (finding.line != 0 ? ":" + number : std::string()) + ": " + finding.text;
}

std::vector<std::string> findingLines(const std::string &file, const std::vector<Finding> &findings)
{
    constexpr std::size_t kMostLines = 20;
    const std::size_t shown = std::min(kMostLines, findings.size());
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < shown; ++i)
        lines.push_back(findingLine(file, findings[i]));
    if (const std::size_t others = findings.size() - shown; others > 0)
        lines.push_back(
            findingLine(file, {Severity::Note, 0, drawingText("file.moreNotes", {std::to_string(others)})}));
    return lines;
}

namespace {
std::function<void(const std::string &)> &noticeSink()
{
    static std::function<void(const std::string &)> sink;
    return sink;
}
} // namespace

void setNoticeSink(std::function<void(const std::string &)> sink)
{
    noticeSink() = std::move(sink);
}

void notice(const std::string &line)
{
    if (noticeSink())
        noticeSink()(line);
}

} // namespace velmor
