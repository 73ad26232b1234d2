// What the definition dialog keeps in the drawing's dictionaries, and what it makes of it.
#include "tests/definition/dialog_tools.h"

#include "controls/WideText.h"
#include "definition/ReadableColour.h"
#include "host/editor/SelectionSets.h"

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using velmor::DataItems;
using velmor::Journal;

namespace {

constexpr const char *kDictionary = "ZEMX_LSD2";

class Settings : public DefinitionDialogTest {
protected:
    std::optional<DataItems> kept(const char *name)
    {
        return drawing().dictionaryEntry(kDictionary, std::string("ZEMX_CATCH_DEFINE_") + name);
    }
    void expectKept(const char *name, int code, const decltype(velmor::DataItem::value) &value)
    {
        const auto items = kept(name);
        ASSERT_TRUE(items) << name;
        EXPECT_THAT(*items, ElementsAre(velmor::DataItem{code, value})) << name;
    }
    void keepInt(const char *name, int value)
    {
        drawing().setDictionaryEntry(kDictionary, std::string("ZEMX_CATCH_DEFINE_") + name,
                                     {{60, static_cast<std::int64_t>(value)}});
    }
    void keepText(const char *name, const std::wstring &value)
    {
        drawing().setDictionaryEntry(kDictionary, std::string("ZEMX_CATCH_DEFINE_") + name, {{1, value}});
    }
};

TEST_F(Settings, ClosingWritesEverythingWithItsGroupCodeEvenIfNothingWasDefined)
{
    run([](CDialogUnderTest &) {});
    expectKept("LAYERS", 1, std::wstring(L"PARCELS"));
    expectKept("POPULATION", 38, 1000.0);
    expectKept("SLOPE", 38, 1.0);
    expectKept("m_bCatchmentType", 60, std::int64_t(1));
    expectKept("m_bHouseType", 60, std::int64_t(0));
    expectKept("m_bIndustrialType", 60, std::int64_t(0));
    EXPECT_TRUE(kept("m_strBlockPath"));
    expectKept("m_strBlockName", 1, std::wstring(L"CatchLabel"));
}

TEST_F(Settings, ClosingWritesInTheRequiredOrder)
{
    Journal::instance().setRecording(true);
    run([](CDialogUnderTest &) { Journal::instance().clear(); });
    std::vector<std::string> keys;
    for (const auto &entry : entriesOf("CZEMCDictionaryPtr::dctWrite"))
        keys.push_back(entry.arguments.at(1));
    EXPECT_THAT(keys, ElementsAre("ZEMX_CATCH_DEFINE_LAYERS", "ZEMX_CATCH_DEFINE_POPULATION", "ZEMX_CATCH_DEFINE_SLOPE",
                                  "ZEMX_CATCH_DEFINE_m_strBlockPath", "ZEMX_CATCH_DEFINE_m_strBlockName",
                                  "ZEMX_CATCH_DEFINE_m_bCatchmentType", "ZEMX_CATCH_DEFINE_m_bHouseType",
                                  "ZEMX_CATCH_DEFINE_m_bIndustrialType"));
}

TEST_F(Settings, WhatWasSetComesBackAtTheNextStart)
{
    run([](CDialogUnderTest &dialog) {
        dialog.click(107);
        dialog.click(106); // off
        dialog.type(220, "250.5");
        dialog.type(216, "2.5");
    });
    run([](CDialogUnderTest &dialog) {
        EXPECT_FALSE(dialog.isChecked(106));
        EXPECT_TRUE(dialog.isChecked(107));
        EXPECT_FALSE(dialog.isChecked(108));
        EXPECT_EQ(dialog.text(220), "250.5");
        EXPECT_EQ(dialog.text(216), "2.5");
        EXPECT_EQ(dialog.text(363), "PARCELS");
    });
}

TEST_F(Settings, WhatWasSetSurvivesTheDrawingsFile)
{
    setLayers({L"PARCELS", L"Ulice žute"});
    run([](CDialogUnderTest &dialog) {
        dialog.click(108);
        dialog.type(220, "77");
    });
    const auto file = m_userFolder / "kept.dxf";
    ASSERT_TRUE(drawing().save(file));
    auto loaded = velmor::Drawing::load(file);
    ASSERT_TRUE(loaded.drawing) << loaded.message;
    m_session.setDrawing(std::move(loaded.drawing), file);
    run([](CDialogUnderTest &dialog) {
        EXPECT_TRUE(dialog.isChecked(106));
        EXPECT_TRUE(dialog.isChecked(108));
        EXPECT_EQ(dialog.text(220), "77");
        EXPECT_EQ(dialog.GetDlgItem(363)->toolTip(), ToQString(L"PARCELS\nUlice žute"));
    });
}

TEST_F(Settings, AnEmptyLayerListLeavesTheOneSavedEarlier)
{
    // Nothing empties the list while the dialog is open, so the drawing gets its list behind the dialog's back.
    drawing().setDictionaryEntry(kDictionary, "ZEMX_CATCH_DEFINE_LAYERS", {});
    run([&](CDialogUnderTest &) { setLayers({L"KEPT"}); });
    expectKept("LAYERS", 1, std::wstring(L"KEPT"));
}

TEST_F(Settings, WithAllTypesSavedAsOffTheChecksStayOffUntilOneIsClicked)
{
    keepInt("m_bCatchmentType", 0);
    run([](CDialogUnderTest &dialog) {
        for (const int control : {106, 107, 108})
            EXPECT_FALSE(dialog.isChecked(control));
        // No type's handler has run.
        for (const int control : {215, 324, 220, 327})
            EXPECT_FALSE(dialog.isEnabled(control)) << control;
        dialog.click(107);
        EXPECT_TRUE(dialog.isChecked(107));
        EXPECT_TRUE(dialog.isEnabled(220));
    });
}

TEST_F(Settings, OnlyTheFirstTypeThatIsOnRunsItsHandler)
{
    keepInt("m_bCatchmentType", 1);
    keepInt("m_bHouseType", 1);
    run([](CDialogUnderTest &dialog) {
        EXPECT_TRUE(dialog.isChecked(106));
        EXPECT_TRUE(dialog.isChecked(107));
        EXPECT_TRUE(dialog.isEnabled(215));
        EXPECT_FALSE(dialog.isEnabled(220)); // house's handler didn't run
    });
    keepInt("m_bCatchmentType", 0);
    run([](CDialogUnderTest &dialog) {
        EXPECT_TRUE(dialog.isEnabled(220));
        EXPECT_FALSE(dialog.isEnabled(215));
    });
}

TEST_F(Settings, WithoutALabelBlockInTheDrawingTheDefaultOneOfTheSymbolFolderIsTaken)
{
    run([&](CDialogUnderTest &dialog) {
        EXPECT_TRUE(dialog.isChecked(274));
        EXPECT_NE(drawing().findBlock(L"CatchLabel"), nullptr);
    });
    expectKept("m_strBlockPath", 1, CModuleConfiguration::Instance()->GetPath(L"Symbol") + L"CatchLabel.dwg");
}

TEST_F(Settings, TheLabelBlockOfTheDrawingsDictionaryGoesBeforeTheDefault)
{
    auto symbol = velmor::Drawing::createNew();
    symbol->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)));
    const auto file = m_userFolder / "Own.dxf";
    ASSERT_TRUE(symbol->save(file));
    const std::wstring path = ToWide(QString::fromStdString(file.string()));
    drawing().setDictionaryEntry("ZEMX_SEWAGE_CATCHMENT", "LABEL_BLOCK", {{1, path}});
    run([&](CDialogUnderTest &) { EXPECT_NE(drawing().findBlock(L"Own"), nullptr); });
    expectKept("m_strBlockPath", 1, path);
    expectKept("m_strBlockName", 1, std::wstring(L"Own"));
}

