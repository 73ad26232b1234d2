// What the review dialog shows in the drawing: highlight, marks, zoom, pattern and scale; and labels.
#include "tests/definition/journal_lines.h"
#include "tests/review/review_fixture.h"

#include "host/drawing/Transient.h"

#include <QListWidget>

using namespace ZEMGis;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using velmor::journalText;

namespace {

constexpr const char *kFlush = "AcTransactionManager::flushGraphics()";
constexpr const char *kUpdate = "acedUpdateDisplay()";

class Highlight : public ReviewDialogTest {
protected:
    Highlight()
    {
        addSection(L"D1", {0, 5}, {10, 5});
        addArea(L"A1", 1, 0, 0.5, 100, {{L"D1", 1.0}});
        addArea(L"A2", 2, 20);
        addArea(L"A3", 4, 40);
    }
    std::vector<std::wstring> marked()
    {
        std::vector<std::wstring> guids;
        for (const auto &[guid, mark] : drawing().component<velmor::TransientGraphics>().marks())
            guids.push_back(guid);
        std::ranges::sort(guids);
        return guids;
    }
    const velmor::TransientMark &markOf(const std::wstring &guid)
    {
        return drawing().component<velmor::TransientGraphics>().marks().at(guid);
    }
    std::vector<AcDbObjectId> labels()
    {
        std::vector<AcDbObjectId> ids;
        for (AcDbEntity *entity : drawing().modelSpace().entities()) {
            if (!entity->isErased() && entity->layer() == L"VELMOR_LABELS")
                ids.push_back(entity->objectId());
        }
        return ids;
    }
    static std::vector<std::string> zooms(const JournalLines &lines)
    {
        std::vector<std::string> found;
        for (const std::string &line : lines) {
            if (line.starts_with("CZEMCEdit::zoom("))
                found.push_back(line);
        }
        return found;
    }
    static std::string colour() { return std::to_string(CModuleConfiguration::Instance()->GetHighlightColor()); }
};

TEST_F(Highlight, TheAreaInFocusIsMarkedWhileNothingIsChecked)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(marked(), ElementsAre(L"{A1}"));
        EXPECT_EQ(markOf(L"{A1}").pattern, L"ANSI31");
        EXPECT_EQ(markOf(L"{A1}").angle, 0.7853981633974483);
        dialog.select(L"A2");
        EXPECT_THAT(marked(), ElementsAre(L"{A2}"));
    });
    EXPECT_THAT(marked(), IsEmpty());
}

TEST_F(Highlight, WithCheckedAreasTheAreaInFocusHasNoMarkButStaysHighlighted)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"A2");
        dialog.tick(L"A3");
        EXPECT_THAT(marked(), ElementsAre(L"{A2}", L"{A3}"));
        EXPECT_THAT(dialog.HighlightIds(), Contains(areaNamed(L"A1")->GetObjectId()));
        dialog.tick(L"A1");
        EXPECT_THAT(marked(), ElementsAre(L"{A1}", L"{A2}", L"{A3}"));
        for (const wchar_t *name : {L"A1", L"A2", L"A3"})
            dialog.tick(name, false);
        EXPECT_THAT(marked(), ElementsAre(L"{A1}"));
    });
}

TEST_F(Highlight, WithTheZoomOffTheViewStays)
{
    run([&](CReviewUnderTest &dialog) { EXPECT_THAT(zooms(recorded([&] { dialog.select(L"A2"); })), IsEmpty()); });
}

TEST_F(Highlight, WithTheZoomOnTheViewGoesToTheOldSelectionFirstAndThenToTheNewOne)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.type(218, "1.5");
        EXPECT_THAT(recorded([&] { dialog.click(296); }), IsEmpty()); // the check alone does nothing
        // Off in the event, off in what applies it, on at its end.
        EXPECT_THAT(zooms(recorded([&] { dialog.select(L"A2"); })),
                    ElementsAre("CZEMCEdit::zoom(2, 1.5, -2.5, -2.5, 12.5, 12.5)",
                                "CZEMCEdit::zoom(2, 1.5, -2.5, -2.5, 12.5, 12.5)",
                                "CZEMCEdit::zoom(1, 1.5, 17.5, -2.5, 32.5, 12.5)"));
        const JournalLines lines = recorded([&] { dialog.click(1); });
        EXPECT_THAT(zooms(lines), ElementsAre("CZEMCEdit::zoom(1, 1.5, 17.5, -2.5, 32.5, 12.5)"));
    });
}

TEST_F(Highlight, TheZoomComesBehindTheMarksAndBeforeTheDisplay)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"A2");
        dialog.click(296);
        dialog.type(218, "2");
        const std::string entity = journalText(areaNamed(L"A2")->GetObjectId());
        EXPECT_THAT(recorded([&] { dialog.type(352, "3"); }),
                    ElementsAre("AcDbEntity::highlight(" + entity + ")",
                                "CCatchmentArea::Mark({A2}, " + colour() + ", 3, 0.7853981633974483, ANSI31, 0)",
                                "CZEMCEdit::zoom(1, 2, 15, -5, 35, 15)", kFlush, kUpdate));
    });
}

