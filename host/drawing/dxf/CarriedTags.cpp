#include "host/drawing/dxf/CarriedTags.h"

#include "host/drawing/DrawingData.h"
#include "host/drawing/dxf/DataTags.h"
#include "host/drawing/dxf/KeptTags.h"
#include "host/drawing/dxf/TagWriter.h"
#include "host/drawing/dxf/Tags.h"

#include <algorithm>

namespace velmor::dxf {

namespace {

/// Kinds whose tags stand for themselves.
bool standsAlone(const AcDbEntity &entity)
{
    switch (kindOf(entity)) {
    case EntityKind::Line:
    case EntityKind::Arc:
    case EntityKind::Circle:
    case EntityKind::Ellipse:
    case EntityKind::Spline:
    case EntityKind::Point:
    case EntityKind::LwPolyline:
    case EntityKind::Text:
    case EntityKind::MText:
    case EntityKind::AttributeDefinition:
    case EntityKind::Hatch:
        return true;
    case EntityKind::Unknown: {
        const std::string type = typeNameOf(entity);
        return type == "SOLID" || type == "TRACE" || type == "3DFACE" || type == "RAY" || type == "XLINE";
    }
    default:
        return false;
    }
}

/// The version from which on a kind's tags read the same in all later ones.
std::string_view settledIn(const AcDbEntity &entity)
{
    switch (kindOf(entity)) {
    case EntityKind::AttributeDefinition:
        return "AC1024";
    case EntityKind::MText:
        return "AC1021";
    case EntityKind::Hatch:
        return "AC1018";
    default:
        return "AC1015";
    }
}

std::vector<Tag> tagsAt(const FileText &file, const AcDbObject &object)
{
    const auto &host = ObjectAccess::host(object);
    const char *first = file.text.data() + host.sourceOffset;
    TagCursor cursor(first, first + host.sourceLength);
    std::vector<Tag> tags;
    Tag tag;
    const char *start = nullptr;
    while (cursor.next(tag, start) && (tag.code != 0 || tags.empty()))
        tags.push_back(tag);
    return tags;
}

/// Names in a table ("STYLE"), folded.
std::set<std::wstring> namesIn(const FileText &file, std::string_view table)
{
    std::set<std::wstring> names;
    for (const RawObject *object : file.rawObjects)
        if (object->typeName() == table)
            for (const Tag &tag : tagsAt(file, *object))
                if (tag.code == 2)
                    names.insert(foldedName(file.codec.decode(tag.name())));
    return names;
}

const FileText &fileOf(const Drawing &drawing)
{
    return const_cast<Drawing &>(drawing).priv().file;
}

bool isOwnOrPointer(int code)
{
    return code == 5 || code == 8 || code == 62 || code == 67 || code == 105 || (code >= 320 && code <= 369) ||
           (code >= 390 && code <= 399) || code == 410 || code == 480 || code == 481;
}

} // namespace

TagCarrier::TagCarrier(const Drawing &source, const Drawing &target) : m_source(source), m_target(target)
{
    if (isWithin())
        return; // all names of the source are there
    m_styles = namesIn(fileOf(target), "STYLE");
    m_lineTypes = namesIn(fileOf(target), "LTYPE");
}

std::optional<std::string> TagCarrier::carry(const AcDbEntity &entity) const
{
    const FileText &from = fileOf(m_source), &to = fileOf(m_target);
    const bool isCarried = standsAlone(entity) || (isWithin() && hasParts(kindOf(entity)));
    if (ObjectAccess::host(entity).sourceLength == 0 || !isCarried || m_source.isR12() != m_target.isR12())
        return std::nullopt;
    if (m_target.version() < m_source.version() && m_target.version() < settledIn(entity))
        return std::nullopt;
    const std::vector<Tag> tags = tagsAt(from, entity);
    const bool isHatch = kindOf(entity) == EntityKind::Hatch;
    std::string body;
    TagWriter writer(body, to);
    bool inGroup = false, inEmbedded = false, isForeign = false;
    for (std::size_t i = 1; i < tags.size(); ++i) {
        const Tag &tag = tags[i];
        // Extended data and embedded objects come last. Those data are the drawing's in which they stand; ours are
        // copied by whoever copies.
        inEmbedded = inEmbedded || tag.code == 101;
        if (tag.code == 1001)
            isForeign = isWithin() && tag.name() != kApplication;
        if (tag.code >= 1000 && isForeign)
            writer.tag(tag.code, tag.text());
        if (tag.code >= 1000 || inEmbedded)
            continue;
        if (tag.code == 102) {
            inGroup = tag.name().starts_with("{");
            continue;
        }
        const bool tooNew = m_target.version() < "AC1018" && tag.code >= 420 && tag.code < 460;
        if (inGroup || tooNew || isOwnOrPointer(tag.code) || (tag.code == 100 && tag.name() == "AcDbEntity"))
            continue;
        if (!isWithin() && ((tag.code == 7 && !m_styles.contains(foldedName(from.codec.decode(tag.name())))) ||
                            (tag.code == 6 && !m_lineTypes.contains(foldedName(from.codec.decode(tag.name()))))))
            continue;
        // A hatch no longer follows the curves that it was made from.
        const bool countsCurves = tag.code == 97 && i + 1 < tags.size() && tags[i + 1].code == 330;
        if (isHatch && (countsCurves || tag.code == 71))
            writer.integer(tag.code, 0);
        else if (valueKindOf(tag.code) == ValueKind::Text)
            writer.text(tag.code, from.codec.decode(tag.text()));
        else
            writer.tag(tag.code, tag.text());
    }
    return body;
}

} // namespace velmor::dxf
