#include "controls/Mnemonics.h"

#include <gtest/gtest.h>

namespace {

using Captions = std::vector<std::wstring>;

TEST(Mnemonics, TheFirstFreeLetterOfAWordIsMarked)
{
    EXPECT_EQ(WithMnemonics(Captions{L"Save data", L"Show zoom"}), (Captions{L"&Save data", L"Show &zoom"}));
}

TEST(Mnemonics, LettersInsideWordsServeWhenTheWordStartsAreTaken)
{
    EXPECT_EQ(WithMnemonics(Captions{L"Auto", L"Area"}), (Captions{L"&Auto", L"A&rea"}));
}

TEST(Mnemonics, AnEarlierCaptionMovesWhenALaterOneWouldGetNone)
{
    EXPECT_EQ(WithMnemonics(Captions{L"Tab", L"Tau", L"Ta"}), (Captions{L"Ta&b", L"T&au", L"&Ta"}));
}

TEST(Mnemonics, WhereLettersDoNotSufficeTheLaterCaptionGoesWithout)
{
    EXPECT_EQ(WithMnemonics(Captions{L"a b", L"b", L"a"}), (Captions{L"&a b", L"&b", L"a"}));
}

TEST(Mnemonics, UpperAndLowerCaseAreOneLetter)
{
    EXPECT_EQ(WithMnemonics(Captions{L"a", L"A"}), (Captions{L"&a", L"A"}));
}

TEST(Mnemonics, LettersWithDiacriticsAndSignsAreNotMarked)
{
    EXPECT_EQ(WithMnemonics(Captions{L"Širina", L"% 100"}), (Captions{L"Š&irina", L"% 100"}));
}

TEST(Mnemonics, ACaptionKeepsItsOwnMarkAndOthersKeepAway)
{
    EXPECT_EQ(WithMnemonics(Captions{L"Save", L"Clo&se"}), (Captions{L"S&ave", L"Clo&se"}));
}

TEST(Mnemonics, ADoubledAmpersandIsNoMark)
{
    EXPECT_EQ(WithMnemonics(Captions{L"Q&&A"}), (Captions{L"&Q&&A"}));
    EXPECT_EQ(WithoutMnemonic(L"Q&&&A"), L"Q&A");
}

TEST(Mnemonics, MarksCanBeTakenOut)
{
    EXPECT_EQ(WithoutMnemonic(L"S&ave data"), L"Save data");
    EXPECT_EQ(WithoutMnemonic(L""), L"");
}

} // namespace
