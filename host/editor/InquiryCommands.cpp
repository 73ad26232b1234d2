// LIST, DIST, AREA, AUDIT: they tell, and change nothing.
#include "host/drawing/CurvePath.h"
#include "host/drawing/Findings.h"
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/UiMessage.h"
#include "host/network/NetworkData.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>

namespace velmor {

namespace {

using Next = Command::Next;
constexpr std::size_t kMostListed = 200; ///< objects that are told one by one
constexpr double kDegrees = 180.0 / std::numbers::pi;
constexpr double kChordTolerance = 1e-6; ///< of a curve's size, for lengths of ellipses and splines

std::wstring pointText(double x, double y)
{
    return realText(x) + L", " + realText(y);
}

AcDbEntity *entityOf(const AcDbObjectId &id)
{
    AcDbEntity *entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk)
        return nullptr;
    entity->close();
    return entity;
}

double lengthOf(const CurvePath &path)
{
    double length = 0.0;
    const auto &vertices = path.vertices;
    const std::size_t sides = path.closed ? vertices.size() : vertices.size() - 1;
    for (std::size_t i = 0; i < sides; ++i) {
        const auto &from = vertices[i], &to = vertices[(i + 1) % vertices.size()];
        const double chord = std::hypot(to.x - from.x, to.y - from.y), bulge = std::abs(from.bulge);
        // Arc length is radius times angle: chord (1 + b^2) / 4b times 4 atan b.
        length += bulge == 0.0 ? chord : chord * (1.0 + bulge * bulge) / bulge * std::atan(bulge);
    }
    return length;
}

std::optional<CurvePath> pathOf(const AcDbEntity &entity)
{
    const Extents extents = extentsOf(entity);
    const double size = extents.isEmpty() ? 1.0 : std::max(extents.maxX - extents.minX, extents.maxY - extents.minY);
    return curvePathOf(entity, std::max(size, 1.0) * kChordTolerance);
}

// --- LIST
// --------------------------------------------------------------------------------------------------------

/// What an entity is, line by line.
class Listing {
public:
    Listing(Session &session, const AcDbEntity &entity) : m_session(session), m_entity(entity) {}

    void tell()
    {
        const Drawing &drawing = *m_session.drawing();
        const std::string kind = typeNameOf(m_entity);
        m_session.status(uiMessage("ui.list.head",
                                   {std::wstring(kind.begin(), kind.end()), m_entity.layer(), handleText(m_entity)}));
        if (m_entity.colorIndex() != 256)
            line("ui.list.colour", std::to_wstring(m_entity.colorIndex()));
        tellShape();
        if (const auto path = pathOf(m_entity)) {
            line("ui.list.length", realText(lengthOf(*path)));
            if (path->closed)
                line("ui.list.area", realText(std::abs(ringAreaOf(path->vertices))));
        }
        for (const std::string &key : drawing.dataKeys(m_entity)) {
            if (key == kSectionKey) {
                if (const auto section = sectionDataOf(*drawing.data(m_entity, key)))
                    line("ui.list.section", section->name);
            } else if (key == kNodeKey) {
                if (const auto node = nodeDataOf(*drawing.data(m_entity, key)))
                    line("ui.list.node", node->name);
            } else {
                line("ui.list.data", wide(key));
            }
        }
    }

private:
    void line(const char *message, const std::wstring &value)
    {
        m_session.status(L"    " + uiMessage(message, {value}));
    }
    void point(const char *message, const AcGePoint3d &p)
    {
        line(message, pointText(p.x, p.y) + (p.z != 0.0 ? L", " + realText(p.z) : L""));
    }

