#include "host/drawing/dxf/MovedTags.h"

#include "host/drawing/Moving.h"
#include "host/drawing/dxf/EntityReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

namespace velmor::dxf {

namespace {

constexpr double kRelativeTolerance = 1e-9; ///< of a coordinate, for points that went the same way

bool same(const AcGeVector3d &a, const AcGeVector3d &b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

/// Whether two shapes of one kind have in common all that a move leaves alone.
bool sameButPlace(const EntityShape &a, const EntityShape &b)
{
    if (a.value.index() != b.value.index())
        return false;
    if (const auto *arc = std::get_if<ArcShape>(&a.value)) {
        const auto &other = std::get<ArcShape>(b.value);
        return arc->radius == other.radius && arc->startAngle == other.startAngle && arc->endAngle == other.endAngle;
    }
    if (const auto *circle = std::get_if<CircleShape>(&a.value))
        return circle->radius == std::get<CircleShape>(b.value).radius;
    if (const auto *ellipse = std::get_if<EllipseEntity::Shape>(&a.value)) {
        const auto &other = std::get<EllipseEntity::Shape>(b.value);
        return same(ellipse->majorAxis, other.majorAxis) && ellipse->ratio == other.ratio &&
               ellipse->startParameter == other.startParameter && ellipse->endParameter == other.endParameter;
    }
    if (const auto *spline = std::get_if<SplineEntity::Shape>(&a.value)) {
        const auto &other = std::get<SplineEntity::Shape>(b.value);
        return spline->degree == other.degree && spline->closed == other.closed && spline->knots == other.knots &&
               spline->weights == other.weights && spline->controlPoints.size() == other.controlPoints.size() &&
               spline->fitPoints.size() == other.fitPoints.size();
    }
    const auto sameBulges = [](const auto &first, const auto &second) {
        return std::ranges::equal(first, second, {}, &AcDbPolyline::Vertex::bulge, &AcDbPolyline::Vertex::bulge);
    };
    if (const auto *polyline = std::get_if<PolylineShape>(&a.value)) {
        const auto &other = std::get<PolylineShape>(b.value);
        return polyline->closed == other.closed && polyline->width == other.width &&
               sameBulges(polyline->vertices, other.vertices);
    }
    if (const auto *polyline3d = std::get_if<Polyline3dShape>(&a.value)) {
        const auto &other = std::get<Polyline3dShape>(b.value);
        return polyline3d->closed == other.closed && polyline3d->vertices.size() == other.vertices.size();
    }
    if (const auto *text = std::get_if<TextShape>(&a.value)) {
        const auto &other = std::get<TextShape>(b.value);
        return text->height == other.height && text->rotation == other.rotation &&
               text->widthFactor == other.widthFactor && text->horizontal == other.horizontal &&
               text->vertical == other.vertical && text->text == other.text;
    }
    if (const auto *reference = std::get_if<ReferenceShape>(&a.value)) {
        const auto &p = reference->placement, &q = std::get<ReferenceShape>(b.value).placement;
        return p.scaleX == q.scaleX && p.scaleY == q.scaleY && p.scaleZ == q.scaleZ && p.rotation == q.rotation &&
               p.columns == q.columns && p.rows == q.rows && p.columnSpacing == q.columnSpacing &&
               p.rowSpacing == q.rowSpacing;
    }
    if (const auto *hatch = std::get_if<HatchShape>(&a.value)) {
        const auto &other = std::get<HatchShape>(b.value);
        return hatch->angle == other.angle && hatch->scale == other.scale && hatch->pattern == other.pattern &&
               hatch->patternType == other.patternType && hatch->style == other.style &&
               hatch->families == other.families && hatch->associative == other.associative &&
               std::ranges::equal(hatch->loops, other.loops, [&](const auto &first, const auto &second) {
                   return first.type == second.type && sameBulges(first.vertices, second.vertices);
               });
    }
    return true;
}

/// What the coordinates of tags become.
class Move {
public:
    static std::optional<Move> between(EntityShape was, EntityShape now)
    {
        if (!sameButPlace(was, now))
            return std::nullopt;
        std::array<std::vector<double>, 3> before, after;
        visitCoordinates(was, [&](double value, int axis) { before[static_cast<std::size_t>(axis)].push_back(value); });
        visitCoordinates(now, [&](double value, int axis) { after[static_cast<std::size_t>(axis)].push_back(value); });
        Move move;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const auto &from = before[axis], &to = after[axis];
            if (from.size() != to.size())
                return std::nullopt;
            if (!from.empty())
                move.m_step[axis] = to[0] - from[0];
            for (std::size_t i = 0; i < from.size(); ++i) {
                const double allowed = kRelativeTolerance * std::max({1.0, std::abs(from[i]), std::abs(to[i])});
                if (!(std::abs(to[i] - from[i] - move.m_step[axis]) <= allowed))
                    return std::nullopt;
                move.m_known[axis][from[i]] = to[i];
            }
        }
        return move;
    }

    double operator()(std::size_t axis, double value) const
    {
        const auto known = m_known[axis].find(value);
        return known != m_known[axis].end() ? known->second : value + m_step[axis];
    }
    bool movesHeight() const { return m_step[2] != 0.0; }

private:
    std::array<double, 3> m_step{};
    std::array<std::unordered_map<double, double>, 3> m_known; ///< of the entity's own points: no rounding twice
};

/// The shape that tags say; nothing for tags that are not understood.
std::optional<EntityShape> shapeIn(EntityKind kind, std::span<const Tag> tags, const TextCodec &codec)
{
    Arena arena;
    EntityReader reader(arena, codec);
    AcDbEntity *entity = nullptr;
    if (kind == EntityKind::Polyline2d || kind == EntityKind::Polyline3d) {
        EntityReader::Polyline polyline;
        std::size_t start = 0;
        for (std::size_t i = 0; i <= tags.size(); ++i) {
            if (i < tags.size() && tags[i].code != 0)
                continue;
            const auto part = tags.subspan(start, i - start);
            const bool isVertex = start != 0 && tags[start - 1].name() == "VERTEX";
            if (start == 0)
                EntityReader::begin(polyline, part, EntityReader::common(part));
            else if (isVertex)
                EntityReader::addVertex(polyline, part, EntityReader::common(part));
            start = i + 1;
        }
        entity = reader.finish(polyline);
    } else {
        entity = reader.read(kind, tags, EntityReader::common(tags)).entity;
    }
    if (!entity)
        return std::nullopt;
    const bool isKind = kindOf(*entity) == kind;
    EntityShape shape = shapeOf(*entity);
    entity->~AcDbEntity();
    return isKind ? std::optional(std::move(shape)) : std::nullopt;
}

/// Which tags of an entity are its points; fed with them one after the other.
class PointTags {
public:
    explicit PointTags(EntityKind kind) : m_kind(kind) {}

