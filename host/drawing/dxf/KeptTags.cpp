#include "host/drawing/dxf/KeptTags.h"

#include "host/drawing/dxf/DataTags.h"
#include "host/drawing/dxf/TagWriter.h"

#include <algorithm>

namespace velmor::dxf {

namespace {

constexpr int kGenerationFlag = 128; ///< of polylines: the line type's pattern runs through the vertices
constexpr int kLayerInDataCode = 1003;

bool isText(EntityKind kind)
{
    return kind == EntityKind::Text || kind == EntityKind::Attribute || kind == EntityKind::AttributeDefinition;
}

/// Of any entity, in the part that all have.
bool isCommon(int code)
{
    constexpr int kCodes[] = {6, 48, 284, 347, 348, 370, 380, 390, 410, 420, 430, 440};
    return std::ranges::find(kCodes, code) != std::end(kCodes);
}

/// Of some kinds, in their own part.
bool isKeptOwn(int code, EntityKind kind)
{
    if (code == 39)
        return kind != EntityKind::Hatch && kind != EntityKind::Spline && kind != EntityKind::Ellipse;
    if (code == 7)
        return isText(kind) || kind == EntityKind::MText;
    return (code == 51 || code == 71) && isText(kind);
}

struct Kept {
    std::string common, own, gradient, data;
    bool generates = false;
};

Kept keptOf(const AcDbEntity &entity, std::span<const Tag> former, const FileText &file, const LayersOfFile &layers)
{
    const EntityKind kind = kindOf(entity);
    Kept kept;
    TagWriter common(kept.common, file), own(kept.own, file), gradient(kept.gradient, file), data(kept.data, file);
    enum class In { Own, Reactors, OtherGroup, Embedded, Gradient, OurData, Data } in = In::Own;
    for (const Tag &tag : former) {
        if (tag.code == 1001)
            in = tag.name() == kApplication ? In::OurData : In::Data;
        else if (tag.code == 101)
            in = In::Embedded;
        else if (tag.code == 102 && in != In::Embedded && in != In::Data && in != In::OurData) {
            const bool opens = tag.name().starts_with('{');
            if (in == In::Reactors || tag.name() == "{ACAD_REACTORS")
                common.tag(102, tag.text());
            in = !opens ? In::Own : tag.name() == "{ACAD_REACTORS" ? In::Reactors : In::OtherGroup;
            continue;
        } else if (tag.code == 450 && in == In::Own && kind == EntityKind::Hatch) {
            in = In::Gradient;
        }
        switch (in) {
        case In::Own:
            if ((tag.code == 420 || tag.code == 430) && ObjectAccess::has(entity, kPatchColor))
                break;
            if (isCommon(tag.code))
                common.tag(tag.code, tag.text());
            else if (isKeptOwn(tag.code, kind))
                own.tag(tag.code, tag.text());
            else if (tag.code == 70)
                kept.generates = (tag.integer() & kGenerationFlag) != 0;
            break;
        case In::Reactors:
            common.tag(tag.code, tag.text());
            break;
        case In::Gradient:
            gradient.tag(tag.code, tag.text());
            if (tag.code == 470) // its name comes last
                in = In::Own;
            break;
        case In::Data: {
            const auto renamed =
                tag.code == kLayerInDataCode ? layers.newNameOf(tag.text()) : std::optional<std::string>();
            data.tag(tag.code, renamed ? std::string_view(*renamed) : tag.text());
            break;
        }
        case In::OtherGroup:
        case In::Embedded:
        case In::OurData:
            break;
        }
    }
    return kept;
}

} // namespace

bool hasParts(EntityKind kind)
{
    return kind == EntityKind::Polyline2d || kind == EntityKind::Polyline3d || kind == EntityKind::BlockReference;
}

std::string withKeptTags(const AcDbEntity &entity, const std::string &text, std::span<const Tag> former,
                         const FileText &file, const LayersOfFile &layers)
{
    const Kept kept = keptOf(entity, former, file, layers);
    const EntityKind kind = kindOf(entity);
    const bool isPolyline =
        kind == EntityKind::LwPolyline || kind == EntityKind::Polyline2d || kind == EntityKind::Polyline3d;
    // Places in the text that was made: behind the layer, behind the mark of the kind's own part, at the object's end.
    std::size_t commonAt = std::string::npos, ownAt = std::string::npos, end = text.size();
    bool isSolid = false;
    std::string flags;
    std::size_t flagsAt = 0, flagsLength = 0;
    TagCursor cursor(text.data(), text.data() + text.size());
    Tag tag;
    const char *start = nullptr;
    for (bool isFirst = true; cursor.next(tag, start); isFirst = false) {
        if (tag.code == 0 && !isFirst) {
            end = static_cast<std::size_t>(start - text.data());
            break;
        }
        const auto behind = static_cast<std::size_t>(cursor.position() - text.data());
        if (tag.code == 8 && commonAt == std::string::npos)
            commonAt = behind;
        else if (tag.code == 100 && tag.name() != "AcDbEntity" && ownAt == std::string::npos)
            ownAt = behind;
        else if (tag.code == 2 && tag.name() == "SOLID")
            isSolid = true;
        else if (tag.code == 70 && isPolyline && kept.generates) {
            flags = std::to_string(tag.integer() | kGenerationFlag);
            flagsAt = static_cast<std::size_t>(tag.value - text.data());
            flagsLength = tag.length;
        }
    }
    if (commonAt == std::string::npos)
        return text;
    if (ownAt == std::string::npos) // R12 has no marks
        ownAt = commonAt;
    const std::string_view whole(text);
    std::string result(whole.substr(0, commonAt));
    result += kept.common;
    result += whole.substr(commonAt, ownAt - commonAt);
    result += kept.own;
    if (flagsAt >= ownAt) {
        result += whole.substr(ownAt, flagsAt - ownAt);
        result += flags;
        ownAt = flagsAt + flagsLength;
    }
    result += whole.substr(ownAt, end - ownAt);
    if (isSolid)
        result += kept.gradient;
    result += kept.data;
    result += whole.substr(end);
    return result;
}

} // namespace velmor::dxf
