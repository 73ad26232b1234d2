// Drawing in model space of the working drawing.
#include "host/drawing/Blocks.h"
#include "host/drawing/DrawingData.h"
#include "host/drawing/Journal.h"

#include <algorithm>

using velmor::BlockRecord;
using velmor::Drawing;
using velmor::journal;
using velmor::ObjectAccess;
using velmor::workingDrawing;

namespace {

bool isFinite(const AcGePoint3d &point)
{
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

template <class Wrapper>
AcDbObjectId appended(Drawing &drawing, std::unique_ptr<AcDbEntity> entity, Wrapper *opened)
{
    const AcDbObjectId id = drawing.append(std::move(entity));
    if (opened)
        opened->open(id, AcDb::kForWrite);
    return id;
}

} // namespace

AcDbObjectId CZEMCDraw::polylineLW(const AcGePoint3dArray &points, double width, int closed, CZEMCPolylineLWPtr *opened)
{
    journal("CZEMCDraw::polylineLW", points.size(), width, closed);
    Drawing *drawing = workingDrawing();
    if (!drawing || points.empty() || !(width >= 0.0) || !std::isfinite(width) ||
        !std::all_of(points.begin(), points.end(), isFinite))
        return {};
    std::vector<AcDbPolyline::Vertex> vertices;
    vertices.reserve(points.size());
    for (const AcGePoint3d &point : points)
        vertices.push_back({point.x, point.y, 0.0});
    return appended(*drawing, std::make_unique<AcDbPolyline>(std::move(vertices), closed != 0, points.front().z, width),
                    opened);
}

AcDbObjectId CZEMCDraw::line(const AcGePoint3d &from, const AcGePoint3d &to, CZEMCLinePtr *opened)
{
    journal("CZEMCDraw::line", from, to);
    Drawing *drawing = workingDrawing();
    if (!drawing || !isFinite(from) || !isFinite(to))
        return {};
    return appended(*drawing, std::make_unique<AcDbLine>(from, to), opened);
}

AcDbObjectId CZEMCDraw::insertBlockReference(AcDbObjectId definition, const AcGePoint3d &point, const wchar_t *layer,
                                             double scale, CZEMCBlockReferencePtr *opened)
{
    journal("CZEMCDraw::insertBlockReference", definition, point, layer, scale);
    Drawing *drawing = workingDrawing();
    AcDbObject *object = ObjectAccess::object(definition);
    if (!drawing || !object || !object->isKindOf(AcDbBlockTableRecord::desc()) ||
        ObjectAccess::drawing(*object) != drawing || !isFinite(point) || scale == 0.0 || !std::isfinite(scale))
        return {};
    auto &record = static_cast<BlockRecord &>(*object);
    if (record.isLayout())
        return {};
    AcDbBlockReference::Placement placement;
    placement.position = point;
    placement.scaleX = placement.scaleY = placement.scaleZ = scale;
    const std::size_t layerIndex = layer && *layer ? drawing->ensureLayer(layer) : drawing->currentLayer();
    const AcDbObjectId id = appendReference(*drawing, record, placement, layerIndex, drawing->modelSpace());
    if (opened)
        opened->open(id, AcDb::kForWrite);
    return id;
}

Acad::ErrorStatus CZEMCDraw::appendToModelSpace(AcDbEntity *entity, AcDbObjectId &id)
{
    journal("CZEMCDraw::appendToModelSpace", entity ? std::wstring_view(entity->isA()->name()) : std::wstring_view());
    Drawing *drawing = workingDrawing();
    if (!entity)
        return Acad::eInvalidInput;
    if (!drawing)
        return Acad::eNotAvailable;
    if (ObjectAccess::drawing(*entity))
        return Acad::eAlreadyInDatabase;
    id = drawing->append(std::unique_ptr<AcDbEntity>(entity));
    AcDbEntity *opened = nullptr;
    return acdbOpenAcDbEntity(opened, id, AcDb::kForWrite);
}
