// Which handlers of the definition dialog are guarded, under which key, and which run at any time.
#include "tests/definition/dialog_fixture.h"

#include "controls/WideText.h"
#include "definition/AreaNaming.h"

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using velmor::Journal;
using velmor::JournalEntry;

namespace {

class Guards : public DefinitionDialogTest {
protected:
    /// Clicks the control, whose handler is expected to stand under the key from its first call to its last.
    static void expectKey(CDialogUnderTest &dialog, int control, const char *key)
    {
        ASSERT_TRUE(dialog.isEnabled(control)) << control;
        Journal::instance().setRecording(true);
        dialog.click(control);
        Journal::instance().setRecording(false);
        const auto &entries = Journal::instance().entries();
        ASSERT_GT(entries.size(), 2u) << control;
        EXPECT_EQ(entries.front(), (JournalEntry{"SetActiveCommand", {key}})) << control;
        EXPECT_EQ(entries.back(), (JournalEntry{"~SetActiveCommand", {key}})) << control;
        EXPECT_THAT(entriesOf("SetActiveCommand"), SizeIs(1)) << control;
    }
};

TEST_F(Guards, EachGuardedHandlerStandsUnderItsKeyFromItsFirstCallToItsLast)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D2"});
        expectKey(dialog, 205, "CA_NEXT");
        expectKey(dialog, 204, "CA_PREV");
        m_session.answers().push({velmor::Answer::Enter{}});
        expectKey(dialog, 217, "CA_ZOOM");
        m_session.answers().push({velmor::Answer::Enter{}});
        expectKey(dialog, 3, "CA_HIDE");
        expectKey(dialog, 100, "CA_INFO");
        expectKey(dialog, 101, "CA_INFO");
        expectKey(dialog, 207, "CA_LAYER");
        expectKey(dialog, 246, "CA_CATALOG");
        expectKey(dialog, 219, "CA_PARAMS");
        dialog.type(215, "0.35");
        dialog.GetDlgItem(221)->setEnabled(true);
        expectKey(dialog, 221, "CA_SAVE");
    });
}

TEST_F(Guards, AutoRunsAlthoughACommandIsActive)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D3"});
        dialog.choose(257, 2);
        dialog.type(215, "0.35");
        const Notification::SetActiveCommand other(L"OTHER");
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(FormatCount(message(2007), 2)));
    });
    EXPECT_THAT(areas(), SizeIs(2));
}

TEST_F(Guards, TheZoomCheckIsWrittenAlthoughACommandIsActive)
{
    run([&](CDialogUnderTest &dialog) {
        const Notification::SetActiveCommand other(L"OTHER");
        dialog.click(296);
        int on = 0;
        EXPECT_NE(CModuleConfiguration::Instance()->GetGSValueInt(L"ZOOM_ONOFF", on), 0);
        EXPECT_EQ(on, 1);
    });
}

TEST_F(Guards, TheLabelCheckCountsAlthoughACommandIsActive)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        dialog.choose(257, 2);
        dialog.type(215, "0.35");
        ASSERT_TRUE(dialog.isChecked(274));
        const Notification::SetActiveCommand other(L"OTHER");
        dialog.click(274);
        EXPECT_FALSE(dialog.isChecked(274));
        Journal::instance().setRecording(true);
        dialog.click(290);
        EXPECT_THAT(entriesOf("CCatchmentAreaManager::CreateCA"), SizeIs(1));
        EXPECT_THAT(entriesOf("CCatchmentAreaManager::WriteCatchmentLabel"), IsEmpty());
        select(dialog, {L"D3"});
        dialog.click(274);
        EXPECT_TRUE(dialog.isChecked(274));
        Journal::instance().setRecording(true);
        dialog.click(290);
        EXPECT_THAT(entriesOf("CCatchmentAreaManager::WriteCatchmentLabel"), SizeIs(1));
    });
}

} // namespace