TEST_F(Highlight, AnErasedEntityIsPassedOver)
{
    run([&](CReviewUnderTest &dialog) {
        {
            const CZEMCEntityPtr section(network().sectionByName(L"D1")->GetObjectId(), AcDb::kForWrite);
            ASSERT_TRUE(section.isOpen());
            section->erase(true);
        }
        const std::string entity = journalText(areaNamed(L"A1")->GetObjectId());
        EXPECT_THAT(recorded([&] { dialog.click(1); }),
                    testing::IsSupersetOf({std::string("AcDbEntity::unhighlight(") + entity + ")",
                                           std::string("CAdUiBaseDialog::EndDialog(1)")}));
    });
}

TEST_F(Highlight, EachChangeOfTheScaleBuildsThePreviewAnew)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.type(352, "2.5");
        EXPECT_EQ(markOf(L"{A1}").scale, 2.5);
        dialog.type(352, "0.25");
        EXPECT_EQ(markOf(L"{A1}").scale, 0.25);
    });
}

TEST_F(Highlight, ThePatternDialogStartsFromItsFirstPatternWhateverTheTextIsAndItsChoiceIsShown)
{
    onNested([](CAdUiBaseDialog &dialog) {
        auto *list = dialog.findChild<QListWidget *>();
        ASSERT_NE(list, nullptr);
        EXPECT_EQ(list->currentItem()->text(), "ANSI31");
        list->setCurrentItem(list->findItems("ANSI37", Qt::MatchExactly).value(0));
        dialog.Control<QAbstractButton>(CAdUiBaseDialog::kOk)->click();
    });
    run([&](CReviewUnderTest &dialog) {
        dialog.type(353, "NET");
        const JournalLines lines = recorded([&] { dialog.click(253); });
        EXPECT_EQ(dialog.text(353), "ANSI37");
        ASSERT_GT(lines.size(), 3u);
        EXPECT_EQ(lines[0], "SetActiveCommand(CA_HATCH)");
        EXPECT_EQ(lines[1], "acedHatchPalletteDialog(ANSI31, 1)");
        EXPECT_EQ(lines.back(), "~SetActiveCommand(CA_HATCH)");
        EXPECT_THAT(lines, Contains("CCatchmentArea::Mark({A1}, " + colour() + ", 1, 0.7853981633974483, ANSI37, 0)"));
        EXPECT_EQ(markOf(L"{A1}").pattern, L"ANSI37");
    });
}

TEST_F(Highlight, ACancelledPatternDialogKeepsTheTextAndBuildsThePreviewAnewAllTheSame)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.type(353, "NET");
        const JournalLines lines = recorded([&] { dialog.click(253); });
        EXPECT_EQ(dialog.text(353), "NET");
        EXPECT_THAT(lines, Contains("CCatchmentArea::Mark({A1}, " + colour() + ", 1, 0.7853981633974483, NET, 0)"));
        EXPECT_EQ(markOf(L"{A1}").pattern, L"NET");
    });
}

TEST_F(Highlight, NothingOfThePreviewStandsInTheDrawing)
{
    const auto count = [&] { return drawing().modelSpace().entities().size(); };
    const auto before = count();
    run([&](CReviewUnderTest &dialog) {
        dialog.click(124);
        dialog.select(L"A2");
        dialog.type(352, "2");
        EXPECT_EQ(count(), before);
    });
    EXPECT_EQ(count(), before);
}

// --- Labels -----------------------------------------------------------------------------------------------------

TEST_F(Highlight, ALabelIsWrittenForTheAreaInFocusByTheChosenType)
{
    run([&](CReviewUnderTest &dialog) {
        auto *combo = dialog.Control<QComboBox>(135);
        combo->setCurrentIndex(1);
        EXPECT_THAT(
            recorded([&] { dialog.click(252); }),
            ElementsAre("SetActiveCommand(CA_LABEL)", "CCatchmentAreaManager::GetCatchmentAreaByGuid({A1})",
                        "CCatchmentAreaManager::WriteCatchmentLabel({A1}, " + combo->itemText(1).toStdString() + ")",
                        kFlush, kUpdate, "~SetActiveCommand(CA_LABEL)"));
        EXPECT_THAT(labels(), Not(IsEmpty()));
    });
}

