// Layers, inquiries, hatches, blocks, variables, help.
#include "host/editor/DrawingUnits.h"
#include "tests/host/commands/CommandsFixture.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace velmor {
namespace {

using test::CommandsFixture;

class OtherCommands : public CommandsFixture {
protected:
    const Layer &layerNamed(const wchar_t *name) { return drawing().layer(*drawing().findLayer(name)); }
    const std::wstring &current() { return drawing().layer(drawing().currentLayer()).name; }
};

// --- LAYER
// -------------------------------------------------------------------------------------------------------

TEST_F(OtherCommands, ANameMakesALayerCurrentAndMakesIt)
{
    ASSERT_TRUE(run(L"LAYER Roads"));
    EXPECT_EQ(current(), L"Roads");
    ASSERT_TRUE(run(L"LAYER MAke \"Two words\""));
    EXPECT_EQ(current(), L"Two words");
    ASSERT_TRUE(run(L"LA SE roads"));
    EXPECT_EQ(current(), L"Roads");
    EXPECT_FALSE(run(L"LAYER SEt Nowhere"));
    EXPECT_FALSE(drawing().findLayer(L"Nowhere"));
    EXPECT_FALSE(run(L"LAYER a<b"));
}

TEST_F(OtherCommands, OneWordOnALineIsANameAlsoWhenItCouldBeginAnOption)
{
    for (const wchar_t *name : {L"New", L"Off", L"Set"}) {
        ASSERT_TRUE(run(std::wstring(L"LAYER ") + name));
        EXPECT_EQ(current(), name);
    }
    EXPECT_FALSE(run(L"LAYER _OFF")); // with the mark it is the option, which asks for names
}

TEST_F(OtherCommands, NewLayersStayBesideTheCurrentOne)
{
    ASSERT_TRUE(run(L"LAYER NEw A1,B1"));
    EXPECT_EQ(current(), L"0");
    EXPECT_TRUE(drawing().findLayer(L"A1") && drawing().findLayer(L"B1"));
    EXPECT_FALSE(run(L"LAYER NEw C1,D?1"));
    EXPECT_FALSE(drawing().findLayer(L"C1")); // all or nothing
}

TEST_F(OtherCommands, LayersAreTurnedFrozenLockedAndColoured)
{
    run(L"LAYER NEw A1,B1");
    ASSERT_TRUE(run(L"LAYER OFF A1,B1"));
    EXPECT_FALSE(layerNamed(L"A1").on || layerNamed(L"B1").on);
    ASSERT_TRUE(run(L"LAYER ON A1"));
    EXPECT_TRUE(layerNamed(L"A1").on);
    ASSERT_TRUE(run(L"LAYER FReeze A1"));
    EXPECT_TRUE(layerNamed(L"A1").frozen);
    EXPECT_FALSE(run(L"LAYER A1")); // frozen: not as the current one
    ASSERT_TRUE(run(L"LAYER THaw A1"));
    EXPECT_FALSE(layerNamed(L"A1").frozen);
    ASSERT_TRUE(run(L"LAYER LOck A1"));
    EXPECT_TRUE(layerNamed(L"A1").locked);
    ASSERT_TRUE(run(L"LAYER UNlock A1"));
    EXPECT_FALSE(layerNamed(L"A1").locked);
    ASSERT_TRUE(run(L"LAYER COlour 30 A1,B1"));
    EXPECT_EQ(layerNamed(L"B1").color, 30);
    EXPECT_FALSE(run(L"LAYER COlour 256 A1"));
    EXPECT_FALSE(run(L"LAYER FReeze 0")); // the current one
    EXPECT_FALSE(layerNamed(L"0").frozen);
}

TEST_F(OtherCommands, ALayerTakesAnotherNameAndTheListOfBoundaryLayersFollows)
{
    run(L"LAYER NEw Walls,Roads");
    ASSERT_TRUE(run(L"BOUNDARY-LAYERS Roads,Walls \"\""));
    ASSERT_TRUE(run(L"LAYER REname walls \"Outer walls\""));
    EXPECT_FALSE(drawing().findLayer(L"Walls"));
    EXPECT_TRUE(drawing().findLayer(L"Outer walls"));
    const auto bounding = [&] { return drawing().dictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_LAYERS"); };
    EXPECT_EQ(bounding(), (DataItems{{1, L"Roads"}, {1, L"Outer walls"}}));
    ASSERT_TRUE(run(L"U"));
    EXPECT_TRUE(drawing().findLayer(L"Walls"));
    EXPECT_EQ(bounding(), (DataItems{{1, L"Roads"}, {1, L"Walls"}}));
    ASSERT_TRUE(run(L"REDO"));
    EXPECT_EQ(bounding(), (DataItems{{1, L"Roads"}, {1, L"Outer walls"}}));
    for (const wchar_t *refused : {L"LAYER REname 0 Zero", L"LAYER REname Roads \"outer WALLS\"",
                                   L"LAYER REname Roads a|b", L"LAYER REname Nowhere Else"})
        EXPECT_FALSE(run(refused)) << refused;
    EXPECT_TRUE(drawing().findLayer(L"Roads"));
}

TEST_F(OtherCommands, TheListOfLayersTellsTheirStates)
{
    run(L"LAYER NEw A1");
    run(L"LAYER OFF A1");
    ASSERT_TRUE(run(L"LAYER LIst"));
    EXPECT_TRUE(wasTold(L"A1: colour 7, off"));
    EXPECT_TRUE(wasTold(L"0: colour 7, on, current"));
}

// --- LIST, DIST, AREA, AUDIT
// -------------------------------------------------------------------------------------

TEST_F(OtherCommands, ListTellsKindLayerPointsLengthAndArea)
{
    rectangle(0, 0, 4, 3);
    ASSERT_TRUE(run(L"LIST ALL \"\""));
    EXPECT_TRUE(wasTold(L"LWPOLYLINE on layer 0"));
    EXPECT_TRUE(wasTold(L"Length: 14"));
    EXPECT_TRUE(wasTold(L"Area: 12"));
    EXPECT_TRUE(wasTold(L"Vertex: 4, 3"));
}

TEST_F(OtherCommands, OfManyObjectsListTellsTheFirstAndTheKindsOfTheOthers)
{
    for (int i = 0; i < 203; ++i)
        line(i, 0, i, 1);
    ASSERT_TRUE(run(L"CIRCLE 50,50 1"));
    ASSERT_TRUE(run(L"LIST ALL \"\""));
    EXPECT_TRUE(wasTold(L"and 4 more: 1 CIRCLE, 3 LINE"));
    EXPECT_FALSE(wasTold(L"CIRCLE on layer"));
}

TEST_F(OtherCommands, DistTellsDistanceAndAngle)
{
    ASSERT_TRUE(run(L"DIST 0,0 3,-4"));
    EXPECT_TRUE(wasTold(L"Distance 5, angle 306.8699; dx 3, dy -4, dz 0"));
}

TEST_F(OtherCommands, AreasAreSummedAndTakenOff)
{
    rectangle(0, 0, 10, 10);
    ASSERT_TRUE(run(L"CIRCLE 50,50 1"));
    ASSERT_TRUE(run(L"AREA 0,0 4,0 4,3 \"\" Object 0,5 Subtract Object 51,50"));
    EXPECT_TRUE(wasTold(L"Area 6, perimeter 12; sum 6"));
    EXPECT_TRUE(wasTold(L"Area 100, perimeter 40; sum 106"));
    EXPECT_TRUE(wasTold(L"Area 3.1416, perimeter 6.2832; sum 102.8584"));
}

TEST_F(OtherCommands, AnAreaNeedsThreeCornersOrAClosedObject)
{
    line(0, 0, 10, 0);
    EXPECT_FALSE(run(L"AREA 0,0 4,0 \"\" 4,3 \"\""));
    EXPECT_TRUE(wasTold(L"at least three corners"));
    EXPECT_TRUE(wasTold(L"Area 6"));
    EXPECT_FALSE(run(L"AREA Object 5,0"));
    EXPECT_TRUE(wasTold(L"not closed"));
}

TEST_F(OtherCommands, AuditCountsWhatIsThere)
{
    line(0, 0, 1, 1);
    line(0, 0, 2, 1);
    ASSERT_TRUE(run(L"AUDIT"));
    EXPECT_TRUE(wasTold(L"LINE: 2"));
    EXPECT_TRUE(wasTold(L"sound"));
}

// --- HATCH
// -------------------------------------------------------------------------------------------------------

TEST_F(OtherCommands, AHatchLeavesItsIslandsOut)
{
    rectangle(0, 0, 100, 100);
    rectangle(40, 40, 60, 60);
    ASSERT_TRUE(run(L"HATCH Pattern ANSI31 Scale 2.5 Angle 45 10,10 \"\""));
    const auto *hatch = last<AcDbHatch>();
    ASSERT_TRUE(hatch);
    EXPECT_EQ(hatch->loops().size(), 2u);
    EXPECT_EQ(hatch->patternScale(), 2.5);
    EXPECT_NEAR(hatch->patternAngle(), std::numbers::pi / 4.0, 1e-12);
    ASSERT_FALSE(hatch->lines().empty());
    for (const auto &piece : hatch->lines()) {
        const double x = (piece.x1 + piece.x2) / 2.0, y = (piece.y1 + piece.y2) / 2.0;
        EXPECT_FALSE(x > 40.0 && x < 60.0 && y > 40.0 && y < 60.0);
    }
}

TEST_F(OtherCommands, WithoutIslandsTheWholeRegionIsHatchedAndObjectsAsTheyAre)
{
    rectangle(0, 0, 100, 100);
    rectangle(40, 40, 60, 60);
    ASSERT_TRUE(run(L"HATCH Islands No 10,10 \"\""));
    EXPECT_EQ(last<AcDbHatch>()->loops().size(), 1u);
    ASSERT_TRUE(run(L"HATCH Objects 40,50 \"\" \"\""));
    ASSERT_EQ(last<AcDbHatch>()->loops().size(), 1u);
    EXPECT_EQ(last<AcDbHatch>()->loops()[0].vertices[0].x, 40.0);
}

TEST_F(OtherCommands, AHatchRefusesWhatItCannotUse)
{
    rectangle(0, 0, 100, 100);
    EXPECT_FALSE(run(L"HATCH 200,200 10,10 \"\""));
    EXPECT_TRUE(wasTold(L"Nothing goes round the point"));
    EXPECT_FALSE(run(L"HATCH Pattern NOSUCH ANSI31 Scale 0 1 10,10 Undo \"\""));
    EXPECT_TRUE(wasTold(L"no pattern NOSUCH"));
    EXPECT_TRUE(wasTold(L"A scale is more than 0"));
    EXPECT_EQ(living().size(), 2u); // the rectangle, and the first hatch
}

// --- INSERT
// ------------------------------------------------------------------------------------------------------

TEST_F(OtherCommands, ABlockIsInsertedWithScaleRotationAndAttributes)
{
    BlockRecord &block = drawing().addBlock(L"Box");
    TextShape shape;
    shape.position = {2.0, 0.0};
    shape.text = L"standard";
    drawing().append(std::make_unique<AttributeDefinitionEntity>(L"NAME", L"Name of it", shape), block);
    ASSERT_TRUE(run(L"INSERT box 10,10 3 90 \"M 7\""));
    const auto *reference = last<AcDbBlockReference>();
    ASSERT_TRUE(reference);
    EXPECT_EQ(reference->placement().scaleX, 3.0);
    EXPECT_NEAR(reference->placement().rotation, std::numbers::pi / 2.0, 1e-12);
    ASSERT_EQ(attributesOf(*reference).size(), 1u);
    EXPECT_EQ(attributesOf(*reference)[0]->shape().text, L"M 7");
    EXPECT_NEAR(attributesOf(*reference)[0]->shape().position.y, 16.0, 1e-9);
    ASSERT_TRUE(run(L"INSERT Box 0,0"));
    EXPECT_EQ(attributesOf(*last<AcDbBlockReference>())[0]->shape().text, L"standard");
    EXPECT_EQ(last<AcDbBlockReference>()->placement().scaleX, 1.0);
}

TEST_F(OtherCommands, AFileIsInsertedAsABlockAndAWrongOneIsTold)
{
    const auto folder = std::filesystem::temp_directory_path() / "velmor_insert_test";
    std::filesystem::create_directories(folder);
    auto source = Drawing::createNew();
    source->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(5, 0)));
    ASSERT_TRUE(source->save(folder / "part.dxf"));
    ASSERT_TRUE(run(L"INSERT \"" + (folder / "part.dxf").wstring() + L"\" 1,1")) << std::string(why.begin(), why.end());
    EXPECT_TRUE(drawing().findBlock(L"part"));
    EXPECT_TRUE(last<AcDbBlockReference>());
    EXPECT_FALSE(run(L"INSERT \"" + (folder / "none.dxf").wstring() + L"\" 1,1"));
    EXPECT_FALSE(run(L"INSERT NoSuchBlock 1,1"));
    EXPECT_TRUE(wasTold(L"no block NoSuchBlock"));
    std::filesystem::remove_all(folder);
}

