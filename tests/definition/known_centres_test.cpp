// Automatic definition beside what is defined already: a known centre is a double only when it is exactly equal.
#include "tests/definition/dialog_fixture.h"

#include "controls/WideText.h"
#include "definition/AreaNaming.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using velmor::Journal;

namespace {

/// A square in a square, their centres 0.0005 apart, with a section between the two and one in the inner one.
class KnownCentres : public DefinitionDialogTest {
protected:
    KnownCentres()
    {
        addBox(1000, 1000, 1100, 1100);
        addBox(1040.0005, 1040, 1060.0005, 1060);
        addSection(L"R", {1010, 1010}, {1020, 1010});
        addSection(L"I", {1045, 1050}, {1055, 1050});
    }
    /// Runs Auto over one section with the form of the island check.
    void runAuto(CDialogUnderTest &dialog, const wchar_t *section, bool islands)
    {
        select(dialog, {section});
        dialog.choose(257, 2);
        dialog.check(268, islands);
        dialog.check(274, false);
        dialog.type(215, "0.35");
        dialog.click(290);
    }
    QString count(int areas) { return ToQString(FormatCount(message(2007), areas)); }
};

TEST_F(KnownCentres, ARegionNearAStoredAreaIsTriedAndRefusedByTheSave)
{
    run([&](CDialogUnderTest &dialog) { runAuto(dialog, L"R", false); });
    ASSERT_THAT(areas(), SizeIs(1));
    for (const bool islands : {false, true}) {
        alerts().clear();
        run([&](CDialogUnderTest &dialog) {
            runAuto(dialog, L"I", islands);
            EXPECT_EQ(dialog.text(281), count(1)) << islands;
            EXPECT_THAT(loosePolylines(), SizeIs(1)) << "an accepted boundary stays " << islands;
        });
        EXPECT_THAT(alerts(), ElementsAre(message(2005))) << islands;
        EXPECT_THAT(areas(), SizeIs(1)) << islands;
    }
}

TEST_F(KnownCentres, TheSameHoldsForAnAreaThatThisRunOfTheDialogSaved)
{
    run([&](CDialogUnderTest &dialog) {
        runAuto(dialog, L"R", false);
        EXPECT_EQ(dialog.text(281), count(1));
        runAuto(dialog, L"I", false);
        EXPECT_EQ(dialog.text(281), count(1));
        EXPECT_THAT(alerts(), ElementsAre(message(2005)));
        // Equal to the last digit: nothing is tried, so nothing is refused.
        alerts().clear();
        runAuto(dialog, L"R", false);
        EXPECT_EQ(dialog.text(281), count(0));
        EXPECT_THAT(alerts(), IsEmpty());
        EXPECT_THAT(loosePolylines(), IsEmpty()) << "a double goes at once";
    });
    EXPECT_THAT(areas(), SizeIs(1));
}

} // namespace
