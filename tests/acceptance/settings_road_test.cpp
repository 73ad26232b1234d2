// The road of the settings: made in the dialog, kept in the drawing's file, found again. The scripts stand in the
// folder settings.
#include "tests/app/ProgramRun.h"

#include "host/drawing/Drawing.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

namespace fs = std::filesystem;

class SettingsRoad : public testing::Test {
protected:
    SettingsRoad()
    {
        for (const char *script : {"make.velmor", "find.velmor"})
            fs::copy(fs::path(VELMOR_SOURCE_DIR) / "tests/acceptance/settings" / script, folder.path());
    }
    void runScript(const std::string &name)
    {
        const test::Outcome outcome = test::runProgram({"run", name, "--language", "en"}, folder.path());
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        EXPECT_EQ(outcome.err, "");
    }
    /// Everything that the dialog keeps in the drawing, key by key with its group codes.
    void expectKept(const std::string &file)
    {
        const LoadResult loaded = Drawing::load(folder / file);
        ASSERT_TRUE(loaded.drawing) << loaded.message;
        const auto items = [&](const char *key) {
            return loaded.drawing->dictionaryEntry("ZEMX_LSD2", std::string("ZEMX_CATCH_DEFINE_") + key)
                .value_or(DataItems());
        };
        EXPECT_EQ(items("LAYERS"), DataItems({{1, std::wstring(L"Parcels")}, {1, std::wstring(L"Ulice žute")}}));
        EXPECT_EQ(items("POPULATION"), DataItems({{38, 250.5}}));
        EXPECT_EQ(items("SLOPE"), DataItems({{38, 1.0}}));
        EXPECT_EQ(items("m_strBlockName"), DataItems({{1, std::wstring(L"CatchLabel")}}));
        EXPECT_EQ(items("m_strBlockPath").size(), 1u);
        EXPECT_EQ(items("m_bCatchmentType"), DataItems({{60, std::int64_t(0)}}));
        EXPECT_EQ(items("m_bHouseType"), DataItems({{60, std::int64_t(1)}}));
        EXPECT_EQ(items("m_bIndustrialType"), DataItems({{60, std::int64_t(0)}}));
        const auto terrains = loaded.drawing->dictionaryEntry("ZEMX_TERRAINTYPE", "TT_DEFINITION");
        ASSERT_TRUE(terrains);
        ASSERT_EQ(terrains->size(), 1u);
        EXPECT_NE(std::get<std::wstring>(terrains->front().value).find(L"name=\"Livada\" flow=\"0.0700\""),
                  std::wstring::npos);
    }
    test::ScratchFolder folder;
};

TEST_F(SettingsRoad, WhatWasSetBeforeTheDrawingWasSavedIsFoundWhenItIsOpenedAgain)
{
    runScript("make.velmor");
    expectKept("kept.dxf");
    runScript("find.velmor");
    expectKept("again.dxf");
}

} // namespace
} // namespace velmor
