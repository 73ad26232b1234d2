// The flat text under splices near and far, against a plain string.
#include "catalog/MarkupText.h"
#include "catalog/MarkupScan.h"

#include <gtest/gtest.h>

#include <random>

namespace {

CMarkupText textOf(std::wstring_view characters)
{
    CMarkupText text;
    text.Assign(characters);
    return text;
}

std::wstring numbers(std::size_t count)
{
    std::wstring characters;
    while (characters.size() < count)
        characters += std::to_wstring(characters.size()) + L' ';
    return characters.substr(0, count);
}

TEST(MarkupText, EndsInPadding)
{
    const CMarkupText empty;
    EXPECT_EQ(empty.View(), L"");
    CMarkupText text = textOf(L"abc");
    text.Replace(1, 1, L"");
    EXPECT_EQ(text.View(), L"ac");
    for (std::size_t i = 0; i < CMarkupText::kPadding; ++i)
        EXPECT_EQ(text.View().data()[2 + i], L'\0');
}

TEST(MarkupText, RandomSplicesAreThoseOfAString)
{
    std::mt19937 random(3);
    int inPieces = 0;
    for (const std::size_t size : {0u, 10u, 40000u, 200000u}) {
        std::wstring expected = numbers(size);
        CMarkupText text = textOf(expected);
        for (int round = 0; round < 12000; ++round) {
            const std::size_t offset = random() % (expected.size() + 1);
            const std::size_t removed = std::min<std::size_t>(random() % 30, expected.size() - offset);
            const std::wstring inserted(random() % 30, static_cast<wchar_t>(L'a' + round % 26));
            text.Replace(offset, removed, inserted);
            expected.replace(offset, removed, inserted);
            ASSERT_EQ(text.Size(), expected.size());
            const std::size_t from = random() % (expected.size() + 1);
            ASSERT_EQ(text.At(from), from < expected.size() ? expected[from] : L'\0') << round;
            if (round % 3 == 0) {
                ASSERT_EQ(text.Part(offset, inserted.size()), inserted) << round;
                ++inPieces;
            }
            if (round % 499 == 0) {
                const std::size_t length = random() % 100;
                ASSERT_EQ(text.Part(from, std::min(length, expected.size() - from)), expected.substr(from, length));
            }
            if (round % 2999 == 0) {
                ASSERT_TRUE(text.View() == expected) << round;
            }
        }
        EXPECT_TRUE(text.View() == expected);
        for (std::size_t i = 0; i < CMarkupText::kPadding; ++i)
            EXPECT_EQ(text.View().data()[expected.size() + i], L'\0');
    }
    EXPECT_GT(inPieces, 1000);
}

TEST(MarkupText, SplicesThatOverlapOrTouchBecomeOne)
{
    std::mt19937 random(5);
    std::wstring expected = numbers(100000);
    CMarkupText text = textOf(expected);
    for (int round = 0; round < 3000; ++round) {
        // All in a small window far from the end.
        const std::size_t offset = 100 + random() % 60;
        const std::size_t removed = random() % 40;
        const std::wstring inserted = numbers(random() % 40);
        text.Replace(offset, removed, inserted);
        expected.replace(offset, removed, inserted);
        ASSERT_EQ(text.Size(), expected.size());
        if (expected.size() < 99000) {
            text.Replace(50, 0, numbers(1000));
            expected.insert(50, numbers(1000));
        }
        if (round % 97 == 0) {
            CMarkupText copy(text);
            ASSERT_TRUE(copy.View() == expected) << round;
        }
    }
    EXPECT_TRUE(text.View() == expected);
}

TEST(MarkupText, AWholeTextMayBeReplaced)
{
    CMarkupText text = textOf(numbers(100000));
    text.Replace(10, 5, L"abc");
    text.Replace(0, text.Size(), L"");
    EXPECT_EQ(text.Size(), 0u);
    EXPECT_EQ(text.View(), L"");
    text.Replace(0, 0, L"xyz");
    EXPECT_EQ(text.View(), L"xyz");
}

TEST(MarkupText, GrowsByHalfOfTheNeededSize)
{
    CMarkupText text = textOf(numbers(1000));
    text.Replace(1000, 0, numbers(1000));
    const wchar_t *pBlock = text.View().data();
    text.Replace(0, 0, numbers(1000 + 128));
    EXPECT_EQ(text.View().data(), pBlock);
    text.Replace(0, 0, L"x");
    EXPECT_NE(text.View().data(), pBlock);
    EXPECT_EQ(text.View(), L"x" + numbers(1128) + numbers(1000) + numbers(1000));
}

TEST(MarkupText, CopiesAndMovesAreIndependent)
{
    CMarkupText first = textOf(numbers(100000));
    first.Replace(5, 0, L"abc");
    CMarkupText second(first);
    second.Replace(0, 1, L"zz");
    EXPECT_EQ(first.View().substr(0, 3), L"0 2");
    EXPECT_EQ(second.View().substr(0, 3), L"zz ");
    CMarkupText third(std::move(second));
    EXPECT_EQ(third.View().substr(0, 3), L"zz ");
    first = third;
    EXPECT_TRUE(first.View() == third.View());
}

/// The first close outside quotes, looked for one by one.
std::size_t plainTagEnd(std::wstring_view text, std::size_t at)
{
    wchar_t quote = L'\0';
    for (; at < text.size(); ++at) {
        if (quote != L'\0') {
            if (text[at] == quote)
                quote = L'\0';
        } else if (text[at] == L'"' || text[at] == L'\'') {
            quote = text[at];
        } else if (text[at] == L'>') {
            return at;
        }
    }
    return text.size();
}

TEST(MarkupScan, BlocksGiveWhatASearchCharacterByCharacterGives)
{
    std::mt19937 random(9);
    for (int round = 0; round < 20000; ++round) {
        std::wstring characters;
        const std::size_t size = random() % 80;
        for (std::size_t i = 0; i < size; ++i)
            characters += L"xxxxxxxx<>\"'\"'"[random() % (random() % 2 == 0 ? 14 : 9)];
        const CMarkupText text = textOf(characters);
        const wchar_t *begin = text.View().data(), *end = begin + size;
        for (std::size_t at = 0; at <= size; at += 1 + random() % 8) {
            ASSERT_EQ(static_cast<std::size_t>(MarkupScan::FindTagEnd(begin + at, end) - begin),
                      plainTagEnd(characters, at));
            ASSERT_EQ(static_cast<std::size_t>(MarkupScan::FindMarkup(begin + at, end) - begin),
                      std::min(characters.find(L'<', at), size));
        }
    }
}

} // namespace
