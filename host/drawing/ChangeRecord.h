// One change of a drawing, as its log keeps it: what it was, and the other state of what changed.
//
// While the change is done the record holds what was before; after it was undone, what was there then. Undo and redo
// are the same exchange of the two.
#pragma once

#include "host/drawing/ChangeLog.h"
#include "host/drawing/DrawingData.h"
#include "host/drawing/EntityShape.h"

#include <memory>

namespace velmor {

enum class ChangeKind : std::uint8_t {
    Appended,     ///< object: an entity
    Attribute,    ///< object: an attribute that came to its reference
    Erased,       ///< object: an entity that was erased or came back
    Look,         ///< object: an entity; layer and colour
    Shape,        ///< object: an entity; shape
    Text,         ///< object: an attribute; text
    Data,         ///< object; record
    Entry,        ///< record
    Header,       ///< header
    LayerAdded,   ///< layer: its index
    Layer,        ///< layer: its index; its values
    CurrentLayer, ///< layer: the index
    BlockAdded,   ///< object: a block
    BlockErased,  ///< object: a block
    BasePoint,    ///< object: a block; point
    Handle,       ///< object; number
    LayerName,    ///< layer: its index; text
};

/// What of a record of attached data or of a named dictionary can change.
struct RecordState {
    std::string dictionary, key;
    bool hasDictionary = false, dictionaryChanged = false;
    std::uint64_t dictionaryHandle = 0, rootHandle = 0;
    std::optional<DataRecord> record;
    bool isListed = false; ///< found by the drawing's index of entities with the key
};
struct HeaderState {
    std::string name;
    std::optional<HeaderVariable> variable;
};
struct LayerState {
    Layer layer;
    bool changed = false, needsRecord = false;
    std::uint64_t handle = 0; ///< of a record that is made
};
struct BlockState {
    std::vector<AcDbEntity *> erasedWithIt;
    AcGePoint3d basePoint;
};

struct Change {
    ChangeKind kind;
    std::int16_t color = 0;
    std::uint16_t flags = 0; ///< of the object, those of kPatchFlags
    std::uint32_t layer = 0;
    AcDbObject *object = nullptr;
    std::uint64_t number = 0;
    struct Extra {
        std::variant<std::monostate, EntityShape, std::wstring, RecordState, HeaderState, LayerState, BlockState> state;
    };
    std::unique_ptr<Extra> extra = nullptr;

    template <class State>
    State &as() const
    {
        return std::get<State>(extra->state);
    }
};

/// Which parts of an object's tags have to be written anew; restored with the rest.
inline constexpr unsigned kPatchFlags =
    kPatchLayer | kPatchColor | kPatchText | kPatchData | kPatchGeometry | kPatchAttributes;

/// Memory that the change takes, as the log counts it.
std::size_t bytesOf(const Change &change);
/// Exchanges the state of the drawing and that of the record. Tells nobody.
void exchange(Drawing &drawing, Change &change, bool undoing);

/// What stands there now, for a note and for a journal.
RecordState recordState(Drawing::Private &d, AcDbObject *object, const std::string &dictionary, const std::string &key);
LayerState layerState(const Drawing::Private &d, std::size_t index);

/// A change of that kind with the flags that the object has now, and what leads back.
template <class State>
Change changeOf(ChangeKind kind, AcDbObject *object, State state)
{
    Change change{kind};
    change.object = object;
    if (object)
        change.flags = static_cast<std::uint16_t>(ObjectAccess::host(*object).flags & kPatchFlags);
    if constexpr (!std::is_same_v<State, std::monostate>) {
        change.extra = std::make_unique<Change::Extra>();
        change.extra->state = std::move(state);
    }
    return change;
}

inline Change changeOf(ChangeKind kind, AcDbObject *object)
{
    return changeOf(kind, object, std::monostate());
}

} // namespace velmor
