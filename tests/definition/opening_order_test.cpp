// All that the definition dialog asks of the host while it opens, in order and with arguments.
#include "tests/definition/dialog_fixture.h"
#include "tests/definition/journal_lines.h"

#include "contracts/DrawingHost.h"
#include "controls/WideText.h"

#include <fstream>

using namespace ZEMGis;
using testing::ElementsAre;
using testing::ElementsAreArray;
using velmor::journalText;

namespace {

class Opening : public DefinitionDialogTest {
protected:
    static constexpr const char *kImages = "(images)";

    Opening()
    {
        // A terrain list that the drawing has already, so that loading it writes nothing.
        const std::string terrains = "<Terrains><Terrain name=\"Lawn\" flow=\"0.1000\"/></Terrains>";
        std::filesystem::create_directories(m_userFolder / "support");
        std::ofstream(m_userFolder / "support" / "ZEMXTerrainType.cfg") << terrains;
        drawing().setDictionaryEntry("ZEMX_TERRAINTYPE", "TT_DEFINITION",
                                     {{1, ToWide(QString::fromStdString(terrains))}});
        setLayers({L"ONLY"});
        m_line = addLine(500, -10, 520, -10, L"ONLY");
    }
    /// From the dialog's making to its being shown. Images are one line, wherever they come; which code page the names
    /// of the terrain list are in is left out, for the catalogue asks that as often as it likes.
    JournalLines opening()
    {
        JournalLines lines;
        velmor::Journal::instance().setRecording(true);
        run([&](CDialogUnderTest &) {
            velmor::Journal::instance().setRecording(false);
            for (const std::string &line : journalLines()) {
                if (line == "CModuleConfiguration::GetGSValueInt(ANSI_CODE_PAGE, 0)")
                    continue;
                const bool isImage = line.starts_with("CModuleConfiguration::LoadImageW(");
                if (!isImage)
                    lines.push_back(line);
                else if (lines.empty() || lines.back() != kImages)
                    lines.emplace_back(kImages);
            }
        });
        return lines;
    }
    void keep(const char *name, const velmor::DataItem &value)
    {
        drawing().setDictionaryEntry("ZEMX_LSD2", std::string("ZEMX_CATCH_DEFINE_") + name, {value});
    }
    std::string symbol() const
    {
        return journalText(CModuleConfiguration::Instance()->GetPath(L"Symbol")) + "CatchLabel.dwg";
    }
    std::string lineName() const { return journalText(m_line); }
    AcDbObjectId m_line;
};

TEST_F(Opening, EveryReadAndCallComesInTheRequiredOrderWithItsArguments)
{
    const JournalLines lines = opening();
    ASSERT_FALSE(lines.empty());
    const std::string block = lines.back();
    EXPECT_TRUE(block.starts_with("CUtility::GetAttributesFromBlockDef(")) << block;
    EXPECT_NE(block, "CUtility::GetAttributesFromBlockDef(0)");
    EXPECT_THAT(lines, ElementsAreArray(JournalLines{
                           "acedFindFile(ATV118flow.cfg)", // the table loads itself when it is made
                           "AcAxDocLock::AcAxDocLock()",
                           "CModuleConfiguration::GetGSValueDouble(DEFAULT_ZOOM, 0)",
                           kImages,
                           "CSelectionButton::setParentDialog(1)",
                           "CSelectionButton::SetButtonTopologyType(1)",
                           "CSelectionButton::SetHideDisabledMenuOptions(1)",
                           "CSelectionButton::SetSelectionType(32415745)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_TERRAINTYPE, TT_DEFINITION, 1)",
                           "acedFindFile(ZEMXTerrainType.cfg)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_SEWAGE_CATCHMENT, LABEL_BLOCK, 0)",
                           "CModuleConfiguration::GetGSValueDouble(CATCH_HATCH_SCALE, 0)",
                           "CModuleConfiguration::GetGSValueInt(CATCH_HATCH_COLOR_DEFINED, 0)",
                           "CModuleConfiguration::GetGSValueInt(CATCH_HATCH_COLOR_TEMP, 0)",
                           "CModuleConfiguration::GetGSValueString(CATCH_NAME_PREFIX, 0)",
                           "CModuleConfiguration::GetGSValueString(CATCH_NAME_SUFIX, 0)",
                           "CModuleConfiguration::GetGSValueString(CATCH_COUNTER_DELIMITER, 0)",
                           "CCatchmentAreaManager::GetAllCatchmentAreas(7)",
                           "CModuleConfiguration::GetGSValueInt(ZOOM_ONOFF, 0)",
                           "CCatalogManager::GetCatalog(CA_LABEL_CATALOG, 1)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_LAYERS, 1)",
                           "acedSSAdd(null, null)",
                           "acedSSAdd(" + lineName() + ", set 1)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_m_bCatchmentType, 0)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_m_bHouseType, 0)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_m_bIndustrialType, 0)",
                           "CCatchmentAreaManager::UnMarkAllCatchments(7)", // the handler of type catchment
                           "AcTransactionManager::flushGraphics()",
                           "acedUpdateDisplay()",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_POPULATION, 0)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_SLOPE, 0)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_m_strBlockPath, 0)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_m_strBlockName, 0)",
                           "CZEMCDictionaryPtr::dctRead(ZEMX_SEWAGE_CATCHMENT, LABEL_BLOCK, 0)",
                           "CModuleConfiguration::GetPath(Symbol)",
                           "CZEMCDraw::insertBlockDefinition(CatchLabel, " + symbol() + ")",
                           block,
                       }));
}

