// The linework of a drawing as the region search takes it, built once and kept while the drawing changes.
//
// Two kinds: what is visible in model space (on layers that are on and thawed), and the members of a selection set
// (those in model space, whatever their layers show). New entities are inserted and erased ones dropped as it
// happens; a change of layers or of a block definition makes it build anew at the next question.
#pragma once

#include "host/boundary/Regions.h"
#include "host/drawing/Drawing.h"
#include "host/editor/SelectionSets.h"

#include <list>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace velmor {

class LineworkCache final : private DrawingObserver {
public:
    explicit LineworkCache(Drawing &drawing); ///< made by Drawing::component
    ~LineworkCache() override;
    LineworkCache(const LineworkCache &) = delete;
    LineworkCache &operator=(const LineworkCache &) = delete;

    /// Everything visible in model space. Valid until the next call of this object.
    boundary::Linework &visible();
    /// Members of a set; the last few sets are kept.
    boundary::Linework &ofSet(const SelectionSet &set);
    /// Members of a list, built anew.
    boundary::Linework &ofEntities(const AcDbObjectIdArray &ids);
    /// Everything on the named layers, visible or not (names as in the drawing, upper and lower case alike).
    boundary::Linework &ofLayers(const std::vector<std::wstring> &names);
    /// Asking for it costs no gathering.
    bool hasVisible() const { return m_visible.has_value(); }
    bool hasSet(const SelectionSet &set) const;
    /// Forgets a set that was freed.
    void drop(std::int64_t setId);

    /// How often linework was built from nothing; for tests and benchmarks.
    std::size_t builds() const { return m_builds; }

private:
    struct SetLinework {
        std::int64_t id = 0;
        std::uint64_t revision = 0;
        std::vector<std::uint32_t> members; ///< source numbers, sorted
        AcDbObjectIdArray waiting;          ///< members that were open elsewhere; they come in once they are closed
        boundary::Linework linework;
    };

    void entityAppended(AcDbEntity &entity) override;
    void entityModified(AcDbEntity &entity) override;
    void entityErased(AcDbEntity &entity, bool erased) override;

    /// The entity's number in the linework, for as long as the drawing stands. (Not its handle: many drawings have
    /// none, and asking would make one.)
    std::uint32_t sourceOf(const AcDbEntity &entity);
    bool isInModelSpace(const AcDbEntity &entity) const;
    bool isVisible(std::size_t layer) const;
    void update(AcDbEntity &entity, bool present);
    void forgetAll();
    std::vector<bool> layerStates() const;
    void dropVisibleIfLayersChanged();
    void insert(boundary::Linework &linework, const AcDbEntity &entity, std::uint32_t source, bool onlyVisible) const;
    void takeInClosed(SetLinework &entry);
    boundary::Linework build(const std::vector<const AcDbEntity *> &entities, bool onlyVisible);

    Drawing &m_drawing;
    std::optional<boundary::Linework> m_visible;
    std::vector<bool> m_layerStates;     ///< those that m_visible goes by
    std::uint64_t m_checkedRevision = 0; ///< of the drawing, when the layers were last compared
    std::list<SetLinework> m_sets;       ///< most recently used first
    std::optional<boundary::Linework> m_other;
    bool m_numbered = false;
    std::vector<const AcDbEntity *> m_known;                       ///< sorted; a place in it is a number
    std::unordered_map<const AcDbEntity *, std::uint32_t> m_later; ///< those that came after m_known was made
    std::size_t m_builds = 0;
};

} // namespace velmor
