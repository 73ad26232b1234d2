#include "host/drawing/dxf/BinaryDxf.h"

#include <bit>
#include <cstdlib>
#include <cstring>
#include <gmock/gmock.h>
#include <sstream>

using namespace velmor;
using testing::HasSubstr;

namespace {

enum class Codes { Short, Long };

std::string sentinel()
{
    return std::string("AutoCAD Binary DXF\r\n\x1a") + '\0';
}

void appendNumber(std::string &bytes, std::uint64_t bits, int size)
{
    for (int i = 0; i < size; ++i)
        bytes.push_back(static_cast<char>((bits >> (8 * i)) & 255));
}

void appendCode(std::string &bytes, int code, Codes codes)
{
    if (codes == Codes::Short && code < 255) {
        bytes.push_back(static_cast<char>(code));
        return;
    }
    if (codes == Codes::Short)
        bytes.push_back(static_cast<char>(255));
    appendNumber(bytes, static_cast<std::uint64_t>(code), 2);
}

bool within(int code, std::initializer_list<std::pair<int, int>> ranges)
{
    for (const auto &[first, last] : ranges)
        if (code >= first && code <= last)
            return true;
    return false;
}

// The value's size follows the public table of group codes.
void appendValue(std::string &bytes, int code, const std::string &value)
{
    const auto whole = [&](int size) { appendNumber(bytes, static_cast<std::uint64_t>(std::stoll(value)), size); };
    if (within(code, {{10, 59}, {110, 149}, {210, 239}, {460, 469}, {1010, 1059}}))
        appendNumber(bytes, std::bit_cast<std::uint64_t>(std::strtod(value.c_str(), nullptr)), 8);
    else if (within(code, {{60, 79}, {170, 179}, {270, 289}, {370, 389}, {400, 409}, {1060, 1070}}))
        whole(2);
    else if (within(code, {{90, 99}, {420, 429}, {440, 459}, {1071, 1071}}))
        whole(4);
    else if (within(code, {{160, 169}}))
        whole(8);
    else if (within(code, {{290, 299}}))
        whole(1);
    else if (within(code, {{310, 319}, {1004, 1004}})) {
        bytes.push_back(static_cast<char>(value.size() / 2));
        for (std::size_t i = 0; i + 1 < value.size(); i += 2)
            bytes.push_back(static_cast<char>(std::stoi(value.substr(i, 2), nullptr, 16)));
    } else {
        bytes += value;
        bytes.push_back('\0');
    }
}

std::string toBinary(const std::string &ascii, Codes codes)
{
    std::string bytes = sentinel();
    std::istringstream lines(ascii);
    std::string code, value;
    while (std::getline(lines, code) && std::getline(lines, value)) {
        appendCode(bytes, std::stoi(code), codes);
        appendValue(bytes, std::stoi(code), value);
    }
    return bytes;
}

const std::string kLine = "  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n  5\n1F\n  8\n0\n 62\n-3\n 10\n0.1\n 20\n"
                          "5071234.123456789\n 11\n1e+22\n 21\n-2.0\n  0\nENDSEC\n  0\nEOF\n";

} // namespace

TEST(BinaryDxf, OnlyTheSentinelMakesAFileBinary)
{
    EXPECT_TRUE(isBinaryDxf(toBinary(kLine, Codes::Long)));
    EXPECT_FALSE(isBinaryDxf(kLine));
    EXPECT_FALSE(isBinaryDxf(""));
    EXPECT_FALSE(isBinaryDxf(sentinel().substr(0, 21)));
}

TEST(BinaryDxf, ShortAndLongCodesGiveTheSameText)
{
    for (const Codes codes : {Codes::Short, Codes::Long}) {
        const auto result = binaryToText(toBinary(kLine, codes));
        EXPECT_EQ(result.text, kLine);
        EXPECT_TRUE(result.findings.empty());
    }
}

TEST(BinaryDxf, AnR12FileWithExtendedDataUsesTheMarkedLongCodes)
{
    const std::string text = "  0\nSECTION\n1001\nAPP\n1000\nname\n1004\n00FF7E\n1010\n1.5\n1070\n-7\n1071\n-70000\n"
                             "1005\n2A\n  0\nEOF\n";
    EXPECT_EQ(binaryToText(toBinary(text, Codes::Short)).text, text);
}

TEST(BinaryDxf, EveryRangeOfCodesHasItsSize)
{
    std::string text = "  0\nSECTION\n";
    const auto add = [&](int code, const std::string &value) {
        const std::string digits = std::to_string(code);
        text += std::string(digits.size() < 3 ? 3 - digits.size() : 0, ' ') + digits + "\n" + value + "\n";
    };
    for (const auto &[first, last] : {std::pair{1, 9},
                                      {100, 109},
                                      {300, 309},
                                      {320, 369},
                                      {390, 399},
                                      {410, 419},
                                      {430, 439},
                                      {470, 481},
                                      {999, 1003},
                                      {1005, 1009}})
        for (int code = first; code <= last; ++code)
            add(code, "text " + std::to_string(code));
    for (const auto &[first, last] : {std::pair{10, 59}, {110, 149}, {210, 239}, {460, 469}, {1010, 1059}})
        for (int code = first; code <= last; ++code)
            add(code, "-0.125");
    for (const auto &[first, last] : {std::pair{60, 79}, {170, 179}, {270, 289}, {370, 389}, {400, 409}, {1060, 1070}})
        for (int code = first; code <= last; ++code)
            add(code, "-32768");
    for (const auto &[first, last] : {std::pair{90, 99}, {420, 429}, {440, 459}, {1071, 1071}})
        for (int code = first; code <= last; ++code)
            add(code, "-2147483648");
    for (int code = 160; code <= 169; ++code)
        add(code, "-9223372036854775808");
    for (int code = 290; code <= 299; ++code)
        add(code, "1");
    for (int code = 310; code <= 319; ++code)
        add(code, "DEADBEEF");
    add(1004, "");
    add(0, "EOF");
    const auto result = binaryToText(toBinary(text, Codes::Long));
    EXPECT_EQ(result.text, text);
    EXPECT_TRUE(result.findings.empty());
}