TEST_F(OtherCommands, AFileIsInsertedWhateverItsNameAndWhateverItsForm)
{
    const auto folder = std::filesystem::temp_directory_path() / "velmor_insert_names_test";
    std::filesystem::create_directories(folder / "bin");
    auto source = Drawing::createNew();
    source->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(5, 0)));
    ASSERT_TRUE(source->save(folder / "a,b=c.dxf"));
    ASSERT_TRUE(run(L"INSERT \"" + (folder / "a,b=c.dxf").wstring() + L"\" 1,1"))
        << std::string(why.begin(), why.end());
    ASSERT_TRUE(last<AcDbBlockReference>());
    EXPECT_TRUE(drawing().findBlock(L"a_b_c")) << "no block may have such a name";
    // A file in the closed format goes through an installed converter.
    std::ofstream(folder / "closed.dwg") << "AC1027 and so on";
    const auto converter = folder / "bin" / "dwg2dxf";
    std::ofstream(converter) << "#!/bin/sh\n/bin/cp '" << (folder / "a,b=c.dxf").string() << "' \"$3\"\n";
    std::filesystem::permissions(converter, std::filesystem::perms::owner_all);
    const std::string path = std::getenv("PATH");
    ::setenv("PATH", (folder / "bin").c_str(), 1);
    EXPECT_TRUE(run(L"INSERT \"" + (folder / "closed.dwg").wstring() + L"\" 2,2"));
    ::setenv("PATH", path.c_str(), 1);
    EXPECT_TRUE(drawing().findBlock(L"closed"));
    EXPECT_EQ(living().size(), 2u);
    std::filesystem::remove_all(folder);
}

