// HATCH: a pattern over closed regions.
#include "host/boundary/Regions.h"
#include "host/drawing/CurvePath.h"
#include "host/drawing/EntityShape.h"
#include "host/drawing/HatchPattern.h"
#include "host/editor/Asker.h"
#include "host/editor/BoundaryCommand.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/LineworkCache.h"
#include "host/editor/UiMessage.h"
#include "host/editor/Words.h"
#include "host/services/Messages.h"

#include <algorithm>
#include <numbers>

namespace velmor {

namespace {

using Next = Command::Next;
using Ring = std::vector<AcDbPolyline::Vertex>;
constexpr double kDegrees = 180.0 / std::numbers::pi;
constexpr double kChordTolerance = 1e-4; ///< of a curve's size, for ellipses and splines
constexpr wchar_t kSolid[] = L"SOLID";

/// What the last hatch was made with.
struct HatchDefaults {
    explicit HatchDefaults(Drawing &) {}
    std::wstring pattern = L"ANSI31";
    double scale = 1.0, angle = 0.0;
    bool islands = true;
};

struct HatchRegion {
    Ring outer;
    std::vector<Ring> islands;
    bool operator==(const HatchRegion &) const = default;
};

Ring ringOf(const boundary::Ring &ring)
{
    Ring vertices;
    for (const auto &v : ring)
        vertices.push_back({v.x, v.y, v.bulge});
    return vertices;
}

class HatchWork {
public:
    explicit HatchWork(Asker &asker) : m_asker(asker), m_options(asker.drawing().component<HatchDefaults>()) {}

    Next run()
    {
        for (;;) {
            const Reply reply =
                m_asker.point({.message = "ui.prompt.hatch",
                               .words = {L"Objects", L"Pattern", L"Scale", L"Angle", L"Islands", L"Undo"},
                               .enter = true,
                               .optional = !m_regions.empty() && !m_asker.session().view()});
            if (reply.isEnter())
                return make();
            if (reply.is(L"Objects"))
                takeObjects();
            else if (reply.is(L"Pattern"))
                askPattern();
            else if (reply.is(L"Scale"))
                askScale();
            else if (reply.is(L"Angle"))
                askAngle();
            else if (reply.is(L"Islands"))
                askIslands();
            else if (reply.is(L"Undo"))
                m_regions.empty() ? m_asker.refuse(uiText("ui.hatch.nothing")) : m_regions.pop_back();
            else
                takePoint(reply.point);
        }
    }

private:
    void add(HatchRegion region)
    {
        if (std::ranges::find(m_regions, region) == m_regions.end())
            m_regions.push_back(std::move(region));
        m_asker.session().status(uiMessage("ui.hatch.regions", {std::to_wstring(m_regions.size())}));
    }

    void takePoint(const AcGePoint3d &point)
    {
        const auto found = m_asker.drawing().component<LineworkCache>().visible().regionAt(
            {point.x, point.y}, {.islands = m_options.islands});
        if (!found)
            return m_asker.refuse(describe(found));
        HatchRegion region{ringOf(found.outer), {}};
        for (const auto &island : found.islands)
            region.islands.push_back(ringOf(island));
        add(std::move(region));
    }

    void takeObjects()
    {
        std::size_t open = 0;
        for (const AcDbObjectId &id : m_asker.objects()) {
            AcDbEntity *entity = nullptr;
            if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk)
                continue;
            const Extents extents = extentsOf(*entity);
            const double size = std::max({1e-9, extents.maxX - extents.minX, extents.maxY - extents.minY});
            const auto path = curvePathOf(*entity, size * kChordTolerance);
            entity->close();
            if (path && path->closed && ringAreaOf(path->vertices) != 0.0)
                add({path->vertices, {}});
            else
                ++open;
        }
        if (open > 0)
            m_asker.refuse(uiMessage("ui.hatch.open", {std::to_wstring(open)}));
    }

    void askPattern()
    {
        for (;;) {
            const Reply reply = m_asker.name({.message = "ui.prompt.hatch.pattern",
                                              .standard = m_options.pattern,
                                              .completion = Completion::Patterns});
            if (reply.isEnter())
                return;
            if (isHatchPattern(reply.text) || sameText(reply.text, kSolid)) {
                m_options.pattern = reply.text;
                std::ranges::transform(m_options.pattern, m_options.pattern.begin(),
                                       [](wchar_t c) { return static_cast<wchar_t>(std::towupper(c)); });
                return;
            }
            m_asker.refuse(uiMessage("ui.hatch.pattern", {reply.text}));
        }
    }

    void askScale()
    {
        for (;;) {
            const Reply reply =
                m_asker.number({.message = "ui.prompt.hatch.scale", .standard = realText(m_options.scale)});
            if (reply.isEnter())
                return;
            if (reply.number > 0.0) {
                m_options.scale = reply.number;
                return;
            }
            m_asker.refuse(uiText("ui.hatch.scale"));
        }
    }

    void askAngle()
    {
        const Reply reply =
            m_asker.angle({.message = "ui.prompt.hatch.angle", .standard = realText(m_options.angle * kDegrees)});
        if (!reply.isEnter())
            m_options.angle = reply.number;
    }

    void askIslands()
    {
        const Reply reply = m_asker.word({.message = "ui.prompt.hatch.islands",
                                          .words = {L"Yes", L"No"},
                                          .standard = uiText(m_options.islands ? "ui.word.Yes" : "ui.word.No")});
        if (!reply.isEnter())
            m_options.islands = reply.is(L"Yes");
    }

    Next make()
    {
        Drawing &drawing = m_asker.drawing();
        for (const HatchRegion &region : m_regions) {
            HatchShape shape;
            shape.pattern = m_options.pattern;
            shape.scale = m_options.scale;
            shape.angle = m_options.angle;
            shape.loops.push_back({AcDbHatch::kExternal, region.outer});
            for (const Ring &island : region.islands)
                shape.loops.push_back({AcDbHatch::kDefault, island});
            auto hatch = std::make_unique<AcDbHatch>();
            setShape(drawing, *hatch, {std::move(shape)});
            drawing.append(std::move(hatch));
        }
        m_asker.session().status(uiMessage("ui.hatch.done", {std::to_wstring(m_regions.size())}));
        return Next::Commit;
    }

    Asker &m_asker;
    HatchDefaults &m_options;
    std::vector<HatchRegion> m_regions;
};

} // namespace

void addHatchCommands(CommandStack &stack)
{
    stack.addWork(L"HATCH", 0, [](Asker &asker) { return HatchWork(asker).run(); });
}

} // namespace velmor
