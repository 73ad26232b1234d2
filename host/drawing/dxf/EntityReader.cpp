#include "host/drawing/dxf/EntityReader.h"

#include "host/drawing/Texts.h"
#include "host/drawing/dxf/TextFormat.h"

#include <algorithm>
#include <array>
#include <numbers>

namespace velmor::dxf {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kRadians = kPi / 180.0;

enum class Facing { Up, Down, Tilted };

/// Entities in a plane look up (their own x and y are the world's), down (x runs the other way) or somewhere else.
Facing facingOf(const CommonTags &common)
{
    const auto &[x, y, z] = common.extrusion;
    constexpr double kTolerance = 1e-6;
    if (std::abs(x) > kTolerance * std::abs(z) || std::abs(y) > kTolerance * std::abs(z) || z == 0.0)
        return Facing::Tilted;
    return z > 0.0 ? Facing::Up : Facing::Down;
}

std::string quoted(const Tag &tag)
{
    std::string text(tag.name().substr(0, 40));
    for (char &c : text)
        if (static_cast<unsigned char>(c) < 32)
            c = '?';
    return '"' + text + '"';
}

EntityReader::Result notANumber(const Tag &tag)
{
    return {nullptr, drawingText("dxf.notANumber", {std::to_string(tag.code), quoted(tag)}), &tag};
}

/// Values by group code, for kinds in which a code stands once.
struct Fields {
    std::array<double, 60> real;
    std::array<const Tag *, 10> text{};
    std::array<const Tag *, 20> whole{};
    std::uint64_t present = 0;
    const Tag *bad = nullptr;

    explicit Fields(std::span<const Tag> tags)
    {
        for (const Tag &tag : tags) {
            if (tag.code >= 10 && tag.code < 60) {
                const std::uint64_t bit = std::uint64_t{1} << tag.code;
                // Later ones belong to something else, as in texts that carry a second text for other scales.
                if (present & bit)
                    continue;
                if (!tag.real(real[static_cast<std::size_t>(tag.code)])) {
                    bad = &tag;
                    return;
                }
                present |= bit;
            } else if (tag.code < 10) {
                if (tag.code >= 0 && !text[static_cast<std::size_t>(tag.code)])
                    text[static_cast<std::size_t>(tag.code)] = &tag;
            } else if (tag.code < 80) {
                if (!whole[static_cast<std::size_t>(tag.code - 60)])
                    whole[static_cast<std::size_t>(tag.code - 60)] = &tag;
            }
        }
    }
    bool has(std::initializer_list<int> codes) const
    {
        return std::all_of(codes.begin(), codes.end(), [this](int c) { return (present >> c & 1) != 0; });
    }
    double get(int code, double otherwise = 0.0) const
    {
        return (present >> code & 1) != 0 ? real[static_cast<std::size_t>(code)] : otherwise;
    }
    int integer(int code, int otherwise = 0) const
    {
        const Tag *tag = whole[static_cast<std::size_t>(code - 60)];
        return tag ? tag->integer(otherwise) : otherwise;
    }
    AcGePoint3d point(int code) const { return {get(code), get(code + 10), get(code + 20)}; }
};

/// verticalCode: 73 for texts; 74 for attributes, whose 73 is the length of a field.
TextShape textShape(const Fields &f, bool mirrored, int verticalCode)
{
    TextShape shape;
    const int horizontal = f.integer(72), vertical = f.integer(verticalCode);
    const bool aligned = (horizontal != 0 || vertical != 0) && f.has({11, 21});
    // Texts fitted between two points start at the first.
    const bool fitted = horizontal == 3 || horizontal == 5;
    shape.position = aligned && !fitted ? f.point(11) : f.point(10);
    shape.height = f.get(40, 1.0);
    shape.rotation = f.get(50) * kRadians;
    shape.widthFactor = f.get(41, 1.0);
    shape.horizontal = horizontal == 4 ? 1 : fitted ? 0 : std::clamp(horizontal, 0, 2);
    shape.vertical = horizontal == 4 ? 2 : std::clamp(vertical, 0, 3);
    if (mirrored) {
        shape.position = {-shape.position.x, shape.position.y, -shape.position.z};
        shape.rotation = kPi - shape.rotation;
    }
    return shape;
}

} // namespace