TEST_F(Highlight, LabelsAreWrittenAndErasedForTheCheckedAreasInTheStoresOrder)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"A3");
        dialog.tick(L"A2");
        const std::string type = dialog.text(135).toStdString();
        EXPECT_THAT(recorded([&] { dialog.click(252); }),
                    ElementsAre("SetActiveCommand(CA_LABEL)", "CCatchmentAreaManager::GetCatchmentAreaByGuid({A2})",
                                "CCatchmentAreaManager::WriteCatchmentLabel({A2}, " + type + ")",
                                "CCatchmentAreaManager::GetCatchmentAreaByGuid({A3})",
                                "CCatchmentAreaManager::WriteCatchmentLabel({A3}, " + type + ")", kFlush, kUpdate,
                                "~SetActiveCommand(CA_LABEL)"));
        const auto written = labels().size();
        EXPECT_GE(written, 2u);
        dialog.tick(L"A2", false);
        EXPECT_THAT(recorded([&] { dialog.click(255); }),
                    ElementsAre("SetActiveCommand(CA_ERASE_LAB)", "CCatchmentAreaManager::GetCatchmentAreaByGuid({A3})",
                                "CCatchmentAreaManager::DeleteCatchmentLabel({A3})", kFlush, kUpdate,
                                "~SetActiveCommand(CA_ERASE_LAB)"));
        EXPECT_EQ(labels().size(), written / 2);
    });
}

TEST_F(Highlight, WithNoLabelTypeTheEmptyOneIsHandedOn)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.Control<QComboBox>(135)->clear();
        EXPECT_THAT(recorded([&] { dialog.click(252); }),
                    Contains("CCatchmentAreaManager::WriteCatchmentLabel({A1}, null)"));
        EXPECT_THAT(labels(), IsEmpty());
    });
}

class EmptyHighlight : public ReviewDialogTest {};

TEST_F(EmptyHighlight, WithoutAnyAreaTheLabelCommandsOnlyRefreshTheDisplay)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(recorded([&] { dialog.click(252); }),
                    ElementsAre("SetActiveCommand(CA_LABEL)", kFlush, kUpdate, "~SetActiveCommand(CA_LABEL)"));
        EXPECT_THAT(recorded([&] { dialog.click(255); }),
                    ElementsAre("SetActiveCommand(CA_ERASE_LAB)", kFlush, kUpdate, "~SetActiveCommand(CA_ERASE_LAB)"));
    });
}

// --- The label's block --------------------------------------------------------------------------------------------

TEST_F(Highlight, TheLabelDialogsBlockAndAttributesReplaceThoseOfTheStart)
{
    onNested([](CAdUiBaseDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle().toStdWString(), message(2013));
        dialog.Control<QAbstractButton>(CAdUiBaseDialog::kOk)->click();
    });
    run([&](CReviewUnderTest &dialog) {
        const JournalLines lines = recorded([&] { dialog.clickHidden(254); });
        EXPECT_EQ(lines.front(), "SetActiveCommand(CA_DEFINE_LAB)");
        EXPECT_EQ(lines.back(), "~SetActiveCommand(CA_DEFINE_LAB)");
        EXPECT_THAT(dialog.LabelAttributes(), SizeIs(4));
        EXPECT_FALSE(dialog.LabelBlock().isNull());
        // Labels go by the catalogue all the same.
        EXPECT_THAT(recorded([&] { dialog.click(252); }), Contains("CCatchmentAreaManager::WriteCatchmentLabel({A1}, " +
                                                                   dialog.text(135).toStdString() + ")"));
    });
}

TEST_F(Highlight, ACancelledLabelDialogLeavesBlockAndAttributes)
{
    bool opened = false;
    onNested([&](CAdUiBaseDialog &) { opened = true; });
    run([&](CReviewUnderTest &dialog) {
        const CStringArray attributes = dialog.LabelAttributes();
        const AcDbObjectId block = dialog.LabelBlock();
        dialog.clickHidden(254);
        EXPECT_TRUE(opened);
        EXPECT_EQ(dialog.LabelAttributes(), attributes);
        EXPECT_EQ(dialog.LabelBlock(), block);
    });
}

// --- Guards -----------------------------------------------------------------------------------------------------

TEST_F(Highlight, WhatIsGuardedDoesNothingAtAllUnderAnotherCommand)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"A2");
        for (const int control : {209, 253, 252, 255, 254}) {
            ASSERT_TRUE(dialog.isEnabled(control)) << control;
            const Notification::SetActiveCommand other(L"OTHER");
            EXPECT_THAT(recorded([&] { dialog.click(control); }), IsEmpty()) << control;
        }
    });
}

TEST_F(Highlight, TheTreeTheFilterAndTheTicksWorkUnderAnotherCommand)
{
    run([&](CReviewUnderTest &dialog) {
        const Notification::SetActiveCommand other(L"OTHER");
        dialog.select(L"A2");
        EXPECT_EQ(dialog.currentName(), L"A2");
        dialog.click(124);
        EXPECT_THAT(dialog.CheckedAreas(), SizeIs(3));
        dialog.click(130);
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"A2"));
        dialog.type(352, "4");
        EXPECT_EQ(markOf(L"{A2}").scale, 4.0);
    });
}

} // namespace
