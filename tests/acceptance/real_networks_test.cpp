// The first road on real networks: a network file comes in with its subcatchment polygons, the automatic definition
// runs over all sections through the real dialog, and what it traced is compared with the polygons it was traced along.
#include "contracts/CatchmentArea.h"
#include "host/drawing/Drawing.h"
#include "host/network/Network.h"
#include "host/services/Text.h"

#include <geos/geom/CoordinateArraySequence.h>
#include <geos/geom/GeometryFactory.h>
#include <geos/geom/LinearRing.h>
#include <geos/geom/Polygon.h>
#include <geos/index/strtree/TemplateSTRtree.h>
#include <geos/operation/valid/MakeValid.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using geos::geom::Geometry;

fs::path dataFolder()
{
    if (const char *folder = std::getenv("VELMOR_DATA_DIR"))
        return folder;
    return fs::path(VELMOR_SOURCE_DIR) / ".." / "shared" / "data";
}

int shell(const std::string &command)
{
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::unique_ptr<Geometry> polygonOf(const std::vector<AcDbPolyline::Vertex> &vertices)
{
    const auto *factory = geos::geom::GeometryFactory::getDefaultInstance();
    std::vector<geos::geom::Coordinate> ring;
    for (const auto &vertex : vertices)
        ring.emplace_back(vertex.x, vertex.y);
    ring.push_back(ring.front());
    auto polygon = factory->createPolygon(
        factory->createLinearRing(std::make_unique<geos::geom::CoordinateArraySequence>(std::move(ring))));
    return polygon->isValid() ? std::unique_ptr<Geometry>(std::move(polygon))
                              : geos::operation::valid::MakeValid().build(polygon.get());
}

/// Ring of an area that was traced along polygons.
const std::vector<AcDbPolyline::Vertex> &ringOf(const ZEMGis::Sewage::CCatchmentArea &area)
{
    const CZEMCPolylineLWPtr opened(area.GetObjectId(), AcDb::kForRead);
    return opened.polyline()->vertices();
}

struct Outcome {
    std::size_t sections = 0, areas = 0, agreeing = 0, polygons = 0;
    std::string disagreeing;
};

/// Runs the road on one network file; agreement is a symmetric difference below 0.1 % of the polygon's area.
Outcome runRoad(const std::string &name)
{
    const fs::path folder = fs::temp_directory_path() / ("velmor_road_" + std::to_string(getpid()) + "_" + name);
    fs::create_directories(folder);
    const std::string velmor = VELMOR_PROGRAM;
    const fs::path imported = folder / "imported.dxf", traced = folder / "traced.dxf", script = folder / "road.velmor";
    EXPECT_EQ(shell(velmor + " import " + (dataFolder() / name).string() + " -o " + imported.string() +
                    " --with-polygons > " + (folder / "import.log").string()),
              0);
    std::ofstream(script) << "open " << imported.string() << "\n"
                          << "boundary-layers SUBCATCHMENT_POLYGONS\n"
                          << "select all\n"
                          << "zemsewage_create\n"
                          << "click 203\n"
                          << "choose 257 2\n"
                          << "type 215 0.5\n"
                          << "check 274 off\n"
                          << "click 290\n"
                          << "close\n"
                          << "save " << traced.string() << "\n";
    EXPECT_EQ(shell(velmor + " run " + script.string() + " > " + (folder / "run.log").string() + " 2>&1"), 0);

    Outcome outcome;
    auto loaded = velmor::Drawing::load(traced);
    EXPECT_TRUE(loaded.drawing) << loaded.message;
    if (!loaded.drawing)
        return outcome;
    velmor::Drawing &drawing = *loaded.drawing;
    velmor::setWorkingDrawing(&drawing);
    outcome.sections = drawing.component<velmor::Network>().sections().size();

    std::vector<std::unique_ptr<Geometry>> polygons;
    geos::index::strtree::TemplateSTRtree<const Geometry *> tree;
    const auto layer = drawing.findLayer(velmor::kPolygonLayer);
    for (const AcDbEntity *entity : drawing.modelSpace().entities())
        if (!entity->isErased() && velmor::layerIndexOf(*entity) == layer) {
            polygons.push_back(polygonOf(static_cast<const AcDbPolyline &>(*entity).vertices()));
            tree.insert(polygons.back()->getEnvelopeInternal(), polygons.back().get());
        }
    outcome.polygons = polygons.size();

    ZEMGis::Sewage::CatchmentAreas areas;
    ZEMGis::Sewage::CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(areas, ZEMGis::Sewage::kTypeAll);
    for (const auto &record : areas) {
        ++outcome.areas;
        const auto area = polygonOf(ringOf(*record));
        bool agrees = false;
        tree.query(*area->getEnvelopeInternal(), [&](const Geometry *polygon) {
            const double size = polygon->getArea();
            agrees = agrees || (std::abs(area->getArea() - size) < 0.001 * size &&
                                area->symDifference(polygon)->getArea() < 0.001 * size);
            return !agrees;
        });
        if (agrees)
            ++outcome.agreeing;
        else
            outcome.disagreeing += velmor::utf8(record->GetName()) + " ";
    }
    velmor::setWorkingDrawing(nullptr);
    std::cout << name << ": " << outcome.sections << " sections, " << outcome.polygons << " polygons, " << outcome.areas
              << " areas, " << outcome.agreeing << " agree within 0.1 %";
    if (!outcome.disagreeing.empty())
        std::cout << "; others: " << outcome.disagreeing.substr(0, 600);
    std::cout << std::endl;
    fs::remove_all(folder);
    return outcome;
}

class RealNetwork : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override
    {
        if (!fs::exists(dataFolder() / GetParam()))
            GTEST_SKIP() << "no such file: " << (dataFolder() / GetParam()).string() << " (set VELMOR_DATA_DIR)";
    }
};

class TiledNetwork : public RealNetwork {};
class AnyNetwork : public RealNetwork {};

TEST_P(TiledNetwork, EveryTracedAreaIsOneOfTheFilesPolygons)
{
    const Outcome outcome = runRoad(GetParam());
    EXPECT_GT(outcome.areas, 0u);
    EXPECT_EQ(outcome.agreeing, outcome.areas) << outcome.disagreeing;
}

TEST_P(AnyNetwork, TheRoadRunsToItsEndAndFindsAreas)
{
    const Outcome outcome = runRoad(GetParam());
    EXPECT_GT(outcome.areas, 0u);
}

TEST(AjaxNetwork, AtLeast99PercentOfTheTracedAreasAreTheFilesPolygons)
{
    if (!fs::exists(dataFolder() / "net_ajax_1984_conduits.inp"))
        GTEST_SKIP() << "no such file: net_ajax_1984_conduits.inp (set VELMOR_DATA_DIR)";
    const Outcome outcome = runRoad("net_ajax_1984_conduits.inp");
    EXPECT_EQ(outcome.sections, 1984u);
    EXPECT_GT(outcome.areas, 1000u);
    EXPECT_GE(outcome.agreeing, outcome.areas * 0.99) << outcome.disagreeing;
}

INSTANTIATE_TEST_SUITE_P(Networks, TiledNetwork, testing::Values("net_bellinge_small.inp", "net_311_conduits_ft.inp"));
INSTANTIATE_TEST_SUITE_P(Networks, AnyNetwork,
                         testing::Values("net_epa_site_drainage_ft.inp", "net_cos_reduced_inlets.inp",
                                         "net_522_conduits_holes_ft.inp"));

} // namespace
