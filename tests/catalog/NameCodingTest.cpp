#include "catalog/NameCoding.h"

#include <gtest/gtest.h>

namespace {

const CAnsiCodePage &Page()
{
    return CAnsiCodePage::Of(1250);
}

std::wstring Encode(std::wstring_view name)
{
    return EncodeName(name, Page());
}

/// The bytes that the text stands for.
std::string Decode(std::wstring_view text)
{
    return Page().ToBytes(DecodeName(text, Page()));
}

std::string Byte(int value)
{
    return {static_cast<char>(value)};
}

} // namespace

// --- Code pages

TEST(AnsiCodePage, EveryByteOfEveryPageGivesItselfBack)
{
    for (const int number : {1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258, 437, 857, 874}) {
        const CAnsiCodePage &page = CAnsiCodePage::Of(number);
        EXPECT_EQ(page.GetNumber(), number);
        for (int byte = 0; byte < 256; ++byte)
            EXPECT_EQ(page.ToBytes(page.ToWide(Byte(byte))), Byte(byte)) << number << ": " << byte;
        for (int byte = 0; byte < 128; ++byte)
            EXPECT_EQ(page.ToWide(Byte(byte)), std::wstring(1, static_cast<wchar_t>(byte))) << number << ": " << byte;
    }
}

TEST(AnsiCodePage, LettersFollowThePage)
{
    EXPECT_EQ(CAnsiCodePage::Of(1250).ToWide("\x8A\x9A\xD0\xF0\xC8\xE8\xC6\xE6\x8E\x9E"), L"ŠšĐđČčĆćŽž");
    EXPECT_EQ(CAnsiCodePage::Of(1250).ToBytes(L"ŠšĐđČčĆćŽž"), "\x8A\x9A\xD0\xF0\xC8\xE8\xC6\xE6\x8E\x9E");
    EXPECT_EQ(CAnsiCodePage::Of(1252).ToWide("\xE8"), L"è");
    EXPECT_EQ(CAnsiCodePage::Of(1251).ToWide("\xE8"), L"и");
    EXPECT_EQ(CAnsiCodePage::Of(1255).ToWide("\xE8"), L"ט") << "a page with combining marks";
}

TEST(AnsiCodePage, AByteThatThePageLeavesFreeIsTheCharacterOfItsNumber)
{
    EXPECT_EQ(CAnsiCodePage::Of(1250).ToWide("\x81"), L"\x81");
    EXPECT_EQ(CAnsiCodePage::Of(1253).ToWide("\xAA"), L"\xAA");
    EXPECT_EQ(CAnsiCodePage::Of(857).ToWide("\xE5\xD5"), (std::wstring{0xD5, 0xDCD5}))
        << "unless the page has that one";
}

TEST(AnsiCodePage, ACharacterThatThePageLacksBecomesAQuestionMark)
{
    EXPECT_EQ(Page().ToBytes(L"Aāи漢\U0001F600B"), "A????B");
}

TEST(AnsiCodePage, AByteThatWasNoCharacterInTheFileIsThatByte)
{
    EXPECT_EQ(Page().ToBytes(std::wstring{0xDC8A, 0xDCFF}), "\x8A\xFF");
    EXPECT_EQ(Page().ToBytes(std::wstring{0xDC7F, 0xDD00}), "??");
}

TEST(AnsiCodePage, ANumberThatIsNoPageGivesTheStandardPage)
{
    for (const int number : {0, -1, 1, 37, 65001, 1259, 99999})
        EXPECT_EQ(CAnsiCodePage::Of(number).GetNumber(), 1250) << number;
    EXPECT_EQ(CAnsiCodePage::Of(852).GetNumber(), 852);
}

// --- Encoding, by the rows of its table

TEST(EncodeName, AnEqualsSignIsWrittenAsThreeD)
{
    EXPECT_EQ(Encode(L"a=b"), L"a=3Db");
    EXPECT_EQ(Encode(L"=="), L"=3D=3D");
}

