// Attached data and named dictionaries into the text (their form is told in DataTags.h).
#include "host/drawing/dxf/DataTags.h"
#include "host/drawing/dxf/DxfWriter.h"

#include <algorithm>

namespace velmor::dxf {

namespace {

/// Extended data of one entity may take 16 kilobytes; half of it is left to others.
constexpr std::size_t kMostInPlace = 8000;
constexpr std::size_t kMostInCarrier = 14000;

std::size_t sizeOf(const std::vector<std::string> &tags)
{
    std::size_t size = 0;
    for (const std::string &tag : tags)
        size += tag.size();
    return size;
}

} // namespace

// --- From R13 on
// -------------------------------------------------------------------------------------------------------------

std::string DxfWriter::itemTags(const DataItems &items) const
{
    std::string text;
    TagWriter w(text, f);
    for (const DataItem &item : items) {
        if (const auto *real = std::get_if<double>(&item.value)) {
            w.real(item.code, *real);
        } else if (const auto *whole = std::get_if<std::int64_t>(&item.value)) {
            w.integer(item.code, *whole);
        } else {
            const auto pieces = piecesOf(f.codec, std::get<std::wstring>(item.value));
            for (std::size_t i = 0; i < pieces.size(); ++i)
                w.tag(i + 1 < pieces.size() ? kContinuationCode : item.code, pieces[i]);
        }
    }
    return text;
}

void DxfWriter::writeData()
{
    if (m_isR12) {
        writeDataBlock();
        return;
    }
    for (const auto &[object, dictionary] : dataOwners())
        if (dictionary->changed)
            writeDictionary(*dictionary, ObjectAccess::host(*object).handle);
    const std::uint64_t root = f.rootDictionary ? ObjectAccess::host(*f.rootDictionary).handle : f.rootHandle;
    for (auto &[name, dictionary] : d.dictionaries)
        if (dictionary.changed)
            writeDictionary(dictionary, root);
    writeRoot();
}

void DxfWriter::writeDictionary(DataDictionary &dictionary, std::uint64_t owner)
{
    const std::uint64_t own = dictionary.source ? ObjectAccess::host(*dictionary.source).handle : dictionary.handle;
    if (own == 0)
        return; // made and emptied again before it was ever written
    std::vector<std::pair<std::string, std::uint64_t>> added;
    std::vector<std::string> removed;
    for (auto &[key, record] : dictionary.records) {
        if (!record.changed)
            continue;
        if (record.isPresent()) {
            if (!record.source)
                added.emplace_back(key, record.handle);
            writeRecord(record, own);
        } else if (record.source) {
            removed.push_back(key);
            const auto &host = ObjectAccess::host(*record.source);
            replace(host.sourceOffset, host.sourceLength, "");
        }
    }
    if (!dictionary.source) {
        const bool isExtension = std::none_of(d.dictionaries.begin(), d.dictionaries.end(),
                                              [&](const auto &entry) { return &entry.second == &dictionary; });
        writeNewDictionary(own, owner, added, isExtension);
        return;
    }
    const auto head = headOf(*dictionary.source);
    int code = 350;
    std::size_t behind = head.back().end;
    for (std::size_t i = 0; i < head.size(); ++i) {
        if (head[i].tag.code >= 1000) {
            behind = std::min(behind, head[i].start);
            break;
        }
        if (head[i].tag.code == 280 && head[i].tag.integer() == 1)
            code = 360;
        if (head[i].tag.code != 3 || i + 1 == head.size() ||
            (head[i + 1].tag.code != 350 && head[i + 1].tag.code != 360 && head[i + 1].tag.code != 340))
            continue;
        code = head[i + 1].tag.code;
        if (std::find(removed.begin(), removed.end(), toUtf8(f.codec.decode(head[i].tag.text()))) != removed.end())
            replace(head[i].start, head[i + 1].end - head[i].start, "");
    }
    std::string text;
    TagWriter w(text, f);
    for (const auto &[key, handle] : added) {
        w.text(3, fromUtf8(key));
        w.handle(code, handle);
    }
    insert(behind, text);
}

void DxfWriter::writeNewDictionary(std::uint64_t handle, std::uint64_t owner,
                                   const std::vector<std::pair<std::string, std::uint64_t>> &entries, bool ownsHard)
{
    TagWriter w(m_newObjects, f);
    w.tag(0, "DICTIONARY");
    w.handle(5, handle);
    w.handle(330, owner);
    w.tag(100, "AcDbDictionary");
    if (d.version >= "AC1015") {
        if (ownsHard)
            w.integer(280, 1);
        w.integer(281, 1);
    }
    for (const auto &[key, member] : entries) {
        w.text(3, fromUtf8(key));
        w.handle(ownsHard && d.version >= "AC1015" ? 360 : 350, member);
    }
}

void DxfWriter::writeRecord(DataRecord &record, std::uint64_t owner)
{
    std::string items = itemTags(d.itemsOf(record));
    if (!record.source) {
        TagWriter w(m_newObjects, f);
        w.tag(0, "XRECORD");
        w.handle(5, record.handle);
        w.handle(330, owner);
        w.tag(100, "AcDbXrecord");
        if (d.version >= "AC1015")
            w.integer(280, 1);
        m_newObjects += items;
        return;
    }
    const auto head = headOf(*record.source);
    std::size_t first = head.back().end, last = first;
    bool inside = false;
    for (std::size_t i = 0; i < head.size(); ++i) {
        const Tag &tag = head[i].tag;
        if (inside && tag.code >= 1000) {
            last = head[i].start;
            break;
        }
        if (!inside && tag.code == 100 && tag.name() == "AcDbXrecord") {
            inside = true;
            const bool hasFlag = i + 1 < head.size() && head[i + 1].tag.code == 280;
            first = hasFlag ? head[i + 1].end : head[i].end;
        }
    }
    if (!inside) {
        // A record that never said what it is would not be read again.
        std::string marker;
        TagWriter(marker, f).tag(100, "AcDbXrecord");
        items.insert(0, marker);
    }
    replace(first, std::max(first, last) - first, items);
}

void DxfWriter::writeRoot()
{
    std::vector<std::pair<std::string, std::uint64_t>> added;
    for (const auto &[name, dictionary] : d.dictionaries)
        if (!dictionary.source && dictionary.handle != 0)
            added.emplace_back(name, dictionary.handle);
    if (added.empty())
        return;
    if (!f.rootDictionary) {
        // The root comes first of all objects.
        std::string others = std::move(m_newObjects);
        m_newObjects.clear();
        writeNewDictionary(f.rootHandle, 0, added, false);
        m_newObjects += others;
        return;
    }
    const auto head = headOf(*f.rootDictionary);
    int code = 350;
    std::size_t behind = head.back().end;
    for (std::size_t i = 0; i + 1 < head.size(); ++i) {
        if (head[i].tag.code >= 1000) {
            behind = head[i].start;
            break;
        }
        if (head[i].tag.code == 3 && (head[i + 1].tag.code == 350 || head[i + 1].tag.code == 360))
            code = head[i + 1].tag.code;
    }
    std::string text;
    TagWriter w(text, f);
    for (const auto &[name, handle] : added) {
        w.text(3, fromUtf8(name));
        w.handle(code, handle);
    }
    insert(behind, text);
}

// --- R12
// -----------------------------------------------------------------------------------------------------------------------

/// The tags of a record's items, each as text of its own.
std::vector<std::string> DxfWriter::extendedTags(const DataItems &items) const
{
    std::vector<std::string> tags;
    const auto add = [&](auto write) {
        std::string text;
        TagWriter w(text, f);
        write(w);
        tags.push_back(std::move(text));
    };
    for (const DataItem &item : items) {
        add([&](TagWriter &w) { w.integer(1070, item.code); });
        if (const auto *real = std::get_if<double>(&item.value)) {
            add([&](TagWriter &w) { w.real(1040, *real); });
        } else if (const auto *whole = std::get_if<std::int64_t>(&item.value)) {
            if (*whole >= INT32_MIN && *whole <= INT32_MAX)
                add([&](TagWriter &w) { w.integer(1071, *whole); });
            else
                add([&](TagWriter &w) { w.integer(1000, *whole); });
        } else {
            for (const std::string &piece : piecesOf(f.codec, std::get<std::wstring>(item.value)))
                add([&](TagWriter &w) { w.tag(1000, piece); });
        }
    }
    return tags;
}

/// What stands at the object itself: its records as far as they fit, small ones first.
std::string DxfWriter::extendedDataOf(const AcDbObject &object)
{
    const auto data = d.attached.find(&object);
    if (data == d.attached.end() || !data->second.hasRecords())
        return {};
    const bool inPlaceOnly = ObjectAccess::has(object, kIsEntity);
    std::string text;
    TagWriter w(text, f);
    for (auto &[key, record] : data->second.records) {
        if (!record.isPresent())
            continue;
        const auto tags = extendedTags(d.itemsOf(record));
        if (!inPlaceOnly || text.size() + sizeOf(tags) > kMostInPlace) {
            m_overflow[{ObjectAccess::host(object).handle, key}] = true;
            continue;
        }
        if (text.empty())
            w.tag(1001, kApplication);
        w.tag(1002, "{");
        w.text(1000, fromUtf8(key));
        for (const std::string &tag : tags)
            text += tag;
        w.tag(1002, "}");
    }
    m_usesApplication = m_usesApplication || !text.empty();
    return text;
}

void DxfWriter::patchExtendedData(AcDbObject &object, const PlacedTags &head)
{
    bool isOurs = false;
    for (const PlacedTag &tag : head) {
        if (tag.tag.code == 1001)
            isOurs = tag.tag.name() == kApplication;
        if (isOurs && tag.tag.code >= 1000)
            replace(tag.start, tag.end - tag.start, "");
    }
    insert(head.back().end, extendedDataOf(object));
}

void DxfWriter::writeDataBlock()
{
    bool changed = false;
    for (const auto &[object, dictionary] : d.attached)
        changed = changed || dictionary.changed || (object->isErased() && f.dataBlockLength != 0);
    for (const auto &[name, dictionary] : d.dictionaries)
        changed = changed || dictionary.changed;
    if (!changed)
        return;

    std::string points;
    const auto carry = [&](const std::string &target, const std::string &key, DataRecord &record) {
        const auto tags = extendedTags(d.itemsOf(record));
        std::size_t next = 0;
        for (int part = 0; next < tags.size(); ++part) {
            TagWriter w(points, f);
            w.tag(0, "POINT");
            if (f.hasHandles)
                w.handle(5, m_nextHandle++);
            w.tag(8, "0");
            w.point(10, 0.0, 0.0, 0.0);
            w.tag(1001, kApplication);
            w.text(1000, fromUtf8(target));
            w.integer(1071, part);
            w.tag(1002, "{");
            w.text(1000, fromUtf8(key));
            for (std::size_t size = 0; next < tags.size() && size + tags[next].size() <= kMostInCarrier; ++next) {
                points += tags[next];
                size += tags[next].size();
            }
            w.tag(1002, "}");
        }
    };
    for (const auto &[object, dictionary] : dataOwners()) {
        const std::uint64_t handle = ObjectAccess::host(*object).handle;
        if (dictionary->changed)
            extendedDataOf(*object); // finds out which records have no room there
        for (auto &[key, record] : dictionary->records) {
            const bool isHere = dictionary->changed ? m_overflow.contains({handle, key}) : record.inDataBlock;
            if (isHere && record.isPresent())
                carry(formatHandle(handle), key, record);
        }
    }
    for (auto &[name, dictionary] : d.dictionaries)
        for (auto &[key, record] : dictionary.records)
            if (record.isPresent())
                carry('#' + name, key, record);

    std::string block;
    if (!points.empty()) {
        m_usesApplication = true;
        TagWriter w(block, f);
        const auto head = [&](const char *type) {
            w.tag(0, type);
            if (f.hasHandles)
                w.handle(5, m_nextHandle++);
            w.tag(8, "0");
        };
        head("BLOCK");
        w.tag(2, kDataBlock);
        w.integer(70, 0);
        w.point(10, 0.0, 0.0, 0.0);
        w.tag(3, kDataBlock);
        block += points;
        head("ENDBLK");
    }
    if (f.dataBlockLength != 0)
        replace(f.dataBlockOffset, f.dataBlockLength, std::move(block));
    else
        m_newBlocks += block;
}

} // namespace velmor::dxf