    /// 0, 1 or 2 for the x, y or z of a point that moves; none for any other tag.
    std::optional<std::size_t> axisOf(const Tag &tag)
    {
        follow(tag);
        if (m_kind == EntityKind::LwPolyline && tag.code == 38)
            return 2;
        if (tag.code < 10 || tag.code > 37 || tag.code % 10 > 1)
            return std::nullopt;
        const std::size_t axis = static_cast<std::size_t>(tag.code / 10 - 1);
        return isPoint(tag.code % 10 == 1, axis) ? std::optional(axis) : std::nullopt;
    }

private:
    void follow(const Tag &tag)
    {
        if (tag.code == 0)
            m_inVertex = tag.name() == "VERTEX";
        if (tag.code == 101)
            m_inEmbedded = true;
        if (m_kind != EntityKind::Hatch)
            return;
        if (tag.code == 91)
            m_part = Part::Paths;
        else if (tag.code == 92)
            m_isPolyline = (tag.integer() & 2) != 0;
        else if (tag.code == 72 && m_part == Part::Paths)
            m_edge = m_isPolyline ? 0 : tag.integer();
        else if (tag.code == 75)
            m_part = Part::Pattern;
        else if (tag.code == 98)
            m_part = Part::Seeds;
    }

    bool isPoint(bool second, std::size_t axis) const
    {
        switch (m_kind) {
        case EntityKind::Line:
        case EntityKind::Spline:
            return true;
        case EntityKind::Text:
        case EntityKind::Attribute:
        case EntityKind::AttributeDefinition:
            return !m_inEmbedded || !second; // inside, the second one is a direction
        case EntityKind::MText:
            return second == m_inEmbedded; // the text's direction, and inside the other way round
        case EntityKind::Polyline2d:
            return !second && (m_inVertex || axis == 2);
        case EntityKind::Polyline3d:
            return !second && m_inVertex;
        case EntityKind::Hatch:
            switch (m_part) {
            case Part::Head:
                return axis == 2;
            case Part::Paths:
                return !second || m_edge == 1 || m_edge == 4; // of an ellipse it is the axis
            case Part::Pattern:
                return false;
            case Part::Seeds:
                return !second;
            }
            return false;
        default:
            return !second;
        }
    }

    EntityKind m_kind;
    bool m_inVertex = false, m_inEmbedded = false, m_isPolyline = false;
    enum class Part { Head, Paths, Pattern, Seeds } m_part = Part::Head;
    int m_edge = 0;
};

bool standsInPlaneOfItsOwn(EntityKind kind)
{
    switch (kind) {
    case EntityKind::Line:
    case EntityKind::Point:
    case EntityKind::Ellipse:
    case EntityKind::Spline:
    case EntityKind::MText:
    case EntityKind::Polyline3d:
        return false;
    default:
        return true;
    }
}

} // namespace

std::optional<NewValues> movedTags(const AcDbEntity &entity, std::span<const Tag> tags, const TextCodec &codec)
{
    const EntityKind kind = kindOf(entity);
    auto was = shapeIn(kind, tags, codec);
    if (!was)
        return std::nullopt;
    EntityShape now = shapeOf(entity);
    if (auto *reference = std::get_if<ReferenceShape>(&was->value))
        reference->definition = std::get<ReferenceShape>(now.value).definition;
    const auto move = Move::between(std::move(*was), std::move(now));
    if (!move)
        return std::nullopt;
    const bool mirrored = standsInPlaneOfItsOwn(kind) && EntityReader::common(tags).extrusion[2] < 0.0;
    PointTags points(kind);
    NewValues values;
    bool hasHeight = false;
    for (std::size_t i = 0; i < tags.size(); ++i) {
        if (tags[i].code >= 1000)
            continue;
        const auto axis = points.axisOf(tags[i]);
        double value = 0.0;
        if (!axis || !tags[i].real(value))
            continue;
        hasHeight = hasHeight || *axis == 2;
        const bool turned = mirrored && *axis != 1;
        double moved = (*move)(*axis, turned ? -value : value);
        if (turned)
            moved = -moved;
        if (moved != value)
            values.emplace_back(i, formatReal(moved));
    }
    if (move->movesHeight() && !hasHeight)
        return std::nullopt;
    return values;
}

} // namespace velmor::dxf