TEST(EncodeName, AByteBelow128IsWrittenAsItself)
{
    for (int byte = 0; byte < 128; ++byte) {
        const std::wstring text(1, static_cast<wchar_t>(byte));
        if (byte != '=') {
            EXPECT_EQ(Encode(text), text) << byte;
        }
    }
}

TEST(EncodeName, AHighByteIsWidenedWithItsSignAndWrittenInThreeGroups)
{
    EXPECT_EQ(Encode(L"Š"), L"=EF=BE=8A");
    EXPECT_EQ(Encode(L"č"), L"=EF=BF=A8");
    EXPECT_EQ(Encode(L"€"), L"=EF=BE=80") << "the lowest";
    EXPECT_EQ(Encode(L"˙"), L"=EF=BF=BF") << "the highest";
    EXPECT_EQ(Encode(L"Rahli šljunak"), L"Rahli =EF=BE=9Aljunak");
    for (int byte = 128; byte < 256; ++byte) {
        const std::wstring text = Encode(Page().ToWide(Byte(byte)));
        EXPECT_EQ(text.size(), 9u) << byte;
        EXPECT_EQ(text.substr(0, 6), byte < 0xC0 ? L"=EF=BE" : L"=EF=BF") << byte;
    }
}

TEST(EncodeName, ACharacterThatThePageLacksIsWrittenAsAQuestionMark)
{
    EXPECT_EQ(Encode(L"ā"), L"?");
}

// --- Decoding, by the rows of its table

TEST(DecodeName, OutsideOfAnEqualsSignEverythingIsCopied)
{
    EXPECT_EQ(DecodeName(L"Kosi krov 3D", Page()), L"Kosi krov 3D");
    EXPECT_EQ(DecodeName(L"Čađavi žljeb", Page()), L"Čađavi žljeb") << "letters of the page as well";
    EXPECT_EQ(DecodeName(L"", Page()), L"");
}

TEST(DecodeName, AGroupBelow127IsThatByte)
{
    for (int byte = 0; byte < 127; ++byte) {
        wchar_t group[4];
        std::swprintf(group, 4, L"=%02X", byte);
        EXPECT_EQ(Decode(std::wstring(L"a") + group + L"b"), "a" + Byte(byte) + "b") << byte;
    }
}

TEST(DecodeName, A127AndOtherBytesThatLeadNothingLoseOnlyTheEqualsSign)
{
    for (int byte = 127; byte < 256; ++byte) {
        if (byte >= 192 && byte <= 253)
            continue;
        wchar_t digits[3];
        std::swprintf(digits, 3, L"%02X", byte);
        const std::string kept{static_cast<char>(digits[0]), static_cast<char>(digits[1])};
        EXPECT_EQ(Decode(std::wstring(L"a=") + digits + L"b"), "a" + kept + "b") << byte;
    }
}

TEST(DecodeName, A192To223LeadsTwoGroups)
{
    EXPECT_EQ(Decode(L"=C0=80x"), Byte(0) + "x");
    EXPECT_EQ(Decode(L"=C2=8Ax"), Byte(0x8A) + "x");
    EXPECT_EQ(Decode(L"=DF=BFx"), Byte(0xFF) + "x") << "0x7FF: only the low byte counts";
}

TEST(DecodeName, A224To239LeadsThreeGroups)
{
    EXPECT_EQ(Decode(L"=E0=80=8Ax"), Byte(0x0A) + "x");
    EXPECT_EQ(Decode(L"=EF=BE=8Ax"), Byte(0x8A) + "x");
    EXPECT_EQ(Decode(L"=EF=BF=BFx"), Byte(0xFF) + "x");
}

TEST(DecodeName, A240To247LeadsFourGroups)
{
    EXPECT_EQ(Decode(L"=F0=80=82=8Ax"), Byte(0x8A) + "x");
    EXPECT_EQ(Decode(L"=F7=BF=BF=BFx"), Byte(0xFF) + "x");
}

