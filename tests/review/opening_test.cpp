// All that the review dialog asks of the host while it opens, in order and with arguments, and what it shows then.
#include "tests/definition/journal_lines.h"
#include "tests/review/review_fixture.h"

#include "controls/WideText.h"

#include <fstream>

using namespace ZEMGis;
using testing::ElementsAre;
using testing::ElementsAreArray;
using velmor::journalText;

namespace {

constexpr const char *kImages = "(images)";

class Opening : public ReviewDialogTest {
protected:
    /// From the dialog's making to its being shown; images are one line, wherever they come.
    JournalLines opening()
    {
        JournalLines lines;
        velmor::Journal::instance().setRecording(true);
        run([&](CReviewUnderTest &) {
            velmor::Journal::instance().setRecording(false);
            for (const std::string &line : journalLines()) {
                if (!line.starts_with("CModuleConfiguration::LoadImageW("))
                    lines.push_back(line);
                else if (lines.empty() || lines.back() != kImages)
                    lines.emplace_back(kImages);
            }
        });
        return lines;
    }
    std::string symbol() const
    {
        return journalText(CModuleConfiguration::Instance()->GetPath(L"Symbol")) + "CatchLabel.dwg";
    }
    std::string blockLine() const { return journalText(m_block); }
    AcDbObjectId m_block;
};

TEST_F(Opening, EveryReadAndCallComesInTheRequiredOrderWithItsArguments)
{
    addSection(L"D1", {0, 5}, {10, 5});
    const AreaPtr area = addArea(L"A1", 1, 0, 0.5, 100, {{L"D1", 1.0}});
    addArea(L"A2", 6, 20);
    const std::string section = journalText(network().sectionByName(L"D1")->GetObjectId());
    const std::string entity = journalText(area->GetObjectId());
    const JournalLines lines = opening();
    std::string block;
    for (const std::string &line : lines) {
        if (line.starts_with("CUtility::GetAttributesFromBlockDef("))
            block = line;
    }
    EXPECT_NE(block, "CUtility::GetAttributesFromBlockDef(0)");
    const std::string colour = std::to_string(CModuleConfiguration::Instance()->GetHighlightColor());
    EXPECT_THAT(lines, ElementsAreArray(JournalLines{
                           "AcAxDocLock::AcAxDocLock()",
                           kImages, // of the tree's buttons
                           "CModuleConfiguration::GetGSValueInt(DECIMAL_PLACES_CATCHMENT, 0)",
                           "CModuleConfiguration::GetGSValueDouble(DEFAULT_ZOOM, 0)",
                           kImages,
                           "CCatchmentAreaManager::RefreshExistingCatchments()",
                           "CCatalogManager::GetCatalog(CA_LABEL_CATALOG, 1)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_SEWAGE_CATCHMENT, LABEL_BLOCK, 0)",
                           "CModuleConfiguration::GetPath(Symbol)",
                           "CZEMCDraw::insertBlockDefinition(CatchLabel, " + symbol() + ")",
                           block,
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCHMENT_m_edZoom, 0)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCHMENT_m_checkZoom, 0)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCHMENT_m_comboMode, 0)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCHMENT_m_edHatchType, 0)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCHMENT_m_edHScale, 0)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCHMENT_m_cmbLabel, 0)",
                           "CCatchmentAreaManager::GetAllCatchmentAreas(7)",
                           // the first item was selected without an event; the tree's end applies it
                           "CCatchmentAreaManager::GetCatchmentAreaByGuid({A1})",
                           "AcDbEntity::highlight(" + entity + ")",
                           "AcDbEntity::highlight(" + section + ")",
                           "CCatchmentArea::Mark({A1}, " + colour + ", 1, 0.7853981633974483, ANSI31, 0)",
                           "AcTransactionManager::flushGraphics()",
                           "acedUpdateDisplay()",
                       }));
}