TEST_F(Settings, WithOnlyOneOfTheTwoBlockKeysTheDefaultLabelBlockIsTaken)
{
    const std::wstring standard = CModuleConfiguration::Instance()->GetPath(L"Symbol") + L"CatchLabel.dwg";
    for (const char *only : {"m_strBlockPath", "m_strBlockName"}) {
        for (const char *name : {"m_strBlockPath", "m_strBlockName"})
            drawing().setDictionaryEntry(kDictionary, std::string("ZEMX_CATCH_DEFINE_") + name, {});
        keepText(only, L"kept.dxf");
        run([](CDialogUnderTest &dialog) { EXPECT_TRUE(dialog.isChecked(274)); });
        expectKept("m_strBlockPath", 1, standard);
        expectKept("m_strBlockName", 1, std::wstring(L"CatchLabel"));
    }
}

TEST_F(Settings, KeysOfTheLabelBlockAreWrittenEvenWhenEmptyAndThenNoBlockIsInserted)
{
    keepText("m_strBlockPath", L"");
    keepText("m_strBlockName", L"");
    run([&](CDialogUnderTest &dialog) {
        EXPECT_EQ(drawing().findBlock(L"CatchLabel"), nullptr);
        EXPECT_TRUE(dialog.isChecked(274)); // the flag of a ready block starts on
    });
    expectKept("m_strBlockPath", 1, std::wstring());
    expectKept("m_strBlockName", 1, std::wstring());
}

