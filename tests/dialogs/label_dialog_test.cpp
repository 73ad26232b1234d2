// The dialog that chooses the label block and what its attributes carry.
#include "tests/dialogs/small_dialog_fixture.h"

#include "controls/WideText.h"
#include "controls/XComboList.h"
#include "controls/XListCtrl.h"
#include "dialogs/BlockFileTitle.h"
#include "dialogs/CatchLabelDlg.h"
#include "host/drawing/BlockSource.h"
#include "host/drawing/Entities.h"
#include "tests/controls/ListClicks.h"
#include "tests/definition/journal_lines.h"

#include <QLabel>
#include <QListWidget>

#include <fstream>

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using velmor::journalText;

namespace fs = std::filesystem;

namespace {

class LabelDialog : public SmallDialogTest {
protected:
    static constexpr const char *kDictionary = "ZEMX_SEWAGE_CATCHMENT";
    static constexpr const char *kKey = "LABEL_BLOCK";

    struct Row {
        int check;
        std::wstring text;
        bool operator==(const Row &) const = default;
        friend std::ostream &operator<<(std::ostream &out, const Row &row)
        {
            return out << row.check << " \"" << journalText(row.text) << '"';
        }
    };

    LabelDialog() { setSymbols(L"no such folder"); }
    void setSymbols(const std::wstring &folder)
    {
        ASSERT_TRUE(velmor::Services::instance().set("SYMBOL_PATH", folder));
    }
    /// A block file with these attributes; its path.
    std::wstring makeBlock(const fs::path &name, const std::vector<std::wstring> &tags)
    {
        const auto block = velmor::Drawing::createNew();
        double y = 0.0;
        for (const std::wstring &tag : tags) {
            velmor::TextShape shape;
            shape.position = {0.0, y -= 2.0, 0.0};
            shape.height = 1.0;
            block->append(std::make_unique<velmor::AttributeDefinitionEntity>(tag, tag, shape));
        }
        const fs::path file = m_user.path() / name;
        fs::create_directories(file.parent_path());
        EXPECT_TRUE(block->save(file));
        return ToWide(QString::fromStdString(file.string()));
    }
    /// Lets "Symbol" be a folder that holds the default block with these attributes, as a DXF file; the path that the
    /// dialog makes of it.
    std::wstring makeDefaultBlock(const std::vector<std::wstring> &tags)
    {
        makeBlock("symbols/CatchLabel.dxf", tags);
        const fs::path folder = m_user.path() / "symbols";
        setSymbols(ToWide(QString::fromStdString(folder.string())));
        return ToWide(QString::fromStdString((folder / "CatchLabel.dwg").string()));
    }
    void keep(const std::wstring &path) { drawing().setDictionaryEntry(kDictionary, kKey, {{1, path}}); }
    std::wstring kept()
    {
        const auto items = drawing().dictionaryEntry(kDictionary, kKey);
        return items && items->size() == 1 && items->front().code == 1 ? std::get<std::wstring>(items->front().value)
                                                                       : L"(none)";
    }
    static CXListCtrl &list(const CAdUiBaseDialog &dialog) { return *dialog.Control<CXListCtrl>(210); }
    static std::vector<Row> rows(const CAdUiBaseDialog &dialog)
    {
        std::vector<Row> found;
        for (int row = 0; row < list(dialog).GetItemCount(); ++row)
            found.push_back({list(dialog).GetCheckbox(row, 0), list(dialog).GetItemText(row, 1)});
        return found;
    }
    void choose(const std::wstring &path) { m_session.answers().push({path}); }
    std::string blockName(const wchar_t *name)
    {
        velmor::BlockRecord *block = drawing().findBlock(name);
        return block ? journalText(velmor::idOf(*block)) : "(none)";
    }
    static void press(CAdUiBaseDialog &dialog, int control) { dialog.Control<QAbstractButton>(control)->click(); }
    /// Paints are asked for by the toolkit when it likes.
    static JournalLines withoutPaints(const JournalLines &lines)
    {
        JournalLines kept;
        for (const std::string &line : lines)
            if (!line.starts_with("acdbDisplayPreviewFromDwg("))
                kept.push_back(line);
        return kept;
    }
};

TEST_F(LabelDialog, TextsOfBothLanguagesStandAtTheirControls)
{
    for (const char *language : {"hr", "en"}) {
        start(language);
        setSymbols(L"no such folder");
        CCatchLabelDlg dialog;
        run(dialog, [&] {
            EXPECT_EQ(dialog.windowTitle(), ToQString(message(2013)));
            EXPECT_EQ(text(dialog, 338), ToQString(message(2016)));
            EXPECT_EQ(text(dialog, 341), ToQString(message(2023)));
            EXPECT_EQ(text(dialog, 1), ToQString(message(60)));
            EXPECT_EQ(text(dialog, 2), ToQString(message(67)));
            EXPECT_EQ(list(dialog).GetHeaderText(0), message(464));
            EXPECT_EQ(list(dialog).GetHeaderText(1), message(282));
            EXPECT_GE(list(dialog).GetColumnWidth(0), 170);
            EXPECT_GE(list(dialog).GetColumnWidth(1), 115);
            std::vector<std::wstring> names;
            for (int row = 0; row < list(dialog).GetItemCount(); ++row)
                names.push_back(list(dialog).GetItemText(row, 0));
            EXPECT_THAT(names, ElementsAre(message(4557), message(1989), message(1991), message(3894)));
            EXPECT_TRUE(dialog.Control<QLineEdit>(284)->isReadOnly());
        });
    }
}

TEST_F(LabelDialog, WithoutARecordTheDefaultBlockIsTakenAndWrittenOnOk)
{
    const std::wstring path = makeDefaultBlock({L"NAME", L"AREA", L"COEFF", L"DENSITY"});
    CCatchLabelDlg dialog;
    {
        run(dialog, [&] {
            EXPECT_EQ(text(dialog, 284), "CatchLabel");
            EXPECT_THAT(rows(dialog),
                        ElementsAre(Row{1, L"NAME"}, Row{1, L"AREA"}, Row{1, L"COEFF"}, Row{1, L"DENSITY"}));
            EXPECT_EQ(kept(), L"(none)");
            const auto lines = recorded([&] { press(dialog, 1); });
            EXPECT_THAT(withoutPaints(lines),
                        ElementsAre("CZEMCDictionaryPtr::dctWrite(ZEMX_SEWAGE_CATCHMENT, LABEL_BLOCK, " +
                                        journalText(path) + ", 1)",
                                    "CAdUiBaseDialog::EndDialog(1)"));
        });
    }
    EXPECT_EQ(kept(), path);
    EXPECT_EQ(dialog.m_strBlockPath, path);
    EXPECT_EQ(dialog.m_strBlockName, L"CatchLabel");
    EXPECT_TRUE(dialog.m_bBlockInserted);
    EXPECT_EQ(journalText(dialog.m_blockId), blockName(L"CatchLabel"));
    EXPECT_THAT(dialog.m_attributes, ElementsAre(L"NAME", L"AREA", L"COEFF", L"DENSITY"));
}

TEST_F(LabelDialog, WhatItAsksOfTheHostWhileItOpensComesInItsOrder)
{
    const std::wstring path = makeDefaultBlock({L"NAME"});
    JournalLines lines;
    CCatchLabelDlg dialog;
    velmor::Journal::instance().setRecording(true);
    run(dialog, [&] {
        velmor::Journal::instance().setRecording(false);
        lines = withoutPaints(journalLines());
        lines.erase(
            std::remove_if(lines.begin(), lines.end(),
                           [](const std::string &l) { return l.starts_with("CModuleConfiguration::LoadImageW("); }),
            lines.end());
    });
    EXPECT_THAT(lines, ElementsAre("CZEMCDictionaryPtr::dctRead(ZEMX_SEWAGE_CATCHMENT, LABEL_BLOCK, 0)",
                                   "CModuleConfiguration::GetPath(Symbol)",
                                   "CZEMCDraw::insertBlockDefinition(CatchLabel, " + journalText(path) + ")",
                                   "CUtility::GetAttributesFromBlockDef(" + blockName(L"CatchLabel") + ")"));
}

TEST_F(LabelDialog, TheRecordGoesBeforeTheDefaultBlockAndBeforeWhatTheCallerSet)
{
    makeDefaultBlock({L"DEFAULT"});
    const std::wstring path = makeBlock("Own.dxf", {L"OWN"});
    keep(path);
    CCatchLabelDlg dialog;
    dialog.m_strBlockPath = L"/elsewhere/Other.dwg";
    dialog.m_strBlockName = L"Other";
    velmor::Journal::instance().setRecording(true);
    run(dialog, [&] {
        velmor::Journal::instance().setRecording(false);
        EXPECT_EQ(callsOf("CModuleConfiguration::GetPath"), 0u);
        EXPECT_EQ(text(dialog, 284), "Own");
        EXPECT_EQ(dialog.m_strBlockPath, path);
        EXPECT_THAT(rows(dialog), ElementsAre(Row{1, L"OWN"}, Row{0, L""}, Row{0, L""}, Row{0, L""}));
    });
}

TEST_F(LabelDialog, WhatTheCallerSetStandsWhereThereIsNoRecord)
{
    makeDefaultBlock({L"DEFAULT"});
    const std::wstring path = makeBlock("Own.dxf", {L"OWN"});
    CCatchLabelDlg dialog;
    dialog.m_strBlockPath = path;
    run(dialog, [&] {
        EXPECT_EQ(text(dialog, 284), "Own");
        press(dialog, 1);
    });
    EXPECT_EQ(kept(), path);
    EXPECT_THAT(dialog.m_attributes, ElementsAre(L"OWN", L"", L"", L""));
}

TEST_F(LabelDialog, WithoutARecordAndASymbolFolderItStartsEmptyAndOkStoresAnEmptyPath)
{
    CCatchLabelDlg dialog;
    const int result = run(dialog, [&] {
        EXPECT_EQ(text(dialog, 284), "");
        EXPECT_THAT(rows(dialog), ElementsAre(Row{0, L""}, Row{0, L""}, Row{0, L""}, Row{0, L""}));
        const auto lines = recorded([&] { press(dialog, 1); });
        EXPECT_THAT(withoutPaints(lines),
                    ElementsAre("CZEMCDictionaryPtr::dctWrite(ZEMX_SEWAGE_CATCHMENT, LABEL_BLOCK, , 1)",
                                "CAdUiBaseDialog::EndDialog(1)"));
    });
    EXPECT_EQ(result, CAdUiBaseDialog::kOk);
    EXPECT_EQ(kept(), L"");
    EXPECT_FALSE(dialog.m_bBlockInserted);
    EXPECT_TRUE(dialog.m_blockId.isNull());
    EXPECT_THAT(dialog.m_attributes, ElementsAre(L"", L"", L"", L""));
}

TEST_F(LabelDialog, ABlockWithTwoAttributesTicksTheFirstTwoRows)
{
    keep(makeBlock("Two.dxf", {L"FIRST", L"SECOND"}));
    CCatchLabelDlg dialog;
    run(dialog, [&] {
        EXPECT_THAT(rows(dialog), ElementsAre(Row{1, L"FIRST"}, Row{1, L"SECOND"}, Row{0, L""}, Row{0, L""}));
        press(dialog, 1);
    });
    EXPECT_THAT(dialog.m_attributes, ElementsAre(L"FIRST", L"SECOND", L"", L""));
}

TEST_F(LabelDialog, ABlockWithSixAttributesTicksAllRowsOnTheFirstFour)
{
    keep(makeBlock("Six.dxf", {L"A1", L"A2", L"A3", L"A4", L"A5", L"A6"}));
    CCatchLabelDlg dialog;
    run(dialog, [&] {
        EXPECT_THAT(rows(dialog), ElementsAre(Row{1, L"A1"}, Row{1, L"A2"}, Row{1, L"A3"}, Row{1, L"A4"}));
        press(dialog, 1);
    });
    EXPECT_THAT(dialog.m_attributes, ElementsAre(L"A1", L"A2", L"A3", L"A4"));
}

TEST_F(LabelDialog, ABlockWithoutAttributesLeavesAllRowsOff)
{
    keep(makeBlock("None.dxf", {}));
    CCatchLabelDlg dialog;
    run(dialog, [&] {
        EXPECT_EQ(text(dialog, 284), "None");
        EXPECT_THAT(rows(dialog), ElementsAre(Row{0, L""}, Row{0, L""}, Row{0, L""}, Row{0, L""}));
        press(dialog, 1);
    });
    EXPECT_THAT(dialog.m_attributes, ElementsAre(L"", L"", L"", L""));
}

TEST_F(LabelDialog, EveryTagOfTheBlockCanBeChosenInEveryRow)
{
    keep(makeBlock("Six.dxf", {L"A1", L"A2", L"A3", L"A4", L"A5", L"A6"}));
    CCatchLabelDlg dialog;
    run(dialog, [&] {
        for (int row = 0; row < 4; ++row) {
            const CellRecord *cell = list(dialog).GetCells().GetRecord(row, 1);
            ASSERT_NE(cell, nullptr);
            EXPECT_TRUE(cell->combo);
            ASSERT_NE(cell->comboStrings, nullptr);
            EXPECT_THAT(*cell->comboStrings, ElementsAre(L"A1", L"A2", L"A3", L"A4", L"A5", L"A6"));
            EXPECT_EQ(cell->comboListHeight, 6);
            EXPECT_EQ(cell->comboInitialSel, row);
        }
    });
}

TEST_F(LabelDialog, ARowThatIsUntickedGivesAnEmptyTextWhateverItShows)
{
    keep(makeBlock("Two.dxf", {L"FIRST", L"SECOND"}));
    CCatchLabelDlg dialog;
    run(dialog, [&] {
        list(dialog).SetCheckbox(0, 0, 0, false);
        list(dialog).SetCheckbox(3, 0, 1, false);
        list(dialog).SetItemText(3, 1, L"FIRST");
        EXPECT_EQ(list(dialog).GetItemText(0, 1), L"FIRST");
        press(dialog, 1);
    });
    EXPECT_THAT(dialog.m_attributes, ElementsAre(L"", L"SECOND", L"", L"FIRST"));
}

TEST_F(LabelDialog, ByClicksAndKeysRowsAreTickedAndTagsChosenInPlace)
{
    keep(makeBlock("Six.dxf", {L"A1", L"A2", L"A3", L"A4", L"A5", L"A6"}));
    CCatchLabelDlg dialog;
    run(dialog, [&] {
        CXListCtrl &values = list(dialog);
        list_clicks::clickCell(values, 1, 0);
        list_clicks::clickCell(values, 3, 0);
        list_clicks::clickCell(values, 3, 0);
        list_clicks::clickArrow(values, 0, 1);
        ASSERT_NE(values.GetPopup(), nullptr);
        EXPECT_EQ(values.GetPopup()->GetListBox()->count(), 6);
        list_clicks::pressKey(*values.GetPopup()->GetListBox(), Qt::Key_End);
        list_clicks::pressKey(*values.GetPopup()->GetListBox(), Qt::Key_Return);
        EXPECT_EQ(values.GetPopup(), nullptr);
        EXPECT_TRUE(dialog.isVisible()) << "the popup's Enter is not the dialog's";
        EXPECT_THAT(rows(dialog), ElementsAre(Row{1, L"A6"}, Row{0, L"A2"}, Row{1, L"A3"}, Row{1, L"A4"}));
        press(dialog, 1);
    });
    EXPECT_THAT(dialog.m_attributes, ElementsAre(L"A6", L"", L"A3", L"A4"));
}

TEST_F(LabelDialog, BrowsingTakesTheChosenFile)
{
    const std::wstring start = makeDefaultBlock({L"NAME", L"AREA", L"COEFF"});
    const std::wstring path = makeBlock("Other.dxf", {L"X", L"Y"});
    CCatchLabelDlg dialog;
    run(dialog, [&] {
        list(dialog).SetCheckbox(3, 0, 1, false);
        choose(path);
        const auto lines = recorded([&] { press(dialog, 250); });
        EXPECT_THAT(withoutPaints(lines),
                    ElementsAre("CModuleConfiguration::GetPath(Symbol)",
                                "acedGetFileD(Blok, " + journalText(start) + ", dwg, 64)",
                                "CZEMCDraw::insertBlockDefinition(Other, " + journalText(path) + ")",
                                "CUtility::GetAttributesFromBlockDef(" + blockName(L"Other") + ")"));
        EXPECT_EQ(text(dialog, 284), "Other");
        EXPECT_THAT(rows(dialog), ElementsAre(Row{1, L"X"}, Row{1, L"Y"}, Row{0, L""}, Row{0, L""}));
        EXPECT_EQ(kept(), L"(none)") << "not before OK";
        press(dialog, 1);
    });
    EXPECT_EQ(kept(), path);
    EXPECT_EQ(journalText(dialog.m_blockId), blockName(L"Other"));
    EXPECT_EQ(dialog.m_strBlockName, L"Other");
}

TEST_F(LabelDialog, WithoutASymbolFolderBrowsingStartsOnTheBareName)
{
    CCatchLabelDlg dialog;
    run(dialog, [&] {
        m_session.answers().push({velmor::Answer::Escape{}});
        const auto lines = recorded([&] { press(dialog, 250); });
        EXPECT_THAT(withoutPaints(lines), ElementsAre("CModuleConfiguration::GetPath(Symbol)",
                                                      "acedGetFileD(Blok, CatchLabel.dwg, dwg, 64)"));
    });
}

TEST_F(LabelDialog, CancellingTheFileDialogChangesNothing)
{
    const std::wstring path = makeDefaultBlock({L"NAME", L"AREA"});
    CCatchLabelDlg dialog;
    run(dialog, [&] {
        list(dialog).SetCheckbox(1, 0, 0, false);
        m_session.answers().push({velmor::Answer::Escape{}});
        press(dialog, 250);
        EXPECT_EQ(text(dialog, 284), "CatchLabel");
        EXPECT_THAT(rows(dialog), ElementsAre(Row{1, L"NAME"}, Row{0, L"AREA"}, Row{0, L""}, Row{0, L""}));
        EXPECT_EQ(dialog.m_strBlockPath, path);
        press(dialog, 1);
    });
    EXPECT_THAT(dialog.m_attributes, ElementsAre(L"NAME", L"", L"", L""));
}

TEST_F(LabelDialog, CancelWritesNothingAndLeavesTheDefinitionThatWasInserted)
{
    const std::wstring path = makeDefaultBlock({L"NAME"});
    CCatchLabelDlg dialog;
    const int result = run(dialog, [&] {
        const auto lines = recorded([&] { press(dialog, 2); });
        EXPECT_THAT(withoutPaints(lines), ElementsAre("CAdUiBaseDialog::EndDialog(2)"));
    });
    EXPECT_EQ(result, CAdUiBaseDialog::kCancel);
    EXPECT_EQ(kept(), L"(none)");
    EXPECT_NE(drawing().findBlock(L"CatchLabel"), nullptr);
}

TEST_F(LabelDialog, AFileThatCannotBeOpenedGivesAnEmptyNameAndANullId)
{
    keep(L"/no/such/folder/Label.dwg");
    CCatchLabelDlg dialog;
    run(dialog, [&] {
        EXPECT_EQ(text(dialog, 284), "");
        EXPECT_THAT(rows(dialog), ElementsAre(Row{0, L""}, Row{0, L""}, Row{0, L""}, Row{0, L""}));
        press(dialog, 1);
    });
    EXPECT_EQ(dialog.m_strBlockName, L"");
    EXPECT_TRUE(dialog.m_blockId.isNull());
    EXPECT_TRUE(dialog.m_bBlockInserted);
    EXPECT_EQ(kept(), L"/no/such/folder/Label.dwg");
    EXPECT_THAT(m_session.alerts(), IsEmpty());
}

TEST_F(LabelDialog, AFileThatIsNoDrawingGivesANullIdWithoutAWord)
{
    const fs::path file = m_user.path() / "Text.dxf";
    std::ofstream(file) << "no drawing";
    keep(ToWide(QString::fromStdString(file.string())));
    CCatchLabelDlg dialog;
    run(dialog, [&] { EXPECT_EQ(text(dialog, 284), "Text"); });
    EXPECT_TRUE(dialog.m_blockId.isNull());
    EXPECT_THAT(m_session.alerts(), IsEmpty());
}

TEST_F(LabelDialog, EachPaintOfThePreviewAsksTheHostForTheFilesPicture)
{
    const std::wstring path = makeDefaultBlock({L"NAME", L"AREA"});
    const std::wstring other = makeBlock("Other.dxf", {L"ACOMPLETELYDIFFERENTTAG"});
    CCatchLabelDlg dialog;
    run(dialog, [&] {
        QWidget *field = dialog.GetDlgItem(287);
        QImage before, after;
        const auto paint = [&](QImage &image) { return recorded([&] { image = field->grab().toImage(); }); };
        EXPECT_THAT(paint(before), ElementsAre("acdbDisplayPreviewFromDwg(" + journalText(path) + ", 0)"));
        EXPECT_THAT(paint(before), ElementsAre("acdbDisplayPreviewFromDwg(" + journalText(path) + ", 0)"));
        choose(other);
        press(dialog, 250);
        EXPECT_THAT(paint(after), ElementsAre("acdbDisplayPreviewFromDwg(" + journalText(other) + ", 0)"));
        EXPECT_NE(before, after);
        int ink = 0;
        for (int y = 0; y < after.height(); ++y)
            for (int x = 0; x < after.width(); ++x)
                ink += after.pixel(x, y) != after.pixel(0, 0);
        EXPECT_GT(ink, 50);
    });
}

TEST_F(LabelDialog, ATitleIsAskedOfTheFileAndOfTheOneThatStandsForIt)
{
    const fs::path folder = m_user.path();
    const auto title = [&](const char *name) {
        return TitleOfBlockFile(ToWide(QString::fromStdString((folder / name).string())));
    };
    for (const char *name : {"a.dxf", "B.label.DXF", "c.dwg"})
        std::ofstream(folder / name) << "x";
    fs::create_directories(folder / "d.dwg");
    EXPECT_EQ(title("a.dxf"), L"a");
    EXPECT_EQ(title("a.dwg"), L"a");
    EXPECT_EQ(title("B.label.dwg"), L"B.label");
    EXPECT_EQ(title("c.dwg"), L"c");
    EXPECT_EQ(title("c.dxf"), L"") << "only a .dwg has a stand-in";
    EXPECT_EQ(title("d.dwg"), L"") << "a folder";
    EXPECT_EQ(title("none.dwg"), L"");
    EXPECT_EQ(TitleOfBlockFile(L""), L"");
}

} // namespace
