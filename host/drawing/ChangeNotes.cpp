// What the change log is told before a change is made: each note keeps what leads back.
#include "host/drawing/ChangeLog.h"

#include "host/drawing/ChangeRecord.h"

#include <algorithm>
#include <utility>

namespace velmor {

void ChangeLog::note(Change change)
{
    if (!m_applying)
        m_changes.push_back(std::move(change));
}

void ChangeLog::noteAppended(AcDbEntity &entity)
{
    note(changeOf(ChangeKind::Appended, &entity));
}

void ChangeLog::noteAttribute(AttributeEntity &attribute, unsigned flagsOfReference)
{
    Change change = changeOf(ChangeKind::Attribute, &attribute);
    change.flags = static_cast<std::uint16_t>(flagsOfReference & kPatchFlags);
    note(std::move(change));
}

void ChangeLog::noteErasing(AcDbEntity &entity)
{
    note(changeOf(ChangeKind::Erased, &entity));
}

bool ChangeLog::noteAid(AcDbEntity &entity)
{
    // What an earlier step made is known to it and to its followers.
    const auto made = [&](const Change &change) {
        return change.kind == ChangeKind::Appended && change.object == &entity;
    };
    if (!isRunning() || std::find_if(m_changes.rbegin(), m_changes.rend(), made) == m_changes.rend())
        return false;
    m_aids.insert(&entity);
    return true;
}

void ChangeLog::noteLook(AcDbEntity &entity)
{
    if (m_applying)
        return;
    Change change = changeOf(ChangeKind::Look, &entity);
    change.layer = ObjectAccess::host(entity).layer;
    change.color = ObjectAccess::host(entity).color;
    note(std::move(change));
}

void ChangeLog::noteShape(AcDbEntity &entity)
{
    if (m_applying)
        return;
    // A hatch is set up by a row of setters, each of which is one change.
    const std::size_t first = m_runs.empty() ? 0 : m_runs.back().first;
    if (m_changes.size() > first && m_changes.back().kind == ChangeKind::Shape && m_changes.back().object == &entity)
        return;
    note(changeOf(ChangeKind::Shape, &entity, shapeOf(entity)));
}

void ChangeLog::noteText(TextEntity &text)
{
    if (!m_applying)
        note(changeOf(ChangeKind::Text, &text, text.shape().text));
}

void ChangeLog::noteData(AcDbObject &object, const std::string &key)
{
    if (!m_applying)
        note(changeOf(ChangeKind::Data, &object, recordState(m_drawing.priv(), &object, {}, key)));
}

void ChangeLog::noteEntry(const std::string &dictionary, const std::string &key)
{
    if (!m_applying)
        note(changeOf(ChangeKind::Entry, nullptr, recordState(m_drawing.priv(), nullptr, dictionary, key)));
}

void ChangeLog::noteHeader(const std::string &name)
{
    if (m_applying)
        return;
    HeaderState state{name, {}};
    const auto &header = m_drawing.priv().header;
    if (const auto found = header.find(name); found != header.end())
        state.variable = found->second;
    note(changeOf(ChangeKind::Header, nullptr, std::move(state)));
}

void ChangeLog::noteLayerAdded(std::size_t index)
{
    Change change{ChangeKind::LayerAdded};
    change.layer = static_cast<std::uint32_t>(index);
    note(std::move(change));
}

void ChangeLog::noteLayer(std::size_t index)
{
    if (m_applying)
        return;
    Change change = changeOf(ChangeKind::Layer, nullptr, layerState(m_drawing.priv(), index));
    change.layer = static_cast<std::uint32_t>(index);
    note(std::move(change));
}

void ChangeLog::noteLayerName(std::size_t index)
{
    Change change = changeOf(ChangeKind::LayerName, nullptr, m_drawing.priv().layers[index].name);
    change.layer = static_cast<std::uint32_t>(index);
    note(std::move(change));
}

void ChangeLog::noteCurrentLayer()
{
    Change change{ChangeKind::CurrentLayer};
    change.layer = static_cast<std::uint32_t>(m_drawing.priv().currentLayer);
    note(std::move(change));
}

void ChangeLog::noteBlockAdded(BlockRecord &block)
{
    note(changeOf(ChangeKind::BlockAdded, &block));
}

void ChangeLog::noteBlockErasing(BlockRecord &block)
{
    note(changeOf(ChangeKind::BlockErased, &block, BlockState{ObjectAccess::erasedWithIt(block), {}}));
}

void ChangeLog::noteBasePoint(BlockRecord &block)
{
    note(changeOf(ChangeKind::BasePoint, &block, BlockState{{}, block.basePoint()}));
}

} // namespace velmor