EntityKind kindOfType(std::string_view typeName)
{
    struct Row {
        std::string_view name;
        EntityKind kind;
    };
    static constexpr Row kRows[] = {
        {"LINE", EntityKind::Line},
        {"LWPOLYLINE", EntityKind::LwPolyline},
        {"POLYLINE", EntityKind::Polyline2d},
        {"ARC", EntityKind::Arc},
        {"CIRCLE", EntityKind::Circle},
        {"TEXT", EntityKind::Text},
        {"INSERT", EntityKind::BlockReference},
        {"POINT", EntityKind::Point},
        {"MTEXT", EntityKind::MText},
        {"HATCH", EntityKind::Hatch},
        {"ELLIPSE", EntityKind::Ellipse},
        {"SPLINE", EntityKind::Spline},
        {"ATTRIB", EntityKind::Attribute},
        {"ATTDEF", EntityKind::AttributeDefinition},
    };
    for (const Row &row : kRows)
        if (row.name == typeName)
            return row.kind;
    return EntityKind::Unknown;
}

CommonTags EntityReader::common(std::span<const Tag> tags)
{
    CommonTags c;
    c.geometryEnd = tags.size();
    bool inEmbedded = false, hasColor = false, hasExtension = false;
    for (std::size_t i = 0; i < tags.size(); ++i) {
        const Tag &tag = tags[i];
        // Geometry first: most tags are coordinates.
        if (tag.code >= 10 && tag.code < 60)
            continue;
        if (tag.code >= 1000) {
            c.geometryEnd = std::min(c.geometryEnd, i);
            if (tag.code == 1001 && tag.name() == "VELMOR")
                c.ownData = i + 1;
            continue;
        }
        if (inEmbedded)
            continue;
        switch (tag.code) {
        case 5:
        case 105:
            if (c.handle == 0)
                c.handle = parseHandle(tag.text());
            break;
        case 8:
            if (!c.layer.data())
                c.layer = tag.text();
            break;
        case 60:
            c.invisible = tag.integer() != 0;
            break;
        case 62:
            if (hasColor)
                break;
            hasColor = true;
            c.color = tag.integer(256);
            if (c.color < 0 || c.color > 256)
                c.color = 256;
            break;
        case 66:
            c.followed = tag.integer() != 0;
            break;
        case 67:
            c.paperSpace = tag.integer() != 0;
            break;
        case 101: // what follows describes an object inside of this one
            inEmbedded = true;
            c.geometryEnd = std::min(c.geometryEnd, i);
            break;
        case 102:
            if (!hasExtension && tag.name() == "{ACAD_XDICTIONARY" && i + 1 < tags.size() && tags[i + 1].code == 360) {
                hasExtension = true;
                c.extension = parseHandle(tags[i + 1].text());
            }
            if (tag.name().starts_with('{'))
                while (i + 1 < tags.size() && tags[i + 1].code != 102 && tags[i + 1].code < 1000)
                    ++i;
            break;
        case 330:
            if (c.owner.empty())
                c.owner = tag.name();
            break;
        case 210:
        case 220:
        case 230:
            tag.real(c.extrusion[(tag.code - 210) / 10]);
            break;
        default:
            break;
        }
    }
    return c;
}

std::string_view EntityReader::blockName(std::span<const Tag> tags)
{
    for (const Tag &tag : tags)
        if (tag.code == 2)
            return tag.text();
    return {};
}

EntityReader::Result EntityReader::read(EntityKind kind, std::span<const Tag> tags, const CommonTags &common)
{
    tags = tags.first(common.geometryEnd);
    switch (kind) {
    case EntityKind::LwPolyline:
        return readLwPolyline(tags, common);
    case EntityKind::Spline:
        return readSpline(tags);
    case EntityKind::Hatch:
        return readHatch(tags, common);
    default:
        return readSimple(kind, tags, common);
    }
}

