// What the module asks of the network: sections (pipes) with their nodes (manholes), lookups, a spatial index, and
// catalogues. Nothing of the network but names and properties is changed from here.
//
// Lengths are drawing units. All lookups answer null for "none"; nothing throws.
#pragma once

#include "contracts/CoreServices.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace ZEMGis {
namespace Topology {

/// Stands for a length, an area or a share that is not known.
inline constexpr double kUnknownValue = -1000000.0;

/// The property of a section or a node that is its name: what is set there GetName tells from then on. Only a text that
/// is not empty is taken, and none on a locked layer.
inline constexpr wchar_t kNameProperty[] = L"VELMOR_NAME";

/// Base of sections, nodes and catchment areas. Two entities are the same when their GUIDs are.
class ZEMX_CONTRACT CEntity {
public:
    virtual ~CEntity();
    virtual AcDbObjectId GetObjectId() const = 0;
    /// Handle of the drawing entity as text; empty when there is none.
    virtual std::wstring GetHandleText() const;
    /// Draws in a colour index without touching the drawing; wiped by acedRedraw(null, 4). flag is 0.
    virtual void DrawTemporary(int colour, int flag) = 0;
    virtual std::wstring GetGuid() const = 0;
    virtual std::wstring GetName() const = 0;
    /// The box stays null, and 0 comes back, when there is no such property.
    virtual int GetPropertyData(const wchar_t *tag, Data::CDataBox &box) const = 0;
    /// Not 0 when the value was taken.
    virtual int SetPropertyData(const wchar_t *tag, const Data::CDataBox &box) = 0;
};

class ZEMX_CONTRACT CNode : public CEntity {};

enum enmSectionType { kSectionStraight = 1, kSectionArc = 2 };

class ZEMX_CONTRACT CSection : public CEntity {
public:
    virtual enmSectionType GetType() const = 0;
    /// Plan length, or kUnknownValue.
    virtual double GetLength2D() const = 0;
    virtual boost::shared_ptr<CNode> GetStartingNode() const = 0;
    virtual boost::shared_ptr<CNode> GetEndingNode() const = 0;
    virtual AcGePoint3d GetStartPoint() const = 0;
    virtual AcGePoint3d GetEndPoint() const = 0;
};

/// The network of the active drawing.
class ZEMX_CONTRACT CTopologyStorage {
public:
    virtual ~CTopologyStorage();
    virtual boost::shared_ptr<CSection> GetSectionById(const AcDbObjectId &id) const = 0;
    virtual boost::shared_ptr<CSection> GetSectionByHandle(const wchar_t *handleText) const = 0;
    virtual boost::shared_ptr<CSection> GetSectionByGuid(const wchar_t *guid) const = 0;
};

class ZEMX_CONTRACT CTopologyMultiStorage {
public:
    static CTopologyMultiStorage *Instance();
    /// Never null; an empty network without a drawing. Called afresh at each use.
    boost::shared_ptr<CTopologyStorage> &GetTopology();
};

class ZEMX_CONTRACT CSpatialIndex {
public:
    virtual ~CSpatialIndex();
    /// The entity nearest to the point within the radius, or null. radius becomes its distance.
    virtual CEntity *GetClosestEntity(const AcGePoint3d &point, double *radius) const = 0;
};

class ZEMX_CONTRACT CTopoEditor {
public:
    static CTopoEditor *Instance();
    /// The entities stay the caller's and must outlive the index.
    boost::shared_ptr<CSpatialIndex> CreateCustomSpatialIndex(std::vector<CEntity *> &entities);
};

} // namespace Topology

namespace Data {

class ZEMX_CONTRACT CCatalogItem {
public:
    virtual ~CCatalogItem();
    virtual int IsGroup() const = 0;
    virtual std::wstring GetName() const = 0;
};

class ZEMX_CONTRACT CCatalog {
public:
    virtual ~CCatalog();
    using ElementsMap = std::map<std::wstring, boost::shared_ptr<CCatalogItem>>;
    /// Null when there is none; owned by the catalogue.
    virtual ElementsMap *GetAllElementsMap() = 0;
};

class ZEMX_CONTRACT CCatalogManager {
public:
    static CCatalogManager *Instance();
    /// Null for an unknown name. Items live as long as the program. flag is 1.
    boost::shared_ptr<CCatalog> GetCatalog(const wchar_t *name, int flag);
};

/// A tagged value.
class ZEMX_CONTRACT CProperty {
public:
    void SetTag(const wchar_t *tag) { m_tag = tag; }
    void SetValue(const CDataBox &value) { m_value = value; }
    const std::wstring &GetTag() const { return m_tag; }
    const CDataBox &GetValue() const { return m_value; }

private:
    std::wstring m_tag;
    CDataBox m_value;
};

/// A bag of properties in the order they were added; it shares what it is given.
class ZEMX_CONTRACT CProperties {
public:
    void AddProperty(boost::shared_ptr<CProperty> property) { m_properties.push_back(std::move(property)); }
    const std::vector<boost::shared_ptr<CProperty>> &GetProperties() const { return m_properties; }

private:
    std::vector<boost::shared_ptr<CProperty>> m_properties;
};

} // namespace Data
} // namespace ZEMGis
