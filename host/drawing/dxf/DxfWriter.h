// The text of a drawing as it is now: the text that was read, with edits where something changed.
#pragma once

#include "host/drawing/dxf/EntityWriter.h"
#include "host/drawing/dxf/LayersOfFile.h"
#include "host/drawing/dxf/Tags.h"

namespace velmor::dxf {

/// One write; makes handles for what has none yet, so that a second write gives the same text.
class DxfWriter {
public:
    explicit DxfWriter(Drawing::Private &drawing);
    /// Pieces of the text in order; they live as long as the writer and the drawing.
    std::vector<std::string_view> pieces();
    std::string text();

private:
    /// A tag of an object with its place in the text.
    struct PlacedTag {
        Tag tag;
        std::size_t start, end;
        std::size_t valueStart(const FileText &f) const { return static_cast<std::size_t>(tag.value - f.text.data()); }
    };
    using PlacedTags = std::vector<PlacedTag>;

    void replace(std::size_t offset, std::size_t length, std::string text, EditRank rank = EditRank::Object);
    void insert(std::size_t offset, std::string text, EditRank rank = EditRank::Object)
    {
        replace(offset, 0, std::move(text), rank);
    }
    void replaceValue(const PlacedTag &tag, std::string_view value);
    /// The tags of an object's own head: up to the next tag with code 0.
    PlacedTags headOf(const AcDbObject &object) const;
    PlacedTags placedTags(std::size_t offset, std::size_t end) const;
    std::string layerName(const AcDbEntity &entity) const;

    // What gets a handle before anything is written, since others name it.
    void giveHandles();
    void giveDataHandles(DataDictionary &dictionary);

    void writeHeader();
    void setVariable(const std::string &name, int code, const std::string &value);
    void writeLayers();
    // Layers that got another name
    void renameLayers();
    std::size_t endOfBlockEnd(const BlockSource &source) const;
    void renameLayersOf(const AcDbEntity &entity);
    void renameLayersAt(std::size_t offset, std::size_t end, bool says8);
    void renameLayer(const PlacedTag &tag);
    std::unordered_map<std::string_view, std::optional<std::string>> m_newNames; ///< by the text that the file has
    void writeBlocks();
    void removeBlock(const BlockSource &source);
    void writeAdded();
    void writeApplication();
    void finishSections();

    // Touched objects
    void patchTouched();
    void patchObject(AcDbObject &object);
    void patchLayer(AcDbEntity &entity, const PlacedTags &head);
    void patchColor(AcDbEntity &entity, const PlacedTags &head);
    void patchText(AttributeEntity &attribute, const PlacedTags &head);
    void patchGeometry(AcDbEntity &entity, const PlacedTags &head);
    void patchAttributes(AcDbBlockReference &reference, const PlacedTags &head);
    void patchExtension(AcDbObject &object, const PlacedTags &head);
    void removeErased(const AcDbObject &object);
    void removeDictionary(RawObject &dictionary, int depth);

    // Data
    void writeData();
    void writeDictionary(DataDictionary &dictionary, std::uint64_t owner);
    void writeNewDictionary(std::uint64_t handle, std::uint64_t owner,
                            const std::vector<std::pair<std::string, std::uint64_t>> &entries, bool ownsHard);
    void writeRecord(DataRecord &record, std::uint64_t owner);
    void writeRoot();
    std::string itemTags(const DataItems &items) const;
    std::vector<std::string> extendedTags(const DataItems &items) const;
    std::string extendedDataOf(const AcDbObject &object);
    void patchExtendedData(AcDbObject &object, const PlacedTags &head);
    void writeDataBlock();
    std::vector<std::pair<AcDbObject *, DataDictionary *>> dataOwners();

    Drawing::Private &d;
    FileText &f;
    LayersOfFile m_layersOfFile;
    bool m_isR12;
    std::uint64_t m_nextHandle = 0;
    EntityWriter m_entities;
    std::vector<Edit> m_edits;
    // What goes to the end of a section or table
    std::string m_newHeader, m_newTables, m_newLayers, m_newRecords, m_newBlocks, m_newEntities, m_newObjects,
        m_anonymousBlocks;
    std::map<const BlockRecord *, std::string> m_newInBlocks;
    bool m_usesApplication = false;
    std::size_t m_goneEnd = kNowhere;                                 ///< where an erased block lacks its end
    std::map<std::pair<std::uint64_t, std::string>, bool> m_overflow; ///< records (by handle) that did not fit in place
};

} // namespace velmor::dxf
