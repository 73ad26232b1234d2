// Tables, blocks and objects of a DXF text.
#include "host/drawing/Texts.h"
#include "host/drawing/dxf/DataTags.h"
#include "host/drawing/dxf/DxfReader.h"

#include <algorithm>

namespace velmor::dxf {

// --- Tables
// ----------------------------------------------------------------------------------------------------------------

void DxfReader::readTables()
{
    if (isType("TABLE")) {
        if (m_inTable) {
            find(Severity::Damage, m_start, drawingText("dxf.tableOpen", {m_tableName}));
            endTable();
            noteMissingEnd(EditRank::PartEnd, "ENDTAB");
        }
        m_inTable = true;
        m_tableStart = m_start;
        m_tableName.clear();
        std::uint64_t handle = 0;
        for (const Tag &tag : m_tags) {
            if (tag.code == 2 && m_tableName.empty())
                m_tableName = tag.name();
            if (tag.code == 5 && handle == 0)
                handle = parseHandle(tag.text());
        }
        m_highestHandle = std::max(m_highestHandle, handle);
        TableSource *table = m_tableName == "LAYER"          ? &f.layerTable
                             : m_tableName == "APPID"        ? &f.appidTable
                             : m_tableName == "BLOCK_RECORD" ? &f.blockRecordTable
                                                             : nullptr;
        if (table)
            table->handle = handle;
        return;
    }
    if (isType("ENDTAB")) {
        if (!m_inTable)
            find(Severity::Damage, m_start, drawingText("dxf.strayEndTable"));
        endTable();
        return;
    }
    if (!m_inTable) {
        find(Severity::Damage, m_start, drawingText("dxf.outsideTable", {printable(m_type)}));
        m_inTable = true;
        m_tableStart = m_start;
        m_tableName = m_type;
    }
    if (isType("LAYER"))
        readLayer();
    else if (isType("BLOCK_RECORD"))
        readBlockRecord();
    else {
        readRawObject();
        count(m_unreadRecords, m_type);
    }
    if (isType("APPID"))
        for (const Tag &tag : m_tags)
            if (tag.code == 2 && tag.name() == kApplication)
                f.hasOwnAppid = true;
}

void DxfReader::endTable()
{
    TableSource *table = m_tableName == "LAYER"          ? &f.layerTable
                         : m_tableName == "APPID"        ? &f.appidTable
                         : m_tableName == "BLOCK_RECORD" ? &f.blockRecordTable
                                                         : nullptr;
    if (table && table->end == kNowhere)
        table->end = startOffset();
    m_inTable = false;
    m_tableName.clear();
}

void DxfReader::readLayer()
{
    Layer layer;
    const Tag *name = nullptr;
    for (const Tag &tag : m_tags) {
        if (tag.code >= 1000)
            break;
        if (tag.code == 2 && !name) {
            name = &tag;
        } else if (tag.code == 70) {
            const int flags = tag.integer();
            layer.frozen = (flags & 1) != 0;
            layer.locked = (flags & 4) != 0;
        } else if (tag.code == 62) {
            const int color = tag.integer(7);
            layer.on = color >= 0;
            layer.color = std::clamp(std::abs(color), 1, 255);
        }
    }
    readRawObject();
    if (!name) {
        find(Severity::Damage, m_start, drawingText("dxf.layerNoName"));
        ++m_unreadRecords["LAYER"];
        return;
    }
    layer.name = f.codec.decode(name->text());
    if (d.layerByName.contains(foldedName(layer.name))) {
        find(Severity::Warning, m_start, drawingText("dxf.layerTwice", {toUtf8(layer.name)}));
        ++m_unreadRecords["LAYER"];
        return;
    }
    const int color = layer.color;
    d.addLayer(std::move(layer));
    f.layers.push_back(
        {startOffset(), static_cast<std::uint32_t>(objectLength()), f.rawObjects.back(), color, false, false, 0, {}});
}

void DxfReader::readBlockRecord()
{
    const CommonTags common = EntityReader::common(m_tags);
    m_highestHandle = std::max(m_highestHandle, common.handle);
    const std::wstring name = f.codec.decode(EntityReader::blockName(m_tags));
    if (name.empty()) {
        find(Severity::Damage, m_start, drawingText("dxf.recordNoName"));
        ++m_unreadRecords["BLOCK_RECORD"];
        return;
    }
    if (d.blockByName.contains(foldedName(name))) {
        find(Severity::Warning, m_start, drawingText("dxf.recordTwice", {toUtf8(name)}));
        ++m_unreadRecords["BLOCK_RECORD"];
        return;
    }
    BlockRecord &record = d.makeBlock(name);
    auto &host = ObjectAccess::host(record);
    host.handle = common.handle;
    host.sourceOffset = startOffset();
    host.sourceLength = static_cast<std::uint32_t>(objectLength());
    ObjectAccess::set(record, kHandleInText, common.handle != 0);
    f.blocks[&record].hasRecord = true;
    noteExtras(record, common);
    if (!d.modelSpace && record.isModelSpace())
        d.modelSpace = &record;
    else if (!m_paperSpace && foldedName(name) == L"*PAPER_SPACE")
        m_paperSpace = &record;
}

void DxfReader::ensureSpaces()
{
    const auto make = [this](const wchar_t *name) {
        BlockRecord &record = d.makeBlock(name);
        f.blocks[&record];
        return &record;
    };
    if (!d.modelSpace)
        d.modelSpace = make(L"*Model_Space");
    if (!m_paperSpace) {
        const auto found = d.blockByName.find(L"*PAPER_SPACE");
        m_paperSpace = found != d.blockByName.end() ? found->second : make(L"*Paper_Space");
    }
}

// --- Blocks
// ------------------------------------------------------------------------------------------------------------------

void DxfReader::readBlocks()
{
    ensureSpaces();
    if (isType("BLOCK")) {
        if (m_inBlock) {
            find(Severity::Damage, m_start, drawingText("dxf.blockOpen"));
            endBlock(true);
        }
        beginBlock();
    } else if (isType("ENDBLK")) {
        if (!m_inBlock)
            find(Severity::Damage, m_start, drawingText("dxf.strayEndBlock"));
        else
            endBlock(false);
        m_highestHandle = std::max(m_highestHandle, EntityReader::common(m_tags).handle);
    } else if (!m_inBlock) {
        find(Severity::Damage, m_start, drawingText("dxf.outsideBlock", {printable(m_type)}));
    } else if (m_inDataBlock) {
        readDataBlock();
    } else if (m_block) {
        readEntity(m_block);
    }
}

void DxfReader::beginBlock()
{
    m_inBlock = true;
    m_block = nullptr;
    const CommonTags common = EntityReader::common(m_tags);
    m_highestHandle = std::max(m_highestHandle, common.handle);
    AcGePoint3d base;
    const Tag *name = nullptr;
    for (const Tag &tag : m_tags) {
        if (tag.code == 2 && !name)
            name = &tag;
        else if (tag.code == 10)
            tag.real(base.x);
        else if (tag.code == 20)
            tag.real(base.y);
        else if (tag.code == 30)
            tag.real(base.z);
        else if (tag.code >= 1000)
            break;
    }
    if (!name) {
        find(Severity::Damage, m_start, drawingText("dxf.blockNoName"));
        return;
    }
    std::wstring text = f.codec.decode(name->text());
    std::wstring folded = foldedName(text);
    const bool isR12 = d.version <= "AC1009";
    if (isR12 && folded == L"VELMOR_DATA") {
        m_inDataBlock = true;
        f.dataBlockOffset = startOffset();
        return;
    }
    // Files written for R12 by later programs name the spaces so.
    if (isR12 && (folded == L"$MODEL_SPACE" || folded == L"$PAPER_SPACE"))
        folded[0] = L'*';
    const auto found = d.blockByName.find(folded);
    BlockRecord &record = found != d.blockByName.end() ? *found->second : d.makeBlock(std::move(text));
    BlockSource &source = f.blocks[&record];
    if (source.headLength != 0) {
        find(Severity::Warning, m_start, drawingText("dxf.blockTwice", {toUtf8(record.name())}));
        return;
    }
    m_block = &record;
    source.offset = startOffset();
    source.headLength = objectLength();
    source.basePoint = base;
    ObjectAccess::basePoint(record) = base;
    auto &host = ObjectAccess::host(record);
    if (!source.hasRecord) {
        // Without block records the block itself is the object.
        host.handle = common.handle;
        host.sourceOffset = startOffset();
        host.sourceLength = static_cast<std::uint32_t>(objectLength());
        ObjectAccess::set(record, kHandleInText, common.handle != 0);
        noteExtras(record, common);
    }
}

void DxfReader::endBlock(bool isMissing)
{
    if (m_inDataBlock)
        f.dataBlockLength = offsetOf(isMissing ? m_start : m_objectEnd) - f.dataBlockOffset;
    else if (m_block)
        f.blocks[m_block].endOffset = startOffset();
    if (isMissing && !m_inDataBlock) // the data block is written whole
        noteMissingEnd(EditRank::PartEnd, "ENDBLK");
    m_inBlock = m_inDataBlock = false;
    m_block = nullptr;
}

/// A point that carries a slice of data.
void DxfReader::readDataBlock()
{
    const CommonTags common = EntityReader::common(m_tags);
    m_highestHandle = std::max(m_highestHandle, common.handle);
    if (common.ownData == 0)
        return;
    for (auto &slice : readExtendedData(std::span(m_tags).subspan(common.ownData), f.codec))
        m_slices.push_back({std::move(slice.target), std::move(slice.key), slice.part, std::move(slice.tags)});
}

// --- Objects
// ---------------------------------------------------------------------------------------------------------------

void DxfReader::readRawObject()
{
    auto &object = *d.arena.make<RawObject>(std::string(m_type));
    d.arenaObjects.push_back(&object);
    const CommonTags common = EntityReader::common(m_tags);
    auto &host = ObjectAccess::host(object);
    ObjectAccess::setOwner(object, d.table);
    host.handle = common.handle;
    host.sourceOffset = startOffset();
    host.sourceLength = static_cast<std::uint32_t>(objectLength());
    host.flags = static_cast<std::uint16_t>(kInArena | (common.handle != 0 ? kHandleInText : 0));
    m_highestHandle = std::max(m_highestHandle, common.handle);
    f.rawObjects.push_back(&object);
    noteExtras(object, common);
    if (m_section == Section::Objects)
        count(m_unreadObjects, m_type);
    // The first dictionary of the section is the root of all others.
    if (m_section == Section::Objects && !f.rootDictionary && isType("DICTIONARY"))
        f.rootDictionary = &object;
}

} // namespace velmor::dxf
