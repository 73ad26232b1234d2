// Layers that got another name: every text of the file that names them says the new one.
#include "host/drawing/dxf/DxfWriter.h"

#include <unordered_set>

namespace velmor::dxf {

namespace {

constexpr int kLayerCode = 8, kLayerInDataCode = 1003;

} // namespace

void DxfWriter::renameLayers()
{
    if (!m_layersOfFile.isAnyRenamed())
        return;
    for (const auto &block : d.blocks) {
        if (block->isErased())
            continue;
        const BlockSource &source = f.blocks[block.get()];
        if (source.headLength != 0) {
            renameLayersAt(source.offset, source.offset + source.headLength, true);
            renameLayersAt(source.endOffset, endOfBlockEnd(source), true);
        }
        for (const AcDbEntity *entity : block->entities())
            if (!entity->isErased() && ObjectAccess::host(*entity).sourceLength != 0)
                renameLayersOf(*entity);
    }
    for (const RawObject *object : f.rawObjects) {
        if (object->isErased())
            continue;
        // A record's items are its owner's, who alone knows what they mean.
        const auto &host = ObjectAccess::host(*object);
        renameLayersAt(host.sourceOffset, host.sourceOffset + host.sourceLength, object->typeName() != "XRECORD");
    }
}

/// Behind ENDBLK and its tags; where it should stand when the block lacks it.
std::size_t DxfWriter::endOfBlockEnd(const BlockSource &source) const
{
    std::size_t end = source.endOffset;
    if (end == kNowhere)
        return end;
    TagCursor cursor(f.text.data() + end, f.text.data() + f.text.size());
    Tag tag;
    const char *start = nullptr;
    if (cursor.next(tag, start) && tag.code == 0 && tag.name() == "ENDBLK")
        do
            end = static_cast<std::size_t>(cursor.position() - f.text.data());
        while (cursor.next(tag, start) && tag.code != 0);
    return end;
}

/// An entity with its parts. Where one was put on another layer, its own tag says that already.
void DxfWriter::renameLayersOf(const AcDbEntity &entity)
{
    const auto &host = ObjectAccess::host(entity);
    std::unordered_set<std::size_t> elsewhere; ///< where attributes start that were put on another layer
    if (kindOf(entity) == EntityKind::BlockReference)
        for (const AttributeEntity *attribute : attributesOf(static_cast<const AcDbBlockReference &>(entity)))
            if (ObjectAccess::has(*attribute, kPatchLayer))
                elsewhere.insert(ObjectAccess::host(*attribute).sourceOffset);
    const bool isReference = kindOf(entity) == EntityKind::BlockReference;
    bool isPatched = ObjectAccess::has(entity, kPatchLayer);
    std::string_view patchedName; // that of a patched entity, which its vertices share
    for (const PlacedTag &tag : placedTags(host.sourceOffset, host.sourceOffset + host.sourceLength)) {
        if (tag.tag.code == 0 && isReference && tag.start != host.sourceOffset) {
            isPatched = elsewhere.contains(tag.start);
            patchedName = {};
        }
        if (tag.tag.code == kLayerInDataCode)
            renameLayer(tag);
        if (tag.tag.code != kLayerCode)
            continue;
        if (isPatched && patchedName.empty())
            patchedName = tag.tag.text();
        if (!isPatched || tag.tag.text() != patchedName)
            renameLayer(tag);
    }
}

void DxfWriter::renameLayersAt(std::size_t offset, std::size_t end, bool says8)
{
    if (offset >= end)
        return;
    for (const PlacedTag &tag : placedTags(offset, end))
        if (tag.tag.code == kLayerInDataCode || (says8 && tag.tag.code == kLayerCode))
            renameLayer(tag);
}

void DxfWriter::renameLayer(const PlacedTag &tag)
{
    const auto [known, isNew] = m_newNames.try_emplace(tag.tag.text());
    if (isNew)
        known->second = m_layersOfFile.newNameOf(tag.tag.text());
    if (known->second)
        replaceValue(tag, *known->second);
}

} // namespace velmor::dxf