TEST_F(OtherCommands, WhereTheDrawingHasABlockOfTheFilesNameItsOwnAttributesAreAskedFor)
{
    const auto folder = std::filesystem::temp_directory_path() / "velmor_insert_own_test";
    std::filesystem::create_directories(folder);
    const auto attribute = [](const wchar_t *tag) {
        return std::make_unique<AttributeDefinitionEntity>(tag, tag, TextShape());
    };
    auto source = Drawing::createNew();
    source->append(attribute(L"OTHER"));
    source->append(attribute(L"LEVEL"));
    ASSERT_TRUE(source->save(folder / "shaft.dxf"));
    BlockRecord &own = drawing().addBlock(L"SHAFT");
    drawing().append(attribute(L"LEVEL"), own);
    ASSERT_TRUE(run(L"INSERT \"" + (folder / "shaft.dxf").wstring() + L"\" 1,1 1 0 12.50"));
    EXPECT_TRUE(wasTold(L"block SHAFT of its own"));
    const auto attributes = attributesOf(*last<AcDbBlockReference>());
    ASSERT_EQ(attributes.size(), 1u);
    EXPECT_EQ(attributes[0]->tag(), L"LEVEL");
    EXPECT_EQ(attributes[0]->shape().text, L"12.50");
    std::filesystem::remove_all(folder);
}

