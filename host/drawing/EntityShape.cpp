#include "host/drawing/EntityShape.h"

#include "host/drawing/DrawingData.h"

namespace velmor {

namespace {

template <class Polyline>
PolylineShape planShape(const Polyline &polyline)
{
    return {polyline.vertices(), polyline.elevation(), polyline.isClosed(), 0.0};
}

HatchShape hatchShape(const AcDbHatch &hatch)
{
    const auto parts = ObjectAccess::parts(const_cast<AcDbHatch &>(hatch));
    return {parts.normal,      parts.elevation, parts.angle,       parts.scale, parts.pattern,
            parts.patternType, parts.style,     parts.associative, parts.loops, parts.families};
}

void setHatchShape(AcDbHatch &hatch, HatchShape &&shape)
{
    const auto parts = ObjectAccess::parts(hatch);
    parts.normal = shape.normal;
    parts.elevation = shape.elevation;
    parts.angle = shape.angle;
    parts.scale = shape.scale;
    parts.pattern = std::move(shape.pattern);
    parts.patternType = shape.patternType;
    parts.style = shape.style;
    parts.associative = shape.associative;
    parts.loops = std::move(shape.loops);
    parts.families = std::move(shape.families);
    ObjectAccess::forgetLines(hatch);
}

/// Which of the shapes an entity of a kind has.
std::size_t indexFor(EntityKind kind)
{
    constexpr auto at = []<class T>(std::type_identity<T>) { return decltype(EntityShape::value)(T()).index(); };
    switch (kind) {
    case EntityKind::Line:
        return at(std::type_identity<LineShape>());
    case EntityKind::Arc:
        return at(std::type_identity<ArcShape>());
    case EntityKind::Circle:
        return at(std::type_identity<CircleShape>());
    case EntityKind::Ellipse:
        return at(std::type_identity<EllipseEntity::Shape>());
    case EntityKind::Spline:
        return at(std::type_identity<SplineEntity::Shape>());
    case EntityKind::Point:
        return at(std::type_identity<AcGePoint3d>());
    case EntityKind::LwPolyline:
    case EntityKind::Polyline2d:
        return at(std::type_identity<PolylineShape>());
    case EntityKind::Polyline3d:
        return at(std::type_identity<Polyline3dShape>());
    case EntityKind::Text:
    case EntityKind::MText:
    case EntityKind::Attribute:
    case EntityKind::AttributeDefinition:
        return at(std::type_identity<TextShape>());
    case EntityKind::BlockReference:
        return at(std::type_identity<ReferenceShape>());
    case EntityKind::Hatch:
        return at(std::type_identity<HatchShape>());
    case EntityKind::Unknown:
        break;
    }
    return 0;
}

struct Setter {
    AcDbEntity &entity;
    void operator()(std::monostate) const {}
    void operator()(LineShape &&shape) const
    {
        ObjectAccess::members(static_cast<AcDbLine &>(entity)) = std::tie(shape.start, shape.end);
    }
    void operator()(ArcShape &&shape) const
    {
        ObjectAccess::members(static_cast<AcDbArc &>(entity)) =
            std::tie(shape.center, shape.radius, shape.startAngle, shape.endAngle);
    }
    void operator()(CircleShape &&shape) const
    {
        ObjectAccess::members(static_cast<CircleEntity &>(entity)) = std::tie(shape.center, shape.radius);
    }
    void operator()(EllipseEntity::Shape &&shape) const
    {
        ObjectAccess::member(static_cast<EllipseEntity &>(entity)) = shape;
    }
    void operator()(SplineEntity::Shape &&shape) const
    {
        ObjectAccess::member(static_cast<SplineEntity &>(entity)) = std::move(shape);
    }
    void operator()(AcGePoint3d &&position) const
    {
        ObjectAccess::member(static_cast<PointEntity &>(entity)) = position;
    }
    void operator()(PolylineShape &&shape) const
    {
        const auto give = [&](auto &polyline) {
            ObjectAccess::vertices(polyline) = std::move(shape.vertices);
            ObjectAccess::elevation(polyline) = shape.elevation;
            ObjectAccess::closed(polyline) = shape.closed;
        };
        if (kindOf(entity) == EntityKind::LwPolyline) {
            give(static_cast<AcDbPolyline &>(entity));
            ObjectAccess::width(static_cast<AcDbPolyline &>(entity)) = shape.width;
        } else {
            give(static_cast<AcDb2dPolyline &>(entity));
        }
    }
    void operator()(Polyline3dShape &&shape) const
    {
        auto &polyline = static_cast<AcDb3dPolyline &>(entity);
        ObjectAccess::vertices(polyline) = std::move(shape.vertices);
        ObjectAccess::closed(polyline) = shape.closed;
    }
    void operator()(TextShape &&shape) const
    {
        ObjectAccess::shape(static_cast<TextEntity &>(entity)) = std::move(shape);
    }
    void operator()(ReferenceShape &&shape) const
    {
        auto &reference = static_cast<AcDbBlockReference &>(entity);
        ObjectAccess::setDefinition(reference, shape.definition);
        ObjectAccess::placement(reference) = shape.placement;
    }
    void operator()(HatchShape &&shape) const { setHatchShape(static_cast<AcDbHatch &>(entity), std::move(shape)); }
};

} // namespace

std::unique_ptr<AcDbEntity> blankEntity(EntityKind kind)
{
    switch (kind) {
    case EntityKind::Line:
        return std::make_unique<AcDbLine>();
    case EntityKind::Arc:
        return std::make_unique<AcDbArc>();
    case EntityKind::Circle:
        return std::make_unique<CircleEntity>(AcGePoint3d(), 1.0);
    case EntityKind::Ellipse:
        return std::make_unique<EllipseEntity>(EllipseEntity::Shape());
    case EntityKind::Spline:
        return std::make_unique<SplineEntity>(SplineEntity::Shape());
    case EntityKind::Point:
        return std::make_unique<PointEntity>(AcGePoint3d());
    case EntityKind::LwPolyline:
        return std::make_unique<AcDbPolyline>();
    case EntityKind::Polyline2d:
        return std::make_unique<AcDb2dPolyline>();
    case EntityKind::Polyline3d:
        return std::make_unique<AcDb3dPolyline>();
    case EntityKind::Text:
        return std::make_unique<TextEntity>(TextShape());
    case EntityKind::MText:
        return std::make_unique<MTextEntity>(TextShape());
    case EntityKind::BlockReference:
        return std::make_unique<AcDbBlockReference>();
    case EntityKind::Hatch:
        return std::make_unique<AcDbHatch>();
    case EntityKind::Attribute:
    case EntityKind::AttributeDefinition:
    case EntityKind::Unknown:
        break;
    }
    return nullptr;
}

EntityShape shapeOf(const AcDbEntity &entity)
{
    switch (kindOf(entity)) {
    case EntityKind::Line: {
        const auto &line = static_cast<const AcDbLine &>(entity);
        return {LineShape{line.startPoint(), line.endPoint()}};
    }
    case EntityKind::Arc: {
        const auto &arc = static_cast<const AcDbArc &>(entity);
        return {ArcShape{arc.center(), arc.radius(), arc.startAngle(), arc.endAngle()}};
    }
    case EntityKind::Circle: {
        const auto &circle = static_cast<const CircleEntity &>(entity);
        return {CircleShape{circle.center(), circle.radius()}};
    }
    case EntityKind::Ellipse:
        return {static_cast<const EllipseEntity &>(entity).shape()};
    case EntityKind::Spline:
        return {static_cast<const SplineEntity &>(entity).shape()};
    case EntityKind::Point:
        return {static_cast<const PointEntity &>(entity).position()};
    case EntityKind::LwPolyline: {
        const auto &polyline = static_cast<const AcDbPolyline &>(entity);
        PolylineShape shape = planShape(polyline);
        shape.width = polyline.constantWidth();
        return {std::move(shape)};
    }
    case EntityKind::Polyline2d:
        return {planShape(static_cast<const AcDb2dPolyline &>(entity))};
    case EntityKind::Polyline3d: {
        const auto &polyline = static_cast<const AcDb3dPolyline &>(entity);
        return {Polyline3dShape{polyline.vertices(), polyline.isClosed()}};
    }
    case EntityKind::Text:
    case EntityKind::MText:
    case EntityKind::Attribute:
    case EntityKind::AttributeDefinition:
        return {static_cast<const TextEntity &>(entity).shape()};
    case EntityKind::BlockReference: {
        const auto &reference = static_cast<const AcDbBlockReference &>(entity);
        return {ReferenceShape{reference.blockTableRecord(), reference.placement()}};
    }
    case EntityKind::Hatch:
        return {hatchShape(static_cast<const AcDbHatch &>(entity))};
    case EntityKind::Unknown:
        break;
    }
    return {};
}

bool setShape(Drawing &drawing, AcDbEntity &entity, EntityShape shape)
{
    if (shape.value.index() != indexFor(kindOf(entity)) || shape.value.index() == 0)
        return false;
    const bool isInDrawing = ObjectAccess::drawing(entity) == &drawing;
    if (isInDrawing) {
        drawing.entityChanging(entity);
        drawing.priv().touch(entity, kPatchGeometry);
    }
    std::visit([&](auto &&value) { Setter{entity}(std::move(value)); }, std::move(shape.value));
    if (isInDrawing)
        drawing.entityChanged(entity);
    return true;
}

std::size_t bytesOf(const EntityShape &shape)
{
    const auto size = [](const auto &items) { return items.size() * sizeof(items[0]); };
    if (const auto *polyline = std::get_if<PolylineShape>(&shape.value))
        return size(polyline->vertices);
    if (const auto *polyline3d = std::get_if<Polyline3dShape>(&shape.value))
        return size(polyline3d->vertices);
    if (const auto *text = std::get_if<TextShape>(&shape.value))
        return size(text->text);
    if (const auto *spline = std::get_if<SplineEntity::Shape>(&shape.value))
        return size(spline->knots) + size(spline->controlPoints) + size(spline->weights) + size(spline->fitPoints);
    std::size_t bytes = 0;
    if (const auto *hatch = std::get_if<HatchShape>(&shape.value))
        for (const AcDbHatch::Loop &loop : hatch->loops)
            bytes += sizeof loop + size(loop.vertices);
    return bytes;
}

} // namespace velmor
