// The catchment areas of one drawing: their records, lookups, marks and picks.
//
// One store for each drawing (drawing.component<CatchmentStore>()). It reads the records from the drawing when it is
// made and follows every later change of their entities, so that an erased area is gone and an edited one is read anew
// by the next query. Lookups by GUID and by section cost the same for any number of areas.
#pragma once

#include "host/network/Network.h"
#include "host/sewage/StoredArea.h"

#include <map>
#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace velmor {

class CatchmentStore final : private DrawingObserver {
public:
    using AreaPtr = boost::shared_ptr<StoredArea>;
    using SectionPtr = StoredArea::SectionPtr;
    using Areas = ZEMGis::Sewage::CatchmentAreas;
    using PropertiesPtr = boost::shared_ptr<ZEMGis::Data::CProperties>;

    explicit CatchmentStore(Drawing &drawing); ///< made by Drawing::component
    ~CatchmentStore() override;
    CatchmentStore(const CatchmentStore &) = delete;
    CatchmentStore &operator=(const CatchmentStore &) = delete;
    /// The store of the working drawing; null when no drawing is open.
    static CatchmentStore *ofWorkingDrawing();

    Drawing &drawing() { return m_drawing; }
    /// The object of an id of this drawing; null for any other id and for an erased object.
    AcDbObject *objectOf(const AcDbObjectId &id) const;

    // Queries
    /// Appends the areas of the mask in order of creation.
    void collect(Areas &areas, unsigned mask);
    /// Those of them that are connected to the section.
    void collectBySection(const std::wstring &sectionGuid, Areas &areas, unsigned mask);
    AreaPtr byGuid(const std::wstring &guid);
    /// The store's own area behind a contract pointer; null for null, a deleted area or one of another drawing.
    AreaPtr own(const ZEMGis::Sewage::CCatchmentArea *area);
    /// All areas in order of creation.
    std::vector<AreaPtr> areas();
    /// Gross area less the areas of its islands, hectares.
    double netHectares(const StoredArea &area);

    // Changes
    /// Draws the ring (closing repeat left out) and makes the record. Null when the bag's GUID is taken.
    AreaPtr create(const std::vector<AcGePoint2d> &ring, const std::wstring &name, int type,
                   const PropertiesPtr &properties);
    /// An area without a polygon on a section, connected to it with share 1 and named after it. A point at the
    /// section's middle carries the record.
    AreaPtr createHidden(const SectionPtr &section, double squareMetres, int type, const PropertiesPtr &properties);
    /// Replaces the sections; null sections are passed over, shares of a section that comes twice are added up.
    void assign(StoredArea &area, const ZEMGis::Sewage::SectionShares &sections);
    /// Erases the area with its drawing, label and mark.
    void remove(StoredArea &area);
    /// Reads everything anew.
    void refresh();
    void unmarkAll(unsigned mask);

    // Labels
    /// The area's labels that stand in the drawing; one, unless another program copied it.
    std::vector<AcDbEntity *> labelsOf(const StoredArea &area);
    void addLabel(const StoredArea &area, AcDbEntity &label);
    /// Erases them; their number.
    int eraseLabels(const StoredArea &area);

    // Picks
    /// The index that picks work over; forgets the last pick. Areas stay alive as long as the index may name them.
    void setPickIndex(boost::shared_ptr<ZEMGis::Topology::CSpatialIndex> index);
    /// The area at a point by the index; null when there is none or no index was set.
    AreaPtr areaAt(const AcGePoint3d &point);
    /// The area that an entity is the drawing, or the label, of.
    AreaPtr areaOfEntity(const AcDbObjectId &entity);
    void setPicked(const AreaPtr &area) { m_picked = area ? area->record().guid : std::wstring(); }
    AreaPtr picked() { return m_picked.empty() ? AreaPtr() : byGuid(m_picked); }

    // What an area asks of its store
    /// Takes in what happened to the entities since the last look; every query begins with it.
    void bringUpToDate();
    void write(StoredArea &area);
    void rename(StoredArea &area, const std::wstring &name);
    void mark(const StoredArea &area, int colour, double scale, double angle, const std::wstring &pattern);
    void unmark(const StoredArea &area);
    void drawTemporary(const StoredArea &area, int colour);
    void connectedSections(const StoredArea &area, ZEMGis::Sewage::SectionShares &sections);
    std::optional<AcGePoint3d> middleOfSection(const StoredArea &area);

private:
    /// Order of creation; the handle parts records that another program has copied.
    using Key = std::pair<std::int64_t, std::uint64_t>;
    class OwnChange;

    void entityModified(AcDbEntity &entity) override;
    void entityErased(AcDbEntity &entity, bool erased) override;

    /// Changes the entity; when that fails the entity is read anew by the next query.
    template <class Change>
    void orLookAgain(AcDbEntity &entity, Change change);
    void readEntity(AcDbEntity &entity);
    AreaPtr enter(AcDbEntity &entity, AreaRecord record);
    void leave(StoredArea &area);
    void index(const AreaPtr &area);
    void unindex(StoredArea &area);
    std::optional<AreaRecord> newRecord(const std::wstring &name, int type, const PropertiesPtr &properties);
    AreaPtr draw(std::unique_ptr<AcDbEntity> entity, AreaRecord record);
    std::wstring freeName(const std::wstring &base);
    static Key keyOf(const StoredArea &area);

    Drawing &m_drawing;
    std::map<Key, AreaPtr> m_areas;
    std::unordered_map<std::wstring, AreaPtr> m_byGuid;
    std::unordered_map<const AcDbEntity *, AreaPtr> m_byEntity;
    std::unordered_map<std::wstring, std::map<Key, AreaPtr>> m_bySection;
    std::unordered_map<std::wstring, int> m_nameUses;
    std::unordered_map<std::wstring, int> m_lastNumber;                   ///< of a hidden area's name, by section name
    std::unordered_map<std::wstring, std::vector<AcDbEntity *>> m_labels; ///< by the area's GUID
    std::unordered_set<AcDbEntity *> m_changed;
    std::int64_t m_nextOrder = 1;
    int m_ownChanges = 0;

    boost::shared_ptr<ZEMGis::Topology::CSpatialIndex> m_pickIndex;
    std::unordered_map<const ZEMGis::Topology::CEntity *, AreaPtr> m_pickable;
    std::wstring m_picked;         ///< GUID
    std::wstring m_markPattern;    ///< of the last mark
    std::wstring m_strangePattern; ///< last one of a mark that is drawn as ANSI31 for want of it
};

/// The point of a section that stands for it: between its ends, or on its arc.
AcGePoint3d middleOf(const ZEMGis::Topology::CSection &section);

} // namespace velmor
