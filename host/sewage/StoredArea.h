// One catchment area of the store, as the contracts hand it out.
#pragma once

#include "host/sewage/AreaRecord.h"

namespace velmor {

class CatchmentStore;

/// Works on its record and writes it back to the drawing at every change. An area that was deleted keeps answering
/// from its record, names no entity any more and changes nothing in the drawing.
class StoredArea final : public ZEMGis::Sewage::CCatchmentArea {
public:
    using SectionPtr = boost::shared_ptr<ZEMGis::Topology::CSection>;

    StoredArea(CatchmentStore &store, AcDbEntity &entity, AreaRecord record);

    // CEntity
    AcDbObjectId GetObjectId() const override;
    void DrawTemporary(int colour, int flag) override;
    std::wstring GetGuid() const override { return m_record.guid; }
    std::wstring GetName() const override { return m_record.name; }
    int GetPropertyData(const wchar_t *tag, ZEMGis::Data::CDataBox &box) const override;
    int SetPropertyData(const wchar_t *tag, const ZEMGis::Data::CDataBox &box) override;

    // CCatchmentArea
    void Mark(int colour, double scale, double angle, const wchar_t *pattern, int flag) override;
    void UnMark() override;
    int GetType() const override { return m_record.type; }
    void SetType(int mask) override;
    int IsHidden() const override { return m_record.hidden ? 1 : 0; }
    double GetArea() const override;
    double GetFlowCoeff() const override;
    void SetFlowCoeff(double coefficient) override;
    double GetPopulation() const override;
    void SetPopulation(double population) override;
    AcGePoint3d GetCenterPoint() const override;
    int GetConnectedSections(ZEMGis::Sewage::SectionShares &sections) const override;
    int SetConnectedSectionShare(SectionPtr section, double share, int flag) override;
    int GetSubCatchments(std::vector<std::wstring> &guids) const override;
    void SetName(const std::wstring &name) override;

    // For the store
    const AreaRecord &record() const { return m_record; }
    /// Null for a deleted area.
    AcDbEntity *entity() const { return m_entity; }
    bool isIn(const CatchmentStore &store) const { return m_store == &store; }
    /// True when the area has any bit of the mask; all three bits mean every area.
    bool isOfMask(unsigned mask) const;
    /// The entity changed its shape.
    void forgetGeometry() { m_geometryKnown = false; }

private:
    friend class CatchmentStore;
    /// Lets the store take in what happened to the drawing; the area may be out of the store after it.
    void settle();
    void setNumber(const wchar_t *tag, double value);
    void knowGeometry() const;

    CatchmentStore *m_store; ///< null when the area was deleted or the drawing is gone
    AcDbEntity *m_entity;
    std::uint64_t m_handle; ///< of the entity; an entity that was undone has none any more
    AreaRecord m_record;
    /// Behind the shares in their order, null for a section that isn't there; as long as the network has this revision.
    mutable std::vector<SectionPtr> m_sections;
    mutable std::uint64_t m_sectionsRevision = 0;
    mutable bool m_areSectionsKnown = false;
    mutable bool m_geometryKnown = false;
    mutable double m_squareMetres = 0.0;
    mutable AcGePoint3d m_centre;
};

} // namespace velmor
