// An automatic definition over hundreds of sections leaves no selection set behind: each trace makes sets of its own,
// and the host holds them till they are freed.
#include "tests/definition/dialog_fixture.h"

#include "host/editor/SelectionSets.h"

#include <cstdlib>

namespace fs = std::filesystem;

namespace {

class LeftOverSets : public DefinitionDialogTest {
protected:
    /// Runs Auto over all sections of the drawing; the number of areas afterwards.
    std::size_t runAuto(bool islands)
    {
        std::vector<AcDbObjectId> ids;
        for (const auto &section : network().sections())
            ids.push_back(section->GetObjectId());
        sections = ids.size();
        run([&](CDialogUnderTest &dialog) {
            m_session.setNextSelection(ids);
            dialog.click(203);
            dialog.choose(257, 2);
            dialog.check(268, islands);
            dialog.check(274, false);
            dialog.type(215, "0.5");
            dialog.click(290);
            setsWhileOpen = m_session.selectionSets().size();
        });
        return areas().size();
    }
    static fs::path dataFolder()
    {
        if (const char *folder = std::getenv("VELMOR_DATA_DIR"))
            return folder;
        return fs::path(VELMOR_SOURCE_DIR) / ".." / "shared" / "data";
    }
    std::size_t sections = 0, setsWhileOpen = 0;
};

TEST_F(LeftOverSets, ThereAreNoneAfterAnAutoRunOverTheExampleTown)
{
    const fs::path examples = fs::path(VELMOR_SOURCE_DIR) / "examples";
    auto plan = velmor::Drawing::load(examples / "town_plan.dxf");
    ASSERT_TRUE(plan.drawing) << plan.message;
    m_session.setDrawing(std::move(plan.drawing));
    ASSERT_TRUE(velmor::importInp(drawing(), examples / "town.inp"));
    setLayers({L"Granice slivova"});
    EXPECT_EQ(runAuto(true), 66u);
    EXPECT_EQ(sections, 70u);
    EXPECT_LE(setsWhileOpen, 1u) << "that of the boundary layers, which the dialog keeps";
    EXPECT_EQ(m_session.selectionSets().size(), 0u);
}

TEST_F(LeftOverSets, ThereAreNoneAfterAnAutoRunOverHundredsOfSectionsOfARealNetwork)
{
    const fs::path file = dataFolder() / "net_311_conduits_ft.inp";
    if (!fs::exists(file))
        GTEST_SKIP() << "no such file: " << file.string() << " (set VELMOR_DATA_DIR)";
    m_session.setDrawing(velmor::Drawing::createNew());
    ASSERT_TRUE(velmor::importInp(drawing(), file, {.withPolygons = true}));
    setLayers({velmor::kPolygonLayer});
    EXPECT_GT(runAuto(false), 50u);
    EXPECT_GT(sections, 200u);
    EXPECT_LE(setsWhileOpen, 1u) << "that of the boundary layers, which the dialog keeps";
    EXPECT_EQ(m_session.selectionSets().size(), 0u);
}

} // namespace
