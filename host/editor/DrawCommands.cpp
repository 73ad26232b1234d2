// LINE, PLINE, CIRCLE, ARC, POINT, TEXT.
#include "host/drawing/EntityShape.h"
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <cmath>
#include <numbers>
#include <optional>

namespace velmor {

namespace {

using Next = Command::Next;
using Vertex = AcDbPolyline::Vertex;
constexpr double kPi = std::numbers::pi;

bool samePlace(const AcGePoint3d &a, const AcGePoint3d &b)
{
    return a.x == b.x && a.y == b.y;
}

double distance(const AcGePoint3d &a, const AcGePoint3d &b)
{
    return std::hypot(b.x - a.x, b.y - a.y);
}

double direction(const AcGePoint3d &from, const AcGePoint3d &to)
{
    return std::atan2(to.y - from.y, to.x - from.x);
}

void showNow(Asker &asker)
{
    if (SessionView *view = asker.session().view())
        view->redraw();
}

// --- Lines
// ---------------------------------------------------------------------------------------------------------------

/// Each line stands as soon as its end is told, so an Escape keeps those that were drawn.
Next drawLines(Asker &asker)
{
    std::vector<AcGePoint3d> points{asker.onlyPoint("ui.prompt.point.first")};
    std::vector<AcDbEntity *> lines;
    const auto draw = [&](const AcGePoint3d &to) {
        auto line = std::make_unique<AcDbLine>(points.back(), to);
        lines.push_back(line.get());
        asker.drawing().append(std::move(line));
        points.push_back(to);
        showNow(asker);
    };
    try {
        for (;;) {
            std::vector<std::wstring> words;
            if (lines.size() > 1)
                words.emplace_back(L"Close");
            if (!lines.empty())
                words.emplace_back(L"Undo");
            const Reply reply = asker.point(
                {.message = "ui.prompt.point.next", .words = std::move(words), .base = points.back(), .enter = true});
            if (reply.isEnter())
                return Next::Commit;
            if (reply.is(L"Undo")) {
                asker.drawing().erase(*lines.back());
                lines.pop_back();
                points.pop_back();
                showNow(asker);
            } else if (reply.is(L"Close")) {
                if (!samePlace(points.back(), points.front()))
                    draw(points.front());
                return Next::Commit;
            } else if (samePlace(reply.point, points.back())) {
                asker.refuse(uiText("ui.draw.same"));
            } else {
                draw(reply.point);
            }
        }
    } catch (const Cancelled &) {
        if (lines.empty())
            throw;
        return Next::Commit;
    }
}

// --- Polylines
// -------------------------------------------------------------------------------------------------------------

/// A polyline that grows in the drawing while it is drawn.
class GrowingPolyline {
public:
    GrowingPolyline(Asker &asker, const AcGePoint3d &first)
        : m_asker(asker), m_vertices{{first.x, first.y, 0.0}}, m_height(first.z)
    {
    }
    std::size_t segments() const { return m_vertices.size() - 1; }
    AcGePoint3d first() const { return {m_vertices.front().x, m_vertices.front().y, m_height}; }
    AcGePoint3d last() const { return {m_vertices.back().x, m_vertices.back().y, m_height}; }

    /// Bulge of the arc that goes on smoothly to a point.
    double smoothBulge(const AcGePoint3d &to) const
    {
        const double half = std::remainder(direction(last(), to) - endDirection(), 2.0 * kPi);
        // Straight back there is no arc but a half circle.
        return std::abs(std::abs(half) - kPi) < 1e-9 ? 1.0 : std::tan(half / 2.0);
    }
    void add(const AcGePoint3d &to, double bulge)
    {
        m_vertices.back().bulge = bulge;
        m_vertices.push_back({to.x, to.y, 0.0});
        show(false);
    }
    void close(double bulge)
    {
        if (samePlace(first(), last()) && m_vertices.size() > 2)
            m_vertices.pop_back(); // it is there already
        else
            m_vertices.back().bulge = bulge;
        show(true);
    }
    void takeBack()
    {
        m_vertices.pop_back();
        m_vertices.back().bulge = 0.0;
        show(false);
    }

private:
    double endDirection() const
    {
        if (m_vertices.size() < 2)
            return 0.0;
        const Vertex &from = m_vertices[m_vertices.size() - 2];
        const double chord = std::atan2(m_vertices.back().y - from.y, m_vertices.back().x - from.x);
        return chord + 2.0 * std::atan(from.bulge);
    }
    void show(bool closed)
    {
        if (m_vertices.size() < 2) {
            m_asker.drawing().erase(*m_entity);
        } else if (!m_entity) {
            auto made = std::make_unique<AcDbPolyline>(m_vertices, closed, m_height);
            m_entity = made.get();
            m_asker.drawing().append(std::move(made));
        } else {
            m_asker.drawing().erase(*m_entity, false);
            setShape(m_asker.drawing(), *m_entity, {PolylineShape{m_vertices, m_height, closed, 0.0}});
        }
        showNow(m_asker);
    }

