// Widths of columns that follow their texts, and what operations on columns do to the view.
#include "tests/treelist/HeaderFixture.h"

#include "controls/treelist/TextAdvances.h"

#include <random>

namespace {

constexpr int kMinusOne = -1, kMinusTwo = -2, kMinusThree = -3, kMinusFour = -4;

class Widths : public HeaderTest {
protected:
    /// A font that has widths of its own for each letter and for pairs of them.
    Widths()
    {
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(11);
        list->setFont(font);
        Settle();
    }
    int Advance(const std::wstring &text) const
    {
        return list->fontMetrics().horizontalAdvance(QString::fromStdWString(text));
    }
    int Fitted(int column, int code, int min = 0)
    {
        EXPECT_EQ(list->SetColumnWidth(column, code, min), 1);
        return Width(column);
    }
};

/// A text as it is stored, in one, two or four bytes a character.
template <class Character>
TreeListText stored(const std::basic_string<Character> &text)
{
    return {text.data(), static_cast<std::uint32_t>(text.size()), sizeof(Character)};
}

} // namespace

TEST_F(Widths, AGivenWidthIsTakenAsItIs)
{
    const int column = list->InsertColumn(L"Limited", kColumnDefaultFormat, 70, -1, 50, 90);
    EXPECT_EQ(list->SetColumnWidth(column, 30), 1);
    EXPECT_EQ(Width(column), 30);
    EXPECT_EQ(Fitted(column, 0), 0);
}

TEST_F(Widths, AColumnThatThereIsNotIsRefused)
{
    for (const int column : {-1, 3, 1000}) {
        for (const int width : {50, -1, -2, -3, -4})
            EXPECT_EQ(list->SetColumnWidth(column, width), 0) << column;
    }
    EXPECT_EQ(Width(0), kName);
    EXPECT_EQ(Width(2), kKind);
}

TEST_F(Widths, OtherNegativeWidthsAreRefused)
{
    EXPECT_EQ(list->SetColumnWidth(1, -5), 0);
    EXPECT_EQ(list->SetColumnWidth(1, -1, -7), 0) << "a minimum below 0, and no item";
    EXPECT_EQ(Width(1), kLength);
}

TEST_F(Widths, MinusOneFitsTheItemsFromTheGivenMinimumOn)
{
    CTreeListItem *item = list->InsertItem(L"x");
    list->SetItemText(item, 1, L"A wide text of an item");
    const int needed = Advance(L"A wide text of an item") + 2;
    for (const int code : {kMinusOne, kMinusThree}) {
        EXPECT_EQ(Fitted(1, code), needed);
        EXPECT_EQ(Fitted(1, code, needed - 1), needed);
        EXPECT_EQ(Fitted(1, code, needed + 7), needed + 7);
        EXPECT_EQ(Fitted(2, code), 2) << "an empty text needs the pixels beside it";
    }
}

TEST_F(Widths, MinusTwoStartsFromTheTextOfTheHeader)
{
    list->SetColumnText(1, L"A header of some width");
    const int ofHeader = Advance(L"A header of some width") + 4;
    CTreeListItem *item = list->InsertItem(L"x");
    for (const int code : {kMinusTwo, kMinusFour}) {
        list->SetItemText(item, 1, L"i");
        EXPECT_EQ(Fitted(1, code, 1000), ofHeader) << "the minimum is of the others";
        list->SetItemText(item, 1, L"A text of an item that is wider than the header");
        EXPECT_EQ(Fitted(1, code), Advance(L"A text of an item that is wider than the header") + 2);
    }
}

TEST_F(Widths, WithoutItemsOnlyTheStartCounts)
{
    EXPECT_EQ(Fitted(0, kMinusOne, 17), 17);
    EXPECT_EQ(Fitted(0, kMinusTwo), Advance(L"Name") + 4);
}

TEST_F(Widths, OnlyItemsOfExpandedBranchesCount)
{
    CTreeListItem *top = list->InsertItem(L"top");
    CTreeListItem *below = list->InsertItem(L"below", top);
    list->InsertItem(L"x", below);
    list->SetItemText(below, 1, L"A wide text of an item");
    EXPECT_EQ(Fitted(1, kMinusOne), 2);
    list->Expand(top, kExpand);
    EXPECT_EQ(Fitted(1, kMinusOne), Advance(L"A wide text of an item") + 2);
    list->Expand(top, kCollapse);
    EXPECT_EQ(Fitted(1, kMinusOne), 2);
}

