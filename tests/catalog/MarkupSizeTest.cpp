// Large, deep and wide documents.
#include "catalog/Markup.h"
#include "catalog/MarkupScan.h"
#include "tests/catalog/IndexCheck.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <string>

using markup_check::brokenRule;
using markup_check::differenceToFreshParse;

namespace {

std::wstring repeated(std::wstring_view part, std::size_t count)
{
    std::wstring text;
    text.reserve(part.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        text += part;
    return text;
}

std::wstring list(std::size_t count)
{
    std::wstring text = L"<list>";
    for (std::size_t i = 0; i < count; ++i)
        text += L"\r\n<item n='" + std::to_wstring(i) + L"' v='0.35'/>";
    return text + L"\r\n</list>";
}

/// What programs can have without the system moving others out: free memory, and what it holds files in.
long availableKilobytes()
{
    std::ifstream stream("/proc/meminfo");
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("MemAvailable:"))
            return std::stol(line.substr(line.find(':') + 1));
    }
    return 0;
}

constexpr std::size_t kDeep = 100000;

TEST(MarkupDepth, AHundredThousandLevelsParse)
{
    CMarkup document;
    EXPECT_TRUE(document.SetText(repeated(L"<a>", kDeep) + repeated(L"</a>", kDeep)));
    for (std::size_t i = 0; i < kDeep; ++i) {
        ASSERT_TRUE(document.FindElement(L"a"));
        ASSERT_TRUE(document.EnterChild());
    }
    EXPECT_FALSE(document.FindElement());
    EXPECT_EQ(document.GetIndex()[100].Level(), document.GetIndex()[1].Level() + 99);
    EXPECT_EQ(document.GetIndex()[kDeep].Level(), 0xFFFFu) << "deeper levels count as the deepest";
    EXPECT_FALSE(document.GetIndex()[kDeep].Has(CMarkupRecord::kEmptyTag)) << "and do not run into the flags";
    document.LeaveElement();
    EXPECT_EQ(document.GetElementPath().size(), kDeep * 2);
}

TEST(MarkupDepth, EditsReachAHundredThousandLevelsDown)
{
    CMarkup document;
    document.SetText(L"<r>" + repeated(L"<a>", kDeep) + repeated(L"</a>", kDeep) + L"<z/></r>");
    document.FindElement();
    for (std::size_t i = 0; i < kDeep; ++i) {
        document.FindChildElement(L"a");
        document.EnterChild();
    }
    EXPECT_TRUE(document.SetAttribute(L"x", L"1"));
    EXPECT_TRUE(document.AddChildElement(L"b", L"text"));
    EXPECT_TRUE(document.AddChildElement(L"c"));
    EXPECT_EQ(differenceToFreshParse(document), "");
    document.Rewind();
    document.FindElement();
    document.FindChildElement(L"a");
    EXPECT_TRUE(document.RemoveChildElement());
    EXPECT_EQ(document.GetText(), L"<r><z/></r>");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupDepth, AHundredThousandElementsThatAreNotEnded)
{
    CMarkup document;
    EXPECT_FALSE(document.SetText(repeated(L"<a>", kDeep)));
    EXPECT_EQ(document.GetErrorText(), L"Root element has sibling");
    EXPECT_EQ(brokenRule(document), "");
    std::size_t count = 0;
    while (document.FindElement(L"a"))
        ++count;
    EXPECT_EQ(count, kDeep);
    EXPECT_EQ(document.GetIndex()[kDeep].Level(), document.GetIndex()[1].Level());
}

TEST(MarkupDepth, EndTagsWithoutStartCostLittleHoweverDeep)
{
    CMarkup document;
    EXPECT_FALSE(document.SetText(repeated(L"<a>", kDeep) + repeated(L"</b>", kDeep) + repeated(L"</a>", kDeep)));
    EXPECT_EQ(document.GetErrorText(), L"No start tag for end tag 'b' at offset 699997");
    EXPECT_EQ(brokenRule(document), "");
}

TEST(MarkupSize, SegmentsOfRecordsJoinWithoutASeam)
{
    const std::size_t count = 3 * CMarkupIndex::kSegmentSize + 100;
    CMarkup document;
    EXPECT_TRUE(document.SetText(list(count)));
    document.FindElement();
    std::size_t found = 0;
    while (document.FindChildElement(L"item"))
        ASSERT_EQ(document.GetChildAttribute(L"n"), std::to_wstring(found++));
    EXPECT_EQ(found, count);
    EXPECT_EQ(document.GetIndex()[CMarkupIndex::kSegmentSize].previous, CMarkupIndex::kSegmentSize - 1);
}

TEST(MarkupSize, RecordsOfAFullSegmentNeverMove)
{
    CMarkupIndex index;
    index.Reset(0);
    EXPECT_EQ(index.Capacity(), 8u);
    while (index.End() < CMarkupIndex::kSegmentSize)
        index[index.Add()] = CMarkupRecord();
    const CMarkupRecord *pFirst = &index[0];
    while (index.End() < 3 * CMarkupIndex::kSegmentSize)
        index[index.Add()] = CMarkupRecord();
    EXPECT_EQ(&index[0], pFirst);
}

