// The standing selection of a drawing: what a person picked before saying what for.
//
// One for each drawing (drawing.component<Selection>()). The view shows it, panels tell about it, and a command that
// works on entities takes it in place of asking.
#pragma once

#include "host/drawing/Drawing.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <unordered_set>
#include <vector>

namespace velmor {

class Selection final : private DrawingObserver {
public:
    explicit Selection(Drawing &drawing); ///< made by Drawing::component
    ~Selection() override;
    Selection(const Selection &) = delete;
    Selection &operator=(const Selection &) = delete;

    /// In the order of picking. An entity that is erased leaves the selection; one that comes back stays out of it.
    const AcDbObjectIdArray &members() const
    {
        dropUnknown();
        return m_members;
    }
    /// The same as entities.
    const std::vector<const AcDbEntity *> &entities() const
    {
        dropUnknown();
        return m_entities;
    }
    bool isEmpty() const { return m_known.empty(); }
    bool contains(const AcDbEntity &entity) const { return m_known.contains(&entity); }

    /// Ids that name no living entity of model space are passed over, as are repeated ones.
    void set(std::span<const AcDbObjectId> ids);
    void add(std::span<const AcDbObjectId> ids);
    void remove(std::span<const AcDbObjectId> ids);
    void clear() { set({}); }

    /// Grows with every change.
    std::uint64_t revision() const { return m_revision; }
    /// Calls listener after a change, as long as the answer (or a copy of it) lives. When many members are erased one
    /// after the other, those behind the first are only told of once somebody has asked for the members.
    [[nodiscard]] std::shared_ptr<void> onChange(std::function<void()> listener);

private:
    void entityErased(AcDbEntity &entity, bool erased) override;
    AcDbEntity *livingEntity(const AcDbObjectId &id) const;
    bool append(const AcDbObjectId &id);
    void dropUnknown() const;
    void tellChange();

    Drawing &m_drawing;
    mutable AcDbObjectIdArray m_members;
    mutable std::vector<const AcDbEntity *> m_entities; ///< may hold some that left m_known
    std::unordered_set<const AcDbEntity *> m_known;
    std::uint64_t m_revision = 1;
    std::vector<std::weak_ptr<std::function<void()>>> m_listeners;
};

} // namespace velmor
