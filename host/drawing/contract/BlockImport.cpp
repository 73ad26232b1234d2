// A drawing taken into another one as a block definition.
#include "host/drawing/Blocks.h"
#include "host/drawing/DrawingData.h"
#include "host/drawing/Visibility.h"
#include "host/drawing/dxf/CarriedTags.h"
#include "host/drawing/dxf/Tags.h"

#include <algorithm>

namespace velmor {

namespace {

class Importer {
public:
    Importer(Drawing &target, const Drawing &source, std::wstring name, const std::set<std::wstring> &replaceable)
        : m_target(target), m_source(source), m_name(std::move(name)), m_carrier(source, target)
    {
        for (const std::wstring &known : replaceable)
            m_replaceable.insert(foldedName(known));
    }
    BlockImport run();

private:
    void fill(BlockRecord &to, const BlockRecord &from);
    void copy(BlockRecord &to, const AcDbEntity &entity);
    void copyReference(BlockRecord &to, const AcDbBlockReference &reference);
    void copyPicture(BlockRecord &to, const AcDbEntity &entity);
    std::wstring dimensionBlock(const AcDbEntity &entity) const;
    AcGePoint3d basePoint() const;
    std::unique_ptr<AcDbEntity> copyOf(const AcDbEntity &entity);
    std::unique_ptr<AcDbEntity> copyOf(const AcDbHatch &hatch);
    BlockRecord *definitionFor(const BlockRecord &definition);
    std::wstring freeName(const std::wstring &nested) const;
    bool isFree(const std::wstring &name) const;
    void takeLook(AcDbEntity &made, const AcDbEntity &from);

