#include "host/editor/Command.h"
#include "host/editor/Prompts.h"
#include "host/editor/Words.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

TEST(PointText, TwoOrThreeNumbersWithCommasAreAPoint)
{
    EXPECT_EQ(parsePoint(L"1.5,-2"), AcGePoint3d(1.5, -2));
    EXPECT_EQ(parsePoint(L" 1 , 2 ,3e1 "), AcGePoint3d(1, 2, 30));
    EXPECT_EQ(parsePoint(L"+4,5"), AcGePoint3d(4, 5));
}

TEST(PointText, AnythingElseIsNone)
{
    for (const wchar_t *text : {L"", L"1", L"1,", L",1", L"1,2,3,4", L"1;2", L"a,b", L"1,2x", L"nan,1", L"1,inf"})
        EXPECT_FALSE(parsePoint(text).has_value()) << text;
}

TEST(PointText, RelativePointsCountFromTheBase)
{
    const AcGePoint3d base(10, 20);
    EXPECT_EQ(parsePoint(L"@1,-2", base), AcGePoint3d(11, 18));
    const auto polar = parsePoint(L"@2<90", base);
    ASSERT_TRUE(polar.has_value());
    EXPECT_TRUE(polar->isEqualTo({10, 22}, 1e-12));
    EXPECT_FALSE(parsePoint(L"@1,1").has_value());
}

TEST(PointText, APointBeyondTheNumbersIsNone)
{
    const AcGePoint3d far(1.5e308, 0.0);
    EXPECT_FALSE(parsePoint(L"@1.5e308,0", far));
    EXPECT_FALSE(parsePoint(L"@1.5e308<0", far));
    EXPECT_FALSE(parsePoint(L"1e999,0"));
    EXPECT_TRUE(parsePoint(L"@-1.5e308,0", far));
}

TEST(AnswerQueue, AnswersComeInTheOrderTheyWerePut)
{
    AnswerQueue queue;
    queue.push({std::wstring(L"first")});
    queue.push({AcGePoint3d(1, 2)});
    EXPECT_EQ(*queue.ask({})->text(), L"first");
    EXPECT_EQ(queue.ask({})->point(), AcGePoint3d(1, 2));
    EXPECT_FALSE(queue.ask({}).has_value());
}

TEST(Answers, AnEmptyTextIsEnter)
{
    EXPECT_TRUE((Answer{std::wstring()}.isEnter()));
    EXPECT_TRUE((Answer{Answer::Enter{}}.isEnter()));
    EXPECT_FALSE((Answer{std::wstring(L" ")}.isEnter()));
}

TEST(Keywords, AbbreviationsNeedTheCapitalsAndTakeTheNeutralMark)
{
    const std::vector<std::wstring> words{L"New", L"Everything", L"OVERWRITE-DAMAGED"};
    EXPECT_EQ(*matchKeyword(words, L"_N"), L"New");
    EXPECT_EQ(*matchKeyword(words, L"n"), L"New");
    EXPECT_EQ(*matchKeyword(words, L"EVERY"), L"Everything");
    EXPECT_EQ(*matchKeyword(words, L"overwrite-damaged"), L"OVERWRITE-DAMAGED");
    EXPECT_EQ(matchKeyword(words, L"overwrite"), nullptr);
    EXPECT_EQ(matchKeyword(words, L"newer"), nullptr);
    EXPECT_EQ(matchKeyword(words, L""), nullptr);
    EXPECT_EQ(matchKeyword(words, L"_"), nullptr);
}

std::vector<std::wstring> textsOf(std::wstring_view line)
{
    std::wstring reason;
    const auto words = splitWords(line, reason);
    EXPECT_TRUE(words.has_value());
    std::vector<std::wstring> texts;
    for (const Word &word : words.value_or(std::vector<Word>()))
        texts.push_back(word.text);
    return texts;
}

TEST(Words, BlanksPartWordsAndQuotationMarksHoldThemTogether)
{
    using testing::ElementsAre;
    EXPECT_THAT(textsOf(L"  open  \"my town.dxf\"\tnow"), ElementsAre(L"open", L"my town.dxf", L"now"));
    EXPECT_THAT(textsOf(L"type 213 \"\""), ElementsAre(L"type", L"213", L""));
    EXPECT_THAT(textsOf(L"\"say \"\"no\"\"\""), ElementsAre(L"say \"no\""));
}

TEST(Words, ACommentBeginsWithAWord)
{
    using testing::ElementsAre;
    EXPECT_THAT(textsOf(L"click 290 # go"), ElementsAre(L"click", L"290"));
    EXPECT_THAT(textsOf(L"# all of it"), ElementsAre());
    EXPECT_THAT(textsOf(L"name D#1 \"#2\""), ElementsAre(L"name", L"D#1", L"#2"));
}

TEST(Words, AnOpenQuotationMarkIsRefused)
{
    std::wstring reason;
    EXPECT_FALSE(splitWords(L"type 1 \"open", reason).has_value());
    EXPECT_FALSE(reason.empty());
    EXPECT_FALSE(splitWords(L"type \"a\"b", reason).has_value());
}

} // namespace
} // namespace velmor