TEST_F(Opening, WithoutAreasTheTreeIsEmptyTheCountsAreZeroAndNothingIsSelected)
{
    run([](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.tree()->topLevelItemCount(), 0);
        EXPECT_EQ(dialog.tree()->SelectedItem(), nullptr);
        EXPECT_EQ(dialog.list()->GetItemCount(), 0);
        for (const int count : {120, 121, 122, 123})
            EXPECT_EQ(dialog.text(count), "0") << count;
        EXPECT_FALSE(dialog.CurrentArea());
        for (const int button : {114, 115, 124, 125})
            dialog.click(button);
        EXPECT_EQ(dialog.tree()->SelectedItem(), nullptr);
        EXPECT_THAT(dialog.CheckedGuids(), testing::IsEmpty());
    });
}

TEST_F(Opening, WhatNothingIsKeptOfStartsFromItsDefault)
{
    addArea(L"A1", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.text(352), "1");
        EXPECT_EQ(dialog.text(218), "2");
        EXPECT_EQ(dialog.text(353), "ANSI31");
        EXPECT_TRUE(dialog.isChecked(134));
        EXPECT_FALSE(dialog.isChecked(296));
        EXPECT_EQ(dialog.Control<QComboBox>(135)->currentIndex(), 0);
        EXPECT_EQ(dialog.DecimalPlaces(), 4);
        EXPECT_EQ(ToWide(dialog.windowTitle()), message(4578));
        EXPECT_EQ(ToWide(dialog.text(126)), message(11223));
        EXPECT_EQ(dialog.colour(126), 0xff0000u);
        EXPECT_TRUE(dialog.GetDlgItem(126)->font().bold());
        EXPECT_EQ(dialog.selectedName(), L"A1");
        EXPECT_EQ(dialog.currentName(), L"A1");
    });
}

TEST_F(Opening, TheSettingsGiveZoomAndDecimals)
{
    setSetting("DEFAULT_ZOOM", 3.25);
    setSetting("DECIMAL_PLACES_CATCHMENT", 2);
    run([](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.text(218), "3.25");
        EXPECT_EQ(dialog.DecimalPlaces(), 2);
    });
}

TEST_F(Opening, WhatTheDrawingKeepsReplacesDefaultsAndSettings)
{
    setSetting("DEFAULT_ZOOM", 3.25);
    keep("m_edZoom", {38, 5.5});
    keep("m_checkZoom", {60, std::int64_t{1}});
    keep("m_comboMode", {60, std::int64_t{1}});
    keep("m_edHatchType", {1, std::wstring(L"NET")});
    keep("m_edHScale", {38, 0.75});
    keep("m_cmbLabel", {60, std::int64_t{1}});
    addArea(L"A1", 1, 0);
    addArea(L"A2", 2, 20);
    run([&](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.text(218), "5.5");
        EXPECT_TRUE(dialog.isChecked(296));
        EXPECT_TRUE(dialog.isChecked(130));
        EXPECT_EQ(dialog.text(353), "NET");
        EXPECT_EQ(dialog.text(352), "0.75");
        EXPECT_EQ(dialog.Control<QComboBox>(135)->currentIndex(), 1);
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"A2"));
    });
}

TEST_F(Opening, AStoredLabelIndexThatNoEntryHasGivesTheFirst)
{
    keep("m_cmbLabel", {60, std::int64_t{10}});
    run([](CReviewUnderTest &dialog) {
        ASSERT_GT(dialog.Control<QComboBox>(135)->count(), 1);
        EXPECT_EQ(dialog.Control<QComboBox>(135)->currentIndex(), 0);
    });
}

TEST_F(Opening, AStoredFilterOfSevenShowsAllAndPressesNoRadioButton)
{
    keep("m_comboMode", {60, std::int64_t{7}});
    addArea(L"A1", 1, 0);
    addArea(L"A2", 2, 20);
    run([](CReviewUnderTest &dialog) {
        for (const int radio : {129, 130, 133, 134})
            EXPECT_FALSE(dialog.isChecked(radio)) << radio;
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"A1", L"A2"));
        dialog.click(130); // from here on they are a group as ever
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"A2"));
        dialog.click(129);
        EXPECT_FALSE(dialog.isChecked(130));
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"A1"));
    });
}

