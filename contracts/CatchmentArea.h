// What the module asks of the catchment store: areas with their type, parameters, sections and labels.
//
// The type mask has bit 1 catchment, bit 2 house, bit 4 industrial; "of a mask" means any common bit, and a mask that
// holds all three (7) means every area, one without any of the bits too. Areas come in hectares, shares as fractions of
// 1. The manager owns every area; null means not found.
#pragma once

#include "contracts/NetworkTopology.h"

#include <utility>

namespace ZEMGis::Sewage {

using SectionShare = std::pair<boost::shared_ptr<Topology::CSection>, double>;
using SectionShares = std::vector<SectionShare>;

enum CatchmentTypeMask { kTypeCatchment = 1, kTypeHouse = 2, kTypeIndustrial = 4, kTypeAll = 7 };

class ZEMX_CONTRACT CCatchmentArea : public Topology::CEntity {
public:
    /// Draws the area's hatch as a transient mark; angle in radians, flag 0. A second mark replaces the first.
    virtual void Mark(int colour, double scale, double angle, const wchar_t *pattern, int flag) = 0;
    virtual void UnMark() = 0;
    virtual int GetType() const = 0;
    virtual void SetType(int mask) = 0;
    /// Not 0 for an area without a polygon of its own.
    virtual int IsHidden() const = 0;
    /// Hectares: the gross area of the ring, or what SetHiddenCA was given over 10000.
    virtual double GetArea() const = 0;
    virtual double GetFlowCoeff() const = 0;
    virtual void SetFlowCoeff(double coefficient) = 0;
    virtual double GetPopulation() const = 0;
    virtual void SetPopulation(double population) = 0;
    /// Area centroid of a counter-clockwise ring, vertex mean of any other; a hidden area's section's middle.
    virtual AcGePoint3d GetCenterPoint() const = 0;
    /// Replaces the vector; not 0 when there are sections.
    virtual int GetConnectedSections(SectionShares &sections) const = 0;
    /// Changes only that one share; 0 for a null section or one that is not connected. flag is 1.
    virtual int SetConnectedSectionShare(boost::shared_ptr<Topology::CSection> section, double share, int flag) = 0;
    /// Replaces the vector with the GUIDs of the dependent areas; their number.
    virtual int GetSubCatchments(std::vector<std::wstring> &guids) const = 0;
    virtual void SetName(const std::wstring &name) = 0;
};

using CatchmentAreas = std::vector<boost::shared_ptr<CCatchmentArea>>;

class ZEMX_CONTRACT CCatchmentAreaManager {
public:
    static CCatchmentAreaManager *Instance();
    /// A new area from the well-known text of its polygon; null for text that makes no ring.
    boost::shared_ptr<CCatchmentArea> CreateCA(const std::wstring &polygonText, const std::wstring &name, int typeMask,
                                               boost::shared_ptr<Data::CProperties> properties);
    /// A new area without a polygon on one section (share 1.0); square metres. Null for a null section.
    boost::shared_ptr<CCatchmentArea> SetHiddenCA(boost::shared_ptr<Topology::CSection> section, double areaSquareMetres,
                                                  int typeMask, boost::shared_ptr<Data::CProperties> properties);
    /// Replaces the area's connected sections.
    void AssignCA(const SectionShares &sections, boost::shared_ptr<CCatchmentArea> area);
    /// Removes that one area with its drawing, label and mark.
    void DeleteCA(boost::shared_ptr<CCatchmentArea> area);
    /// Fills the vector (cleared first) in order of creation, hidden areas included; the number of areas.
    int GetAllCatchmentAreas(CatchmentAreas &areas, unsigned mask) const;
    int GetCABySection(boost::shared_ptr<Topology::CSection> section, CatchmentAreas &areas, unsigned mask) const;
    boost::shared_ptr<CCatchmentArea> GetCatchmentAreaByGuid(const std::wstring &guid) const;
    /// Brings the store up to date with the drawing: areas whose entity was erased go, edited ones are read anew.
    bool RefreshExistingCatchments();
    void UnMarkAllCatchments(unsigned mask);
    /// Label from a block, one attribute value for each tag; a second label replaces the first. 0: nothing written.
    int WriteCatchmentLabel(boost::shared_ptr<CCatchmentArea> area, AcDbObjectId block, const CStringArray &tags);
    int WriteCatchmentLabel(boost::shared_ptr<CCatchmentArea> area, Data::CCatalogItem *item);
    int DeleteCatchmentLabel(boost::shared_ptr<CCatchmentArea> area);
    /// The index over which the area pick works.
    static void SetSpatialIndexCA(boost::shared_ptr<Topology::CSpatialIndex> index);
    /// One interactive pick with a tool tip of the area under the cursor; RTNORM when a pick was made, on an area or
    /// beside all of them.
    static int StartCAInfoTooltipAreas();
    static void StartCAInfoTooltipSections();
    /// The area of the last pick; null after a miss. Valid until the next pick.
    static CCatchmentArea *GetInteractivelySelectedCA();
};

} // namespace ZEMGis::Sewage
