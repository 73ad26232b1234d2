// The structure of a DXF text: sections, tables, blocks, entities, objects. Fills a drawing that is still empty.
#pragma once

#include "host/drawing/DrawingData.h"
#include "host/drawing/dxf/EntityReader.h"

#include <functional>
#include <unordered_set>

namespace velmor::dxf {

/// Thrown out of a read that its caller no longer wants.
struct ReadingCancelled {};

class DxfReader {
public:
    /// The text stands in the drawing's file; it may be mended where it was cut off. progress is told how much is done,
    /// from 0 to 1, and gives false to end the read.
    explicit DxfReader(Drawing::Private &drawing, std::function<bool(double)> progress = {})
        : d(drawing), f(drawing.file), m_progress(std::move(progress)), m_entities(drawing.arena, drawing.file.codec)
    {
    }

    /// False when the text is no drawing at all.
    bool run();
    /// Where a cut file should end, and what has to stand there; empty for a file that is whole.
    struct Cut {
        std::size_t offset = kNowhere;
        std::string closing;
        std::size_t line = 0;
        std::string message;
    };
    const Cut &cut() const { return m_cut; }

private:
    using Counts = std::map<std::string, std::size_t, std::less<>>;
    static void count(Counts &counts, std::string_view kind);
    /// The beginning of a text of the file, for a message.
    static std::string printable(std::string_view text);

    enum class Section { None, Header, Tables, Blocks, Entities, Objects, Other };

    // Stepping through objects: a tag with code 0 and all up to the next.
    bool advance();
    void tellProgress();
    bool isType(std::string_view name) const { return m_type == name; }
    std::size_t offsetOf(const char *p) const { return static_cast<std::size_t>(p - f.text.data()); }
    std::size_t startOffset() const { return offsetOf(m_start); }
    std::size_t objectLength() const { return static_cast<std::size_t>(m_objectEnd - m_start); }
    void enter(const char *first, const char *last);

    void find(Severity severity, const char *where, std::string text);
    void reportBadLines();

    void readPrologue();
    std::string findHeaderValue(std::string_view name) const;
    void readObjectsOf(const char *first, const char *last);
    void readObject();
    void beginSection();
    bool deferSection();
    void endSection(bool isMissing = false);
    void closeOpenSection();
    void endTable();
    void noteMissingEnd(EditRank rank, const char *type);
    void readHeader();
    void readTables();
    void readLayer();
    void readBlockRecord();
    void readBlocks();
    void beginBlock();
    void endBlock(bool isMissing);
    void readRawObject();
    void readDataBlock();

    void readEntity(BlockRecord *block);
    void readPolyline(BlockRecord *block);
    void readReference(AcDbBlockReference &reference);
    AcDbEntity *makeEntity(EntityKind kind, const CommonTags &common);
    AcDbEntity *keepUnread(std::string_view typeName);
    void place(AcDbEntity &entity, const CommonTags &common, std::size_t offset, std::size_t length);
    void addTo(BlockRecord *block, AcDbEntity &entity, const CommonTags &common);
    void noteExtras(AcDbObject &object, const CommonTags &common);
    std::uint32_t layerOf(std::string_view name);
    BlockRecord &spaceOf(const CommonTags &common);
    void ensureSpaces();
    void countRead(EntityKind kind);
    void reportCounts();

    void noteCut();
    void resolve();
    void countMentionedHandles();
    void resolveReferences();
    void resolveDictionaries();

    Drawing::Private &d;
    FileText &f;
    std::function<bool(double)> m_progress;
    std::size_t m_passed = 0, m_nextTold = 0; ///< bytes of the objects read, and from where on progress is told
    EntityReader m_entities;
    TagCursor m_cursor;
    std::vector<Tag> m_tags;
    std::string_view m_type;
    const char *m_start = nullptr, *m_objectEnd = nullptr;
    Tag m_zero;
    const char *m_zeroStart = nullptr;
    bool m_more = false;
    bool m_objectBad = false; ///< a line among the object's tags is no tag

    Section m_section = Section::None;
    std::string m_sectionName;
    bool m_inTable = false, m_seenTables = false, m_seenSection = false, m_seenBlocks = false, m_deferring = true;
    bool m_seenEof = false, m_hadRoot = false;
    std::string m_tableName;
    const char *m_tableStart = nullptr; ///< the object that opened the table
    BlockRecord *m_block = nullptr;
    bool m_inBlock = false, m_inDataBlock = false;
    std::vector<std::pair<const char *, const char *>> m_deferred;
    const char *m_compoundStart = nullptr; ///< of a polyline or a reference whose parts are being read

    std::string_view m_lastLayer, m_lastOwner;
    std::uint32_t m_lastLayerIndex = 0;
    BlockRecord *m_lastSpace = nullptr;
    std::unordered_map<std::string, std::uint32_t> m_layersByBytes;
    BlockRecord *m_paperSpace = nullptr;
    std::uint64_t m_highestHandle = 0;
    std::array<std::size_t, 16> m_readByKind{};
    Counts m_unread, m_unreadSections, m_unreadRecords, m_unreadObjects;
    std::unordered_set<const RawObject *> m_usedObjects; ///< dictionaries and records that carry data
    std::vector<std::pair<AcDbBlockReference *, std::string_view>> m_references;
    std::vector<std::pair<AcDbObject *, std::uint64_t>> m_extensions;
    struct DataSlice {
        std::string target, key;
        int part;
        std::vector<Tag> tags;
    };
    std::vector<DataSlice> m_slices;
    EntityReader::Polyline m_polyline;
    const char *m_lineFrom = nullptr; ///< findings come mostly in order, so lines are counted on from here
    std::size_t m_line = 1;
    Cut m_cut;
};

} // namespace velmor::dxf