TEST_F(Opening, LabelTypesComeInTheCataloguesOrder)
{
    run([](CReviewUnderTest &dialog) {
        const auto catalog = Data::CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1);
        ASSERT_TRUE(catalog);
        const auto *combo = dialog.Control<QComboBox>(135);
        int index = 0;
        for (const auto &[key, item] : *catalog->GetAllElementsMap()) {
            if (item->IsGroup() != 0)
                continue;
            EXPECT_EQ(ToWide(combo->itemText(index)), item->GetName());
            EXPECT_EQ(combo->itemData(index).value<void *>(), static_cast<void *>(item.get()));
            ++index;
        }
        EXPECT_EQ(combo->count(), index);
        EXPECT_GT(index, 1);
    });
}

TEST_F(Opening, TheDrawingsOwnLabelBlockIsInsertedUnderItsFilesTitle)
{
    drawing().setDictionaryEntry("ZEMX_SEWAGE_CATCHMENT", "LABEL_BLOCK",
                                 {{1, std::wstring(L"/symbols/v1.2/Own.label.dwg")}});
    const JournalLines lines = opening();
    EXPECT_THAT(lines, testing::Contains("CZEMCDraw::insertBlockDefinition(Own.label, /symbols/v1.2/Own.label.dwg)"));
    EXPECT_THAT(lines, testing::Not(testing::Contains("CModuleConfiguration::GetPath(Symbol)")));
    run([](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.LabelBlockPath(), L"/symbols/v1.2/Own.label.dwg");
        EXPECT_EQ(dialog.LabelBlockName(), L"Own.label");
        EXPECT_TRUE(dialog.LabelBlock().isNull()); // there is no such file, and nobody is told
        EXPECT_THAT(dialog.LabelAttributes(), testing::IsEmpty());
    });
    EXPECT_THAT(alerts(), testing::IsEmpty());
}

TEST_F(Opening, TheShippedLabelBlockGivesItsAttributes)
{
    run([](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.LabelBlockName(), L"CatchLabel");
        EXPECT_FALSE(dialog.LabelBlock().isNull());
        EXPECT_GE(dialog.LabelAttributes().size(), 3u);
    });
}

TEST_F(Opening, TheButtonsOfTheTreeHaveImagesOfTheirSizes)
{
    velmor::Journal::instance().setRecording(true);
    run([](CReviewUnderTest &) { velmor::Journal::instance().setRecording(false); });
    std::vector<std::string> images;
    for (const velmor::JournalEntry &entry : velmor::Journal::instance().entries()) {
        if (entry.operation == "CModuleConfiguration::LoadImageW")
            images.push_back(entry.arguments.at(0) + ' ' + entry.arguments.at(2) + 'x' + entry.arguments.at(3) + ' ' +
                             entry.arguments.at(4));
    }
    EXPECT_THAT(images,
                ElementsAre("IDI_EXPAND 24x24 0", "IDI_COLLAPSE 24x24 0", "IDI_SELALL 16x16 0", "IDI_UNSELALL 16x16 0",
                            "PICK_AREAS 18x18 0", "SAVE 18x18 0", "INFO_SECTIONS 16x16 0",
                            // the two lists that nothing uses
                            "CATCHMENT_RAIN 16x16 32", "CATCHMENT_HOME 16x16 32", "CATCHMENT_IND 16x16 32",
                            "CATCHMENT_RAIN 16x16 32", "CATCHMENT_HOME 16x16 32", "CATCHMENT_IND 16x16 32"));
}

TEST_F(Opening, TheTreeShowsNoIcons)
{
    addSection(L"D1", {0, 5}, {10, 5});
    addArea(L"A1", 1, 0, 0.5, 100, {{L"D1", 1.0}});
    run([](CReviewUnderTest &dialog) {
        EXPECT_TRUE(dialog.item(L"A1")->icon(0).isNull());
        EXPECT_TRUE(dialog.item(L"A1", L"D1")->icon(0).isNull());
    });
}

} // namespace
