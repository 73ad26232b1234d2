// Takes back what a piece of work did to a drawing, when it could not be finished.
#pragma once

#include "host/drawing/Drawing.h"

#include <string>
#include <variant>
#include <vector>

namespace velmor {

/// One for each drawing (drawing.component<ChangeLog>()). Notes changes only while a run is on; runs nest, and the
/// changes of an inner one that were kept belong to the outer one.
///
/// What it can take back: entities that were added (they are erased) and erased (they come back), attached data and
/// entries of dictionaries. New layers and blocks stay, as do changes of an entity's own shape, layer and colour.
class ChangeLog final : private DrawingObserver {
public:
    explicit ChangeLog(Drawing &drawing); ///< made by Drawing::component
    ~ChangeLog() override;
    ChangeLog(const ChangeLog &) = delete;
    ChangeLog &operator=(const ChangeLog &) = delete;

    void begin();
    /// Ends the innermost run, whose changes stay; the run around it may still take them back.
    void keep();
    /// The same, and nothing that was done so far can be taken back any more.
    void keepForGood();
    /// Ends the innermost run and takes its changes back, the last one first.
    void takeBack();

private:
    struct Erasure {
        AcDbEntity *entity;
        bool erased; ///< what it was before
    };
    struct Attached {
        AcDbObject *object;
        std::string key;
        DataItems before; ///< empty: there was none
    };
    struct Entry {
        std::string dictionary, key;
        DataItems before;
    };

    void entityAppended(AcDbEntity &entity) override;
    void entityErased(AcDbEntity &entity, bool erased) override;
    void dataChanging(AcDbObject &object, const std::string &key) override;
    void dictionaryChanging(const std::string &dictionary, const std::string &key) override;

    Drawing &m_drawing;
    std::vector<std::variant<Erasure, Attached, Entry>> m_changes;
    std::vector<std::size_t> m_runs; ///< where each run begins among the changes
};

} // namespace velmor