    Drawing &m_target;
    const Drawing &m_source;
    std::wstring m_name;
    dxf::TagCarrier m_carrier;
    std::set<std::wstring> m_replaceable; ///< folded
    std::map<const BlockRecord *, BlockRecord *> m_done;
    std::vector<const BlockRecord *> m_open; ///< definitions whose contents are being copied
    BlockImport m_result;
};

BlockImport Importer::run()
{
    m_result.block = &m_target.addBlock(m_name);
    fill(*m_result.block, m_source.modelSpace());
    m_target.priv().setBasePoint(*m_result.block, basePoint());
    return std::move(m_result);
}

void Importer::fill(BlockRecord &to, const BlockRecord &from)
{
    const auto old = to.entities();
    for (AcDbEntity *entity : old)
        m_target.erase(*entity);
    m_target.priv().setBasePoint(to, from.basePoint());
    m_open.push_back(&from);
    for (const AcDbEntity *entity : from.entities())
        if (!entity->isErased())
            copy(to, *entity);
    m_open.pop_back();
    m_target.priv().changed();
}

void Importer::copy(BlockRecord &to, const AcDbEntity &entity)
{
    if (kindOf(entity) == EntityKind::BlockReference)
        return copyReference(to, static_cast<const AcDbBlockReference &>(entity));
    auto tags = m_carrier.carry(entity);
    if (kindOf(entity) == EntityKind::Unknown && !tags)
        return copyPicture(to, entity);
    auto made = copyOf(entity);
    takeLook(*made, entity);
    AcDbEntity &copied = *made;
    m_target.append(std::move(made), to);
    if (tags)
        m_target.priv().carried.emplace(&copied, std::move(*tags));
}

/// A dimension shows the block that was made for it; in place of the dimension, that block is placed.
void Importer::copyPicture(BlockRecord &to, const AcDbEntity &entity)
{
    const std::wstring name = dimensionBlock(entity);
    const BlockRecord *picture = name.empty() ? nullptr : m_source.findBlock(name);
    BlockRecord *definition = picture ? definitionFor(*picture) : nullptr;
    if (!definition) {
        ++m_result.leftOut[typeNameOf(entity)];
        return;
    }
    auto made = std::make_unique<AcDbBlockReference>(idOf(*definition), AcDbBlockReference::Placement());
    takeLook(*made, entity);
    m_target.append(std::move(made), to);
}

std::wstring Importer::dimensionBlock(const AcDbEntity &entity) const
{
    const auto &host = ObjectAccess::host(entity);
    if (host.sourceLength == 0 || typeNameOf(entity) != "DIMENSION")
        return {};
    const dxf::FileText &file = const_cast<Drawing &>(m_source).priv().file;
    const char *first = file.text.data() + host.sourceOffset, *start = nullptr;
    dxf::TagCursor cursor(first, first + host.sourceLength);
    for (dxf::Tag tag; cursor.next(tag, start);)
        if (tag.code == 2)
            return file.codec.decode(tag.name());
    return {};
}

/// Where the source wants to be taken hold of: $INSBASE, three tags of which the drawing knows the first.
AcGePoint3d Importer::basePoint() const
{
    const dxf::FileText &file = const_cast<Drawing &>(m_source).priv().file;
    const auto found = file.header.find("$INSBASE");
    AcGePoint3d base;
    if (found == file.header.end() || !m_source.headerVariable("$INSBASE"))
        return base;
    const char *first = file.text.data() + found->second.valueOffset, *last = file.text.data() + file.text.size();
    const char *lineEnd = std::find(first, last, '\n');
    dxf::parseReal(first, lineEnd, base.x);
    if (lineEnd == last)
        return base;
    dxf::TagCursor cursor(lineEnd + 1, last);
    const char *start = nullptr;
    for (dxf::Tag tag; cursor.next(tag, start) && (tag.code == 20 || tag.code == 30);)
        tag.real(tag.code == 20 ? base.y : base.z);
    return base;
}

void Importer::copyReference(BlockRecord &to, const AcDbBlockReference &reference)
{
    const AcDbObject *object = ObjectAccess::object(reference.blockTableRecord());
    BlockRecord *definition = object ? definitionFor(static_cast<const BlockRecord &>(*object)) : nullptr;
    if (!definition) {
        ++m_result.leftOut[typeNameOf(reference)];
        return;
    }
    auto made = std::make_unique<AcDbBlockReference>(idOf(*definition), reference.placement());
    AcDbBlockReference &copied = *made;
    takeLook(copied, reference);
    m_target.append(std::move(made), to);
    for (const AttributeEntity *attribute : attributesOf(reference)) {
        auto text = std::make_unique<AttributeEntity>(attribute->tag(), attribute->shape(), attribute->isInvisible());
        takeLook(*text, *attribute);
        m_target.appendAttribute(copied, std::move(text));
    }
}

std::unique_ptr<AcDbEntity> Importer::copyOf(const AcDbEntity &entity)
{
    switch (kindOf(entity)) {
    case EntityKind::Line: {
        const auto &line = static_cast<const AcDbLine &>(entity);
        return std::make_unique<AcDbLine>(line.startPoint(), line.endPoint());
    }
    case EntityKind::Arc: {
        const auto &arc = static_cast<const AcDbArc &>(entity);
        return std::make_unique<AcDbArc>(arc.center(), arc.radius(), arc.startAngle(), arc.endAngle());
    }
    case EntityKind::Circle: {
        const auto &circle = static_cast<const CircleEntity &>(entity);
        return std::make_unique<CircleEntity>(circle.center(), circle.radius());
    }
    case EntityKind::Ellipse:
        return std::make_unique<EllipseEntity>(static_cast<const EllipseEntity &>(entity).shape());
    case EntityKind::Spline:
        return std::make_unique<SplineEntity>(static_cast<const SplineEntity &>(entity).shape());
    case EntityKind::Point:
        return std::make_unique<PointEntity>(static_cast<const PointEntity &>(entity).position());
    case EntityKind::LwPolyline: {
        const auto &polyline = static_cast<const AcDbPolyline &>(entity);
        return std::make_unique<AcDbPolyline>(polyline.vertices(), polyline.isClosed(), polyline.elevation());
    }
    case EntityKind::Polyline2d: {
        const auto &polyline = static_cast<const AcDb2dPolyline &>(entity);
        return std::make_unique<AcDb2dPolyline>(polyline.vertices(), polyline.isClosed(), polyline.elevation());
    }
    case EntityKind::Polyline3d: {
        const auto &polyline = static_cast<const AcDb3dPolyline &>(entity);
        return std::make_unique<AcDb3dPolyline>(polyline.vertices(), polyline.isClosed());
    }
    case EntityKind::Text:
        return std::make_unique<TextEntity>(static_cast<const TextEntity &>(entity).shape());
    case EntityKind::MText:
        return std::make_unique<MTextEntity>(static_cast<const MTextEntity &>(entity).shape());
    case EntityKind::AttributeDefinition: {
        const auto &attribute = static_cast<const AttributeDefinitionEntity &>(entity);
        return std::make_unique<AttributeDefinitionEntity>(attribute.tag(), attribute.prompt(), attribute.shape(),
                                                           attribute.isInvisible(), attribute.isConstant());
    }
    case EntityKind::Hatch:
        return copyOf(static_cast<const AcDbHatch &>(entity));
    case EntityKind::BlockReference:
    case EntityKind::Attribute:
    case EntityKind::Unknown:
        break;
    }
    return std::make_unique<UnknownEntity>(typeNameOf(entity));
}

std::unique_ptr<AcDbEntity> Importer::copyOf(const AcDbHatch &hatch)
{
    auto made = std::make_unique<AcDbHatch>();
    const auto from = ObjectAccess::parts(const_cast<AcDbHatch &>(hatch));
    const auto to = ObjectAccess::parts(*made);
    to.normal = from.normal;
    to.elevation = from.elevation;
    to.angle = from.angle;
    to.scale = from.scale;
    to.pattern = from.pattern;
    to.patternType = from.patternType;
    to.style = from.style;
    to.associative = false; // its curves are other entities now
    to.loops = from.loops;
    to.families = from.families;
    return made;
}

void Importer::takeLook(AcDbEntity &made, const AcDbEntity &from)
{
    const Layer &layer = m_source.layer(layerIndexOf(from));
    const bool known = m_target.findLayer(layer.name).has_value();
    const std::size_t index = m_target.ensureLayer(layer.name, layer.color);
    if (!known)
        m_target.setLayer(index, layer);
    auto &host = ObjectAccess::host(made);
    host.layer = static_cast<std::uint32_t>(index);
    host.color = ObjectAccess::host(from).color;
    ObjectAccess::set(made, kInvisible, isInvisible(from));
}

bool Importer::isFree(const std::wstring &name) const
{
    const BlockRecord *taken = m_target.findBlock(name);
    if (!taken)
        return true;
    const bool ours = std::any_of(m_done.begin(), m_done.end(), [&](const auto &done) { return done.second == taken; });
    return taken != m_result.block && !ours && m_replaceable.contains(foldedName(name));
}

std::wstring Importer::freeName(const std::wstring &nested) const
{
    const bool anonymous = nested.starts_with(L"*");
    const std::wstring plain = anonymous ? nested.substr(1) : nested;
    if (!anonymous && isFree(plain))
        return plain;
    for (int number = 0;; ++number) {
        std::wstring name = m_name + L"$" + std::to_wstring(number) + L"$" + plain;
        if (isFree(name))
            return name;
    }
}

/// Null for a definition that is being copied right now: it would hold itself. Nor is nesting followed without end.
BlockRecord *Importer::definitionFor(const BlockRecord &definition)
{
    constexpr std::size_t kDeepestNesting = 1000;
    if (m_open.size() > kDeepestNesting || std::find(m_open.begin(), m_open.end(), &definition) != m_open.end())
        return nullptr;
    if (const auto done = m_done.find(&definition); done != m_done.end())
        return done->second;
    BlockRecord &made = m_target.addBlock(freeName(definition.name()));
    m_done.emplace(&definition, &made);
    m_result.nested.insert(made.name());
    fill(made, definition);
    return &made;
}

} // namespace

BlockImport importBlockInto(Drawing &target, const std::wstring &name, const Drawing &source,
                            const std::set<std::wstring> &replaceable)
{
    return Importer(target, source, name, replaceable).run();
}

BlockRecord &Drawing::importBlock(const std::wstring &name, const Drawing &source)
{
    return *importBlockInto(*this, name, source, {}).block;
}

} // namespace velmor
