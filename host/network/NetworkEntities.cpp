#include "host/network/NetworkEntities.h"

#include "host/drawing/Entities.h"
#include "host/drawing/Journal.h"
#include "host/drawing/Transient.h"
#include "host/services/DataBox.h"
#include "host/services/Text.h"

#include <cmath>

namespace velmor {

using ZEMGis::Data::CDataBox;

namespace {

bool isNameTag(const wchar_t *tag)
{
    return tag && tag == std::wstring_view(ZEMGis::Topology::kNameProperty);
}

const char *recordKeyOf(const SectionData &)
{
    return kSectionKey;
}
const char *recordKeyOf(const NodeData &)
{
    return kNodeKey;
}

/// Keys of the network's own records can't be used as properties.
std::optional<std::string> propertyKey(const wchar_t *tag)
{
    const std::string key = tag ? utf8(tag) : std::string();
    return key.empty() || key.starts_with("VELMOR_") ? std::nullopt : std::optional(key);
}

} // namespace

template <class Base, class Data>
void NetworkEntity<Base, Data>::DrawTemporary(int colour, int flag)
{
    journal("CEntity::DrawTemporary", GetObjectId(), colour, flag);
    m_drawing.template component<TransientGraphics>().drawTemporary(m_entity, colour);
}

template <class Base, class Data>
int NetworkEntity<Base, Data>::GetPropertyData(const wchar_t *tag, CDataBox &box) const
{
    box = isNameTag(tag) ? CDataBox(m_data.name) : CDataBox();
    if (const auto key = propertyKey(tag))
        if (const auto items = m_drawing.data(m_entity, *key))
            box = boxOf(*items);
    return box.IsNotNull() ? 1 : 0;
}

template <class Base, class Data>
int NetworkEntity<Base, Data>::SetPropertyData(const wchar_t *tag, const CDataBox &box)
{
    journal("CEntity::SetPropertyData", GetObjectId(), tag, describe(box));
    if (isNameTag(tag))
        return rename(box) ? 1 : 0;
    const auto key = propertyKey(tag);
    if (!key || !isPresent())
        return 0;
    m_drawing.setData(m_entity, *key, itemsOf(box));
    return 1;
}

template <class Base, class Data>
bool NetworkEntity<Base, Data>::rename(const CDataBox &box)
{
    // What stands on a locked layer keeps its name as well.
    const auto *name = std::get_if<std::wstring>(&box.value());
    if (!name || name->empty() || !isPresent() || m_drawing.layer(layerIndexOf(m_entity)).locked)
        return false;
    Data renamed = m_data;
    renamed.name = *name;
    // The drawing tells the network, which takes the name up and brings its lookups in step.
    if (renamed != m_data)
        m_drawing.setData(m_entity, recordKeyOf(renamed), itemsOf(renamed));
    return true;
}

template class NetworkEntity<ZEMGis::Topology::CNode, NodeData>;
template class NetworkEntity<ZEMGis::Topology::CSection, SectionData>;

ZEMGis::Topology::enmSectionType SectionEntity::GetType() const
{
    return kindOf(m_entity) == EntityKind::Arc ? ZEMGis::Topology::kSectionArc : ZEMGis::Topology::kSectionStraight;
}

double SectionEntity::GetLength2D() const
{
    if (m_data.length < 0.0)
        return ZEMGis::Topology::kUnknownValue;
    if (m_data.length > 0.0 && m_data.drawnLength == 0.0)
        return m_data.length;
    const double drawn = planLengthOf(m_entity).value_or(ZEMGis::Topology::kUnknownValue);
    if (m_data.length == 0.0 || drawn < 0.0)
        return drawn;
    return drawn == m_data.drawnLength ? m_data.length : m_data.length * (drawn / m_data.drawnLength);
}

boost::shared_ptr<ZEMGis::Topology::CNode> SectionEntity::GetStartingNode() const
{
    return m_drawing.component<Network>().nodeByGuid(m_data.startNode);
}

boost::shared_ptr<ZEMGis::Topology::CNode> SectionEntity::GetEndingNode() const
{
    return m_drawing.component<Network>().nodeByGuid(m_data.endNode);
}

AcGePoint3d SectionEntity::GetStartPoint() const
{
    const auto ends = endsOf(m_entity);
    return ends ? ends->start : AcGePoint3d();
}

AcGePoint3d SectionEntity::GetEndPoint() const
{
    const auto ends = endsOf(m_entity);
    return ends ? ends->end : AcGePoint3d();
}

} // namespace velmor
