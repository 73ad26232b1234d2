#include "host/drawing/dxf/EntityWriter.h"

#include "host/drawing/HatchPattern.h"
#include "host/drawing/dxf/DataTags.h"
#include "host/drawing/dxf/KeptTags.h"
#include "host/drawing/dxf/MovedTags.h"
#include "host/drawing/dxf/TextFormat.h"

#include <algorithm>
#include <numbers>

namespace velmor::dxf {

namespace {

constexpr double kDegrees = 180.0 / std::numbers::pi;

} // namespace

void EntityWriter::writeExtension(TagWriter &w, std::uint64_t dictionary)
{
    w.tag(102, "{ACAD_XDICTIONARY");
    w.handle(360, dictionary);
    w.tag(102, "}");
}

/// isMain: this object carries the entity's own handle and data; else it is a part with a handle of its own.
void EntityWriter::begin(TagWriter &w, const char *type, AcDbEntity &entity, bool isMain)
{
    const auto &host = ObjectAccess::host(entity);
    w.tag(0, type);
    const std::uint64_t handle = isMain ? host.handle : f.hasHandles ? m_nextHandle++ : 0;
    if (handle != 0)
        w.handle(5, handle);
    if (!m_isR12) {
        const auto data = isMain ? d.attached.find(&entity) : d.attached.end();
        if (data != d.attached.end() && data->second.source)
            writeExtension(w, ObjectAccess::host(*data->second.source).handle);
        else if (data != d.attached.end() && data->second.handle != 0)
            writeExtension(w, data->second.handle);
        // Parts are owned by what they are parts of.
        const std::uint64_t owner = isMain ? (host.owner ? ObjectAccess::host(*host.owner).handle : 0) : host.handle;
        if (owner != 0 && d.version >= "AC1015")
            w.handle(330, owner);
        w.tag(100, "AcDbEntity");
    }
    if (host.flags & kPaperSpace)
        w.integer(67, 1);
    w.text(8, d.layers[layerIndexOf(entity)].name);
    if (host.color != 256 && isMain)
        w.integer(62, host.color);
    if ((host.flags & kInvisible) && isMain)
        w.integer(60, 1);
}

/// The carried tags for the entity as it is now; nothing when it has changed in another way than by a move.
std::optional<std::string> EntityWriter::carriedTags(const AcDbEntity &entity, std::span<const Tag> tags) const
{
    std::optional<NewValues> values = NewValues();
    if (ObjectAccess::has(entity, kPatchGeometry) && !(values = movedTags(entity, tags, f.codec)))
        return std::nullopt;
    std::string text;
    TagWriter w(text, f);
    auto value = values->begin();
    for (std::size_t i = 0; i < tags.size(); ++i) {
        const Tag &tag = tags[i];
        const bool isTrueColor = tag.code == 420 || tag.code == 430;
        const auto renamed = tag.code == 1003 ? m_layersOfFile.newNameOf(tag.text()) : std::optional<std::string>();
        if (value != values->end() && value->first == i)
            w.tag(tag.code, (value++)->second);
        else if (renamed)
            w.tag(tag.code, *renamed);
        else if (!isTrueColor || !ObjectAccess::has(entity, kPatchColor)) // it would win over the index
            w.tag(tag.code, tag.text());
    }
    return text;
}

void EntityWriter::write(std::string &out, AcDbEntity &entity, std::string &blocks)
{
    const auto carried = d.carried.find(&entity);
    if (carried == d.carried.end())
        return writeFromShape(out, entity, blocks);
    std::vector<Tag> tags;
    TagCursor cursor(carried->second.data(), carried->second.data() + carried->second.size());
    Tag tag;
    const char *start = nullptr;
    while (cursor.next(tag, start))
        tags.push_back(tag);
    if (const auto text = hasParts(kindOf(entity)) ? std::nullopt : carriedTags(entity, tags)) {
        TagWriter w(out, f);
        begin(w, typeNameOf(entity).c_str(), entity);
        out += *text;
        finish(w, entity);
        return;
    }
    std::string text;
    writeFromShape(text, entity, blocks);
    out += withKeptTags(entity, text, tags, f, m_layersOfFile);
}

void EntityWriter::writeFromShape(std::string &out, AcDbEntity &entity, std::string &blocks)
{
    TagWriter w(out, f);
    switch (kindOf(entity)) {
    case EntityKind::Line: {
        const auto &line = static_cast<AcDbLine &>(entity);
        begin(w, "LINE", entity);
        subclass(w, "AcDbLine");
        w.point(10, line.startPoint());
        w.point(11, line.endPoint());
        finish(w, entity);
        break;
    }
    case EntityKind::Point:
        begin(w, "POINT", entity);
        subclass(w, "AcDbPoint");
        w.point(10, static_cast<PointEntity &>(entity).position());
        finish(w, entity);
        break;
    case EntityKind::Circle: {
        const auto &circle = static_cast<CircleEntity &>(entity);
        begin(w, "CIRCLE", entity);
        subclass(w, "AcDbCircle");
        w.point(10, circle.center());
        w.real(40, circle.radius());
        finish(w, entity);
        break;
    }
    case EntityKind::Arc: {
        const auto &arc = static_cast<AcDbArc &>(entity);
        begin(w, "ARC", entity);
        subclass(w, "AcDbCircle");
        w.point(10, arc.center());
        w.real(40, arc.radius());
        subclass(w, "AcDbArc");
        w.real(50, arc.startAngle() * kDegrees);
        w.real(51, arc.endAngle() * kDegrees);
        finish(w, entity);
        break;
    }
    case EntityKind::Ellipse:
        writeEllipse(w, static_cast<EllipseEntity &>(entity));
        break;
    case EntityKind::Spline:
        writeSpline(w, static_cast<SplineEntity &>(entity));
        break;
    case EntityKind::LwPolyline:
        writeLwPolyline(w, static_cast<AcDbPolyline &>(entity));
        break;
    case EntityKind::Polyline2d: {
        const auto &polyline = static_cast<AcDb2dPolyline &>(entity);
        writePolyline(w, entity, polyline.vertices(), {}, polyline.isClosed(), polyline.elevation());
        break;
    }
    case EntityKind::Polyline3d: {
        const auto &polyline = static_cast<AcDb3dPolyline &>(entity);
        writePolyline(w, entity, {}, polyline.vertices(), polyline.isClosed(), 0.0);
        break;
    }
    case EntityKind::Text:
    case EntityKind::AttributeDefinition:
        writeText(w, static_cast<TextEntity &>(entity));
        break;
    case EntityKind::MText:
        writeParagraphs(w, static_cast<MTextEntity &>(entity));
        break;
    case EntityKind::Attribute:
        writeAttribute(out, static_cast<AttributeEntity &>(entity));
        break;
    case EntityKind::BlockReference:
        writeReference(w, static_cast<AcDbBlockReference &>(entity));
        break;
    case EntityKind::Hatch:
        if (m_isR12)
            writeHatchAsBlock(w, static_cast<AcDbHatch &>(entity), blocks);
        else
            writeHatch(w, static_cast<AcDbHatch &>(entity));
        break;
    case EntityKind::Unknown:
        break; // only files bring them, and then they have their tags
    }
}

// --- Polylines
// -----------------------------------------------------------------------------------------------------------

void EntityWriter::writeLwPolyline(TagWriter &w, AcDbPolyline &entity)
{
    if (m_isR12) {
        writePolyline(w, entity, entity.vertices(), {}, entity.isClosed(), entity.elevation(), entity.constantWidth());
        return;
    }
    begin(w, "LWPOLYLINE", entity);
    w.tag(100, "AcDbPolyline");
    w.integer(90, static_cast<std::int64_t>(entity.vertices().size()));
    w.integer(70, entity.isClosed() ? 1 : 0);
    w.real(43, entity.constantWidth());
    if (entity.elevation() != 0.0)
        w.real(38, entity.elevation());
    for (const auto &v : entity.vertices()) {
        w.point(10, v.x, v.y);
        if (v.bulge != 0.0)
            w.real(42, v.bulge);
    }
}

void EntityWriter::writePolyline(TagWriter &w, AcDbEntity &entity, std::span<const AcDbPolyline::Vertex> vertices,
                                 std::span<const AcGePoint3d> points, bool closed, double elevation, double width)
{
    const bool is3d = !points.empty() || kindOf(entity) == EntityKind::Polyline3d;
    begin(w, "POLYLINE", entity);
    subclass(w, is3d ? "AcDb3dPolyline" : "AcDb2dPolyline");
    w.integer(66, 1);
    w.point(10, 0.0, 0.0, elevation);
    w.integer(70, (closed ? 1 : 0) | (is3d ? 8 : 0));
    if (width > 0.0) {
        w.real(40, width);
        w.real(41, width);
    }
    finish(w, entity);
    const auto vertex = [&](double x, double y, double z, double bulge) {
        begin(w, "VERTEX", entity, false);
        subclass(w, "AcDbVertex");
        subclass(w, is3d ? "AcDb3dPolylineVertex" : "AcDb2dVertex");
        w.point(10, x, y, z);
        if (bulge != 0.0)
            w.real(42, bulge);
        w.integer(70, is3d ? 32 : 0);
    };
    for (const auto &v : vertices)
        vertex(v.x, v.y, elevation, v.bulge);
    for (const AcGePoint3d &p : points)
        vertex(p.x, p.y, p.z, 0.0);
    begin(w, "SEQEND", entity, false);
}

void EntityWriter::writeFlattened(TagWriter &w, AcDbEntity &entity, const std::vector<AcGePoint3d> &points, bool closed)
{
    std::vector<AcDbPolyline::Vertex> vertices;
    for (const AcGePoint3d &p : points)
        vertices.push_back({p.x, p.y, 0.0});
    if (closed && vertices.size() > 1)
        vertices.pop_back();
    writePolyline(w, entity, vertices, {}, closed, points.empty() ? 0.0 : points.front().z);
}

void EntityWriter::writeEllipse(TagWriter &w, EllipseEntity &entity)
{
    const auto &shape = entity.shape();
    if (m_isR12) {
        constexpr int kSteps = 128;
        std::vector<AcGePoint3d> points;
        for (int i = 0; i <= kSteps; ++i)
            points.push_back(
                entity.pointAt(shape.startParameter + (shape.endParameter - shape.startParameter) * i / kSteps));
        writeFlattened(w, entity, points, entity.isClosed());
        return;
    }
    begin(w, "ELLIPSE", entity);
    w.tag(100, "AcDbEllipse");
    w.point(10, shape.center);
    w.point(11, shape.majorAxis.x, shape.majorAxis.y, shape.majorAxis.z);
    if (shape.ratio < 0.0)
        w.point(210, 0.0, 0.0, -1.0);
    w.real(40, std::abs(shape.ratio));
    w.real(41, shape.startParameter);
    w.real(42, shape.endParameter);
}

void EntityWriter::writeSpline(TagWriter &w, SplineEntity &entity)
{
    const auto &shape = entity.shape();
    if (m_isR12) {
        Extents extents;
        for (const AcGePoint3d &p : shape.controlPoints.empty() ? shape.fitPoints : shape.controlPoints)
            extents.add(p.x, p.y);
        const double size =
            extents.isEmpty() ? 1.0 : std::max(extents.maxX - extents.minX, extents.maxY - extents.minY);
        writeFlattened(w, entity, entity.flatten(size * 1e-4), entity.isClosed());
        return;
    }
    begin(w, "SPLINE", entity);
    w.tag(100, "AcDbSpline");
    w.point(210, 0.0, 0.0, 1.0);
    w.integer(70, (shape.closed ? 1 : 0) | (shape.weights.empty() ? 0 : 4) | 8);
    w.integer(71, shape.degree);
    w.integer(72, static_cast<std::int64_t>(shape.knots.size()));
    w.integer(73, static_cast<std::int64_t>(shape.controlPoints.size()));
    w.integer(74, static_cast<std::int64_t>(shape.fitPoints.size()));
    for (const double knot : shape.knots)
        w.real(40, knot);
    for (std::size_t i = 0; i < shape.controlPoints.size(); ++i) {
        w.point(10, shape.controlPoints[i]);
        if (i < shape.weights.size())
            w.real(41, shape.weights[i]);
    }
    for (const AcGePoint3d &p : shape.fitPoints)
        w.point(11, p);
}

// --- Texts
// -----------------------------------------------------------------------------------------------------------------

void EntityWriter::textBody(TagWriter &w, const TextShape &shape)
{
    w.point(10, shape.position);
    w.real(40, shape.height);
    w.text(1, codedLine(shape.text));
    if (shape.rotation != 0.0)
        w.real(50, shape.rotation * kDegrees);
    if (shape.widthFactor != 1.0)
        w.real(41, shape.widthFactor);
    if (shape.horizontal != 0)
        w.integer(72, shape.horizontal);
    if (shape.horizontal != 0 || shape.vertical != 0)
        w.point(11, shape.position);
}

void EntityWriter::writeText(TagWriter &w, TextEntity &entity)
{
    const TextShape &shape = entity.shape();
    if (kindOf(entity) == EntityKind::Text) {
        begin(w, "TEXT", entity);
        subclass(w, "AcDbText");
        textBody(w, shape);
        subclass(w, "AcDbText");
        if (shape.vertical != 0)
            w.integer(73, shape.vertical);
        finish(w, entity);
        return;
    }
    const auto &definition = static_cast<AttributeDefinitionEntity &>(entity);
    begin(w, "ATTDEF", entity);
    subclass(w, "AcDbText");
    textBody(w, shape);
    subclass(w, "AcDbAttributeDefinition");
    if (d.version >= "AC1024")
        w.integer(280, 0);
    w.text(3, definition.prompt());
    w.text(2, definition.tag());
    w.integer(70, (definition.isInvisible() ? 1 : 0) | (definition.isConstant() ? 2 : 0));
    if (shape.vertical != 0)
        w.integer(74, shape.vertical);
    finish(w, entity);
}

void EntityWriter::writeAttribute(std::string &out, AttributeEntity &attribute)
{
    TagWriter w(out, f);
    begin(w, "ATTRIB", attribute);
    subclass(w, "AcDbText");
    textBody(w, attribute.shape());
    subclass(w, "AcDbAttribute");
    if (d.version >= "AC1024")
        w.integer(280, 0);
    w.text(2, attribute.tag());
    w.integer(70, attribute.isInvisible() ? 1 : 0);
    if (attribute.shape().vertical != 0)
        w.integer(74, attribute.shape().vertical);
    finish(w, attribute);
}

void EntityWriter::writeSequenceEnd(std::string &out, const AcDbEntity &owner)
{
    TagWriter w(out, f);
    begin(w, "SEQEND", const_cast<AcDbEntity &>(owner), false);
}

void EntityWriter::writeParagraphs(TagWriter &w, MTextEntity &entity)
{
    const TextShape &shape = entity.shape();
    if (m_isR12) {
        // Each line is a text of its own; the first is the object.
        std::size_t lines = 1 + static_cast<std::size_t>(std::count(shape.text.begin(), shape.text.end(), L'\n'));
        const double step = shape.height * 5.0 / 3.0;
        const double block = shape.height + step * static_cast<double>(lines - 1);
        double down = shape.vertical == 3   ? shape.height
                      : shape.vertical == 2 ? shape.height - block / 2.0
                                            : shape.height - block;
        std::wstring_view rest = shape.text;
        for (bool isFirst = true; lines > 0; --lines, isFirst = false) {
            TextShape line = shape;
            line.text = rest.substr(0, rest.find(L'\n'));
            rest.remove_prefix(std::min(rest.size(), line.text.size() + 1));
            line.vertical = 0;
            line.position.x += std::sin(shape.rotation) * down;
            line.position.y -= std::cos(shape.rotation) * down;
            down += step;
            begin(w, "TEXT", entity, isFirst);
            textBody(w, line);
            if (isFirst)
                finish(w, entity);
        }
        return;
    }
    begin(w, "MTEXT", entity);
    w.tag(100, "AcDbMText");
    w.point(10, shape.position);
    w.real(40, shape.height);
    w.real(41, 0.0);
    w.integer(71, (3 - std::clamp(shape.vertical, 1, 3)) * 3 + std::clamp(shape.horizontal, 0, 2) + 1);
    w.integer(72, 5);
    const auto pieces = piecesOf(f.codec, codedParagraphs(shape.text));
    for (std::size_t i = 0; i < pieces.size(); ++i)
        w.tag(i + 1 < pieces.size() ? 3 : 1, pieces[i]);
    w.point(11, std::cos(shape.rotation), std::sin(shape.rotation), 0.0);
}

// --- References and hatches
// --------------------------------------------------------------------------------------------------

void EntityWriter::writeReference(TagWriter &w, AcDbBlockReference &entity)
{
    const auto *record = static_cast<const BlockRecord *>(ObjectAccess::object(entity.blockTableRecord()));
    if (!record)
        return;
    const auto attributes = attributesOf(entity);
    const auto &p = entity.placement();
    const bool isArray = p.columns > 1 || p.rows > 1;
    begin(w, "INSERT", entity);
    subclass(w, isArray ? "AcDbMInsertBlock" : "AcDbBlockReference");
    if (!attributes.empty())
        w.integer(66, 1);
    w.text(2, record->name());
    w.point(10, p.position);
    w.real(41, p.scaleX);
    w.real(42, p.scaleY);
    w.real(43, p.scaleZ);
    w.real(50, p.rotation * kDegrees);
    if (isArray) {
        w.integer(70, p.columns);
        w.integer(71, p.rows);
        w.real(44, p.columnSpacing);
        w.real(45, p.rowSpacing);
    }
    finish(w, entity);
    if (attributes.empty())
        return;
    for (AttributeEntity *attribute : attributes)
        writeAttribute(w.out(), *attribute);
    writeSequenceEnd(w.out(), entity);
}

void EntityWriter::writeHatch(TagWriter &w, AcDbHatch &entity)
{
    const auto parts = ObjectAccess::parts(entity);
    const bool solid = foldedName(parts.pattern) == L"SOLID" || parts.pattern.empty();
    begin(w, "HATCH", entity);
    w.tag(100, "AcDbHatch");
    w.point(10, 0.0, 0.0, parts.elevation);
    w.point(210, 0.0, 0.0, 1.0); // the loops stand in world coordinates
    w.text(2, solid ? std::wstring(L"SOLID") : parts.pattern);
    w.integer(70, solid ? 1 : 0);
    w.integer(71, 0); // no boundary objects are named, so it is tied to none
    w.integer(91, static_cast<std::int64_t>(parts.loops.size()));
    for (const AcDbHatch::Loop &loop : parts.loops) {
        const bool bulges =
            std::any_of(loop.vertices.begin(), loop.vertices.end(), [](const auto &v) { return v.bulge != 0.0; });
        w.integer(92, loop.type | 2);
        w.integer(72, bulges ? 1 : 0);
        w.integer(73, 1);
        w.integer(93, static_cast<std::int64_t>(loop.vertices.size()));
        for (const auto &v : loop.vertices) {
            w.point(10, v.x, v.y);
            if (bulges)
                w.real(42, v.bulge);
        }
        w.integer(97, 0);
    }
    w.integer(75, parts.style);
    w.integer(76, parts.patternType);
    if (!solid) {
        w.real(52, parts.angle * kDegrees);
        w.real(41, parts.scale);
        w.integer(77, 0);
        const auto families = entity.families();
        w.integer(78, static_cast<std::int64_t>(families.size()));
        for (const HatchFamily &family : families) {
            w.real(53, family.angle * kDegrees);
            w.real(43, family.baseX);
            w.real(44, family.baseY);
            w.real(45, family.offsetX);
            w.real(46, family.offsetY);
            w.integer(79, static_cast<std::int64_t>(family.dashes.size()));
            for (const double dash : family.dashes)
                w.real(49, dash);
        }
    }
    w.integer(98, 0);
}

void EntityWriter::writeHatchAsBlock(TagWriter &w, AcDbHatch &entity, std::string &blocks)
{
    std::wstring name;
    do
        name = L"*X" + std::to_wstring(m_anonymous++);
    while (d.blockByName.contains(name));
    TagWriter b(blocks, f);
    const auto head = [&](const char *type) {
        b.tag(0, type);
        if (f.hasHandles)
            b.handle(5, m_nextHandle++);
        b.tag(8, "0");
    };
    head("BLOCK");
    b.text(2, name);
    b.integer(70, 1);
    b.point(10, 0.0, 0.0, 0.0);
    b.text(3, name);
    const auto line = [&](double x1, double y1, double x2, double y2) {
        head("LINE");
        b.integer(62, 0);
        b.point(10, x1, y1, 0.0);
        b.point(11, x2, y2, 0.0);
    };
    for (const AcDbHatch::Line &l : entity.lines())
        line(l.x1, l.y1, l.x2, l.y2);
    head("ENDBLK");

    begin(w, "INSERT", entity);
    w.text(2, name);
    w.point(10, 0.0, 0.0, 0.0);
    finish(w, entity);
}

} // namespace velmor::dxf
