// All that the definition dialog asks of the host from its being closed to its being gone.
#include "tests/definition/journal_lines.h"
#include "tests/definition/manual_fixture.h"

using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;
using velmor::journalText;

namespace {

using Closing = ManualDefinitionTest;

std::string written(const char *name, const std::string &value)
{
    return std::string("CZEMCDictionaryPtr::dctWrite(ZEMX_LSD2, ZEMX_CATCH_DEFINE_") + name + ", " + value + ")";
}

std::string erased(AcDbObjectId id)
{
    return "AcDbObject::erase(" + journalText(id) + ", 1)";
}

TEST_F(Closing, SettingsComeFirstThenTheOutlinesThenTheEndAndTheHatchesMarksAndTemporaryDrawingWithTheDialog)
{
    JournalLines expected;
    velmor::Journal::instance().setRecording(true);
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D4"});
        dialog.check(268, true);
        pickPoint(dialog, 205, 5);
        dialog.type(220, "12.5");
        ASSERT_THAT(dialog.tempBoundaries(), SizeIs(2));
        ASSERT_THAT(hatches(), SizeIs(1));
        const std::string path =
            journalText(ZEMGis::CModuleConfiguration::Instance()->GetPath(L"Symbol")) + "CatchLabel.dwg";
        expected = {
            written("LAYERS", "1"),
            written("POPULATION", "12.5, 38"),
            written("SLOPE", "1, 38"),
            written("m_strBlockPath", path + ", 1"),
            written("m_strBlockName", "CatchLabel, 1"),
            written("m_bCatchmentType", "1, 60"),
            written("m_bHouseType", "0, 60"),
            written("m_bIndustrialType", "0, 60"),
            erased(dialog.tempBoundaries()[0]),
            erased(dialog.tempBoundaries()[1]),
            "CAdUiBaseDialog::EndDialog(2)",
            erased(hatches()[0]),
            "CCatchmentAreaManager::UnMarkAllCatchments(7)",
            "acedRedraw(4)",
            "acedSSFree(set 1)",
            "AcAxDocLock::~AcAxDocLock()",
        };
        velmor::Journal::instance().setRecording(true);
    });
    velmor::Journal::instance().setRecording(false);
    EXPECT_THAT(journalLines(), ElementsAreArray(expected));
    EXPECT_THAT(loosePolylines(), IsEmpty());
    EXPECT_THAT(hatches(), IsEmpty());
}

} // namespace
