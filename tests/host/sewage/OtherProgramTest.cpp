// Another program opens and saves the drawing; nothing of the areas is lost.
#include "tests/host/sewage/SavedWorld.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace velmor::test {
namespace {

constexpr char kPython[] = "/usr/bin/python3";

bool hasEzdxf()
{
    static const bool has = std::system((std::string(kPython) + " -c 'import ezdxf' 2>/dev/null").c_str()) == 0;
    return has;
}

class OtherProgram : public SavedWorld {
protected:
    void SetUp() override
    {
        if (!hasEzdxf())
            GTEST_SKIP() << "python3-ezdxf is not installed";
        SavedWorld::SetUp();
        std::string name = (std::filesystem::temp_directory_path() / "velmor-areas-XXXXXX").string();
        ASSERT_TRUE(::mkdtemp(name.data()));
        folder = name;
    }
    void TearDown() override
    {
        if (!folder.empty())
            std::filesystem::remove_all(folder);
    }
    /// What the program printed; its script reads in.dxf and may write out.dxf.
    std::string run(const std::string &script)
    {
        std::ofstream(folder / "script.py") << script;
        const std::string command = "cd '" + folder.string() + "' && " + kPython + " script.py > printed.txt 2>&1";
        const int result = std::system(command.c_str());
        std::ostringstream printed;
        printed << std::ifstream(folder / "printed.txt").rdbuf();
        EXPECT_EQ(result, 0) << printed.str();
        return printed.str();
    }

    std::filesystem::path folder;
};

TEST_P(OtherProgram, OpensAndSavesTheDrawingAndAllAreasStay)
{
    makeAreas();
    const auto recordsBefore = records();
    const auto ringsBefore = rings();
    const std::string jsonBefore = json();
    ASSERT_TRUE(drawing().save(folder / "in.dxf"));
    run("import ezdxf\nd = ezdxf.readfile('in.dxf')\nd.saveas('out.dxf')\n");
    LoadResult loaded = Drawing::load(folder / "out.dxf");
    ASSERT_TRUE(loaded.drawing) << loaded.message;
    session.setDrawing(std::move(loaded.drawing));
    EXPECT_EQ(records(), recordsBefore);
    EXPECT_EQ(rings(), ringsBefore);
    EXPECT_EQ(json(), jsonBefore);
    EXPECT_EQ(labelCount(), 2);
    EXPECT_NE(manager().DeleteCatchmentLabel(manager().GetCatchmentAreaByGuid(L"{M}")), 0);
}

TEST_P(OtherProgram, FindsNoErrorInWhatWasWritten)
{
    makeAreas();
    ASSERT_TRUE(drawing().save(folder / "in.dxf"));
    EXPECT_EQ(run("import ezdxf\na = ezdxf.readfile('in.dxf').audit()\n"
                  "print(len(a.errors), [e.message for e in a.errors], [f.message for f in a.fixes])\n"),
              "0 [] []\n");
}

TEST_P(OtherProgram, ReadsTheShippedLabelAsAReferenceWithAttributesThatCanBeRead)
{
    const AreaPtr area = manager().CreateCA(
        kSquare, L"North", 3, bag({{L"CA_GUID", L"{G}"}, {L"CA_POPULATION", 120.0}, {L"CA_COEFF", 0.456}}));
    const std::wstring path = ZEMGis::CModuleConfiguration::Instance()->GetPath(L"Symbol") + L"CatchLabel.dwg";
    const AcDbObjectId block = CZEMCDraw::insertBlockDefinition(L"CatchLabel", path.c_str());
    CStringArray tags;
    ZEMGis::Utility::CUtility::GetAttributesFromBlockDef(block, tags);
    ASSERT_NE(manager().WriteCatchmentLabel(area, block, tags), 0);
    ASSERT_TRUE(drawing().save(folder / "in.dxf"));
    // Heights in millimetres on a plan at 1:1000, where a unit of the drawing is one.
    EXPECT_EQ(run("import ezdxf\nd = ezdxf.readfile('in.dxf')\na = d.audit()\nprint(len(a.errors), len(a.fixes))\n"
                  "for e in d.modelspace().query('INSERT'):\n"
                  "    print(e.dxf.name, e.dxf.layer, round(e.dxf.insert.x), round(e.dxf.insert.y), e.seqend is not "
                  "None)\n"
                  "    for b in e.attribs:\n"
                  "        print(b.dxf.tag, b.dxf.text, '%.2f' % b.dxf.height, b.is_invisible)\n"),
              "0 0\n"
              "CatchLabel VELMOR_LABELS 50 50 True\n"
              "NAME North 2.40 False\n"
              "AREA 1.0000 2.40 False\n"
              "COEFF 0.46 2.40 False\n"
              "DENSITY 120.00 2.40 False\n");
}

TEST_P(OtherProgram, MovesAnAreaAndItIsReadAnew)
{
    makeAreas();
    ASSERT_TRUE(drawing().save(folder / "in.dxf"));
    run("import ezdxf\nd = ezdxf.readfile('in.dxf')\n"
        "for e in d.modelspace():\n"
        "    if e.dxf.layer == 'VELMOR_CATCHMENTS' and e.dxftype() in ('LWPOLYLINE', 'POLYLINE'):\n"
        "        e.translate(1000, 0, 0)\n"
        "d.saveas('out.dxf')\n");
    LoadResult loaded = Drawing::load(folder / "out.dxf");
    ASSERT_TRUE(loaded.drawing) << loaded.message;
    session.setDrawing(std::move(loaded.drawing));
    EXPECT_EQ(manager().GetCatchmentAreaByGuid(L"{M}")->GetCenterPoint(), AcGePoint3d(1050, 50));
    EXPECT_DOUBLE_EQ(manager().GetCatchmentAreaByGuid(L"{M}")->GetArea(), 1.0);
}

INSTANTIATE_TEST_SUITE_P(OfAnyVersion, OtherProgram, testing::Bool(),
                         [](const auto &param) { return param.param ? "R12" : "R2013"; });

} // namespace
} // namespace velmor::test
