// Reading, entering, indexing and changing areas; what serves the screen stands in CatchmentDisplay.cpp.
#include "host/sewage/CatchmentStore.h"

#include "host/drawing/Journal.h"
#include "host/drawing/Transient.h"

#include <algorithm>

namespace velmor {
namespace {

constexpr int kAreaColour = 92;
constexpr wchar_t kGuidTag[] = L"CA_GUID";

/// An area that came into a block definition together with its record is part of that block's picture.
bool standsInModelSpace(const AcDbEntity &entity)
{
    const BlockRecord *owner = ownerOf(entity);
    return owner && owner->isModelSpace();
}

} // namespace

AcGePoint3d middleOf(const ZEMGis::Topology::CSection &section)
{
    if (section.GetType() == ZEMGis::Topology::kSectionArc) {
        CZEMCArcPtr arc(section.GetObjectId(), AcDb::kForRead);
        if (arc.isOpen())
            return arc.getPointOnArc();
    }
    const AcGePoint3d a = section.GetStartPoint(), b = section.GetEndPoint();
    return {a.x + (b.x - a.x) / 2.0, a.y + (b.y - a.y) / 2.0, a.z + (b.z - a.z) / 2.0};
}

/// While one lives, changes of entities are the store's own and need no second look.
class CatchmentStore::OwnChange {
public:
    explicit OwnChange(CatchmentStore &store) : m_store(store) { ++m_store.m_ownChanges; }
    ~OwnChange() { --m_store.m_ownChanges; }
    OwnChange(const OwnChange &) = delete;
    OwnChange &operator=(const OwnChange &) = delete;

private:
    CatchmentStore &m_store;
};

CatchmentStore::CatchmentStore(Drawing &drawing) : m_drawing(drawing)
{
    m_drawing.addObserver(*this);
    refresh();
}

CatchmentStore::~CatchmentStore()
{
    m_drawing.removeObserver(*this);
    // Callers may still hold areas.
    for (const auto &[key, area] : m_areas) {
        area->m_store = nullptr;
        area->m_entity = nullptr;
        area->m_sections.clear();
    }
}

CatchmentStore *CatchmentStore::ofWorkingDrawing()
{
    Drawing *drawing = workingDrawing();
    return drawing ? &drawing->component<CatchmentStore>() : nullptr;
}

CatchmentStore::Key CatchmentStore::keyOf(const StoredArea &area)
{
    return {area.m_record.order, area.m_handle};
}

// --- Following the drawing ----------------------------------------------------------------------------------

void CatchmentStore::entityModified(AcDbEntity &entity)
{
    if (m_ownChanges > 0)
        return;
    if (const auto known = m_byEntity.find(&entity); known != m_byEntity.end()) {
        known->second->forgetGeometry();
        m_changed.insert(&entity);
    } else if (m_drawing.data(entity, kAreaDataKey)) {
        m_changed.insert(&entity);
    }
}

void CatchmentStore::entityErased(AcDbEntity &entity, bool)
{
    entityModified(entity);
}

void CatchmentStore::bringUpToDate()
{
    if (m_changed.empty())
        return;
    // In order of handle, so that the outcome does not hang on where the entities lie in memory.
    std::vector<AcDbEntity *> changed(m_changed.begin(), m_changed.end());
    m_changed.clear();
    std::sort(changed.begin(), changed.end(),
              [](const AcDbEntity *a, const AcDbEntity *b) { return handleOf(*a) < handleOf(*b); });
    for (AcDbEntity *entity : changed)
        readEntity(*entity);
}

void CatchmentStore::readEntity(AcDbEntity &entity)
{
    std::optional<AreaRecord> record;
    if (!entity.isErased() && standsInModelSpace(entity))
        if (const auto items = m_drawing.data(entity, kAreaDataKey))
            record = recordFromItems(*items);

    const auto known = m_byEntity.find(&entity);
    if (known == m_byEntity.end()) {
        if (record)
            enter(entity, std::move(*record));
        return;
    }
    const AreaPtr area = known->second;
    if (!record) {
        leave(*area);
    } else if (record->guid != area->m_record.guid) {
        leave(*area);
        enter(entity, std::move(*record));
    } else if (!(*record == area->m_record)) {
        unindex(*area);
        area->m_record = std::move(*record);
        area->m_areSectionsKnown = false;
        index(area);
    }
}

void CatchmentStore::refresh()
{
    m_changed.clear();
    std::vector<AcDbEntity *> known;
    known.reserve(m_areas.size());
    for (const auto &[key, area] : m_areas)
        known.push_back(area->m_entity);
    for (AcDbEntity *entity : known) {
        readEntity(*entity);
        if (const auto area = m_byEntity.find(entity); area != m_byEntity.end())
            area->second->forgetGeometry();
    }
    for (AcDbEntity *entity : m_drawing.entitiesWithData(kAreaDataKey))
        if (!m_byEntity.contains(entity))
            readEntity(*entity);

    m_labels.clear();
    for (AcDbEntity *label : m_drawing.entitiesWithData(kLabelDataKey)) {
        const auto items = m_drawing.data(*label, kLabelDataKey);
        if (items && !items->empty() && standsInModelSpace(*label))
            if (const auto *guid = std::get_if<std::wstring>(&items->front().value))
                m_labels[*guid].push_back(label);
    }
}

CatchmentStore::AreaPtr CatchmentStore::enter(AcDbEntity &entity, AreaRecord record)
{
    // A copy that another program made of an area is no second area of the same GUID.
    if (m_byGuid.contains(record.guid))
        return {};
    const AreaPtr area(new StoredArea(*this, entity, std::move(record)));
    m_byEntity[&entity] = area;
    m_byGuid[area->m_record.guid] = area;
    index(area);
    return area;
}

void CatchmentStore::leave(StoredArea &area)
{
    unmark(area);
    const AreaPtr keep = m_byGuid[area.m_record.guid];
    unindex(area);
    m_byEntity.erase(area.m_entity);
    m_byGuid.erase(area.m_record.guid);
    area.m_store = nullptr;
    area.m_entity = nullptr;
    area.m_sections.clear();
}

void CatchmentStore::index(const AreaPtr &area)
{
    const Key key = keyOf(*area);
    m_areas[key] = area;
    m_nextOrder = std::max(m_nextOrder, key.first + 1);
    ++m_nameUses[area->m_record.name];
    for (const AreaRecord::Share &share : area->m_record.shares)
        m_bySection[share.sectionGuid][key] = area;
}

void CatchmentStore::unindex(StoredArea &area)
{
    const Key key = keyOf(area);
    for (const AreaRecord::Share &share : area.m_record.shares) {
        const auto found = m_bySection.find(share.sectionGuid);
        if (found == m_bySection.end())
            continue;
        found->second.erase(key);
        if (found->second.empty())
            m_bySection.erase(found);
    }
    if (const auto uses = m_nameUses.find(area.m_record.name); uses != m_nameUses.end() && --uses->second == 0)
        m_nameUses.erase(uses);
    m_areas.erase(key);
}

// --- Queries ------------------------------------------------------------------------------------------------

void CatchmentStore::collect(Areas &areas, unsigned mask)
{
    bringUpToDate();
    areas.reserve(areas.size() + m_areas.size());
    for (const auto &[key, area] : m_areas)
        if (area->isOfMask(mask))
            areas.push_back(area);
}

void CatchmentStore::collectBySection(const std::wstring &sectionGuid, Areas &areas, unsigned mask)
{
    bringUpToDate();
    const auto found = m_bySection.find(sectionGuid);
    if (found == m_bySection.end())
        return;
    for (const auto &[key, area] : found->second)
        if (area->isOfMask(mask))
            areas.push_back(area);
}

CatchmentStore::AreaPtr CatchmentStore::byGuid(const std::wstring &guid)
{
    bringUpToDate();
    const auto found = m_byGuid.find(guid);
    return found == m_byGuid.end() ? AreaPtr() : found->second;
}

CatchmentStore::AreaPtr CatchmentStore::own(const ZEMGis::Sewage::CCatchmentArea *area)
{
    bringUpToDate();
    const auto *stored = dynamic_cast<const StoredArea *>(area);
    if (!stored || !stored->isIn(*this))
        return {};
    const auto found = m_byGuid.find(stored->m_record.guid);
    return found == m_byGuid.end() ? AreaPtr() : found->second;
}

std::vector<CatchmentStore::AreaPtr> CatchmentStore::areas()
{
    bringUpToDate();
    std::vector<AreaPtr> all;
    all.reserve(m_areas.size());
    for (const auto &[key, area] : m_areas)
        all.push_back(area);
    return all;
}

double CatchmentStore::netHectares(const StoredArea &area)
{
    double net = area.GetArea();
    std::vector<std::wstring> islands;
    area.GetSubCatchments(islands);
    std::sort(islands.begin(), islands.end());
    islands.erase(std::unique(islands.begin(), islands.end()), islands.end());
    for (const std::wstring &guid : islands)
        if (const AreaPtr island = byGuid(guid); island && island.get() != &area)
            net -= island->GetArea();
    return net;
}

// --- Changes ------------------------------------------------------------------------------------------------

template <class Change>
void CatchmentStore::orLookAgain(AcDbEntity &entity, Change change)
{
    try {
        change();
    } catch (...) { // what the drawing did not take is not the store's either
        m_changed.insert(&entity);
        throw;
    }
}

std::optional<AreaRecord> CatchmentStore::newRecord(const std::wstring &name, int type, const PropertiesPtr &properties)
{
    bringUpToDate();
    AreaRecord record;
    record.order = m_nextOrder;
    record.name = name;
    record.type = type;
    if (properties)
        for (const auto &property : properties->GetProperties()) {
            if (!property || property->GetTag().empty())
                continue;
            if (property->GetTag() == kGuidTag)
                record.guid = static_cast<std::wstring>(property->GetValue());
            else
                record.setProperty(property->GetTag(), property->GetValue());
        }
    if (record.guid.empty()) {
        const JournalPause pause;
        record.guid = ZEMGis::Utility::CUtility::CreateGUID();
    }
    return m_byGuid.contains(record.guid) ? std::nullopt : std::optional(std::move(record));
}

CatchmentStore::AreaPtr CatchmentStore::draw(std::unique_ptr<AcDbEntity> entity, AreaRecord record)
{
    const OwnChange own(*this);
    AcDbEntity &drawn = *entity;
    m_drawing.append(std::move(entity));
    m_drawing.setLayerOf(drawn, m_drawing.ensureLayer(kAreaLayer, kAreaColour));
    m_drawing.setData(drawn, kAreaDataKey, toItems(record));
    return enter(drawn, std::move(record));
}

CatchmentStore::AreaPtr CatchmentStore::create(const std::vector<AcGePoint2d> &ring, const std::wstring &name, int type,
                                               const PropertiesPtr &properties)
{
    auto record = newRecord(name, type, properties);
    if (!record)
        return {};
    std::vector<AcDbPolyline::Vertex> vertices;
    vertices.reserve(ring.size());
    for (const AcGePoint2d &point : ring)
        vertices.push_back({point.x, point.y, 0.0});
    return draw(std::make_unique<AcDbPolyline>(std::move(vertices), true), std::move(*record));
}

CatchmentStore::AreaPtr CatchmentStore::createHidden(const SectionPtr &section, double squareMetres, int type,
                                                     const PropertiesPtr &properties)
{
    if (!section)
        return {};
    std::wstring base = section->GetName();
    if (base.empty())
        base = section->GetHandleText();
    auto record = newRecord({}, type, properties);
    if (!record)
        return {};
    record->name = freeName(base);
    record->hidden = true;
    record->hiddenSquareMetres = storable(squareMetres);
    record->shares.push_back({section->GetGuid(), 1.0});
    return draw(std::make_unique<PointEntity>(middleOf(*section)), std::move(*record));
}

std::wstring CatchmentStore::freeName(const std::wstring &base)
{
    int &number = m_lastNumber[base];
    std::wstring name;
    do
        name = base + L'_' + std::to_wstring(++number);
    while (m_nameUses.contains(name));
    return name;
}

void CatchmentStore::assign(StoredArea &area, const ZEMGis::Sewage::SectionShares &sections)
{
    const AreaPtr keep = m_byGuid.at(area.m_record.guid);
    unindex(area);
    auto &shares = area.m_record.shares;
    shares.clear();
    area.m_areSectionsKnown = false;
    std::unordered_map<std::wstring, std::size_t> place;
    for (const auto &[section, share] : sections) {
        if (!section)
            continue;
        const auto [found, isNew] = place.emplace(section->GetGuid(), shares.size());
        if (isNew)
            shares.push_back({found->first, share});
        else
            shares[found->second].share += share;
    }
    for (AreaRecord::Share &share : shares)
        share.share = storable(share.share);
    index(keep);
    write(area);
}

void CatchmentStore::remove(StoredArea &area)
{
    const OwnChange own(*this);
    const AreaPtr keep = m_byGuid.at(area.m_record.guid);
    eraseLabels(area);
    AcDbEntity &entity = *area.m_entity;
    leave(area);
    orLookAgain(entity, [&] { m_drawing.erase(entity); });
}

void CatchmentStore::write(StoredArea &area)
{
    const OwnChange own(*this);
    orLookAgain(*area.m_entity, [&] { m_drawing.setData(*area.m_entity, kAreaDataKey, toItems(area.m_record)); });
}

void CatchmentStore::rename(StoredArea &area, const std::wstring &name)
{
    if (const auto uses = m_nameUses.find(area.m_record.name); uses != m_nameUses.end() && --uses->second == 0)
        m_nameUses.erase(uses);
    ++m_nameUses[name];
    area.m_record.name = name;
    write(area);
}

// --- Sections -----------------------------------------------------------------------------------------------

void CatchmentStore::connectedSections(const StoredArea &area, ZEMGis::Sewage::SectionShares &sections)
{
    const auto &network = m_drawing.component<Network>();
    const auto &shares = area.m_record.shares;
    if (!area.m_areSectionsKnown || area.m_sectionsRevision != network.sectionsRevision()) {
        area.m_sections.clear();
        for (const AreaRecord::Share &share : shares)
            area.m_sections.push_back(network.sectionByGuid(share.sectionGuid));
        area.m_sectionsRevision = network.sectionsRevision();
        area.m_areSectionsKnown = true;
    }
    sections.reserve(shares.size());
    for (std::size_t i = 0; i < shares.size(); ++i)
        if (area.m_sections[i])
            sections.emplace_back(area.m_sections[i], shares[i].share);
}

std::optional<AcGePoint3d> CatchmentStore::middleOfSection(const StoredArea &area)
{
    const auto &network = m_drawing.component<Network>();
    for (const AreaRecord::Share &share : area.m_record.shares)
        if (const SectionPtr connected = network.sectionByGuid(share.sectionGuid))
            return middleOf(*connected);
    return std::nullopt;
}

} // namespace velmor
