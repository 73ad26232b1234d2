// Which entities can bound an area that is saved: polylines of all three kinds give their vertices, others none.
#include "tests/definition/dialog_fixture.h"

#include "host/drawing/Entities.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using velmor::Journal;

namespace {

class BoundaryKinds : public DefinitionDialogTest {
protected:
    /// Saves a main row over that entity and tells how many points the polygon was made of.
    std::string pointsSaved(std::unique_ptr<AcDbEntity> entity)
    {
        const AcDbObjectId id = drawing().append(std::move(entity));
        std::string points;
        run([&](CDialogUnderTest &dialog) {
            select(dialog, {L"D1"});
            dialog.type(215, "0.5");
            dialog.check(274, false);
            dialog.addMainRow(id, 100);
            dialog.GetDlgItem(221)->setEnabled(true);
            dialog.selectRows({0});
            Journal::instance().setRecording(true);
            dialog.click(221);
            Journal::instance().setRecording(false);
            const auto made = entriesOf("CTransform::AcadPoly2GeosPoly");
            ASSERT_THAT(made, SizeIs(1));
            points = made.front().arguments.at(0);
        });
        return points;
    }
    /// Corners of the one area's polygon, as its entity has them.
    static std::vector<std::pair<double, double>> corners()
    {
        std::vector<std::pair<double, double>> found;
        const CZEMCPolylineLWPtr polyline(areas().at(0)->GetObjectId(), AcDb::kForRead);
        AcGePoint3dArray points;
        if (polyline.isOpen() && polyline.getVertexPoints(points)) {
            for (const AcGePoint3d &point : points)
                found.emplace_back(point.x, point.y);
        }
        return found;
    }
    const std::vector<std::pair<double, double>> m_expected{{1000, 0}, {1200, 0}, {1200, 100}, {1000, 50}};
};

TEST_F(BoundaryKinds, ALightWeightPolylineGivesItsVertices)
{
    EXPECT_EQ(pointsSaved(std::make_unique<AcDbPolyline>(
                  std::vector<AcDbPolyline::Vertex>{{1000, 0, 0}, {1200, 0, 0}, {1200, 100, 0}, {1000, 50, 0}}, true)),
              "4");
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_EQ(corners(), m_expected);
}

TEST_F(BoundaryKinds, AnOldStylePlanePolylineGivesItsVertices)
{
    EXPECT_EQ(
        pointsSaved(std::make_unique<AcDb2dPolyline>(
            std::vector<AcDb2dPolyline::Vertex>{{1000, 0, 0}, {1200, 0, 0}, {1200, 100, 0}, {1000, 50, 0}}, true, 7.0)),
        "4");
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_EQ(corners(), m_expected);
    EXPECT_DOUBLE_EQ(areas().front()->GetArea(), 1.5);
}

TEST_F(BoundaryKinds, APolylineInSpaceGivesItsVerticesWithoutTheirHeights)
{
    EXPECT_EQ(pointsSaved(std::make_unique<AcDb3dPolyline>(
                  std::vector<AcGePoint3d>{{1000, 0, 5}, {1200, 0, 6}, {1200, 100, 7}, {1000, 50, 8}}, true)),
              "4");
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_EQ(corners(), m_expected);
    EXPECT_DOUBLE_EQ(areas().front()->GetArea(), 1.5);
}

TEST_F(BoundaryKinds, AnyOtherCurveGivesNoneAndNoArea)
{
    EXPECT_EQ(pointsSaved(std::make_unique<velmor::CircleEntity>(AcGePoint3d(1000, 0), 10.0)), "0");
    EXPECT_EQ(pointsSaved(std::make_unique<AcDbArc>(AcGePoint3d(1000, 0), 10.0, 0.0, 3.0)), "0");
    EXPECT_THAT(areas(), IsEmpty());
    EXPECT_THAT(alerts(), IsEmpty());
}

} // namespace