// --- SETVAR, UNITS, HELP, QUIT
// -----------------------------------------------------------------------------------

TEST_F(OtherCommands, VariablesAreSetKeptAndListed)
{
    ASSERT_TRUE(run(L"SETVAR PICKRADIUS 2.5"));
    EXPECT_EQ(std::get<double>(*session.variable(L"PICKRADIUS")), 2.5);
    ASSERT_TRUE(run(L"SETVAR PICKRADIUS \"\""));
    EXPECT_EQ(std::get<double>(*session.variable(L"PICKRADIUS")), 2.5);
    ASSERT_TRUE(run(L"SETVAR ?"));
    EXPECT_TRUE(wasTold(L"PICKRADIUS = 2.5"));
    EXPECT_FALSE(run(L"SETVAR PICKRADIUS -1"));
    EXPECT_FALSE(run(L"SETVAR NOSUCH 1"));
}

TEST_F(OtherCommands, ALayerWhoseNameIsANumberBecomesTheCurrentOne)
{
    drawing().setCurrentLayer(drawing().ensureLayer(L"Roads"));
    ASSERT_TRUE(run(L"SETVAR CLAYER 0"));
    EXPECT_EQ(drawing().layer(drawing().currentLayer()).name, L"0");
}

TEST_F(OtherCommands, UnitsAreNamedAndTheirLengthFollows)
{
    ASSERT_TRUE(run(L"UNITS MIllimetres"));
    EXPECT_EQ(unitOf(drawing()), DrawingUnit::Millimetres);
    EXPECT_EQ(metresPerUnit(drawing()), 0.001);
    EXPECT_EQ(drawing().component<UndoHistory>().undo(), 1u);
    EXPECT_EQ(unitOf(drawing()), DrawingUnit::Metres);
    EXPECT_FALSE(run(L"UNITS Furlongs"));
}

TEST_F(OtherCommands, HelpListsAllAndTellsOne)
{
    ASSERT_TRUE(run(L"HELP"));
    EXPECT_TRUE(wasTold(L"LINE (L, LN): "));
    EXPECT_TRUE(wasTold(L"ZOOM"));
    told.clear();
    ASSERT_TRUE(run(L"HELP Z"));
    EXPECT_TRUE(wasTold(L"ZOOM (Z, ZO)"));
    EXPECT_TRUE(wasTold(L"Previous: what was shown before"));
    EXPECT_FALSE(wasTold(L"LINE"));
    EXPECT_FALSE(run(L"HELP NOSUCH"));
}

TEST_F(OtherCommands, QuitAsksAboutChangesFirst)
{
    line(0, 0, 1, 1);
    EXPECT_FALSE(run(L"QUIT No"));
    EXPECT_FALSE(session.commands().isQuitAsked());
    EXPECT_TRUE(run(L"QUIT Yes"));
    EXPECT_TRUE(session.commands().isQuitAsked());
}

} // namespace
} // namespace velmor
