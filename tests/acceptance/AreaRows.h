// The list of areas that the program gives out, read back: one map of columns for each area.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace velmor::test {

inline std::vector<std::string> split(const std::string &text, char separator)
{
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part);
    return parts;
}

inline double number(const std::string &text)
{
    double value = -1.0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    EXPECT_TRUE(error == std::errc() && rest == text.data() + text.size()) << text;
    return value;
}

using AreaRow = std::map<std::string, std::string>;

/// Rows of the comma-separated list, each by the names of its columns.
inline std::vector<AreaRow> areaRows(const std::string &csv)
{
    std::vector<AreaRow> rows;
    const std::vector<std::string> lines = split(csv, '\n');
    if (lines.empty())
        return rows;
    const std::vector<std::string> head = split(lines.front(), ',');
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const std::vector<std::string> fields = split(lines[i], ',');
        EXPECT_EQ(fields.size(), head.size()) << lines[i];
        AreaRow &row = rows.emplace_back();
        for (std::size_t column = 0; column < std::min(fields.size(), head.size()); ++column)
            row[head[column]] = fields[column];
    }
    return rows;
}

/// Shares by section, as the column "sections" tells them.
inline std::map<std::string, double> sharesOf(const AreaRow &row)
{
    std::map<std::string, double> shares;
    for (const std::string &pair : split(row.at("sections"), ' ')) {
        const std::size_t colon = pair.rfind(':');
        shares[pair.substr(0, colon)] = number(pair.substr(colon + 1));
    }
    return shares;
}

} // namespace velmor::test