TEST(MarkupSize, TheIndexIsSizedAndGrowsAsPlanned)
{
    CMarkupIndex index;
    index.Reset(6400);
    EXPECT_EQ(index.Capacity(), 108u);
    while (index.End() < 108)
        index.Add();
    index.Add();
    EXPECT_EQ(index.Capacity(), 162u);
    // By half of the next free record, but at most to the end of the next segment.
    index.Reset(std::size_t{64} * (6 * 65536 - 8));
    EXPECT_EQ(index.Capacity(), 6u * 65536);
    while (index.End() < 6u * 65536)
        index.Add();
    index.Add();
    EXPECT_EQ(index.Capacity(), 7u * 65536);
    CMarkupIndex other;
    other.Reset(std::size_t{64} * (60000 - 8));
    while (other.End() <= 60000)
        other.Add();
    EXPECT_EQ(other.Capacity(), 90000u);
}

TEST(MarkupSize, AnElementTakesAtMost48BytesBesideTheText)
{
    for (const std::size_t count : {1000u, 10000u, 100000u}) {
        CMarkup document;
        document.SetText(list(count));
        EXPECT_LE(document.GetMemoryBesideText(), 48 * (count + 16)) << count;
    }
}

TEST(MarkupSize, AHundredMegabytesParse)
{
    // 100,000,000 characters in two million elements.
    constexpr std::size_t kCount = 2000000;
    std::wstring text =
        L"<list>" + repeated(L"\n<item name='0123456789' value='0123456789abcde'/>", kCount) + L"</list>";
    ASSERT_GE(text.size(), 100000000u);
    CMarkup document;
    EXPECT_TRUE(document.SetText(text));
    text = {};
    EXPECT_EQ(document.GetIndex().End(), kCount + 2);
    EXPECT_EQ(document.GetErrorText(), L"");
    document.FindElement();
    document.FindChildElement();
    EXPECT_TRUE(document.SetChildAttribute(L"name", L"x"));
    EXPECT_EQ(document.GetText().substr(0, 27), L"<list>\n<item name=\"x\" value");
    EXPECT_TRUE(document.GetText().ends_with(L"value='0123456789abcde'/></list>"));
}

TEST(MarkupSize, ATextBeyondTheLimitIsRefused)
{
    CMarkup document;
    document.SetText(L"<a b='1'/>");
    // Address space alone: the length is looked at before the characters are.
    static const wchar_t character = L'x';
    EXPECT_FALSE(document.SetText(std::wstring_view(&character, CMarkup::kLongestText + 1)));
    EXPECT_EQ(document.GetErrorText(), L"A text of 268435457 characters is too long: at most 268435456 are possible");
    EXPECT_EQ(document.GetText(), L"<a b='1'/>");
    document.FindElement();
    EXPECT_FALSE(document.InsertChildFragment(std::wstring_view(&character, CMarkup::kLongestText + 1)));
    EXPECT_FALSE(document.SetElementContent(std::wstring_view(&character, std::size_t{1} << 33)));
    EXPECT_EQ(document.GetErrorText(), L"A text of 8589934592 characters is too long: at most 268435456 are possible");
    EXPECT_EQ(document.GetText(), L"<a b='1'/>");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupSize, AnEditThatWouldPassTheLimitIsRefusedAndChangesNothing)
{
    if (availableKilobytes() < 5L << 20)
        GTEST_SKIP() << "this needs 5 GB of memory that programs can have";
    constexpr std::wstring_view kBegin = L"<r><a x='1'/><!--", kEnd = L"--></r>";
    constexpr std::size_t kRoom = 5;
    CMarkup document;
    {
        std::wstring text(CMarkup::kLongestText - kRoom, L'.');
        text.replace(0, kBegin.size(), kBegin);
        text.replace(text.size() - kEnd.size(), kEnd.size(), kEnd);
        ASSERT_TRUE(document.SetText(text));
    }
    const std::uint32_t records = document.GetIndex().End();
    document.FindElement();
    document.FindChildElement();
    EXPECT_FALSE(document.SetChildAttribute(L"x", L"1234567"));
    EXPECT_EQ(document.GetErrorText(), L"A text of 268435457 characters is too long: at most 268435456 are possible");
    EXPECT_FALSE(document.SetAttribute(L"y", L"1"));
    EXPECT_FALSE(document.AddChildElement(L"b"));
    EXPECT_FALSE(document.InsertChildFragment(L"<b></b>"));
    EXPECT_FALSE(document.SetChildContent(L"<b/>"));
    EXPECT_FALSE(document.SetChildText(L"text"));
    EXPECT_FALSE(document.AddNode(CMarkup::kComment, L"c"));
    EXPECT_EQ(document.GetText().size(), CMarkup::kLongestText - kRoom);
    EXPECT_TRUE(document.GetText().starts_with(kBegin) && document.GetText().ends_with(kEnd));
    EXPECT_EQ(document.GetIndex().End(), records);
    EXPECT_EQ(brokenRule(document), "");
    EXPECT_EQ(document.GetChildFragment(), L"<a x='1'/>");
    EXPECT_TRUE(document.SetChildAttribute(L"x", L"123456")) << "as long as possible";
    EXPECT_EQ(document.GetText().size(), CMarkup::kLongestText);
}