TEST_F(Opening, WhatTheDrawingAndTheSettingsKeepIsReadInTheSameOrderAndLeavesNothingToTheDefaults)
{
    for (const char *key : {"DEFAULT_ZOOM", "CATCH_HATCH_SCALE"})
        setSetting(key, 2.5);
    for (const char *key : {"CATCH_HATCH_COLOR_DEFINED", "CATCH_HATCH_COLOR_TEMP", "ZOOM_ONOFF"})
        setSetting(key, 1);
    for (const char *key : {"CATCH_NAME_PREFIX", "CATCH_NAME_SUFIX", "CATCH_COUNTER_DELIMITER"})
        setSetting(key, std::wstring(L"x"));
    for (const char *name : {"m_bCatchmentType", "m_bHouseType", "m_bIndustrialType"})
        keep(name, {60, std::int64_t{0}});
    for (const char *name : {"POPULATION", "SLOPE"})
        keep(name, {38, 12.5});
    keep("m_strBlockPath", {1, ToWide(QString::fromStdString(symbol()))});
    keep("m_strBlockName", {1, std::wstring(L"OWN")});
    drawing().setDictionaryEntry("ZEMX_SEWAGE_CATCHMENT", "LABEL_BLOCK", {{1, std::wstring(L"other.dwg")}});

    JournalLines reads;
    for (const std::string &line : opening()) {
        if (line.find("::GetGSValue") != std::string::npos || line.find("::dctRead") != std::string::npos ||
            line.find("UnMark") != std::string::npos || line.find("insertBlock") != std::string::npos ||
            line.find("GetPath") != std::string::npos)
            reads.push_back(line.substr(line.find("::") + 2));
    }
    EXPECT_THAT(reads, ElementsAreArray(JournalLines{
                           "GetGSValueDouble(DEFAULT_ZOOM, 1)",
                           "dctRead(ZEMX_TERRAINTYPE, TT_DEFINITION, 1)",
                           "dctRead(ZEMX_SEWAGE_CATCHMENT, LABEL_BLOCK, 1)",
                           "GetGSValueDouble(CATCH_HATCH_SCALE, 1)",
                           "GetGSValueInt(CATCH_HATCH_COLOR_DEFINED, 1)",
                           "GetGSValueInt(CATCH_HATCH_COLOR_TEMP, 1)",
                           "GetGSValueString(CATCH_NAME_PREFIX, 1)",
                           "GetGSValueString(CATCH_NAME_SUFIX, 1)",
                           "GetGSValueString(CATCH_COUNTER_DELIMITER, 1)",
                           "GetGSValueInt(ZOOM_ONOFF, 1)",
                           "dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_LAYERS, 1)",
                           "dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_m_bCatchmentType, 1)",
                           "dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_m_bHouseType, 1)",
                           "dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_m_bIndustrialType, 1)",
                           // no type is on, so no type's handler ran
                           "dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_POPULATION, 1)",
                           "dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_SLOPE, 1)",
                           "dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_m_strBlockPath, 1)",
                           "dctRead(ZEMX_LSD2, ZEMX_CATCH_DEFINE_m_strBlockName, 1)",
                           "insertBlockDefinition(OWN, " + symbol() + ")",
                       }));
}

