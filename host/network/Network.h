// The sewage network of a drawing: sections and nodes that stand on drawing entities with attached data.
//
// The drawing alone carries the network: a section is a line, an arc or a polyline of model space with the attached key
// "VELMOR_SECTION", a node a point or a block reference with "VELMOR_NODE" (see NetworkData.h). Lengths are drawing
// units (metres). The network is made at the first question and follows the drawing's changes from then on; a lookup
// costs the same at every size.
#pragma once

#include "contracts/NetworkTopology.h"
#include "host/drawing/Drawing.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velmor {

class Network final : public ZEMGis::Topology::CTopologyStorage, private DrawingObserver {
public:
    using SectionPtr = boost::shared_ptr<ZEMGis::Topology::CSection>;
    using NodePtr = boost::shared_ptr<ZEMGis::Topology::CNode>;

    explicit Network(Drawing &drawing); ///< made by Drawing::component
    ~Network() override;

    /// Sections in the order in which they stand in the drawing, erased ones left out.
    const std::vector<SectionPtr> &sections() const;
    const std::vector<NodePtr> &nodes() const;
    SectionPtr sectionByName(const std::wstring &name) const; ///< exact; the first of several
    NodePtr nodeByName(const std::wstring &name) const;
    NodePtr nodeByGuid(const std::wstring &guid) const;
    SectionPtr sectionByGuid(const std::wstring &guid) const; ///< null for an empty one
    /// Grows whenever a section came, went, or got another GUID or name.
    std::uint64_t sectionsRevision() const;
    /// All sections that drain through the node, or through the section when no node has the name (that one first),
    /// nearest first by the number of sections between, each once.
    std::vector<SectionPtr> upstreamOf(const std::wstring &nodeOrSectionName) const;

    SectionPtr GetSectionById(const AcDbObjectId &id) const override;
    SectionPtr GetSectionByHandle(const wchar_t *handleText) const override;
    SectionPtr GetSectionByGuid(const wchar_t *guid) const override;

private:
    void entityAppended(AcDbEntity &entity) override;
    void entityModified(AcDbEntity &entity) override;
    void entityErased(AcDbEntity &entity, bool erased) override;
    struct Private;
    std::unique_ptr<Private> d;
};

struct NetworkImportOptions {
    bool withPolygons = false; ///< bring subcatchment polygons in as closed boundary linework
};

struct NetworkImportResult {
    FileStatus status = FileStatus::Ok;
    std::string message; ///< one line when nothing was imported
    std::size_t nodes = 0, sections = 0, polygons = 0;
    bool convertedFromFeet = false;
    std::vector<Finding> findings; ///< what was left out and where (lines of the network file)
    explicit operator bool() const { return status == FileStatus::Ok; }
};

/// Layers that an import writes to.
inline constexpr wchar_t kSectionLayer[] = L"NETWORK_SECTIONS";
inline constexpr wchar_t kNodeLayer[] = L"NETWORK_NODES";
inline constexpr wchar_t kPolygonLayer[] = L"SUBCATCHMENT_POLYGONS";

/// Reads a SWMM 5 network file into a drawing. All or nothing: on failure the drawing is unchanged.
NetworkImportResult importInp(Drawing &drawing, const std::filesystem::path &file,
                              const NetworkImportOptions &options = {});
/// The same from text; name is used in messages.
NetworkImportResult importInpText(Drawing &drawing, std::string_view text, const std::string &name,
                                  const NetworkImportOptions &options = {});

struct LayerImportOptions {
    std::vector<std::wstring> sectionLayers = {}; ///< lines, arcs and polylines of these layers become sections
    std::vector<std::wstring> nameLayers = {};    ///< texts and block attributes that name nodes; empty: all layers
    double endTolerance = 0.01;                   ///< ends nearer than this are one node
    double nameDistance = 5.0;                    ///< how far a text may stand from its node
};
/// Makes sections (and nodes at their ends) of linework that is already in the drawing.
NetworkImportResult importLayers(Drawing &drawing, const LayerImportOptions &options);

} // namespace velmor
