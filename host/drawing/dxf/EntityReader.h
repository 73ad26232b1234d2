// Typed entities from the tags of one object.
#pragma once

#include "host/drawing/Arena.h"
#include "host/drawing/ObjectAccess.h"
#include "host/drawing/dxf/Tags.h"
#include "host/drawing/dxf/TextCodec.h"

#include <span>

namespace velmor::dxf {

/// What every object may say about itself, whatever its kind.
struct CommonTags {
    std::uint64_t handle = 0;
    std::uint64_t extension = 0; ///< handle of the extension dictionary
    std::string_view owner;      ///< as it stands, empty when there is none
    std::string_view layer;      ///< as it stands, blanks included
    int color = 256;
    bool paperSpace = false;
    bool invisible = false;
    bool followed = false;       ///< group 66: attributes or vertices follow
    std::size_t ownData = 0;     ///< index behind the tag 1001 of our own extended data; 0: none
    std::size_t geometryEnd = 0; ///< index of the first tag that no longer describes the entity itself
    double extrusion[3] = {0.0, 0.0, 1.0};
};

/// The kind that a type name stands for; Unknown for all others. A POLYLINE is a Polyline2d until its flags are seen.
EntityKind kindOfType(std::string_view typeName);

class EntityReader {
public:
    EntityReader(Arena &arena, const TextCodec &codec) : m_arena(arena), m_codec(codec) {}

    static CommonTags common(std::span<const Tag> tags);

    struct Result {
        AcDbEntity *entity = nullptr; ///< null when the tags can't be understood
        std::string problem;          ///< why not, when that is damage
        const Tag *place = nullptr;   ///< the tag that is to blame, when one is
    };
    /// All kinds but polylines of several objects. The entity stands in the arena and belongs to nobody yet. A block
    /// reference comes without its definition and attributes.
    Result read(EntityKind kind, std::span<const Tag> tags, const CommonTags &common);
    /// Name of the block that the tags of a reference name, as it stands.
    static std::string_view blockName(std::span<const Tag> tags);

    /// A POLYLINE over its VERTEX objects, added one after the other.
    struct Polyline {
        int flags = 0;
        double elevation = 0.0;
        bool mirrored = false;
        std::string problem;
        std::vector<AcDbPolyline::Vertex> vertices;
        std::vector<double> heights;
        bool isCurve() const { return (flags & (16 | 64)) == 0; }
        bool is3d() const { return (flags & 8) != 0; }
    };
    static void begin(Polyline &polyline, std::span<const Tag> tags, const CommonTags &common);
    static void addVertex(Polyline &polyline, std::span<const Tag> tags, const CommonTags &common);
    AcDbEntity *finish(Polyline &polyline);

private:
    Result readSimple(EntityKind kind, std::span<const Tag> tags, const CommonTags &common);
    Result readLwPolyline(std::span<const Tag> tags, const CommonTags &common);
    Result readSpline(std::span<const Tag> tags);
    Result readHatch(std::span<const Tag> tags, const CommonTags &common);
    std::wstring decode(const Tag *tag) const { return tag ? m_codec.decode(tag->text()) : std::wstring(); }

    Arena &m_arena;
    const TextCodec &m_codec;
};

} // namespace velmor::dxf
