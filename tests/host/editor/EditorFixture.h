// A session with an empty drawing, and shapes to draw in it.
#pragma once

#include "host/drawing/Entities.h"
#include "host/editor/CommandStack.h"
#include "host/editor/ModuleLoader.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/Session.h"
#include "host/services/Services.h"

#include <gtest/gtest.h>

#include <numbers>

namespace velmor::test {

class EditorFixture : public testing::Test {
protected:
    EditorFixture()
    {
        Services::instance().start({.language = "en"}); // some tests read texts
        session.setMessageSink({});
        session.setDrawing(Drawing::createNew());
    }
    Drawing &drawing() { return *session.drawing(); }

    AcDbObjectId line(double x1, double y1, double x2, double y2)
    {
        return drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(x1, y1), AcGePoint3d(x2, y2)));
    }
    AcDbObjectId rectangle(double x1, double y1, double x2, double y2)
    {
        return drawing().append(rectangleEntity(x1, y1, x2, y2));
    }
    static std::unique_ptr<AcDbEntity> rectangleEntity(double x1, double y1, double x2, double y2)
    {
        return std::make_unique<AcDbPolyline>(
            std::vector<AcDbPolyline::Vertex>{{x1, y1, 0}, {x2, y1, 0}, {x2, y2, 0}, {x1, y2, 0}}, true);
    }
    AcDbObjectId onLayer(AcDbObjectId id, const wchar_t *layer)
    {
        AcDbEntity *entity = open(id);
        drawing().setLayerOf(*entity, drawing().ensureLayer(layer));
        return id;
    }
    AcDbEntity *open(AcDbObjectId id)
    {
        AcDbEntity *entity = nullptr;
        EXPECT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
        if (entity)
            entity->close();
        return entity;
    }
    void setLayer(const wchar_t *name, bool on, bool frozen)
    {
        const std::size_t index = drawing().ensureLayer(name);
        Layer layer = drawing().layer(index);
        layer.on = on;
        layer.frozen = frozen;
        drawing().setLayer(index, layer);
    }

    /// Light-weight polylines of model space from a place in the drawing's order on.
    std::vector<const AcDbPolyline *> polylinesFrom(std::size_t first)
    {
        std::vector<const AcDbPolyline *> found;
        const auto &all = drawing().modelSpace().entities();
        for (std::size_t i = first; i < all.size(); ++i) {
            if (!all[i]->isErased() && all[i]->isA() == AcDbPolyline::desc())
                found.push_back(static_cast<const AcDbPolyline *>(all[i]));
        }
        return found;
    }
    std::size_t entityCount() { return drawing().modelSpace().entities().size(); }
    static double areaOf(const AcDbCurve &curve)
    {
        double area = 0.0;
        EXPECT_EQ(curve.getArea(area), Acad::eOk);
        return area;
    }

    Session session;
};

} // namespace velmor::test
