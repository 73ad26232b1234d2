// What a Drawing keeps behind its interface: shared by its operations, the DXF reader and the DXF writer.
#pragma once

#include "host/drawing/Arena.h"
#include "host/drawing/ObjectAccess.h"
#include "host/drawing/dxf/DxfFile.h"

#include <algorithm>

namespace velmor {

/// Finds objects by handle: a hash table of pointers, keyed by the handle that stands in the object.
class HandleTable {
public:
    AcDbObject *find(std::uint64_t handle) const;
    /// False when the handle is taken; the table then keeps what it had.
    bool insert(AcDbObject &object);
    /// Takes the object out, if it is the one that is found by its handle.
    void remove(const AcDbObject &object);
    void reserve(std::size_t count);

private:
    static std::size_t slotOf(std::uint64_t handle, std::size_t mask)
    {
        return static_cast<std::size_t>(handle * 0x9E3779B97F4A7C15ull >> 20) & mask;
    }
    void grow(std::size_t slots);
    std::vector<AcDbObject *> m_slots;
    std::size_t m_count = 0;
};

/// The drawing's block table as an object; every chain of owners ends here.
class BlockTableObject final : public AcDbBlockTable {
public:
    explicit BlockTableObject(Drawing &drawing) : m_drawing(drawing) {}
    Acad::ErrorStatus newIterator(AcDbBlockTableIterator *&iterator, bool atBeginning, bool skipErased) const override;
    Drawing &drawing() const { return m_drawing; }

private:
    Drawing &m_drawing;
};

struct HeaderVariable {
    int code = 1;
    std::string value;
    bool changed = false;
};

/// Data under a key. What stands in the file is read when it is first asked for.
struct DataRecord {
    dxf::RawObject *source = nullptr; ///< the object of the file that holds the items
    std::optional<DataItems> items;   ///< no value: still to be read from source; none in it: taken out
    bool changed = false;             ///< the file does not say this yet
    bool inDataBlock = false;         ///< R12: it stands in the data block
    std::uint64_t handle = 0;         ///< of a record that is made
    bool isPresent() const { return !items || !items->empty(); }
};
/// Records of one object or of one named dictionary.
struct DataDictionary {
    dxf::RawObject *source = nullptr; ///< the dictionary in the file
    std::map<std::string, DataRecord> records;
    bool changed = false;
    std::uint64_t handle = 0; ///< of a dictionary that is made
    bool hasRecords() const
    {
        return std::any_of(records.begin(), records.end(), [](const auto &r) { return r.second.isPresent(); });
    }
};

/// Upper case for comparing names, in any script.
std::wstring foldedName(std::wstring_view name);

struct Drawing::Private {
    explicit Private(Drawing &drawing) : table(drawing) { ObjectAccess::host(table).drawing = place.place(); }
    ~Private();

    DrawingPlace place; ///< first, so that it is given up last
    BlockTableObject table;
    Arena arena;                                   ///< objects that were read
    std::vector<AcDbObject *> arenaObjects;        ///< those of them whose destructor must run
    std::vector<std::unique_ptr<AcDbObject>> made; ///< objects that were made and appended

    LoadReport report;
    std::string version = "AC1027";
    bool modified = false;
    std::uint64_t revision = 0;

    std::vector<Layer> layers;
    std::unordered_map<std::wstring, std::size_t> layerByName; ///< by folded name
    std::size_t currentLayer = 0;

    std::vector<std::unique_ptr<BlockRecord>> blocks;
    std::unordered_map<std::wstring, BlockRecord *> blockByName; ///< by folded name
    BlockRecord *modelSpace = nullptr;

    std::vector<AcDbEntity *> added;   ///< entities without tags of their own, in the order of appending
    std::vector<AcDbObject *> touched; ///< objects whose tags no longer say what they are
    HandleTable handles;
    bool handlesListed = true; ///< false: the objects that were read are not in the table yet
    std::uint64_t nextHandle = 0x20;
    AcDbObject *find(std::uint64_t handle);
    dxf::FileText file;

    std::unordered_map<const AcDbObject *, DataDictionary> attached;
    std::map<std::string, std::map<std::uint64_t, AcDbEntity *>> entitiesByKey; ///< by handle
    std::map<std::string, DataDictionary> dictionaries;
    const DataItems &itemsOf(DataRecord &record);
    /// Tags of entities that came from another drawing, behind type, handle, owner, layer and colour; they are written
    /// in place of what is made from the object.
    std::unordered_map<const AcDbObject *, std::string> carried;
    std::map<std::string, HeaderVariable, std::less<>> header;

    std::vector<DrawingObserver *> observers;
    class ChangeLog *log = nullptr; ///< once somebody wants to take changes back

    void changed()
    {
        ++revision;
        modified = true;
    }
    /// Notes that a part of the object's tags has to be written anew.
    void touch(AcDbObject &object, unsigned part);
    BlockRecord &makeBlock(std::wstring name);
    /// Gives the object a handle when it has none yet.
    std::uint64_t giveHandle(AcDbObject &object);
    /// The same as a part of making the object, in a file that has handles and while changes are noted: then undo and
    /// redo bring the same number back.
    void numberNew(AcDbObject &object);
    bool numbersAtOnce() const { return log != nullptr && file.hasHandles; }
    /// A number that no object has.
    std::uint64_t newHandle();
    /// Erases an entity, or brings it back, with the attributes that go with it. Tells nobody.
    void setErased(AcDbEntity &entity, bool erasing);
    void setBasePoint(BlockRecord &block, const AcGePoint3d &point);
    std::size_t addLayer(Layer layer);
    /// eraseLayer for a layer that is known to be free.
    void setLayerErased(std::size_t index, bool erasing);
    /// Notes that the layer's record is to be written anew; it gets a handle where new ones do.
    void recordChanged(std::size_t layer);
    /// Gives the layer the other name and the caller the one that it had. Tells nobody.
    void exchangeLayerName(std::size_t index, std::wstring &name);
};

} // namespace velmor