    void tellShape()
    {
        switch (kindOf(m_entity)) {
        case EntityKind::Line: {
            const auto &entity = static_cast<const AcDbLine &>(m_entity);
            point("ui.list.from", entity.startPoint());
            point("ui.list.to", entity.endPoint());
            break;
        }
        case EntityKind::Arc: {
            const auto &arc = static_cast<const AcDbArc &>(m_entity);
            point("ui.list.centre", arc.center());
            line("ui.list.radius", realText(arc.radius()));
            point("ui.list.from", arc.startPoint());
            point("ui.list.to", arc.endPoint());
            break;
        }
        case EntityKind::Circle: {
            const auto &circle = static_cast<const CircleEntity &>(m_entity);
            point("ui.list.centre", circle.center());
            line("ui.list.radius", realText(circle.radius()));
            break;
        }
        case EntityKind::Ellipse:
            point("ui.list.centre", static_cast<const EllipseEntity &>(m_entity).shape().center);
            break;
        case EntityKind::Point:
            point("ui.list.at", static_cast<const PointEntity &>(m_entity).position());
            break;
        case EntityKind::LwPolyline:
        case EntityKind::Polyline2d:
        case EntityKind::Polyline3d:
            if (const auto path = pathOf(m_entity))
                for (const auto &v : path->vertices)
                    line("ui.list.vertex", pointText(v.x, v.y));
            break;
        case EntityKind::Text:
        case EntityKind::MText: {
            const TextShape &shape = static_cast<const TextEntity &>(m_entity).shape();
            point("ui.list.at", shape.position);
            line("ui.list.height", realText(shape.height));
            std::wstring text = shape.text;
            std::ranges::replace(text, L'\n', L'|');
            line("ui.list.text", text);
            break;
        }
        case EntityKind::BlockReference:
            tellReference(static_cast<const AcDbBlockReference &>(m_entity));
            break;
        case EntityKind::Hatch: {
            const auto &hatch = static_cast<const AcDbHatch &>(m_entity);
            line("ui.list.pattern", hatch.patternName());
            line("ui.list.loops", std::to_wstring(hatch.loops().size()));
            break;
        }
        default:
            break;
        }
    }

    void tellReference(const AcDbBlockReference &reference)
    {
        for (const auto &block : m_session.drawing()->blocks())
            if (idOf(*block) == reference.blockTableRecord())
                line("ui.list.block", block->name());
        point("ui.list.at", reference.placement().position);
        line("ui.list.scale", realText(reference.placement().scaleX));
        line("ui.list.rotation", realText(reference.placement().rotation * kDegrees));
        for (const AttributeEntity *attribute : attributesOf(reference))
            line("ui.list.attribute", attribute->tag() + L" = " + attribute->shape().text);
    }

    Session &m_session;
    const AcDbEntity &m_entity;
};

Next listObjects(Asker &asker)
{
    std::vector<const AcDbEntity *> entities;
    for (const AcDbObjectId &id : asker.objects())
        if (const AcDbEntity *entity = entityOf(id))
            entities.push_back(entity);
    const std::size_t told = std::min(entities.size(), kMostListed);
    for (std::size_t i = 0; i < told; ++i)
        Listing(asker.session(), *entities[i]).tell();
    if (told == entities.size())
        return Next::Commit;
    // Nobody reads on for ever: of the others how many there are of each kind.
    std::map<std::string, std::size_t> others;
    for (std::size_t i = told; i < entities.size(); ++i)
        ++others[typeNameOf(*entities[i])];
    std::wstring kinds;
    for (const auto &[name, count] : others)
        kinds += (kinds.empty() ? L"" : L", ") + std::to_wstring(count) + L" " + wide(name);
    asker.session().status(uiMessage("ui.list.others", {std::to_wstring(entities.size() - told), kinds}));
    return Next::Commit;
}

// --- DIST, AREA
// ---------------------------------------------------------------------------------------------------

Next measureDistance(Asker &asker)
{
    const AcGePoint3d from = asker.onlyPoint("ui.prompt.point.first");
    const AcGePoint3d to = asker.onlyPoint("ui.prompt.point.second", from);
    const double dx = to.x - from.x, dy = to.y - from.y;
    double angle = std::atan2(dy, dx) * kDegrees;
    if (angle < 0.0)
        angle += 360.0;
    asker.session().status(uiMessage("ui.dist.told", {realText(std::hypot(dx, dy)), realText(angle), realText(dx),
                                                      realText(dy), realText(to.z - from.z)}));
    return Next::Commit;
}

/// Areas one after the other with their running sum: of corners, or of closed objects.
class AreaMeasure {
public:
    explicit AreaMeasure(Asker &asker) : m_asker(asker) {}