TEST(MarkupSize, TagsLongerThanTheirBitsAreHeldAllTheSame)
{
    // The mask of a start tag's length lacks bit 20, an end tag has ten bits.
    for (const std::size_t length : {1000u, 1020u, 1021u, 5000u, 0xFFFF0u, 0x100000u, 0x1FFFFFu, 0x300000u}) {
        const std::wstring name(length, L'n');
        CMarkup document;
        ASSERT_TRUE(document.SetText(L"<r><" + name + L"><b/>x</" + name + L"><c/></r>"));
        document.FindElement();
        document.FindChildElement(name);
        EXPECT_EQ(document.GetChildFragment().size(), 2 * length + 10);
        EXPECT_TRUE(document.SetChildText(L"y"));
        EXPECT_EQ(document.GetChildText(), L"y");
        EXPECT_TRUE(document.SetChildAttribute(L"k", L"v"));
        EXPECT_EQ(differenceToFreshParse(document), "") << length;
        EXPECT_TRUE(document.FindChildElement(L"c"));
        CMarkup copy(document);
        EXPECT_EQ(differenceToFreshParse(copy), "") << length;
    }
}

TEST(MarkupSize, ALongValueMayComeAndGo)
{
    CMarkup document;
    document.SetText(L"<r><a b='1'/><c/></r>");
    document.FindElement();
    document.FindChildElement();
    const std::wstring value(0x100000, L'x');
    EXPECT_TRUE(document.SetChildAttribute(L"b", value));
    EXPECT_EQ(document.GetChildAttribute(L"b"), value);
    EXPECT_EQ(differenceToFreshParse(document), "");
    EXPECT_TRUE(document.SetChildAttribute(L"b", L"2"));
    EXPECT_EQ(document.GetText(), L"<r><a b=\"2\"/><c/></r>");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupSize, ManyRandomEditsKeepTextAndIndex)
{
    constexpr std::size_t kCount = 5000;
    CMarkup document;
    document.SetText(list(kCount));
    document.FindElement();
    std::vector<std::wstring> values(kCount, L"0.35");
    for (std::size_t i = 0; document.FindChildElement(); ++i)
        document.SavePosition(std::to_wstring(i));
    std::mt19937 random(7);
    for (int round = 0; round < 6000; ++round) {
        const std::size_t i = random() % kCount;
        ASSERT_TRUE(document.RestorePosition(std::to_wstring(i)));
        ASSERT_EQ(document.GetChildAttribute(L"v"), values[i]);
        values[i] = std::to_wstring(random() % 10) + std::wstring(random() % 20, L'x');
        ASSERT_TRUE(document.SetChildAttribute(L"v", values[i]));
        if (round % 997 == 0) {
            ASSERT_EQ(differenceToFreshParse(document), "") << round;
        }
    }
    std::wstring expected = L"<list>";
    for (std::size_t i = 0; i < kCount; ++i)
        expected += L"\r\n<item n='" + std::to_wstring(i) + L"' v=\"" + values[i] + L"\"/>";
    // What was never edited still has its first quotes.
    std::wstring text(document.GetText());
    for (std::size_t at = 0; (at = text.find(L"v='0.35'", at)) != text.npos;)
        text.replace(at, 8, L"v=\"0.35\"");
    EXPECT_TRUE(text == expected + L"\r\n</list>");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupSize, RandomEditsOfEveryKindKeepTheIndex)
{
    std::mt19937 random(11);
    CMarkup document;
    document.SetText(list(3000));
    int done = 0;
    for (int round = 0; round < 1500; ++round) {
        document.Rewind();
        document.FindElement();
        for (unsigned steps = random() % 40; steps > 0 && document.FindChildElement(); --steps) {
            if (random() % 16 == 0)
                document.EnterChild();
        }
        switch (random() % 7) {
        case 0:
            done += document.AddChildElement(L"new", L"some text") ? 1 : 0;
            break;
        case 1:
            done += document.RemoveChildElement() ? 1 : 0;
            break;
        case 2:
            done += document.InsertChildFragment(L"<f><g h='1'/>text</f>") ? 1 : 0;
            break;
        case 3:
            done += document.SetChildText(L"t") ? 1 : 0;
            break;
        case 4:
            done += document.SetChildContent(L"<k/> <l><m/></l>") ? 1 : 0;
            break;
        default:
            done += document.SetChildAttribute(L"w", std::wstring(random() % 9, L'y')) ? 1 : 0;
        }
        if (round % 50 == 0) {
            ASSERT_EQ(differenceToFreshParse(document), "") << round;
        }
    }
    EXPECT_GT(done, 1000);
    EXPECT_EQ(differenceToFreshParse(document), "");
    EXPECT_EQ(brokenRule(document), "");
    EXPECT_TRUE(document.IsWellFormed());
}

} // namespace
