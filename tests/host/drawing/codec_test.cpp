#include "host/drawing/dxf/TextCodec.h"

#include <cstring>
#include <gmock/gmock.h>
#include <random>

using velmor::TextCodec;

namespace {

TextCodec old(std::string_view codePage)
{
    return TextCodec::forDrawing("AC1015", codePage);
}

TextCodec utf8()
{
    return TextCodec::forDrawing("AC1027", "ANSI_1252");
}

} // namespace

TEST(TextCodec, TheVersionDecidesBetweenPageAndUtf8)
{
    EXPECT_EQ(TextCodec::forDrawing("AC1018", "ANSI_1250").name(), "ANSI_1250");
    EXPECT_EQ(TextCodec::forDrawing("AC1021", "ANSI_1250").name(), "UTF-8");
    EXPECT_EQ(TextCodec::forDrawing("AC1032", "").name(), "UTF-8");
    EXPECT_EQ(TextCodec::forDrawing("", "").name(), "ANSI_1252");
    EXPECT_EQ(TextCodec::forDrawing("AC1009", "dos850").name(), "DOS850");
}

TEST(TextCodec, EachPageReadsAndWritesItsLetters)
{
    struct Row {
        const char *page;
        const char *bytes;
        const wchar_t *text;
    };
    const Row rows[] = {
        {"ANSI_1250", "\xE8\xE6\x9E\xB9\xF0 \x8A", L"\u010D\u0107\u017E\u0105\u0111 \u0160"},
        {"ansi_1250", "\xE8", L"\u010D"},
        {"ANSI_1251", "\xCA\xE0\xED", L"\u041A\u0430\u043D"},
        {"ANSI_1252",
         "Stra\xDF"
         "e \x80",
         L"Stra\u00DFe \u20AC"},
        {"ANSI_1253", "\xC1", L"\u0391"},
        {"ANSI_1254", "\xFE", L"\u015F"},
        {"ANSI_1255", "\xE0", L"\u05D0"},
        {"ANSI_1256", "\xC7", L"\u0627"},
        {"ANSI_1257", "\xE0", L"\u0105"},
        {"ANSI_1258", "\xFE", L"\u20AB"},
        {"ANSI_874", "\xA1", L"\u0E01"},
        {"DOS437", "\x81", L"\u00FC"},
        {"DOS850", "\xB5", L"\u00C1"},
        {"DOS852", "\x9F", L"\u010D"},
        {"dos866", "\x80", L"\u0410"},
        {"ISO8859-2", "\xE8", L"\u010D"},
        {"MACINTOSH", "\x8A", L"\u00E4"},
        {"ANSI_932", "\x93\xFA\x96\x7B \xB1", L"\u65E5\u672C \uFF71"},
        {"ANSI_936", "\xD6\xD0", L"\u4E2D"},
        {"GB2312", "\xD6\xD0", L"\u4E2D"},
        {"ANSI_949", "\xC7\xD1", L"\uD55C"},
        {"ANSI_950", "\xA4\xA4", L"\u4E2D"},
        {"BIG5", "\xA4\xA4", L"\u4E2D"},
    };
    for (const Row &row : rows) {
        const TextCodec codec = old(row.page);
        EXPECT_TRUE(codec.isKnown()) << row.page;
        EXPECT_EQ(codec.decode(row.bytes), row.text) << row.page;
        EXPECT_EQ(codec.encode(row.text), row.bytes) << row.page;
    }
}

TEST(TextCodec, AnUnknownPageIsSaidAndReadAs1252)
{
    for (const char *page : {"ANSI_99999", "nonsense", "ISO8859"}) {
        EXPECT_FALSE(old(page).isKnown()) << page;
        EXPECT_EQ(old(page).decode("\xDF"), L"\u00DF") << page;
    }
    EXPECT_TRUE(old("").isKnown());
    EXPECT_EQ(old("").decode("\xDF"), L"\u00DF");
}

TEST(TextCodec, ASecondByteThatLooksLikeABackslashOrCaretIsNoEscape)
{
    // 0x5C and 0x5E are second bytes of these characters.
    EXPECT_EQ(old("ANSI_932").decode("\x95\\U+0041"), std::wstring(1, L'\u8868') + L"U+0041");
    EXPECT_EQ(old("ANSI_950").decode("\xA5^J"), std::wstring(1, old("ANSI_950").decode("\xA5^")[0]) + L"J");
    EXPECT_EQ(old("ANSI_932").decode("\\U+0041"), L"A");
}

TEST(TextCodec, EscapesByNumberAreReadInEveryEncoding)
{
    for (const TextCodec &codec : {old("ANSI_1252"), old("ANSI_932"), utf8()}) {
        EXPECT_EQ(codec.decode("\\U+010Cakovec \\U+2205"), L"\u010Cakovec \u2205");
        EXPECT_EQ(codec.decode("\\U+D83D\\U+DE00"), L"\U0001F600");
        EXPECT_EQ(codec.decode("\\M+193FA"), L"\u65E5");
        EXPECT_EQ(codec.decode("\\M+2A4A4"), L"\u4E2D");
        EXPECT_EQ(codec.decode("\\M+3C7D1"), L"\uD55C");
        EXPECT_EQ(codec.decode("\\M+5D6D0"), L"\u4E2D");
    }
}

