// Small drawings as text, for tests: one group a line, its code, a blank, its value.
#pragma once

#include "host/drawing/Drawing.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace velmor::test {

using TagText = std::pair<int, std::string>;
using TagTexts = std::vector<TagText>;

/// "0 SECTION\n2 ENTITIES\n..." as DXF. Blanks before a code are passed over; a line without a blank has an empty
/// value.
inline std::string dxf(std::string_view groups, std::string_view lineEnd = "\n")
{
    std::string text;
    while (!groups.empty()) {
        std::string_view line = groups.substr(0, groups.find('\n'));
        groups.remove_prefix(std::min(groups.size(), line.size() + 1));
        while (line.starts_with(' '))
            line.remove_prefix(1);
        if (line.empty())
            continue;
        const std::size_t blank = line.find(' ');
        text += line.substr(0, blank);
        text += lineEnd;
        text += blank == std::string_view::npos ? std::string_view() : line.substr(blank + 1);
        text += lineEnd;
    }
    return text;
}

/// Entities alone, as simple programs write them for R12.
inline std::string entitiesOnly(std::string_view groups)
{
    return dxf("0 SECTION\n2 ENTITIES\n") + dxf(groups) + dxf("0 ENDSEC\n0 EOF\n");
}

/// All groups of a text: trimmed codes, values as they stand without line ends.
inline TagTexts tagsOf(const std::string &text)
{
    TagTexts tags;
    std::istringstream in(text);
    std::string code, value;
    const auto line = [&](std::string &to) {
        if (!std::getline(in, to))
            return false;
        if (to.ends_with('\r'))
            to.pop_back();
        return true;
    };
    while (line(code) && line(value))
        tags.emplace_back(std::atoi(code.c_str()), value);
    return tags;
}

inline Drawing &read(LoadResult &result, const std::string &text)
{
    result = Drawing::read(text);
    if (!result.drawing)
        throw std::runtime_error("not read: " + result.message);
    return *result.drawing;
}

inline std::unique_ptr<Drawing> reread(Drawing &drawing)
{
    return Drawing::read(drawing.write()).drawing;
}

inline std::filesystem::path dataFolder()
{
    if (const char *folder = std::getenv("VELMOR_DATA_DIR"))
        return folder;
    const char *source = std::getenv("VELMOR_SOURCE_DIR");
    return std::filesystem::path(source ? source : ".") / ".." / "shared" / "data";
}

inline std::string bytesOf(const std::filesystem::path &path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

template <class T>
T &entityAt(const Drawing &drawing, std::size_t index)
{
    return dynamic_cast<T &>(*drawing.modelSpace().entities().at(index));
}

} // namespace velmor::test
