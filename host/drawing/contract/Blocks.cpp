#include "host/drawing/Blocks.h"

#include "host/drawing/ObjectAccess.h"

#include <cmath>

namespace velmor {

namespace {

/// Definitions of which every reference gets an attribute.
std::vector<const AttributeDefinitionEntity *> attributeDefinitionsOf(const BlockRecord &definition)
{
    std::vector<const AttributeDefinitionEntity *> attributes;
    for (const AcDbEntity *entity : definition.entities()) {
        if (entity->isErased() || kindOf(*entity) != EntityKind::AttributeDefinition)
            continue;
        const auto *attribute = static_cast<const AttributeDefinitionEntity *>(entity);
        if (!attribute->isConstant())
            attributes.push_back(attribute);
    }
    return attributes;
}

} // namespace

std::vector<std::wstring> attributeTagsOf(const BlockRecord &definition)
{
    std::vector<std::wstring> tags;
    for (const AttributeDefinitionEntity *attribute : attributeDefinitionsOf(definition))
        tags.push_back(attribute->tag());
    return tags;
}

TextShape placedShape(const TextShape &shape, const AcGePoint3d &base, const AcDbBlockReference::Placement &placement)
{
    TextShape placed = shape;
    const double x = (shape.position.x - base.x) * placement.scaleX, y = (shape.position.y - base.y) * placement.scaleY;
    const double cosine = std::cos(placement.rotation), sine = std::sin(placement.rotation);
    placed.position = {placement.position.x + x * cosine - y * sine, placement.position.y + x * sine + y * cosine,
                       placement.position.z + (shape.position.z - base.z) * placement.scaleZ};
    placed.height = shape.height * std::abs(placement.scaleY);
    if (placement.scaleY != 0.0)
        placed.widthFactor = shape.widthFactor * std::abs(placement.scaleX / placement.scaleY);
    placed.rotation = shape.rotation + placement.rotation;
    return placed;
}

AcDbObjectId appendReference(Drawing &drawing, BlockRecord &definition, const AcDbBlockReference::Placement &placement,
                             std::size_t layer, BlockRecord &owner)
{
    auto made = std::make_unique<AcDbBlockReference>(idOf(definition), placement);
    AcDbBlockReference &reference = *made;
    ObjectAccess::host(reference).layer = static_cast<std::uint32_t>(layer);
    const AcDbObjectId id = drawing.append(std::move(made), owner);
    for (const AttributeDefinitionEntity *pointer : attributeDefinitionsOf(definition)) {
        const AttributeDefinitionEntity &attribute = *pointer;
        auto text = std::make_unique<AttributeEntity>(attribute.tag(),
                                                      placedShape(attribute.shape(), definition.basePoint(), placement),
                                                      attribute.isInvisible());
        auto &host = ObjectAccess::host(*text);
        host.color = ObjectAccess::host(attribute).color;
        const std::size_t own = layerIndexOf(attribute);
        host.layer = static_cast<std::uint32_t>(drawing.layer(own).name == L"0" ? layer : own);
        drawing.appendAttribute(reference, std::move(text));
    }
    return id;
}

} // namespace velmor
