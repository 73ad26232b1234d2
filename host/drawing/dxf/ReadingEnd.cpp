// The end of a read: where a text was cut off, what refers to what, what was read.
#include "host/drawing/Texts.h"
#include "host/drawing/dxf/DataTags.h"
#include "host/drawing/dxf/DxfReader.h"

#include <algorithm>

namespace velmor::dxf {

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