TEST(DecodeName, A248To251LeadsFiveGroups)
{
    EXPECT_EQ(Decode(L"=F8=80=80=82=8Ax"), Byte(0x8A) + "x");
    EXPECT_EQ(Decode(L"=FB=BF=BF=BF=BFx"), Byte(0xFF) + "x");
}

TEST(DecodeName, A252And253LeadSixGroups)
{
    EXPECT_EQ(Decode(L"=FC=80=80=80=82=8Ax"), Byte(0x8A) + "x");
    EXPECT_EQ(Decode(L"=FD=BF=BF=BF=BF=BFx"), Byte(0xFF) + "x");
}

TEST(DecodeName, TheSignBeforeALaterGroupIsNotLookedAt)
{
    EXPECT_EQ(Decode(L"=EF?BE 8Ax"), Byte(0x8A) + "x");
    EXPECT_EQ(Decode(L"=C2x8Ax"), Byte(0x8A) + "x");
}

TEST(DecodeName, OnlyDigitsAndCapitalAToFCountAsDigits)
{
    EXPECT_EQ(Decode(L"=4z"), Byte(0x40)) << "any other character counts as 0";
    EXPECT_EQ(Decode(L"=z4"), Byte(0x04));
    EXPECT_EQ(Decode(L"=3d"), Byte(0x30)) << "small letters too";
    EXPECT_EQ(Decode(L"=4G"), Byte(0x40));
    EXPECT_EQ(Decode(L"=ef=be=8a"), Byte(0) + Byte(0) + "8a") << "0, 0 and 128, which leads nothing";
    EXPECT_EQ(Decode(L"=C2=z9"), Byte((2 * 64 + 0x09 - 128) & 0xFF)) << "below 128 wraps";
}

TEST(DecodeName, AnUnfinishedGroupEndsTheName)
{
    for (const wchar_t *text : {L"ab=C2=8", L"ab=C2", L"ab=EF=BE=8", L"ab=EF=BE", L"ab=F0=80=82=8", L"ab=F8=80=80=82=8",
                                L"ab=FC=80=80=80=82=8", L"ab=EF=B"})
        EXPECT_EQ(Decode(text), "ab") << testing::PrintToString(text);
}

TEST(DecodeName, AnEqualsSignInTheLastTwoCharactersEndsTheName)
{
    EXPECT_EQ(Decode(L"ab="), "ab");
    EXPECT_EQ(Decode(L"ab=4"), "ab");
    EXPECT_EQ(Decode(L"ab=8"), "ab");
    EXPECT_EQ(Decode(L"ab=41"), "abA");
}

// --- Both directions

TEST(NameCoding, ANameWithAnEqualsSignSurvivesARoundTrip)
{
    EXPECT_EQ(DecodeName(Encode(L"k = 0.3=D"), Page()), L"k = 0.3=D");
}

TEST(NameCoding, AHighByteSurvivesARoundTripInTheSamePageOnly)
{
    EXPECT_EQ(DecodeName(Encode(L"čađ"), Page()), L"čađ");
    EXPECT_EQ(DecodeName(Encode(L"čađ"), CAnsiCodePage::Of(1252)), L"èað");
}

TEST(NameCoding, EveryTextOfThePageSurvivesARoundTrip)
{
    std::string all;
    for (int first = 0; first < 256; ++first)
        for (int second = 0; second < 256; ++second)
            all += Byte(first) + Byte(second);
    for (int number = 1250; number <= 1258; ++number) {
        const CAnsiCodePage &page = CAnsiCodePage::Of(number);
        const std::wstring name = page.ToWide(all);
        const std::wstring coded = EncodeName(name, page);
        EXPECT_EQ(DecodeName(coded, page), name) << number;
        for (const wchar_t c : coded)
            ASSERT_LT(c, 128) << number;
    }
}