EntityReader::Result EntityReader::readSimple(EntityKind kind, std::span<const Tag> tags, const CommonTags &common)
{
    const Fields f(tags);
    if (f.bad)
        return notANumber(*f.bad);
    const Facing facing = facingOf(common);
    const bool mirrored = facing == Facing::Down;
    const auto missing = [](const char *what) { return Result{nullptr, drawingText(what), nullptr}; };
    // Lines, points, ellipses and paragraphs stand in world coordinates whatever their extrusion says.
    const bool inWorld = kind == EntityKind::Line || kind == EntityKind::Point || kind == EntityKind::Ellipse ||
                         kind == EntityKind::MText;
    if (facing == Facing::Tilted && (!inWorld || kind == EntityKind::Ellipse))
        return {};
    const auto turned = [mirrored](AcGePoint3d p) { return mirrored ? AcGePoint3d{-p.x, p.y, -p.z} : p; };

    switch (kind) {
    case EntityKind::Line:
        if (!f.has({10, 20, 11, 21}))
            return missing("dxf.without.points");
        return {m_arena.make<AcDbLine>(f.point(10), f.point(11)), {}, nullptr};
    case EntityKind::Point:
        if (!f.has({10, 20}))
            return missing("dxf.without.place");
        return {m_arena.make<PointEntity>(f.point(10)), {}, nullptr};
    case EntityKind::Circle:
        if (!f.has({10, 20, 40}))
            return missing("dxf.without.circle");
        return {m_arena.make<CircleEntity>(turned(f.point(10)), f.get(40)), {}, nullptr};
    case EntityKind::Arc: {
        if (!f.has({10, 20, 40, 50, 51}))
            return missing("dxf.without.arc");
        const double start = f.get(50) * kRadians, end = f.get(51) * kRadians;
        return {mirrored ? m_arena.make<AcDbArc>(turned(f.point(10)), f.get(40), kPi - end, kPi - start)
                         : m_arena.make<AcDbArc>(f.point(10), f.get(40), start, end),
                {},
                nullptr};
    }
    case EntityKind::Ellipse: {
        if (!f.has({10, 20, 11, 21, 40}))
            return missing("dxf.without.ellipse");
        EllipseEntity::Shape shape;
        shape.center = f.point(10);
        shape.majorAxis = {f.get(11), f.get(21), f.get(31)};
        shape.ratio = mirrored ? -f.get(40) : f.get(40);
        shape.startParameter = f.get(41, 0.0);
        shape.endParameter = f.get(42, 2.0 * kPi);
        return {m_arena.make<EllipseEntity>(shape), {}, nullptr};
    }
    case EntityKind::Text:
    case EntityKind::Attribute:
    case EntityKind::AttributeDefinition: {
        if (!f.has({10, 20}))
            return missing("dxf.without.place");
        TextShape shape = textShape(f, mirrored, kind == EntityKind::Text ? 73 : 74);
        shape.text = plainLine(decode(f.text[1]));
        if (kind == EntityKind::Text)
            return {m_arena.make<TextEntity>(std::move(shape)), {}, nullptr};
        const bool invisible = (f.integer(70) & 1) != 0;
        if (kind == EntityKind::Attribute)
            return {m_arena.make<AttributeEntity>(decode(f.text[2]), std::move(shape), invisible), {}, nullptr};
        const bool constant = (f.integer(70) & 2) != 0;
        return {m_arena.make<AttributeDefinitionEntity>(decode(f.text[2]), decode(f.text[3]), std::move(shape),
                                                        invisible, constant),
                {},
                nullptr};
    }
    case EntityKind::MText: {
        if (!f.has({10, 20}))
            return missing("dxf.without.place");
        TextShape shape;
        shape.position = f.point(10);
        shape.height = f.get(40, 1.0);
        shape.rotation = f.has({11, 21}) ? std::atan2(f.get(21), f.get(11)) : f.get(50) * kRadians;
        const int attachment = std::clamp(f.integer(71, 1), 1, 9) - 1;
        shape.horizontal = attachment % 3;
        shape.vertical = 3 - attachment / 3;
        std::string bytes;
        for (const Tag &tag : tags)
            if (tag.code == 3 || tag.code == 1)
                bytes += tag.text();
        shape.text = plainParagraphs(m_codec.decode(bytes));
        return {m_arena.make<MTextEntity>(std::move(shape)), {}, nullptr};
    }
    case EntityKind::BlockReference: {
        if (!f.has({10, 20}))
            return missing("dxf.without.place");
        if (!f.text[2])
            return missing("dxf.without.block");
        AcDbBlockReference::Placement p;
        p.position = turned(f.point(10));
        p.scaleX = f.get(41, 1.0);
        p.scaleY = f.get(42, 1.0);
        p.scaleZ = f.get(43, 1.0);
        p.rotation = f.get(50) * kRadians;
        p.columns = std::max(1, f.integer(70, 1));
        p.rows = std::max(1, f.integer(71, 1));
        p.columnSpacing = f.get(44);
        p.rowSpacing = f.get(45);
        if (mirrored) {
            p.scaleX = -p.scaleX;
            p.scaleZ = -p.scaleZ;
            p.rotation = -p.rotation;
            p.columnSpacing = -p.columnSpacing;
        }
        return {m_arena.make<AcDbBlockReference>(AcDbObjectId(), p), {}, nullptr};
    }
    default:
        return {};
    }
}