TEST_F(Settings, TheLayerSelectionHoldsTheEntitiesOfThoseLayersInAllBlocksNamesComparedExactly)
{
    for (velmor::BlockRecord *block : {&drawing().addBlock(L"PART"), drawing().findBlock(L"*Paper_Space")}) {
        auto inBlock = std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 0));
        AcDbLine &inner = *inBlock;
        drawing().append(std::move(inBlock), *block);
        drawing().setLayerOf(inner, drawing().ensureLayer(L"ONLY"));
    }
    addLine(0, 0, 1, 1, L"ONLY");
    const AcDbObjectId gone = addLine(0, 0, 2, 2, L"ONLY");
    {
        const CZEMCEntityPtr entity(gone, AcDb::kForWrite);
        entity->erase(true);
    }
    addLine(0, 0, 3, 3, L"OTHER");

    setLayers({L"ONLY"});
    run([&](CDialogUnderTest &) { EXPECT_THAT(membersOfTheOnlySet(m_session), SizeIs(3)); });
    setLayers({L"only"});
    run([&](CDialogUnderTest &) { EXPECT_THAT(membersOfTheOnlySet(m_session), IsEmpty()); });
    setLayers({L"OTHER", L"ONLY"});
    run([&](CDialogUnderTest &) { EXPECT_THAT(membersOfTheOnlySet(m_session), SizeIs(4)); });
}

TEST_F(Settings, TheDialogFreesItsSelectionSet)
{
    run([&](CDialogUnderTest &) { EXPECT_EQ(m_session.selectionSets().size(), 1u); });
    EXPECT_EQ(m_session.selectionSets().size(), 0u);
}

TEST_F(Settings, ScaleAndColourOfTheHatchComeFromTheSettings)
{
    setSetting("CATCH_HATCH_SCALE", 3.5);
    setSetting("CATCH_HATCH_COLOR_TEMP", 6);
    const AcDbObjectId box = addBox(0, 0, 10, 10, L"0");
    run([&](CDialogUnderTest &dialog) {
        EXPECT_EQ(dialog.swatch(333), acedGetRGB(6));
        select(dialog, {L"D1"});
        dialog.addMainRow(box, 100);
        dialog.selectRows({0});
        ASSERT_THAT(hatches(), SizeIs(1));
        const CZEMCEntityPtr entity(hatches().front(), AcDb::kForRead);
        const auto &hatch = static_cast<const AcDbHatch &>(*entity.get());
        EXPECT_DOUBLE_EQ(hatch.patternScale(), 3.5);
        EXPECT_EQ(hatch.colorIndex(), 6);
    });
}

TEST_F(Settings, SuffixAndCounterDelimiterOfANameComeFromTheSettings)
{
    setSetting("CATCH_NAME_PREFIX", std::wstring(L"<"));
    setSetting("CATCH_NAME_SUFIX", std::wstring(L">"));
    setSetting("CATCH_COUNTER_DELIMITER", std::wstring(L"#"));
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        EXPECT_EQ(dialog.text(329), "<D1>#1");
    });
}

} // namespace