TEST_F(Widths, TheFirstColumnCountsWhatStandsBeforeItsText)
{
    const struct {
        std::uint32_t style, state;
        int before; ///< of an item of the third level
    } rows[] = {
        {0, 0, 0},
        {StyleTree, 0, 32},
        {StyleTree | StyleTreeButtons, 0, 48},
        {StyleCheck, kItemShowsCheck, 16},
        {StyleCheck, 0, 0},
        {0, kItemShowsCheck | kItemShowsLock | kItemShowsImage, 0},
        {StyleLock, kItemShowsLock, 10},
        {StyleLock, 0, 2},
        {StyleImage, kItemShowsImage, 18},
        {StyleImage, 0, 2},
        {StyleLock | StyleImage, kItemShowsLock | kItemShowsImage, 26},
        {StyleTree | StyleTreeButtons | StyleCheck | StyleLock | StyleImage,
         kItemShowsCheck | kItemShowsLock | kItemShowsImage, 90},
    };
    CTreeListItem *top = list->InsertItem(L"");
    CTreeListItem *middle = list->InsertItem(L"", top);
    CTreeListItem *item = list->InsertItem(L"Third level", middle);
    list->Expand(top, kExpand);
    list->Expand(middle, kExpand);
    constexpr std::uint32_t kGlyphs = kItemShowsCheck | kItemShowsLock | kItemShowsImage;
    for (const auto &row : rows) {
        list->SetStyle(row.style);
        for (CTreeListItem *each : {top, middle, item})
            list->SetItemState(each, row.state, kGlyphs & ~row.state);
        EXPECT_EQ(Fitted(0, kMinusOne), row.before + Advance(L"Third level") + 2) << row.style << ' ' << row.state;
    }
}

TEST_F(Widths, TheDeepestItemIsNotAlwaysTheWidest)
{
    list->SetStyle(StyleTree);
    CTreeListItem *top = list->InsertItem(L"A very wide text at the top level");
    list->InsertItem(L"short", top);
    list->Expand(top, kExpand);
    EXPECT_EQ(Fitted(0, kMinusOne), Advance(L"A very wide text at the top level") + 2);
    list->SetItemText(list->GetChildItem(top), 0, L"A very wide text at the top leve");
    EXPECT_EQ(Fitted(0, kMinusOne), 16 + Advance(L"A very wide text at the top leve") + 2);
}

TEST_F(Widths, EachScriptIsMeasured)
{
    CTreeListItem *item = list->InsertItem(L"x");
    for (const wchar_t *text : {L"Slivna površina Čađavica", L"Ελληνικά κείμενα", L"Сточные воды", L"\U0001F327 rain",
                                L"e\u0301e\u0301e\u0301", L"office affinity AVAVA"}) {
        list->SetItemText(item, 1, text);
        EXPECT_EQ(Fitted(1, kMinusOne), Advance(text) + 2) << QString::fromWCharArray(text).toStdString();
    }
}

TEST_F(Widths, TheWidestOfManyTextsIsTheFontsOwnWidth)
{
    std::mt19937 random(20261121);
    const std::u16string letters = u"AVTWLTYfijlm1234567890.,- čćžšđČĆŽŠĐäöü";
    TextAdvances texts(list->fontMetrics());
    int widest = 0;
    for (int round = 0; round < 5000; ++round) {
        std::u16string text;
        for (std::size_t length = random() % (10 + static_cast<unsigned>(round) / 50); length > 0; --length)
            text += letters[random() % letters.size()];
        const int before = static_cast<int>(random() % 4) * 16;
        widest = std::max(widest, before + list->fontMetrics().horizontalAdvance(QString::fromStdU16String(text)));
        const std::u32string wide(text.begin(), text.end());
        if (round % 2 == 0)
            texts.Take(before, stored(text));
        else
            texts.Take(before, stored(wide));
        ASSERT_EQ(texts.Widest(), widest) << QString::fromStdU16String(text).toStdString();
    }
}

TEST_F(Widths, OfManyTextsTheFontIsAskedForFew)
{
    constexpr int kRows = 100'000;
    // Pairs of these letters stand nearer than each letter alone would.
    for (const char *name : {"Section ", "AVAVAVAVAVAV "}) {
        TextAdvances texts(list->fontMetrics());
        for (int row = 0; row < kRows; ++row) {
            const std::string text = name + std::to_string(kRows + row * 7919LL % kRows);
            texts.Take(16, stored(text));
        }
        EXPECT_LT(texts.Measured(), 100) << name;
        EXPECT_GT(texts.Widest(), 16);
    }
}

TEST_F(Widths, TheScrollBarAndTheHeaderFollowEveryOperationOnColumns)
{
    const auto range = [this] {
        Settle();
        const QScrollBar *bar = list->horizontalScrollBar();
        return bar->maximum() + bar->pageStep();
    };
    list->SetColumnWidth(2, 1000);
    EXPECT_EQ(range(), kName + kLength + 1000);
    list->SetColumnFormat(1, kColumnHidden, 0);
    EXPECT_EQ(range(), kName + 1000);
    EXPECT_EQ(header->GetColumnRect(2).left(), kName);
    list->SetColumnFormat(1, 0, kColumnHidden);
    EXPECT_EQ(range(), kName + kLength + 1000);
    list->SetColumnOrderArray({2, 0, 1});
    Settle();
    EXPECT_EQ(header->GetColumnRect(0).left(), 1000);
    list->DeleteColumn(1);
    EXPECT_EQ(range(), kName + 1000);
    list->InsertColumn(L"New", kColumnDefaultFormat, 55);
    EXPECT_EQ(range(), kName + 1055);
}
