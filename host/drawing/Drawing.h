// A drawing: layers, blocks, entities, named dictionaries and attached data, read from DXF and written back.
//
// What is not understood or not touched keeps its tags and is written back as it was read. Objects live as long as
// their drawing; erasing only marks them, so an id never dangles. One thread.
#pragma once

#include "contracts/DrawingHost.h"
#include "host/drawing/Entities.h"
#include "host/drawing/EntityTags.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <typeindex>
#include <unordered_map>
#include <variant>
#include <vector>

namespace velmor {

// --- Findings --------------------------------------------------------------------------------------------------------

enum class Severity { Note, Warning, Damage };

/// Something that was found in a file: what, where, how bad.
struct Finding {
    Severity severity = Severity::Note;
    std::size_t line = 0; ///< from 1; 0 when it is about the whole file (a byte offset for a binary file)
    std::string text;     ///< one line, UTF-8, no full stop needed
    bool operator==(const Finding &) const = default;
};

struct LoadReport {
    std::string version;  ///< "AC1015"
    std::string codePage; ///< "ANSI_1250"; "UTF-8" from AC1021 on
    bool binary = false;
    std::vector<Finding> findings;
    std::map<std::string, std::size_t> read;   ///< number of entities by kind that are understood
    std::map<std::string, std::size_t> unread; ///< number kept unread, by kind
    /// The same of what is no entity: "layers", "blocks", "header variables", "named dictionaries", "data records".
    std::map<std::string, std::size_t> readOthers;
    /// By kind: "section NAME", "record KIND" (of a table), "object KIND" (of the objects section).
    std::map<std::string, std::size_t> unreadOthers;
    bool damaged() const; ///< any finding of severity Damage
};

enum class FileStatus {
    Ok,
    NotFound,
    NotAFile,
    NotReadable,
    Empty,
    NotADrawing,
    NotWritable,
    DiskFull,
    Refused,
    Cancelled
};

// --- Layers, blocks
// ----------------------------------------------------------------------------------------------------

struct Layer {
    std::wstring name;
    int color = 7; ///< index, always positive
    bool on = true, frozen = false, locked = false;
    bool erased = false; ///< taken out of the drawing; its index stays, and its name is free
    bool visible() const { return on && !frozen; }
};

/// A block table record: model space, a paper space or a block definition.
class BlockRecord final : public AcDbBlockTableRecord {
public:
    explicit BlockRecord(std::wstring name) : m_name(std::move(name)) {}
    std::wstring name() const override { return m_name; }
    Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator *&iterator, bool atBeginning,
                                  bool skipErased) const override;
    /// All entities in order, erased ones included.
    const std::vector<AcDbEntity *> &entities() const { return m_entities; }
    const AcGePoint3d &basePoint() const { return m_basePoint; }
    bool isModelSpace() const;
    bool isLayout() const; ///< model or paper space

private:
    friend class ObjectAccess;
    friend class Drawing;
    std::wstring m_name;
    AcGePoint3d m_basePoint;
    std::vector<AcDbEntity *> m_entities; ///< only ever grows
    mutable EntityTags m_tags;
    std::vector<AcDbEntity *> m_erasedWithIt; ///< they come back with it
};

// --- Attached data, dictionaries
// -----------------------------------------------------------------------------------------

/// A group code with its value: text, a real or a whole number.
struct DataItem {
    int code = 1;
    std::variant<std::wstring, double, std::int64_t> value;
    bool operator==(const DataItem &) const = default;
};
using DataItems = std::vector<DataItem>;

/// Told of every change of a drawing's entities, right after it, and of attached data and dictionary entries, right
/// before it.
class DrawingObserver {
public:
    virtual ~DrawingObserver() = default;
    virtual void dataChanging(AcDbObject &, const std::string & /*key*/) {}
    virtual void dictionaryChanging(const std::string & /*dictionary*/, const std::string & /*key*/) {}
    /// Right before a change of the entity's own shape (or a text of its attributes); entityModified follows.
    virtual void shapeChanging(AcDbEntity &) {}
    virtual void entityAppended(AcDbEntity &) {}
    virtual void entityModified(AcDbEntity &) {}
    virtual void entityErased(AcDbEntity &, bool /*erased*/) {}
};

