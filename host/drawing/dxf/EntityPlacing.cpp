// Entities in their blocks: polylines and references with their parts, layers, owners, data.
#include "host/drawing/Texts.h"
#include "host/drawing/dxf/DataTags.h"
#include "host/drawing/dxf/DxfReader.h"

#include <algorithm>

namespace velmor::dxf {

std::uint32_t DxfReader::layerOf(std::string_view name)
{
    if (name.data() && name == m_lastLayer)
        return m_lastLayerIndex;
    // No layer at all means layer 0.
    const std::string bytes(name.empty() ? std::string_view("0") : name);
    const auto [found, isNew] = m_layersByBytes.try_emplace(bytes, 0);
    if (isNew) {
        std::wstring text = f.codec.decode(bytes);
        while (!text.empty() && text.front() == L' ')
            text.erase(0, 1);
        const auto known = d.layerByName.find(foldedName(text));
        if (known != d.layerByName.end()) {
            found->second = static_cast<std::uint32_t>(known->second);
        } else {
            found->second = static_cast<std::uint32_t>(d.addLayer({text}));
            f.layers.emplace_back();
        }
    }
    m_lastLayer = name;
    m_lastLayerIndex = found->second;
    return found->second;
}

BlockRecord &DxfReader::spaceOf(const CommonTags &common)
{
    if (common.paperSpace)
        return *m_paperSpace;
    if (common.owner.empty())
        return *d.modelSpace;
    if (m_lastSpace && common.owner == m_lastOwner)
        return *m_lastSpace;
    m_lastOwner = common.owner;
    m_lastSpace = d.modelSpace;
    // An owner that is another layout than model space says more than the missing flag.
    if (const std::uint64_t handle = parseHandle(common.owner))
        for (const auto &block : d.blocks)
            if (ObjectAccess::host(*block).handle == handle && block->isLayout())
                m_lastSpace = block.get();
    return *m_lastSpace;
}

void DxfReader::countRead(EntityKind kind)
{
    ++m_readByKind[static_cast<std::size_t>(kind)];
}

AcDbEntity *DxfReader::keepUnread(std::string_view typeName)
{
    count(m_unread, typeName);
    auto *entity = d.arena.make<UnknownEntity>(std::string(typeName));
    d.arenaObjects.push_back(entity);
    return entity;
}

AcDbEntity *DxfReader::makeEntity(EntityKind kind, const CommonTags &common)
{
    if (kind != EntityKind::Unknown && !m_objectBad) {
        auto result = m_entities.read(kind, m_tags, common);
        if (result.entity) {
            countRead(kind);
            switch (kind) {
            case EntityKind::Line:
            case EntityKind::Arc:
            case EntityKind::Circle:
            case EntityKind::Ellipse:
            case EntityKind::Point:
                break; // these own no memory
            default:
                d.arenaObjects.push_back(result.entity);
            }
            return result.entity;
        }
        if (!result.problem.empty())
            find(Severity::Damage, result.place ? result.place->value : m_start,
                 drawingText("dxf.entityUnread", {m_type, result.problem}));
    }
    return keepUnread(m_type);
}

void DxfReader::place(AcDbEntity &entity, const CommonTags &common, std::size_t offset, std::size_t length)
{
    auto &host = ObjectAccess::host(entity);
    host.flags =
        static_cast<std::uint16_t>(host.flags | kInArena | kIsEntity | (common.handle != 0 ? kHandleInText : 0) |
                                   (common.invisible ? kInvisible : 0));
    host.color = static_cast<std::int16_t>(common.color);
    host.layer = layerOf(common.layer);
    host.sourceOffset = offset;
    host.sourceLength = static_cast<std::uint32_t>(std::min<std::size_t>(length, 0xFFFFFFFF));
    host.handle = common.handle;
    if (common.handle > m_highestHandle)
        m_highestHandle = common.handle;
}

void DxfReader::addTo(BlockRecord *block, AcDbEntity &entity, const CommonTags &common)
{
    BlockRecord &owner = block ? *block : spaceOf(common);
    auto &host = ObjectAccess::host(entity);
    ObjectAccess::setOwner(entity, owner);
    if (!block && &owner != d.modelSpace)
        host.flags = static_cast<std::uint16_t>(host.flags | kPaperSpace);
    ObjectAccess::entities(owner).push_back(&entity);
}

void DxfReader::noteExtras(AcDbObject &object, const CommonTags &common)
{
    if (common.extension != 0) {
        ObjectAccess::set(object, kHasExtension);
        m_extensions.emplace_back(&object, common.extension);
    }
    if (common.ownData != 0 && d.version <= "AC1009") {
        ObjectAccess::set(object, kHasExtension);
        for (const auto &slice : readExtendedData(std::span(m_tags).subspan(common.ownData), f.codec))
            d.attached[&object].records[slice.key] = {nullptr, readItems(slice.tags, f.codec), false, false, 0};
    }
}

void DxfReader::readEntity(BlockRecord *block)
{
    const EntityKind kind = kindOfType(m_type);
    if (kind == EntityKind::Polyline2d) {
        readPolyline(block);
        return;
    }
    const CommonTags common = EntityReader::common(m_tags);
    const char *start = m_start;
    AcDbEntity &entity = *makeEntity(kind, common);
    place(entity, common, offsetOf(start), objectLength());
    addTo(block, entity, common);
    if (common.extension != 0 || common.ownData != 0) [[unlikely]]
        noteExtras(entity, common);
    if (kind != EntityKind::BlockReference)
        return;
    if (kindOf(entity) == EntityKind::BlockReference)
        m_references.emplace_back(static_cast<AcDbBlockReference *>(&entity), EntityReader::blockName(m_tags));
    // The attributes follow, whether the reference says so or not.
    m_compoundStart = start;
    const bool understood = kindOf(entity) == EntityKind::BlockReference;
    bool hasAttributes = false, hasEnd = true;
    while (m_more && m_zero.name() == "ATTRIB") {
        hasAttributes = true;
        advance();
        const CommonTags own = EntityReader::common(m_tags);
        AcDbEntity &attribute = *makeEntity(EntityKind::Attribute, own);
        place(attribute, own, startOffset(), objectLength());
        ObjectAccess::setOwner(attribute, entity);
        noteExtras(attribute, own);
        if (understood && kindOf(attribute) == EntityKind::Attribute)
            ObjectAccess::attributes(static_cast<AcDbBlockReference &>(entity)).push_back(ObjectAccess::id(&attribute));
    }
    if ((hasAttributes || common.followed) && m_more && m_zero.name() == "SEQEND") {
        advance();
        m_highestHandle = std::max(m_highestHandle, EntityReader::common(m_tags).handle);
    } else if (hasAttributes && m_more) {
        hasEnd = false;
        find(Severity::Warning, m_zeroStart, drawingText("dxf.attributesNoEnd"));
    }
    ObjectAccess::host(entity).sourceLength = static_cast<std::uint32_t>(m_objectEnd - start);
    if (m_more && hasEnd)
        m_compoundStart = nullptr;
}

void DxfReader::readPolyline(BlockRecord *block)
{
    const char *start = m_start;
    m_compoundStart = start;
    const CommonTags common = EntityReader::common(m_tags);
    m_polyline.vertices.clear();
    m_polyline.heights.clear();
    m_polyline.problem.clear();
    EntityReader::begin(m_polyline, m_tags, common);
    bool bad = m_objectBad, hasEnd = true;
    // Kept for the data that the entity gets when it is made.
    const auto headTags = common.ownData != 0 ? m_tags : std::vector<Tag>();
    while (m_more && m_zero.name() == "VERTEX") {
        advance();
        bad = bad || m_objectBad;
        const CommonTags own = EntityReader::common(m_tags);
        m_highestHandle = std::max(m_highestHandle, own.handle);
        EntityReader::addVertex(m_polyline, m_tags, own);
    }
    if (m_more && m_zero.name() == "SEQEND") {
        advance();
        m_highestHandle = std::max(m_highestHandle, EntityReader::common(m_tags).handle);
    } else if (m_more) {
        hasEnd = false;
        find(Severity::Warning, m_zeroStart, drawingText("dxf.verticesNoEnd"));
    }
    AcDbEntity *entity = bad ? nullptr : m_entities.finish(m_polyline);
    if (entity) {
        d.arenaObjects.push_back(entity);
        countRead(EntityKind::Polyline2d);
    } else {
        if (!m_polyline.problem.empty())
            find(Severity::Damage, start, drawingText("dxf.entityUnread", {"POLYLINE", m_polyline.problem}));
        entity = keepUnread("POLYLINE");
    }
    place(*entity, common, offsetOf(start), static_cast<std::size_t>(m_objectEnd - start));
    addTo(block, *entity, common);
    if (common.extension != 0 || common.ownData != 0) {
        m_tags = headTags;
        noteExtras(*entity, common);
    }
    if (m_more && hasEnd)
        m_compoundStart = nullptr;
}

} // namespace velmor::dxf
