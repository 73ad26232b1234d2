// Sections and nodes of a drawing's network as the contract sees them.
#pragma once

#include "host/network/Network.h"
#include "host/network/NetworkData.h"

namespace velmor {

/// What sections and nodes have in common: a drawing entity with their data attached. An object stays for the life of
/// the drawing, also while its entity is erased, so that an undo brings back the same one.
template <class Base, class Data>
class NetworkEntity : public Base {
public:
    NetworkEntity(Drawing &drawing, AcDbEntity &entity, Data data)
        : m_drawing(drawing), m_entity(entity), m_data(std::move(data))
    {
    }
    AcDbObjectId GetObjectId() const override { return idOf(m_entity); }
    void DrawTemporary(int colour, int flag) override;
    std::wstring GetGuid() const override { return m_data.guid; }
    std::wstring GetName() const override { return m_data.name; }
    /// Properties are data attached under their tag; the name stands in the entity's own record.
    int GetPropertyData(const wchar_t *tag, ZEMGis::Data::CDataBox &box) const override;
    int SetPropertyData(const wchar_t *tag, const ZEMGis::Data::CDataBox &box) override;

    const Data &data() const { return m_data; }
    void setData(Data data) { m_data = std::move(data); }
    AcDbEntity &entity() const { return m_entity; }
    /// False while the entity is erased or has lost its data.
    bool isPresent() const { return !m_withdrawn && !m_entity.isErased(); }
    void setWithdrawn(bool withdrawn) { m_withdrawn = withdrawn; }

protected:
    Drawing &m_drawing;
    AcDbEntity &m_entity;
    Data m_data;
    bool m_withdrawn = false;

private:
    bool rename(const ZEMGis::Data::CDataBox &box);
};

class NodeEntity final : public NetworkEntity<ZEMGis::Topology::CNode, NodeData> {
public:
    using NetworkEntity::NetworkEntity;
};

class SectionEntity final : public NetworkEntity<ZEMGis::Topology::CSection, SectionData> {
public:
    using NetworkEntity::NetworkEntity;
    ZEMGis::Topology::enmSectionType GetType() const override;
    double GetLength2D() const override;
    boost::shared_ptr<ZEMGis::Topology::CNode> GetStartingNode() const override;
    boost::shared_ptr<ZEMGis::Topology::CNode> GetEndingNode() const override;
    AcGePoint3d GetStartPoint() const override;
    AcGePoint3d GetEndPoint() const override;
};

} // namespace velmor