struct LoadOptions {
    /// Told from time to time how much is done, from 0 to 1, on the thread that loads; false ends the load, with the
    /// status Cancelled and no drawing.
    std::function<bool(double done)> progress;
};
struct SaveOptions {
    /// A file that was damaged when it was read is only overwritten when this is set.
    bool overwriteDamaged = false;
    bool backup = true;  ///< keep the last version as NAME.bak
    bool isCopy = false; ///< a copy beside the drawing's own file (an autosave): the drawing stays modified
};
struct SaveResult {
    FileStatus status = FileStatus::Ok;
    std::string message; ///< one line when it failed: what, which file, what to do
    explicit operator bool() const { return status == FileStatus::Ok; }
};

class Drawing;
struct LoadResult {
    std::unique_ptr<Drawing> drawing; ///< null when nothing could be read
    LoadReport report;
    FileStatus status = FileStatus::Ok;
    std::string message; ///< one line when drawing is null
};

class Drawing final : public AcDbDatabase {
public:
    /// An empty drawing that any CAD program opens (AC1027, metres).
    static std::unique_ptr<Drawing> createNew();
    /// Reads ASCII DXF R12 to 2018 or binary DXF, as far as it can be read.
    static LoadResult load(const std::filesystem::path &path, const LoadOptions &options = {});
    /// The same from text in memory; used by load, by tests and by the fuzz target.
    static LoadResult read(std::string bytes, const LoadOptions &options = {});
    ~Drawing() override;

    /// Writes the drawing in its own version: a new file beside the old, synced, renamed over it.
    SaveResult save(const std::filesystem::path &path, const SaveOptions &options = {});
    /// The same as text.
    std::string write();

    const LoadReport &loadReport() const;
    const std::string &version() const; ///< "AC1027"
    bool isR12() const;                 ///< AC1009 and older: no objects section, no light-weight polylines
    bool isModified() const;
    /// Grows with every change of an entity, a layer or a dictionary.
    std::uint64_t revision() const;

    // Contract
    Acad::ErrorStatus getAcDbObjectId(AcDbObjectId &id, bool create, const AcDbHandle &handle,
                                      std::uint32_t reserved) override;
    Acad::ErrorStatus getBlockTable(AcDbBlockTable *&table, AcDb::OpenMode mode) override;

    // Layers
    std::span<const Layer> layers() const;
    const Layer &layer(std::size_t index) const;
    std::optional<std::size_t> findLayer(std::wstring_view name) const; ///< case-insensitive
    /// The layer's index; made with that colour when there is none.
    std::size_t ensureLayer(const std::wstring &name, int color = 7);
    void setLayer(std::size_t index, const Layer &layer); ///< all but the name and whether it is erased
    /// Takes a layer out (or brings it back, unless its name is taken again). Refused for layer 0, the current one, and
    /// one that something is on or refers to (see Uses.h, which tells it for all layers and blocks at once).
    bool eraseLayer(std::size_t index, bool erasing = true);
    std::size_t currentLayer() const;
    void setCurrentLayer(std::size_t index);

    // Blocks
    BlockRecord &modelSpace();
    const BlockRecord &modelSpace() const;
    /// All records in block-table order, erased ones included.
    std::span<const std::unique_ptr<BlockRecord>> blocks() const;
    BlockRecord *findBlock(std::wstring_view name) const; ///< case-insensitive
    /// A new empty definition; the existing one when the name is taken.
    BlockRecord &addBlock(const std::wstring &name, const AcGePoint3d &basePoint = {});
    /// Copies another drawing's model space (and the blocks it needs) into a definition of this one, replacing what
    /// the definition held.
    BlockRecord &importBlock(const std::wstring &name, const Drawing &source);
    /// Takes a definition out with all that it holds, or brings it back. eInvalidInput for model and paper space,
    /// eIsReferenced while something refers to it.
    Acad::ErrorStatus eraseBlock(BlockRecord &block, bool erasing = true);

