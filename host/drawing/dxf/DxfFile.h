// What a drawing remembers of the file it was read from: the text itself and the places in it.
//
// The text stays as it was read. An object knows its tags by their place, and a save writes the text again with edits
// at the places where something changed, so what nobody touched comes back byte for byte.
#pragma once

#include "host/drawing/ObjectAccess.h"
#include "host/drawing/dxf/TextCodec.h"

#include <filesystem>
#include <unordered_map>

namespace velmor::dxf {

/// An object that is no entity: a table record or a member of the objects section. Its place is the HostState's.
class RawObject final : public AcDbObject {
public:
    explicit RawObject(std::string typeName) : m_typeName(std::move(typeName)) {}
    const std::string &typeName() const { return m_typeName; }

private:
    std::string m_typeName;
};

inline constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

/// What is put in at one place of the text comes in this order, so that each end stands behind what it ends.
enum class EditRank : std::uint8_t { Object, Member, PartEnd, Part, SectionEnd, Section };

/// A change of the text: what stands at offset over length is replaced. Edits of one rank at one place apply in their
/// order.
struct Edit {
    std::size_t offset = 0, length = 0;
    std::string text;
    EditRank rank = EditRank::Object;
};

/// The end of a section, a table or a block that the file lacks, and where it belongs.
struct MissingEnd {
    std::size_t offset;
    EditRank rank;
    const char *type;
};

/// A table of the TABLES section.
struct TableSource {
    std::size_t end = kNowhere; ///< where its ENDTAB stands
    std::uint64_t handle = 0;
};

/// Where a layer's record stands; length 0 for a layer that the file only uses or that was made since.
struct LayerSource {
    std::size_t offset = 0;
    std::uint32_t length = 0;
    RawObject *object = nullptr;
    int color = 7; ///< as it stands there
    bool changed = false;
    bool needsRecord = false; ///< made or changed since, and without a record so far
    std::uint64_t handle = 0; ///< of a record that is made
    std::wstring name;        ///< as the file has it; empty for one that was made since
};

/// Where a block stands: its BLOCK with what follows up to ENDBLK, and what opens it.
struct BlockSource {
    std::size_t offset = 0, headLength = 0;       ///< BLOCK and its tags
    std::size_t endOffset = kNowhere;             ///< where ENDBLK stands
    std::uint64_t beginHandle = 0, endHandle = 0; ///< of BLOCK and ENDBLK in a block that is made
    AcGePoint3d basePoint;                        ///< as it stands there
    bool hasRecord = false;                       ///< a record of the BLOCK_RECORD table, at the HostState's place
};

struct HeaderSource {
    std::size_t valueOffset = 0, valueLength = 0; ///< the first value's line without its end
};

struct FileText {
    std::string text;
    const char *lineEnd = "\n";
    bool padCodes = true; ///< codes stand right-aligned in three columns
    TextCodec codec = TextCodec::forDrawing("AC1027", "");
    std::filesystem::path path; ///< the file it was loaded from, empty for text in memory

    std::size_t start = 0;            ///< where the first tag stands (behind a byte order mark and comments)
    std::size_t end = 0;              ///< behind the last line that means anything
    std::size_t headerEnd = kNowhere; ///< ENDSEC of each section
    std::size_t tablesEnd = kNowhere;
    std::size_t blocksStart = kNowhere, blocksEnd = kNowhere;
    std::size_t entitiesStart = kNowhere, entitiesEnd = kNowhere;
    std::size_t objectsStart = kNowhere, objectsEnd = kNowhere;
    std::size_t eof = kNowhere;
    TableSource layerTable, appidTable, blockRecordTable;
    std::uint64_t appidHandle = 0; ///< of our application's record when it is made
    std::uint64_t rootHandle = 0;  ///< of a root dictionary that is made
    bool hasTables = false, hasOwnAppid = false;
    bool hasHandles = false; ///< its objects have handles (in R12 they need not)

    std::vector<LayerSource> layers; ///< beside the drawing's layers
    std::size_t currentLayer = 0;    ///< as the file says
    std::unordered_map<const BlockRecord *, BlockSource> blocks;
    std::map<std::string, HeaderSource, std::less<>> header;

    std::vector<MissingEnd> missingEnds;
    std::vector<RawObject *> rawObjects;
    RawObject *rootDictionary = nullptr;
    std::size_t dataBlockOffset = 0, dataBlockLength = 0; ///< the block that carries data in R12

    std::string_view at(std::size_t offset, std::size_t length) const
    {
        return std::string_view(text).substr(offset, length);
    }
};

} // namespace velmor::dxf