TEST_F(Opening, WithABlockOfItsOwnTheDefaultIsInsertedFromItsPathUnderItsFilesTitle)
{
    drawing().setDictionaryEntry("ZEMX_SEWAGE_CATCHMENT", "LABEL_BLOCK",
                                 {{1, std::wstring(L"/symbols/v1.2/Own.label.dwg")}});
    const JournalLines lines = opening();
    EXPECT_THAT(lines, testing::Contains("CZEMCDraw::insertBlockDefinition(Own.label, /symbols/v1.2/Own.label.dwg)"));
    EXPECT_THAT(lines, testing::Not(testing::Contains("CModuleConfiguration::GetPath(Symbol)")));
}

TEST_F(Opening, EveryButtonsImageIsLoadedInItsSize)
{
    velmor::Journal::instance().setRecording(true);
    run([](CDialogUnderTest &) { velmor::Journal::instance().setRecording(false); });
    std::vector<std::string> sizes;
    for (const auto &image : entriesOf("CModuleConfiguration::LoadImageW"))
        sizes.push_back(image.arguments.at(0) + ' ' + image.arguments.at(2) + 'x' + image.arguments.at(3));
    EXPECT_THAT(sizes, testing::UnorderedElementsAre("SECTION_PREVIOUS 18x18", "SECTION_NEXT 18x18",
                                                     "ZOOM_SECTION 18x18", "SETTINGS 18x18", "LAYERS 18x18",
                                                     "BY_POINT 18x18", "BY_ENTITY 18x18", "BY_CORNERS 18x18",
                                                     "AUTOMATIC 18x18", "TERRAIN 18x18", "LABEL_BLOCK 18x18",
                                                     "SAVE 18x18", "INFO_SECTIONS 16x16", "INFO_AREAS 16x16"));
}

TEST_F(Opening, TheSettingsDialogLetsOnlyItsSixKeysBeReadAgain)
{
    run([](CDialogUnderTest &dialog) {
        EXPECT_THAT(recorded([&] { dialog.click(219); }),
                    ElementsAre("SetActiveCommand(CA_PARAMS)", "CModuleConfiguration::ShowGSDialog(TCE1)",
                                testing::StartsWith("CAdUiBaseDialog::EndDialog"),
                                "CModuleConfiguration::GetGSValueDouble(CATCH_HATCH_SCALE, 0)",
                                "CModuleConfiguration::GetGSValueInt(CATCH_HATCH_COLOR_DEFINED, 0)",
                                "CModuleConfiguration::GetGSValueInt(CATCH_HATCH_COLOR_TEMP, 0)",
                                "CModuleConfiguration::GetGSValueString(CATCH_NAME_PREFIX, 0)",
                                "CModuleConfiguration::GetGSValueString(CATCH_NAME_SUFIX, 0)",
                                "CModuleConfiguration::GetGSValueString(CATCH_COUNTER_DELIMITER, 0)",
                                "~SetActiveCommand(CA_PARAMS)"));
    });
}

} // namespace
