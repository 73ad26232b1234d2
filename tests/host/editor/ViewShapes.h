// Entities of every kind for tests of the view.
#pragma once

#include "host/drawing/Blocks.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Entities.h"

#include <memory>
#include <numbers>
#include <vector>

namespace velmor::test {

inline constexpr double kPi = std::numbers::pi;
using Vertices = std::vector<AcDbPolyline::Vertex>;

class ViewShapes {
public:
    ViewShapes() : drawing(Drawing::createNew()) {}

    AcDbEntity &add(std::unique_ptr<AcDbEntity> entity)
    {
        AcDbEntity &added = *entity;
        drawing->append(std::move(entity));
        return added;
    }
    AcDbEntity &line(double x1, double y1, double x2, double y2)
    {
        return add(std::make_unique<AcDbLine>(AcGePoint3d(x1, y1), AcGePoint3d(x2, y2)));
    }
    AcDbEntity &circle(double x, double y, double r)
    {
        return add(std::make_unique<CircleEntity>(AcGePoint3d(x, y), r));
    }
    AcDbEntity &arc(double x, double y, double r, double from, double to)
    {
        return add(std::make_unique<AcDbArc>(AcGePoint3d(x, y), r, from, to));
    }
    AcDbEntity &ellipse(double x, double y, double majorX, double majorY, double ratio, double from = 0.0,
                        double to = 2.0 * kPi)
    {
        EllipseEntity::Shape shape;
        shape.center = {x, y};
        shape.majorAxis = {majorX, majorY, 0.0};
        shape.ratio = ratio;
        shape.startParameter = from;
        shape.endParameter = to;
        return add(std::make_unique<EllipseEntity>(shape));
    }
    AcDbEntity &spline(const std::vector<AcGePoint3d> &points)
    {
        SplineEntity::Shape shape;
        shape.controlPoints = points;
        shape.knots = {0, 0, 0, 0, 1, 1, 1, 1};
        return add(std::make_unique<SplineEntity>(shape));
    }
    AcDbEntity &polyline(const Vertices &vertices, bool closed = false)
    {
        return add(std::make_unique<AcDbPolyline>(vertices, closed));
    }
    AcDbEntity &polyline2d(const Vertices &vertices, bool closed = false)
    {
        return add(std::make_unique<AcDb2dPolyline>(vertices, closed));
    }
    AcDbEntity &polyline3d(const std::vector<AcGePoint3d> &vertices, bool closed = false)
    {
        return add(std::make_unique<AcDb3dPolyline>(vertices, closed));
    }
    AcDbEntity &point(double x, double y) { return add(std::make_unique<PointEntity>(AcGePoint3d(x, y))); }
    AcDbEntity &text(double x, double y, double height, const std::wstring &words)
    {
        TextShape shape;
        shape.position = {x, y};
        shape.height = height;
        shape.text = words;
        return add(std::make_unique<TextEntity>(shape));
    }
    AcDbEntity &mtext(double x, double y, double height, const std::wstring &words)
    {
        TextShape shape;
        shape.position = {x, y};
        shape.height = height;
        shape.text = words;
        shape.vertical = 3;
        return add(std::make_unique<MTextEntity>(shape));
    }
    /// A reference of a block with a line from (-1, 0) to (1, 0) and a circle of radius 2 around (0, 0).
    AcDbBlockReference &reference(double x, double y, double scaleX = 1.0, double scaleY = 1.0, double rotation = 0.0)
    {
        BlockRecord *block = drawing->findBlock(L"MANHOLE");
        if (!block) {
            block = &drawing->addBlock(L"MANHOLE");
            drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(-1, 0), AcGePoint3d(1, 0)), *block);
            drawing->append(std::make_unique<CircleEntity>(AcGePoint3d(0, 0), 2.0), *block);
        }
        AcDbBlockReference::Placement placement;
        placement.position = {x, y};
        placement.scaleX = scaleX;
        placement.scaleY = scaleY;
        placement.rotation = rotation;
        return static_cast<AcDbBlockReference &>(add(std::make_unique<AcDbBlockReference>(idOf(*block), placement)));
    }
    AcDbEntity &hatch(const Vertices &ring, const wchar_t *pattern)
    {
        AcDbEntity &outline = polyline(ring, true);
        auto made = std::make_unique<AcDbHatch>();
        made->setPatternScale(1.0);
        EXPECT_EQ(made->setPattern(AcDbHatch::kPreDefined, pattern), Acad::eOk);
        AcDbObjectIdArray loop;
        loop.push_back(idOf(outline));
        EXPECT_EQ(made->appendLoop(AcDbHatch::kExternal, loop), Acad::eOk);
        EXPECT_EQ(made->evaluateHatch(), Acad::eOk);
        drawing->erase(outline);
        return add(std::move(made));
    }
    void hide(AcDbEntity &entity)
    {
        const std::size_t index = drawing->ensureLayer(L"hidden");
        drawing->setLayerOf(entity, index);
        Layer layer = drawing->layer(index);
        layer.on = false;
        drawing->setLayer(index, layer);
    }

    std::unique_ptr<Drawing> drawing;
};

} // namespace velmor::test