    Next run()
    {
        for (;;) {
            const Reply reply =
                m_asker.point({.message = m_sign > 0.0 ? "ui.prompt.area.add" : "ui.prompt.area.subtract",
                               .words = {L"Object", L"Add", L"Subtract"},
                               .enter = m_measured,
                               .optional = m_measured});
            if (reply.isEnter())
                return Next::Commit;
            if (reply.is(L"Add") || reply.is(L"Subtract"))
                m_sign = reply.is(L"Add") ? 1.0 : -1.0;
            else if (reply.is(L"Object"))
                object();
            else
                corners(reply.point);
        }
    }

private:
    void corners(const AcGePoint3d &first)
    {
        std::vector<AcDbPolyline::Vertex> ring{{first.x, first.y, 0.0}};
        for (;;) {
            const AcGePoint3d last(ring.back().x, ring.back().y);
            const Reply next = m_asker.point({.message = "ui.prompt.corner.next", .base = last, .enter = true});
            if (!next.isEnter())
                ring.push_back({next.point.x, next.point.y, 0.0});
            else if (ring.size() > 2)
                return count({ring, true});
            else
                m_asker.refuse(uiText("ui.area.corners"));
        }
    }
    void object()
    {
        for (;;) {
            const Answer::Pick pick = m_asker.entity({.message = "ui.prompt.area.object"});
            const AcDbEntity *entity = entityOf(pick.id);
            const auto path = entity ? pathOf(*entity) : std::nullopt;
            if (path && path->closed)
                return count(*path);
            m_asker.refuse(uiText("ui.area.open"));
        }
    }
    void count(const CurvePath &path)
    {
        const double area = std::abs(ringAreaOf(path.vertices));
        m_sum += m_sign * area;
        m_measured = true;
        m_asker.session().status(
            uiMessage("ui.area.told", {realText(area), realText(lengthOf(path)), realText(m_sum)}));
    }

    Asker &m_asker;
    double m_sign = 1.0, m_sum = 0.0;
    bool m_measured = false;
};

// --- AUDIT
// -------------------------------------------------------------------------------------------------------

Next audit(Asker &asker)
{
    Session &session = asker.session();
    const LoadReport &report = asker.drawing().loadReport();
    std::map<std::string, std::size_t> kinds;
    for (const AcDbEntity *entity : asker.drawing().modelSpace().entities())
        if (!entity->isErased())
            ++kinds[typeNameOf(*entity)];
    for (const auto &[kind, count] : kinds)
        session.status(uiMessage("ui.audit.kind", {wide(kind), std::to_wstring(count)}));
    for (const auto &[kind, count] : report.unread)
        session.status(uiMessage("ui.audit.unread", {wide(kind), std::to_wstring(count)}));
    for (const std::string &line : findingLines(session.path().filename().string(), report.findings))
        session.status(wide(line));
    session.status(uiText(report.damaged() ? "ui.audit.damaged" : "ui.audit.sound"));
    return Next::Commit;
}

} // namespace

void addInquiryCommands(CommandStack &stack)
{
    stack.addWork(L"LIST", 0, listObjects);
    stack.addWork(L"DIST", CommandEntry::kTransparent, measureDistance);
    stack.addWork(L"AREA", 0, [](Asker &asker) { return AreaMeasure(asker).run(); });
    stack.addWork(L"AUDIT", 0, audit);
}

} // namespace velmor
