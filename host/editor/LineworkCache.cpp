#include "host/editor/LineworkCache.h"

#include "host/drawing/Entities.h"
#include "host/editor/CurvePieces.h"
#include "host/editor/Words.h"

#include <algorithm>

namespace velmor {

namespace {

using boundary::Linework;
using boundary::Piece;

constexpr std::size_t kKeptSets = 4;

/// The entity, when it can be read now. waits: it is open elsewhere and can be read later.
AcDbEntity *entityOf(const AcDbObjectId &id, bool *waits = nullptr)
{
    AcDbEntity *entity = nullptr;
    const Acad::ErrorStatus status = acdbOpenAcDbEntity(entity, id, AcDb::kForRead);
    if (waits)
        *waits = status == Acad::eWasOpenForWrite;
    if (status != Acad::eOk)
        return nullptr;
    entity->close();
    return entity;
}

} // namespace

LineworkCache::LineworkCache(Drawing &drawing) : m_drawing(drawing)
{
    m_drawing.addObserver(*this);
}

LineworkCache::~LineworkCache()
{
    m_drawing.removeObserver(*this);
}

std::uint32_t LineworkCache::sourceOf(const AcDbEntity &entity)
{
    if (!std::exchange(m_numbered, true)) {
        const auto &all = m_drawing.modelSpace().entities();
        m_known.assign(all.begin(), all.end());
        std::sort(m_known.begin(), m_known.end(), std::less<>());
    }
    const auto place = std::lower_bound(m_known.begin(), m_known.end(), &entity, std::less<>());
    if (place != m_known.end() && *place == &entity)
        return static_cast<std::uint32_t>(place - m_known.begin());
    const auto next = static_cast<std::uint32_t>(m_known.size() + m_later.size());
    return m_later.try_emplace(&entity, next).first->second;
}

bool LineworkCache::isInModelSpace(const AcDbEntity &entity) const
{
    return ownerOf(entity) == &m_drawing.modelSpace();
}

bool LineworkCache::isVisible(std::size_t layer) const
{
    return m_drawing.layer(layer).visible();
}

std::vector<bool> LineworkCache::layerStates() const
{
    std::vector<bool> states;
    for (const Layer &layer : m_drawing.layers())
        states.push_back(layer.visible());
    return states;
}

void LineworkCache::insert(Linework &linework, const AcDbEntity &entity, std::uint32_t source, bool onlyVisible) const
{
    const PieceMaker maker(m_drawing,
                           [this, onlyVisible](std::size_t layer) { return !onlyVisible || isVisible(layer); });
    std::vector<Piece> pieces;
    maker.append(entity, source, pieces);
    linework.insert(pieces);
}

Linework LineworkCache::build(const std::vector<const AcDbEntity *> &entities, bool onlyVisible)
{
    ++m_builds;
    const PieceMaker maker(m_drawing,
                           [this, onlyVisible](std::size_t layer) { return !onlyVisible || isVisible(layer); });
    std::vector<Piece> pieces;
    for (const AcDbEntity *entity : entities)
        maker.append(*entity, sourceOf(*entity), pieces);
    return Linework(std::move(pieces));
}

void LineworkCache::dropVisibleIfLayersChanged()
{
    // New layers come at the end; only a change of those that were there makes the linework stale.
    auto states = layerStates();
    if (states.size() < m_layerStates.size() || !std::equal(m_layerStates.begin(), m_layerStates.end(), states.begin()))
        m_visible.reset();
    else
        m_layerStates = std::move(states);
}

Linework &LineworkCache::visible()
{
    if (m_visible && m_checkedRevision != m_drawing.revision())
        dropVisibleIfLayersChanged();
    if (!m_visible) {
        std::vector<const AcDbEntity *> entities;
        for (const AcDbEntity *entity : m_drawing.modelSpace().entities()) {
            if (!entity->isErased() && PieceMaker::isLinework(*entity) && isVisible(layerIndexOf(*entity)))
                entities.push_back(entity);
        }
        m_visible = build(entities, true);
        m_layerStates = layerStates();
    }
    m_checkedRevision = m_drawing.revision();
    return *m_visible;
}

Linework &LineworkCache::ofSet(const SelectionSet &set)
{
    const auto kept = std::ranges::find(m_sets, set.id(), &SetLinework::id);
    if (kept != m_sets.end() && kept->revision == set.revision()) {
        m_sets.splice(m_sets.begin(), m_sets, kept);
        takeInClosed(m_sets.front());
        return m_sets.front().linework;
    }
    if (kept != m_sets.end())
        m_sets.erase(kept);
    SetLinework entry{set.id(), set.revision(), {}, {}, {}};
    std::vector<const AcDbEntity *> entities;
    for (const AcDbObjectId &id : set.members()) {
        bool waits = false;
        AcDbEntity *entity = entityOf(id, &waits);
        if (waits)
            entry.waiting.push_back(id);
        if (entity && PieceMaker::isLinework(*entity) && isInModelSpace(*entity)) {
            entities.push_back(entity);
            entry.members.push_back(sourceOf(*entity));
        }
    }
    std::ranges::sort(entry.members);
    entry.linework = build(entities, false);
    m_sets.push_front(std::move(entry));
    if (m_sets.size() > kKeptSets)
        m_sets.pop_back();
    return m_sets.front().linework;
}

bool LineworkCache::hasSet(const SelectionSet &set) const
{
    const auto kept = std::ranges::find(m_sets, set.id(), &SetLinework::id);
    return kept != m_sets.end() && kept->revision == set.revision();
}

void LineworkCache::takeInClosed(SetLinework &entry)
{
    std::erase_if(entry.waiting, [&](const AcDbObjectId &id) {
        bool waits = false;
        AcDbEntity *entity = entityOf(id, &waits);
        if (entity && PieceMaker::isLinework(*entity) && isInModelSpace(*entity)) {
            const std::uint32_t source = sourceOf(*entity);
            entry.members.insert(std::ranges::upper_bound(entry.members, source), source);
            insert(entry.linework, *entity, source, false);
        }
        return !waits;
    });
}

Linework &LineworkCache::ofEntities(const AcDbObjectIdArray &ids)
{
    std::vector<const AcDbEntity *> entities;
    for (const AcDbObjectId &id : ids) {
        AcDbEntity *entity = entityOf(id);
        if (entity && PieceMaker::isLinework(*entity) && isInModelSpace(*entity))
            entities.push_back(entity);
    }
    return m_other.emplace(build(entities, false));
}

Linework &LineworkCache::ofLayers(const std::vector<std::wstring> &names)
{
    std::vector<const AcDbEntity *> entities;
    for (const AcDbEntity *entity : m_drawing.modelSpace().entities()) {
        if (entity->isErased() || !PieceMaker::isLinework(*entity))
            continue;
        const std::wstring &layer = m_drawing.layer(layerIndexOf(*entity)).name;
        if (std::ranges::any_of(names, [&](const std::wstring &name) { return sameText(name, layer); }))
            entities.push_back(entity);
    }
    return m_other.emplace(build(entities, false));
}

void LineworkCache::drop(std::int64_t setId)
{
    m_sets.remove_if([&](const SetLinework &entry) { return entry.id == setId; });
}

void LineworkCache::forgetAll()
{
    m_visible.reset();
    m_sets.clear();
}

void LineworkCache::entityAppended(AcDbEntity &entity)
{
    update(entity, true);
}

void LineworkCache::entityModified(AcDbEntity &entity)
{
    update(entity, !entity.isErased());
}

void LineworkCache::entityErased(AcDbEntity &entity, bool erased)
{
    if (!erased) // a set that was built meanwhile may hold it without knowing
        m_sets.clear();
    update(entity, !erased);
}

void LineworkCache::update(AcDbEntity &entity, bool present)
{
    if ((!m_visible && m_sets.empty()) || !PieceMaker::isLinework(entity))
        return;
    if (!isInModelSpace(entity)) {
        // Paper space bounds nothing; a definition shows in all of its references.
        const BlockRecord *owner = ownerOf(entity);
        if (owner && !owner->isLayout())
            forgetAll();
        return;
    }
    const std::uint32_t source = sourceOf(entity);
    const auto renew = [&](Linework &linework, bool here, bool onlyVisible) {
        linework.remove(source);
        if (here)
            insert(linework, entity, source, onlyVisible);
    };
    // A layer may be hidden now and shown again before the next question: what is inserted goes by the layers of now,
    // so they must be those that the rest was built with.
    if (m_visible)
        dropVisibleIfLayersChanged();
    if (m_visible)
        renew(*m_visible, present && isVisible(layerIndexOf(entity)), true);
    for (SetLinework &entry : m_sets) {
        if (std::ranges::binary_search(entry.members, source))
            renew(entry.linework, present, false);
    }
}

} // namespace velmor
