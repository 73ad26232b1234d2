#include "host/drawing/dxf/DxfReader.h"

#include "host/drawing/Texts.h"
#include "host/drawing/dxf/DataTags.h"

#include <algorithm>

namespace velmor::dxf {

namespace {

constexpr std::size_t kMostFindings = 1000;
constexpr std::size_t kBytesBetweenTold = 1 << 19;

std::string printable(std::string_view text)
{
    std::string result(text.substr(0, 40));
    for (char &c : result)
        if (static_cast<unsigned char>(c) < 32)
            c = '?';
    return result;
}

} // namespace

void DxfReader::count(Counts &counts, std::string_view kind)
{
    const auto found = counts.find(kind);
    ++(found != counts.end() ? found->second : counts[std::string(kind)]);
}

// --- Stepping
// ------------------------------------------------------------------------------------------------------------

void DxfReader::enter(const char *first, const char *last)
{
    m_cursor = TagCursor(first, last);
    m_more = false;
    Tag tag;
    const char *start = nullptr;
    while (m_cursor.next(tag, start)) {
        if (tag.code == 0) {
            m_zero = tag;
            m_zeroStart = start;
            m_more = true;
            break;
        }
        if (tag.code != 999)
            find(Severity::Damage, start, drawingText("dxf.groupBefore", {std::to_string(tag.code)}));
    }
    reportBadLines();
}

bool DxfReader::advance()
{
    if (!m_more)
        return false;
    m_type = m_zero.name();
    m_start = m_zeroStart;
    m_objectBad = false;
    if (m_tags.capacity() > 1 << 16) {
        // One huge object must not keep its tags in memory while the rest is read.
        m_tags = {};
        m_tags.reserve(256);
    }
    m_tags.clear();
    Tag tag;
    const char *start = nullptr;
    while (m_cursor.next(tag, start)) {
        if (tag.code == 0) {
            m_zero = tag;
            m_zeroStart = m_objectEnd = start;
            if (!m_cursor.badLines().empty()) [[unlikely]]
                reportBadLines();
            m_passed += objectLength();
            if (m_passed >= m_nextTold) [[unlikely]]
                tellProgress();
            return true;
        }
        if (tag.code != 999)
            m_tags.push_back(tag);
    }
    m_objectEnd = m_cursor.end();
    m_more = false;
    if (!m_cursor.badLines().empty())
        reportBadLines();
    return true;
}

void DxfReader::tellProgress()
{
    // Often enough for a bar that moves evenly, and for a cancel that is felt at once.
    m_nextTold = m_passed + kBytesBetweenTold;
    if (m_progress && !m_progress(std::min(1.0, static_cast<double>(m_passed) / static_cast<double>(f.text.size()))))
        throw ReadingCancelled();
}

void DxfReader::find(Severity severity, const char *where, std::string text)
{
    auto &findings = d.report.findings;
    if (findings.size() >= kMostFindings) {
        if (findings.size() == kMostFindings)
            findings.push_back({Severity::Damage, 0, drawingText("dxf.more")});
        return;
    }
    std::size_t line = 0;
    if (where) {
        if (!m_lineFrom || where < m_lineFrom) {
            m_lineFrom = f.text.data();
            m_line = 1;
        }
        m_line += static_cast<std::size_t>(std::count(m_lineFrom, where, '\n'));
        m_lineFrom = where;
        line = m_line;
    }
    findings.push_back({severity, line, std::move(text)});
}

void DxfReader::reportBadLines()
{
    for (const TagCursor::BadLine &bad : m_cursor.badLines()) {
        m_objectBad = true;
        if (bad.atEnd) {
            find(Severity::Damage, bad.where, drawingText("dxf.endBehindCode"));
            continue;
        }
        const char *end = static_cast<const char *>(
            std::memchr(bad.where, '\n', static_cast<std::size_t>(m_cursor.end() - bad.where)));
        const std::string_view line(bad.where, static_cast<std::size_t>((end ? end : m_cursor.end()) - bad.where));
        find(Severity::Damage, bad.where, drawingText("dxf.noCode", {printable(line)}));
    }
    m_cursor.clearBadLines();
}

// --- The whole file
// --------------------------------------------------------------------------------------------------------

std::string DxfReader::findHeaderValue(std::string_view name) const
{
    std::size_t at = f.text.find(name, f.start);
    while (at != std::string::npos) {
        const std::size_t end = at + name.size();
        const bool isLine = at > 0 && (f.text[at - 1] == '\n' || f.text[at - 1] == ' ') && end < f.text.size() &&
                            (f.text[end] == '\n' || f.text[end] == '\r' || f.text[end] == ' ');
        if (isLine) {
            const std::size_t lineEnd = f.text.find('\n', end);
            if (lineEnd == std::string::npos)
                return {};
            TagCursor cursor(f.text.data() + lineEnd + 1, f.text.data() + f.end);
            Tag tag;
            const char *start = nullptr;
            return cursor.next(tag, start) && (tag.code == 1 || tag.code == 3) ? std::string(tag.name())
                                                                               : std::string();
        }
        at = f.text.find(name, at + 1);
    }
    return {};
}

void DxfReader::readPrologue()
{
    if (f.text.starts_with("\xEF\xBB\xBF"))
        f.start = 3;
    f.end = f.text.size();
    while (f.end > f.start && (static_cast<unsigned char>(f.text[f.end - 1]) <= ' ' || f.text[f.end - 1] == '\x1A'))
        --f.end;
    // The last value keeps its line end.
    const std::size_t lineEnd = f.text.find('\n', f.end);
    f.end = lineEnd == std::string::npos ? f.text.size() : lineEnd + 1;

    const std::size_t firstEnd = f.text.find('\n', f.start);
    f.lineEnd = firstEnd != std::string::npos && firstEnd > 0 && f.text[firstEnd - 1] == '\r' ? "\r\n" : "\n";
    f.padCodes = f.text.compare(f.start, 1, " ") == 0;

    std::string version = findHeaderValue("$ACADVER");
    for (char &c : version)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    d.version = version.starts_with("AC") && version.size() == 6 ? version : "AC1009";
    const std::string codePage = findHeaderValue("$DWGCODEPAGE");
    f.codec = TextCodec::forDrawing(d.version, codePage);
    d.report.version = d.version;
    d.report.codePage = f.codec.name();
    if (!f.codec.isKnown() && !codePage.empty())
        find(Severity::Warning, nullptr, drawingText("dxf.codePage", {printable(codePage)}));
}

bool DxfReader::run()
{
    readPrologue();
    const char *text = f.text.data();
    readObjectsOf(text + f.start, text + f.end);
    if (!m_seenSection)
        return false;
    noteCut();
    if (m_cut.offset != kNowhere)
        return true;
    // What had to wait for the tables.
    m_deferring = false;
    const auto deferred = std::move(m_deferred);
    for (const auto &[first, last] : deferred) {
        readObjectsOf(first, last);
        m_start = last;
        closeOpenSection();
    }
    resolve();
    return true;
}

void DxfReader::readObjectsOf(const char *first, const char *last)
{
    enter(first, last);
    while (advance()) {
        if (isType("EOF")) {
            f.eof = startOffset();
            m_seenEof = true;
            if (m_more)
                find(Severity::Note, m_zeroStart, drawingText("dxf.afterEnd"));
            break;
        }
        readObject();
    }
}

void DxfReader::readObject()
{
    // A polyline or a reference that lacks its end is only in doubt when the file ends right behind it.
    if (m_more)
        m_compoundStart = nullptr;
    if (isType("SECTION")) {
        closeOpenSection();
        beginSection();
        return;
    }
    if (isType("ENDSEC")) {
        endSection();
        return;
    }
    switch (m_section) {
    case Section::Tables:
        readTables();
        break;
    case Section::Blocks:
        readBlocks();
        break;
    case Section::Entities:
        ensureSpaces();
        readEntity(nullptr);
        break;
    case Section::Objects:
        readRawObject();
        break;
    case Section::None:
        find(Severity::Damage, m_start, drawingText("dxf.outsideSection", {printable(m_type)}));
        break;
    case Section::Header:
    case Section::Other:
        break;
    }
}

bool DxfReader::deferSection()
{
    // Layers and block records have to be known before what uses them; files with another order are rare.
    // Once one waits, all others do, so that they keep their order: of two blocks of a name the first holds.
    if (!m_deferring || (m_seenTables && m_deferred.empty()))
        return false;
    const std::string_view rest(m_objectEnd, static_cast<std::size_t>(m_cursor.end() - m_objectEnd));
    bool tablesFollow = !m_deferred.empty();
    for (std::size_t at = rest.find("TABLES"); at != std::string_view::npos && !tablesFollow;
         at = rest.find("TABLES", at + 1))
        tablesFollow = at > 0 && (rest[at - 1] == '\n' || rest[at - 1] == ' ');
    if (!tablesFollow)
        return false;
    const char *first = m_start;
    while (m_more && m_zero.name() != "ENDSEC" && m_zero.name() != "SECTION" && m_zero.name() != "EOF")
        advance();
    if (m_more && m_zero.name() == "ENDSEC")
        advance();
    m_deferred.emplace_back(first, m_objectEnd);
    m_section = Section::None;
    return true;
}

void DxfReader::beginSection()
{
    m_seenSection = true;
    m_sectionName.clear();
    for (const Tag &tag : m_tags)
        if (tag.code == 2) {
            m_sectionName = tag.name();
            break;
        }
    if (m_sectionName.empty())
        find(Severity::Damage, m_start, drawingText("dxf.sectionNoName"));
    m_section = Section::Other;
    if (m_sectionName == "HEADER") {
        m_section = Section::Header;
        readHeader();
    } else if (m_sectionName == "TABLES") {
        m_section = Section::Tables;
        m_seenTables = f.hasTables = true;
    } else if (m_sectionName == "BLOCKS") {
        if (deferSection())
            return;
        m_section = Section::Blocks;
        f.blocksStart = std::min(f.blocksStart, startOffset());
    } else if (m_sectionName == "ENTITIES") {
        if (deferSection())
            return;
        m_section = Section::Entities;
        f.entitiesStart = std::min(f.entitiesStart, startOffset());
    } else if (m_sectionName == "OBJECTS") {
        m_section = Section::Objects;
        m_hadRoot = f.rootDictionary != nullptr;
        f.objectsStart = std::min(f.objectsStart, startOffset());
    } else {
        count(m_unreadSections, m_sectionName);
    }
}

/// The drawing can be written only with it.
void DxfReader::noteMissingEnd(EditRank rank, const char *type)
{
    f.missingEnds.push_back({startOffset(), rank, type});
}

void DxfReader::closeOpenSection()
{
    if (m_section == Section::None)
        return;
    find(Severity::Damage, m_start, drawingText("dxf.sectionOpen", {m_sectionName}));
    endSection(true);
}

void DxfReader::endSection(bool isMissing)
{
    const std::size_t end = startOffset();
    if (m_inTable) {
        find(Severity::Damage, m_start, drawingText("dxf.tableNoEnd", {m_tableName}));
        endTable();
        noteMissingEnd(EditRank::PartEnd, "ENDTAB");
    }
    if (m_inBlock) {
        find(Severity::Damage, m_start, drawingText("dxf.blockNoEnd"));
        endBlock(true);
    }
    if (isMissing)
        noteMissingEnd(EditRank::SectionEnd, "ENDSEC");
    // The first section of a kind takes what is new.
    const auto note = [end](std::size_t &place) {
        if (place == kNowhere)
            place = end;
    };
    switch (m_section) {
    case Section::Header:
        note(f.headerEnd);
        break;
    case Section::Tables:
        note(f.tablesEnd);
        break;
    case Section::Blocks:
        note(f.blocksEnd);
        break;
    case Section::Entities:
        note(f.entitiesEnd);
        break;
    case Section::Objects:
        // New objects go where the root dictionary stands, which is to stay the first of all dictionaries.
        if (!m_hadRoot)
            f.objectsEnd = end;
        break;
    case Section::None:
        find(Severity::Damage, m_start, drawingText("dxf.strayEndSection"));
        break;
    case Section::Other:
        break;
    }
    m_section = Section::None;
}

void DxfReader::readHeader()
{
    std::string name;
    for (std::size_t i = 0; i < m_tags.size(); ++i) {
        const Tag &tag = m_tags[i];
        if (tag.code == 9) {
            name = tag.name();
            continue;
        }
        if (name.empty() || (tag.code == 2 && i == 0))
            continue;
        if (d.header.try_emplace(name, HeaderVariable{tag.code, std::string(tag.name()), false}).second)
            f.header[name] = {offsetOf(tag.value), tag.length};
        name.clear();
    }
}

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

// --- The end
// -----------------------------------------------------------------------------------------------------------------

void DxfReader::noteCut()
{
    const bool isOpen = m_section != Section::None;
    if (m_seenEof && !isOpen)
        return;
    if (m_seenEof) {
        m_cut.message = drawingText("dxf.sectionCut", {m_sectionName});
        m_cut.offset = f.eof;
    } else {
        // The last object can't be trusted unless it is the end of something.
        const bool isWhole = isType("ENDSEC") || isType("ENDTAB") || isType("ENDBLK");
        const char *last = m_tags.empty() ? m_type.data() + m_type.size() : m_tags.back().value + m_tags.back().length;
        const std::size_t lineEnd = f.text.find('\n', offsetOf(last));
        m_cut.offset = !isWhole                       ? offsetOf(m_compoundStart ? m_compoundStart : m_start)
                       : lineEnd == std::string::npos ? f.end
                                                      : lineEnd + 1;
        m_cut.message = isWhole ? drawingText("dxf.noEndMark") : drawingText("dxf.endInside", {printable(m_type)});
    }
    m_cut.line = 1 + static_cast<std::size_t>(std::count(f.text.data(), f.text.data() + m_cut.offset, '\n'));
    // Opening a section, a table or a block by its last object is undone with that object.
    const bool dropsSection = !m_seenEof && isType("SECTION"), dropsTable = !m_seenEof && m_tableStart == m_start,
               dropsBlock = !m_seenEof && isType("BLOCK");
    const std::string end = f.lineEnd;
    const std::string zero = (f.padCodes ? "  0" : "0") + end;
    if (m_inBlock && !dropsBlock)
        m_cut.closing += zero + "ENDBLK" + end;
    if (m_inTable && !dropsTable)
        m_cut.closing += zero + "ENDTAB" + end;
    if (isOpen && !dropsSection)
        m_cut.closing += zero + "ENDSEC" + end;
    m_cut.closing += zero + "EOF" + end;
}

void DxfReader::resolve()
{
    ensureSpaces();
    if (!d.layerByName.contains(L"0")) {
        d.addLayer({L"0"});
        f.layers.emplace_back();
    }
    for (auto &[record, source] : f.blocks)
        if (source.endOffset == kNowhere && source.headLength != 0)
            source.endOffset = f.blocksEnd;
    resolveReferences();
    resolveDictionaries();

    if (const auto seed = d.header.find("$HANDSEED"); seed != d.header.end()) {
        const std::uint64_t value = parseHandle(seed->second.value);
        d.nextHandle = std::max(d.nextHandle, value < ~std::uint64_t{0} - (1u << 20) ? value : 0);
    }
    if (d.report.damaged() || d.nextHandle == 0x20)
        countMentionedHandles();
    // A number at the very end of the range would leave none for new objects.
    if (m_highestHandle < ~std::uint64_t{0} - (1u << 20))
        d.nextHandle = std::max(d.nextHandle, m_highestHandle + 1);
    d.handlesListed = false;
    f.hasHandles = m_highestHandle != 0 || d.version > "AC1009";

    if (const auto current = d.header.find("$CLAYER"); current != d.header.end())
        if (const auto layer = d.layerByName.find(foldedName(f.codec.decode(current->second.value)));
            layer != d.layerByName.end())
            d.currentLayer = f.currentLayer = layer->second;
    f.layers.resize(d.layers.size());
    for (std::size_t i = 0; i < d.layers.size(); ++i)
        f.layers[i].name = d.layers[i].name;
    reportCounts();
}

void DxfReader::reportCounts()
{
    static constexpr const char *kNames[] = {"",       "LINE",       "ARC",      "CIRCLE",   "ELLIPSE", "SPLINE",
                                             "POINT",  "LWPOLYLINE", "POLYLINE", "POLYLINE", "TEXT",    "MTEXT",
                                             "INSERT", "ATTRIB",     "ATTDEF",   "HATCH"};
    for (std::size_t kind = 1; kind < m_readByKind.size(); ++kind)
        if (m_readByKind[kind] != 0)
            d.report.read[kNames[kind]] += m_readByKind[kind];
    for (const auto &[name, count] : m_unread)
        d.report.unread[printable(name)] += count;
    const auto others = [this](const char *kind, std::size_t count) {
        if (count != 0)
            d.report.readOthers[kind] = count;
    };
    std::size_t records = 0;
    for (const auto &[object, dictionary] : d.attached)
        records += dictionary.records.size();
    for (const auto &[name, dictionary] : d.dictionaries)
        records += dictionary.records.size();
    // Those that the file states, not those that it only uses.
    others("layers", static_cast<std::size_t>(
                         std::ranges::count_if(f.layers, [](const LayerSource &layer) { return layer.length != 0; })));
    others("blocks", static_cast<std::size_t>(std::ranges::count_if(
                         f.blocks, [](const auto &block) { return block.second.headLength != 0; })));
    others("header variables", d.header.size());
    others("named dictionaries", d.dictionaries.size());
    others("data records", records);
    const auto unread = [this](const char *what, const auto &counts) {
        for (const auto &[kind, count] : counts)
            if (count != 0)
                d.report.unreadOthers[what + printable(kind)] += count;
    };
    unread("section ", m_unreadSections);
    unread("record ", m_unreadRecords);
    for (const RawObject *object : m_usedObjects)
        if (const auto kind = m_unreadObjects.find(object->typeName());
            kind != m_unreadObjects.end() && kind->second != 0) // it may stand in another section by mistake
            --kind->second;
    unread("object ", m_unreadObjects);
}

/// Without the seed, or with objects lost, pointers may name objects that are not there. New ones must not be taken for
/// those.
void DxfReader::countMentionedHandles()
{
    constexpr std::uint64_t kMostSensible = std::uint64_t{1} << 48;
    TagCursor cursor(f.text.data() + f.start, f.text.data() + f.end);
    Tag tag;
    const char *start = nullptr;
    while (cursor.next(tag, start))
        if (tag.code >= 320 && valueKindOf(tag.code) == ValueKind::Handle)
            if (const std::uint64_t handle = parseHandle(tag.text()); handle < kMostSensible)
                m_highestHandle = std::max(m_highestHandle, handle);
}

void DxfReader::resolveReferences()
{
    std::unordered_map<std::string_view, BlockRecord *> byBytes;
    for (const auto &[reference, name] : m_references) {
        auto [found, isNew] = byBytes.try_emplace(name, nullptr);
        if (isNew) {
            const auto block = d.blockByName.find(foldedName(f.codec.decode(name)));
            if (block != d.blockByName.end())
                found->second = block->second;
            else
                find(Severity::Warning, name.data(), drawingText("dxf.blockUndefined", {printable(name)}));
        }
        if (found->second)
            ObjectAccess::setDefinition(*reference, ObjectAccess::id(found->second));
    }
}

void DxfReader::resolveDictionaries()
{
    // Data of R12, collected slice by slice.
    std::stable_sort(m_slices.begin(), m_slices.end(), [](const DataSlice &a, const DataSlice &b) {
        return std::tie(a.target, a.key, a.part) < std::tie(b.target, b.key, b.part);
    });
    for (std::size_t i = 0; i < m_slices.size();) {
        std::vector<Tag> tags;
        std::size_t last = i;
        for (; last < m_slices.size() && m_slices[last].target == m_slices[i].target &&
               m_slices[last].key == m_slices[i].key;
             ++last)
            tags.insert(tags.end(), m_slices[last].tags.begin(), m_slices[last].tags.end());
        DataRecord record{nullptr, readItems(tags, f.codec), false, true, 0};
        const std::string &target = m_slices[i].target;
        if (target.starts_with('#')) {
            d.dictionaries[target.substr(1)].records[m_slices[i].key] = std::move(record);
        } else {
            d.handlesListed = false;
            AcDbObject *object = d.find(parseHandle(target));
            if (object)
                d.attached[object].records[m_slices[i].key] = std::move(record);
            else
                find(Severity::Warning, nullptr,
                     drawingText("dxf.dataNoObject", {printable(m_slices[i].key), printable(target)}));
        }
        i = last;
    }

    std::unordered_map<std::uint64_t, RawObject *> byHandle;
    byHandle.reserve(f.rawObjects.size());
    for (RawObject *object : f.rawObjects)
        byHandle.emplace(ObjectAccess::host(*object).handle, object);
    const auto objectOf = [&byHandle](std::uint64_t handle, std::string_view type) -> RawObject * {
        const auto found = handle == 0 ? byHandle.end() : byHandle.find(handle);
        return found != byHandle.end() && found->second->typeName() == type ? found->second : nullptr;
    };
    const auto fill = [&](DataDictionary &dictionary, RawObject &source) {
        dictionary.source = &source;
        m_usedObjects.insert(&source);
        for (const DictionaryEntry &entry : readDictionary(f, source))
            if (RawObject *record = objectOf(entry.handle, "XRECORD")) {
                m_usedObjects.insert(record);
                dictionary.records.try_emplace(entry.key, DataRecord{record, std::nullopt, false, false, 0});
            }
    };
    for (const auto &[object, handle] : m_extensions)
        if (RawObject *source = objectOf(handle, "DICTIONARY"))
            fill(d.attached[object], *source);
    if (f.rootDictionary) {
        m_usedObjects.insert(f.rootDictionary);
        for (const DictionaryEntry &entry : readDictionary(f, *f.rootDictionary))
            if (RawObject *source = objectOf(entry.handle, "DICTIONARY"))
                fill(d.dictionaries[entry.key], *source);
    }

    for (auto &[object, dictionary] : d.attached) {
        if (!ObjectAccess::has(*object, kIsEntity))
            continue;
        for (const auto &[key, record] : dictionary.records)
            d.entitiesByKey[key][ObjectAccess::host(*object).handle] =
                static_cast<AcDbEntity *>(const_cast<AcDbObject *>(object));
    }
}

} // namespace velmor::dxf
