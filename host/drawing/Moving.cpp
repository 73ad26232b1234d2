#include "host/drawing/Moving.h"

#include "host/drawing/DrawingData.h"
#include "host/drawing/dxf/CarriedTags.h"

namespace velmor {

namespace {

/// Keys of the records that say which section, node, area or label an entity is.
constexpr char kIdentityPrefix[] = "VELMOR_";

EntityShape moved(EntityShape shape, const AcGeVector3d &by)
{
    const double steps[] = {by.x, by.y, by.z};
    visitCoordinates(shape, [&](double &value, int axis) { value += steps[axis]; });
    return shape;
}

/// An entity like another, without a shape yet; null when there can be none.
std::unique_ptr<AcDbEntity> blankLike(const AcDbEntity &like)
{
    if (kindOf(like) != EntityKind::AttributeDefinition)
        return blankEntity(kindOf(like));
    const auto &definition = static_cast<const AttributeDefinitionEntity &>(like);
    return std::make_unique<AttributeDefinitionEntity>(definition.tag(), definition.prompt(), TextShape(),
                                                       definition.isInvisible(), definition.isConstant());
}

void takeLook(AcDbEntity &made, const AcDbEntity &from)
{
    auto &host = ObjectAccess::host(made);
    host.layer = ObjectAccess::host(from).layer;
    host.color = ObjectAccess::host(from).color;
}

} // namespace

bool canMove(const AcDbEntity &entity)
{
    return kindOf(entity) != EntityKind::Unknown && kindOf(entity) != EntityKind::Attribute;
}

bool moveEntity(Drawing &drawing, AcDbEntity &entity, const AcGeVector3d &by)
{
    if (!canMove(entity) || !setShape(drawing, entity, moved(shapeOf(entity), by)))
        return false;
    if (kindOf(entity) == EntityKind::BlockReference)
        for (AttributeEntity *attribute : attributesOf(static_cast<AcDbBlockReference &>(entity)))
            setShape(drawing, *attribute, moved(shapeOf(*attribute), by));
    return true;
}

AcDbEntity *copyEntity(Drawing &drawing, const AcDbEntity &entity, const AcGeVector3d &by)
{
    auto made = canMove(entity) ? blankLike(entity) : nullptr;
    if (!made)
        return nullptr;
    EntityShape shape = moved(shapeOf(entity), by);
    if (auto *hatch = std::get_if<HatchShape>(&shape.value))
        hatch->associative = false;
    setShape(drawing, *made, std::move(shape));
    takeLook(*made, entity);
    AcDbEntity &copy = *made;
    // What only the tags say (line type, thickness, true colour) comes along as they say it.
    auto &d = drawing.priv();
    std::optional<std::string> tags;
    if (const auto known = d.carried.find(&entity); known != d.carried.end())
        tags = known->second;
    else
        tags = dxf::TagCarrier(drawing, drawing).carry(entity);
    if (tags) {
        d.carried.emplace(&copy, std::move(*tags));
        ObjectAccess::set(copy, kPatchGeometry);
    }
    drawing.append(std::move(made));
    for (const std::string &key : drawing.dataKeys(entity))
        if (!key.starts_with(kIdentityPrefix))
            drawing.setData(copy, key, *drawing.data(entity, key));
    if (kindOf(entity) != EntityKind::BlockReference)
        return &copy;
    for (const AttributeEntity *attribute : attributesOf(static_cast<const AcDbBlockReference &>(entity))) {
        auto text = std::make_unique<AttributeEntity>(
            attribute->tag(), std::get<TextShape>(moved(shapeOf(*attribute), by).value), attribute->isInvisible());
        takeLook(*text, *attribute);
        drawing.appendAttribute(static_cast<AcDbBlockReference &>(copy), std::move(text));
    }
    return &copy;
}

} // namespace velmor
