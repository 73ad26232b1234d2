#include "host/editor/Picking.h"

#include "host/editor/DisplayIndex.h"
#include "host/editor/EntityParts.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <unordered_set>

namespace velmor {

namespace {

struct Found {
    std::uint32_t number;
    double distance;
};

std::vector<Found> nearPoint(DisplayIndex &index, const Drawing &drawing, const AcGePoint3d &point, double reach)
{
    Extents part{point.x, point.y, point.x, point.y};
    part.grow(reach);
    std::vector<Found> found;
    index.visitItems(part, [&](const DisplayIndex::Item &item) {
        const double distance = distanceTo(partsOf(drawing, index.partOf(item)), {point.x, point.y});
        if (distance <= reach)
            found.push_back({item.entity, distance});
        return true;
    });
    // The runs of a polyline come one by one.
    std::ranges::sort(found, [](const Found &a, const Found &b) {
        return a.number != b.number ? a.number < b.number : a.distance < b.distance;
    });
    const auto isSame = [](const Found &a, const Found &b) { return a.number == b.number; };
    found.erase(std::unique(found.begin(), found.end(), isSame), found.end());
    std::ranges::sort(found, [](const Found &a, const Found &b) {
        return a.distance != b.distance ? a.distance < b.distance : a.number > b.number;
    });
    return found;
}

} // namespace

std::vector<AcDbEntity *> entitiesAt(Drawing &drawing, const AcGePoint3d &point, double reach)
{
    auto &index = drawing.component<DisplayIndex>();
    std::vector<AcDbEntity *> entities;
    for (const Found &found : nearPoint(index, drawing, point, reach))
        entities.push_back(&index.entity(found.number));
    return entities;
}

AcDbEntity *entityAt(Drawing &drawing, const AcGePoint3d &point, double reach)
{
    const auto entities = entitiesAt(drawing, point, reach);
    return entities.empty() ? nullptr : entities.front();
}

std::size_t countNear(Drawing &drawing, const Extents &window)
{
    std::size_t count = 0;
    drawing.component<DisplayIndex>().visitNodes(window, [&](const DisplayIndex::Node &node) {
        count += node.items.size();
        return true;
    });
    return count;
}

AcDbObjectIdArray entitiesIn(Drawing &drawing, const Extents &window, SelectBy by)
{
    auto &index = drawing.component<DisplayIndex>();
    std::vector<std::uint32_t> taken;
    std::unordered_set<std::uint32_t> decided; ///< polylines that come in runs
    index.visitNodes(window, [&](const DisplayIndex::Node &node) {
        for (const DisplayIndex::Item &item : node.items) {
            if (item.gone || !index.isVisible(item))
                continue;
            const Extents box = DisplayIndex::boxOf(node, item);
            if (!DisplayIndex::meets(box, window))
                continue;
            const bool isRun = item.kind == DisplayIndex::ItemKind::Run;
            // The box holds all that is drawn, so what it proves needs no closer look.
            const bool isInside = box.minX >= window.minX && box.minY >= window.minY && box.maxX <= window.maxX &&
                                  box.maxY <= window.maxY;
            if (isInside && (by == SelectBy::Crossing || !isRun)) {
                taken.push_back(item.entity);
            } else if (by == SelectBy::Crossing) {
                if (touches(partsOf(drawing, index.partOf(item)), window))
                    taken.push_back(item.entity);
            } else if (!isRun || decided.insert(item.entity).second) {
                // Runs outside of the window are not met here, so all of the polyline is looked at.
                if (liesWithin(partsOf(drawing, {&index.entity(item.entity)}), window))
                    taken.push_back(item.entity);
            }
        }
        return true;
    });
    std::ranges::sort(taken);
    taken.erase(std::unique(taken.begin(), taken.end()), taken.end());
    AcDbObjectIdArray ids;
    for (const std::uint32_t number : taken)
        ids.push_back(idOf(index.entity(number)));
    return ids;
}

} // namespace velmor
