// Which names may be given.
#include "overview/forest/NameRules.h"

#include <gtest/gtest.h>

TEST(Names, BlanksAtTheEndsAreNoPartOfAName)
{
    EXPECT_EQ(TrimmedName(L"  a b \t"), L"a b");
    EXPECT_EQ(TrimmedName(L"\u00a0x\u00a0"), L"x");
    EXPECT_EQ(TrimmedName(L" \t "), L"");
    EXPECT_EQ(TrimmedName(L""), L"");
}

TEST(Names, ANameThatAnotherOneHasIsDoubled)
{
    CNameList names;
    names.Add(L"a");
    names.Add(L"b");
    EXPECT_EQ(names.Check(L"a", L"b"), ENameTrouble::Doubled);
    EXPECT_EQ(names.Check(L"a", L"c"), ENameTrouble::None);
    EXPECT_EQ(names.Check(L"a", L"B"), ENameTrouble::None) << "upper and lower case are told apart";
}

TEST(Names, ItsOwnNameAnEntityMayKeepWhateverItIs)
{
    CNameList names;
    names.Add(L"twice");
    names.Add(L"twice");
    names.Add(L"");
    for (const wchar_t *name : {L"twice", L"", L"two\nlines"})
        EXPECT_EQ(names.Check(name, name), ENameTrouble::None);
    EXPECT_EQ(names.Check(L"other", L"twice"), ENameTrouble::Doubled);
}

TEST(Names, ARenamedEntityLeavesItsNameToOthersUnlessItStandsThereTwice)
{
    CNameList names;
    for (const wchar_t *name : {L"a", L"b", L"b"})
        names.Add(name);
    names.Rename(L"a", L"c");
    EXPECT_EQ(names.Check(L"b", L"a"), ENameTrouble::None);
    EXPECT_EQ(names.Check(L"b", L"c"), ENameTrouble::Doubled);
    names.Rename(L"b", L"d");
    EXPECT_EQ(names.Check(L"c", L"b"), ENameTrouble::Doubled);
    names.Rename(L"b", L"e");
    EXPECT_EQ(names.Check(L"c", L"b"), ENameTrouble::None);
}

TEST(Names, AnEmptyOneControlCharactersAndTooManyAreRefused)
{
    const CNameList names;
    EXPECT_EQ(names.Check(L"a", L""), ENameTrouble::Empty);
    for (const wchar_t *name : {L"a\nb", L"a\tb", L"\x7f", L"\u0085", L"a\u2028"})
        EXPECT_EQ(names.Check(L"x", name), ENameTrouble::ControlCharacter);
    EXPECT_EQ(names.Check(L"a", std::wstring(kLongestName, L'n')), ENameTrouble::None);
    EXPECT_EQ(names.Check(L"a", std::wstring(kLongestName + 1, L'n')), ENameTrouble::TooLong);
    EXPECT_EQ(names.Check(L"a", L"Ž 1/2 (š)"), ENameTrouble::None);
}
