#include "host/editor/Selection.h"

#include "host/drawing/ObjectAccess.h"

#include <algorithm>

namespace velmor {

Selection::Selection(Drawing &drawing) : m_drawing(drawing)
{
    m_drawing.addObserver(*this);
}

Selection::~Selection()
{
    m_drawing.removeObserver(*this);
}

AcDbEntity *Selection::livingEntity(const AcDbObjectId &id) const
{
    AcDbObject *object = ObjectAccess::object(id);
    if (!object || object->isErased() || !object->isKindOf(AcDbEntity::desc()))
        return nullptr;
    auto *entity = static_cast<AcDbEntity *>(object);
    return ownerOf(*entity) == &m_drawing.modelSpace() ? entity : nullptr;
}

bool Selection::append(const AcDbObjectId &id)
{
    const AcDbEntity *entity = livingEntity(id);
    if (!entity || !m_known.insert(entity).second)
        return false;
    m_members.push_back(id);
    m_entities.push_back(entity);
    return true;
}

void Selection::set(std::span<const AcDbObjectId> ids)
{
    if (ids.empty() && m_known.empty())
        return;
    // Ids may be a view of our own members.
    const std::vector<AcDbObjectId> wanted(ids.begin(), ids.end());
    m_members.clear();
    m_entities.clear();
    m_known.clear();
    for (const AcDbObjectId &id : wanted)
        append(id);
    tellChange();
}

void Selection::add(std::span<const AcDbObjectId> ids)
{
    dropUnknown();
    bool isChanged = false;
    const std::vector<AcDbObjectId> wanted(ids.begin(), ids.end());
    for (const AcDbObjectId &id : wanted)
        isChanged = append(id) || isChanged;
    if (isChanged)
        tellChange();
}

void Selection::remove(std::span<const AcDbObjectId> ids)
{
    dropUnknown();
    std::size_t removed = 0;
    for (const AcDbObjectId &id : ids)
        if (const AcDbObject *object = ObjectAccess::object(id); object && object->isKindOf(AcDbEntity::desc()))
            removed += m_known.erase(static_cast<const AcDbEntity *>(object));
    if (removed != 0)
        tellChange();
}

void Selection::entityErased(AcDbEntity &entity, bool erased)
{
    if (!erased || m_known.erase(&entity) == 0)
        return;
    if (m_known.size() + 1 == m_entities.size())
        tellChange();
}

void Selection::dropUnknown() const
{
    if (m_known.size() == m_entities.size())
        return;
    std::vector<const AcDbEntity *> kept;
    AcDbObjectIdArray ids;
    for (std::size_t i = 0; i < m_entities.size(); ++i) {
        if (m_known.contains(m_entities[i])) {
            kept.push_back(m_entities[i]);
            ids.push_back(m_members[i]);
        }
    }
    m_entities = std::move(kept);
    m_members = std::move(ids);
}

std::shared_ptr<void> Selection::onChange(std::function<void()> listener)
{
    auto handle = std::make_shared<std::function<void()>>(std::move(listener));
    m_listeners.push_back(handle);
    return handle;
}

void Selection::tellChange()
{
    ++m_revision;
    std::erase_if(m_listeners, [](const auto &listener) { return listener.expired(); });
    const auto present = m_listeners; // a listener may add another one
    for (const auto &listener : present)
        if (const auto call = listener.lock())
            (*call)();
}

} // namespace velmor
