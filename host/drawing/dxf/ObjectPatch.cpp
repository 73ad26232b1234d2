// Objects of the file that changed: their tags are edited where they no longer hold, and all others stay.
#include "host/drawing/dxf/DataTags.h"
#include "host/drawing/dxf/DxfWriter.h"
#include "host/drawing/dxf/KeptTags.h"
#include "host/drawing/dxf/MovedTags.h"
#include "host/drawing/dxf/TextFormat.h"

#include <algorithm>

namespace velmor::dxf {

namespace {

/// What follows no longer describes the object itself: an object inside of it, or extended data.
bool endsOwnTags(const Tag &tag)
{
    return tag.code == 101 || tag.code >= 1000;
}

/// Index of the first tag of that code outside of groups in braces and among the object's own; the number of tags when
/// there is none.
template <class Tags>
std::size_t findTag(const Tags &tags, int code)
{
    bool inGroup = false;
    for (std::size_t i = 1; i < tags.size(); ++i) {
        const Tag &tag = tags[i].tag;
        if (endsOwnTags(tag))
            break;
        if (tag.code == 102)
            inGroup = tag.name().starts_with('{');
        else if (!inGroup && tag.code == code)
            return i;
    }
    return tags.size();
}

/// Length of the first object of a text.
std::size_t firstObjectOf(const std::string &text)
{
    TagCursor cursor(text.data(), text.data() + text.size());
    Tag tag;
    const char *start = nullptr;
    for (bool isFirst = true; cursor.next(tag, start); isFirst = false)
        if (tag.code == 0 && !isFirst)
            return static_cast<std::size_t>(start - text.data());
    return text.size();
}

} // namespace

void DxfWriter::patchTouched()
{
    // In the order of the file, so that the text does not depend on the order of changes.
    std::vector<AcDbObject *> touched;
    for (AcDbObject *object : d.touched)
        if (ObjectAccess::host(*object).sourceLength != 0)
            touched.push_back(object);
    std::sort(touched.begin(), touched.end(), [](const AcDbObject *a, const AcDbObject *b) {
        return ObjectAccess::host(*a).sourceOffset < ObjectAccess::host(*b).sourceOffset;
    });
    for (AcDbObject *object : touched)
        patchObject(*object);
}

void DxfWriter::patchObject(AcDbObject &object)
{
    const auto &host = ObjectAccess::host(object);
    if (object.isErased()) {
        // An attribute goes with its reference, and a block that has no record of its own is taken out whole.
        const bool isBlockHead = object.isKindOf(AcDbBlockTableRecord::desc()) &&
                                 !f.blocks[static_cast<const BlockRecord *>(&object)].hasRecord;
        if (!(host.flags & kErasedWithOwner) && !isBlockHead)
            removeErased(object);
        return;
    }
    if (host.owner && host.owner->isErased())
        return;
    const PlacedTags head = headOf(object);
    if (head.empty())
        return;
    if (host.handle != 0 && !(host.flags & kHandleInText)) {
        std::string text;
        TagWriter(text, f).handle(5, host.handle);
        insert(head.front().end, text);
    }
    if (host.flags & kPatchData) {
        if (m_isR12)
            patchExtendedData(object, head);
        else
            patchExtension(object, head);
    }
    if (!(host.flags & kIsEntity))
        return;
    auto &entity = static_cast<AcDbEntity &>(object);
    if (host.flags & kPatchLayer)
        patchLayer(entity, head);
    if (host.flags & kPatchColor)
        patchColor(entity, head);
    if (host.flags & kPatchText)
        patchText(static_cast<AttributeEntity &>(entity), head);
    if (host.flags & kPatchGeometry)
        patchGeometry(entity, head);
    if (host.flags & kPatchAttributes)
        patchAttributes(static_cast<AcDbBlockReference &>(entity), head);
}

void DxfWriter::patchLayer(AcDbEntity &entity, const PlacedTags &head)
{
    const std::string name = layerName(entity);
    const std::size_t at = findTag(head, 8);
    if (at == head.size()) {
        std::string text;
        TagWriter(text, f).tag(8, name);
        insert(head.front().end, text);
        return;
    }
    replaceValue(head[at], name);
    const EntityKind kind = kindOf(entity);
    if (kind != EntityKind::Polyline2d && kind != EntityKind::Polyline3d)
        return;
    // The vertices of a polyline lie on its layer.
    const auto &host = ObjectAccess::host(entity);
    for (const PlacedTag &tag : placedTags(head.back().end, host.sourceOffset + host.sourceLength))
        if (tag.tag.code == 8 && tag.tag.text() == head[at].tag.text())
            replaceValue(tag, name);
}

void DxfWriter::patchColor(AcDbEntity &entity, const PlacedTags &head)
{
    const int color = entity.colorIndex();
    for (const int code : {420, 430}) // a true colour would win over the index
        if (const std::size_t at = findTag(head, code); at != head.size())
            replace(head[at].start, head[at].end - head[at].start, "");
    std::string text;
    if (color != 256)
        TagWriter(text, f).integer(62, color);
    if (const std::size_t at = findTag(head, 62); at != head.size()) {
        replace(head[at].start, head[at].end - head[at].start, text);
        return;
    }
    const std::size_t layer = findTag(head, 8);
    insert(layer != head.size() ? head[layer].end : head.front().end, text);
}

void DxfWriter::patchText(AttributeEntity &attribute, const PlacedTags &head)
{
    const std::wstring &text = attribute.shape().text;
    bool inEmbedded = false, isDone = false;
    for (const PlacedTag &tag : head) {
        // An attribute of several lines says its text again as paragraphs, behind the mark of an object inside.
        if (tag.tag.code == 101) {
            inEmbedded = true;
            isDone = false;
        }
        if (tag.tag.code != 1 || isDone)
            continue;
        replaceValue(tag, f.codec.encode(inEmbedded ? codedParagraphs(text) : codedLine(text)));
        isDone = true;
    }
    if (std::none_of(head.begin(), head.end(), [](const PlacedTag &t) { return t.tag.code == 1; })) {
        std::string line;
        TagWriter(line, f).text(1, codedLine(text));
        const std::size_t height = findTag(head, 40);
        insert(height != head.size() ? head[height].end : head.front().end, line);
    }
}

void DxfWriter::patchGeometry(AcDbEntity &entity, const PlacedTags &head)
{
    if (kindOf(entity) == EntityKind::Line) {
        const auto &line = static_cast<AcDbLine &>(entity);
        const AcGePoint3d &a = line.startPoint(), &b = line.endPoint();
        const std::pair<int, double> values[] = {{10, a.x}, {20, a.y}, {30, a.z}, {11, b.x}, {21, b.y}, {31, b.z}};
        std::size_t behind = 0;
        for (const auto &[code, value] : values) {
            const std::size_t at = findTag(head, code);
            if (at != head.size()) {
                double known = 0.0;
                if (!head[at].tag.real(known) || known != value) // a move back leaves the text as it was
                    replaceValue(head[at], formatReal(value));
                behind = at;
            } else if (value != 0.0) {
                std::string text;
                TagWriter(text, f).real(code, value);
                insert(head[behind].end, text);
            }
        }
        return;
    }
    const EntityKind kind = kindOf(entity);
    const bool isSequence = kind == EntityKind::Polyline2d || kind == EntityKind::Polyline3d;
    const auto &place = ObjectAccess::host(entity);
    const PlacedTags whole =
        isSequence ? placedTags(place.sourceOffset, place.sourceOffset + place.sourceLength) : PlacedTags();
    const PlacedTags &all = isSequence ? whole : head;
    std::vector<Tag> tags;
    for (std::size_t i = 1; i < all.size(); ++i)
        tags.push_back(all[i].tag);
    if (const auto values = movedTags(entity, tags, f.codec)) {
        for (const auto &[index, value] : *values)
            replaceValue(all[index + 1], value);
        return;
    }
    // What changed in another way is written anew, with what its tags say beside the shape.
    std::string text;
    if (kind == EntityKind::Attribute)
        m_entities.writeAttribute(text, static_cast<AttributeEntity &>(entity));
    else
        m_entities.write(text, entity, m_anonymousBlocks);
    if (isSequence)
        tags.resize(head.size() - 1);
    text = withKeptTags(entity, text, tags, f, m_layersOfFile);
    std::size_t length = place.sourceLength;
    if (kind == EntityKind::BlockReference) {
        // Its attributes are objects with tags of their own, which stay where they are.
        text.resize(firstObjectOf(text));
        length = head.back().end - place.sourceOffset;
    }
    m_edits.push_back({place.sourceOffset, length, std::move(text)});
}

void DxfWriter::patchAttributes(AcDbBlockReference &reference, const PlacedTags &head)
{
    std::string text;
    for (AttributeEntity *attribute : attributesOf(reference))
        if (ObjectAccess::host(*attribute).sourceLength == 0)
            m_entities.writeAttribute(text, *attribute);
    if (text.empty())
        return;
    const auto &host = ObjectAccess::host(reference);
    const std::size_t end = host.sourceOffset + host.sourceLength;
    const std::size_t follows = findTag(head, 66);
    if (follows == head.size()) {
        std::string flag;
        TagWriter(flag, f).integer(66, 1);
        const std::size_t name = findTag(head, 2);
        insert(head[name].start, flag);
    } else {
        replaceValue(head[follows], "1");
    }
    for (const PlacedTag &tag : placedTags(head.back().end, end))
        if (tag.tag.code == 0 && tag.tag.name() == "SEQEND") {
            insert(tag.start, text);
            return;
        }
    m_entities.writeSequenceEnd(text, reference);
    insert(end, text);
}

/// Names the extension dictionary in an object's tags when it got one.
void DxfWriter::patchExtension(AcDbObject &object, const PlacedTags &head)
{
    const auto data = d.attached.find(&object);
    if (data == d.attached.end() || data->second.handle == 0)
        return;
    for (std::size_t i = 0; i + 1 < head.size() && !endsOwnTags(head[i].tag); ++i)
        if (head[i].tag.code == 102 && head[i].tag.name() == "{ACAD_XDICTIONARY" && head[i + 1].tag.code == 360) {
            // It named one that is not there.
            replaceValue(head[i + 1], formatHandle(data->second.handle));
            return;
        }
    std::string text;
    TagWriter w(text, f);
    EntityWriter::writeExtension(w, data->second.handle);
    const std::size_t handle = findTag(head, head.front().tag.name() == "DIMSTYLE" ? 105 : 5);
    insert(handle != head.size() ? head[handle].end : head.front().end, text);
}

void DxfWriter::removeErased(const AcDbObject &object)
{
    const auto &host = ObjectAccess::host(object);
    replace(host.sourceOffset, host.sourceLength, "");
    const auto remove = [this](const AcDbObject &owner) {
        if (const auto data = d.attached.find(&owner); data != d.attached.end() && data->second.source)
            removeDictionary(*data->second.source, 0);
    };
    remove(object);
    if (object.isKindOf(AcDbBlockReference::desc()))
        for (const AcDbObjectId id : ObjectAccess::attributes(static_cast<const AcDbBlockReference &>(object)))
            remove(*ObjectAccess::object(id));
}

void DxfWriter::removeDictionary(RawObject &dictionary, int depth)
{
    const auto &host = ObjectAccess::host(dictionary);
    replace(host.sourceOffset, host.sourceLength, "");
    if (depth > 8)
        return;
    for (const DictionaryEntry &entry : readDictionary(f, dictionary)) {
        auto *member = dynamic_cast<RawObject *>(d.find(entry.handle));
        if (!member)
            continue;
        // Only what says that it is owned by the dictionary.
        const auto &place = ObjectAccess::host(*member);
        bool isOwned = false, inGroup = false;
        for (const Tag &tag : tagsOf(f, place.sourceOffset, place.sourceLength)) {
            if (tag.code == 102)
                inGroup = tag.name().starts_with('{');
            if (tag.code == 330 && !inGroup) {
                isOwned = parseHandle(tag.text()) == host.handle;
                break;
            }
        }
        if (!isOwned)
            continue;
        if (member->typeName() == "DICTIONARY")
            removeDictionary(*member, depth + 1);
        else
            replace(place.sourceOffset, place.sourceLength, "");
    }
}

} // namespace velmor::dxf
