#include "catalog/NumberText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <string>

TEST(ReadDouble, StopsAtTheFirstCharacterThatCantBelongToANumber)
{
    struct Row {
        const wchar_t *text;
        double value;
        std::size_t length;
    };
    const Row rows[] = {
        {L"0.3500", 0.35, 6},  {L"0.35abc", 0.35, 4}, {L"-1.5e2x", -150.0, 6}, {L"+2", 2.0, 2},  {L".5", 0.5, 2},
        {L"5.", 5.0, 2},       {L"1.2.3", 1.2, 3},    {L"1e", 1.0, 1},         {L"1e+", 1.0, 1}, {L"1E-1", 0.1, 4},
        {L" \t\r\n7", 7.0, 5}, {L"0,9", 0.0, 1},      {L"0x10", 0.0, 1},       {L"1 2", 1.0, 1},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(ReadDouble(row.text).value, row.value) << testing::PrintToString(row.text);
        EXPECT_EQ(ReadDouble(row.text).length, row.length) << testing::PrintToString(row.text);
    }
}

TEST(ReadDouble, GivesNothingWhereNoNumberStarts)
{
    for (const wchar_t *text : {L"", L" ", L"abc", L"-", L"+", L".", L"-.", L"e5", L"inf", L"nan", L"- 1", L"٣"}) {
        EXPECT_EQ(ReadDouble(text).value, 0.0) << testing::PrintToString(text);
        EXPECT_EQ(ReadDouble(text).length, 0u) << testing::PrintToString(text);
    }
}

TEST(ReadDouble, BeyondTheRangeOfADoubleIsInfiniteOrZero)
{
    EXPECT_EQ(ReadDouble(L"1e999").value, std::numeric_limits<double>::infinity());
    EXPECT_EQ(ReadDouble(L"-1e999").value, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(ReadDouble(L"1e-999").value, 0.0);
}

TEST(ReadInt, StopsAtTheFirstCharacterThatIsNoDigit)
{
    EXPECT_EQ(ReadInt(L"100"), 100);
    EXPECT_EQ(ReadInt(L" 130 l/s"), 130);
    EXPECT_EQ(ReadInt(L"180.9"), 180);
    EXPECT_EQ(ReadInt(L"-25"), -25);
    EXPECT_EQ(ReadInt(L"+7"), 7);
    EXPECT_EQ(ReadInt(L"x5"), 0);
    EXPECT_EQ(ReadInt(L""), 0);
    EXPECT_EQ(ReadInt(L"99999999999999999999"), std::numeric_limits<int>::max());
    EXPECT_EQ(ReadInt(L"-99999999999999999999"), std::numeric_limits<int>::min());
}

TEST(ParseNumber, ACommaCountsAsAPoint)
{
    EXPECT_EQ(ParseNumber(L"0,35"), 0.35);
    EXPECT_EQ(ParseNumber(L"0.35"), 0.35);
    EXPECT_EQ(ParseNumber(L"1,2,3"), kMissingNumber) << "two of them leave something over";
}

TEST(ParseNumber, BlanksAtTheEndDontCount)
{
    EXPECT_EQ(ParseNumber(L"12   "), 12.0);
    EXPECT_EQ(ParseNumber(L"  12 "), 12.0) << "those before a number belong to it";
    EXPECT_EQ(ParseNumber(L"12\t"), kMissingNumber) << "only blanks are trimmed";
}

TEST(ParseNumber, AnEmptyTextGivesTheMarker)
{
    EXPECT_EQ(ParseNumber(L""), -1000000.0);
    EXPECT_EQ(ParseNumber(L"    "), -1000000.0);
}

TEST(ParseNumber, AnythingBehindTheNumberGivesTheMarker)
{
    for (const wchar_t *text : {L"0.5a", L"0.5 m", L"abc", L"1e", L"-", L"0x10", L"nan", L"1;2"})
        EXPECT_EQ(ParseNumber(text), -1000000.0) << testing::PrintToString(text);
    EXPECT_EQ(ParseNumber(L"-1e-2"), -0.01);
}

TEST(ParseNumber, BeyondTheRangeOfADoubleThereIsNoNumber)
{
    EXPECT_EQ(ParseNumber(L"1e999"), -1000000.0);
    EXPECT_EQ(ParseNumber(L"-1e999"), -1000000.0);
    EXPECT_EQ(ParseNumber(L"1e300"), 1e300);
}

namespace {

/// Sets a locale with a decimal comma for its life: one of the machine's, else one that it builds where the machine
/// has the tool for it.
class WithDecimalComma {
public:
    WithDecimalComma()
    {
        for (const char *name : {"hr_HR.UTF-8", "de_DE.UTF-8", "fr_FR.UTF-8"})
            m_isSet = m_isSet || std::setlocale(LC_ALL, name);
        if (!m_isSet)
            Build();
    }
    ~WithDecimalComma()
    {
        std::setlocale(LC_ALL, m_before.c_str());
        if (m_folder.empty())
            return;
        ::unsetenv("LOCPATH");
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }
    WithDecimalComma(const WithDecimalComma &) = delete;
    WithDecimalComma &operator=(const WithDecimalComma &) = delete;
    bool IsSet() const { return m_isSet; }

private:
    void Build()
    {
        std::string folder = (std::filesystem::temp_directory_path() / "velmor-locale-XXXXXX").string();
        if (!::mkdtemp(folder.data()))
            return;
        m_folder = folder;
        const std::string command = "localedef -i de_DE -f UTF-8 '" + folder + "/de_DE.UTF-8' >/dev/null 2>&1";
        if (std::system(command.c_str()) != 0)
            return;
        ::setenv("LOCPATH", folder.c_str(), 1);
        m_isSet = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    }

    std::string m_before = std::setlocale(LC_ALL, nullptr);
    std::filesystem::path m_folder;
    bool m_isSet = false;
};

} // namespace

TEST(Numbers, TheProgramsLocaleHasNoSay)
{
    std::wstring written;
    double read = 0;
    {
        const WithDecimalComma locale;
        if (!locale.IsSet())
            GTEST_SKIP() << "this machine has no locale with a decimal comma and can't build one";
        ASSERT_STREQ(std::localeconv()->decimal_point, ",");
        written = FourDecimals(1234.5);
        read = ParseNumber(L"1234.5");
    }
    EXPECT_EQ(written, L"1234.5000");
    EXPECT_EQ(read, 1234.5);
}

TEST(FourDecimals, AreAlwaysWritten)
{
    EXPECT_EQ(FourDecimals(0.35), L"0.3500");
    EXPECT_EQ(FourDecimals(0.0), L"0.0000");
    EXPECT_EQ(FourDecimals(-2.0), L"-2.0000");
    EXPECT_EQ(FourDecimals(0.12345), L"0.1235");
    EXPECT_EQ(FourDecimals(0.99999), L"1.0000");
    EXPECT_EQ(FourDecimals(std::numeric_limits<double>::max()).size(), 309u + 5u);
    EXPECT_EQ(FourDecimals(-std::numeric_limits<double>::max()).size(), 310u + 5u);
}