EntityReader::Result EntityReader::readLwPolyline(std::span<const Tag> tags, const CommonTags &common)
{
    const Facing facing = facingOf(common);
    if (facing == Facing::Tilted)
        return {};
    std::vector<AcDbPolyline::Vertex> vertices;
    double elevation = 0.0, width = 0.0, number = 0.0;
    bool closed = false, hasY = true;
    for (const Tag &tag : tags) {
        switch (tag.code) {
        case 10:
            if (!tag.real(number))
                return notANumber(tag);
            if (!hasY)
                return {nullptr, drawingText("dxf.vertexNoY"), &tag};
            vertices.push_back({number, 0.0, 0.0});
            hasY = false;
            break;
        case 20:
            if (!tag.real(number))
                return notANumber(tag);
            if (hasY)
                return {nullptr, drawingText("dxf.vertexNoX"), &tag};
            vertices.back().y = number;
            hasY = true;
            break;
        case 42:
            if (!tag.real(number))
                return notANumber(tag);
            if (!vertices.empty())
                vertices.back().bulge = number;
            break;
        case 38:
            if (!tag.real(elevation))
                return notANumber(tag);
            break;
        case 43:
            if (!tag.real(width))
                return notANumber(tag);
            break;
        case 70:
            closed = (tag.integer() & 1) != 0;
            break;
        case 90:
            // Only a hint, so that a wrong number does no harm.
            vertices.reserve(
                std::min<std::size_t>(static_cast<std::size_t>(std::max(0, tag.integer())), tags.size() / 2));
            break;
        default:
            break;
        }
    }
    if (!hasY)
        return {nullptr, drawingText("dxf.vertexNoY"), nullptr};
    if (facing == Facing::Down) {
        for (auto &v : vertices) {
            v.x = -v.x;
            v.bulge = -v.bulge;
        }
        elevation = -elevation;
    }
    return {m_arena.make<AcDbPolyline>(std::move(vertices), closed, elevation, std::max(width, 0.0)), {}, nullptr};
}

