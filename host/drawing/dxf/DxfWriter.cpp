#include "host/drawing/dxf/DxfWriter.h"

#include "host/drawing/ChangeLog.h"
#include "host/drawing/dxf/DataTags.h"

#include <algorithm>
#include <tuple>

namespace velmor::dxf {

DxfWriter::DxfWriter(Drawing::Private &drawing)
    : d(drawing), f(drawing.file), m_layersOfFile(drawing), m_isR12(drawing.version <= "AC1009"),
      m_entities(drawing, m_nextHandle)
{
    m_entities.extendedData = [this](const AcDbObject &object) { return extendedDataOf(object); };
    const std::uint64_t firstNew = d.nextHandle;
    giveHandles();
    if (d.log && d.nextHandle != firstNew)
        d.log->keepNumbers();
    // Parts without an object of their own are numbered behind all that have one.
    m_nextHandle = d.nextHandle;
    patchTouched();
    writeLayers();
    renameLayers();
    writeData();
    writeAdded();
    writeBlocks();
    writeApplication();
    writeHeader();
    finishSections();
}

std::vector<std::string_view> DxfWriter::pieces()
{
    std::stable_sort(m_edits.begin(), m_edits.end(), [](const Edit &a, const Edit &b) {
        // What is put in before a piece must not get lost when that piece goes.
        return std::tuple(a.offset, a.length != 0, a.rank) < std::tuple(b.offset, b.length != 0, b.rank);
    });
    std::vector<std::string_view> result;
    std::size_t position = 0;
    for (const Edit &edit : m_edits) {
        // Changes inside of what is taken out go with it.
        if (edit.offset < position)
            continue;
        if (edit.offset > position)
            result.push_back(f.at(position, edit.offset - position));
        if (!edit.text.empty())
            result.push_back(edit.text);
        position = edit.offset + edit.length;
    }
    if (position < f.text.size())
        result.push_back(f.at(position, f.text.size() - position));
    return result;
}

std::string DxfWriter::text()
{
    const auto parts = pieces();
    std::size_t size = 0;
    for (const std::string_view part : parts)
        size += part.size();
    std::string result;
    result.reserve(size);
    for (const std::string_view part : parts)
        result += part;
    return result;
}

void DxfWriter::replace(std::size_t offset, std::size_t length, std::string text, EditRank rank)
{
    if (length == 0 && text.empty())
        return;
    m_edits.push_back({offset, length, std::move(text), rank});
}

void DxfWriter::replaceValue(const PlacedTag &tag, std::string_view value)
{
    if (tag.tag.text() != value)
        replace(tag.valueStart(f), tag.tag.length, std::string(value));
}

DxfWriter::PlacedTags DxfWriter::placedTags(std::size_t offset, std::size_t end) const
{
    PlacedTags tags;
    TagCursor cursor(f.text.data() + offset, f.text.data() + end);
    Tag tag;
    const char *start = nullptr;
    while (cursor.next(tag, start))
        tags.push_back({tag, static_cast<std::size_t>(start - f.text.data()),
                        static_cast<std::size_t>(cursor.position() - f.text.data())});
    return tags;
}

DxfWriter::PlacedTags DxfWriter::headOf(const AcDbObject &object) const
{
    const auto &host = ObjectAccess::host(object);
    PlacedTags tags;
    TagCursor cursor(f.text.data() + host.sourceOffset, f.text.data() + host.sourceOffset + host.sourceLength);
    Tag tag;
    const char *start = nullptr;
    while (cursor.next(tag, start)) {
        if (tag.code == 0 && !tags.empty())
            break;
        tags.push_back({tag, static_cast<std::size_t>(start - f.text.data()),
                        static_cast<std::size_t>(cursor.position() - f.text.data())});
    }
    return tags;
}

std::string DxfWriter::layerName(const AcDbEntity &entity) const
{
    return f.codec.encode(d.layers[layerIndexOf(entity)].name);
}

// --- Handles
// -----------------------------------------------------------------------------------------------------------------

void DxfWriter::giveHandles()
{
    if (!f.hasHandles) {
        // A file without handles gets them only for what somebody asked for.
        return;
    }
    const auto give = [this](std::uint64_t &handle) {
        if (handle == 0)
            handle = d.newHandle();
    };
    if (!m_isR12)
        for (std::size_t i = 0; i < f.layers.size(); ++i)
            if (f.layers[i].length == 0 && f.layers[i].needsRecord && !d.layers[i].erased)
                give(f.layers[i].handle);
    for (const auto &block : d.blocks) {
        BlockSource &source = f.blocks[block.get()];
        if (source.headLength != 0 || block->isLayout() || block->isErased())
            continue;
        d.giveHandle(*block);
        give(source.beginHandle);
        give(source.endHandle);
    }
    for (AcDbEntity *entity : d.added) {
        if (entity->isErased())
            continue;
        d.giveHandle(*entity);
        if (kindOf(*entity) == EntityKind::BlockReference)
            for (AttributeEntity *attribute : attributesOf(static_cast<AcDbBlockReference &>(*entity)))
                d.giveHandle(*attribute);
    }
    for (std::size_t i = 0; i < d.touched.size(); ++i)
        if (ObjectAccess::has(*d.touched[i], kPatchAttributes) && !d.touched[i]->isErased())
            for (AttributeEntity *attribute : attributesOf(static_cast<AcDbBlockReference &>(*d.touched[i])))
                d.giveHandle(*attribute);
    if (m_isR12) {
        give(f.appidHandle);
        return;
    }
    bool needsRoot = false;
    for (const auto &[object, dictionary] : dataOwners())
        giveDataHandles(*dictionary);
    for (auto &[name, dictionary] : d.dictionaries) {
        giveDataHandles(dictionary);
        needsRoot = needsRoot || dictionary.handle != 0;
    }
    if (needsRoot && !f.rootDictionary)
        give(f.rootHandle);
}

void DxfWriter::giveDataHandles(DataDictionary &dictionary)
{
    if (!dictionary.changed)
        return;
    if (!dictionary.source && dictionary.handle == 0 && dictionary.hasRecords())
        dictionary.handle = d.newHandle();
    for (auto &[key, record] : dictionary.records)
        if (record.changed && !record.source && record.handle == 0 && record.isPresent())
            record.handle = d.newHandle();
}

/// In the order of handles, so that the text does not depend on where objects lie in memory. Erased ones are left out.
std::vector<std::pair<AcDbObject *, DataDictionary *>> DxfWriter::dataOwners()
{
    std::vector<std::pair<AcDbObject *, DataDictionary *>> owners;
    for (auto &[object, dictionary] : d.attached)
        if (!object->isErased() && !(d.log && d.log->isAid(*object)))
            owners.emplace_back(const_cast<AcDbObject *>(object), &dictionary);
    std::sort(owners.begin(), owners.end(), [](const auto &a, const auto &b) {
        return ObjectAccess::host(*a.first).handle < ObjectAccess::host(*b.first).handle;
    });
    return owners;
}

// --- Header
// --------------------------------------------------------------------------------------------------------------------

void DxfWriter::setVariable(const std::string &name, int code, const std::string &value)
{
    if (const auto known = f.header.find(name); known != f.header.end()) {
        if (f.at(known->second.valueOffset, known->second.valueLength) != value)
            replace(known->second.valueOffset, known->second.valueLength, value);
        return;
    }
    TagWriter w(m_newHeader, f);
    w.tag(9, name);
    w.tag(code, value);
}

void DxfWriter::writeHeader()
{
    for (const auto &[name, variable] : d.header)
        if (variable.changed)
            setVariable(name, variable.code, variable.value);
    if (d.currentLayer != f.currentLayer || m_layersOfFile.isRenamed(d.currentLayer))
        setVariable("$CLAYER", 8, f.codec.encode(d.layers[d.currentLayer].name));
    // Nothing was numbered in a file that has no handles and got none.
    const auto seed = d.header.find("$HANDSEED");
    const std::uint64_t statedSeed = seed != d.header.end() ? parseHandle(seed->second.value) : 0;
    const bool numbered = !m_edits.empty() || !m_newLayers.empty() || !m_newBlocks.empty() || !m_newEntities.empty() ||
                          !m_newObjects.empty();
    if (numbered && m_nextHandle > statedSeed && (f.hasHandles || m_nextHandle > 0x20)) {
        if (m_isR12 && seed == d.header.end())
            setVariable("$HANDLING", 70, "1");
        setVariable("$HANDSEED", 5, formatHandle(m_nextHandle));
    }
}

// --- Tables
// ----------------------------------------------------------------------------------------------------------------------

void DxfWriter::writeLayers()
{
    // What a layer has to name beside its own values is the same for all, so layer 0 shows it.
    std::string plotStyle, material;
    for (std::size_t i = 0; i < f.layers.size() && !m_isR12; ++i)
        if (f.layers[i].length != 0) {
            for (const auto &tag : placedTags(f.layers[i].offset, f.layers[i].offset + f.layers[i].length)) {
                if (tag.tag.code == 390)
                    plotStyle = tag.tag.name();
                if (tag.tag.code == 347)
                    material = tag.tag.name();
            }
            break;
        }
    for (std::size_t i = 0; i < d.layers.size(); ++i) {
        const Layer &layer = d.layers[i];
        const LayerSource &source = f.layers[i];
        if (layer.erased) {
            if (source.object)
                removeErased(*source.object);
            continue;
        }
        const int color = layer.on ? layer.color : -layer.color;
        const int flags = (layer.frozen ? 1 : 0) | (layer.locked ? 4 : 0);
        if (source.length != 0) {
            if (!source.changed)
                continue;
            const auto tags = placedTags(source.offset, source.offset + source.length);
            bool hasColor = false, hasFlags = false, hasName = !m_layersOfFile.isRenamed(i);
            for (const PlacedTag &tag : tags) {
                if (tag.tag.code == 2 && !hasName) {
                    hasName = true;
                    replaceValue(tag, f.codec.encode(layer.name));
                } else if (tag.tag.code == 62 && !hasColor) {
                    hasColor = true;
                    replaceValue(tag, std::to_string(color));
                } else if (tag.tag.code == 70 && !hasFlags) {
                    hasFlags = true;
                    replaceValue(tag, std::to_string((tag.tag.integer() & ~5) | flags));
                } else if (tag.tag.code == 420 || tag.tag.code == 430) {
                    // A true colour would win over the new index.
                    if (source.color != layer.color)
                        replace(tag.start, tag.end - tag.start, "");
                }
            }
            std::string more;
            TagWriter w(more, f);
            if (!hasFlags)
                w.integer(70, flags);
            if (!hasColor)
                w.integer(62, color);
            insert(tags.back().end, more);
            continue;
        }
        if (!source.needsRecord)
            continue;
        TagWriter w(m_newLayers, f);
        w.tag(0, "LAYER");
        if (!m_isR12) {
            w.handle(5, source.handle);
            if (f.layerTable.handle != 0 && d.version >= "AC1015")
                w.handle(330, f.layerTable.handle);
            w.tag(100, "AcDbSymbolTableRecord");
            w.tag(100, "AcDbLayerTableRecord");
        }
        w.text(2, layer.name);
        w.integer(70, flags);
        w.integer(62, color);
        w.tag(6, "CONTINUOUS");
        if (d.version >= "AC1015") {
            w.integer(370, -3);
            if (!plotStyle.empty())
                w.tag(390, plotStyle);
            if (!material.empty())
                w.tag(347, material);
        }
    }
}

void DxfWriter::writeApplication()
{
    if (!m_usesApplication || f.hasOwnAppid)
        return;
    std::string record;
    TagWriter w(record, f);
    w.tag(0, "APPID");
    if (f.appidHandle != 0)
        w.handle(5, f.appidHandle);
    w.tag(2, kApplication);
    w.integer(70, 0);
    if (f.appidTable.end != kNowhere) {
        insert(f.appidTable.end, record, EditRank::Member);
        return;
    }
    std::string table;
    TagWriter t(table, f);
    t.tag(0, "TABLE");
    t.tag(2, "APPID");
    t.integer(70, 1);
    m_newTables += table + record;
    TagWriter(m_newTables, f).tag(0, "ENDTAB");
}

// --- Blocks and entities
// -----------------------------------------------------------------------------------------------------------

void DxfWriter::writeAdded()
{
    for (AcDbEntity *entity : d.added) {
        if (entity->isErased() || (d.log && d.log->isAid(*entity)))
            continue;
        const auto *owner = static_cast<const BlockRecord *>(ObjectAccess::host(*entity).owner);
        // The entities section holds model space and the first paper space; all others stand in their blocks.
        const bool inSection = owner == d.modelSpace || foldedName(owner->name()) == L"*PAPER_SPACE" ||
                               (owner->isLayout() && f.blocks[owner].headLength == 0);
        m_entities.write(inSection ? m_newEntities : m_newInBlocks[owner], *entity, m_anonymousBlocks);
    }
    for (auto &[block, text] : m_newInBlocks) {
        const BlockSource &source = f.blocks[block];
        if (source.headLength != 0)
            insert(source.endOffset != kNowhere ? source.endOffset : source.offset + source.headLength, std::move(text),
                   EditRank::Member);
    }
}

void DxfWriter::writeBlocks()
{
    for (const auto &block : d.blocks) {
        const BlockSource &source = f.blocks[block.get()];
        const AcGePoint3d &base = block->basePoint();
        if (block->isErased()) {
            removeBlock(source);
            continue;
        }
        if (source.headLength != 0) {
            const AcGePoint3d &before = source.basePoint;
            if (base.x == before.x && base.y == before.y && base.z == before.z)
                continue;
            for (const PlacedTag &tag : placedTags(source.offset, source.offset + source.headLength))
                if (tag.tag.code == 10 || tag.tag.code == 20 || tag.tag.code == 30)
                    replaceValue(tag, formatReal(tag.tag.code == 10 ? base.x : tag.tag.code == 20 ? base.y : base.z));
            continue;
        }
        if (block->isLayout())
            continue; // a space that the file does not speak of is there all the same
        const std::uint64_t handle = ObjectAccess::host(*block).handle;
        if (!m_isR12 && !source.hasRecord) {
            TagWriter w(m_newRecords, f);
            w.tag(0, "BLOCK_RECORD");
            w.handle(5, handle);
            if (const auto data = d.attached.find(block.get()); data != d.attached.end() && data->second.handle != 0)
                EntityWriter::writeExtension(w, data->second.handle);
            if (f.blockRecordTable.handle != 0 && d.version >= "AC1015")
                w.handle(330, f.blockRecordTable.handle);
            w.tag(100, "AcDbSymbolTableRecord");
            w.tag(100, "AcDbBlockTableRecord");
            w.text(2, block->name());
            if (d.version >= "AC1015")
                w.handle(340, 0);
            if (d.version >= "AC1021") {
                w.integer(70, 0);
                w.integer(280, 1);
                w.integer(281, 0);
            }
        }
        TagWriter w(m_newBlocks, f);
        const bool hasAttributes =
            std::any_of(block->entities().begin(), block->entities().end(), [](const AcDbEntity *entity) {
                return !entity->isErased() && kindOf(*entity) == EntityKind::AttributeDefinition;
            });
        const auto head = [&](const char *type, std::uint64_t own, const char *subclass) {
            w.tag(0, type);
            if (own != 0)
                w.handle(5, own);
            if (!m_isR12) {
                if (d.version >= "AC1015")
                    w.handle(330, handle);
                w.tag(100, "AcDbEntity");
            }
            w.tag(8, "0");
            if (!m_isR12)
                w.tag(100, subclass);
        };
        head("BLOCK", m_isR12 ? handle : source.beginHandle, "AcDbBlockBegin");
        w.text(2, block->name());
        w.integer(70, hasAttributes ? 2 : 0);
        w.point(10, base);
        w.text(3, block->name());
        w.tag(1, "");
        if (const auto inside = m_newInBlocks.find(block.get()); inside != m_newInBlocks.end())
            m_newBlocks += inside->second;
        head("ENDBLK", source.endHandle, "AcDbBlockEnd");
    }
    m_newBlocks += m_anonymousBlocks;
}

/// From BLOCK to ENDBLK; the block's record goes with the other objects that were erased.
void DxfWriter::removeBlock(const BlockSource &source)
{
    if (source.headLength == 0)
        return;
    std::size_t end = source.offset + source.headLength;
    if (source.endOffset != kNowhere) {
        TagCursor cursor(f.text.data() + source.endOffset, f.text.data() + f.text.size());
        Tag tag;
        const char *start = nullptr;
        end = source.endOffset;
        const auto missing = [&](const MissingEnd &m) {
            return m.offset == end && std::string_view(m.type) == "ENDBLK";
        };
        if (std::ranges::any_of(f.missingEnds, missing)) {
            m_goneEnd = end;
        } else {
            cursor.next(tag, start); // ENDBLK itself
            do
                end = static_cast<std::size_t>(cursor.position() - f.text.data());
            while (cursor.next(tag, start) && tag.code != 0);
        }
    }
    replace(source.offset, end - source.offset, "");
}

/// Puts what is new at the end of its section or table, and makes those that the file lacks.
void DxfWriter::finishSections()
{
    const auto section = [this](const char *name, const std::string &content) {
        std::string text;
        TagWriter w(text, f);
        w.tag(0, "SECTION");
        w.tag(2, name);
        text += content;
        w.tag(0, "ENDSEC");
        return text;
    };
    const auto table = [this](const char *name, const std::string &records) {
        std::string text;
        TagWriter w(text, f);
        w.tag(0, "TABLE");
        w.tag(2, name);
        w.integer(70, 1);
        text += records;
        w.tag(0, "ENDTAB");
        return text;
    };
    const std::size_t end = f.eof == kNowhere ? f.text.size() : f.eof;
    const auto firstOf = [end](std::initializer_list<std::size_t> places) {
        return std::min(end, *std::min_element(places.begin(), places.end()));
    };

    if (!m_newHeader.empty()) {
        if (f.headerEnd != kNowhere) {
            insert(f.headerEnd, m_newHeader, EditRank::Part);
        } else {
            std::string version;
            TagWriter w(version, f);
            w.tag(9, "$ACADVER");
            w.tag(1, d.version);
            insert(f.start, section("HEADER", version + m_newHeader), EditRank::Section);
        }
    }
    if (!m_newLayers.empty() && f.layerTable.end != kNowhere)
        insert(f.layerTable.end, m_newLayers, EditRank::Member);
    else if (!m_newLayers.empty())
        m_newTables += table("LAYER", m_newLayers);
    if (!m_newRecords.empty() && f.blockRecordTable.end != kNowhere)
        insert(f.blockRecordTable.end, m_newRecords, EditRank::Member);
    else if (!m_newRecords.empty())
        m_newTables += table("BLOCK_RECORD", m_newRecords);
    if (!m_newTables.empty()) {
        if (f.tablesEnd != kNowhere)
            insert(f.tablesEnd, m_newTables, EditRank::Part);
        else
            insert(firstOf({f.blocksStart, f.entitiesStart, f.objectsStart}), section("TABLES", m_newTables),
                   EditRank::Section);
    }
    if (!m_newBlocks.empty()) {
        if (f.blocksEnd != kNowhere)
            insert(f.blocksEnd, m_newBlocks, EditRank::Part);
        else
            insert(firstOf({f.entitiesStart, f.objectsStart}), section("BLOCKS", m_newBlocks), EditRank::Section);
    }
    if (!m_newEntities.empty()) {
        if (f.entitiesEnd != kNowhere)
            insert(f.entitiesEnd, m_newEntities, EditRank::Part);
        else
            insert(firstOf({f.objectsStart}), section("ENTITIES", m_newEntities), EditRank::Section);
    }
    if (!m_newObjects.empty()) {
        if (f.objectsEnd != kNowhere)
            insert(f.objectsEnd, m_newObjects, EditRank::Part);
        else
            insert(end, section("OBJECTS", m_newObjects), EditRank::Section);
    }
    for (const MissingEnd &missing : f.missingEnds) {
        if (missing.offset == m_goneEnd && std::string_view(missing.type) == "ENDBLK")
            continue; // its block was erased
        std::string text;
        TagWriter(text, f).tag(0, missing.type);
        insert(missing.offset, std::move(text), missing.rank);
    }
}

} // namespace velmor::dxf