TEST(TextCodec, WhatOnlyLooksLikeAnEscapeStaysText)
{
    for (const char *text : {"\\U+12", "\\U+12G4", "\\U+", "\\", "\\P", "\\U+D83D", "\\U+DE00", "\\U+0000", "\\M+693FA",
                             "\\M+1FFFF", "C:\\Users\\M+"}) {
        EXPECT_EQ(utf8().decode(text), std::wstring(text, text + std::strlen(text))) << text;
        EXPECT_EQ(utf8().encode(utf8().decode(text)), text);
    }
}

TEST(TextCodec, ACharacterThatThePageLacksIsWrittenByNumber)
{
    EXPECT_EQ(old("ANSI_1252").encode(L"\u010Cakovec"), "\\U+010Cakovec");
    EXPECT_EQ(old("ANSI_1250").encode(L"\U0001F600"), "\\U+D83D\\U+DE00");
    EXPECT_EQ(utf8().encode(L"\u010C\U0001F600"), "\xC4\x8C\xF0\x9F\x98\x80");
}

TEST(TextCodec, ControlCharactersAndTheCaretAreEscaped)
{
    EXPECT_EQ(utf8().decode("one^Jtwo^Ithree^ four"), L"one\ntwo\tthree^four");
    EXPECT_EQ(utf8().encode(L"one\ntwo\tthree^four"), "one^Jtwo^Ithree^ four");
    EXPECT_EQ(utf8().decode("x^2 and ^"), L"x^2 and ^");
}

TEST(TextCodec, AZeroByteSurvivesAndAZeroCharacterIsDropped)
{
    const std::string bytes("a\0b", 3);
    EXPECT_EQ(utf8().encode(utf8().decode(bytes)), bytes);
    EXPECT_EQ(old("ANSI_1250").encode(old("ANSI_1250").decode(bytes)), bytes);
    EXPECT_EQ(utf8().encode(std::wstring(L"a\0b", 3)), "ab");
    EXPECT_EQ(utf8().decode("^@"), L"^@");
}

TEST(TextCodec, BytesThatMeanNothingSurvive)
{
    struct Row {
        TextCodec codec;
        std::string bytes;
    };
    const Row rows[] = {
        {old("ANSI_1252"), "a\x81z"},
        {old("ANSI_932"), "a\xFD"},
        {old("ANSI_932"), "cut \x93"},
        {old("ANSI_936"), "\xFF\xFE"},
        {utf8(), "caf\xE9 bar"},
        {utf8(), "cut \xE2\x82"},
        {utf8(), "\xC0\x80"},
        {utf8(), "\xED\xA0\x80"},
        {utf8(), "\xF5\x80\x80\x80"},
        {utf8(), "\xF4\x90\x80\x80"},
        {utf8(), std::string("\xE0\x80\x80")},
    };
    for (const Row &row : rows)
        EXPECT_EQ(row.codec.encode(row.codec.decode(row.bytes)), row.bytes) << row.bytes;
}

TEST(TextCodec, AnyBytesWithoutEscapesComeBackTheSame)
{
    std::mt19937 random(4711);
    std::size_t withHighBytes = 0;
    const TextCodec codecs[] = {old("ANSI_1250"), old("ANSI_1258"), old("ANSI_936"),
                                old("ANSI_949"),  old("DOS852"),    utf8()};
    for (int draw = 0; draw < 4000; ++draw) {
        std::string bytes;
        for (auto length = random() % 12; length > 0; --length) {
            const char c = static_cast<char>(0x20 + random() % 0xE0);
            bytes.push_back(c == '\\' || c == '^' ? 'x' : c);
        }
        withHighBytes +=
            std::any_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<signed char>(c) < 0; });
        // These two pages have some characters twice; the character stays, its bytes may change.
        for (const TextCodec &codec : {old("ANSI_950"), old("ANSI_932")})
            ASSERT_EQ(codec.decode(codec.encode(codec.decode(bytes))), codec.decode(bytes)) << codec.name();
        for (const TextCodec &codec : codecs)
            ASSERT_EQ(codec.encode(codec.decode(bytes)), bytes) << codec.name() << " seed 4711 draw " << draw;
    }
    EXPECT_GT(withHighBytes, 2000u);
}

TEST(TextCodec, AnyTextComesBackTheSameThroughEveryPage)
{
    std::mt19937 random(815);
    for (int draw = 0; draw < 2000; ++draw) {
        std::wstring text;
        for (auto length = 1 + random() % 10; length > 0; --length) {
            const auto kind = random() % 4;
            const std::uint32_t limit = kind == 0 ? 0x80 : kind == 1 ? 0x400 : kind == 2 ? 0xD7FF : 0x10FFFF;
            const std::uint32_t c = 1 + random() % (limit - 1);
            text.push_back(c == '\\' || (c >= 0xD800 && c <= 0xDFFF) ? L'x' : static_cast<wchar_t>(c));
        }
        for (const TextCodec &codec : {old("ANSI_1250"), old("ANSI_932"), utf8()})
            ASSERT_EQ(codec.decode(codec.encode(text)), text) << codec.name() << " seed 815 draw " << draw;
    }
}