EntityReader::Result EntityReader::readSpline(std::span<const Tag> tags)
{
    SplineEntity::Shape shape;
    double number = 0.0;
    for (const Tag &tag : tags) {
        if (tag.code >= 10 && tag.code < 60 && !tag.real(number))
            return notANumber(tag);
        switch (tag.code) {
        case 70:
            shape.closed = (tag.integer() & 1) != 0;
            break;
        case 71:
            shape.degree = tag.integer(3);
            break;
        case 40:
            shape.knots.push_back(number);
            break;
        case 41:
            shape.weights.push_back(number);
            break;
        case 10:
            shape.controlPoints.emplace_back(number, 0.0);
            break;
        case 11:
            shape.fitPoints.emplace_back(number, 0.0);
            break;
        case 20:
        case 30:
        case 21:
        case 31: {
            auto &points = tag.code % 10 == 0 ? shape.controlPoints : shape.fitPoints;
            if (points.empty())
                return {nullptr, drawingText("dxf.pointNoX"), &tag};
            (tag.code < 30 ? points.back().y : points.back().z) = number;
            break;
        }
        default:
            break;
        }
    }
    if (shape.controlPoints.empty() && shape.fitPoints.empty())
        return {nullptr, drawingText("dxf.noPoints"), nullptr};
    const bool plain = std::all_of(shape.weights.begin(), shape.weights.end(), [](double w) { return w == 1.0; });
    if (plain)
        shape.weights.clear();
    return {m_arena.make<SplineEntity>(std::move(shape)), {}, nullptr};
}

// --- Polylines of several objects
// --------------------------------------------------------------------------------------

void EntityReader::begin(Polyline &polyline, std::span<const Tag> tags, const CommonTags &common)
{
    const Fields f(tags.first(common.geometryEnd));
    if (f.bad)
        polyline.problem = notANumber(*f.bad).problem;
    polyline.flags = f.integer(70);
    polyline.elevation = f.bad ? 0.0 : f.get(30);
    const Facing facing = facingOf(common);
    polyline.mirrored = facing == Facing::Down && !polyline.is3d();
    if (facing == Facing::Tilted && !polyline.is3d())
        polyline.flags |= 16; // drawn somewhere in space: kept, not understood
}

void EntityReader::addVertex(Polyline &polyline, std::span<const Tag> tags, const CommonTags &common)
{
    if (!polyline.isCurve() || !polyline.problem.empty())
        return;
    double x = 0.0, y = 0.0, z = 0.0, bulge = 0.0;
    int flags = 0, seen = 0;
    for (const Tag &tag : tags.first(common.geometryEnd)) {
        double *target = nullptr;
        switch (tag.code) {
        case 10:
            target = &x;
            seen |= 1;
            break;
        case 20:
            target = &y;
            seen |= 2;
            break;
        case 30:
            target = &z;
            break;
        case 42:
            target = &bulge;
            break;
        case 70:
            flags = tag.integer();
            break;
        default:
            break;
        }
        if (target && !tag.real(*target)) {
            polyline.problem = notANumber(tag).problem;
            return;
        }
    }
    if (flags & 16) // a point of the frame that shapes a curve, not of the curve
        return;
    if (seen != 3) {
        polyline.problem = drawingText("dxf.vertexNoPlace");
        return;
    }
    polyline.vertices.push_back({x, y, bulge});
    if (polyline.is3d())
        polyline.heights.push_back(z);
}

AcDbEntity *EntityReader::finish(Polyline &polyline)
{
    if (!polyline.isCurve() || !polyline.problem.empty())
        return nullptr;
    const bool closed = (polyline.flags & 1) != 0;
    if (polyline.is3d()) {
        std::vector<AcGePoint3d> points;
        points.reserve(polyline.vertices.size());
        for (std::size_t i = 0; i < polyline.vertices.size(); ++i)
            points.emplace_back(polyline.vertices[i].x, polyline.vertices[i].y, polyline.heights[i]);
        return m_arena.make<AcDb3dPolyline>(std::move(points), closed);
    }
    if (polyline.mirrored)
        for (auto &v : polyline.vertices) {
            v.x = -v.x;
            v.bulge = -v.bulge;
        }
    // A copy of the exact size: the vector that collects is used again.
    return m_arena.make<AcDb2dPolyline>(polyline.vertices, closed,
                                        polyline.mirrored ? -polyline.elevation : polyline.elevation);
}

} // namespace velmor::dxf