TEST(BinaryDxf, AChunkOfTheLargestSizeIsKeptWhole)
{
    std::string hex;
    for (int i = 0; i < 255; ++i)
        hex += i % 2 ? "A5" : "0F";
    const std::string text = "  0\nSECTION\n310\n" + hex + "\n  0\nEOF\n";
    EXPECT_EQ(binaryToText(toBinary(text, Codes::Long)).text, text);
}

TEST(BinaryDxf, RealsReadBackToTheSameBits)
{
    for (const double value : {0.1, 1.0 / 3.0, 5071234.123456789, 1e-300, 4.9e-324, -0.0, 1.7976931348623157e308}) {
        std::string bytes = sentinel();
        appendCode(bytes, 0, Codes::Long);
        appendValue(bytes, 0, "SECTION");
        appendCode(bytes, 10, Codes::Long);
        appendNumber(bytes, std::bit_cast<std::uint64_t>(value), 8);
        const std::string text = binaryToText(bytes).text;
        const std::string written = text.substr(text.find(" 10\n") + 4);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(std::strtod(written.c_str(), nullptr)),
                  std::bit_cast<std::uint64_t>(value))
            << written;
    }
}

TEST(BinaryDxf, ANumberThatIsNoneIsReportedAtItsByte)
{
    std::string bytes = toBinary("  0\nSECTION\n", Codes::Long);
    const std::size_t at = bytes.size() + 2;
    appendCode(bytes, 10, Codes::Long);
    appendNumber(bytes, 0x7FF8000000000000, 8);
    appendCode(bytes, 0, Codes::Long);
    appendValue(bytes, 0, "EOF");
    const auto result = binaryToText(bytes);
    EXPECT_EQ(result.text, "  0\nSECTION\n 10\n0.0\n  0\nEOF\n");
    ASSERT_EQ(result.findings.size(), 1u);
    EXPECT_EQ(result.findings[0].line, at);
    EXPECT_EQ(result.findings[0].severity, Severity::Damage);
}

TEST(BinaryDxf, ALineEndWithinATextIsWrittenAsItsEscape)
{
    std::string bytes = toBinary("  0\nSECTION\n", Codes::Long);
    appendCode(bytes, 1, Codes::Long);
    appendValue(bytes, 1, "two\nlines\r");
    EXPECT_THAT(binaryToText(bytes).text, HasSubstr("  1\ntwo^Jlines^M\n"));
}

TEST(BinaryDxf, AFileCutAnywhereKeepsItsWholeGroupsAndSaysWhere)
{
    const std::string whole = toBinary(kLine, Codes::Long);
    const auto groups = binaryToText(whole).offsets;
    for (std::size_t size = sentinel().size(); size < whole.size(); ++size) {
        const auto result = binaryToText(std::string_view(whole).substr(0, size));
        ASSERT_EQ(result.findings.size(), 1u) << size;
        EXPECT_EQ(result.findings[0].severity, Severity::Damage);
        std::size_t complete = 0;
        while (complete + 1 < groups.size() && groups[complete + 1] <= size)
            ++complete;
        EXPECT_EQ(result.offsets.size(), complete) << size;
        EXPECT_EQ(result.findings[0].line, complete < groups.size() ? groups[complete] : size) << size;
        EXPECT_TRUE(kLine.starts_with(result.text)) << size;
    }
}

TEST(BinaryDxf, ACodeOfUnknownSizeEndsTheReadingWithAFinding)
{
    std::string bytes = toBinary("  0\nSECTION\n", Codes::Long);
    const std::size_t at = bytes.size();
    appendCode(bytes, 85, Codes::Long);
    bytes += "whatever";
    const auto result = binaryToText(bytes);
    EXPECT_EQ(result.text, "  0\nSECTION\n");
    ASSERT_EQ(result.findings.size(), 1u);
    EXPECT_EQ(result.findings[0].line, at);
    EXPECT_THAT(result.findings[0].text, HasSubstr("85"));
}

TEST(BinaryDxf, ALineOfTheTextIsFoundInTheBytes)
{
    const std::string bytes = toBinary(kLine, Codes::Long);
    const auto result = binaryToText(bytes);
    const std::size_t at = result.offsetOfLine(8); // the value line of "5, 1F"
    EXPECT_EQ(bytes[at], 5);
    EXPECT_EQ(bytes.substr(at + 2, 2), "1F");
    EXPECT_EQ(result.offsetOfLine(7), at);
    EXPECT_EQ(result.offsetOfLine(100000), result.offsets.back());
    EXPECT_EQ(result.offsetOfLine(0), 0u);
}

TEST(BinaryDxf, WhatFollowsTheEndMarkIsLeftOut)
{
    const auto result = binaryToText(toBinary(kLine, Codes::Short) + "padding");
    EXPECT_EQ(result.text, kLine);
    EXPECT_TRUE(result.findings.empty());
}