    Asker &m_asker;
    std::vector<Vertex> m_vertices;
    double m_height;
    AcDbEntity *m_entity = nullptr;
};

Next drawPolyline(Asker &asker)
{
    GrowingPolyline polyline(asker, asker.onlyPoint("ui.prompt.point.first"));
    bool arcs = false;
    try {
        for (;;) {
            std::vector<std::wstring> words{arcs ? L"Line" : L"Arc"};
            if (polyline.segments() > 1)
                words.emplace_back(L"Close");
            if (polyline.segments() > 0)
                words.emplace_back(L"Undo");
            const Reply reply = asker.point({.message = arcs ? "ui.prompt.arc.next" : "ui.prompt.point.next",
                                             .words = std::move(words),
                                             .base = polyline.last(),
                                             .enter = true});
            if (reply.isEnter())
                return Next::Commit;
            if (reply.is(L"Arc") || reply.is(L"Line")) {
                arcs = reply.is(L"Arc");
            } else if (reply.is(L"Undo")) {
                polyline.takeBack();
            } else if (reply.is(L"Close")) {
                polyline.close(arcs ? polyline.smoothBulge(polyline.first()) : 0.0);
                return Next::Commit;
            } else if (samePlace(reply.point, polyline.last())) {
                asker.refuse(uiText("ui.draw.same"));
            } else {
                polyline.add(reply.point, arcs ? polyline.smoothBulge(reply.point) : 0.0);
            }
        }
    } catch (const Cancelled &) {
        if (polyline.segments() == 0)
            throw;
        return Next::Commit;
    }
}

// --- Circles and arcs
// ------------------------------------------------------------------------------------------------------

/// The circle through three points; nothing for points on a line.
std::optional<CircleShape> circleThrough(const AcGePoint3d &a, const AcGePoint3d &b, const AcGePoint3d &c)
{
    // Seen from the first point, so that large coordinates keep their digits.
    const double bx = b.x - a.x, by = b.y - a.y, cx = c.x - a.x, cy = c.y - a.y;
    const double twice = 2.0 * (bx * cy - by * cx);
    const double b2 = bx * bx + by * by, c2 = cx * cx + cy * cy;
    if (std::abs(twice) <= 1e-12 * (b2 + c2))
        return std::nullopt;
    const double x = (cy * b2 - by * c2) / twice, y = (bx * c2 - cx * b2) / twice;
    return CircleShape{{a.x + x, a.y + y, a.z}, std::hypot(x, y)};
}

Next appendCircle(Asker &asker, const AcGePoint3d &center, double radius)
{
    asker.drawing().append(std::make_unique<CircleEntity>(center, radius));
    return Next::Commit;
}

/// The radius or, behind its word, the diameter; more than nothing.
double askRadius(Asker &asker, const AcGePoint3d &center)
{
    bool diameter = false;
    for (;;) {
        const Reply reply =
            diameter ? asker.distance({.message = "ui.prompt.diameter", .base = center})
                     : asker.distance({.message = "ui.prompt.radius", .words = {L"Diameter"}, .base = center});
        if (reply.is(L"Diameter"))
            diameter = true;
        else if (reply.number > 0.0)
            return diameter ? reply.number / 2.0 : reply.number;
        else
            asker.refuse(uiText("ui.draw.radius"));
    }
}

Next drawCircle(Asker &asker)
{
    const Reply reply = asker.point({.message = "ui.prompt.circle", .words = {L"3P", L"2P"}});
    if (reply.kind == Reply::Kind::Point)
        return appendCircle(asker, reply.point, askRadius(asker, reply.point));
    const AcGePoint3d first = asker.onlyPoint("ui.prompt.on.first");
    for (;;) {
        const AcGePoint3d second = asker.onlyPoint("ui.prompt.on.second", first);
        if (reply.is(L"2P")) {
            if (!samePlace(first, second))
                return appendCircle(asker, {(first.x + second.x) / 2.0, (first.y + second.y) / 2.0, first.z},
                                    distance(first, second) / 2.0);
            asker.refuse(uiText("ui.draw.same"));
            continue;
        }
        const AcGePoint3d third = asker.onlyPoint("ui.prompt.on.third", second);
        if (const auto circle = circleThrough(first, second, third))
            return appendCircle(asker, circle->center, circle->radius);
        asker.refuse(uiText("ui.draw.straight"));
    }
}

Next appendArc(Asker &asker, const AcGePoint3d &center, double radius, double start, double end)
{
    asker.drawing().append(std::make_unique<AcDbArc>(center, radius, start, end));
    return Next::Commit;
}

/// Counter-clockwise around the centre, to the direction of the end or over an angle.
Next arcAround(Asker &asker, const AcGePoint3d &center, const AcGePoint3d &start)
{
    const double from = direction(center, start), radius = distance(center, start);
    for (;;) {
        const Reply reply = asker.point({.message = "ui.prompt.arc.end", .words = {L"Angle"}, .base = center});
        if (!reply.is(L"Angle")) {
            if (!samePlace(reply.point, center))
                return appendArc(asker, center, radius, from, direction(center, reply.point));
            asker.refuse(uiText("ui.draw.same"));
            continue;
        }
        const double angle = asker.angle({.message = "ui.prompt.arc.angle", .base = center}).number;
        if (angle != 0.0 && std::abs(angle) < 2.0 * kPi)
            return angle > 0.0 ? appendArc(asker, center, radius, from, from + angle)
                               : appendArc(asker, center, radius, from + angle, from);
        asker.refuse(uiText("ui.draw.angle"));
    }
}

/// Another point than the one before.
AcGePoint3d otherPoint(Asker &asker, const char *message, const AcGePoint3d &than)
{
    for (;;) {
        const AcGePoint3d point = asker.onlyPoint(message, than);
        if (!samePlace(point, than))
            return point;
        asker.refuse(uiText("ui.draw.same"));
    }
}

Next drawArc(Asker &asker)
{
    const Reply first = asker.point({.message = "ui.prompt.arc.start", .words = {L"Centre"}});
    if (first.is(L"Centre")) {
        const AcGePoint3d center = asker.onlyPoint("ui.prompt.centre");
        return arcAround(asker, center, otherPoint(asker, "ui.prompt.arc.from", center));
    }
    const Reply second = asker.point({.message = "ui.prompt.arc.second", .words = {L"Centre"}, .base = first.point});
    if (second.is(L"Centre"))
        return arcAround(asker, otherPoint(asker, "ui.prompt.centre", first.point), first.point);
    for (;;) {
        const AcGePoint3d third = asker.onlyPoint("ui.prompt.arc.last", second.point);
        const auto circle = circleThrough(first.point, second.point, third);
        if (!circle) {
            asker.refuse(uiText("ui.draw.straight"));
            continue;
        }
        const AcGePoint3d &a = first.point, &b = second.point;
        const bool isLeftTurn = (b.x - a.x) * (third.y - a.y) - (b.y - a.y) * (third.x - a.x) > 0.0;
        const double from = direction(circle->center, a), to = direction(circle->center, third);
        return appendArc(asker, circle->center, circle->radius, isLeftTurn ? from : to, isLeftTurn ? to : from);
    }
}

// --- Points and texts
// ------------------------------------------------------------------------------------------------------

Next drawPoint(Asker &asker)
{
    asker.drawing().append(std::make_unique<PointEntity>(asker.onlyPoint("ui.prompt.point")));
    return Next::Commit;
}

/// Height of the last text, for the next one.
struct TextDefaults {
    explicit TextDefaults(Drawing &drawing)
    {
        const auto stored = drawing.headerVariable("$TEXTSIZE");
        if (const auto value = stored ? parseReal(wide(*stored)) : std::nullopt; value && *value > 0.0)
            height = *value;
    }
    double height = 2.5;
};

Next drawText(Asker &asker)
{
    auto &defaults = asker.drawing().component<TextDefaults>();
    TextShape shape;
    shape.position = asker.onlyPoint("ui.prompt.text.place");
    shape.height = defaults.height;
    for (;;) {
        const Reply reply = asker.distance(
            {.message = "ui.prompt.text.height", .standard = realText(defaults.height), .base = shape.position});
        if (reply.isEnter())
            break;
        if (reply.number > 0.0) {
            shape.height = reply.number;
            break;
        }
        asker.refuse(uiText("ui.draw.height"));
    }
    const Reply angle = asker.angle({.message = "ui.prompt.text.angle", .standard = L"0", .base = shape.position});
    shape.rotation = angle.isEnter() ? 0.0 : angle.number;
    constexpr double kLineStep = 5.0 / 3.0; ///< of the height, between base lines
    bool drawn = false;
    try {
        for (;;) {
            // Behind the first line it is only asked of a person; a script's one line is one text.
            const Reply reply = asker.text({.message = "ui.prompt.text", .enter = drawn, .optional = drawn});
            if (reply.isEnter())
                return Next::Commit;
            shape.text = reply.text;
            asker.drawing().append(std::make_unique<TextEntity>(shape));
            defaults.height = shape.height;
            drawn = true;
            shape.position.x += std::sin(shape.rotation) * shape.height * kLineStep;
            shape.position.y -= std::cos(shape.rotation) * shape.height * kLineStep;
            showNow(asker);
        }
    } catch (const Cancelled &) {
        if (!drawn)
            throw;
        return Next::Commit;
    }
}

} // namespace

void addDrawCommands(CommandStack &stack)
{
    stack.addWork(L"LINE", 0, drawLines);
    stack.addWork(L"PLINE", 0, drawPolyline);
    stack.addWork(L"CIRCLE", 0, drawCircle);
    stack.addWork(L"ARC", 0, drawArc);
    stack.addWork(L"POINT", 0, drawPoint);
    stack.addWork(L"TEXT", 0, drawText);
}

} // namespace velmor
