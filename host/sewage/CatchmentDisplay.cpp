// What the store does for the screen: marks, temporary drawing, labels, picks.
#include "host/drawing/HatchPattern.h"
#include "host/drawing/Transient.h"
#include "host/editor/UiMessage.h"
#include "host/services/Services.h"
#include "host/sewage/AreaRing.h"
#include "host/sewage/CatchmentStore.h"

#include <algorithm>

namespace velmor {
namespace {

/// How far beside an area a pick may go, drawing units; inside of an area the distance is 0.
constexpr double kPickDistance = 1.0;

} // namespace

void CatchmentStore::mark(const StoredArea &area, int colour, double scale, double angle, const std::wstring &pattern)
{
    TransientMark mark;
    mark.color = colour;
    mark.scale = scale;
    mark.angle = angle;
    mark.pattern = pattern;
    // Looking after the user's pattern files once for marks that come together is enough.
    auto &graphics = m_drawing.component<TransientGraphics>();
    if (pattern != m_markPattern || graphics.marks().empty()) {
        m_markPattern = pattern;
        if (!isHatchPattern(pattern) && pattern != m_strangePattern) {
            m_strangePattern = pattern;
            Services::instance().notice(uiMessage("ui.pattern.unknown", {pattern}));
        }
    }
    TransientRing ring = outlineOf(*area.m_entity);
    // A hidden area has nothing to hatch.
    if (ring.size() < 2)
        return;
    mark.rings.push_back(std::move(ring));
    graphics.setMark(area.m_record.guid, std::move(mark));
}

void CatchmentStore::unmark(const StoredArea &area)
{
    m_drawing.component<TransientGraphics>().removeMark(area.m_record.guid);
}

void CatchmentStore::unmarkAll(unsigned mask)
{
    bringUpToDate();
    auto &graphics = m_drawing.component<TransientGraphics>();
    std::vector<std::wstring> marked;
    for (const auto &[guid, mark] : graphics.marks())
        if (const AreaPtr area = byGuid(guid); area && area->isOfMask(mask))
            marked.push_back(guid);
    for (const std::wstring &guid : marked)
        graphics.removeMark(guid);
}

AcDbObject *CatchmentStore::objectOf(const AcDbObjectId &id) const
{
    if (id.isNull() || id.isErased())
        return nullptr;
    AcDbObject *object = m_drawing.findByHandle(id.handle().value());
    return object && idOf(*object) == id ? object : nullptr;
}

void CatchmentStore::drawTemporary(const StoredArea &area, int colour)
{
    auto &graphics = m_drawing.component<TransientGraphics>();
    if (!area.m_record.hidden) {
        graphics.drawTemporary(*area.m_entity, colour);
        return;
    }
    // A hidden area is shown by the sections that it drains to.
    ZEMGis::Sewage::SectionShares sections;
    connectedSections(area, sections);
    for (const auto &[section, share] : sections) {
        AcDbObject *object = objectOf(section->GetObjectId());
        if (object && object->isKindOf(AcDbEntity::desc()))
            graphics.drawTemporary(static_cast<AcDbEntity &>(*object), colour);
    }
}

// --- Labels -------------------------------------------------------------------------------------------------

std::vector<AcDbEntity *> CatchmentStore::labelsOf(const StoredArea &area)
{
    std::vector<AcDbEntity *> standing;
    if (const auto found = m_labels.find(area.m_record.guid); found != m_labels.end())
        std::copy_if(found->second.begin(), found->second.end(), std::back_inserter(standing),
                     [](const AcDbEntity *label) { return !label->isErased(); });
    return standing;
}

void CatchmentStore::addLabel(const StoredArea &area, AcDbEntity &label)
{
    m_drawing.setData(label, kLabelDataKey, {{1, area.m_record.guid}});
    m_labels[area.m_record.guid].push_back(&label);
}

int CatchmentStore::eraseLabels(const StoredArea &area)
{
    const std::vector<AcDbEntity *> standing = labelsOf(area);
    for (AcDbEntity *label : standing)
        m_drawing.erase(*label);
    return static_cast<int>(standing.size());
}

// --- Picks --------------------------------------------------------------------------------------------------

void CatchmentStore::setPickIndex(boost::shared_ptr<ZEMGis::Topology::CSpatialIndex> index)
{
    bringUpToDate();
    m_picked.clear();
    m_pickIndex = std::move(index);
    m_pickable.clear();
    if (!m_pickIndex)
        return;
    m_pickable.reserve(m_areas.size());
    for (const auto &[key, area] : m_areas)
        m_pickable.emplace(area.get(), area);
}

CatchmentStore::AreaPtr CatchmentStore::areaAt(const AcGePoint3d &point)
{
    bringUpToDate();
    if (!m_pickIndex)
        return {};
    double radius = kPickDistance;
    // The index may still name areas that are gone; the pointer is only compared until it is known to be alive.
    const auto found = m_pickable.find(m_pickIndex->GetClosestEntity(point, &radius));
    return found != m_pickable.end() && found->second->isIn(*this) ? found->second : AreaPtr();
}

CatchmentStore::AreaPtr CatchmentStore::areaOfEntity(const AcDbObjectId &entity)
{
    bringUpToDate();
    AcDbObject *object = objectOf(entity);
    if (!object || !object->isKindOf(AcDbEntity::desc()))
        return {};
    const auto &picked = static_cast<const AcDbEntity &>(*object);
    if (const auto found = m_byEntity.find(&picked); found != m_byEntity.end())
        return found->second;
    const auto items = m_drawing.data(picked, kLabelDataKey);
    const auto *guid = items && !items->empty() ? std::get_if<std::wstring>(&items->front().value) : nullptr;
    return guid ? byGuid(*guid) : AreaPtr();
}

} // namespace velmor