    // Entities
    /// Takes the entity into a record, on the current layer unless it has one. The id; the entity stays closed.
    AcDbObjectId append(std::unique_ptr<AcDbEntity> entity, BlockRecord &owner);
    AcDbObjectId append(std::unique_ptr<AcDbEntity> entity) { return append(std::move(entity), modelSpace()); }
    void setLayerOf(AcDbEntity &entity, std::size_t layer);
    void setColorOf(AcDbEntity &entity, int colorIndex);
    void erase(AcDbEntity &entity, bool erasing = true);
    /// Adds an attribute with a text to a reference; its place follows the definition's.
    AcDbObjectId appendAttribute(AcDbBlockReference &reference, std::unique_ptr<AttributeEntity> attribute);
    void setAttributeText(AttributeEntity &attribute, const std::wstring &text);
    AcDbObject *findByHandle(std::uint64_t handle) const; ///< erased ones too
    /// To be called before a change of an object's own shape, so that it can be taken back, and ...
    void entityChanging(AcDbEntity &entity);
    /// ... after it, and after any other change through an object's own setters.
    void entityChanged(AcDbEntity &entity);

    // Attached data: items under a key on an object, kept in the file and by other programs.
    void setData(AcDbObject &object, const std::string &key, const DataItems &items); ///< empty items remove it
    std::optional<DataItems> data(const AcDbObject &object, const std::string &key) const;
    std::vector<std::string> dataKeys(const AcDbObject &object) const;
    /// All entities that carry the key, in order of handle; erased ones left out.
    std::vector<AcDbEntity *> entitiesWithData(const std::string &key) const;

    // Named dictionaries
    void setDictionaryEntry(const std::string &dictionary, const std::string &key, const DataItems &items);
    std::optional<DataItems> dictionaryEntry(const std::string &dictionary, const std::string &key) const;
    std::vector<std::string> dictionaryKeys(const std::string &dictionary) const;

    // Header variables that the host reads ("$INSUNITS"); raw value text of the first tag.
    std::optional<std::string> headerVariable(std::string_view name) const;
    void setHeaderVariable(const std::string &name, int code, const std::string &value);

    void addObserver(DrawingObserver &observer);
    void removeObserver(DrawingObserver &observer);

    /// One object of type T for this drawing, made as T(Drawing &) at first use and destroyed with the drawing.
    template <class T>
    T &component()
    {
        for (const auto &[type, made] : m_components)
            if (type == typeid(T))
                return *static_cast<T *>(made.get());
        // What T's constructor asks for comes into the list before it, and goes after it.
        auto made = std::make_shared<T>(*this);
        m_components.emplace_back(typeid(T), made);
        return *made;
    }

    struct Private;
    Private &priv() { return *d; }

    /// eraseBlock for a block that is known to be free.
    void setBlockErased(BlockRecord &block, bool erasing);
    /// Takes out the record of data that an object of the file is. False when it is none.
    bool eraseRecord(const AcDbObject &object);

private:
    Drawing();
    std::unique_ptr<Private> d;
    /// Destroyed before the objects, the last one made first.
    std::vector<std::pair<std::type_index, std::shared_ptr<void>>> m_components;
};

/// Whether a character may stand in the name of a layer or a block in any drawing program.
bool isNameCharacter(wchar_t c);

/// The drawing that the contracts work on; null when none is open. Not owned.
Drawing *workingDrawing();
void setWorkingDrawing(Drawing *drawing);

} // namespace velmor
